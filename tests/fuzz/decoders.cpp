// Every decoder except DecodeItem and DumpBuffer, at the levels at which its callers use it.
#include "tests/fuzz/fuzz_target.h"

using namespace marvane;
using namespace marvane::testing;

namespace {

void DecodeOne(const DecoderFrame& frame, RecordSource& source)
{
    const UNUM32 decoder = source.Below(20);
    const int direction = source.Coin() ? DirectionIn : DirectionOut;
    const int level = static_cast<int>(source.Below(3));
    const UNUM32 id = source.Number();
    const char* const label = source.Below(8) == 0 ? nullptr : "pLabel";
    const BitNames* const names[] = {&TxFlagNames, &CllCreateFlagNames, &RxFlagNames, &TimestampFlagNames};
    // clang-format off
    switch (decoder) {
    case 0: return DecodeComParam(frame, source.NullOrNew(source.ParamItem()), direction, level);
    case 1: return DecodeByteField(frame, direction, level, id, source.NullOrNew(source.ByteField()));
    case 2: return DecodeLongField(frame, direction, level, id, source.NullOrNew(source.LongField()));
    case 3: return DecodeStructField(frame, direction, level, id, source.NullOrNew(source.StructField()));
    case 4: return DecodeSessionTiming(frame, direction, level, source.NullOrNew(source.Take<PDU_PARAM_STRUCT_SESSION_TIMING>()));
    case 5: return DecodeAccessTiming(frame, direction, level, source.NullOrNew(source.Take<PDU_PARAM_STRUCT_ACCESS_TIMING>()));
    case 6: return DecodeUniqueRespIdTable(frame, source.NullOrNew(source.ResponseTable()), direction, level % 2);
    case 7: return DecodeVehicleIdRequest(frame, source.NullOrNew(source.VehicleIdRequest()), direction);
    case 8: return DecodeVehicleIdRequestEx(frame, source.NullOrNew(PDU_IO_VEHICLE_ID_REQUEST_EX{source.VehicleIdRequest(), source.Take<UNUM8>()}), direction);
    case 9: return DecodeEthSwitchState(frame, source.NullOrNew(PDU_IO_ETH_SWITCH_STATE_DATA{source.Number(), source.Number()}));
    case 10: return DecodeEntityAddress(frame, source.NullOrNew(source.Take<PDU_IO_ENTITY_ADDRESS_DATA>()));
    case 11: return DecodeEntityStatus(frame, source.NullOrNew(PDU_IO_ENTITY_STATUS_DATA{source.Number(), 1, 2, 3}));
    case 12: return DecodeRscData(frame, source.NullOrNew(source.ResourceData()), label);
    case 13: return DecodeRscIdList(frame, source.NullOrNew(source.ResourceIdsOfModule()), label, direction);
    case 14: return DecodeRscConflictList(frame, source.NullOrNew(source.Take<PDU_RSC_CONFLICT_DATA>()));
    case 15: return DecodeModuleData(frame, source.NullOrNew(source.Module()), direction);
    case 16: return DecodeModuleIdList(frame, source.New(source.Modules()));
    case 17: return DecodeFilterList(frame, direction, source.NullOrNew(source.Filters()));
    case 18: return DecodeFlagData(frame, source.NullOrNew(source.FlagData()), label, direction, level % 2, *names[source.Below(4)]);
    default: return DecodeCopCtrlData(frame, source.NullOrNew(source.ControlData()));
    }
    // clang-format on
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    RecordSource source(data, size);
    const FuzzedFrame frame(source);
    DecodeOne(frame.Frame(), source);
    // Several decoders may write into one buffer.
    const PDU_EVENT_ITEM event = source.EventItem();
    DecodeEventItem(frame.Frame(), event.ItemType, event.pData);
    frame.Check();
    return 0;
}
