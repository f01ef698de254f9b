// All 29 functions: arguments, results and statuses are passed on unchanged.
#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

// Addresses of more than 32 bits where pointers have them.
constexpr auto SomeAddress = static_cast<std::uintptr_t>(0x123456789A);
constexpr auto OtherAddress = static_cast<std::uintptr_t>(0x1122334455);

/// A pointer that must not be followed when the call fails.
template <class Pointed> Pointed* Opaque(std::uintptr_t address)
{
    return reinterpret_cast<Pointed*>(address);
}

/// One call of the table: how it is made, and the arguments that the target must receive.
struct Forwarded
{
    const char* Function;
    T_PDU_ERROR (*Call)(const CPduDll& api);
    std::vector<std::uint64_t> Arguments;
};

UNUM32 Place[4] = {11, 22, 33, 44};
std::uint64_t At(const void* pointer)
{
    return reinterpret_cast<std::uintptr_t>(pointer);
}

PDU_RSC_DATA Resource = {.BusTypeId = 1, .ProtocolId = 2, .NumPinData = 0, .pDLCPinData = nullptr};
PDU_FLAG_DATA Flags = {.NumFlagBytes = 0, .pFlagData = nullptr};
PDU_COP_CTRL_DATA Control = {.Time = 1,
                             .NumSendCycles = 2,
                             .NumReceiveCycles = 3,
                             .TempParamUpdate = 4,
                             .TxFlag = {0, nullptr},
                             .NumPossibleExpectedResponses = 0,
                             .pExpectedResponseArray = nullptr};
PDU_PARAM_ITEM Param = {.ItemType = PDU_IT_PARAM,
                        .ComParamId = 1,
                        .ComParamDataType = PDU_PT_UNUM32,
                        .ComParamClass = PDU_PC_TIMING,
                        .pComParamData = &Place[0]};
PDU_PARAM_ITEM* ParamPlace = nullptr;
PDU_UNIQUE_RESP_ID_TABLE_ITEM Table = {
    .ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .NumEntries = 0, .pUniqueData = nullptr};
PDU_UNIQUE_RESP_ID_TABLE_ITEM* TablePlace = nullptr;
PDU_MODULE_ITEM Modules = {.ItemType = PDU_IT_MODULE_ID, .NumEntries = 0, .pModuleData = nullptr};
PDU_MODULE_ITEM* ModulesPlace = nullptr;
PDU_RSC_ID_ITEM* ResourceIdsPlace = nullptr;
PDU_RSC_STATUS_ITEM ResourceStatus = {
    .ItemType = PDU_IT_RSC_STATUS, .NumEntries = 0, .pResourceStatusData = nullptr};
PDU_RSC_CONFLICT_ITEM* ConflictsPlace = nullptr;
PDU_EVENT_ITEM* EventPlace = nullptr;
PDU_DATA_ITEM Input = {.ItemType = PDU_IT_IO_UNUM32, .pData = &Place[1]};
PDU_DATA_ITEM* OutputPlace = nullptr;
PDU_VERSION_DATA Version = {};
UNUM8 Data[] = {1, 2, 3};
CHAR8 Name[] = "CP_Baudrate";

