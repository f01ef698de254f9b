// The owner of what lives as long as the process.
#pragma once

#include <new>
#include <utility>

namespace marvane {

/// Owns an object of the whole process that is usable to its very end: other threads may run on while static
/// destructors do, and would meet a destroyed object. So nothing is destroyed unless the owner's file asks
/// for it. The storage is constant-initialised; the file that defines it calls Make when the library is
/// loaded.
template <class Object> class Lasting
{
public:
    constexpr Lasting() : nothing_() {}
    ~Lasting() {} // the object stays
    Lasting(const Lasting&) = delete;
    Lasting& operator=(const Lasting&) = delete;

    /// The object, or the place where it will be made.
    constexpr Object& Get() { return object_; }

    template <class... Arguments> Object& Make(Arguments&&... arguments)
    {
        return *new (&object_) Object{std::forward<Arguments>(arguments)...};
    }

    /// Frees what the object holds and leaves a new one, which owns no memory.
    void Empty()
    {
        object_.~Object();
        new (&object_) Object{};
    }

    /// Destroys the object. Only if no thread can still use it.
    void End() { object_.~Object(); }

private:
    union {
        char nothing_;
        Object object_;
    };
};

} // namespace marvane
