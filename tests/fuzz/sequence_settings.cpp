#include "tests/fuzz/sequence_settings.h"

#include "tests/support/session.h"

namespace marvane::testing {

SequenceSettings RandomSettings(RecordSource& source, const std::string& logFolder)
{
    const auto one = [&](std::initializer_list<const char*> values) {
        return std::string(values.begin()[source.Below(static_cast<UNUM32>(values.size()))]);
    };
    return {
        {"LogEnabled", one({"1", "1", "1", "1", "1", "0", "2"})},
        {"LogNewFileCfg", one({"0", "0", "0", "1"})},
        {"LogFnCalls", one({"2", "2", "2", "2", "1", "0", "3"})},
        {"LogFnDecodeArgs", one({"2", "1", "0", "2"})},
        {"LogFnDecodeRsps", one({"2", "1", "0", "2"})},
        {"LogCbCalls", one({"1", "0"})},
        {"LogCallOuts", one({"1", "0", "2"})},
        {"LogFlush", one({"1", "1", "1", "0"})},
        {"LogMaxPduBuff", one({"32", "0", "1", "16", "100000"})},
        {"LogFileMaxSize", one({"0", "1", "8000", "30000", "200000"})},
        {"LogFileMaxNum", one({"0", "1", "2", "5", "2", "1", "5", "3", "0", "2", "-1"})},
        {"LogDoIPComms", one({"1", "0", "2"})},
        {"LogCommsFile", one({"0", "1", "2"})},
        {"PDUAPILibDll", one({"", "", "", "", "", "", "", MissingTarget}) + LibraryName("fake_target")},
        {"LogFileDir", source.Below(16) == 15 ? "" : logFolder},
        {"DbgAPP", one({"", "", "DEBUG3", "WRONG"})},
    };
}

std::string ConfigurationText(const SequenceSettings& settings, const std::string& installedPath)
{
    std::string text = "<?xml version=\"1.0\"?>\n<D_PDU_API_CFG>\n";
    text += "<Attribute Name=\"InstalledPath\" Type=\"String\" Value=\"" + installedPath + "\"/>\n";
    for (const auto& [key, value] : settings) {
        const bool isText = key == "PDUAPILibDll" || key == "LogFileDir" || key == "DbgAPP";
        if (!value.empty())
            text += "<Attribute Name=\"" + key + "\" Type=\"" + (isText ? "String" : "UNUM32") +
                    "\" Value=\"" + value + "\"/>\n";
    }
    return text + "</D_PDU_API_CFG>\n";
}

} // namespace marvane::testing
