#include "tool/analysis/settings_hints.h"

namespace marvane::tool {

void SettingsHints::Lowest::See(std::optional<std::uint32_t> value)
{
    if (value && (!Value || *value < *Value))
        Value = value;
}

void SettingsHints::OnSession(const read::Session& session)
{
    enabled_.See(session.NumberOf("LogEnabled"));
    calls_.See(session.NumberOf("LogFnCalls"));
    arguments_.See(session.NumberOf("LogFnDecodeArgs"));
    results_.See(session.NumberOf("LogFnDecodeRsps"));
    callbacks_.See(session.NumberOf("LogCbCalls"));
    payload_.See(session.NumberOf("LogMaxPduBuff"));
}

std::vector<std::string> SettingsHints::ForTalk() const
{
    std::vector<std::string> hints;
    const auto add = [&](std::string_view key, const Lowest& setting, std::string_view text) {
        hints.push_back(std::string(key) + " was " + std::to_string(*setting.Value) + ": " +
                        std::string(text));
    };
    if (calls_.IsBelow(2))
        add("LogFnCalls", calls_, "2 shows links, requests and answers");
    else if (enabled_.IsBelow(1))
        add("LogEnabled", enabled_, "1 shows the bytes of requests");
    else if (arguments_.IsBelow(2))
        add("LogFnDecodeArgs", arguments_, "2 shows the bytes of requests");
    if (!arguments_.IsBelow(2) && payload_.IsBelow(1))
        add("LogMaxPduBuff", payload_, "32 shows up to 32 bytes of requests and answers");
    if (!calls_.IsBelow(2) && results_.IsBelow(1))
        add("LogFnDecodeRsps", results_, "2 shows answers and their times");
    else if (!calls_.IsBelow(2) && results_.IsBelow(2))
        add("LogFnDecodeRsps", results_, "2 shows the bytes of answers");
    return hints;
}

std::vector<std::string> SettingsHints::ForAll() const
{
    std::vector<std::string> hints = ForTalk();
    if (callbacks_.IsBelow(1))
        hints.push_back("LogCbCalls was 0: 1 shows when events were announced, and lost data");
    return hints;
}

std::string SettingsHints::ForNegativeCode() const
{
    const std::string missing = "its code is not in the log";
    const auto was = [&](std::string_view key, const Lowest& setting, std::string_view wanted) {
        return missing + ": " + std::string(key) + " was " + std::to_string(*setting.Value) + ", " +
               std::string(wanted) + " shows it";
    };
    if (results_.IsBelow(2))
        return was("LogFnDecodeRsps", results_, "2");
    return payload_.IsBelow(3) ? was("LogMaxPduBuff", payload_, "32") : missing;
}

std::string SettingsHints::PayloadLimitText() const
{
    if (!payload_.Value)
        return "shows more";
    return "was " + std::to_string(*payload_.Value);
}

} // namespace marvane::tool
