#include "tests/fuzz/call_sequence.h"

#include <algorithm>
#include <cstdio>
#include <thread>

#include <gtest/gtest.h>

#include "platform/process.h"

namespace marvane::testing {

namespace {

constexpr const char* Cut = "~";
constexpr int DeepestNesting = 3;

std::string ThreadText()
{
    char text[20];
    std::snprintf(text, sizeof text, "%08X ", static_cast<unsigned>(platform::CurrentThreadId()));
    return text;
}

std::string ExitText(const char* name, T_PDU_ERROR status)
{
    char number[20];
    std::snprintf(number, sizeof number, " (0x%04X)>", static_cast<unsigned>(status));
    return std::string("- ") + name + "<" + std::string(StatusText(status)) + number;
}

/// What a line of the log says of a call, an event or a report; empty for all other lines.
std::string MarkOf(const LogLine& line)
{
    const std::string& text = line.Content;
    if (text.starts_with("+ PDU"))
        return line.Thread + " " + text.substr(0, text.find('('));
    if (text.starts_with("- PDU") || text.ends_with(" - Called but library not loaded!"))
        return line.Thread + " " + text;
    const std::size_t report = text.find("  report ");
    return report == std::string::npos ? "" : line.Thread + text.substr(report + 1);
}

} // namespace

CallSequence* CallSequence::running_ = nullptr;

CallSequence::CallSequence(Session& session, std::uint32_t seed)
    : session_(session), follower_(session.LogFolder()), random_(seed)
{
    running_ = this;
    session_.Fake().Answer = [this](const FakeCall& call) { return OnCall(call); };
}

CallSequence::~CallSequence()
{
    // Else the folder could not be removed.
    MendFolder();
    session_.Fake().Answer = nullptr;
    running_ = nullptr;
}

void CallSequence::Run(int steps)
{
    std::vector<std::uint8_t> none;
    RecordSource zeros(none.data(), 0);
    Reconfigure(zeros);
    for (int i = 0; i < steps && !::testing::Test::HasFailure(); ++i) {
        const std::set<std::string> before = follower_.Names();
        lifecycle_ = false;
        opened_ = 0;
        constructs_ = 0;
        Trace("step " + std::to_string(i));
        Step();
        EXPECT_TRUE(underWay_.empty());
        CheckLog();
        if (::testing::Test::HasFailure())
            std::fprintf(stderr, "%s", TraceText().c_str());
        CheckFiles(before, opened_);
    }
    session_.Fake().TakeCalls();
}

void CallSequence::Step()
{
    std::vector<std::uint8_t> bytes(20 + random_() % 400);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random_());
    RecordSource source(bytes.data(), bytes.size());
    const auto apart = [&](auto action) {
        // Some on a thread of the target's own.
        if (source.Coin())
            std::thread(action).join();
        else
            action();
    };
    const auto kind = random_() % 100;
    if (doubt_ && kind < 8)
        Recover(source);
    else if (!target_ && kind < 30)
        Construct(source);
    else if (kind < 70)
        CallAny(source);
    else if (kind < 80)
        apart([&] { RaiseEvent(source); });
    else if (kind < 88)
        apart([&] { Report(source); });
    else if (kind < 92)
        Reconfigure(source);
    else if (kind < 94)
        Construct(source);
    else if (kind < 97)
        Destruct();
    else if (kind < 99)
        Mischief(source);
    else
        WaitForNextSecond();
}

void CallSequence::Nested()
{
    if (depth_ >= DeepestNesting || random_() % 4 != 0)
        return;
    ++depth_;
    std::vector<std::uint8_t> bytes(200);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random_());
    RecordSource source(bytes.data(), bytes.size());
    const auto kind = random_() % 20;
    if (kind < 10)
        CallAny(source);
    else if (kind < 14)
        RaiseEvent(source);
    else if (kind < 18)
        Report(source);
    else if (kind == 18)
        Construct(source);
    else
        Destruct();
    --depth_;
}

