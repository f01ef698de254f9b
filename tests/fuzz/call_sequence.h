// Random sequences of calls, events, comms reports, reconfigurations and mischief with the log folder, in one
// session with the fake target, and a model of the logger that tells what each of them must do.
#pragma once

#include <deque>
#include <functional>
#include <random>
#include <type_traits>

#include "tests/fuzz/log_follower.h"
#include "tests/fuzz/record_source.h"
#include "tests/support/session.h"

namespace marvane::testing {

class CallSequence
{
public:
    CallSequence(Session& session, std::uint32_t seed);
    ~CallSequence();

    /// Runs steps until one fails.
    void Run(int steps);

    /// How often something was checked, so that a run which looked at nothing shows.
    struct Checks
    {
        int Marks = 0;     ///< entry and exit lines, events and reports found in the log
        int Changes = 0;   ///< calls behind which the file changed
        int Trimmings = 0; ///< openings after which the files were compared
        int DoubtfulSteps = 0;
    };
    const Checks& Done() const { return checks_; }

private:
    /// A call that is under way.
    struct ExpectedCall
    {
        const char* Name;
        std::vector<std::uint64_t> Arguments;
        T_PDU_ERROR Status;
        std::function<void()> Answer;
        bool MustBeSeen = false;
        bool Seen = false;
    };
    /// A line that the log must hold: "thread text". One that may be missing is optional.
    struct Mark
    {
        std::string Text;
        bool MayBeMissing;
        friend bool operator==(const Mark&, const Mark&) = default;
    };

    // Steps.
    void Step();
    void CallAny(RecordSource& source);
    void CallModulesAndLinks(UNUM32 choice, RecordSource& source);
    void CallWithRecords(UNUM32 choice, RecordSource& source);
    void CallQueries(UNUM32 choice, RecordSource& source);
    void Construct(RecordSource& source);
    void Destruct();
    void Reconfigure(RecordSource& source);
    void Mischief(RecordSource& source);
    void RaiseEvent(RecordSource& source);
    void Report(RecordSource& source);
    void Nested();
    void WaitForNextSecond();

    // One call: what reaches the target, what goes back, and what the log says.
    template <class... Parameters>
    void Call(const char* name, T_PDU_ERROR (*CPduDll::*function)(Parameters...), RecordSource& source,
              std::type_identity_t<Parameters>... arguments)
    {
        Call(
            name, function, source, [] {}, arguments...);
    }
    template <class Answer, class... Parameters>
    requires std::is_invocable_v<Answer>
    void Call(const char* name, T_PDU_ERROR (*CPduDll::*function)(Parameters...), RecordSource& source,
              Answer answer, std::type_identity_t<Parameters>... arguments)
    {
        const std::string records = source.Contents();
        ExpectedCall expected{name, {Raw(arguments)...}, Status(source), answer};
        BeginCall(expected);
        EndCall(expected, (session_.Api().*function)(arguments...));
        ExpectSame(records, source.Contents(), name);
    }
    template <class Argument> static std::uint64_t Raw(Argument argument)
    {
        if constexpr (std::is_pointer_v<Argument>)
            return reinterpret_cast<std::uintptr_t>(argument);
        else
            return argument;
    }
    void BeginCall(ExpectedCall& expected);
    void EndCall(ExpectedCall& expected, T_PDU_ERROR status);
    T_PDU_ERROR OnCall(const FakeCall& call);
    T_PDU_ERROR Status(RecordSource& source);
    void ExpectSame(const std::string& before, const std::string& after, const char* name);

    // Events.
    using Handler = CALLBACKFNC;
    static void FirstHandler(T_PDU_EVT_DATA type, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag, void* pAPITag);
    static void SecondHandler(T_PDU_EVT_DATA type, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag, void* pAPITag);
    void OnEvent(Handler handler, std::vector<std::uint64_t> arguments);
    Handler HandlerOf(UNUM32 hMod, UNUM32 hCLL) const;
    void Remember(UNUM32 hMod, UNUM32 hCLL, Handler handler);

    // The model.
    UNUM32 Value(const char* key) const;
    bool Active() const { return Value("LogEnabled") == 1 || Value("LogNewFileCfg") == 1; }
    bool IsLogged() const { return loaded_ && Active() && fileOpen_; }
    bool LogsCalls() const { return IsLogged() && Value("LogFnCalls") != 0; }
    bool CommsApart() const { return (Value("LogCommsFile") & 1) != 0 && Value("LogDoIPComms") != 0; }
    bool BeginsFileEachTime() const { return Value("LogEnabled") == 1 && Value("LogNewFileCfg") == 1; }
    bool FolderIsSound() const;
    void MendFolder();
    void Recover(RecordSource& source);
    void Expect(const std::string& text, bool mayBeMissing = false);

    // Checks behind each step.
    void CheckLog();
    void CheckMarks();
    /// True if the lines seen from there on are those expected, but for lines that may be missing.
    bool Fits(std::size_t expected, std::size_t seen, bool wasCut, std::size_t& furthest) const;
    void CheckChanges(const std::vector<LogLine>& lines);
    void CheckFiles(const std::set<std::string>& before, std::size_t changes);
    void GatherMarks(const std::vector<LogLine>& lines);
    void Doubt();
    void Trace(const std::string& text);
    std::string TraceText() const;

    Session& session_;
    LogFollower follower_;
    std::mt19937 random_;
    static CallSequence* running_;

    std::map<std::string, std::string> configured_;
    std::map<std::string, std::string> inForce_;
    bool loaded_ = false;
    bool target_ = false;
    bool fileOpen_ = false;
    bool commsApart_ = false;
    bool pathIsGood_ = false;
    // The log folder was tampered with: what was written may be lost, until a file is opened in a sound
    // folder.
    bool doubt_ = false;
    bool readOnly_ = false;
    bool folderWasMade_ = false;
    bool constructOpens_ = false;

    std::map<std::pair<UNUM32, UNUM32>, Handler> linkHandlers_;
    std::map<UNUM32, Handler> moduleHandlers_;
    Handler defaultHandler_ = nullptr;
    CALLBACKFNC trap_ = nullptr;
    PDU_MS_LOG_CALLBACK comms_ = nullptr;

    std::vector<ExpectedCall*> underWay_;
    std::vector<std::uint64_t> eventArguments_;
    Handler eventHandler_ = nullptr;
    int eventsSeen_ = 0;
    int reports_ = 0;
    int depth_ = 0;
    int waits_ = 0;

    // Of the present step.
    bool lifecycle_ = false;
    std::size_t opened_ = 0;
    int constructs_ = 0;
    std::deque<Mark> expected_;
    std::deque<std::string> seen_;
    std::deque<std::string> trace_;
    Checks checks_;
};

} // namespace marvane::testing
