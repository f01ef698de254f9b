// Logs composed by tests, line by line.
#pragma once

#include <cstdint>
#include <string>

namespace marvane::testing {

/// The text of a log without a header: one link, requests and what is fetched of them. Times are milliseconds
/// after ten o'clock.
class LogText
{
public:
    /// A request that was sent; `wantsAnswer` is NumReceiveCycles 1, else 0.
    void Start(std::uint64_t ms, std::uint32_t primitive, const std::string& hex, bool wantsAnswer = true);
    void Result(std::uint64_t ms, std::uint32_t primitive, const std::string& hex);
    /// "PDU_COPST_FINISHED (0x8012)"
    void Status(std::uint64_t ms, std::uint32_t primitive, const std::string& code);
    void Finished(std::uint64_t ms, std::uint32_t primitive)
    {
        Status(ms, primitive, "PDU_COPST_FINISHED (0x8012)");
    }
    /// A call without results.
    void Call(std::uint64_t ms, const std::string& name, const std::string& arguments);

    const std::string& Text() const { return text_; }

private:
    void Line(std::uint64_t ms, const std::string& text);
    void Item(std::uint64_t ms, std::uint32_t primitive, const std::string& type, const std::string& lines);

    std::string text_;
};

} // namespace marvane::testing
