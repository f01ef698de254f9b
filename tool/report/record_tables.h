// Gathers the records of a page, and the tables that they refer to.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <utility>

#include "tool/export/redactor.h"
#include "tool/report/line_block.h"
#include "tool/report/model.h"

namespace marvane::tool::report {

/// Records whose first line is not in the page are left out.
class RecordTables
{
public:
    /// All outlive it; `redactor` may be null.
    RecordTables(Model& model, const LineBlock& lines, const Redactor* redactor)
        : model_(model), lines_(lines), redactor_(redactor)
    {
    }

    /// `link`: of its handle; null if it has none.
    void Add(const read::Call& call, const read::Link* link);
    void Add(const read::Event& event, const read::Link* link);
    void Add(const read::Comms& report);
    void Add(const read::Mark& mark);

    /// The number of a link, which is added if it is new.
    std::int64_t LinkNumber(const read::Link& link);

private:
    /// Session, module, handle, and where the link was created.
    using LinkKey = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint64_t>;

    std::size_t ThreadNumber(std::uint32_t session, std::uint32_t thread);
    std::int64_t StatusNumber(const read::Call& call);
    Record Begin(RecordKind kind, const read::Call& call, const read::Link* link);
    Record Begin(RecordKind kind, std::uint64_t line, read::LogTime time, std::uint32_t session,
                 std::uint32_t thread, std::string_view name);
    template <typename What> std::uint32_t RedactedFlag(const What& what) const
    {
        return redactor_ && redactor_->IsChanged(what) ? RecordRedacted : 0u;
    }

    Model& model_;
    const LineBlock& lines_;
    const Redactor* redactor_;
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::size_t> threads_; ///< by session and id
    std::map<LinkKey, std::int64_t> links_;
    std::map<std::pair<std::uint32_t, std::string>, std::int64_t, std::less<>> statuses_;
};

} // namespace marvane::tool::report
