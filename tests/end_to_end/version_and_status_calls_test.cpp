// PDUGetVersion, PDUGetStatus, PDUGetLastError and PDUGetTimestamp: the returned values are shown and passed
// on.
#include <cstring>

#include <gtest/gtest.h>

#include "tests/support/call_test.h"

namespace marvane::testing {
namespace {

class VersionCall : public RunningCallTest
{
protected:
    /// The version that the fake target returns.
    static PDU_VERSION_DATA KnownVersion()
    {
        PDU_VERSION_DATA version = {};
        version.MVCI_Part1StandardVersion = 0x02010000;
        version.MVCI_Part2StandardVersion = 0x020200FF;
        version.HwSerialNumber = 4294967295u;
        std::strcpy(version.HwName, "Interface");
        version.HwVersion = 0x01020304;
        version.HwDate = 0x32010C07;
        version.HwInterface = 17;
        std::strcpy(version.FwName, "Firm \"ware\"");
        version.FwVersion = 0xFFFEFDFC;
        version.FwDate = 0xFFFFFFFF;
        std::strcpy(version.VendorName, "");
        std::strcpy(version.PDUApiSwName, "100 %s sure");
        version.PDUApiSwVersion = 0;
        version.PDUApiSwDate = 0;
        return version;
    }

    /// The fourteen lines of KnownVersion.
    static std::string KnownLines()
    {
        return "{stamp}    <--  MVCI_Part1StandardVersion\t= 002.001.000\n"
               "{stamp}    <--  MVCI_Part2StandardVersion\t= 002.002.000\n"
               "{stamp}    <--  HwSerialNumber           \t= 4294967295\n"
               "{stamp}    <--  HwName                   \t= \"Interface\"\n"
               "{stamp}    <--  HwVersion                \t= 001.002.003\n"
               "{stamp}    <--  HwDate                   \t= 12/01/2020 (week 7)\n"
               "{stamp}    <--  HwInterface              \t= 17\n"
               "{stamp}    <--  FwName                   \t= \"Firm \"ware\"\"\n"
               "{stamp}    <--  FwVersion                \t= 255.254.253\n"
               "{stamp}    <--  FwDate                   \t= 255/255/2225 (week 255)\n"
               "{stamp}    <--  VendorName               \t= \"\"\n"
               "{stamp}    <--  PDUApiSwName             \t= \"100 %s sure\"\n"
               "{stamp}    <--  PDUApiSwVersion          \t= 000.000.000\n"
               "{stamp}    <--  PDUApiSwDate             \t= 00/00/1970 (week 0)\n";
    }

    /// A call with handle 1 that leaves `version_` unchanged.
    LoggedCall Call()
    {
        return {.Name = "PDUGetVersion",
                .Call = [this] { return Api().PDUGetVersion(1, &version_); },
                .Seen = {1, Raw(&version_)},
                .Arguments = "(hMod=0x00000001, pVersionData=" + PointerText(&version_) + ")",
                .After = ResultLines(KnownLines())};
    }

