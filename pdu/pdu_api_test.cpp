// The records in memory: order and width of every field, with nothing but natural alignment between them.
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "pdu/pdu_api.h"

namespace {

/// Width of a field by its letter: b, h and u are 1, 2 and 4 bytes, p is a pointer, f flags by value, t a
/// text of 64 and m a message of 12 bytes, r a whole request.
std::size_t Width(char letter)
{
    switch (letter) {
    case 'b':
        return 1;
    case 'h':
        return 2;
    case 'u':
        return 4;
    case 'p':
        return sizeof(void*);
    case 'f':
        return 2 * sizeof(void*);
    case 't':
        return 64;
    case 'm':
        return 12;
    default:
        return sizeof(void*) == 8 ? 40 : 24;
    }
}

std::size_t RoundedUp(std::size_t offset, std::size_t alignment)
{
    return (offset + alignment - 1) / alignment * alignment;
}

/// Expects these fields, of these widths, in this order, and no others.
template <class Record, class... Fields>
void ExpectLayout(const std::string& widths, Fields Record::*... fields)
{
    ASSERT_EQ(widths.size(), sizeof...(Fields));
    const Record record = {};
    const auto* const base = reinterpret_cast<const char*>(&record);
    std::size_t end = 0;
    std::size_t index = 0;
    const auto expectField = [&](const auto& field) {
        using Field = std::remove_cvref_t<decltype(field)>;
        EXPECT_EQ(sizeof(Field), Width(widths[index])) << "field " << index;
        const std::size_t offset = RoundedUp(end, alignof(Field));
        EXPECT_EQ(static_cast<std::size_t>(reinterpret_cast<const char*>(&field) - base), offset)
            << "field " << index;
        end = offset + sizeof(Field);
        ++index;
    };
    (expectField(record.*fields), ...);
    EXPECT_EQ(sizeof(Record), RoundedUp(end, alignof(Record)));
}

TEST(PduApi, ItemsAndComParams)
{
    ExpectLayout("up", &PDU_DATA_ITEM::ItemType, &PDU_DATA_ITEM::pData);
    ExpectLayout("uuuup", &PDU_PARAM_ITEM::ItemType, &PDU_PARAM_ITEM::ComParamId,
                 &PDU_PARAM_ITEM::ComParamDataType, &PDU_PARAM_ITEM::ComParamClass,
                 &PDU_PARAM_ITEM::pComParamData);
    ExpectLayout("uup", &PDU_PARAM_BYTEFIELD_DATA::ParamMaxLen, &PDU_PARAM_BYTEFIELD_DATA::ParamActLen,
                 &PDU_PARAM_BYTEFIELD_DATA::pDataArray);
    ExpectLayout("uup", &PDU_PARAM_LONGFIELD_DATA::ParamMaxLen, &PDU_PARAM_LONGFIELD_DATA::ParamActLen,
                 &PDU_PARAM_LONGFIELD_DATA::pDataArray);
    ExpectLayout("uuup", &PDU_PARAM_STRUCTFIELD_DATA::ComParamStructType,
                 &PDU_PARAM_STRUCTFIELD_DATA::ParamMaxEntries, &PDU_PARAM_STRUCTFIELD_DATA::ParamActEntries,
                 &PDU_PARAM_STRUCTFIELD_DATA::pStructArray);
    ExpectLayout("hbbbb", &PDU_PARAM_STRUCT_SESSION_TIMING::session,
                 &PDU_PARAM_STRUCT_SESSION_TIMING::P2Max_high, &PDU_PARAM_STRUCT_SESSION_TIMING::P2Max_low,
                 &PDU_PARAM_STRUCT_SESSION_TIMING::P2Star_high, &PDU_PARAM_STRUCT_SESSION_TIMING::P2Star_low);
    ExpectLayout("bbbbbb", &PDU_PARAM_STRUCT_ACCESS_TIMING::P2Min, &PDU_PARAM_STRUCT_ACCESS_TIMING::P2Max,
                 &PDU_PARAM_STRUCT_ACCESS_TIMING::P3Min, &PDU_PARAM_STRUCT_ACCESS_TIMING::P3Max,
                 &PDU_PARAM_STRUCT_ACCESS_TIMING::P4Min, &PDU_PARAM_STRUCT_ACCESS_TIMING::TimingSet);
}

TEST(PduApi, EventItemsAndWhatTheyCarry)
{
    ExpectLayout("up", &PDU_FLAG_DATA::NumFlagBytes, &PDU_FLAG_DATA::pFlagData);
    ExpectLayout("uupup", &PDU_EVENT_ITEM::ItemType, &PDU_EVENT_ITEM::hCop, &PDU_EVENT_ITEM::pCoPTag,
                 &PDU_EVENT_ITEM::Timestamp, &PDU_EVENT_ITEM::pData);
    ExpectLayout("fuufuupup", &PDU_RESULT_DATA::RxFlag, &PDU_RESULT_DATA::UniqueRespIdentifier,
                 &PDU_RESULT_DATA::AcceptanceId, &PDU_RESULT_DATA::TimestampFlags,
                 &PDU_RESULT_DATA::TxMsgDoneTimestamp, &PDU_RESULT_DATA::StartMsgTimestamp,
                 &PDU_RESULT_DATA::pExtraInfo, &PDU_RESULT_DATA::NumDataBytes, &PDU_RESULT_DATA::pDataBytes);
    ExpectLayout("uupp", &PDU_EXTRA_INFO::NumHeaderBytes, &PDU_EXTRA_INFO::NumFooterBytes,
                 &PDU_EXTRA_INFO::pHeaderBytes, &PDU_EXTRA_INFO::pFooterBytes);
    ExpectLayout("uu", &PDU_ERROR_DATA::ErrorCodeId, &PDU_ERROR_DATA::ExtraErrorInfoId);
    ExpectLayout("uu", &PDU_INFO_DATA::InfoCode, &PDU_INFO_DATA::ExtraInfoData);
}

TEST(PduApi, ControlDataAndResponses)
{
    ExpectLayout("uuuufup", &PDU_COP_CTRL_DATA::Time, &PDU_COP_CTRL_DATA::NumSendCycles,
                 &PDU_COP_CTRL_DATA::NumReceiveCycles, &PDU_COP_CTRL_DATA::TempParamUpdate,
                 &PDU_COP_CTRL_DATA::TxFlag, &PDU_COP_CTRL_DATA::NumPossibleExpectedResponses,
                 &PDU_COP_CTRL_DATA::pExpectedResponseArray);
    ExpectLayout("uuuppup", &PDU_EXP_RESP_DATA::ResponseType, &PDU_EXP_RESP_DATA::AcceptanceId,
                 &PDU_EXP_RESP_DATA::NumMaskPatternBytes, &PDU_EXP_RESP_DATA::pMaskData,
                 &PDU_EXP_RESP_DATA::pPatternData, &PDU_EXP_RESP_DATA::NumUniqueRespIds,
                 &PDU_EXP_RESP_DATA::pUniqueRespIds);
    ExpectLayout("uup", &PDU_UNIQUE_RESP_ID_TABLE_ITEM::ItemType, &PDU_UNIQUE_RESP_ID_TABLE_ITEM::NumEntries,
                 &PDU_UNIQUE_RESP_ID_TABLE_ITEM::pUniqueData);
    ExpectLayout("uup", &PDU_ECU_UNIQUE_RESP_DATA::UniqueRespIdentifier,
                 &PDU_ECU_UNIQUE_RESP_DATA::NumParamItems, &PDU_ECU_UNIQUE_RESP_DATA::pParams);
}

TEST(PduApi, ResourcesAndModules)
{
    ExpectLayout("uuup", &PDU_RSC_DATA::BusTypeId, &PDU_RSC_DATA::ProtocolId, &PDU_RSC_DATA::NumPinData,
                 &PDU_RSC_DATA::pDLCPinData);
    ExpectLayout("uu", &PDU_PIN_DATA::DLCPinNumber, &PDU_PIN_DATA::DLCPinTypeId);
    ExpectLayout("uup", &PDU_RSC_STATUS_ITEM::ItemType, &PDU_RSC_STATUS_ITEM::NumEntries,
                 &PDU_RSC_STATUS_ITEM::pResourceStatusData);
    ExpectLayout("uuu", &PDU_RSC_STATUS_DATA::hMod, &PDU_RSC_STATUS_DATA::ResourceId,
                 &PDU_RSC_STATUS_DATA::ResourceStatus);
    ExpectLayout("uup", &PDU_RSC_ID_ITEM::ItemType, &PDU_RSC_ID_ITEM::NumModules,
                 &PDU_RSC_ID_ITEM::pResourceIdDataArray);
    ExpectLayout("uup", &PDU_RSC_ID_ITEM_DATA::hMod, &PDU_RSC_ID_ITEM_DATA::NumIds,
                 &PDU_RSC_ID_ITEM_DATA::pResourceIdArray);
    ExpectLayout("uup", &PDU_RSC_CONFLICT_ITEM::ItemType, &PDU_RSC_CONFLICT_ITEM::NumEntries,
                 &PDU_RSC_CONFLICT_ITEM::pRscConflictData);
    ExpectLayout("uu", &PDU_RSC_CONFLICT_DATA::hMod, &PDU_RSC_CONFLICT_DATA::ResourceId);
    ExpectLayout("uup", &PDU_MODULE_ITEM::ItemType, &PDU_MODULE_ITEM::NumEntries,
                 &PDU_MODULE_ITEM::pModuleData);
    ExpectLayout("uuppu", &PDU_MODULE_DATA::ModuleTypeId, &PDU_MODULE_DATA::hMod,
                 &PDU_MODULE_DATA::pVendorModuleName, &PDU_MODULE_DATA::pVendorAdditionalInfo,
                 &PDU_MODULE_DATA::ModuleStatus);
}

TEST(PduApi, VersionData)
{
    ExpectLayout("uuutuuutuuttuu", &PDU_VERSION_DATA::MVCI_Part1StandardVersion,
                 &PDU_VERSION_DATA::MVCI_Part2StandardVersion, &PDU_VERSION_DATA::HwSerialNumber,
                 &PDU_VERSION_DATA::HwName, &PDU_VERSION_DATA::HwVersion, &PDU_VERSION_DATA::HwDate,
                 &PDU_VERSION_DATA::HwInterface, &PDU_VERSION_DATA::FwName, &PDU_VERSION_DATA::FwVersion,
                 &PDU_VERSION_DATA::FwDate, &PDU_VERSION_DATA::VendorName, &PDU_VERSION_DATA::PDUApiSwName,
                 &PDU_VERSION_DATA::PDUApiSwVersion, &PDU_VERSION_DATA::PDUApiSwDate);
}

TEST(PduApi, InputAndOutputItems)
{
    ExpectLayout("uu", &PDU_IO_PROG_VOLTAGE_DATA::ProgVoltage_mv, &PDU_IO_PROG_VOLTAGE_DATA::PinOnDLC);
    ExpectLayout("up", &PDU_IO_BYTEARRAY_DATA::DataSize, &PDU_IO_BYTEARRAY_DATA::pData);
    ExpectLayout("uu", &PDU_IO_EVENT_QUEUE_PROPERTY_DATA::QueueSize,
                 &PDU_IO_EVENT_QUEUE_PROPERTY_DATA::QueueMode);
    ExpectLayout("up", &PDU_IO_FILTER_LIST::NumFilterEntries, &PDU_IO_FILTER_LIST::pFilterData);
    ExpectLayout("uuumm", &PDU_IO_FILTER_DATA::FilterType, &PDU_IO_FILTER_DATA::FilterNumber,
                 &PDU_IO_FILTER_DATA::FilterCompareSize, &PDU_IO_FILTER_DATA::FilterMaskMessage,
                 &PDU_IO_FILTER_DATA::FilterPatternMessage);
    ExpectLayout("upuuup", &PDU_IO_VEHICLE_ID_REQUEST_DATA::PreselectionMode,
                 &PDU_IO_VEHICLE_ID_REQUEST_DATA::PreselectionValue,
                 &PDU_IO_VEHICLE_ID_REQUEST_DATA::CombinationMode,
                 &PDU_IO_VEHICLE_ID_REQUEST_DATA::VehicleDiscoveryTime,
                 &PDU_IO_VEHICLE_ID_REQUEST_DATA::NumDestinationAddresses,
                 &PDU_IO_VEHICLE_ID_REQUEST_DATA::pDestinationAddresses);
    ExpectLayout("rb", &PDU_IO_VEHICLE_ID_REQUEST_EX::Request, &PDU_IO_VEHICLE_ID_REQUEST_EX::Ver);
    ExpectLayout("up", &PDU_IP_ADDR_INFO::IpVersion, &PDU_IP_ADDR_INFO::pAddress);
    ExpectLayout("uu", &PDU_IO_ETH_SWITCH_STATE_DATA::State, &PDU_IO_ETH_SWITCH_STATE_DATA::PinNumber);
    ExpectLayout("uu", &PDU_IO_ENTITY_ADDRESS_DATA::LogicalAddress, &PDU_IO_ENTITY_ADDRESS_DATA::CtrlTimeout);
    ExpectLayout("uuuu", &PDU_IO_ENTITY_STATUS_DATA::EntityType, &PDU_IO_ENTITY_STATUS_DATA::TcpClientsMax,
                 &PDU_IO_ENTITY_STATUS_DATA::TcpClients, &PDU_IO_ENTITY_STATUS_DATA::MaxDataSize);
}

TEST(PduApi, TheUndefinedValues)
{
    EXPECT_EQ(PDU_HANDLE_UNDEF, 0xFFFFFFFFu);
    EXPECT_EQ(PDU_ID_UNDEF, 0xFFFFFFFEu);
}

} // namespace
