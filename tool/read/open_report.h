// A comms report whose lines are being read.
#pragma once

#include <string>
#include <vector>

#include "tool/read/line_kind.h"
#include "tool/read/records.h"

namespace marvane::read {

class OpenReport
{
public:
    bool IsOpen() const { return isOpen_; }
    std::uint32_t Thread() const { return record_.Thread; }

    /// Begins a report; `record` has its place, time, thread and session.
    void Begin(const Comms& record, const ReportTitle& title);
    /// The title goes on in the next line.
    void ContinueTitle(std::string_view text);

    /// True if a decoded line (with its arrow) of that thread and time can be a parameter of the report.
    bool Accepts(std::uint32_t thread, LogTime time, std::string_view line) const;
    void AddLine(std::uint64_t number, std::string_view line);
    void ContinueLine(std::string_view text);
    std::string_view LastLine() const;

    /// The whole report; valid until the next Begin.
    const Comms& Finish(bool isCut);

private:
    struct StoredLine
    {
        std::uint64_t Number;
        std::size_t Begin;
        std::size_t Length;
    };

    void ReadValues();

    bool isOpen_ = false;
    Comms record_;
    std::string title_; ///< protocol, then title
    std::size_t protocolLength_ = 0;
    std::string text_;
    std::vector<StoredLine> stored_;
    std::vector<CallLine> lines_;
    std::vector<std::uint8_t> bytes_;
};

} // namespace marvane::read