const std::vector<Forwarded>& Table27()
{
    static const std::vector<Forwarded> table = {
        {"PDUModuleConnect", [](const CPduDll& api) { return api.PDUModuleConnect(0x81); }, {0x81}},
        {"PDUModuleDisconnect", [](const CPduDll& api) { return api.PDUModuleDisconnect(0x82); }, {0x82}},
        {"PDUGetTimestamp",
         [](const CPduDll& api) { return api.PDUGetTimestamp(0x83, Place); },
         {0x83, At(Place)}},
        {"PDUIoCtl",
         [](const CPduDll& api) { return api.PDUIoCtl(0x84, 0x85, 0x86, &Input, &OutputPlace); },
         {0x84, 0x85, 0x86, At(&Input), At(&OutputPlace)}},
        {"PDUGetVersion",
         [](const CPduDll& api) { return api.PDUGetVersion(0x87, &Version); },
         {0x87, At(&Version)}},
        {"PDUGetStatus",
         [](const CPduDll& api) { return api.PDUGetStatus(1, 2, 3, &Place[0], &Place[1], &Place[2]); },
         {1, 2, 3, At(&Place[0]), At(&Place[1]), At(&Place[2])}},
        {"PDUGetLastError",
         [](const CPduDll& api) {
             return api.PDUGetLastError(4, 5, &Place[0], &Place[1], &Place[2], &Place[3]);
         },
         {4, 5, At(&Place[0]), At(&Place[1]), At(&Place[2]), At(&Place[3])}},
        {"PDUGetResourceStatus",
         [](const CPduDll& api) { return api.PDUGetResourceStatus(&ResourceStatus); },
         {At(&ResourceStatus)}},
        {"PDUCreateComLogicalLink",
         [](const CPduDll& api) {
             return api.PDUCreateComLogicalLink(6, &Resource, 7, Opaque<void>(SomeAddress), &Place[3],
                                                &Flags);
         },
         {6, At(&Resource), 7, SomeAddress, At(&Place[3]), At(&Flags)}},
        {"PDUDestroyComLogicalLink",
         [](const CPduDll& api) { return api.PDUDestroyComLogicalLink(8, 9); },
         {8, 9}},
        {"PDUConnect", [](const CPduDll& api) { return api.PDUConnect(10, 0xFFFFFFFF); }, {10, 0xFFFFFFFF}},
        {"PDUDisconnect",
         [](const CPduDll& api) { return api.PDUDisconnect(0xFFFFFFFF, 11); },
         {0xFFFFFFFF, 11}},
        {"PDULockResource", [](const CPduDll& api) { return api.PDULockResource(12, 13, 14); }, {12, 13, 14}},
        {"PDUUnlockResource",
         [](const CPduDll& api) { return api.PDUUnlockResource(15, 16, 17); },
         {15, 16, 17}},
        {"PDUGetComParam",
         [](const CPduDll& api) { return api.PDUGetComParam(18, 19, 20, &ParamPlace); },
         {18, 19, 20, At(&ParamPlace)}},
        {"PDUSetComParam",
         [](const CPduDll& api) { return api.PDUSetComParam(21, 22, &Param); },
         {21, 22, At(&Param)}},
        {"PDUStartComPrimitive",
         [](const CPduDll& api) {
             return api.PDUStartComPrimitive(23, 24, PDU_COPT_SENDRECV, 3, Data, &Control,
                                             Opaque<void>(0xABCDEF), Place);
         },
         {23, 24, PDU_COPT_SENDRECV, 3, At(Data), At(&Control), 0xABCDEF, At(Place)}},
        {"PDUCancelComPrimitive",
         [](const CPduDll& api) { return api.PDUCancelComPrimitive(25, 26, 27); },
         {25, 26, 27}},
        {"PDUGetEventItem",
         [](const CPduDll& api) { return api.PDUGetEventItem(28, 29, &EventPlace); },
         {28, 29, At(&EventPlace)}},
        {"PDUDestroyItem",
         [](const CPduDll& api) { return api.PDUDestroyItem(Opaque<void>(OtherAddress)); },
         {OtherAddress}},
        {"PDURegisterEventCallback",
         [](const CPduDll& api) { return api.PDURegisterEventCallback(30, 31, nullptr); },
         {30, 31, 0}},
        {"PDUGetObjectId",
         [](const CPduDll& api) { return api.PDUGetObjectId(PDU_OBJT_COMPARAM, Name, Place); },
         {PDU_OBJT_COMPARAM, At(Name), At(Place)}},
        {"PDUGetModuleIds",
         [](const CPduDll& api) { return api.PDUGetModuleIds(&ModulesPlace); },
         {At(&ModulesPlace)}},
        {"PDUGetResourceIds",
         [](const CPduDll& api) { return api.PDUGetResourceIds(32, &Resource, &ResourceIdsPlace); },
         {32, At(&Resource), At(&ResourceIdsPlace)}},
        {"PDUGetConflictingResources",
         [](const CPduDll& api) { return api.PDUGetConflictingResources(33, &Modules, &ConflictsPlace); },
         {33, At(&Modules), At(&ConflictsPlace)}},
        {"PDUGetUniqueRespIdTable",
         [](const CPduDll& api) { return api.PDUGetUniqueRespIdTable(34, 35, &TablePlace); },
         {34, 35, At(&TablePlace)}},
        {"PDUSetUniqueRespIdTable",
         [](const CPduDll& api) { return api.PDUSetUniqueRespIdTable(36, 37, &Table); },
         {36, 37, At(&Table)}},
    };
    return table;
}