void CallSequence::WaitForNextSecond()
{
    // So that a change of file meets a new name; few times, to save time.
    if (waits_++ >= 2)
        return;
    Trace("wait");
    const std::time_t begin = std::time(nullptr);
    while (std::time(nullptr) == begin)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

void CallSequence::Reconfigure(RecordSource& source)
{
    const auto one = [&](std::initializer_list<const char*> values) {
        return std::string(values.begin()[source.Below(static_cast<UNUM32>(values.size()))]);
    };
    configured_ = {
        {"LogEnabled", one({"1", "1", "1", "1", "1", "0", "2"})},
        {"LogNewFileCfg", one({"0", "0", "0", "1"})},
        {"LogFnCalls", one({"2", "2", "2", "2", "1", "0", "3"})},
        {"LogFnDecodeArgs", one({"2", "1", "0", "2"})},
        {"LogFnDecodeRsps", one({"2", "1", "0", "2"})},
        {"LogCbCalls", one({"1", "0"})},
        {"LogCallOuts", one({"1", "0", "2"})},
        {"LogFlush", one({"1", "1", "1", "0"})},
        {"LogMaxPduBuff", one({"32", "0", "1", "16", "100000"})},
        {"LogFileMaxSize", one({"0", "1", "8000", "30000", "200000"})},
        {"LogFileMaxNum", one({"0", "1", "2", "5", "2", "1", "5", "3", "0", "2", "-1"})},
        {"LogDoIPComms", one({"1", "0", "2"})},
        {"LogCommsFile", one({"0", "1", "2"})},
        {"PDUAPILibDll", one({"", "", "", "", "", "", "", "no_such_"}) + LibraryName("fake_target")},
        {"LogFileDir", source.Below(16) == 15 ? "" : session_.LogFolder().string()},
        {"DbgAPP", one({"", "", "DEBUG3", "WRONG"})},
    };
    std::string text = "<?xml version=\"1.0\"?>\n<D_PDU_API_CFG>\n";
    text += "<Attribute Name=\"InstalledPath\" Type=\"String\" Value=\"" + session_.TargetPath() + "\"/>\n";
    for (const auto& [key, value] : configured_) {
        const bool isText = key == "PDUAPILibDll" || key == "LogFileDir" || key == "DbgAPP";
        if (!value.empty())
            text += "<Attribute Name=\"" + key + "\" Type=\"" + (isText ? "String" : "UNUM32") +
                    "\" Value=\"" + value + "\"/>\n";
    }
    session_.ConfigureText(text + "</D_PDU_API_CFG>\n");
    Trace(text);
}

void CallSequence::Mischief(RecordSource& source)
{
    namespace fs = std::filesystem;
    std::error_code ignored;
    const fs::path folder = session_.LogFolder();
    const UNUM32 kind = source.Below(5);
    Trace("mischief " + std::to_string(kind));
    if (kind == 0) {
        fs::remove_all(folder, ignored);
        Doubt();
    } else if (kind == 1) {
        fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec, ignored);
        readOnly_ = true;
        Doubt();
    } else if (kind == 2) {
        // Not the oldest but that with the lowest name goes first.
        for (UNUM32 i = source.Below(6); i != 0; --i)
            follower_.Plant("D-PDU_API_Logger_00-00-0000_00-00-0" + std::to_string(i) + ".LGR");
    } else if (kind == 3)
        fs::create_directory(folder / "D-PDU_API_Logger_99-99-9999_00-00-00.LGR", ignored);
    else
        MendFolder();
}

void CallSequence::MendFolder()
{
    std::error_code ignored;
    std::filesystem::permissions(session_.LogFolder(), std::filesystem::perms::owner_all, ignored);
    std::filesystem::create_directories(session_.LogFolder(), ignored);
    readOnly_ = false;
}

UNUM32 CallSequence::Value(const char* key) const
{
    const auto found = inForce_.find(key);
    return found == inForce_.end() ? 0 : static_cast<UNUM32>(std::stoll(found->second));
}

bool CallSequence::FolderIsSound() const
{
    // Made at the first opening, and never again.
    const bool exists = std::filesystem::exists(session_.LogFolder()) || !folderWasMade_;
    return exists && !readOnly_;
}

