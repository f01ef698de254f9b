// PDUGetResourceStatus, PDUGetResourceIds and PDUGetConflictingResources: records that are passed in and
// returned.
#include <gtest/gtest.h>

#include "tests/support/call_test.h"

namespace marvane::testing {
namespace {

class ResourceStatusCall : public RunningCallTest
{
protected:
    /// A call with this item, without decoded lines.
    LoggedCall Call(PDU_RSC_STATUS_ITEM* item)
    {
        return {.Name = "PDUGetResourceStatus",
                .Call = [=, this] { return Api().PDUGetResourceStatus(item); },
                .Seen = {Raw(item)},
                .Arguments = "(pResourceStatus=" + PointerText(item) + ")"};
    }

    PDU_RSC_STATUS_DATA entries_[2] = {
        {.hMod = 1, .ResourceId = 400, .ResourceStatus = 0},
        {.hMod = PDU_HANDLE_UNDEF, .ResourceId = 0xFFFFFFFE, .ResourceStatus = 0xABCDEF01}};
    PDU_RSC_STATUS_ITEM item_ = {
        .ItemType = PDU_IT_RSC_STATUS, .NumEntries = 2, .pResourceStatusData = entries_};
    const std::string arguments_ = "(pResourceStatus=" + PointerText(&item_) + ")";
    const std::string before_ = "{stamp}    -->  pResourceStatus->ItemType=4352, NumEntries=2\n"
                                "{stamp}     >>> [0] hMod          \t= 0x00000001\n"
                                "{stamp}     >>> [0] ResourceId    \t= <UNKNOWN> (400)\n"
                                "{stamp}     >>> [0] ResourceStatus\t= 0x0\n"
                                "{stamp}     >>> [1] hMod          \t= <PDU_HANDLE_UNDEF>\n"
                                "{stamp}     >>> [1] ResourceId    \t= <UNKNOWN> (4294967294)\n"
                                "{stamp}     >>> [1] ResourceStatus\t= 0xabcdef01\n";
    const std::string behind_ = "{stamp}    <--  pResourceStatus->NumEntries  = 2\n"
                                "{stamp}     <<< [0] hMod          \t= 0x00000001\n"
                                "{stamp}     <<< [0] ResourceId    \t= <UNKNOWN> (400)\n"
                                "{stamp}     <<< [0] ResourceStatus\t= 0x0\n"
                                "{stamp}     <<< [1] hMod          \t= <PDU_HANDLE_UNDEF>\n"
                                "{stamp}     <<< [1] ResourceId    \t= <UNKNOWN> (4294967294)\n"
                                "{stamp}     <<< [1] ResourceStatus\t= 0xabcdef01\n";
};

TEST_F(ResourceStatusCall, TheEntriesAreShownBeforeAndAfterTheCall)
{
    Fake().Answer = [](const FakeCall& call) {
        auto& item = At<PDU_RSC_STATUS_ITEM>(call.Arguments[0]);
        item.pResourceStatusData[0].ResourceStatus = 0x1F;
        item.pResourceStatusData[1] = {2, 401, 3};
        return PDU_STATUS_NOERROR;
    };
    AskObjectId(PDU_OBJT_RESOURCE, "RSC_CAN", 400);
    EXPECT_EQ(Logged([&] { EXPECT_EQ(Api().PDUGetResourceStatus(&item_), PDU_STATUS_NOERROR); }),
              "{stamp} + PDUGetResourceStatus" + arguments_ +
                  "\n"
                  "{stamp}    -->  pResourceStatus->ItemType=4352, NumEntries=2\n"
                  "{stamp}     >>> [0] hMod          \t= 0x00000001\n"
                  "{stamp}     >>> [0] ResourceId    \t= RSC_CAN (400)\n"
                  "{stamp}     >>> [0] ResourceStatus\t= 0x0\n"
                  "{stamp}     >>> [1] hMod          \t= <PDU_HANDLE_UNDEF>\n"
                  "{stamp}     >>> [1] ResourceId    \t= <UNKNOWN> (4294967294)\n"
                  "{stamp}     >>> [1] ResourceStatus\t= 0xabcdef01\n"
                  "{stamp}    <--  pResourceStatus->NumEntries  = 2\n"
                  "{stamp}     <<< [0] hMod          \t= 0x00000001\n"
                  "{stamp}     <<< [0] ResourceId    \t= RSC_CAN (400)\n"
                  "{stamp}     <<< [0] ResourceStatus\t= 0x1f\n"
                  "{stamp}     <<< [1] hMod          \t= 0x00000002\n"
                  "{stamp}     <<< [1] ResourceId    \t= <UNKNOWN> (401)\n"
                  "{stamp}     <<< [1] ResourceStatus\t= 0x3\n"
                  "{stamp} - PDUGetResourceStatus<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetResourceStatus", {Raw(&item_)});
    EXPECT_EQ(entries_[0].ResourceStatus, 0x1Fu);
    EXPECT_EQ(entries_[1].ResourceId, 401u);
}

TEST_F(ResourceStatusCall, ArgumentsAndResultsAreDecodedByTheirOwnLevels)
{
    LoggedCall call = Call(&item_);
    call.Before = ArgumentLines(before_);
    call.After = ResultLines(behind_);
    ExpectAtAllLevels({call});
}

TEST_F(ResourceStatusCall, AFailureShowsTheEntriesBeforeTheCallOnly)
{
    LoggedCall call = Call(&item_);
    call.Status = PDU_ERR_FCT_FAILED;
    call.StatusText = "PDU_ERR_FCT_FAILED (0x0001)";
    call.Before = ArgumentLines(before_);
    ExpectAtAllLevels({call});
}

TEST_F(ResourceStatusCall, ANullItemGivesNoLineAndIsForwarded)
{
    ExpectAtAllLevels({Call(nullptr)});
}

TEST_F(ResourceStatusCall, AnEntryOfANullListIsShownAsNull)
{
    item_.NumEntries = 1;
    item_.pResourceStatusData = nullptr;
    LoggedCall call = Call(&item_);
    call.Before = ArgumentLines("{stamp}    -->  pResourceStatus->ItemType=4352, NumEntries=1\n"
                                "{stamp}     >>> [0] Entry         \t= <NULL>\n");
    call.After = ResultLines("{stamp}    <--  pResourceStatus->NumEntries  = 1\n"
                             "{stamp}     <<< [0] Entry         \t= <NULL>\n");
    ExpectAtAllLevels({call});
}

TEST_F(ResourceStatusCall, AnEmptyListShowsItsCountsOnly)
{
    item_ = {0xFFFFFFFF, 0, entries_};
    LoggedCall call = Call(&item_);
    call.Before = ArgumentLines("{stamp}    -->  pResourceStatus->ItemType=4294967295, NumEntries=0\n");
    call.After = ResultLines("{stamp}    <--  pResourceStatus->NumEntries  = 0\n");
    EXPECT_EQ(Logged([&] { Api().PDUGetResourceStatus(&item_); }), ExpectedText(call));
    item_.pResourceStatusData = nullptr;
    EXPECT_EQ(Logged([&] { Api().PDUGetResourceStatus(&item_); }), ExpectedText(call));
}

TEST_F(ResourceStatusCall, TheClosingLineOfTheCallOutIsBetweenArgumentsAndResults)
{
    LogCallOuts();
    EXPECT_EQ(Logged([&] { Api().PDUGetResourceStatus(&item_); }),
              "{stamp} + PDUGetResourceStatus" + arguments_ + "\n" + before_ +
                  "{stamp}     <PDUGetResourceStatus\n" + behind_ +
                  "{stamp} - PDUGetResourceStatus<PDU_STATUS_NOERROR (0x0000)>\n");
}

class ResourceIdsCall : public RunningCallTest
{
protected:
    ResourceIdsCall()
    {
        Fake().Answer = [this](const FakeCall& call) {
            Return(call);
            return PDU_STATUS_NOERROR;
        };
    }

