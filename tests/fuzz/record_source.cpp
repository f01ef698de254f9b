#include "tests/fuzz/record_source.h"

#include <algorithm>

#include "tests/support/guarded_memory.h"

namespace marvane::testing {

namespace {

// A decoder stops when the log buffer is full, and each entry takes at least one line. So lists of these
// sizes are long enough for any count.
constexpr UNUM32 EntriesOfAnyCount = 600;
constexpr UNUM32 BytesOfAnyCount = 2400;

// A list of identifiers that reaches 700 characters would end the process.
constexpr UNUM32 MostIdentifiers = 40;

} // namespace

UNUM32 RecordSource::Code(NameTable table)
{
    const UNUM32 choice = Below(static_cast<UNUM32>(table.size()) + 1);
    return choice < table.size() ? table[choice].Code : Take<UNUM32>();
}

void* RecordSource::NewMemory(std::size_t size)
{
    const bool guarded = memory_ == BlockMemory::Guarded;
    blocks_.push_back(
        {guarded ? GuardedMemory(size) : std::shared_ptr<void>(std::malloc(size), &std::free), size});
    return blocks_.back().Memory.get();
}

std::string RecordSource::Contents() const
{
    std::string contents;
    for (const Block& block : blocks_)
        contents.append(static_cast<const char*>(block.Memory.get()), block.Size);
    return contents;
}

void RecordSource::ForbidWriting() const
{
    if (memory_ == BlockMemory::Guarded)
        for (const Block& block : blocks_)
            marvane::testing::ForbidWriting(block.Memory, block.Size);
}

CHAR8* RecordSource::Text()
{
    const UNUM32 kind = Below(8);
    if (kind == 0)
        return nullptr;
    const std::size_t length = kind == 1 ? Take<UNUM16>() % 20000 : Below(40);
    auto* const text = reinterpret_cast<CHAR8*>(Bytes(length + 1));
    std::replace(text, text + length, '\n', '.');
    // On Windows 0x1A ends a text file.
    std::replace(text, text + length, '\x1A', '.');
    std::replace(text, text + length, '\r', '.');
    text[length] = 0;
    return text;
}

UNUM8* RecordSource::Bytes(std::size_t size)
{
    auto* const bytes = static_cast<UNUM8*>(NewMemory(size));
    const std::size_t present = std::min(size, Left());
    if (present != 0)
        std::memcpy(bytes, next_, present);
    next_ += present;
    // A long block repeats its bytes.
    for (std::size_t i = present; i < size; ++i)
        bytes[i] = present == 0 ? 0 : bytes[i - present];
    return bytes;
}

UNUM8* RecordSource::ByteList(UNUM32& count)
{
    const UNUM32 kind = Below(4);
    count = kind < 2 ? Number() : Below(40);
    return kind == 0 ? nullptr : Bytes(std::min(count, BytesOfAnyCount));
}

template <class Entry, class Make> Entry* RecordSource::List(UNUM32& count, Make make)
{
    const UNUM32 kind = Below(4);
    count = kind < 2 ? Number() : Below(4);
    if (kind == 0)
        return nullptr;
    const UNUM32 present = std::min(count, EntriesOfAnyCount);
    auto* const list = static_cast<Entry*>(NewMemory(present * sizeof(Entry)));
    // A few different entries, repeated.
    constexpr UNUM32 most = 4;
    for (UNUM32 i = 0; i < present; ++i)
        list[i] = i < most ? make() : list[i % most];
    return list;
}

PDU_FLAG_DATA RecordSource::FlagData()
{
    PDU_FLAG_DATA flags = {};
    flags.pFlagData = ByteList(flags.NumFlagBytes);
    return flags;
}

PDU_PARAM_BYTEFIELD_DATA RecordSource::ByteField()
{
    PDU_PARAM_BYTEFIELD_DATA field = {};
    field.ParamMaxLen = Number();
    field.pDataArray = ByteList(field.ParamActLen);
    return field;
}

PDU_PARAM_LONGFIELD_DATA RecordSource::LongField()
{
    PDU_PARAM_LONGFIELD_DATA field = {};
    field.ParamMaxLen = Number();
    field.pDataArray = List<UNUM32>(field.ParamActLen, [&] { return Take<UNUM32>(); });
    return field;
}

PDU_PARAM_STRUCTFIELD_DATA RecordSource::StructField()
{
    PDU_PARAM_STRUCTFIELD_DATA field = {};
    field.ComParamStructType = Number();
    field.ParamMaxEntries = Number();
    field.ParamActEntries = Number();
    // Both structs have the same size; only the first element is read.
    field.pStructArray = NullOrNew(Take<PDU_PARAM_STRUCT_ACCESS_TIMING>());
    return field;
}

void* RecordSource::ParamValue(T_PDU_PT type)
{
    if (Below(8) == 0)
        return nullptr;
    switch (type) {
    case PDU_PT_BYTEFIELD:
        return New(ByteField());
    case PDU_PT_STRUCTFIELD:
        return New(StructField());
    case PDU_PT_LONGFIELD:
        return New(LongField());
    case PDU_PT_UNUM8:
    case PDU_PT_SNUM8:
        return Bytes(1);
    case PDU_PT_UNUM16:
    case PDU_PT_SNUM16:
        return Bytes(2);
    default:
        return Bytes(4);
    }
}

PDU_PARAM_ITEM RecordSource::ParamItem()
{
    PDU_PARAM_ITEM item = {};
    item.ItemType = Code(ItemTypeNames);
    item.ComParamId = Number();
    item.ComParamDataType = Code(ComParamTypeNames);
    item.ComParamClass = Code(ComParamClassNames);
    item.pComParamData = ParamValue(item.ComParamDataType);
    return item;
}

PDU_UNIQUE_RESP_ID_TABLE_ITEM RecordSource::ResponseTable()
{
    PDU_UNIQUE_RESP_ID_TABLE_ITEM table = {};
    table.ItemType = Coin() ? PDU_IT_UNIQUE_RESP_ID_TABLE : Number();
    table.pUniqueData = List<PDU_ECU_UNIQUE_RESP_DATA>(table.NumEntries, [&] {
        PDU_ECU_UNIQUE_RESP_DATA entry = {};
        entry.UniqueRespIdentifier = Coin() ? PDU_ID_UNDEF : Number();
        entry.pParams = List<PDU_PARAM_ITEM>(entry.NumParamItems, [&] { return ParamItem(); });
        return entry;
    });
    return table;
}

PDU_RSC_DATA RecordSource::ResourceData()
{
    PDU_RSC_DATA data = {};
    data.BusTypeId = Number();
    data.ProtocolId = Number();
    data.pDLCPinData = List<PDU_PIN_DATA>(data.NumPinData, [&] { return Take<PDU_PIN_DATA>(); });
    return data;
}

PDU_RSC_STATUS_ITEM RecordSource::ResourceStatus()
{
    PDU_RSC_STATUS_ITEM item = {};
    item.ItemType = Code(ItemTypeNames);
    item.pResourceStatusData =
        List<PDU_RSC_STATUS_DATA>(item.NumEntries, [&] { return Take<PDU_RSC_STATUS_DATA>(); });
    return item;
}

PDU_RSC_ID_ITEM_DATA RecordSource::ResourceIdsOfModule()
{
    PDU_RSC_ID_ITEM_DATA entry = {};
    entry.hMod = Handle();
    entry.pResourceIdArray = List<UNUM32>(entry.NumIds, [&] { return Number(); });
    return entry;
}

PDU_RSC_ID_ITEM RecordSource::ResourceIds()
{
    PDU_RSC_ID_ITEM item = {};
    item.ItemType = Code(ItemTypeNames);
    item.pResourceIdDataArray =
        List<PDU_RSC_ID_ITEM_DATA>(item.NumModules, [&] { return ResourceIdsOfModule(); });
    return item;
}

PDU_RSC_CONFLICT_ITEM RecordSource::Conflicts()
{
    PDU_RSC_CONFLICT_ITEM item = {};
    item.ItemType = Code(ItemTypeNames);
    item.pRscConflictData =
        List<PDU_RSC_CONFLICT_DATA>(item.NumEntries, [&] { return Take<PDU_RSC_CONFLICT_DATA>(); });
    return item;
}

PDU_MODULE_DATA RecordSource::Module()
{
    PDU_MODULE_DATA module = {};
    module.ModuleTypeId = Number();
    module.hMod = Handle();
    module.pVendorModuleName = Text();
    module.pVendorAdditionalInfo = Text();
    module.ModuleStatus = Code(StatusCodeNames);
    return module;
}

PDU_MODULE_ITEM RecordSource::Modules()
{
    PDU_MODULE_ITEM item = {};
    item.ItemType = Coin() ? PDU_IT_MODULE_ID : Number();
    item.pModuleData = List<PDU_MODULE_DATA>(item.NumEntries, [&] { return Module(); });
    return item;
}

PDU_IO_FILTER_DATA RecordSource::Filter()
{
    PDU_IO_FILTER_DATA filter = Take<PDU_IO_FILTER_DATA>();
    filter.FilterType = Code(FilterTypeNames);
    filter.FilterCompareSize = Coin() ? filter.FilterCompareSize : Below(14);
    return filter;
}

PDU_IO_FILTER_LIST RecordSource::Filters()
{
    PDU_IO_FILTER_LIST list = {};
    list.pFilterData = List<PDU_IO_FILTER_DATA>(list.NumFilterEntries, [&] { return Filter(); });
    return list;
}

PDU_IP_ADDR_INFO RecordSource::IpAddress()
{
    const UNUM32 version = 3 + Below(4);
    const std::size_t size = version == 6 ? 16 : version == 4 ? 4 : 1;
    return {version, Below(8) == 0 ? nullptr : Bytes(size)};
}

PDU_IO_VEHICLE_ID_REQUEST_DATA RecordSource::VehicleIdRequest()
{
    PDU_IO_VEHICLE_ID_REQUEST_DATA request = {};
    request.PreselectionMode = Number();
    request.PreselectionValue = Text();
    request.CombinationMode = Number();
    request.VehicleDiscoveryTime = Number();
    request.pDestinationAddresses =
        List<PDU_IP_ADDR_INFO>(request.NumDestinationAddresses, [&] { return IpAddress(); });
    return request;
}

PDU_EXP_RESP_DATA RecordSource::ExpectedResponse()
{
    PDU_EXP_RESP_DATA response = {};
    response.ResponseType = Number();
    response.AcceptanceId = Number();
    response.NumMaskPatternBytes = Below(40);
    response.pMaskData = Coin() ? Bytes(response.NumMaskPatternBytes) : nullptr;
    response.pPatternData = Coin() ? Bytes(response.NumMaskPatternBytes) : nullptr;
    response.NumUniqueRespIds = Below(MostIdentifiers + 1);
    if (Below(8) != 0) {
        response.pUniqueRespIds =
            reinterpret_cast<UNUM32*>(Bytes(response.NumUniqueRespIds * sizeof(UNUM32)));
    }
    return response;
}

PDU_COP_CTRL_DATA RecordSource::ControlData()
{
    PDU_COP_CTRL_DATA control = {};
    control.Time = Number();
    control.NumSendCycles = static_cast<SNUM32>(Number() - 3);
    control.NumReceiveCycles = static_cast<SNUM32>(Number() - 3);
    control.TempParamUpdate = Number();
    control.TxFlag = FlagData();
    control.pExpectedResponseArray =
        List<PDU_EXP_RESP_DATA>(control.NumPossibleExpectedResponses, [&] { return ExpectedResponse(); });
    return control;
}

PDU_RESULT_DATA RecordSource::Result()
{
    PDU_RESULT_DATA result = {};
    result.RxFlag = FlagData();
    result.UniqueRespIdentifier = Coin() ? PDU_ID_UNDEF : Number();
    result.AcceptanceId = Number();
    result.TimestampFlags = FlagData();
    result.TxMsgDoneTimestamp = Number();
    result.StartMsgTimestamp = Number();
    if (Coin()) {
        PDU_EXTRA_INFO info = {};
        info.pHeaderBytes = ByteList(info.NumHeaderBytes);
        info.pFooterBytes = ByteList(info.NumFooterBytes);
        result.pExtraInfo = New(info);
    }
    result.pDataBytes = ByteList(result.NumDataBytes);
    return result;
}

void* RecordSource::EventData(T_PDU_IT itemType)
{
    if (Below(8) == 0)
        return nullptr;
    switch (itemType) {
    case PDU_IT_RESULT:
        return New(Result());
    case PDU_IT_STATUS:
        return New(Code(StatusCodeNames));
    case PDU_IT_ERROR:
        return New(PDU_ERROR_DATA{.ErrorCodeId = Code(EventErrorNames), .ExtraErrorInfoId = Number()});
    case PDU_IT_INFO:
        return New(PDU_INFO_DATA{.InfoCode = Code(InfoCodeNames), .ExtraInfoData = Number()});
    default:
        return Bytes(1);
    }
}

PDU_EVENT_ITEM RecordSource::EventItem()
{
    constexpr T_PDU_IT types[] = {PDU_IT_RESULT, PDU_IT_STATUS, PDU_IT_ERROR, PDU_IT_INFO};
    PDU_EVENT_ITEM item = {};
    const UNUM32 type = Below(5);
    item.ItemType = type < 4 ? types[type] : Number();
    item.hCop = Handle();
    item.Timestamp = Number();
    item.pData = EventData(item.ItemType);
    return item;
}

void* RecordSource::ItemData(T_PDU_IT itemType)
{
    switch (itemType) {
    case PDU_IT_IO_BYTEARRAY: {
        PDU_IO_BYTEARRAY_DATA array = {};
        array.pData = ByteList(array.DataSize);
        return New(array);
    }
    case PDU_IT_IO_UNUM32:
        return Bytes(sizeof(UNUM32));
    case PDU_IT_IO_FILTER:
        return New(Filters());
    case PDU_IT_RSC_STATUS:
        return New(Take<PDU_RSC_STATUS_DATA>());
    case PDU_IT_PARAM:
        return New(ParamItem());
    case PDU_IT_RESULT:
    case PDU_IT_STATUS:
    case PDU_IT_ERROR:
    case PDU_IT_INFO: {
        // The event item inside has a type of its own.
        return New(EventItem());
    }
    case PDU_IT_RSC_ID:
        return New(ResourceIds());
    case PDU_IT_MODULE_ID:
        return New(Modules());
    case PDU_IT_UNIQUE_RESP_ID_TABLE:
        return New(ResponseTable());
    case PDU_IT_IO_VEHICLE_ID_REQUEST:
        return New(VehicleIdRequest());
    case PDU_IT_IO_VEHICLE_ID_REQUEST_EX:
        return New(PDU_IO_VEHICLE_ID_REQUEST_EX{.Request = VehicleIdRequest(), .Ver = Take<UNUM8>()});
    case PDU_IT_IO_ENTITY_STATUS:
        return Bytes(sizeof(PDU_IO_ENTITY_STATUS_DATA));
    default:
        // Known types hold up to two numbers; the data of an unknown type must not be read.
        return Bytes(NameOf(ItemTypeNames, itemType, "").empty() ? 0 : 2 * sizeof(UNUM32));
    }
}

PDU_DATA_ITEM RecordSource::DataItem()
{
    // This type is not in the table of names.
    const T_PDU_IT type = Below(16) == 0 ? PDU_IT_IO_VEHICLE_ID_REQUEST_EX : Code(ItemTypeNames);
    return {type, Below(16) == 0 ? nullptr : ItemData(type)};
}

PDU_VERSION_DATA RecordSource::Version()
{
    PDU_VERSION_DATA version = Take<PDU_VERSION_DATA>();
    for (CHAR8* name : {version.HwName, version.FwName, version.VendorName, version.PDUApiSwName})
        for (const char unwanted : {'\n', '\r', '\x1A'})
            std::replace(name, name + sizeof version.HwName, unwanted, '.');
    return version;
}

} // namespace marvane::testing
