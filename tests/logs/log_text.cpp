#include "tests/logs/log_text.h"

#include <cstdio>

namespace marvane::testing {

namespace {

std::string Stamp(std::uint64_t ms)
{
    char text[64];
    std::snprintf(text, sizeof text, "{%02u:%02u:%02u.%03u - 00000010} ",
                  static_cast<unsigned>(10 + ms / 3'600'000), static_cast<unsigned>(ms / 60'000 % 60),
                  static_cast<unsigned>(ms / 1000 % 60), static_cast<unsigned>(ms % 1000));
    return text;
}

std::string Handle(std::uint32_t handle)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", handle);
    return text;
}

/// One row of a dump; at most sixteen bytes.
std::string Dump(const std::string& label, const std::string& hex)
{
    std::string cells;
    std::string shown;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        cells += (i == 0 ? "" : " ") + hex.substr(i, 2);
        const auto byte = static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
        shown += byte >= 0x20 && byte < 0x7F ? byte : '.';
    }
    cells += '>';
    cells.resize(50, ' ');
    shown.resize(16, ' ');
    std::string wide = label;
    wide.resize(14, ' ');
    return wide + " |00000000 <" + cells + shown + "|";
}

} // namespace

void LogText::Line(std::uint64_t ms, const std::string& text)
{
    text_ += Stamp(ms) + text + "\n";
}

void LogText::Call(std::uint64_t ms, const std::string& name, const std::string& arguments)
{
    Line(ms, "+ " + name + "(" + arguments + ")");
    Line(ms, "- " + name + "<PDU_STATUS_NOERROR (0x0000)>");
}

void LogText::Start(std::uint64_t ms, std::uint32_t primitive, const std::string& hex, bool wantsAnswer)
{
    Line(ms, "+ PDUStartComPrimitive(hMod=0x00000001, hCLL=0x00000001, CoPType=PDU_COPT_SENDRECV (0x8004), ");
    text_ += "\t\t\t\tCoPDataSize=" + std::to_string(hex.size() / 2) +
             ", pCoPData=0x55, pCoPCtrlData=0x7f, pCoPTag=0x7f, phCoP=0x7f)\n";
    Line(ms, std::string("   -->  NumReceiveCycles\t= ") + (wantsAnswer ? "1" : "0"));
    Line(ms, "   -->  " + Dump("pCoPData", hex));
    Line(ms, "   <--  hCoP          \t= " + Handle(primitive));
    Line(ms, "- PDUStartComPrimitive<PDU_STATUS_NOERROR (0x0000)>");
}

void LogText::Item(std::uint64_t ms, std::uint32_t primitive, const std::string& type,
                   const std::string& lines)
{
    Line(ms, "+ PDUGetEventItem(hMod=0x00000001, hCLL=0x00000001, ppEventItem=0x7f)");
    Line(ms, "   <--  *ppEventItem (0x7f0) type= " + type + ", hCoP=" + Handle(primitive) +
                 ", Timestamp = " + std::to_string(ms * 1000) + ", pCoPTag = 0x7f");
    text_ += lines;
    Line(ms, "- PDUGetEventItem<PDU_STATUS_NOERROR (0x0000)>");
}

void LogText::Result(std::uint64_t ms, std::uint32_t primitive, const std::string& hex)
{
    const std::string arrow = Stamp(ms) + "    <<< ";
    Item(ms, primitive, "PDU_IT_RESULT (0x1300)",
         arrow + "UniqueRespIdentifier\t= 7\n" + arrow + "DataSize\t\t= " + std::to_string(hex.size() / 2) +
             "\n" + arrow + Dump("pDataBytes", hex) + "\n");
}

void LogText::Status(std::uint64_t ms, std::uint32_t primitive, const std::string& code)
{
    Item(ms, primitive, "PDU_IT_STATUS (0x1301)", Stamp(ms) + "    <<< Status        \t= " + code + "\n");
}

} // namespace marvane::testing