    /// What the target does: returns its list through the output pointer, if there is one.
    void Return(const FakeCall& call) const
    {
        if (call.Arguments[2])
            At<PDU_RSC_ID_ITEM*>(call.Arguments[2]) = returned_;
    }

    /// A call with handle 1, without decoded lines.
    LoggedCall Call(PDU_RSC_DATA* request, PDU_RSC_ID_ITEM** list)
    {
        return {.Name = "PDUGetResourceIds",
                .Call = [=, this] { return Api().PDUGetResourceIds(1, request, list); },
                .Seen = {1, Raw(request), Raw(list)},
                .Effect = [this](const FakeCall& call) { Return(call); },
                .Arguments = Arguments(request, list)};
    }

    /// The argument list of a call with handle 1 and these pointers.
    std::string Arguments(const void* request, const void* list) const
    {
        return "(hMod=0x00000001, pResourceIdData=" + PointerText(request) +
               ", pResourceIdList=" + PointerText(list) + ")";
    }

    /// The header lines of a list with this type and count.
    std::string HeaderLines(const std::string& type, const std::string& count) const
    {
        return "{stamp}    <--  pResourceIdList\t= " + PointerText(&place_) +
               "\n"
               "{stamp}     <<< ItemType      \t= " +
               type +
               "\n"
               "{stamp}     <<< NumModules    \t= " +
               count + "\n";
    }

