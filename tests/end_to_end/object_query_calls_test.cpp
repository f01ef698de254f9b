// PDUGetObjectId and the names that the logger learns from it; PDUGetModuleIds.
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/call_test.h"

namespace marvane::testing {
namespace {

class ObjectIdCall : public RunningCallTest
{
protected:
    /// Calls PDUGetObjectId, which the target answers with this id and status. Returns the status.
    T_PDU_ERROR Ask(T_PDU_OBJT type, const std::string& name, UNUM32 id,
                    T_PDU_ERROR status = PDU_STATUS_NOERROR)
    {
        Fake().Answer = [id, status](const FakeCall& call) {
            At<UNUM32>(call.Arguments[2]) = id;
            return status;
        };
        std::string asked = name;
        UNUM32 place = 0;
        const T_PDU_ERROR result = Api().PDUGetObjectId(type, asked.data(), &place);
        Fake().Answer = nullptr;
        Fake().TakeCalls();
        return result;
    }

    /// A call with a ComParam's name, whose output is `id_`.
    LoggedCall Call()
    {
        return {.Name = "PDUGetObjectId",
                .Call = [this] { return Api().PDUGetObjectId(PDU_OBJT_COMPARAM, name_, &id_); },
                .Seen = {PDU_OBJT_COMPARAM, Raw(name_), Raw(&id_)},
                .Arguments = arguments_,
                .After = ResultLines("{stamp}    <--  pPduObjectId  \t= 42\n")};
    }

    /// How a ComParam is shown in the argument list of PDUGetComParam.
    std::string ComParamText(UNUM32 id)
    {
        const std::string text = Logged([&] { Api().PDUGetComParam(1, 2, id, nullptr); });
        const std::size_t begin = text.find("ParamID=");
        return text.substr(begin, text.find(", pParamItem") - begin);
    }

    /// How an I/O control is shown in the argument list of PDUIoCtl.
    std::string IoControlText(UNUM32 id)
    {
        const std::string text = Logged([&] { Api().PDUIoCtl(1, 2, id, nullptr, nullptr); });
        const std::size_t begin = text.find("IoCtlCommandId=");
        return text.substr(begin, text.find(", pInputData") - begin);
    }

    /// How a resource is shown in the argument list of PDUCreateComLogicalLink.
    std::string ResourceText(UNUM32 id)
    {
        AnswerAll(PDU_ERR_FCT_FAILED);
        const std::string text =
            Logged([&] { Api().PDUCreateComLogicalLink(1, nullptr, id, nullptr, nullptr, nullptr); });
        Fake().Answer = nullptr;
        const std::size_t begin = text.find("resourceId=");
        return text.substr(begin, text.find(", pCLLTag") - begin);
    }

    /// How a bus type, a protocol and a pin type with this id are shown in the request of PDUGetResourceIds.
    std::string RequestText(UNUM32 id)
    {
        PDU_PIN_DATA pin = {.DLCPinNumber = 1, .DLCPinTypeId = id};
        PDU_RSC_DATA data = {.BusTypeId = id, .ProtocolId = id, .NumPinData = 1, .pDLCPinData = &pin};
        const std::string text = Logged([&] { Api().PDUGetResourceIds(1, &data, nullptr); });
        const std::size_t begin = text.find("BusTypeId");
        return text.substr(begin, text.find("{stamp} - ") - begin);
    }

