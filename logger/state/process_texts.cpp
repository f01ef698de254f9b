#include "logger/state/process_texts.h"

#include "logger/base/lasting.h"
#include "logger/state/at_unloading.h"
#include "logger/state/settings.h"

namespace marvane {

namespace {

struct ProcessTexts
{
    std::string LogDirectory;
    std::string TargetLibraryPath;
    std::string LoggerVersion = "<UNREAD>";
    std::string TargetVersion = "<UNREAD>";
    StringValues Strings;
};

constinit Lasting<ProcessTexts> Texts;

} // namespace

constinit std::string& LogDirectory = Texts.Get().LogDirectory;
constinit std::string& TargetLibraryPath = Texts.Get().TargetLibraryPath;
constinit std::string& LoggerVersionText = Texts.Get().LoggerVersion;
constinit std::string& TargetVersionText = Texts.Get().TargetVersion;
constinit StringValues& StringSettings = Texts.Get().Strings;

namespace {

const bool TextsMade = (Texts.Make(), true);
const AtUnloading FreeTexts([] { Texts.Empty(); });

} // namespace

} // namespace marvane
