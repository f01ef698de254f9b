// A sample diagnostic application: one workshop session on the D-PDU API library that is named.
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <thread>
#include <vector>

#include "examples/diag_session/session.h"

namespace {

constexpr const char* Usage =
    "Usage: diag_session --library PATH [--quiet] [--options STRING]\n"
    "                    [--leak] [--pause MS] [--give-up SECONDS]\n"
    "\n"
    "Runs a workshop session on a D-PDU API library (ISO 22900-2) and prints what it found:\n"
    "modules, resources, ComParams, identification, trouble codes, a routine, a short\n"
    "download, tester present, and vehicle identification over DoIP. The session is written\n"
    "for the simulated interface SimVci.\n"
    "\n"
    "  --library PATH     the library to load\n"
    "  --quiet            print errors only\n"
    "  --options STRING   the option string of PDUConstruct; SimVci takes Fault='FAULT,...',\n"
    "                     and prints its faults if it does not know one: Fault='help'\n"
    "  --help             this text\n"
    "\n"
    "To see what a log shows of a bad application:\n"
    "  --leak             destroy no item of an answer\n"
    "  --pause MS         wait so many milliseconds before each request\n"
    "  --give-up SECONDS  end the process with status 3 if the session lasts longer\n"
    "\n"
    "Exit status: 0 if the session succeeded, 1 if not, 2 for wrong options.\n";

/// All steps between PDUConstruct and PDUDestruct.
void RunSteps(diag::Session& session)
{
    const diag::Api& api = session.Pdu;
    session.Expect("PDURegisterEventCallback",
                   api.PDURegisterEventCallback(PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, diag::Session::OnEvent));
    IdentifyModule(session);
    ShowResources(session);
    const UNUM32 hCLL =
        OpenLink(session, "ISO_11898_2_DWCAN", "ISO_15765_3_on_ISO_15765_2",
                 {{6, session.IdOf(PDU_OBJT_PINTYPE, "HI")}, {14, session.IdOf(PDU_OBJT_PINTYPE, "LOW")}});
    UseParameters(session, hCLL);
    ShareResource(session, hCLL);
    Diagnose(session, hCLL);
    UseModuleCommands(session, hCLL);
    CloseLink(session, hCLL);
    UseDoIP(session);
    ResetModule(session);
    session.Expect("PDUModuleDisconnect", api.PDUModuleDisconnect(session.Module));
}

/// The whole session. Throws Failure.
void RunSession(const diag::Api& api, const diag::Habits& habits)
{
    diag::Session session(api, habits);
    std::string options = habits.Options;
    session.Expect("PDUConstruct", api.PDUConstruct(options.data(), &session));
    try {
        RunSteps(session);
    } catch (...) {
        // No event may come once the session is gone.
        api.PDUDestruct();
        throw;
    }
    session.Expect("PDUDestruct", api.PDUDestruct());
    session.Say("Session ended.");
}

/// Ends the process after some seconds, if it has not ended by then.
void EndLater(unsigned seconds)
{
    std::thread([seconds] {
        std::this_thread::sleep_for(std::chrono::seconds(seconds));
        std::fprintf(stderr, "diag_session: no end after %u s: given up\n", seconds);
        std::_Exit(3);
    }).detach();
}

/// Wrong options, with a message for the user.
struct WrongOption : diag::Failure
{
    using Failure::Failure;
};

/// The arguments of the program, one after the other.
class Arguments
{
public:
    Arguments(int count, char** first) : rest_(first + (count > 0 ? 1 : 0), first + count) {}

    bool AreLeft() const { return next_ < rest_.size(); }
    std::string_view Next() { return rest_[next_++]; }
    /// The value of an option. Throws WrongOption if there is none.
    std::string ValueOf(std::string_view option, const char* what)
    {
        if (!AreLeft())
            throw WrongOption(std::string(option) + " needs " + what);
        return std::string(Next());
    }
    unsigned NumberOf(std::string_view option)
    {
        const std::string value = ValueOf(option, "a number");
        unsigned number = 0;
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
        if (error != std::errc() || *end != '\0')
            throw WrongOption(std::string(option) + " needs a number, and " + value + " is none");
        return number;
    }

private:
    std::vector<std::string_view> rest_;
    std::size_t next_ = 0;
};

/// The path of the library; none if only help is asked for. Throws WrongOption.
std::optional<std::string> ReadOptions(Arguments arguments, diag::Habits& habits)
{
    std::optional<std::string> library;
    while (arguments.AreLeft()) {
        const std::string_view option = arguments.Next();
        if (option == "--help")
            return std::nullopt;
        if (option == "--quiet")
            habits.Quiet = true;
        else if (option == "--leak")
            habits.Leaks = true;
        else if (option == "--pause")
            habits.PauseMs = arguments.NumberOf(option);
        else if (option == "--give-up")
            habits.GiveUpSeconds = arguments.NumberOf(option);
        else if (option == "--options")
            habits.Options = arguments.ValueOf(option, "a string");
        else if (option == "--library")
            library = arguments.ValueOf(option, "a path");
        else
            throw WrongOption("unknown option " + std::string(option));
    }
    if (!library)
        throw WrongOption("--library is missing");
    return library;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        diag::Habits habits;
        const auto library = ReadOptions({argc, argv}, habits);
        if (!library) {
            std::fputs(Usage, stdout);
            return 0;
        }
        if (habits.GiveUpSeconds != 0)
            EndLater(habits.GiveUpSeconds);
        RunSession(diag::LoadApi(*library), habits);
        return 0;
    } catch (const WrongOption& wrong) {
        std::fprintf(stderr, "diag_session: %s\n\n%s", wrong.what(), Usage);
        return 2;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "diag_session: %s\n", failure.what());
        return 1;
    }
}