void CallSequence::Recover(RecordSource& source)
{
    MendFolder();
    do
        Reconfigure(source);
    while (source.Left() != 0 &&
           (configured_["LogEnabled"] != "1" || configured_["LogFileMaxNum"] == "-1" ||
            configured_["LogFileDir"].empty() || configured_["PDUAPILibDll"].starts_with("no")));
    // What may still be open is closed by an active end alone.
    Construct(source);
    Destruct();
    Construct(source);
}

void CallSequence::Doubt()
{
    doubt_ = true;
    expected_.clear();
    seen_.clear();
}

void CallSequence::Expect(const std::string& text, bool mayBeMissing)
{
    if (!doubt_)
        expected_.push_back({ThreadText() + text, mayBeMissing});
}

void CallSequence::ExpectSame(const std::string& before, const std::string& after, const char* name)
{
    EXPECT_TRUE(before == after) << "the records of " << name << " were changed";
}

void CallSequence::BeginCall(ExpectedCall& expected)
{
    Trace(std::string(depth_, ' ') + "call " + expected.Name);
    if (LogsCalls() && target_)
        Expect(std::string("+ ") + expected.Name);
    expected.MustBeSeen = target_;
    underWay_.push_back(&expected);
}

T_PDU_ERROR CallSequence::OnCall(const FakeCall& call)
{
    if (std::string_view(call.Function) == "PDU_MS_SetLogCallback") {
        if (call.Arguments[0] != 0)
            comms_ = reinterpret_cast<PDU_MS_LOG_CALLBACK>(static_cast<std::uintptr_t>(call.Arguments[0]));
        return PDU_STATUS_NOERROR;
    }
    if (underWay_.empty()) {
        ADD_FAILURE() << call.Function << " was not called";
        return PDU_STATUS_NOERROR;
    }
    ExpectedCall& expected = *underWay_.back();
    std::vector<std::uint64_t> arguments(call.Arguments, call.Arguments + call.Count);
    EXPECT_STREQ(call.Function, expected.Name);
    EXPECT_FALSE(expected.Seen) << expected.Name << " was forwarded twice";
    expected.Seen = true;
    if (std::string_view(call.Function) == "PDURegisterEventCallback") {
        EXPECT_EQ(arguments[2] == 0, expected.Arguments[2] == 0);
        if (arguments[2] != 0)
            trap_ = reinterpret_cast<CALLBACKFNC>(static_cast<std::uintptr_t>(arguments[2]));
        Remember(static_cast<UNUM32>(arguments[0]), static_cast<UNUM32>(arguments[1]),
                 reinterpret_cast<CALLBACKFNC>(static_cast<std::uintptr_t>(expected.Arguments[2])));
        arguments[2] = expected.Arguments[2];
    }
    if (std::string_view(call.Function) == "PDUConstruct") {
        target_ = loaded_ = true;
        fileOpen_ |= constructOpens_;
        folderWasMade_ |= constructOpens_;
    }
    EXPECT_EQ(arguments, expected.Arguments) << expected.Name;
    expected.Answer();
    Nested();
    return expected.Status;
}

void CallSequence::EndCall(ExpectedCall& expected, T_PDU_ERROR status)
{
    underWay_.pop_back();
    EXPECT_EQ(expected.Seen, expected.MustBeSeen) << expected.Name;
    EXPECT_EQ(status, expected.Seen ? expected.Status : PDU_ERR_PDUAPI_NOT_CONSTRUCTED) << expected.Name;
    if (!expected.Seen) {
        if (IsLogged())
            Expect(std::string(expected.Name) + " - Called but library not loaded!");
        return;
    }
    if (LogsCalls())
        Expect(ExitText(expected.Name, expected.Status));
    // So configured the end of a module's use begins a file, even if none was open.
    if (loaded_ && BeginsFileEachTime() && std::string_view(expected.Name) == "PDUModuleDisconnect")
        fileOpen_ = true;
}