/// Each function of the table with null for every pointer.
const std::vector<Forwarded>& NullTable()
{
    static const std::vector<Forwarded> table = {
        {"PDUGetTimestamp", [](const CPduDll& api) { return api.PDUGetTimestamp(1, nullptr); }, {1, 0}},
        {"PDUIoCtl",
         [](const CPduDll& api) { return api.PDUIoCtl(1, 2, 3, nullptr, nullptr); },
         {1, 2, 3, 0, 0}},
        {"PDUGetVersion", [](const CPduDll& api) { return api.PDUGetVersion(1, nullptr); }, {1, 0}},
        {"PDUGetStatus",
         [](const CPduDll& api) { return api.PDUGetStatus(1, 2, 3, &Place[0], nullptr, nullptr); },
         {1, 2, 3, At(&Place[0]), 0, 0}},
        {"PDUGetLastError",
         [](const CPduDll& api) { return api.PDUGetLastError(1, 2, &Place[0], nullptr, nullptr, nullptr); },
         {1, 2, At(&Place[0]), 0, 0, 0}},
        {"PDUGetResourceStatus", [](const CPduDll& api) { return api.PDUGetResourceStatus(nullptr); }, {0}},
        {"PDUCreateComLogicalLink",
         [](const CPduDll& api) {
             return api.PDUCreateComLogicalLink(1, nullptr, 2, nullptr, nullptr, nullptr);
         },
         {1, 0, 2, 0, 0, 0}},
        {"PDUGetComParam",
         [](const CPduDll& api) { return api.PDUGetComParam(1, 2, 3, nullptr); },
         {1, 2, 3, 0}},
        {"PDUSetComParam", [](const CPduDll& api) { return api.PDUSetComParam(1, 2, nullptr); }, {1, 2, 0}},
        {"PDUStartComPrimitive",
         [](const CPduDll& api) {
             return api.PDUStartComPrimitive(1, 2, 3, 4, nullptr, nullptr, nullptr, nullptr);
         },
         {1, 2, 3, 4, 0, 0, 0, 0}},
        {"PDUGetEventItem", [](const CPduDll& api) { return api.PDUGetEventItem(1, 2, nullptr); }, {1, 2, 0}},
        {"PDUDestroyItem", [](const CPduDll& api) { return api.PDUDestroyItem(nullptr); }, {0}},
        {"PDUGetObjectId",
         [](const CPduDll& api) { return api.PDUGetObjectId(PDU_OBJT_RESOURCE, nullptr, nullptr); },
         {PDU_OBJT_RESOURCE, 0, 0}},
        {"PDUGetObjectId",
         [](const CPduDll& api) { return api.PDUGetObjectId(PDU_OBJT_RESOURCE, nullptr, Place); },
         {PDU_OBJT_RESOURCE, 0, At(Place)}},
        {"PDUGetModuleIds", [](const CPduDll& api) { return api.PDUGetModuleIds(nullptr); }, {0}},
        {"PDUGetResourceIds",
         [](const CPduDll& api) { return api.PDUGetResourceIds(1, nullptr, nullptr); },
         {1, 0, 0}},
        {"PDUGetConflictingResources",
         [](const CPduDll& api) { return api.PDUGetConflictingResources(1, nullptr, nullptr); },
         {1, 0, 0}},
        {"PDUGetUniqueRespIdTable",
         [](const CPduDll& api) { return api.PDUGetUniqueRespIdTable(1, 2, nullptr); },
         {1, 2, 0}},
        {"PDUSetUniqueRespIdTable",
         [](const CPduDll& api) { return api.PDUSetUniqueRespIdTable(1, 2, nullptr); },
         {1, 2, 0}},
    };
    return table;
}

