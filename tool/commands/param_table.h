// The ComParams of a log by link: what was read, set and restored.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tool/analysis/mdf_names.h"
#include "tool/commands/talk_filter.h"
#include "tool/console/console.h"
#include "tool/read/exchanges.h"
#include "tool/read/log_files.h"
#include "tool/read/log_reader.h"

namespace marvane::tool {

/// Values that followed each other without a change are one.
struct SetValue
{
    std::string Value;
    read::Position At; ///< where it was set first
};

struct ParamRow
{
    std::string Name;
    std::optional<std::string> Default;
    std::optional<std::string> Read; ///< by the first PDUGetComParam
    read::Position ReadAt;
    std::vector<SetValue> Set;
    std::uint64_t SetCount = 0;
    std::optional<read::Position> RestoredAt;

    bool IsChanged() const
    {
        return Set.size() > 1 || (Set.size() == 1 && Read && *Read != Set.front().Value);
    }
};

/// Where a link came into use.
struct LinkStart
{
    std::optional<read::Position> Connected;
    std::optional<read::Position> Started; ///< its communication
};

struct LinkRows
{
    std::shared_ptr<const read::Link> On;
    LinkStart Start;
    std::map<std::uint32_t, ParamRow> Rows; ///< by the number of the ComParam

    /// True if a ComParam was set before the link was connected.
    bool IsSetBefore(const ParamRow& row) const
    {
        return Start.Connected && !row.Set.empty() && row.Set.front().At < *Start.Connected;
    }
};

/// Memory is bounded: links, ComParams and values beyond a large number are left out.
class ParamTable : public read::LogSink, private read::ExchangeSink
{
public:
    static constexpr read::Wants Wants = read::Wants::Calls | read::Wants::Items | read::Wants::Params;

    /// The names, the console and the files must outlive the table.
    ParamTable(const MdfNames& names, TalkFilter filter, Console& console,
               const std::vector<read::LogFile>& files);

    std::vector<LinkRows> Links;
    bool HasSession = false; ///< false if there was no line of a log

    void OnSession(const read::Session& session) override;
    void OnEntry(const read::Call& call, bool isEvent) override;
    void OnCall(const read::Call& call) override;
    void OnItem(const read::Item& item) override;
    void OnProblem(const read::Problem& problem) override;
    void OnParam(const read::Param& param) override;

    /// To be called once, after the last line.
    void Finish();

private:
    LinkStart& StartOf(const std::shared_ptr<const read::Link>& link);
    LinkRows* LinkOf(const std::shared_ptr<const read::Link>& link);
    ParamRow* RowOf(const std::shared_ptr<const read::Link>& link, const read::Param& param);
    void OnExchange(const read::Exchange& exchange) override;

    const MdfNames& names_;
    TalkFilter filter_;
    Console& console_;
    const std::vector<read::LogFile>& files_;
    read::Exchanges exchanges_{static_cast<read::ExchangeSink&>(*this)};
    std::map<std::shared_ptr<const read::Link>, LinkStart> starts_;
    LinkStart otherStart_; ///< of links beyond those that are remembered
    std::size_t rowCount_ = 0;
};

} // namespace marvane::tool
