// The calls of a random sequence: arguments from the bytes, answers that write results back.
#include <cstring>
#include <new>

#include <gtest/gtest.h>

#include "tests/fuzz/call_sequence.h"
#include "tests/support/guarded_memory.h"

namespace marvane::testing {

namespace {

/// An output of a call, in guarded memory: a variable that the target writes to, or a null pointer.
template <class Value> class Output
{
public:
    Output(RecordSource& source, Value before, Value after)
        : memory_(GuardedMemory(sizeof(Value))), value_(new (memory_.get()) Value(before)), expected_(before),
          after_(after), isNull_(source.Below(8) == 0)
    {
    }
    ~Output()
    {
        EXPECT_EQ(std::memcmp(value_, &expected_, sizeof expected_), 0) << "an output was changed on its way";
    }
    Value* Pointer() { return isNull_ ? nullptr : value_; }
    /// What the target does.
    void Write() const
    {
        if (!isNull_)
            *value_ = expected_ = after_;
    }

private:
    std::shared_ptr<void> memory_;
    Value* value_;
    mutable Value expected_;
    Value after_;
    bool isNull_;
};

Output<UNUM32> Number(RecordSource& source)
{
    return {source, source.Number(), source.Handle()};
}

template <class Record> Output<Record*> Item(RecordSource& source, const Record& record)
{
    return {source, nullptr, source.NullOrNew(record)};
}

UNUM32 SmallHandle(RecordSource& source)
{
    return source.Below(4) == 0 ? PDU_HANDLE_UNDEF : source.Below(3);
}

} // namespace

void CallSequence::Call(UNUM32 choice, RecordSource& source)
{
    if (choice < 9)
        CallModulesAndLinks(choice, source);
    else if (choice < 18)
        CallWithRecords(choice, source);
    else
        CallQueries(choice, source);
}

void CallSequence::CallModulesAndLinks(UNUM32 choice, RecordSource& source)
{
    const UNUM32 hMod = SmallHandle(source);
    const UNUM32 hCLL = SmallHandle(source);
    const UNUM32 number = source.Number();
    switch (choice) {
    case 0:
        return logger_.Call("PDUModuleConnect", &CPduDll::PDUModuleConnect, source, hMod);
    case 1:
        return logger_.Call("PDUModuleDisconnect", &CPduDll::PDUModuleDisconnect, source, hMod);
    case 2:
        return logger_.Call("PDUDestroyComLogicalLink", &CPduDll::PDUDestroyComLogicalLink, source, hMod,
                            hCLL);
    case 3:
        return logger_.Call("PDUConnect", &CPduDll::PDUConnect, source, hMod, hCLL);
    case 4:
        return logger_.Call("PDUDisconnect", &CPduDll::PDUDisconnect, source, hMod, hCLL);
    case 5:
        return logger_.Call("PDULockResource", &CPduDll::PDULockResource, source, hMod, hCLL, number);
    case 6:
        return logger_.Call("PDUUnlockResource", &CPduDll::PDUUnlockResource, source, hMod, hCLL, number);
    case 7:
        return logger_.Call("PDUCancelComPrimitive", &CPduDll::PDUCancelComPrimitive, source, hMod, hCLL,
                            number);
    default: {
        const CALLBACKFNC handler = CheckedLogger::AnyHandler(source);
        return logger_.Call("PDURegisterEventCallback", &CPduDll::PDURegisterEventCallback, source, hMod,
                            hCLL, handler);
    }
    }
}

void CallSequence::CallWithRecords(UNUM32 choice, RecordSource& source)
{
    const UNUM32 hMod = source.Handle();
    const UNUM32 hCLL = source.Handle();
    const UNUM32 id = source.Number();
    const auto writing = [](const auto& result) { return [&] { result.Write(); }; };
    switch (choice) {
    case 9: {
        auto* const input = source.NullOrNew(source.DataItem());
        auto output = Item(source, source.DataItem());
        return logger_.Call("PDUIoCtl", &CPduDll::PDUIoCtl, source, writing(output), hMod, hCLL, id, input,
                            output.Pointer());
    }
    case 10: {
        auto* const data = source.NullOrNew(source.ResourceData());
        auto* const flags = source.NullOrNew(source.FlagData());
        auto link = Number(source);
        return logger_.Call("PDUCreateComLogicalLink", &CPduDll::PDUCreateComLogicalLink, source,
                            writing(link), hMod, data, id, source.Bytes(1), link.Pointer(), flags);
    }
    case 11: {
        auto* const control = source.NullOrNew(source.ControlData());
        const UNUM32 size = source.Below(200);
        UNUM8* const data = source.Coin() ? source.Bytes(size) : nullptr;
        auto primitive = Number(source);
        return logger_.Call("PDUStartComPrimitive", &CPduDll::PDUStartComPrimitive, source,
                            writing(primitive), hMod, hCLL, source.Code(CoPTypeNames), size, data, control,
                            source.Bytes(1), primitive.Pointer());
    }
    case 12: {
        auto item = Item(source, source.ParamItem());
        return logger_.Call("PDUGetComParam", &CPduDll::PDUGetComParam, source, writing(item), hMod, hCLL, id,
                            item.Pointer());
    }
    case 13:
        return logger_.Call("PDUSetComParam", &CPduDll::PDUSetComParam, source, hMod, hCLL,
                            source.NullOrNew(source.ParamItem()));
    case 14: {
        auto table = Item(source, source.ResponseTable());
        return logger_.Call("PDUGetUniqueRespIdTable", &CPduDll::PDUGetUniqueRespIdTable, source,
                            writing(table), hMod, hCLL, table.Pointer());
    }
    case 15:
        return logger_.Call("PDUSetUniqueRespIdTable", &CPduDll::PDUSetUniqueRespIdTable, source, hMod, hCLL,
                            source.NullOrNew(source.ResponseTable()));
    case 16: {
        auto item = Item(source, source.EventItem());
        return logger_.Call("PDUGetEventItem", &CPduDll::PDUGetEventItem, source, writing(item), hMod, hCLL,
                            item.Pointer());
    }
    default:
        return logger_.Call("PDUDestroyItem", &CPduDll::PDUDestroyItem, source,
                            static_cast<void*>(source.NullOrNew(source.EventItem())));
    }
}

void CallSequence::CallQueries(UNUM32 choice, RecordSource& source)
{
    const UNUM32 hMod = source.Handle();
    const UNUM32 hCLL = source.Handle();
    auto first = Number(source);
    auto second = Number(source);
    auto third = Number(source);
    const auto writeAll = [&] {
        first.Write();
        second.Write();
        third.Write();
    };
    const auto writing = [](const auto& result) { return [&] { result.Write(); }; };
    // A success with a null output is a fault of the target that the decoder does not survive.
    UNUM32 unused = 0;
    const auto place = [&](Output<UNUM32>& result) { return result.Pointer() ? result.Pointer() : &unused; };
    switch (choice) {
    case 18: {
        Output<PDU_VERSION_DATA> version(source, source.Version(), source.Version());
        return logger_.Call("PDUGetVersion", &CPduDll::PDUGetVersion, source, writing(version), hMod,
                            version.Pointer());
    }
    case 19:
        return logger_.Call("PDUGetStatus", &CPduDll::PDUGetStatus, source, writeAll, hMod, hCLL,
                            source.Number(), place(first), second.Pointer(), third.Pointer());
    case 20:
        return logger_.Call("PDUGetLastError", &CPduDll::PDUGetLastError, source, writeAll, hMod, hCLL,
                            place(first), second.Pointer(), third.Pointer(), nullptr);
    case 21:
        return logger_.Call("PDUGetTimestamp", &CPduDll::PDUGetTimestamp, source, writing(first), hMod,
                            first.Pointer());
    case 22:
        return logger_.Call("PDUGetObjectId", &CPduDll::PDUGetObjectId, source, writing(first),
                            source.Code(ObjectTypeNames), source.Text(), first.Pointer());
    case 23: {
        auto modules = Item(source, source.Modules());
        return logger_.Call("PDUGetModuleIds", &CPduDll::PDUGetModuleIds, source, writing(modules),
                            modules.Pointer());
    }
    case 24: {
        auto* const data = source.NullOrNew(source.ResourceData());
        auto list = Item(source, source.ResourceIds());
        return logger_.Call("PDUGetResourceIds", &CPduDll::PDUGetResourceIds, source, writing(list), hMod,
                            data, list.Pointer());
    }
    case 25:
        return logger_.Call("PDUGetResourceStatus", &CPduDll::PDUGetResourceStatus, source,
                            source.NullOrNew(source.ResourceStatus()));
    default: {
        auto* const modules = source.NullOrNew(source.Modules());
        auto conflicts = Item(source, source.Conflicts());
        return logger_.Call("PDUGetConflictingResources", &CPduDll::PDUGetConflictingResources, source,
                            writing(conflicts), source.Number(), modules, conflicts.Pointer());
    }
    }
}

} // namespace marvane::testing