void CallSequence::Construct(RecordSource& source)
{
    lifecycle_ = true;
    ++constructs_;
    const bool targetIsGood = !configured_["PDUAPILibDll"].starts_with("no_such_");
    const bool hasFolder = !configured_["LogFileDir"].empty();
    // Only with all else good, what happens tells whether the file could be opened.
    if (!hasFolder || !targetIsGood || configured_["LogEnabled"] == "2")
        MendFolder();
    // Whoever is root writes into a read-only folder too.
    const bool isSure = FolderIsSound();
    inForce_ = configured_;
    defaultHandler_ = nullptr;
    constructOpens_ = !loaded_ && hasFolder && Active();
    const bool erasesAll = Value("LogFileMaxNum") == 0xFFFFFFFF;
    if (constructOpens_ && doubt_ && isSure && !fileOpen_ && depth_ == 0 && !erasesAll) {
        doubt_ = false;
        follower_.SkipAll();
    }
    if (erasesAll || !isSure || (constructOpens_ && fileOpen_))
        Doubt();
    if (!loaded_ && hasFolder && isSure) {
        loaded_ = true;
        fileOpen_ |= constructOpens_;
        folderWasMade_ |= constructOpens_;
        opened_ += constructOpens_;
    }
    if (constructOpens_)
        commsApart_ = CommsApart();
    if (loaded_ && !target_) {
        if (Value("LogEnabled") < 2)
            pathIsGood_ = targetIsGood;
        target_ = pathIsGood_;
    }
    void* const tag = source.Bytes(1);
    CHAR8* const option = source.Text();
    ExpectedCall expected{"PDUConstruct", {Raw(option), Raw(tag)}, Status(source), [] {}};
    for (const auto& [key, value] : inForce_)
        Trace(key + "=" + value);
    Trace("loaded " + std::to_string(loaded_) + ", target " + std::to_string(target_) + ", file open " +
          std::to_string(fileOpen_) + ", in doubt " + std::to_string(doubt_));
    BeginCall(expected);
    const T_PDU_ERROR status = session_.Api().PDUConstruct(option, tag);
    if (!isSure)
        expected.MustBeSeen = expected.Seen;
    EndCall(expected, status);
}

void CallSequence::Destruct()
{
    lifecycle_ = true;
    ExpectedCall expected{"PDUDestruct", {}, random_() % 2 == 0 ? 0u : 1u, [] {}};
    BeginCall(expected);
    const T_PDU_ERROR status = session_.Api().PDUDestruct();
    EndCall(expected, status);
    if (!expected.Seen || !loaded_)
        return;
    target_ = false;
    loaded_ = false;
    if (Active())
        fileOpen_ = false;
}

T_PDU_ERROR CallSequence::Status(RecordSource& source)
{
    return source.Coin() ? PDU_STATUS_NOERROR : source.Code(ErrorCodeNames);
}

void CallSequence::Remember(UNUM32 hMod, UNUM32 hCLL, Handler handler)
{
    if (hCLL != PDU_HANDLE_UNDEF)
        linkHandlers_[{hMod, hCLL}] = handler;
    else if (hMod != PDU_HANDLE_UNDEF)
        moduleHandlers_[hMod] = handler;
    else
        defaultHandler_ = handler;
}

CallSequence::Handler CallSequence::HandlerOf(UNUM32 hMod, UNUM32 hCLL) const
{
    const auto link = linkHandlers_.find({hMod, hCLL});
    if (hCLL != PDU_HANDLE_UNDEF && link != linkHandlers_.end() && link->second)
        return link->second;
    const auto module = moduleHandlers_.find(hMod);
    if (hMod != PDU_HANDLE_UNDEF && module != moduleHandlers_.end() && module->second)
        return module->second;
    return defaultHandler_;
}

void CallSequence::FirstHandler(T_PDU_EVT_DATA type, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag, void* pAPITag)
{
    running_->OnEvent(FirstHandler, {type, hMod, hCLL, Raw(pCLLTag), Raw(pAPITag)});
}

void CallSequence::SecondHandler(T_PDU_EVT_DATA type, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag, void* pAPITag)
{
    running_->OnEvent(SecondHandler, {type, hMod, hCLL, Raw(pCLLTag), Raw(pAPITag)});
}

