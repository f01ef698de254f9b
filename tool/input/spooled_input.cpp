#include "tool/input/spooled_input.h"

#include <algorithm>

#include "tool/console/arguments.h"
#include "tool/read/byte_source.h"

namespace marvane::tool {

namespace {

constexpr std::size_t PieceSize = 256 * 1024;

/// Copies all that a source gives; null if it could not be written.
std::shared_ptr<platform::TemporaryFile> Copy(read::ByteSource& source)
{
    std::shared_ptr<platform::TemporaryFile> copy = platform::TemporaryFile::Make();
    std::vector<char> piece(PieceSize);
    while (const std::size_t count = copy ? source.Read(piece) : 0)
        if (!copy->Append({piece.data(), count}))
            return nullptr;
    return copy;
}

} // namespace

void SpoolInput(std::vector<read::LogFile>& files, Console& console)
{
    const auto input = std::ranges::find(files, true, &read::LogFile::IsStandardInput);
    if (input == files.end())
        return;
    const std::unique_ptr<read::ByteSource> source = read::MaybeUnpacked(read::StandardInputSource());
    const std::shared_ptr<platform::TemporaryFile> copy = Copy(*source);
    if (!copy)
        throw Trouble("standard input can't be kept in the temporary folder");
    if (const std::string trouble = source->Trouble(); !trouble.empty())
        console.Complain("-: " + trouble);
    input->Spool = copy;
    input->Size = copy->Size();
    input->IsStandardInput = input->IsCompressed = false;
}

} // namespace marvane::tool
