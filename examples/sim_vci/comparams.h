// The ComParams of a link, with at least one value of each data type.
#pragma once

#include <map>
#include <variant>
#include <vector>

#include "examples/sim_vci/items.h"
#include "pdu/pdu_api.h"

namespace sim {

using SessionTimings = std::vector<PDU_PARAM_STRUCT_SESSION_TIMING>;
using AccessTimings = std::vector<PDU_PARAM_STRUCT_ACCESS_TIMING>;
using ByteField = std::vector<UNUM8>;
using LongField = std::vector<UNUM32>;

struct ComParam
{
    T_PDU_PC Class;
    std::variant<UNUM8, SNUM8, UNUM16, SNUM16, UNUM32, SNUM32, ByteField, SessionTimings, AccessTimings,
                 LongField>
        Value;
};

/// The ComParams of one link, by id. Not thread-safe.
class ComParams
{
public:
    ComParams();

    /// Fills `record`, which belongs to `item`, as does the memory of its value. False if there is no such
    /// ComParam.
    bool Write(UNUM32 id, Item& item, PDU_PARAM_ITEM& record) const;

    /// Sets the value from a record of the application. Returns the status for the application.
    T_PDU_ERROR Read(const PDU_PARAM_ITEM& record);

    bool Has(UNUM32 id) const { return values_.contains(id); }

    /// CP_P2Max: how long an answer is waited for, in milliseconds.
    UNUM16 P2Max() const;

private:
    std::map<UNUM32, ComParam> values_;
};

} // namespace sim