void CallSequence::OnEvent(Handler handler, std::vector<std::uint64_t> arguments)
{
    ++eventsSeen_;
    EXPECT_EQ(handler, eventHandler_);
    EXPECT_EQ(arguments, eventArguments_);
    Nested();
}

void CallSequence::RaiseEvent(RecordSource& source)
{
    if (!trap_)
        return;
    const UNUM32 type = source.Code(EventTypeNames);
    const UNUM32 hMod = source.Below(4) == 0 ? PDU_HANDLE_UNDEF : source.Below(3);
    const UNUM32 hCLL = source.Below(4) == 0 ? PDU_HANDLE_UNDEF : source.Below(3);
    void* const linkTag = source.Bytes(1);
    void* const apiTag = source.Coin() ? source.Bytes(1) : nullptr;
    Trace(std::string(depth_, ' ') + "event");
    const Handler handler = HandlerOf(hMod, hCLL);
    const bool passes = target_ && handler;
    const int seen = eventsSeen_;
    const auto arguments = std::exchange(eventArguments_, {type, hMod, hCLL, Raw(linkTag), Raw(apiTag)});
    const Handler former = std::exchange(eventHandler_, handler);
    if (!target_ && IsLogged())
        Expect("PDUCallbackTrap - Called but library not loaded!");
    if (passes && IsLogged() && Value("LogCbCalls") != 0)
        Expect("+ PDUCallbackTrap");
    trap_(type, hMod, hCLL, linkTag, apiTag);
    if (passes && Active() && fileOpen_ && Value("LogCbCalls") != 0)
        Expect("- PDUCallbackTrap");
    EXPECT_EQ(eventsSeen_ > seen, passes);
    eventArguments_ = arguments;
    eventHandler_ = former;
}

void CallSequence::Report(RecordSource& source)
{
    if (!comms_)
        return;
    const std::string text = "report " + std::to_string(++reports_);
    Trace(std::string(depth_, ' ') + text);
    std::vector<LogParameter> parameters;
    for (UNUM32 i = source.Below(4); i != 0; --i) {
        if (source.Coin())
            parameters.push_back({0x1000, 0, "A number", source.Bytes(4)});
        else
            parameters.push_back({0x1002, 0, "Bytes", source.New(LogParameterBytes{40, source.Bytes(40)})});
    }
    if (Active() && fileOpen_ && !(commsApart_ && CommsApart()))
        Expect(text, commsApart_ || CommsApart());
    const auto count = static_cast<UNUM32>(parameters.size());
    EXPECT_EQ(comms_(text.c_str(), source.Coin(), 255 + source.Below(5), count, parameters.data()), 0u);
}

void CallSequence::CheckLog()
{
    // A file may have been made anew under its name; its lines are looked at when all is over.
    if (doubt_) {
        ++checks_.DoubtfulSteps;
        return follower_.SkipAll();
    }
    const std::vector<LogLine> lines = follower_.NewLines();
    const bool isOnDisc = Value("LogFlush") == 1 && Active();
    if (std::exchange(follower_.Lost, false)) {
        Doubt();
        doubt_ = !isOnDisc;
        opened_ = 0;
        return follower_.SkipAll();
    }
    GatherMarks(lines);
    // What lies in the stream is seen later.
    if (isOnDisc || !fileOpen_)
        CheckMarks();
    const auto changes =
        static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), [](const LogLine& line) {
            return line.Content.ends_with(" - Continuation file");
        }));
    opened_ += changes;
    // Which limits were in force when a file was opened is known only if one start at most came, ahead of it.
    const bool limitsAreKnown = constructs_ == 0 || (constructs_ == 1 && changes == 0);
    if (!isOnDisc || !limitsAreKnown)
        opened_ = 0;
    if (isOnDisc && !lifecycle_)
        CheckChanges(lines);
}

