// What a log says, record by record: docs/marvane-log.schema.json.
#pragma once

#include <set>
#include <string>

#include "tool/analysis/findings.h"
#include "tool/export/inputs.h"
#include "tool/export/record_writer.h"
#include "tool/export/sink.h"
#include "tool/export/zone_time.h"

namespace marvane::tool {

class LogRecords : public Findings
{
public:
    /// Reads the inputs and writes every record that the writer takes.
    static void Write(const Inputs& inputs, RecordWriter& writer, Sink& sink);

    void OnSession(const read::Session& session) override;
    void OnEntry(const read::Call& call, bool isEvent) override;
    void OnCall(const read::Call& call) override;
    void OnEvent(const read::Event& event) override;
    void OnItem(const read::Item& item) override;
    void OnComms(const read::Comms& report) override;
    void OnParam(const read::Param& param) override;
    void OnMark(const read::Mark& mark) override;
    void OnProblem(const read::Problem& problem) override;
    void OnFinding(const Finding& finding) override;
    void OnEnded(const read::Exchange& exchange) override;

private:
    LogRecords(const Inputs& inputs, RecordWriter& writer, Sink& sink);
    void Finish();
    void End(bool isChanged);
    bool IsChanged(const auto& record) const
    {
        return inputs_.Redaction && inputs_.Redaction->IsChanged(record);
    }
    bool IsChanged(const read::Position& first, const read::Position& last) const;
    void WriteHead();
    void WriteSession();
    void WriteMore(const read::Comms& report);
    std::string_view FileName(std::uint32_t file) const;
    void Put(std::string_view key, read::LogTime time);
    bool Begin(std::string_view kind, read::LogTime time, const read::Position& at, std::uint32_t session);
    void AddEnd(const read::Call& call);
    void PutProblem(std::string_view what, read::LogTime time, const read::Position& at,
                    std::uint32_t session, std::uint64_t seq, std::string_view text);

    const Inputs& inputs_;
    RecordWriter& line_;
    Sink& sink_;
    ZoneTime times_;
    std::string time_;
    std::set<std::uint64_t> changed_;        ///< numbers of calls that were redacted
    const read::Session* session_ = nullptr; ///< whose record is still to be written
};

} // namespace marvane::tool
