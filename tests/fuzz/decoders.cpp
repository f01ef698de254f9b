// Every decoder except DecodeItem and DumpBuffer, at the levels at which its callers use it.
#include "tests/fuzz/fuzz_target.h"

using namespace marvane;
using namespace marvane::testing;

namespace {

void DecodeOne(const DecoderContext& context, RecordSource& source)
{
    const UNUM32 decoder = source.Below(20);
    const Arrow arrow = source.Coin() ? ToTarget : FromTarget;
    const UNUM32 level = source.Below(3);
    const Arrow nested = arrow.Deeper(level);
    const UNUM32 id = source.Number();
    const char* const label = source.Below(8) == 0 ? nullptr : "pLabel";
    const BitNames* const names[] = {&TxFlagNames, &CllCreateFlagNames, &RxFlagNames, &TimestampFlagNames};
    // clang-format off
    switch (decoder) {
    case 0: return DecodeComParam(context, nested, source.NullOrNew(source.ParamItem()));
    case 1: return DecodeByteField(context, nested, id, source.NullOrNew(source.ByteField()));
    case 2: return DecodeLongField(context, nested, id, source.NullOrNew(source.LongField()));
    case 3: return DecodeStructField(context, nested, id, source.NullOrNew(source.StructField()));
    case 4: return DecodeSessionTiming(context, nested, source.NullOrNew(source.Take<PDU_PARAM_STRUCT_SESSION_TIMING>()));
    case 5: return DecodeAccessTiming(context, nested, source.NullOrNew(source.Take<PDU_PARAM_STRUCT_ACCESS_TIMING>()));
    case 6: return DecodeUniqueRespIdTable(context, arrow.Deeper(level % 2), source.NullOrNew(source.ResponseTable()));
    case 7: return DecodeVehicleIdRequest(context, arrow, source.NullOrNew(source.VehicleIdRequest()));
    case 8: return DecodeVehicleIdRequestEx(context, arrow, source.NullOrNew(PDU_IO_VEHICLE_ID_REQUEST_EX{.Request = source.VehicleIdRequest(), .Ver = source.Take<UNUM8>()}));
    case 9: return DecodeEthSwitchState(context, source.NullOrNew(PDU_IO_ETH_SWITCH_STATE_DATA{.State = source.Number(), .PinNumber = source.Number()}));
    case 10: return DecodeEntityAddress(context, source.NullOrNew(source.Take<PDU_IO_ENTITY_ADDRESS_DATA>()));
    case 11: return DecodeEntityStatus(context, source.NullOrNew(PDU_IO_ENTITY_STATUS_DATA{.EntityType = source.Number(), .TcpClientsMax = 1, .TcpClients = 2, .MaxDataSize = 3}));
    case 12: return DecodeRscData(context, label, source.NullOrNew(source.ResourceData()));
    case 13: return DecodeRscIdList(context, arrow.Deeper(2), label, source.NullOrNew(source.ResourceIdsOfModule()));
    case 14: return DecodeRscConflictList(context, source.NullOrNew(source.Take<PDU_RSC_CONFLICT_DATA>()));
    case 15: return DecodeModuleData(context, arrow.Deeper(), source.NullOrNew(source.Module()));
    case 16: return DecodeModuleIdList(context, source.New(source.Modules()));
    case 17: return DecodeFilterList(context, arrow.Deeper(), source.NullOrNew(source.Filters()));
    case 18: return DecodeFlagData(context, arrow.Deeper(level % 2), label, source.NullOrNew(source.FlagData()), *names[source.Below(4)]);
    default: return DecodeCopCtrlData(context, source.NullOrNew(source.ControlData()));
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
