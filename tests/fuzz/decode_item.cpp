// DecodeItem over every kind of item.
#include "tests/fuzz/fuzz_target.h"

using namespace marvane;
using namespace marvane::testing;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    RecordSource source(data, size);
    const FuzzedFrame frame(source);
    const char* const label = source.Below(8) == 0 ? nullptr : "pInputData";
    const Arrow arrow = source.Coin() ? ToTarget : FromTarget;
    const PDU_DATA_ITEM* const item = source.Below(32) == 0 ? nullptr : source.New(source.DataItem());
    const std::string before = source.Contents();
    DecodeItem(frame.Frame(), arrow, label, item);
    frame.Check();
    Require(source.Contents() == before, "the records are as they were");
    return 0;
}
