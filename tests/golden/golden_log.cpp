#include "tests/golden/golden_log.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>

#include <gtest/gtest.h>

#include "line/stamp.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "tests/support/log_summary.h"
#include "tests/support/pattern.h"

namespace marvane::testing {

namespace {

void Replace(std::string& text, const std::string& what, const std::string& with)
{
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
}

/// As Replace, but not in a longer word nor at the beginning of a row of a dump: eight digits of a null
/// pointer are also in "0x00000000" and in "|00000000 ".
void ReplaceWord(std::string& text, const std::string& word, const std::string& with)
{
    const auto isPartOfWord = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '|'; };
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at)) {
        const std::size_t end = at + word.size();
        const bool isWhole =
            !(at > 0 && isPartOfWord(text[at - 1])) && !(end < text.size() && isPartOfWord(text[end]));
        if (isWhole)
            text.replace(at, word.size(), with);
        at += isWhole ? with.size() : word.size();
    }
}

std::string InBrackets(const std::string& name)
{
    return std::string("<").append(name).append(">");
}

/// Replaces each well-formed stamp by one with the word "time" and a small number for the thread.
std::string WithPlainStamps(const std::string& text)
{
    std::map<std::uint32_t, std::string> threads;
    std::istringstream lines(text);
    std::string plain, line;
    while (std::getline(lines, line)) {
        if (const std::optional<Stamp> stamp = ParseStamp(line)) {
            const std::string number = std::string("T").append(std::to_string(threads.size() + 1));
            const auto thread = threads.emplace(stamp->Thread, number).first;
            line = "{time - " + thread->second + "} " + line.substr(StampLength);
        }
        plain += line + "\n";
    }
    return plain;
}

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// The first line in which two texts differ, from both of them.
std::string FirstDifference(const std::string& golden, const std::string& actual)
{
    const std::vector<std::string> expected = Lines(golden), seen = Lines(actual);
    std::size_t at = 0;
    while (at < expected.size() && at < seen.size() && expected[at] == seen[at])
        ++at;
    const auto line = [&](const std::vector<std::string>& lines) {
        return at < lines.size() ? lines[at] : std::string("(the text ends here)");
    };
    return std::string("line ").append(std::to_string(at + 1)) + "\n  golden: " + line(expected) +
           "\n  actual: " + line(seen);
}

} // namespace

GoldenLog::GoldenLog(Session& session) : session_(session)
{
    words_ = {{session.TargetPath(), "<libraries>/"}, {session.LogFolder().string(), "<logs>"}};
    for (const char* library : {"fake_target", "no_such_target"})
        words_.push_back({LibraryName(library), InBrackets(library)});
}

void GoldenLog::Name(const void* address, const std::string& name)
{
    const std::string text = PointerText(address);
    for (const auto& [known, itsName] : words_)
        ASSERT_NE(known, text) << name << " lies where " << itsName << " does";
    words_.push_back({text, InBrackets(name)});
}

std::string GoldenLog::WithoutNames(std::string text) const
{
    for (const auto& [what, name] : words_)
        Replace(text, what, name);
    ReplaceWord(text, PointerText(nullptr), "<null>");
    Replace(text, "(nil)", "<null>");
    return text;
}

std::string GoldenLog::Normalised() const
{
    return ReplaceMatches(WithoutNames(WithPlainStamps(LogInOrder(session_.LogFolder()))),
                          R"(LOGGER VERSION: R\d\d\.\d{3}\.\d{4}\.\d{4} )", "LOGGER VERSION: <version> ");
}

void GoldenLog::ExpectEqual(const std::string& name) const
{
    const std::string actual = Normalised();
    if (const auto folder = platform::EnvironmentVariable("MARVANE_WRITE_GOLDEN");
        folder && !folder->empty()) {
        WriteFileBytes(std::filesystem::path(*folder) / (name + ".log"), actual);
        FAIL() << "written, not compared: " << name << ".log";
    }
    const std::string golden = FileText(BuildFolder() + "golden" + platform::PathSeparator + name + ".log");
    ASSERT_NE(golden, "") << "there is no golden file " << name;
    EXPECT_TRUE(actual == golden) << FirstDifference(golden, actual);
}

void Script::Begin(Session& session)
{
    session.Fake().Answer = [this](const FakeCall& call) { return Play(call); };
}

T_PDU_ERROR Script::Play(const FakeCall& call)
{
    const std::string function = call.Function;
    if (function == "PDURegisterEventCallback" && call.Arguments[2] != 0)
        trap_ = reinterpret_cast<CALLBACKFNC>(static_cast<std::uintptr_t>(call.Arguments[2]));
    if (function == "PDU_MS_SetLogCallback")
        report_ = reinterpret_cast<PDU_MS_LOG_CALLBACK>(static_cast<std::uintptr_t>(call.Arguments[0]));
    const auto answer = answers_.find(function);
    return answer != answers_.end() && answer->second ? answer->second(call) : PDU_STATUS_NOERROR;
}

} // namespace marvane::testing
