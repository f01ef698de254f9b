// --format jsonl: a JSON object a line.
#include "tool/export/json_line.h"
#include "tool/export/log_records.h"

namespace marvane::tool {

void WriteJsonLines(const Inputs& inputs, Sink& sink)
{
    JsonLine line;
    LogRecords::Write(inputs, line, sink);
}

} // namespace marvane::tool
