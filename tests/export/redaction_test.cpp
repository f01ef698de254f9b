// Nothing that is secret is in what was redacted, whatever the output.
#include <cctype>

#include <gtest/gtest.h>

#include "tests/support/child_program.h"
#include "tests/support/page_block.h"
#include "tool/console/nearest.h"
#include "tool/export/format.h"

namespace marvane::testing {
namespace {

const std::string Log = MARVANE_SOURCE_DIR "/tests/logs/secrets.LGR";
const std::string Demo = MARVANE_SOURCE_DIR "/tests/logs/demo/D-PDU_API_Logger_22-11-2026_00-27-36.LGR";

const std::string Frames = MARVANE_SOURCE_DIR "/tests/logs/secret_frames.LGR";

/// What is secret in the logs: short keys with the bytes before them, and what frames hold of it.
const std::string Secrets[] = {
    "WVWZZZ1JZ3W386752",
    "WSIMVC1E2F3000042",
    "\xC0\xFF\xEE\x12",
    "\x5E\xC4\xE7\x7A",
    "\xB7\x91\xF3\xDD",
    "\x27\x04\xAB\xCD",
    "SN48151623",
    "KX-90210",
    "\xDE\xAD\xBE\xEF\x01\x02\x03\x04",
    "\xCA\xFE\xBA\xBE",
    "\x13\x37\x13\x37\xAA\xBB\xCC\xDD",
    "\x90WVW",
    "ZZZ1JZ3",
    "W386752",
    "\x21\x01\x02\x03\x04",
};

std::string Hex(const std::string& bytes, const char* format, const char* between)
{
    std::string text;
    for (const char byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, format, static_cast<unsigned char>(byte));
        text += (text.empty() ? "" : between) + std::string(digits);
    }
    return text;
}

/// The forms in which bytes may stand in an output. Dump rows hold sixteen bytes, so long ones are looked for
/// by their first eight too.
std::vector<std::string> FormsOf(const std::string& secret)
{
    const std::string first = secret.substr(0, 8);
    std::vector<std::string> forms = {secret};
    for (const std::string& part : {secret, first})
        for (const char* const between : {"", " ", ":", ", "})
            for (const char* const format : {"%02X", "%02x"})
                forms.push_back(Hex(part, format, between));
    return forms;
}

/// The secrets that are in a text.
std::string Found(const std::string& text)
{
    std::string found;
    for (const std::string& secret : Secrets)
        for (const std::string& form : FormsOf(secret))
            if (text.find(form) != std::string::npos)
                found += Hex(secret, "%02X", "") + " as " + Hex(form, "%02X", "") + "\n";
    return found;
}

/// Every command line whose output leaves the house.
std::vector<std::string> Outputs()
{
    std::vector<std::string> commands = {"talk --color never", "talk --by-link", "talk -f --timeout 0",
                                         "cut --since 00:00"};
    for (const tool::Format& format : tool::Formats()) {
        const std::string command = "export --lines --format " + std::string(format.Name);
        commands.push_back(command);
        if (format.CanFollow)
            commands.push_back(command + " -f --timeout 0");
        for (const std::string_view table : tool::Words(format.Tables))
            commands.push_back(command + " --table " + std::string(table));
    }
    return commands;
}

/// All that a page of marvane report has to show.
std::string Blocks(const std::string& page)
{
    return page + PageBlock(page, "model") + PageBlock(page, "lines") + PageBlock(page, "raw");
}

TEST(Redaction, NoSecretIsInAnyPage)
{
    for (const std::string& log : {Log, Demo}) {
        const std::string command = "report -o - --raw " + Quoted(log);
        const std::string page = RunProgram("marvane", command + " --redact").Output;
        EXPECT_EQ(Found(Blocks(page)), "") << log;
        EXPECT_NE(Found(Blocks(RunProgram("marvane", command).Output)), "") << log;
        EXPECT_NE(
            PageBlock(page, "model")
                .find(R"("redacted":{"kinds":["vin","key","authentication","serial","transfer"],"lines":)"),
            std::string::npos);
    }
}

TEST(Redaction, NoSecretIsInAnyOutput)
{
    for (const std::string& command : Outputs())
        for (const std::string& log : {Log, Demo}) {
            const ProgramResult result = RunProgram("marvane", command + " --redact " + Quoted(log));
            EXPECT_NE(result.Output, "") << command;
            EXPECT_EQ(Found(result.Output), "") << command << " " << log;
        }
}

TEST(Redaction, NoPieceOfASecretIsInFrames)
{
    for (const std::string& command : Outputs())
        EXPECT_EQ(Found(RunProgram("marvane", command + " --redact " + Quoted(Frames)).Output), "")
            << command;
    EXPECT_NE(Found(RunProgram("marvane", "cut --since 00:00 " + Quoted(Frames)).Output), "");
    EXPECT_NE(Found(RunProgram("marvane", "export --format jsonl " + Quoted(Frames)).Output), "");
}

TEST(Redaction, WithoutItTheSecretsAreThere)
{
    // So that the test above can fail.
    for (const std::string& log : {Log, Demo})
        for (const char* const command :
             {"talk", "cut --since 00:00", "export --format jsonl", "export --format sql"})
            EXPECT_NE(Found(RunProgram("marvane", command + (" " + Quoted(log))).Output), "") << command;
}

TEST(Redaction, LeavesTheLengthOfALogAndWhatIsNoSecret)
{
    const std::string plain = RunProgram("marvane", "cut --since 00:00 " + Quoted(Demo)).Output;
    const ProgramResult redacted = RunProgram("marvane", "cut --since 00:00 --redact " + Quoted(Demo));
    ASSERT_EQ(redacted.Output.size(), plain.size());
    std::size_t changed = 0;
    for (std::size_t i = 0; i < plain.size(); ++i)
        changed += plain[i] != redacted.Output[i];
    EXPECT_LT(changed, plain.size() / 100);
    EXPECT_EQ(redacted.Errors, "marvane: redacted (vin, key, authentication, serial, transfer): 31 lines\n");
}

TEST(Redaction, KindsCanBeChosenAndKept)
{
    const auto talk = [](const std::string& options) {
        return RunProgram("marvane", "talk " + options + " " + Quoted(Log)).Output;
    };
    const std::string vinOnly = talk("--redact vin");
    EXPECT_EQ(vinOnly.find("WVWZZZ1JZ3W386752"), std::string::npos);
    EXPECT_NE(vinOnly.find("67 01 C0 FF EE 12"), std::string::npos);
    const std::string allButVin = talk("--redact --keep vin,transfer");
    EXPECT_NE(allButVin.find("WVWZZZ1JZ3W386752"), std::string::npos);
    EXPECT_NE(allButVin.find("36 01 13 37 +22"), std::string::npos);
    EXPECT_EQ(allButVin.find("67 01 C0 FF EE 12"), std::string::npos);
}

TEST(Redaction, WrongUsageIsOneLine)
{
    const auto firstLine = [](const std::string& options) {
        const std::string errors = RunProgram("marvane", "talk " + options + " " + Quoted(Log)).Errors;
        return errors.substr(0, errors.find('\n'));
    };
    EXPECT_EQ(firstLine("--keep vin"), "marvane: --keep is for --redact, which is missing");
    EXPECT_EQ(firstLine("--redact=vin,kay"),
              "marvane: --redact 'kay' is none of: vin, key, authentication, serial, "
              "transfer; did you mean 'key'?");
    EXPECT_EQ(firstLine("--redact vin --keep vin"), "marvane: --keep leaves nothing to redact");
}

TEST(Redaction, EachRecordThatWasChangedSaysSo)
{
    const auto lines = [](const std::string& options) {
        std::vector<std::string> all;
        std::string text =
            RunProgram("marvane", "export --format jsonl --lines " + options + " " + Quoted(Log)).Output;
        for (std::size_t end; (end = text.find('\n')) != std::string::npos; text.erase(0, end + 1))
            all.push_back(text.substr(0, end));
        return all;
    };
    const std::vector<std::string> plain = lines("");
    const std::vector<std::string> redacted = lines("--redact");
    ASSERT_EQ(plain.size(), redacted.size());
    std::size_t marked = 0;
    for (std::size_t i = 0; i < plain.size(); ++i) {
        const bool isMarked = redacted[i].find("\"redacted\":true") != std::string::npos;
        EXPECT_TRUE(isMarked || plain[i] == redacted[i]) << redacted[i];
        marked += isMarked;
    }
    EXPECT_GT(marked, 20u);
}

} // namespace
} // namespace marvane::testing
