#include "tool/commands/spooled_input.h"

#include <fstream>

#include "tool/commands/arguments.h"
#include "tool/read/byte_source.h"

namespace marvane::tool {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t PieceSize = 256 * 1024;

/// Copies all that a source gives. False if it could not be written.
bool Copy(read::ByteSource& source, const fs::path& path)
{
    std::ofstream stream(path, std::ios::binary);
    std::vector<char> piece(PieceSize);
    while (const std::size_t count = source.Read(piece))
        stream.write(piece.data(), static_cast<std::streamsize>(count));
    stream.close();
    return stream.good();
}

} // namespace

SpooledInput::SpooledInput(std::vector<read::LogFile>& files, Console& console)
{
    for (read::LogFile& file : files) {
        if (!file.IsStandardInput)
            continue;
        folder_.emplace();
        const std::unique_ptr<read::ByteSource> source = read::MaybeUnpacked(read::StandardInputSource());
        const fs::path path = folder_->Path() / "input";
        if (!Copy(*source, path))
            throw Trouble("standard input can't be kept in " + folder_->Path().string());
        if (const std::string trouble = source->Trouble(); !trouble.empty())
            console.Complain("-: " + trouble);
        file.Path = path;
        file.Size = fs::file_size(path);
        file.IsStandardInput = file.IsCompressed = false;
        return;
    }
}

} // namespace marvane::tool