    PDU_VERSION_DATA version_ = KnownVersion();
};

TEST_F(VersionCall, TheReturnedVersionIsFourteenLines)
{
    version_ = {};
    Fake().Answer = [](const FakeCall& call) {
        At<PDU_VERSION_DATA>(call.Arguments[1]) = KnownVersion();
        return PDU_STATUS_NOERROR;
    };
    EXPECT_EQ(Logged([&] { EXPECT_EQ(Api().PDUGetVersion(1, &version_), PDU_STATUS_NOERROR); }),
              "{stamp} + PDUGetVersion(hMod=0x00000001, pVersionData=" + PointerText(&version_) + ")\n" +
                  KnownLines() + "{stamp} - PDUGetVersion<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetVersion", {1, Raw(&version_)});
    const PDU_VERSION_DATA known = KnownVersion();
    EXPECT_EQ(std::memcmp(&version_, &known, sizeof known), 0);
}

TEST_F(VersionCall, TheVersionIsDecodedAsAResult)
{
    ExpectAtAllLevels({Call()});
}

TEST_F(VersionCall, AFailureShowsNoVersionOnlyItsStatus)
{
    LoggedCall call = Call();
    call.Status = PDU_ERR_INVALID_HANDLE;
    call.StatusText = "PDU_ERR_INVALID_HANDLE (0x0060)";
    call.After = Always("");
    ExpectAtAllLevels({call});
}

TEST_F(VersionCall, WithoutDecodedResultsThereIsNoVersion)
{
    Reconfigure(Levels{.Results = 0});
    EXPECT_EQ(Logged([&] { Api().PDUGetVersion(1, &version_); }),
              "{stamp} + PDUGetVersion(hMod=0x00000001, pVersionData=" + PointerText(&version_) +
                  ")\n{stamp} - PDUGetVersion<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(VersionCall, ANullOutputPointerGivesNoLineAndIsForwarded)
{
    EXPECT_EQ(Logged([&] { Api().PDUGetVersion(0xFFFFFFFF, nullptr); }),
              "{stamp} + PDUGetVersion(hMod=<PDU_HANDLE_UNDEF>, pVersionData=" + PointerText(nullptr) +
                  ")\n{stamp} - PDUGetVersion<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetVersion", {0xFFFFFFFF, 0});
}

TEST_F(VersionCall, TheFieldsOfADateAreReadFromTheirOwnBytes)
{
    version_.HwDate = 0x32010C07;
    version_.FwDate = 0x00000100;
    version_.PDUApiSwDate = 0x00010000;
    const std::string text = Logged([&] { Api().PDUGetVersion(1, &version_); });
    EXPECT_NE(text.find("\n{stamp}    <--  HwDate                   \t= 12/01/2020 (week 7)\n"),
              std::string::npos);
    EXPECT_NE(text.find("\n{stamp}    <--  FwDate                   \t= 01/00/1970 (week 0)\n"),
              std::string::npos);
    EXPECT_NE(text.find("\n{stamp}    <--  PDUApiSwDate             \t= 00/01/1970 (week 0)\n"),
              std::string::npos);
}

TEST_F(VersionCall, AVersionShowsItsThreeHighestBytes)
{
    version_.MVCI_Part1StandardVersion = 0x02010000;
    version_.MVCI_Part2StandardVersion = 0x000000FF;
    version_.HwVersion = 0x0000FF00;
    const std::string text = Logged([&] { Api().PDUGetVersion(1, &version_); });
    EXPECT_NE(text.find("\n{stamp}    <--  MVCI_Part1StandardVersion\t= 002.001.000\n"), std::string::npos);
    EXPECT_NE(text.find("\n{stamp}    <--  MVCI_Part2StandardVersion\t= 000.000.000\n"), std::string::npos);
    EXPECT_NE(text.find("\n{stamp}    <--  HwVersion                \t= 000.000.255\n"), std::string::npos);
}

TEST_F(VersionCall, ANameThatFillsItsArrayEndsThere)
{
    std::memset(version_.HwName, 'h', sizeof version_.HwName);
    version_.HwVersion = 0x41414141;
    const std::string text = Logged([&] { Api().PDUGetVersion(1, &version_); });
    EXPECT_NE(text.find("\n{stamp}    <--  HwName                   \t= \"" + std::string(64, 'h') +
                        "\"\n{stamp}    <--  HwVersion                \t= 065.065.065\n"),
              std::string::npos);
}

TEST_F(VersionCall, TheClosingLineOfTheCallOutComesBeforeTheVersion)
{
    LogCallOuts();
    EXPECT_EQ(Logged([&] { Api().PDUGetVersion(1, &version_); }),
              "{stamp} + PDUGetVersion(hMod=0x00000001, pVersionData=" + PointerText(&version_) +
                  ")\n{stamp}     <PDUGetVersion\n" + KnownLines() +
                  "{stamp} - PDUGetVersion<PDU_STATUS_NOERROR (0x0000)>\n");
}

class StatusCall : public RunningCallTest
{
protected:
    /// The argument list of a call with handles 1 to 3 and these pointers.
    static std::string Arguments(const void* status, const void* time, const void* extra)
    {
        return "(hMod=0x00000001, hCLL=0x00000002, hCoP=0x00000003, pStatusCode=" + PointerText(status) +
               ", pTimestamp=" + PointerText(time) + ", pExtraInfo=" + PointerText(extra) + ")";
    }

    /// A call with handles 1 to 3 and these pointers, without decoded lines.
    LoggedCall Call(T_PDU_STATUS* status, UNUM32* time, UNUM32* extra)
    {
        return {.Name = "PDUGetStatus",
                .Call = [=, this] { return Api().PDUGetStatus(1, 2, 3, status, time, extra); },
                .Seen = {1, 2, 3, Raw(status), Raw(time), Raw(extra)},
                .Arguments = Arguments(status, time, extra)};
    }

    /// The name line of a status code.
    std::string NameLine(T_PDU_STATUS code)
    {
        status_ = code;
        const std::string text = Logged([&] { Api().PDUGetStatus(1, 2, 3, &status_, &time_, &extra_); });
        const std::size_t begin = text.find('\n') + 1;
        return text.substr(begin, text.find('\n', begin) + 1 - begin);
    }

    T_PDU_STATUS status_ = PDU_COPST_FINISHED;
    UNUM32 time_ = 4294967295u;
    UNUM32 extra_ = 0;
    const std::string arguments_ = Arguments(&status_, &time_, &extra_);
    const std::string lines_ = "{stamp}    <--  pStatusCode\t= PDU_COPST_FINISHED (0x8012)\n"
                               "{stamp}    <--  pTimestamp\t= 4294967295\n"
                               "{stamp}    <--  pExtraInfo\t= 0\n";
};

TEST_F(StatusCall, TheReturnedStatusIsThreeLines)
{
    Fake().Answer = [](const FakeCall& call) {
        At<T_PDU_STATUS>(call.Arguments[3]) = PDU_CLLST_COMM_STARTED;
        At<UNUM32>(call.Arguments[4]) = 1234567;
        At<UNUM32>(call.Arguments[5]) = 89;
        return PDU_STATUS_NOERROR;
    };
    EXPECT_EQ(Logged([&] { Api().PDUGetStatus(1, 2, 3, &status_, &time_, &extra_); }),
              "{stamp} + PDUGetStatus" + arguments_ +
                  "\n"
                  "{stamp}    <--  pStatusCode\t= PDU_CLLST_COMM_STARTED (0x8052)\n"
                  "{stamp}    <--  pTimestamp\t= 1234567\n"
                  "{stamp}    <--  pExtraInfo\t= 89\n"
                  "{stamp} - PDUGetStatus<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetStatus", {1, 2, 3, Raw(&status_), Raw(&time_), Raw(&extra_)});
    EXPECT_EQ(status_, PDU_CLLST_COMM_STARTED);
    EXPECT_EQ(time_, 1234567u);
    EXPECT_EQ(extra_, 89u);
}

TEST_F(StatusCall, TheLinesAreDecodedAsResults)
{
    LoggedCall call = Call(&status_, &time_, &extra_);
    call.After = ResultLines(lines_);
    ExpectAtAllLevels({call});
}

TEST_F(StatusCall, NullTimeAndExtraInformationAreReported)
{
    EXPECT_EQ(Logged([&] { Api().PDUGetStatus(1, 2, 3, &status_, nullptr, nullptr); }),
              "{stamp} + PDUGetStatus" + Arguments(&status_, nullptr, nullptr) +
                  "\n"
                  "{stamp}    <--  pStatusCode\t= PDU_COPST_FINISHED (0x8012)\n"
                  "{stamp}    <--  pTimestamp was NULL\n"
                  "{stamp}    <--  pExtraInfo was NULL\n"
                  "{stamp} - PDUGetStatus<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetStatus", {1, 2, 3, Raw(&status_), 0, 0});
}

TEST_F(StatusCall, ANullTimeAloneIsReported)
{
    EXPECT_EQ(Logged([&] { Api().PDUGetStatus(1, 2, 3, &status_, nullptr, &extra_); }),
              "{stamp} + PDUGetStatus" + Arguments(&status_, nullptr, &extra_) +
                  "\n"
                  "{stamp}    <--  pStatusCode\t= PDU_COPST_FINISHED (0x8012)\n"
                  "{stamp}    <--  pTimestamp was NULL\n"
                  "{stamp}    <--  pExtraInfo\t= 0\n"
                  "{stamp} - PDUGetStatus<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(StatusCall, NullExtraInformationAloneIsReported)
{
    EXPECT_EQ(Logged([&] { Api().PDUGetStatus(1, 2, 3, &status_, &time_, nullptr); }),
              "{stamp} + PDUGetStatus" + Arguments(&status_, &time_, nullptr) +
                  "\n"
                  "{stamp}    <--  pStatusCode\t= PDU_COPST_FINISHED (0x8012)\n"
                  "{stamp}    <--  pTimestamp\t= 4294967295\n"
                  "{stamp}    <--  pExtraInfo was NULL\n"
                  "{stamp} - PDUGetStatus<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(StatusCall, AFailureShowsNoLineOfItsOwn)
{
    LoggedCall call = Call(&status_, &time_, &extra_);
    call.Status = PDU_ERR_INVALID_HANDLE;
    call.StatusText = "PDU_ERR_INVALID_HANDLE (0x0060)";
    ExpectAtAllLevels({call});
}

TEST_F(StatusCall, AFailureWithNullPointersShowsNoLineOfItsOwn)
{
    LoggedCall call = Call(nullptr, nullptr, nullptr);
    call.Status = PDU_ERR_INVALID_PARAMETERS;
    call.StatusText = "PDU_ERR_INVALID_PARAMETERS (0x0050)";
    ExpectAtAllLevels({call});
}

TEST_F(StatusCall, ANullStatusPointerIsNotReadWithoutDecodedResults)
{
    Reconfigure(Levels{.Results = 0});
    EXPECT_EQ(Logged([&] { Api().PDUGetStatus(1, 2, 3, nullptr, nullptr, nullptr); }),
              "{stamp} + PDUGetStatus" + Arguments(nullptr, nullptr, nullptr) +
                  "\n{stamp} - PDUGetStatus<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(StatusCall, ACodeWithoutANameShowsNullAndItsNumber)
{
    EXPECT_EQ(NameLine(0x8015), "{stamp}    <--  pStatusCode\t= <NULL> (0x8015)\n");
    EXPECT_EQ(NameLine(0), "{stamp}    <--  pStatusCode\t= <NULL> (0x0000)\n");
    EXPECT_EQ(NameLine(0x12345678), "{stamp}    <--  pStatusCode\t= <NULL> (0x12345678)\n");
}

TEST_F(StatusCall, CodesOfPrimitivesLinksAndModulesHaveTheirNames)
{
    EXPECT_EQ(NameLine(0x8010), "{stamp}    <--  pStatusCode\t= PDU_COPST_IDLE (0x8010)\n");
    EXPECT_EQ(NameLine(0x8050), "{stamp}    <--  pStatusCode\t= PDU_CLLST_OFFLINE (0x8050)\n");
    EXPECT_EQ(NameLine(0x8063), "{stamp}    <--  pStatusCode\t= PDU_MODST_AVAIL (0x8063)\n");
}

TEST_F(StatusCall, UndefinedHandlesAreNamedAndForwarded)
{
    EXPECT_EQ(
        Logged([&] { Api().PDUGetStatus(0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, &status_, &time_, &extra_); }),
        "{stamp} + PDUGetStatus(hMod=<PDU_HANDLE_UNDEF>, hCLL=<PDU_HANDLE_UNDEF>, hCoP=<PDU_HANDLE_UNDEF>, "
        "pStatusCode=" +
            PointerText(&status_) + ", pTimestamp=" + PointerText(&time_) + ", pExtraInfo=" +
            PointerText(&extra_) + ")\n" + lines_ + "{stamp} - PDUGetStatus<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetStatus",
               {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, Raw(&status_), Raw(&time_), Raw(&extra_)});
}

TEST_F(StatusCall, TheClosingLineOfTheCallOutComesBeforeTheStatus)
{
    LogCallOuts();
    EXPECT_EQ(Logged([&] { Api().PDUGetStatus(1, 2, 3, &status_, &time_, &extra_); }),
              "{stamp} + PDUGetStatus" + arguments_ + "\n{stamp}     <PDUGetStatus\n" + lines_ +
                  "{stamp} - PDUGetStatus<PDU_STATUS_NOERROR (0x0000)>\n");
}

class LastErrorCall : public RunningCallTest
{
protected:
    /// The argument list of a call with handles 1 and 2 and these pointers.
    static std::string Arguments(const void* code, const void* hCoP, const void* time, const void* extra)
    {
        return "(hMod=0x00000001, hCLL=0x00000002, pErrorCode=" + PointerText(code) +
               ", phCoP=" + PointerText(hCoP) + ", pTimestamp=" + PointerText(time) +
               ", pExtraErrorInfo=" + PointerText(extra) + ")";
    }

    /// A call with handles 1 and 2 and these pointers, without decoded lines.
    LoggedCall Call(T_PDU_ERR_EVT* code, UNUM32* hCoP, UNUM32* time, UNUM32* extra)
    {
        return {.Name = "PDUGetLastError",
                .Call = [=, this] { return Api().PDUGetLastError(1, 2, code, hCoP, time, extra); },
                .Seen = {1, 2, Raw(code), Raw(hCoP), Raw(time), Raw(extra)},
                .Arguments = Arguments(code, hCoP, time, extra)};
    }

    /// The result lines of a successful call with these pointers.
    std::string Lines(UNUM32* hCoP, UNUM32* time, UNUM32* extra)
    {
        const std::string entry = "{stamp} + PDUGetLastError" + Arguments(&code_, hCoP, time, extra) + "\n";
        const std::string exit = "{stamp} - PDUGetLastError<PDU_STATUS_NOERROR (0x0000)>\n";
        const std::string text = Logged([&] { Api().PDUGetLastError(1, 2, &code_, hCoP, time, extra); });
        EXPECT_TRUE(text.starts_with(entry) && text.ends_with(exit)) << text;
        ExpectSeen("PDUGetLastError", {1, 2, Raw(&code_), Raw(hCoP), Raw(time), Raw(extra)});
        return text.substr(entry.size(), text.size() - entry.size() - exit.size());
    }

    T_PDU_ERR_EVT code_ = PDU_ERR_CLL_NOT_CONNECTED;
    UNUM32 hCoP_ = 18;
    UNUM32 time_ = 19;
    UNUM32 extra_ = 20;
    const std::string arguments_ = Arguments(&code_, &hCoP_, &time_, &extra_);
    const std::string lines_ = "{stamp}    <--  pErrorCode= PDU_ERR_CLL_NOT_CONNECTED (0x0040)\n"
                               "{stamp}    <--  phCoP          \t= 18\n"
                               "{stamp}    <--  pTimestamp     \t= 19\n"
                               "{stamp}    <--  pExtraErrorInfo\t= 20\n";
};

TEST_F(LastErrorCall, TheReturnedErrorIsFourLines)
{
    Fake().Answer = [](const FakeCall& call) {
        At<T_PDU_ERR_EVT>(call.Arguments[2]) = PDU_ERR_TLS_CIPHER_NOT_SUPPORTED;
        At<UNUM32>(call.Arguments[3]) = 1;
        At<UNUM32>(call.Arguments[4]) = 22;
        At<UNUM32>(call.Arguments[5]) = 4294967295u;
        return PDU_STATUS_NOERROR;
    };
    EXPECT_EQ(Lines(&hCoP_, &time_, &extra_),
              "{stamp}    <--  pErrorCode= PDU_ERR_TLS_CIPHER_NOT_SUPPORTED (0x00C3)\n"
              "{stamp}    <--  phCoP          \t= 1\n"
              "{stamp}    <--  pTimestamp     \t= 22\n"
              "{stamp}    <--  pExtraErrorInfo\t= 4294967295\n");
    EXPECT_EQ(code_, PDU_ERR_TLS_CIPHER_NOT_SUPPORTED);
    EXPECT_EQ(hCoP_, 1u);
    EXPECT_EQ(time_, 22u);
    EXPECT_EQ(extra_, 4294967295u);
}

TEST_F(LastErrorCall, TheLinesAreDecodedAsResults)
{
    LoggedCall call = Call(&code_, &hCoP_, &time_, &extra_);
    call.After = ResultLines(lines_);
    ExpectAtAllLevels({call});
}

TEST_F(LastErrorCall, EachNullOutputPointerIsReportedInItsLine)
{
    const std::string code = "{stamp}    <--  pErrorCode= PDU_ERR_CLL_NOT_CONNECTED (0x0040)\n";
    EXPECT_EQ(Lines(nullptr, &time_, &extra_), code + "{stamp}    <--  phCoP was NULL\n"
                                                      "{stamp}    <--  pTimestamp     \t= 19\n"
                                                      "{stamp}    <--  pExtraErrorInfo\t= 20\n");
    EXPECT_EQ(Lines(&hCoP_, nullptr, &extra_), code + "{stamp}    <--  phCoP          \t= 18\n"
                                                      "{stamp}    <--  pTimestamp was NULL\n"
                                                      "{stamp}    <--  pExtraErrorInfo\t= 20\n");
    EXPECT_EQ(Lines(&hCoP_, &time_, nullptr), code + "{stamp}    <--  phCoP          \t= 18\n"
                                                     "{stamp}    <--  pTimestamp     \t= 19\n"
                                                     "{stamp}    <--  pExtraErrorInfo was NULL\n");
    EXPECT_EQ(Lines(nullptr, nullptr, nullptr), code + "{stamp}    <--  phCoP was NULL\n"
                                                       "{stamp}    <--  pTimestamp was NULL\n"
                                                       "{stamp}    <--  pExtraErrorInfo was NULL\n");
}

TEST_F(LastErrorCall, AFailureShowsNoLineOfItsOwn)
{
    LoggedCall call = Call(&code_, &hCoP_, &time_, &extra_);
    call.Status = PDU_ERR_FCT_FAILED;
    call.StatusText = "PDU_ERR_FCT_FAILED (0x0001)";
    ExpectAtAllLevels({call});
}

TEST_F(LastErrorCall, AFailureWithNullPointersShowsNoLineOfItsOwn)
{
    LoggedCall call = Call(nullptr, nullptr, nullptr, nullptr);
    call.Status = 0x99;
    call.StatusText = "<UNKNOWN ERROR> (0x0099)";
    ExpectAtAllLevels({call});
}

TEST_F(LastErrorCall, ANullErrorPointerIsNotReadWithoutDecodedResults)
{
    Reconfigure(Levels{.Calls = 1});
    EXPECT_EQ(Logged([&] { Api().PDUGetLastError(1, 2, nullptr, nullptr, nullptr, nullptr); }),
              "{stamp} + PDUGetLastError\n{stamp} - PDUGetLastError<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(LastErrorCall, ACodeWithoutANameIsUnknownAndShowsItsNumber)
{
    code_ = 0x99;
    EXPECT_TRUE(
        Lines(&hCoP_, &time_, &extra_).starts_with("{stamp}    <--  pErrorCode= <UNKNOWN> (0x0099)\n"));
}

TEST_F(LastErrorCall, TheNamesAreThoseOfStatusesNotOfEventErrors)
{
    code_ = PDU_ERR_EVT_RX_TIMEOUT;
    EXPECT_TRUE(
        Lines(&hCoP_, &time_, &extra_).starts_with("{stamp}    <--  pErrorCode= <UNKNOWN> (0x0103)\n"));
    code_ = PDU_ERR_EVT_NOERROR;
    EXPECT_TRUE(Lines(&hCoP_, &time_, &extra_)
                    .starts_with("{stamp}    <--  pErrorCode= PDU_STATUS_NOERROR (0x0000)\n"));
}

TEST_F(LastErrorCall, AnUndefinedPrimitiveIsShownInDecimal)
{
    hCoP_ = 0xFFFFFFFF;
    EXPECT_EQ(Lines(&hCoP_, &time_, &extra_),
              "{stamp}    <--  pErrorCode= PDU_ERR_CLL_NOT_CONNECTED (0x0040)\n"
              "{stamp}    <--  phCoP          \t= 4294967295\n"
              "{stamp}    <--  pTimestamp     \t= 19\n"
              "{stamp}    <--  pExtraErrorInfo\t= 20\n");
}

TEST_F(LastErrorCall, UndefinedHandlesAreNamedAndForwarded)
{
    EXPECT_EQ(Logged([&] { Api().PDUGetLastError(0xFFFFFFFF, 0xFFFFFFFF, &code_, &hCoP_, &time_, &extra_); }),
              "{stamp} + PDUGetLastError(hMod=<PDU_HANDLE_UNDEF>, hCLL=<PDU_HANDLE_UNDEF>, pErrorCode=" +
                  PointerText(&code_) + ", phCoP=" + PointerText(&hCoP_) +
                  ", pTimestamp=" + PointerText(&time_) + ", pExtraErrorInfo=" + PointerText(&extra_) +
                  ")\n" + lines_ + "{stamp} - PDUGetLastError<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetLastError",
               {0xFFFFFFFF, 0xFFFFFFFF, Raw(&code_), Raw(&hCoP_), Raw(&time_), Raw(&extra_)});
}

TEST_F(LastErrorCall, TheClosingLineOfTheCallOutComesBeforeTheError)
{
    LogCallOuts();
    EXPECT_EQ(Logged([&] { Api().PDUGetLastError(1, 2, &code_, &hCoP_, &time_, &extra_); }),
              "{stamp} + PDUGetLastError" + arguments_ + "\n{stamp}     <PDUGetLastError\n" + lines_ +
                  "{stamp} - PDUGetLastError<PDU_STATUS_NOERROR (0x0000)>\n");
}

class TimestampCall : public RunningCallTest
{
protected:
    /// A call with handle 1 that leaves `time_` unchanged.
    LoggedCall Call()
    {
        return {.Name = "PDUGetTimestamp",
                .Call = [this] { return Api().PDUGetTimestamp(1, &time_); },
                .Seen = {1, Raw(&time_)},
                .Arguments = arguments_,
                .After = ResultLines("{stamp}    <--  pTimestamp              \t= 4711\n")};
    }

    UNUM32 time_ = 4711;
    const std::string arguments_ = "(hMod=0x00000001, pTimestamp=" + PointerText(&time_) + ")";
};

TEST_F(TimestampCall, TheReturnedTimeIsShown)
{
    Fake().Answer = [](const FakeCall& call) {
        At<UNUM32>(call.Arguments[1]) = 4294967295u;
        return PDU_STATUS_NOERROR;
    };
    EXPECT_EQ(Logged([&] { EXPECT_EQ(Api().PDUGetTimestamp(1, &time_), PDU_STATUS_NOERROR); }),
              "{stamp} + PDUGetTimestamp" + arguments_ +
                  "\n{stamp}    <--  pTimestamp              \t= 4294967295\n"
                  "{stamp} - PDUGetTimestamp<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetTimestamp", {1, Raw(&time_)});
    EXPECT_EQ(time_, 4294967295u);
}

TEST_F(TimestampCall, TheTimeIsDecodedAsAResult)
{
    ExpectAtAllLevels({Call()});
}

TEST_F(TimestampCall, AFailureShowsTheFormerValue)
{
    LoggedCall call = Call();
    call.Status = PDU_ERR_INVALID_HANDLE;
    call.StatusText = "PDU_ERR_INVALID_HANDLE (0x0060)";
    ExpectAtAllLevels({call});
}

TEST_F(TimestampCall, ANullOutputPointerIsReportedWhateverTheResult)
{
    const LoggedCall success = {.Name = "PDUGetTimestamp",
                                .Call = [&] { return Api().PDUGetTimestamp(0xFFFFFFFF, nullptr); },
                                .Seen = {0xFFFFFFFF, 0},
                                .Arguments =
                                    "(hMod=<PDU_HANDLE_UNDEF>, pTimestamp=" + PointerText(nullptr) + ")",
                                .After = ResultLines("{stamp}    <--  pTimestamp was NULL\n")};
    LoggedCall failure = success;
    failure.Status = PDU_ERR_FCT_FAILED;
    failure.StatusText = "PDU_ERR_FCT_FAILED (0x0001)";
    ExpectAtAllLevels({success, failure});
}

TEST_F(TimestampCall, LogCallOutsShowsASingleClosingLine)
{
    LogCallOuts();
    EXPECT_EQ(Logged([&] { Api().PDUGetTimestamp(1, &time_); }),
              "{stamp} + PDUGetTimestamp" + arguments_ +
                  "\n{stamp}     <PDUGetTimestamp\n"
                  "{stamp}    <--  pTimestamp              \t= 4711\n"
                  "{stamp} - PDUGetTimestamp<PDU_STATUS_NOERROR (0x0000)>\n");
}

/// Without decoding, the logger must not follow the pointers of a call.
class VersionAndStatusPointers : public RunningCallTest
{
protected:
    void ExpectNoneFollowed()
    {
        const auto wild = reinterpret_cast<UNUM32*>(std::uintptr_t{8});
        const auto version = reinterpret_cast<PDU_VERSION_DATA*>(wild);
        EXPECT_EQ(Api().PDUGetVersion(1, version), PDU_STATUS_NOERROR);
        EXPECT_EQ(Api().PDUGetStatus(1, 2, 3, wild, wild, wild), PDU_STATUS_NOERROR);
        EXPECT_EQ(Api().PDUGetLastError(1, 2, wild, wild, wild, wild), PDU_STATUS_NOERROR);
        EXPECT_EQ(Api().PDUGetTimestamp(1, wild), PDU_STATUS_NOERROR);
        EXPECT_EQ(Fake().TakeNames(), "PDUGetVersion PDUGetStatus PDUGetLastError PDUGetTimestamp");
    }
};

TEST_F(VersionAndStatusPointers, AreNotFollowedWithLoggingOff)
{
    Reconfigure({{"LogEnabled", "0"}, {"LogFnDecodeRsps", "2"}});
    ExpectNoneFollowed();
}

TEST_F(VersionAndStatusPointers, AreNotFollowedWithoutDecodedResults)
{
    Reconfigure(Levels{.Results = 0});
    ExpectNoneFollowed();
    Reconfigure(Levels{.Calls = 1});
    ExpectNoneFollowed();
}

TEST(VersionAndStatusCallsWithoutATarget, ReturnNotConstructedAndWriteNothing)
{
    Session session({}, "no_such_library");
    session.Construct();
    const CPduDll& api = session.Api();
    PDU_VERSION_DATA version = {};
    UNUM32 places[] = {1, 2, 3, 4};
    EXPECT_EQ(session.Logged([&] {
        EXPECT_EQ(api.PDUGetVersion(1, &version), 0x20u);
        EXPECT_EQ(api.PDUGetStatus(1, 2, 3, &places[0], &places[1], &places[2]), 0x20u);
        EXPECT_EQ(api.PDUGetLastError(1, 2, &places[0], &places[1], &places[2], &places[3]), 0x20u);
        EXPECT_EQ(api.PDUGetTimestamp(1, &places[0]), 0x20u);
        EXPECT_EQ(api.PDUGetStatus(1, 2, 3, nullptr, nullptr, nullptr), 0x20u);
        EXPECT_EQ(api.PDUGetLastError(1, 2, nullptr, nullptr, nullptr, nullptr), 0x20u);
    }),
              "{stamp} PDUGetVersion - Called but library not loaded!\n"
              "{stamp} PDUGetStatus - Called but library not loaded!\n"
              "{stamp} PDUGetLastError - Called but library not loaded!\n"
              "{stamp} PDUGetTimestamp - Called but library not loaded!\n"
              "{stamp} PDUGetStatus - Called but library not loaded!\n"
              "{stamp} PDUGetLastError - Called but library not loaded!\n");
    const PDU_VERSION_DATA untouched = {};
    EXPECT_EQ(std::memcmp(&version, &untouched, sizeof version), 0);
    for (UNUM32 i = 0; i < 4; ++i)
        EXPECT_EQ(places[i], i + 1);
}

} // namespace
} // namespace marvane::testing
