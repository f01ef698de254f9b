// `marvane selftest`: the proof of the package on this machine.
#include "tool/setup/selftest.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/system_version.h"
#include "tool/commands/finding_screen.h"
#include "tool/commands/setup_options.h"
#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/console/help.h"
#include "tool/console/json_text.h"
#include "tool/setup/library_look.h"

namespace marvane::tool {

namespace {

bool HasPassed(const SelftestResult& result)
{
    return !HasErrors(result.All);
}

std::string Tenths(double nanoseconds)
{
    const long long tenths = std::llround(nanoseconds * 10);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

std::string ResultJson(const SelftestResult& result)
{
    JsonObject object;
    object.Add("machine", MachineText(result.For)).Add("tested", result.IsDelivered);
    if (result.IsDelivered) {
        object.Add("passed", HasPassed(result)).Add("version", result.Version);
        object.Add("calls", result.Calls)
            .Add("functions", result.Functions)
            .Add("log_lines", result.LogLines);
    }
    if (result.BareCall)
        object.AddRaw("bare_call_ns", Tenths(*result.BareCall));
    if (result.LoggedCall)
        object.AddRaw("logged_call_ns", Tenths(*result.LoggedCall));
    return object.AddRaw("findings", FindingsJson(result.All)).Text();
}

void WriteJson(Console& console, const std::vector<SelftestResult>& results, bool passed)
{
    JsonArray widths;
    for (const SelftestResult& result : results)
        widths.AddRaw(ResultJson(result));
    console.Write(JsonObject()
                      .Add("schema", "marvane.selftest/1")
                      .Add("system", platform::SystemVersion())
                      .AddRaw("widths", widths.Text())
                      .Add("passed", passed)
                      .Text() +
                  "\n");
}

void WritePage(Console& console, const std::vector<SelftestResult>& results, bool passed)
{
    console.Write(VersionLine() + " on " + platform::SystemVersion() + "\n");
    for (const SelftestResult& result : results) {
        console.Write(std::string("\n") + MachineText(result.For) + "\n\n");
        for (const CheckFinding& finding : result.All)
            console.Write(ColouredFinding(console, finding));
    }
    console.Write(passed ? "\nSelftest passed.\n" : "\nSelftest failed.\n");
}

int RunSelftestCommand(const Arguments& arguments, Console& console)
{
    std::vector<SelftestResult> results;
    const Machine other = OwnMachine() == Machine::X64 ? Machine::X86 : Machine::X64;
    for (const Machine machine : {OwnMachine(), other})
        results.push_back(RunSelftest(arguments.Value("--from").value_or(""), machine));
    const auto isDelivered = [](const SelftestResult& result) { return result.IsDelivered; };
    if (std::none_of(results.begin(), results.end(), isDelivered))
        throw Trouble("there is no logger library to test; name its folder with --from");
    if (arguments.Has("--log")) {
        console.Write(std::find_if(results.begin(), results.end(), isDelivered)->Log);
        return 0;
    }
    const bool passed = std::all_of(results.begin(), results.end(), HasPassed);
    arguments.Has("--json") ? WriteJson(console, results, passed) : WritePage(console, results, passed);
    return passed ? 0 : 1;
}

constexpr Option SelftestOptionList[] = {
    {"--from", "FOLDER", "Where the package is (x64 and x86 in it or beside the command)"},
    {"--log", "", "Print the normalised log of the session instead of the page"},
};
constexpr OptionGroup Groups[] = {{"What to test", SelftestOptionList}, RootOptions, JsonOptions};
constexpr Example Examples[] = {
    {"selftest", "does Marvane work on this machine?"},
    {"selftest --json", "the same for a script"},
};

} // namespace

extern const Command SelftestCommand;
constinit const Command SelftestCommand = {
    .Name = "selftest",
    .Purpose = "Prove that the package works on this machine",
    .Takes = {.AreFiles = false},
    .Description =
        "Runs the sample session on the simulated interface, without Marvane and through it, in a temporary folder; "
        "compares results, calls and log with what they must be; and measures what a logged call costs. 64-bit and "
        "32-bit are tested as far as they are delivered. No vendor's library and no root description file is "
        "touched (--root has no effect), and nothing stays behind.",
    .Examples = Examples,
    .Groups = Groups,
    .ExitStatus = "0 if it passed, 1 if it failed, 2 for trouble or wrong usage",
    .Run = RunSelftestCommand,
};

} // namespace marvane::tool