    CHAR8 name_[12] = "CP_Baudrate";
    UNUM32 id_ = 42;
    const std::string arguments_ =
        "(pduObjectType=PDU_OBJT_COMPARAM (0x8024), pShortname=\"CP_Baudrate\", pPduObjectId=" +
        PointerText(&id_) + ")";
};

TEST_F(ObjectIdCall, TheReturnedIdIsShown)
{
    Fake().Answer = [](const FakeCall& call) {
        At<UNUM32>(call.Arguments[2]) = 7;
        return PDU_STATUS_NOERROR;
    };
    EXPECT_EQ(
        Logged([&] { EXPECT_EQ(Api().PDUGetObjectId(PDU_OBJT_COMPARAM, name_, &id_), PDU_STATUS_NOERROR); }),
        "{stamp} + PDUGetObjectId" + arguments_ +
            "\n{stamp}    <--  pPduObjectId  \t= 7\n"
            "{stamp} - PDUGetObjectId<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetObjectId", {0x8024, Raw(name_), Raw(&id_)});
    EXPECT_EQ(id_, 7u);
    EXPECT_STREQ(name_, "CP_Baudrate");
}

TEST_F(ObjectIdCall, TheIdIsDecodedAsAResult)
{
    ExpectAtAllLevels({Call()});
}

TEST_F(ObjectIdCall, AFailureShowsTheFormerValue)
{
    LoggedCall call = Call();
    call.Status = PDU_ERR_INVALID_PARAMETERS;
    call.StatusText = "PDU_ERR_INVALID_PARAMETERS (0x0050)";
    ExpectAtAllLevels({call});
}

TEST_F(ObjectIdCall, ANameIsNotLearnedFromAFailure)
{
    EXPECT_EQ(Ask(PDU_OBJT_COMPARAM, "CP_Baudrate", 7, PDU_ERR_FCT_FAILED), PDU_ERR_FCT_FAILED);
    EXPECT_EQ(ComParamText(7), "ParamID=[NOT YET READ] (7)");
    Ask(PDU_OBJT_COMPARAM, "CP_P2Max", 7);
    EXPECT_EQ(ComParamText(7), "ParamID=CP_P2Max (7)");
}

TEST_F(ObjectIdCall, AFailureChangesNoName)
{
    Ask(PDU_OBJT_COMPARAM, "CP_Baudrate", 7);
    Ask(PDU_OBJT_COMPARAM, "CP_P2Max", 7, PDU_ERR_FCT_FAILED);
    EXPECT_EQ(ComParamText(7), "ParamID=CP_Baudrate (7)");
}

TEST_F(ObjectIdCall, ANullOutputPointerGivesNoLineAndNoName)
{
    EXPECT_EQ(
        Logged([&] { Api().PDUGetObjectId(PDU_OBJT_COMPARAM, name_, nullptr); }),
        "{stamp} + PDUGetObjectId(pduObjectType=PDU_OBJT_COMPARAM (0x8024), pShortname=\"CP_Baudrate\", "
        "pPduObjectId=" +
            PointerText(nullptr) + ")\n{stamp} - PDUGetObjectId<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetObjectId", {0x8024, Raw(name_), 0});
    EXPECT_EQ(ComParamText(0), "ParamID=[NOT YET READ] (0)");
}

TEST_F(ObjectIdCall, ANullNameIsMarkedInTheArguments)
{
    AnswerAll(PDU_ERR_INVALID_PARAMETERS);
    EXPECT_EQ(
        Logged([&] { Api().PDUGetObjectId(PDU_OBJT_RESOURCE, nullptr, &id_); }),
        "{stamp} + PDUGetObjectId(pduObjectType=PDU_OBJT_RESOURCE (0x8026), pShortname=\"<NULL STRING>\", "
        "pPduObjectId=" +
            PointerText(&id_) +
            ")\n{stamp}    <--  pPduObjectId  \t= 42\n"
            "{stamp} - PDUGetObjectId<PDU_ERR_INVALID_PARAMETERS (0x0050)>\n");
    ExpectSeen("PDUGetObjectId", {0x8026, 0, Raw(&id_)});
}

TEST_F(ObjectIdCall, NullForNameAndOutputIsForwarded)
{
    EXPECT_EQ(
        Logged([&] { Api().PDUGetObjectId(PDU_OBJT_RESOURCE, nullptr, nullptr); }),
        "{stamp} + PDUGetObjectId(pduObjectType=PDU_OBJT_RESOURCE (0x8026), pShortname=\"<NULL STRING>\", "
        "pPduObjectId=" +
            PointerText(nullptr) + ")\n{stamp} - PDUGetObjectId<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetObjectId", {0x8026, 0, 0});
}

TEST_F(ObjectIdCall, ANullNameIsNotLearned)
{
    EXPECT_EQ(Api().PDUGetObjectId(PDU_OBJT_COMPARAM, nullptr, &id_), PDU_STATUS_NOERROR);
    EXPECT_EQ(ComParamText(42), "ParamID=[NOT YET READ] (42)");
}

TEST_F(ObjectIdCall, AFailureWithoutDecodedResultsReadsNoId)
{
    Reconfigure(Levels{.Results = 0});
    AnswerAll(PDU_ERR_INVALID_PARAMETERS);
    const auto wild = reinterpret_cast<UNUM32*>(std::uintptr_t{8});
    EXPECT_EQ(Api().PDUGetObjectId(PDU_OBJT_COMPARAM, name_, wild), PDU_ERR_INVALID_PARAMETERS);
    ExpectSeen("PDUGetObjectId", {0x8024, Raw(name_), 8});
}

TEST_F(ObjectIdCall, EachObjectTypeHasItsNameInTheArguments)
{
    const auto type = [&](T_PDU_OBJT value) {
        const std::string text = Logged([&] { Api().PDUGetObjectId(value, name_, nullptr); });
        return text.substr(0, text.find(", "));
    };
    EXPECT_EQ(type(0x8021), "{stamp} + PDUGetObjectId(pduObjectType=PDU_OBJT_PROTOCOL (0x8021)");
    EXPECT_EQ(type(0x8022), "{stamp} + PDUGetObjectId(pduObjectType=PDU_OBJT_BUSTYPE (0x8022)");
    EXPECT_EQ(type(0x8023), "{stamp} + PDUGetObjectId(pduObjectType=PDU_OBJT_IO_CTRL (0x8023)");
    EXPECT_EQ(type(0x8024), "{stamp} + PDUGetObjectId(pduObjectType=PDU_OBJT_COMPARAM (0x8024)");
    EXPECT_EQ(type(0x8025), "{stamp} + PDUGetObjectId(pduObjectType=PDU_OBJT_PINTYPE (0x8025)");
    EXPECT_EQ(type(0x8026), "{stamp} + PDUGetObjectId(pduObjectType=PDU_OBJT_RESOURCE (0x8026)");
    EXPECT_EQ(type(0x8020), "{stamp} + PDUGetObjectId(pduObjectType=<NULL> (0x8020)");
    EXPECT_EQ(type(0), "{stamp} + PDUGetObjectId(pduObjectType=<NULL> (0x0000)");
    EXPECT_EQ(type(0xFFFFFFFF), "{stamp} + PDUGetObjectId(pduObjectType=<NULL> (0xFFFFFFFF)");
}

TEST_F(ObjectIdCall, AComParamShowsTheShortNameThatTheApplicationUsed)
{
    EXPECT_EQ(ComParamText(7), "ParamID=[NOT YET READ] (7)");
    Ask(PDU_OBJT_COMPARAM, "CP_Baudrate", 7);
    EXPECT_EQ(ComParamText(7), "ParamID=CP_Baudrate (7)");
    EXPECT_EQ(ComParamText(8), "ParamID=[NOT YET READ] (8)");
}

TEST_F(ObjectIdCall, AnIdKeepsItsFirstName)
{
    Ask(PDU_OBJT_COMPARAM, "CP_Baudrate", 7);
    Ask(PDU_OBJT_COMPARAM, "CP_P2Max", 7);
    EXPECT_EQ(ComParamText(7), "ParamID=CP_Baudrate (7)");
}

TEST_F(ObjectIdCall, AnotherIdUnderTheSameNameIsLearnedToo)
{
    Ask(PDU_OBJT_COMPARAM, "CP_Baudrate", 7);
    Ask(PDU_OBJT_COMPARAM, "CP_Baudrate", 8);
    EXPECT_EQ(ComParamText(7), "ParamID=CP_Baudrate (7)");
    EXPECT_EQ(ComParamText(8), "ParamID=CP_Baudrate (8)");
}

TEST_F(ObjectIdCall, TheNameIsACopyOfTheApplicationsString)
{
    Fake().Answer = [](const FakeCall& call) {
        At<UNUM32>(call.Arguments[2]) = 7;
        return PDU_STATUS_NOERROR;
    };
    Api().PDUGetObjectId(PDU_OBJT_COMPARAM, name_, &id_);
    Fake().Answer = nullptr;
    std::fill(std::begin(name_), std::end(name_), 'x');
    EXPECT_EQ(ComParamText(7), "ParamID=CP_Baudrate (7)");
}

TEST_F(ObjectIdCall, OneIdUnderTwoTypesHasTwoNames)
{
    Ask(PDU_OBJT_COMPARAM, "CP_Baudrate", 7);
    Ask(PDU_OBJT_IO_CTRL, "PDU_IOCTL_RESET", 7);
    EXPECT_EQ(ComParamText(7), "ParamID=CP_Baudrate (7)");
    EXPECT_EQ(IoControlText(7), "IoCtlCommandId=7 (PDU_IOCTL_RESET)");
    EXPECT_EQ(ResourceText(7), "resourceId=<UNKNOWN> (7)");
}

TEST_F(ObjectIdCall, NamesAppearWhereObjectsOfTheirTypeAreShown)
{
    EXPECT_EQ(RequestText(7), "BusTypeId = <UNKNOWN> (7), ProtocolId = <UNKNOWN> (7), NumPinData = 1\n"
                              "{stamp}     >>> pDLCPinData[0]:\tNum =  1, Type = <UNKNOWN> (7)\n");
    Ask(PDU_OBJT_PROTOCOL, "ISO_UDS", 7);
    EXPECT_EQ(RequestText(7), "BusTypeId = <UNKNOWN> (7), ProtocolId = ISO_UDS (7), NumPinData = 1\n"
                              "{stamp}     >>> pDLCPinData[0]:\tNum =  1, Type = <UNKNOWN> (7)\n");
    Ask(PDU_OBJT_BUSTYPE, "ISO_11898", 7);
    Ask(PDU_OBJT_PINTYPE, "HI", 7);
    EXPECT_EQ(RequestText(7), "BusTypeId = ISO_11898 (7), ProtocolId = ISO_UDS (7), NumPinData = 1\n"
                              "{stamp}     >>> pDLCPinData[0]:\tNum =  1, Type = HI (7)\n");
    EXPECT_EQ(ResourceText(7), "resourceId=<UNKNOWN> (7)");
    Ask(PDU_OBJT_RESOURCE, "RSC_CAN", 7);
    EXPECT_EQ(ResourceText(7), "resourceId=RSC_CAN (7)");
    EXPECT_EQ(ComParamText(7), "ParamID=[NOT YET READ] (7)");
    EXPECT_EQ(IoControlText(7), "IoCtlCommandId=7 ([NOT YET READ])");
}

TEST_F(ObjectIdCall, AnUnknownTypeIsAcceptedAndShownNowhere)
{
    id_ = 7;
    EXPECT_EQ(
        Logged([&] { Api().PDUGetObjectId(0x8027, name_, &id_); }),
        "{stamp} + PDUGetObjectId(pduObjectType=<NULL> (0x8027), pShortname=\"CP_Baudrate\", pPduObjectId=" +
            PointerText(&id_) +
            ")\n{stamp}    <--  pPduObjectId  \t= 7\n"
            "{stamp} - PDUGetObjectId<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetObjectId", {0x8027, Raw(name_), Raw(&id_)});
    EXPECT_EQ(ComParamText(7), "ParamID=[NOT YET READ] (7)");
    EXPECT_EQ(IoControlText(7), "IoCtlCommandId=7 ([NOT YET READ])");
    EXPECT_EQ(ResourceText(7), "resourceId=<UNKNOWN> (7)");
    EXPECT_EQ(RequestText(7), "BusTypeId = <UNKNOWN> (7), ProtocolId = <UNKNOWN> (7), NumPinData = 1\n"
                              "{stamp}     >>> pDLCPinData[0]:\tNum =  1, Type = <UNKNOWN> (7)\n");
}

TEST_F(ObjectIdCall, AnUndefinedIdIsLearnedLikeAnyOther)
{
    Ask(PDU_OBJT_COMPARAM, "CP_Nothing", PDU_ID_UNDEF);
    EXPECT_EQ(ComParamText(0xFFFFFFFE), "ParamID=CP_Nothing (4294967294)");
    Ask(PDU_OBJT_COMPARAM, "CP_Highest", 0xFFFFFFFF);
    EXPECT_EQ(ComParamText(0xFFFFFFFF), "ParamID=CP_Highest (4294967295)");
    Ask(PDU_OBJT_COMPARAM, "CP_Lowest", 0);
    EXPECT_EQ(ComParamText(0), "ParamID=CP_Lowest (0)");
}

TEST_F(ObjectIdCall, AnEmptyNameIsLearnedToo)
{
    Ask(PDU_OBJT_COMPARAM, "", 7);
    Ask(PDU_OBJT_COMPARAM, "CP_Baudrate", 7);
    EXPECT_EQ(ComParamText(7), "ParamID= (7)");
}

TEST_F(ObjectIdCall, NamesAreLearnedWithLoggingOff)
{
    session.Configure({{"LogEnabled", "0"}});
    session.Construct();
    EXPECT_EQ(Logged([&] { Ask(PDU_OBJT_COMPARAM, "CP_Baudrate", 7); }), "");
    Reconfigure(Levels{});
    EXPECT_EQ(ComParamText(7), "ParamID=CP_Baudrate (7)");
}

TEST_F(ObjectIdCall, NamesAreLearnedWithNoCallsLogged)
{
    Reconfigure(Levels{.Calls = 0, .Arguments = 0, .Results = 0});
    EXPECT_EQ(Logged([&] { Ask(PDU_OBJT_COMPARAM, "CP_Baudrate", 7); }), "");
    Reconfigure(Levels{});
    EXPECT_EQ(ComParamText(7), "ParamID=CP_Baudrate (7)");
}

TEST_F(ObjectIdCall, NamesAreGoneAfterDestruct)
{
    Ask(PDU_OBJT_COMPARAM, "CP_Baudrate", 7);
    Api().PDUDestruct();
    Reconfigure(Levels{});
    EXPECT_EQ(ComParamText(7), "ParamID=[NOT YET READ] (7)");
    Ask(PDU_OBJT_COMPARAM, "CP_P2Max", 7);
    EXPECT_EQ(ComParamText(7), "ParamID=CP_P2Max (7)");
}

TEST_F(ObjectIdCall, NamesStayThroughASecondConstruct)
{
    Ask(PDU_OBJT_COMPARAM, "CP_Baudrate", 7);
    session.Construct();
    EXPECT_EQ(ComParamText(7), "ParamID=CP_Baudrate (7)");
}

TEST_F(ObjectIdCall, ManyThreadsLearnAndShowNamesAtOnce)
{
    // All threads look up ids 0 to 199, and each logs a call with the name that it has just learned.
    Fake().Answer = [](const FakeCall& call) {
        if (std::string(call.Function) == "PDUGetObjectId")
            At<UNUM32>(call.Arguments[2]) = static_cast<UNUM32>(std::stoul(&At<CHAR8>(call.Arguments[1])));
        return PDU_STATUS_NOERROR;
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (UNUM32 id = 0; id < 200; ++id) {
                std::string name = std::to_string(id);
                UNUM32 place = 0;
                Api().PDUGetObjectId(PDU_OBJT_COMPARAM, name.data(), &place);
                Api().PDUGetComParam(1, 2, place, nullptr);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    const std::string text = session.Log();
    EXPECT_EQ(text.find("[NOT YET READ]"), std::string::npos);
    for (UNUM32 id = 0; id < 200; ++id)
        EXPECT_NE(text.find("ParamID=" + std::to_string(id) + " (" + std::to_string(id) + "), "),
                  std::string::npos);
}

TEST_F(ObjectIdCall, TheClosingLineOfTheCallOutComesBeforeTheId)
{
    LogCallOuts();
    EXPECT_EQ(Logged([&] { Api().PDUGetObjectId(PDU_OBJT_COMPARAM, name_, &id_); }),
              "{stamp} + PDUGetObjectId" + arguments_ +
                  "\n{stamp}     <PDUGetObjectId\n"
                  "{stamp}    <--  pPduObjectId  \t= 42\n"
                  "{stamp} - PDUGetObjectId<PDU_STATUS_NOERROR (0x0000)>\n");
}

class ModuleIdsCall : public RunningCallTest
{
protected:
    ModuleIdsCall()
    {
        Fake().Answer = [this](const FakeCall& call) {
            Return(call);
            return status_;
        };
    }

    /// What the target does: returns its item through the output pointer, if there is one.
    void Return(const FakeCall& call) const
    {
        if (call.Arguments[0])
            At<PDU_MODULE_ITEM*>(call.Arguments[0]) = returned_;
    }

    /// A call with these decoded lines after it.
    LoggedCall Call(PDU_MODULE_ITEM** place, LinesAt after)
    {
        return {.Name = "PDUGetModuleIds",
                .Call = [=, this] { return Api().PDUGetModuleIds(place); },
                .Seen = {Raw(place)},
                .Effect = [this](const FakeCall& call) { Return(call); },
                .Arguments = "(pModuleItem=" + PointerText(place) + ")",
                .After = std::move(after)};
    }

    CHAR8 name_[4] = "VCI";
    CHAR8 info_[9] = "ModuleNo";
    PDU_MODULE_DATA modules_[2] = {{.ModuleTypeId = 11,
                                    .hMod = 1,
                                    .pVendorModuleName = name_,
                                    .pVendorAdditionalInfo = info_,
                                    .ModuleStatus = PDU_MODST_AVAIL},
                                   {.ModuleTypeId = 12,
                                    .hMod = PDU_HANDLE_UNDEF,
                                    .pVendorModuleName = nullptr,
                                    .pVendorAdditionalInfo = nullptr,
                                    .ModuleStatus = 0x7FFF}};
    PDU_MODULE_ITEM item_ = {.ItemType = PDU_IT_MODULE_ID, .NumEntries = 2, .pModuleData = modules_};
    /// The item that the target returns.
    PDU_MODULE_ITEM* returned_ = &item_;
    T_PDU_ERROR status_ = PDU_STATUS_NOERROR;
    /// The application's output variable.
    PDU_MODULE_ITEM* place_ = nullptr;

    const std::string arguments_ = "(pModuleItem=" + PointerText(&place_) + ")";
    const std::string nullArguments_ = "(pModuleItem=" + PointerText(nullptr) + ")";
    const std::string lines_ = "{stamp}    <--  Module entry\t= 1 of 2\n"
                               "{stamp}     <<< ModuleTypeId         \t= 11\n"
                               "{stamp}     <<< hMod                 \t= 0x00000001\n"
                               "{stamp}     <<< pVendorModuleName    \t= \"VCI\"\n"
                               "{stamp}     <<< pVendorAdditionalInfo\t= \"ModuleNo\"\n"
                               "{stamp}     <<< ModuleStatus         \t= PDU_MODST_AVAIL (0x8063)\n"
                               "{stamp}    <--  Module entry\t= 2 of 2\n"
                               "{stamp}     <<< ModuleTypeId         \t= 12\n"
                               "{stamp}     <<< hMod                 \t= <PDU_HANDLE_UNDEF>\n"
                               "{stamp}     <<< pVendorModuleName    \t= \"<NULL STRING>\"\n"
                               "{stamp}     <<< pVendorAdditionalInfo\t= \"<NULL STRING>\"\n"
                               "{stamp}     <<< ModuleStatus         \t= <NULL> (0x7FFF)\n";
};

TEST_F(ModuleIdsCall, TheReturnedModulesAreShown)
{
    EXPECT_EQ(Logged([&] { EXPECT_EQ(Api().PDUGetModuleIds(&place_), PDU_STATUS_NOERROR); }),
              "{stamp} + PDUGetModuleIds" + arguments_ + "\n" + lines_ +
                  "{stamp} - PDUGetModuleIds<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetModuleIds", {Raw(&place_)});
    EXPECT_EQ(place_, &item_);
}

TEST_F(ModuleIdsCall, TheModulesAreDecodedAsResults)
{
    ExpectAtAllLevels({Call(&place_, ResultLines(lines_))});
}

TEST_F(ModuleIdsCall, AFailureWithModulesShowsNoneOfThem)
{
    LoggedCall call = Call(&place_, Always(""));
    call.Status = PDU_ERR_SHARING_VIOLATION;
    call.StatusText = "PDU_ERR_SHARING_VIOLATION (0x0021)";
    ExpectAtAllLevels({call});
}

TEST_F(ModuleIdsCall, ANullItemIsDecodedAsAResultWhateverTheStatus)
{
    returned_ = nullptr;
    const LoggedCall success = Call(&place_, ResultLines("{stamp}    <--  *pModuleItem\t= <NULL>\n"));
    LoggedCall failure = success;
    failure.Status = PDU_ERR_FCT_FAILED;
    failure.StatusText = "PDU_ERR_FCT_FAILED (0x0001)";
    ExpectAtAllLevels({success, failure});
}

TEST_F(ModuleIdsCall, ANullOutputPointerIsDecodedAsAnArgumentAfterTheCall)
{
    const LoggedCall success = Call(nullptr, ArgumentLines("{stamp}    -->  pModuleItem\t= <NULL>\n"));
    LoggedCall failure = success;
    failure.Status = PDU_ERR_INVALID_PARAMETERS;
    failure.StatusText = "PDU_ERR_INVALID_PARAMETERS (0x0050)";
    ExpectAtAllLevels({success, failure});
}

TEST_F(ModuleIdsCall, AFailureWithANullOutputPointerStillReportsItAfterTheCallOut)
{
    status_ = PDU_ERR_FCT_FAILED;
    LogCallOuts();
    EXPECT_EQ(Logged([&] { Api().PDUGetModuleIds(nullptr); }),
              "{stamp} + PDUGetModuleIds" + nullArguments_ +
                  "\n{stamp}     <PDUGetModuleIds\n"
                  "{stamp}    -->  pModuleItem\t= <NULL>\n"
                  "{stamp} - PDUGetModuleIds<PDU_ERR_FCT_FAILED (0x0001)>\n");
}

TEST_F(ModuleIdsCall, AnItemWithoutModulesIsReported)
{
    item_.NumEntries = 0;
    EXPECT_EQ(Logged([&] { Api().PDUGetModuleIds(&place_); }),
              "{stamp} + PDUGetModuleIds" + arguments_ +
                  "\n{stamp}    <--  Num Modules \t= 0\n"
                  "{stamp} - PDUGetModuleIds<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ModuleIdsCall, AModuleCountWithoutAListIsReported)
{
    item_.pModuleData = nullptr;
    EXPECT_EQ(Logged([&] { Api().PDUGetModuleIds(&place_); }),
              "{stamp} + PDUGetModuleIds" + arguments_ +
                  "\n{stamp}    <--  pItem->pModuleData\t= <NULL>\n"
                  "{stamp} - PDUGetModuleIds<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ModuleIdsCall, AWrongItemTypeIsAWarningBeforeTheModules)
{
    item_.ItemType = PDU_IT_RSC_ID;
    EXPECT_EQ(Logged([&] { Api().PDUGetModuleIds(&place_); }),
              "{stamp} + PDUGetModuleIds" + arguments_ +
                  "\n{stamp}    <--  WARNING: Wrong item type 5120, should be 5632!\n" + lines_ +
                  "{stamp} - PDUGetModuleIds<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(ObjectQueryCallsWithoutATarget, ReturnNotConstructedAndAccessNothing)
{
    Session session({}, "no_such_library");
    session.Construct();
    UNUM32 id = 7;
    CHAR8 name[] = "CP_Baudrate";
    PDU_MODULE_ITEM* const wild = reinterpret_cast<PDU_MODULE_ITEM*>(std::uintptr_t{8});
    PDU_MODULE_ITEM* place = wild;
    EXPECT_EQ(session.Logged([&] {
        EXPECT_EQ(session.Api().PDUGetObjectId(PDU_OBJT_COMPARAM, name, &id), 0x20u);
        EXPECT_EQ(session.Api().PDUGetModuleIds(&place), 0x20u);
        EXPECT_EQ(session.Api().PDUGetModuleIds(nullptr), 0x20u);
    }),
              "{stamp} PDUGetObjectId - Called but library not loaded!\n"
              "{stamp} PDUGetModuleIds - Called but library not loaded!\n"
              "{stamp} PDUGetModuleIds - Called but library not loaded!\n");
    EXPECT_EQ(id, 7u);
    EXPECT_EQ(place, wild);
}

} // namespace
} // namespace marvane::testing