    static std::string IndexLine(const std::string& index)
    {
        return "{stamp}     <<< pRsrcIdLst->pResourceIdDataArray[" + index + "]\n";
    }

    /// The lines of the returned list: headers are decoded as results, contents as arguments.
    LinesAt After() const
    {
        const std::string header = HeaderLines("PDU_IT_RSC_ID (0x1400)", "2");
        return OnlyUnderLogEnabled(
            Join(Join(ResultLines(header + IndexLine("00")), ArgumentLines(firstContents_)),
                 Join(ResultLines(IndexLine("01")), ArgumentLines(secondContents_))));
    }

    PDU_PIN_DATA pin_ = {.DLCPinNumber = 6, .DLCPinTypeId = 300};
    PDU_RSC_DATA request_ = {.BusTypeId = 200, .ProtocolId = 100, .NumPinData = 1, .pDLCPinData = &pin_};
    UNUM32 ids_[2] = {400, 7};
    PDU_RSC_ID_ITEM_DATA modules_[2] = {{.hMod = 1, .NumIds = 2, .pResourceIdArray = ids_},
                                        {.hMod = PDU_HANDLE_UNDEF, .NumIds = 0, .pResourceIdArray = nullptr}};
    PDU_RSC_ID_ITEM item_ = {.ItemType = PDU_IT_RSC_ID, .NumModules = 2, .pResourceIdDataArray = modules_};
    /// The list that the target returns.
    PDU_RSC_ID_ITEM* returned_ = &item_;
    /// The application's output variable.
    PDU_RSC_ID_ITEM* place_ = nullptr;

