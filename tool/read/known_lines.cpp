#include "tool/read/known_lines.h"

#include <algorithm>
#include <iterator>

#include "pdu/code_names.h"

namespace marvane::read {

namespace {

struct ResultBeginning
{
    Function Which;
    std::string_view Line; ///< with its arrow; what the line begins with
};

constexpr ResultBeginning ResultBeginnings[] = {
    {Function::GetTimestamp, "   <--  pTimestamp"},
    {Function::IoCtl, "   <--  pOutputData\t= "},
    {Function::IoCtl, "   <--  *ppOutputData\t= "},
    {Function::GetVersion, "   <--  MVCI_Part1StandardVersion\t= "},
    {Function::GetStatus, "   <--  pStatusCode\t= "},
    {Function::GetLastError, "   <--  pErrorCode= "},
    {Function::GetResourceStatus, "   <--  pResourceStatus->NumEntries  = "},
    {Function::CreateComLogicalLink, "   <--  phCLL = "},
    {Function::GetComParam, "   <--  ComParam"},
    {Function::StartComPrimitive, "   <--  hCoP          \t= "},
    {Function::GetEventItem, "   <--  *ppEventItem"},
    {Function::GetEventItem, "    <<< "}, // what follows it if the results have level 0
    {Function::GetObjectId, "   <--  pPduObjectId  \t= "},
    {Function::GetModuleIds, "   <--  Module entry\t= "},
    {Function::GetModuleIds, "   <--  *pModuleItem\t= "},
    {Function::GetModuleIds, "   <--  WARNING: Wrong item type "},
    {Function::GetModuleIds, "   <--  pItem->pModuleData\t= "},
    {Function::GetModuleIds, "   <--  Num Modules \t= "},
    {Function::GetModuleIds, "   -->  pModuleItem\t= "},
    {Function::GetResourceIds, "   <--  pResourceIdList\t= "},
    {Function::GetResourceIds, "\t\t <--  pResourceIdData"},
    {Function::GetConflictingResources, "   <--  pOutputConflictList\t="},
    {Function::GetConflictingResources, "\t\t  >>> pConflictData"},
    {Function::GetUniqueRespIdTable, "   <--  ["},
    {Function::GetUniqueRespIdTable, "   <--  Num URIDs:"},
    {Function::GetUniqueRespIdTable, "   <--  pUniqueRespIdTable\t= "},
    {Function::GetUniqueRespIdTable, "   <--  WARNING: "},
};

struct LastArgument
{
    Function Which;
    std::string_view Name;
};

/// For the functions whose arguments hold a string or a name, or take two lines.
constexpr LastArgument LastArguments[] = {
    {Function::Construct, "\", pAPITag= "},    {Function::GetObjectId, "\", pPduObjectId="},
    {Function::StartComPrimitive, ", phCoP="}, {Function::CreateComLogicalLink, ", pCLLCreateFlag="},
    {Function::GetComParam, ", pParamItem="},  {Function::IoCtl, ", ppOutputData="},
};

/// Lines with names or strings in the middle: what they begin with, and what only the last line of one has.
struct StringLine
{
    std::string_view Begins;
    std::string_view End;
};

constexpr StringLine StringLines[] = {
    {"ComParam (", ", Class = "},
    {"CombinationMode=", "', VehicleDiscoveryTime="},
    {"ResourceId    \t", "("},
    {"pDLCPinData[", ", Type = "},
};

constexpr std::string_view QuotedTexts[] = {
    "pVendorModuleName ", "pVendorAdditionalInfo\t", "HwName ",        "FwName ",
    "VendorName ",        "PDUApiSwName ",           "LOADING: DLL = "};

constexpr std::string_view DeepLabels[] = {
    "session\t= ",      "P2Max_high\t= ",     "P2Max_low\t= ",
    "P2Star_high\t= ",  "P2Star_low\t= ",     "P2Min\t= ",
    "P2Max\t= ",        "P3Min\t= ",          "P3Max\t= ",
    "P4Min\t= ",        "TimingSet\t= ",      "MaxEntries\t= ",
    "ActEntries\t= ",   "pSessionTiming\t= ", "pAccessTiming\t= ",
    "pStructField\t= ", "pByteField\t= ",     "pLongField\t= ",
    "pDataVal\t= ",     "    pDataArray: ",   "UNKNOWN \"TimingSet\" SPECIFIED"};

/// In each line that begins the value of a ComParam, after its name.
constexpr std::string_view ParamId = " (id=";

constexpr std::string_view LoadFailure = "LOAD FAILURE: ";
constexpr std::string_view HeaderTexts[] = {
    "LOADING: ", "LOADED: ", LoadFailure, "DLL Load", "Unsupported LogEnabled=", "StandAlone installation"};

template <class Range> bool BeginsWithAny(std::string_view text, const Range& beginnings)
{
    return std::any_of(std::begin(beginnings), std::end(beginnings),
                       [text](std::string_view beginning) { return text.starts_with(beginning); });
}

} // namespace

bool BeginsResults(Function function, std::string_view line)
{
    return std::any_of(std::begin(ResultBeginnings), std::end(ResultBeginnings),
                       [&](const ResultBeginning& beginning) {
                           return beginning.Which == function && line.starts_with(beginning.Line);
                       });
}

bool IsWholeEntry(Function function, std::string_view entry)
{
    if (entry.find('(') == std::string_view::npos)
        return true; // LogFnCalls 1, or LOGGER_Uninitialise
    if (!entry.ends_with(')'))
        return false;
    const auto last = std::find_if(std::begin(LastArguments), std::end(LastArguments),
                                   [function](const LastArgument& row) { return row.Which == function; });
    return last == std::end(LastArguments) || entry.find(last->Name) != std::string_view::npos;
}

bool IsOpenText(std::string_view text)
{
    if (ParseDumpRow(text))
        return false;
    for (const StringLine& line : StringLines)
        if (text.starts_with(line.Begins))
            return text.find(line.End) == std::string_view::npos;
    if (BeginsWithAny(text, QuotedTexts))
        return !text.ends_with('"') || text.find('"') == text.size() - 1;
    const bool hasValue = text.find('=') != std::string_view::npos;
    const bool hasLabel = text.find(':') != std::string_view::npos;
    if (text.starts_with("LOAD"))
        return !text.ends_with('\'');
    return !hasValue && !hasLabel;
}

bool IsDeepText(std::string_view text)
{
    const bool isTimingSet =
        std::any_of(TimingSetNames.begin(), TimingSetNames.end(),
                    [text](const NameEntry& entry) { return !entry.Name.empty() && entry.Name == text; });
    return isTimingSet || BeginsWithAny(text, DeepLabels) || text.find(ParamId) != std::string_view::npos ||
           ParseDumpRow(text);
}

bool IsHeaderLine(std::string_view line)
{
    return ParseArrow(line) && BeginsWithAny(line.substr(ArrowLength), HeaderTexts);
}

bool IsLoadFailure(std::string_view line)
{
    return line.substr(std::min(ArrowLength, line.size())).starts_with(LoadFailure);
}

} // namespace marvane::read
