// A non-owning reference to a callable, which must outlive it: two pointers, and unlike std::function no
// allocation. The hooks of a call are passed this way, so that the frame of all 29 calls is compiled once.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace marvane {

template <class Signature> class FunctionRef;

template <class Result, class... Arguments> class FunctionRef<Result(Arguments...)>
{
public:
    FunctionRef() = default;

    template <class Callable>
    // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): the requirement leaves copies alone.
    requires(!std::is_same_v<std::remove_cvref_t<Callable>, FunctionRef>) FunctionRef(Callable&& callable)
        : object_(const_cast<void*>(static_cast<const void*>(std::addressof(callable)))),
          call_([](void* object, Arguments... arguments) -> Result {
              return (*static_cast<std::remove_reference_t<Callable>*>(object))(
                  std::forward<Arguments>(arguments)...);
          })
    {
    }

    explicit operator bool() const { return call_ != nullptr; }
    Result operator()(Arguments... arguments) const
    {
        return call_(object_, std::forward<Arguments>(arguments)...);
    }

private:
    void* object_ = nullptr;
    Result (*call_)(void*, Arguments...) = nullptr;
};

} // namespace marvane
