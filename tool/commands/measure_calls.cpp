// The helper process of `selftest`: times a call through a library. Not in the table of commands, since
// nobody types it.
#include <algorithm>
#include <chrono>

#include "pdu/functions.h"
#include "platform/library.h"
#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/setup/selftest.h"

namespace marvane::tool {

namespace {

constexpr int Rounds = 7;
constexpr int CallsOfARound = 2000;

template <typename Function> Function* Find(platform::Library library, const char* name)
{
    void* const found = platform::FindFunction(library, name);
    if (!found)
        throw Trouble(std::string("the library has no ") + name);
    return reinterpret_cast<Function*>(found);
}

/// Nanoseconds of a call in the fastest round.
double Measure(decltype(PDUGetObjectId)* call)
{
    using Clock = std::chrono::steady_clock;
    CHAR8 name[] = "ISO_15765_3_on_ISO_15765_2";
    UNUM32 id = 0;
    if (call(PDU_OBJT_PROTOCOL, name, &id) != PDU_STATUS_NOERROR)
        throw Trouble("PDUGetObjectId failed");
    Clock::duration best = Clock::duration::max();
    for (int round = 0; round < Rounds; ++round) {
        const Clock::time_point begin = Clock::now();
        for (int i = 0; i < CallsOfARound; ++i)
            call(PDU_OBJT_PROTOCOL, name, &id);
        best = std::min(best, Clock::now() - begin);
    }
    return std::chrono::duration<double, std::nano>(best).count() / CallsOfARound;
}

int RunMeasureCalls(const Arguments& arguments, Console& console)
{
    const platform::LoadedLibrary loaded = platform::LoadTargetLibrary(arguments.Operands().front());
    if (!loaded.Handle)
        throw Trouble(loaded.Error);
    CHAR8 options[] = "";
    if (Find<decltype(PDUConstruct)>(loaded.Handle, "PDUConstruct")(options, nullptr) != PDU_STATUS_NOERROR)
        throw Trouble("PDUConstruct failed");
    const double nanoseconds = Measure(Find<decltype(PDUGetObjectId)>(loaded.Handle, "PDUGetObjectId"));
    Find<decltype(PDUDestruct)>(loaded.Handle, "PDUDestruct")();
    console.Write(std::to_string(nanoseconds) + "\n");
    return 0;
}

} // namespace

extern const Command MeasureCallsCommand;
constinit const Command MeasureCallsCommand = {
    .Name = MeasureHelperName,
    .Purpose = "Print the nanoseconds of a call through a library",
    .Takes = {.Text = "FILE", .Least = 1, .Most = 1},
    .Run = RunMeasureCalls,
};

} // namespace marvane::tool
