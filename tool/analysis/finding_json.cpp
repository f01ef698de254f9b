#include "tool/analysis/finding_json.h"

#include "tool/console/row_text.h"

namespace marvane::tool {

JsonObject FindingJson(const Finding& finding, const std::vector<read::LogFile>& files, read::LogTime begin)
{
    JsonObject object;
    object.Add("what", FindingName(finding.Kind)).Add("session", finding.Session);
    if (finding.At.Line != 0) {
        if (finding.At.File < files.size())
            object.Add("file", files[finding.At.File].Begin.Name);
        object.Add("line", finding.At.Line)
            .Add("time", DateTimeText(finding.Time))
            .Add("since_begin_ms", finding.Time - begin);
    }
    if (finding.Seq != 0)
        object.Add("seq", finding.Seq);
    if (finding.Count != 1)
        object.Add("count", finding.Count);
    JsonArray why;
    for (const std::string& each : finding.Why)
        why.Add(each);
    return object.Add("subject", finding.Subject).Add("text", finding.Text).AddRaw("why", why.Text());
}

} // namespace marvane::tool
