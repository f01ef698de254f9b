// Include rules: a folder may include only the folders that its row names.
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/pattern.h"

namespace marvane::testing {
namespace {

namespace fs = std::filesystem;

/// A folder and the other folders that it may include. A folder without a row is an error.
const std::map<std::string, std::set<std::string>> MayInclude = {
    {"pdu", {}},
    {"platform", {}},
    {"config", {}},
    {"text", {"pdu", "platform"}},
    {"line", {"pdu", "text"}},
    {"logger", {"pdu", "platform", "config", "text", "line"}},
    {"tool", {"pdu", "platform", "config", "text", "line"}},
    {"examples", {"pdu"}},
};

/// The folders inside a program; each may include itself and those named before it.
const std::map<std::string, std::vector<std::string>> Floors = {
    {"logger", {"base", "diagnostics", "state", "log", "decode", "target", "call", "exports"}},
    {"tool",
     {"xml", "read", "words", "console", "setup", "input", "analysis", "export", "report", "commands",
      "main.cpp"}},
};

struct Include
{
    fs::path From;
    fs::path To;
    std::string Text() const { return From.generic_string() + " includes " + To.generic_string(); }
};

std::vector<Include> IncludesOf(const fs::path& root, const fs::path& file)
{
    const std::string quoted = "^\\s*#\\s*include\\s*\"([^\"]+)\"";
    std::vector<Include> includes;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);)
        for (const PatternMatch& match : Matches(line, quoted))
            includes.push_back({fs::relative(file, root), match[1]});
    return includes;
}

std::string PartOf(const fs::path& path, std::size_t index)
{
    auto part = path.begin();
    for (; index > 0 && part != path.end(); --index)
        ++part;
    return part == path.end() ? std::string() : part->string();
}

/// The number of a path's folder inside its program; as many as there are if it is none of them.
std::size_t FloorOf(const fs::path& path, const std::vector<std::string>& floors)
{
    const auto found = std::find(floors.begin(), floors.end(), PartOf(path, 1));
    return static_cast<std::size_t>(found - floors.begin());
}

bool IsAllowed(const Include& include)
{
    const std::string from = PartOf(include.From, 0);
    const std::string to = PartOf(include.To, 0);
    if (from != to)
        return MayInclude.at(from).contains(to);
    const auto floors = Floors.find(from);
    if (floors == Floors.end())
        return true;
    const std::size_t floor = FloorOf(include.From, floors->second);
    return floor < floors->second.size() && FloorOf(include.To, floors->second) <= floor;
}

bool IsSource(const fs::path& file)
{
    const bool isTest = file.stem().string().ends_with("_test");
    return !isTest && (file.extension() == ".h" || file.extension() == ".cpp");
}

/// All includes with quotes in the folders of the table, except in unit tests, which may use the test kit
/// too.
std::vector<Include> AllIncludes(const fs::path& root)
{
    std::vector<Include> all;
    for (const auto& [folder, allowed] : MayInclude) {
        if (!fs::exists(root / folder))
            continue;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / folder))
            if (entry.is_regular_file() && IsSource(entry.path()))
                for (const Include& include : IncludesOf(root, entry.path()))
                    all.push_back(include);
    }
    return all;
}

TEST(Includes, GoOnlyToTheFoldersOfTheTable)
{
    const std::vector<Include> all = AllIncludes(MARVANE_SOURCE_DIR);
    EXPECT_GT(all.size(), 100u) << "the sources were not found";
    for (const Include& include : all)
        EXPECT_TRUE(IsAllowed(include)) << include.Text();
}

TEST(Includes, AnIncludeOfAHigherFolderIsRefused)
{
    EXPECT_FALSE(IsAllowed({"text/format.h", "logger/log/log_buffer.h"}));
    EXPECT_FALSE(IsAllowed({"logger/log/rotation.h", "logger/call/call_frame.h"}));
    EXPECT_FALSE(IsAllowed({"tool/main.cpp", "logger/state/settings.h"}));
    EXPECT_FALSE(IsAllowed({"tool/export/format.h", "tool/commands/command.h"}));
    EXPECT_FALSE(IsAllowed({"tool/setup/check.h", "tool/analysis/findings.h"}));
    EXPECT_FALSE(IsAllowed({"tool/astray/new.h", "tool/read/records.h"}));
    EXPECT_FALSE(IsAllowed({"pdu/code_names.h", "platform/clock.h"}));
    EXPECT_FALSE(IsAllowed({"logger/astray.h", "logger/base/lasting.h"}));
    EXPECT_TRUE(IsAllowed({"logger/call/call_frame.h", "logger/log/rotation.h"}));
    EXPECT_TRUE(IsAllowed({"logger/log/log_file.h", "logger/log/log_buffer.h"}));
    EXPECT_TRUE(IsAllowed({"tool/commands/talk.cpp", "tool/analysis/talk_rows.h"}));
    EXPECT_TRUE(IsAllowed({"tool/main.cpp", "tool/commands/program.h"}));
}

TEST(Includes, NameWholePathsFromTheRoot)
{
    for (const Include& include : AllIncludes(MARVANE_SOURCE_DIR))
        EXPECT_TRUE(fs::exists(fs::path(MARVANE_SOURCE_DIR) / include.To)) << include.Text();
}

} // namespace
} // namespace marvane::testing
