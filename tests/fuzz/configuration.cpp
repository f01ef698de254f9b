// The configuration reader on whole files: every value that it returns occurs in a line of the file.
#include <algorithm>

#include "logger/state/CConfigData.h"
#include "tests/fuzz/fuzz_target.h"

using namespace marvane;
using namespace marvane::testing;

namespace {

/// Discards the records of the diagnostic log; each change of levels creates its init log again.
void DiscardRecords()
{
    static std::FILE* const sink = std::fopen((FuzzFolder() / "sink").c_str(), "w");
    std::rewind(sink);
    std::FILE* const replaced = CLog::SetPipe(sink);
    if (replaced && replaced != sink)
        std::fclose(replaced);
}

void RequireFromOneLine(const std::string& file, const std::string& text)
{
    Require(file.find(text) != std::string::npos, "a key or value stands in the file", text);
    Require(text.size() < 1000 && text.find_first_of("\n\"") == std::string::npos, "it is of one line", text);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    DiscardRecords();
    const std::string path = FuzzFolder() / "D_PDU_API_CFG.xml";
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    WriteFileBytes(path, bytes);
    CConfigData config("D_PDU_API_CFG");
    config.ProcessConfigurationElements(path);
    config.ProcessLogLevels();
    for (const auto& [key, number] : config.Numbers())
        RequireFromOneLine(bytes, key);
    for (const auto& [key, text] : config.Texts()) {
        RequireFromOneLine(bytes, key);
        RequireFromOneLine(bytes, text);
        std::string value = "?";
        Require(config.GetStringValue(key, value) == 0, "a key that was read is found", key);
        // Other characters are converted by the encoding of the system.
        const bool isPlain =
            std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~' && c != '%'; });
        Require(!isPlain || value == text, "a text without references stays", text);
    }
    std::string untouched = "as before";
    Require(config.GetStringValue("a \" key", untouched) == 1 && untouched == "as before",
            "no other key is found");
    return 0;
}