void ExpectForwarded(Session& session, const std::vector<Forwarded>& table, T_PDU_ERROR status)
{
    session.Construct();
    session.Fake().TakeCalls();
    session.Fake().Answer = [status](const FakeCall&) { return status; };
    for (const Forwarded& call : table) {
        EXPECT_EQ(call.Call(session.Api()), status) << call.Function;
        const auto seen = session.Fake().TakeCalls();
        ASSERT_EQ(seen.size(), 1u) << call.Function;
        EXPECT_EQ(seen[0].Function, call.Function);
        EXPECT_EQ(seen[0].Arguments, call.Arguments) << call.Function;
    }
}

TEST(Forwarding, TheTableHasAllCallsExceptTheTwoOfTheLifecycle)
{
    EXPECT_EQ(Table27().size(), 27u);
}

TEST(Forwarding, ArgumentsAndFailuresPassUnchangedWithEverythingLogged)
{
    Session session({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}, {"LogCallOuts", "1"}});
    ExpectForwarded(session, Table27(), 0x7654);
}

TEST(Forwarding, ArgumentsAndSuccessesPassUnchangedWithEverythingLogged)
{
    Session session({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}, {"LogCallOuts", "1"}});
    ExpectForwarded(session, Table27(), PDU_STATUS_NOERROR);
}

TEST(Forwarding, ArgumentsAndStatusesPassUnchangedWithLoggingOff)
{
    Session session({{"LogEnabled", "0"}});
    ExpectForwarded(session, Table27(), PDU_ERR_RSC_LOCKED);
}

TEST(Forwarding, NullForEveryPointerPassesWithASuccess)
{
    Session session({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}, {"LogCallOuts", "1"}});
    ExpectForwarded(session, NullTable(), PDU_STATUS_NOERROR);
}

TEST(Forwarding, NullForEveryPointerPassesWithAFailure)
{
    Session session({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}, {"LogCallOuts", "1"}});
    ExpectForwarded(session, NullTable(), PDU_ERR_INVALID_PARAMETERS);
    session.Fake().Answer = [](const FakeCall&) { return PDU_ERR_INVALID_PARAMETERS; };
    EXPECT_EQ(session.Api().PDUGetStatus(1, 2, 3, nullptr, nullptr, nullptr), PDU_ERR_INVALID_PARAMETERS);
    EXPECT_EQ(session.Api().PDUGetLastError(1, 2, nullptr, nullptr, nullptr, nullptr),
              PDU_ERR_INVALID_PARAMETERS);
}

TEST(Forwarding, WithoutATargetEveryCallIsNotConstructedAndAccessesNothing)
{
    Session session({}, "no_such_library");
    session.Construct();
    UNUM32 time = 5;
    EXPECT_EQ(session.Api().PDUGetTimestamp(1, &time), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_EQ(time, 5u);
    for (const Forwarded& call : Table27())
        EXPECT_EQ(call.Call(session.Api()), PDU_ERR_PDUAPI_NOT_CONSTRUCTED) << call.Function;
}

TEST(Forwarding, AnExceptionOfTheTargetReachesTheApplication)
{
    if (platform::PathSeparator != '/')
        GTEST_SKIP()
            << "each of these Windows binaries has a runtime of its own, which exceptions do not cross";
    Session session;
    session.Construct();
    session.Fake().Answer = [](const FakeCall&) -> T_PDU_ERROR { throw std::string("from the target"); };
    EXPECT_THROW(session.Api().PDUConnect(1, 2), std::string);
    session.Fake().Answer = nullptr;
    EXPECT_EQ(session.Logged([&] { session.Api().PDUDisconnect(1, 2); }),
              "{stamp} + PDUDisconnect(hMod=0x00000001, hCLL=0x00000002)\n"
              "{stamp} - PDUDisconnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

} // namespace
} // namespace marvane::testing