void CallSequence::GatherMarks(const std::vector<LogLine>& lines)
{
    for (const LogLine& line : lines) {
        if (std::string mark = MarkOf(line); !mark.empty())
            seen_.push_back(std::move(mark));
        if (line.Content.ends_with("\t\t\t\t..."))
            seen_.push_back(Cut);
    }
}

void CallSequence::CheckMarks()
{
    std::size_t furthest = 0;
    if (Fits(0, 0, false, furthest))
        checks_.Marks += static_cast<int>(seen_.size());
    else {
        std::string seen;
        for (const std::string& mark : seen_)
            seen += mark + "\n";
        const bool atEnd = furthest == expected_.size();
        ADD_FAILURE() << "missing: " << (atEnd ? "nothing" : expected_[furthest].Text) << ", found:\n"
                      << seen;
    }
    expected_.clear();
    seen_.clear();
}

bool CallSequence::Fits(std::size_t expected, std::size_t seen, bool wasCut, std::size_t& furthest) const
{
    furthest = std::max(furthest, expected);
    for (; seen < seen_.size() && seen_[seen] == Cut; ++seen)
        wasCut = true;
    if (expected == expected_.size())
        return seen == seen_.size();
    const Mark& mark = expected_[expected];
    if (seen < seen_.size() && seen_[seen] == mark.Text && Fits(expected + 1, seen + 1, false, furthest))
        return true;
    // The line for which no room was left is the last one of its text.
    const bool mayBeMissing = mark.MayBeMissing || (wasCut && mark.Text.find(" - PDU") != std::string::npos);
    return mayBeMissing && Fits(expected + 1, seen, wasCut, furthest);
}

void CallSequence::CheckChanges(const std::vector<LogLine>& lines)
{
    const UNUM32 limit = Value("LogFileMaxNum") == 0 ? 0 : Value("LogFileMaxSize");
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string& text = lines[i].Content;
        const bool isLast = i + 1 == lines.size();
        const std::string next = isLast ? "" : lines[i + 1].Content;
        if (text.ends_with(" - Changing log file")) {
            ++checks_.Changes;
            const std::string name = text.substr(0, text.find(" - Changing"));
            EXPECT_EQ(next, name + " - Continuation file");
            ASSERT_LT(i + 2, lines.size());
            EXPECT_TRUE(lines[i + 2].Content.starts_with("########## D-PDU API LOGGER VERSION: "))
                << lines[i + 2].Content;
        } else if (!isLast) {
            EXPECT_EQ(lines[i].File, lines[i + 1].File) << "the file changed behind: " << text;
        }
        if (!text.starts_with("- PDU") || text == "- PDUCallbackTrap")
            continue;
        const std::string name = text.substr(2, text.find('<') - 2);
        const bool changes =
            (BeginsFileEachTime() && name == "PDUModuleDisconnect") || (limit != 0 && lines[i].End > limit);
        EXPECT_EQ(next == "# " + name + " - Changing log file", changes)
            << text << " ends at " << lines[i].End << " of " << limit << ", behind it: " << next;
    }
}

void CallSequence::CheckFiles(const std::set<std::string>& before, std::size_t changes)
{
    if (doubt_ || changes != 1)
        return;
    ++checks_.Trimmings;
    std::set<std::string> kept = before;
    while (kept.size() > Value("LogFileMaxNum") + 1)
        kept.erase(kept.begin());
    const std::set<std::string> after = follower_.Names();
    std::vector<std::string> added;
    std::set_difference(after.begin(), after.end(), kept.begin(), kept.end(), std::back_inserter(added));
    EXPECT_TRUE(std::includes(after.begin(), after.end(), kept.begin(), kept.end()))
        << "a file too many was erased";
    EXPECT_LE(added.size(), Value("LogFileMaxNum") == 0 && !kept.empty() ? 0u : 1u) << "surplus files stayed";
}

void CallSequence::Trace(const std::string& text)
{
    trace_.push_back(text + "\n");
    if (trace_.size() > 60)
        trace_.pop_front();
}

std::string CallSequence::TraceText() const
{
    std::string text;
    for (const std::string& line : trace_)
        text += line;
    return text;
}

} // namespace marvane::testing
