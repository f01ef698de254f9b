#include "logger/state/process_texts.h"

#include "logger/base/lasting.h"
#include "logger/state/given_back.h"

namespace marvane {

namespace {

constinit Lasting<std::string> DirectoryPlace;
constinit Lasting<std::string> PathPlace;
constinit Lasting<std::string> LoggerVersionPlace;
constinit Lasting<std::string> TargetVersionPlace;

} // namespace

std::string& LogDirectory = *new (&DirectoryPlace.Held) std::string;
std::string& TargetLibraryPath = *new (&PathPlace.Held) std::string;
std::string& LoggerVersionText = *new (&LoggerVersionPlace.Held) std::string("<UNREAD>");
std::string& TargetVersionText = *new (&TargetVersionPlace.Held) std::string("<UNREAD>");

namespace {

const GivenBack DirectoryGivenBack(LogDirectory);
const GivenBack PathGivenBack(TargetLibraryPath);
const GivenBack LoggerVersionGivenBack(LoggerVersionText);
const GivenBack TargetVersionGivenBack(TargetVersionText);

} // namespace

} // namespace marvane