    const std::string before_ = "{stamp}    -->  pResourceIdData: BusTypeId = <UNKNOWN> (200), ProtocolId = "
                                "<UNKNOWN> (100), NumPinData = 1\n"
                                "{stamp}     >>> pDLCPinData[0]:\tNum =  6, Type = <UNKNOWN> (300)\n";
    const std::string firstContents_ = "{stamp} \t\t <--  pResourceIdData:\thMod = 0x00000001, NumIds = 2, "
                                       "pResourceIdArray = " +
                                       PointerText(ids_) +
                                       "\n"
                                       "{stamp} \t\t  <<< pResourceId[ 0]\t= 400 (<UNKNOWN>)\n"
                                       "{stamp} \t\t  <<< pResourceId[ 1]\t= 7 (<UNKNOWN>)\n";
    const std::string secondContents_ =
        "{stamp} \t\t <--  pResourceIdData:\thMod = <PDU_HANDLE_UNDEF>, NumIds = 0, "
        "pResourceIdArray = " +
        PointerText(nullptr) +
        "\n"
        "{stamp} \t\t  <<< pResourceId[pResourceIdData]\t= <NULL>\n";
};

TEST_F(ResourceIdsCall, TheRequestAndTheReturnedIdsAreShown)
{
    AskObjectId(PDU_OBJT_BUSTYPE, "ISO_11898", 200);
    AskObjectId(PDU_OBJT_PROTOCOL, "ISO_UDS", 100);
    AskObjectId(PDU_OBJT_PINTYPE, "HI", 300);
    AskObjectId(PDU_OBJT_RESOURCE, "RSC_CAN", 400);
    EXPECT_EQ(Logged([&] { EXPECT_EQ(Api().PDUGetResourceIds(1, &request_, &place_), PDU_STATUS_NOERROR); }),
              "{stamp} + PDUGetResourceIds(hMod=0x00000001, pResourceIdData=" + PointerText(&request_) +
                  ", pResourceIdList=" + PointerText(&place_) +
                  ")\n"
                  "{stamp}    -->  pResourceIdData: BusTypeId = ISO_11898 (200), ProtocolId = ISO_UDS (100), "
                  "NumPinData = 1\n"
                  "{stamp}     >>> pDLCPinData[0]:\tNum =  6, Type = HI (300)\n"
                  "{stamp}    <--  pResourceIdList\t= " +
                  PointerText(&place_) +
                  "\n"
                  "{stamp}     <<< ItemType      \t= PDU_IT_RSC_ID (0x1400)\n"
                  "{stamp}     <<< NumModules    \t= 2\n"
                  "{stamp}     <<< pRsrcIdLst->pResourceIdDataArray[00]\n"
                  "{stamp} \t\t <--  pResourceIdData:\thMod = 0x00000001, NumIds = 2, pResourceIdArray = " +
                  PointerText(ids_) +
                  "\n"
                  "{stamp} \t\t  <<< pResourceId[ 0]\t= 400 (RSC_CAN)\n"
                  "{stamp} \t\t  <<< pResourceId[ 1]\t= 7 (<UNKNOWN>)\n"
                  "{stamp}     <<< pRsrcIdLst->pResourceIdDataArray[01]\n" +
                  secondContents_ + "{stamp} - PDUGetResourceIds<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetResourceIds", {1, Raw(&request_), Raw(&place_)});
    EXPECT_EQ(place_, &item_);
}

TEST_F(ResourceIdsCall, HeadersAreDecodedAsResultsAndContentsAsArguments)
{
    LoggedCall call = Call(&request_, &place_);
    call.Before = ArgumentLines(before_);
    call.After = After();
    ExpectAtAllLevels({call});
}

TEST_F(ResourceIdsCall, DecodedResultsAloneShowHeadersAndIndicesWithoutContents)
{
    Reconfigure(Levels{.Arguments = 0, .Results = 1});
    EXPECT_EQ(Logged([&] { Api().PDUGetResourceIds(1, &request_, &place_); }),
              "{stamp} + PDUGetResourceIds" + Arguments(&request_, &place_) +
                  "\n"
                  "{stamp}    <--  pResourceIdList\t= " +
                  PointerText(&place_) +
                  "\n"
                  "{stamp}     <<< ItemType      \t= PDU_IT_RSC_ID (0x1400)\n"
                  "{stamp}     <<< NumModules    \t= 2\n"
                  "{stamp}     <<< pRsrcIdLst->pResourceIdDataArray[00]\n"
                  "{stamp}     <<< pRsrcIdLst->pResourceIdDataArray[01]\n"
                  "{stamp} - PDUGetResourceIds<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ResourceIdsCall, DecodedArgumentsAloneShowContentsWithoutHeaders)
{
    Reconfigure(Levels{.Arguments = 1, .Results = 0});
    EXPECT_EQ(Logged([&] { Api().PDUGetResourceIds(1, &request_, &place_); }),
              "{stamp} + PDUGetResourceIds" + Arguments(&request_, &place_) + "\n" + before_ +
                  firstContents_ + secondContents_ +
                  "{stamp} - PDUGetResourceIds<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ResourceIdsCall, LogNewFileCfgAloneShowsTheRequestAndNothingOfTheAnswer)
{
    Reconfigure(Levels{.Enabled = 0, .NewFile = 1});
    EXPECT_EQ(Logged([&] { Api().PDUGetResourceIds(1, &request_, &place_); }),
              "{stamp} + PDUGetResourceIds" + Arguments(&request_, &place_) + "\n" + before_ +
                  "{stamp} - PDUGetResourceIds<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ResourceIdsCall, AFailureShowsTheRequestOnly)
{
    LoggedCall call = Call(&request_, &place_);
    call.Status = PDU_ERR_ID_NOT_SUPPORTED;
    call.StatusText = "PDU_ERR_ID_NOT_SUPPORTED (0x0062)";
    call.Before = ArgumentLines(before_);
    ExpectAtAllLevels({call});
}

TEST_F(ResourceIdsCall, ANullRequestIsReported)
{
    LoggedCall call = Call(nullptr, &place_);
    call.Before = ArgumentLines("{stamp}    -->  pResourceIdData\t= <NULL>\n");
    call.After = After();
    ExpectAtAllLevels({call});
}

TEST_F(ResourceIdsCall, ANullOutputPointerGivesNoLineAfterTheCall)
{
    LoggedCall call = Call(&request_, nullptr);
    call.Before = ArgumentLines(before_);
    ExpectAtAllLevels({call});
}

TEST_F(ResourceIdsCall, ANullListShowsTheOutputPointerOnly)
{
    returned_ = nullptr;
    LoggedCall call = Call(&request_, &place_);
    call.Before = ArgumentLines(before_);
    call.After =
        OnlyUnderLogEnabled(ResultLines("{stamp}    <--  pResourceIdList\t= " + PointerText(&place_) + "\n"));
    ExpectAtAllLevels({call});
}

TEST_F(ResourceIdsCall, AnItemTypeWithoutANameIsShownAsNull)
{
    item_ = {PDU_IT_IO_VEHICLE_ID_REQUEST_EX, 0, modules_};
    EXPECT_EQ(Logged([&] { Api().PDUGetResourceIds(1, &request_, &place_); }),
              "{stamp} + PDUGetResourceIds" + Arguments(&request_, &place_) + "\n" + before_ +
                  HeaderLines("<NULL> (0x10000)", "0") +
                  "{stamp} - PDUGetResourceIds<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ResourceIdsCall, AModuleOfANullListIsShownAsNull)
{
    item_ = {PDU_IT_RSC_ID, 1, nullptr};
    EXPECT_EQ(Logged([&] { Api().PDUGetResourceIds(1, &request_, &place_); }),
              "{stamp} + PDUGetResourceIds" + Arguments(&request_, &place_) + "\n" + before_ +
                  HeaderLines("PDU_IT_RSC_ID (0x1400)", "1") + IndexLine("00") +
                  "{stamp} \t\t <--  pResourceIdData\t= <NULL>\n"
                  "{stamp} - PDUGetResourceIds<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ResourceIdsCall, AnUndefinedModuleIsNamedAndForwarded)
{
    Reconfigure(Levels{.Arguments = 0, .Results = 0});
    EXPECT_EQ(Logged([&] { Api().PDUGetResourceIds(0xFFFFFFFF, &request_, nullptr); }),
              "{stamp} + PDUGetResourceIds(hMod=<PDU_HANDLE_UNDEF>, pResourceIdData=" +
                  PointerText(&request_) + ", pResourceIdList=" + PointerText(nullptr) +
                  ")\n{stamp} - PDUGetResourceIds<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetResourceIds", {0xFFFFFFFF, Raw(&request_), 0});
}

class ConflictsCall : public RunningCallTest
{
protected:
    ConflictsCall()
    {
        Fake().Answer = [this](const FakeCall& call) {
            Return(call);
            return PDU_STATUS_NOERROR;
        };
    }

    /// What the target does: returns its list through the output pointer, if there is one.
    void Return(const FakeCall& call) const
    {
        if (call.Arguments[2])
            At<PDU_RSC_CONFLICT_ITEM*>(call.Arguments[2]) = returned_;
    }

    /// A call for resource 400, without decoded lines.
    LoggedCall Call(PDU_MODULE_ITEM* modules, PDU_RSC_CONFLICT_ITEM** conflicts)
    {
        return {.Name = "PDUGetConflictingResources",
                .Call = [=, this] { return Api().PDUGetConflictingResources(400, modules, conflicts); },
                .Seen = {400, Raw(modules), Raw(conflicts)},
                .Effect = [this](const FakeCall& call) { Return(call); },
                .Arguments = Arguments(modules, conflicts)};
    }

    /// The argument list of a call for resource 400.
    static std::string Arguments(const void* modules, const void* conflicts)
    {
        return "(resourceId=400, pInputModuleList=" + PointerText(modules) +
               ", pOutputConflictList=" + PointerText(conflicts) + ")";
    }

    /// The header lines of a list with this type and count.
    std::string HeaderLines(const std::string& type, const std::string& count) const
    {
        return "{stamp}    <--  pOutputConflictList\t=" + PointerText(&place_) +
               "\n"
               "{stamp}     <<< pConflictList  \t= " +
               PointerText(&item_) +
               "\n"
               "{stamp} \t\t <--  ItemType  \t= " +
               type +
               "\n"
               "{stamp} \t\t <--  NumEntries\t= " +
               count + "\n";
    }

    static std::string IndexLine(const std::string& index, const void* entry)
    {
        return "{stamp} \t\t  <<< pRsrcIdLst->pCnflctLst[" + index + "] @ " + PointerText(entry) + "\n";
    }

    LinesAt Before() const { return OnlyUnderLogEnabled(ArgumentLines(before_)); }
    /// The lines of the returned list: headers are decoded as results, contents as arguments.
    LinesAt After() const
    {
        const std::string header = HeaderLines("PDU_IT_RSC_CONFLICT (0x1500)", "2");
        return OnlyUnderLogEnabled(
            Join(Join(ResultLines(header + IndexLine("00", &conflicts_[0])),
                      ArgumentLines("{stamp} \t\t  >>> pConflictData:\t\thMod=0x00000001, "
                                    "ResourceId=<UNKNOWN>(401)\n")),
                 Join(ResultLines(IndexLine("01", &conflicts_[1])),
                      ArgumentLines("{stamp} \t\t  >>> pConflictData:\t\thMod=<PDU_HANDLE_UNDEF>, "
                                    "ResourceId=<UNKNOWN>(4294967295)\n"))));
    }

    CHAR8 name_[4] = "VCI";
    PDU_MODULE_DATA modules_[2] = {{.ModuleTypeId = 11,
                                    .hMod = 1,
                                    .pVendorModuleName = name_,
                                    .pVendorAdditionalInfo = nullptr,
                                    .ModuleStatus = PDU_MODST_READY},
                                   {.ModuleTypeId = 12,
                                    .hMod = 2,
                                    .pVendorModuleName = nullptr,
                                    .pVendorAdditionalInfo = name_,
                                    .ModuleStatus = 0}};
    PDU_MODULE_ITEM input_ = {.ItemType = PDU_IT_MODULE_ID, .NumEntries = 2, .pModuleData = modules_};
    PDU_RSC_CONFLICT_DATA conflicts_[2] = {{.hMod = 1, .ResourceId = 401},
                                           {.hMod = PDU_HANDLE_UNDEF, .ResourceId = 0xFFFFFFFF}};
    PDU_RSC_CONFLICT_ITEM item_ = {
        .ItemType = PDU_IT_RSC_CONFLICT, .NumEntries = 2, .pRscConflictData = conflicts_};
    /// The list that the target returns.
    PDU_RSC_CONFLICT_ITEM* returned_ = &item_;
    /// The application's output variable.
    PDU_RSC_CONFLICT_ITEM* place_ = nullptr;

    const std::string before_ = "{stamp}    -->  pInputModuleList->ItemType=5632, NumEntries=2\n"
                                "{stamp}     >>> ModuleTypeId         \t= 11\n"
                                "{stamp}     >>> hMod                 \t= 0x00000001\n"
                                "{stamp}     >>> pVendorModuleName    \t= \"VCI\"\n"
                                "{stamp}     >>> pVendorAdditionalInfo\t= \"<NULL STRING>\"\n"
                                "{stamp}     >>> ModuleStatus         \t= PDU_MODST_READY (0x8060)\n"
                                "{stamp}     >>> ModuleTypeId         \t= 12\n"
                                "{stamp}     >>> hMod                 \t= 0x00000002\n"
                                "{stamp}     >>> pVendorModuleName    \t= \"<NULL STRING>\"\n"
                                "{stamp}     >>> pVendorAdditionalInfo\t= \"VCI\"\n"
                                "{stamp}     >>> ModuleStatus         \t= <NULL> (0x0000)\n";
};

TEST_F(ConflictsCall, TheModulesAndTheReturnedConflictsAreShown)
{
    AskObjectId(PDU_OBJT_RESOURCE, "RSC_CAN", 400);
    AskObjectId(PDU_OBJT_RESOURCE, "RSC_KLINE", 401);
    EXPECT_EQ(
        Logged(
            [&] { EXPECT_EQ(Api().PDUGetConflictingResources(400, &input_, &place_), PDU_STATUS_NOERROR); }),
        "{stamp} + PDUGetConflictingResources(resourceId=400, pInputModuleList=" + PointerText(&input_) +
            ", pOutputConflictList=" + PointerText(&place_) + ")\n" + before_ +
            "{stamp}    <--  pOutputConflictList\t=" + PointerText(&place_) +
            "\n"
            "{stamp}     <<< pConflictList  \t= " +
            PointerText(&item_) +
            "\n"
            "{stamp} \t\t <--  ItemType  \t= PDU_IT_RSC_CONFLICT (0x1500)\n"
            "{stamp} \t\t <--  NumEntries\t= 2\n"
            "{stamp} \t\t  <<< pRsrcIdLst->pCnflctLst[00] @ " +
            PointerText(&conflicts_[0]) +
            "\n"
            "{stamp} \t\t  >>> pConflictData:\t\thMod=0x00000001, ResourceId=RSC_KLINE(401)\n"
            "{stamp} \t\t  <<< pRsrcIdLst->pCnflctLst[01] @ " +
            PointerText(&conflicts_[1]) +
            "\n"
            "{stamp} \t\t  >>> pConflictData:\t\thMod=<PDU_HANDLE_UNDEF>, ResourceId=<UNKNOWN>(4294967295)\n"
            "{stamp} - PDUGetConflictingResources<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetConflictingResources", {400, Raw(&input_), Raw(&place_)});
    EXPECT_EQ(place_, &item_);
}

TEST_F(ConflictsCall, HeadersAreDecodedAsResultsAndContentsAsArguments)
{
    LoggedCall call = Call(&input_, &place_);
    call.Before = Before();
    call.After = After();
    ExpectAtAllLevels({call});
}

TEST_F(ConflictsCall, LogNewFileCfgAloneShowsTheEntryLineAndNoDecodedLine)
{
    Reconfigure(Levels{.Enabled = 0, .NewFile = 1});
    EXPECT_EQ(Logged([&] { Api().PDUGetConflictingResources(400, &input_, &place_); }),
              "{stamp} + PDUGetConflictingResources" + Arguments(&input_, &place_) +
                  "\n{stamp} - PDUGetConflictingResources<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetConflictingResources", {400, Raw(&input_), Raw(&place_)});
}

TEST_F(ConflictsCall, AFailureShowsTheModulesOnly)
{
    LoggedCall call = Call(&input_, &place_);
    call.Status = PDU_ERR_RESOURCE_ERROR;
    call.StatusText = "PDU_ERR_RESOURCE_ERROR (0x0032)";
    call.Before = Before();
    ExpectAtAllLevels({call});
}

TEST_F(ConflictsCall, ANullListOfModulesGivesNoLineBeforeTheCall)
{
    LoggedCall call = Call(nullptr, &place_);
    call.After = After();
    ExpectAtAllLevels({call});
}

TEST_F(ConflictsCall, ANullOutputPointerGivesNoLineAfterTheCall)
{
    LoggedCall call = Call(&input_, nullptr);
    call.Before = Before();
    ExpectAtAllLevels({call});
}

TEST_F(ConflictsCall, ANullListOfConflictsShowsBothPointersOnly)
{
    returned_ = nullptr;
    LoggedCall call = Call(nullptr, &place_);
    call.After = OnlyUnderLogEnabled(
        ResultLines("{stamp}    <--  pOutputConflictList\t=" + PointerText(&place_) +
                    "\n{stamp}     <<< pConflictList  \t= " + PointerText(nullptr) + "\n"));
    ExpectAtAllLevels({call});
}

TEST_F(ConflictsCall, AListOfModulesMayBeEmptyOrNull)
{
    input_.NumEntries = 0;
    const std::string head = "{stamp} + PDUGetConflictingResources" + Arguments(&input_, nullptr) + "\n";
    const std::string exit = "{stamp} - PDUGetConflictingResources<PDU_STATUS_NOERROR (0x0000)>\n";
    EXPECT_EQ(Logged([&] { Api().PDUGetConflictingResources(400, &input_, nullptr); }),
              head + "{stamp}    -->  pInputModuleList->ItemType=5632, NumEntries=0\n" + exit);
    input_ = {9, 1, nullptr};
    EXPECT_EQ(Logged([&] { Api().PDUGetConflictingResources(400, &input_, nullptr); }),
              head +
                  "{stamp}    -->  pInputModuleList->ItemType=9, NumEntries=1\n"
                  "{stamp}     >>> pModuleData\t= <NULL>\n" +
                  exit);
}

TEST_F(ConflictsCall, AListOfConflictsMayBeEmptyOrNull)
{
    const std::string head = "{stamp} + PDUGetConflictingResources" + Arguments(nullptr, &place_) + "\n";
    const std::string exit = "{stamp} - PDUGetConflictingResources<PDU_STATUS_NOERROR (0x0000)>\n";
    item_ = {0x1234, 0, conflicts_};
    EXPECT_EQ(Logged([&] { Api().PDUGetConflictingResources(400, nullptr, &place_); }),
              head + HeaderLines("<NULL> (0x1234)", "0") + exit);
    item_ = {PDU_IT_RSC_CONFLICT, 1, nullptr};
    EXPECT_EQ(Logged([&] { Api().PDUGetConflictingResources(400, nullptr, &place_); }),
              head + HeaderLines("PDU_IT_RSC_CONFLICT (0x1500)", "1") + IndexLine("00", nullptr) +
                  "{stamp} \t\t  >>> pConflictData\t= <NULL>\n" + exit);
}

TEST_F(ConflictsCall, TheResourceIsShownAsANumberOnly)
{
    AskObjectId(PDU_OBJT_RESOURCE, "RSC_CAN", 0xFFFFFFFE);
    EXPECT_EQ(Logged([&] { Api().PDUGetConflictingResources(0xFFFFFFFE, nullptr, nullptr); }),
              "{stamp} + PDUGetConflictingResources(resourceId=4294967294, pInputModuleList=" +
                  PointerText(nullptr) + ", pOutputConflictList=" + PointerText(nullptr) +
                  ")\n{stamp} - PDUGetConflictingResources<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetConflictingResources", {0xFFFFFFFE, 0, 0});
}

/// Without decoding, the logger must not follow the pointers of a call.
class ResourceQueryPointers : public RunningCallTest
{
protected:
    void ExpectNoneFollowed(T_PDU_ERROR status)
    {
        const auto wild = reinterpret_cast<PDU_RSC_STATUS_ITEM*>(std::uintptr_t{8});
        const auto request = reinterpret_cast<PDU_RSC_DATA*>(wild);
        const auto modules = reinterpret_cast<PDU_MODULE_ITEM*>(wild);
        AnswerAll(status);
        EXPECT_EQ(Api().PDUGetResourceStatus(wild), status);
        EXPECT_EQ(Api().PDUGetResourceIds(1, request, reinterpret_cast<PDU_RSC_ID_ITEM**>(wild)), status);
        EXPECT_EQ(
            Api().PDUGetConflictingResources(1, modules, reinterpret_cast<PDU_RSC_CONFLICT_ITEM**>(wild)),
            status);
        EXPECT_EQ(Fake().TakeNames(), "PDUGetResourceStatus PDUGetResourceIds PDUGetConflictingResources");
    }
};

TEST_F(ResourceQueryPointers, AreNotFollowedWithLoggingOff)
{
    Reconfigure({{"LogEnabled", "0"}, {"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}});
    ExpectNoneFollowed(PDU_STATUS_NOERROR);
    ExpectNoneFollowed(PDU_ERR_INVALID_PARAMETERS);
}

TEST_F(ResourceQueryPointers, AreNotFollowedWithoutDecoding)
{
    Reconfigure(Levels{.Arguments = 0, .Results = 0});
    ExpectNoneFollowed(PDU_STATUS_NOERROR);
    ExpectNoneFollowed(PDU_ERR_INVALID_PARAMETERS);
    Reconfigure(Levels{.Calls = 1});
    ExpectNoneFollowed(PDU_STATUS_NOERROR);
}

TEST(ResourceQueryCallsWithoutATarget, ReturnNotConstructedAndReadNothing)
{
    Session session({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}}, "no_such_library");
    session.Construct();
    const CPduDll& api = session.Api();
    const auto wild = reinterpret_cast<PDU_RSC_STATUS_ITEM*>(std::uintptr_t{8});
    EXPECT_EQ(session.Logged([&] {
        EXPECT_EQ(api.PDUGetResourceStatus(wild), 0x20u);
        EXPECT_EQ(api.PDUGetResourceIds(1, reinterpret_cast<PDU_RSC_DATA*>(wild),
                                        reinterpret_cast<PDU_RSC_ID_ITEM**>(wild)),
                  0x20u);
        EXPECT_EQ(api.PDUGetConflictingResources(1, reinterpret_cast<PDU_MODULE_ITEM*>(wild),
                                                 reinterpret_cast<PDU_RSC_CONFLICT_ITEM**>(wild)),
                  0x20u);
    }),
              "{stamp} PDUGetResourceStatus - Called but library not loaded!\n"
              "{stamp} PDUGetResourceIds - Called but library not loaded!\n"
              "{stamp} PDUGetConflictingResources - Called but library not loaded!\n");
}

} // namespace
} // namespace marvane::testing
