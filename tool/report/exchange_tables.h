// Gathers the conversation of a page: requests with their answers, and what is said between them.
#pragma once

#include "tool/analysis/ecu_state.h"
#include "tool/export/redactor.h"
#include "tool/read/param_values.h"
#include "tool/report/line_block.h"
#include "tool/report/model.h"
#include "tool/report/record_tables.h"

namespace marvane::tool::report {

/// Exchanges whose request is not in the page are left out.
class ExchangeTables
{
public:
    /// All outlive it; `redactor` may be null.
    ExchangeTables(Model& model, const LineBlock& lines, RecordTables& records, const Redactor* redactor)
        : model_(model), lines_(lines), records_(records), redactor_(redactor)
    {
    }

    // In the order of the log, so that states of control units follow each other.
    void Add(const read::Exchange& exchange);
    void Add(const read::ParamChange& change);
    void Add(const read::LateAnswer& late);

private:
    std::uint32_t Text(std::string_view text) { return model_.Strings.Number(text); }
    std::uint32_t Hex(read::Bytes bytes);
    std::int64_t LineOf(const read::Position& at) const;
    void AddExchange(const read::Exchange& exchange);
    void DescribeRequest(const read::Exchange& exchange, ExchangeRow& row);
    Rows AddResponses(const read::Exchange& exchange);
    Rows AddAnswers(const read::Exchange& exchange);
    void AddState(const read::Exchange& exchange, std::string_view text);

    Model& model_;
    const LineBlock& lines_;
    RecordTables& records_;
    const Redactor* redactor_;
    EcuStates states_;
};

} // namespace marvane::tool::report
