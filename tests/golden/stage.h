// Shared by the steps of a golden session: the session, its script, its golden log, and calls with items.
#pragma once

#include "tests/golden/golden_log.h"

namespace marvane::testing {

struct Stage
{
    explicit Stage(Changes changes) : session(changes), log(session), script(session) {}

    Session session;
    GoldenLog log;
    Script script;
    const CPduDll& api = session.Api();
};

/// A command to link 2 with an input item of this type and no output.
template <class Record>
void Send(Stage& stage, UNUM32 command, T_PDU_IT type, const std::string& name, Record record)
{
    auto& data = stage.log.Keep(name, record);
    auto& item = stage.log.Keep<PDU_DATA_ITEM>(name + " item", {type, &data});
    stage.script.On("PDUIoCtl", nullptr);
    stage.api.PDUIoCtl(1, 2, command, &item, nullptr);
}

/// A command to the module with an output item of this type and no input.
template <class Record>
void Fetch(Stage& stage, UNUM32 command, T_PDU_IT type, const std::string& name, Record record)
{
    auto& data = stage.log.Keep(name, record);
    auto& item = stage.log.Keep<PDU_DATA_ITEM>(name + " item", {type, &data});
    auto& fetched = stage.log.Keep<PDU_DATA_ITEM*>("fetched " + name, nullptr);
    stage.script.Give("PDUIoCtl", 4, &item);
    stage.api.PDUIoCtl(1, PDU_HANDLE_UNDEF, command, nullptr, &fetched);
    stage.api.PDUDestroyItem(fetched);
}

/// Gets an event item of link 2 and destroys it.
inline void Take(Stage& stage, const std::string& name, const PDU_EVENT_ITEM& event)
{
    auto& item = stage.log.Keep(name, event);
    auto& taken = stage.log.Keep<PDU_EVENT_ITEM*>("taken " + name, nullptr);
    stage.script.Give("PDUGetEventItem", 2, &item);
    stage.api.PDUGetEventItem(1, 2, &taken);
    stage.api.PDUDestroyItem(taken);
}

} // namespace marvane::testing
