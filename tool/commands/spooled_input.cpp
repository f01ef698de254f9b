#include "tool/commands/spooled_input.h"

#include <fstream>
#include <random>

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
        MakeFolder();
        const std::unique_ptr<read::ByteSource> source = read::MaybeUnpacked(read::StandardInputSource());
        const fs::path path = folder_ / "input";
        if (!Copy(*source, path))
            throw Trouble("standard input can't be kept in " + folder_.string());
        if (const std::string trouble = source->Trouble(); !trouble.empty())
            console.Complain("-: " + trouble);
        file.Path = path;
        file.Size = fs::file_size(path);
        file.IsStandardInput = file.IsCompressed = false;
        return;
    }
}

SpooledInput::~SpooledInput()
{
    std::error_code ignored;
    if (!folder_.empty())
        fs::remove_all(folder_, ignored);
}

/// A folder that nobody else has made, so that what is in it is ours.
void SpooledInput::MakeFolder()
{
    std::error_code error;
    const fs::path parent = fs::temp_directory_path(error);
    std::random_device random;
    for (int tries = 0; !error && tries < 100; ++tries) {
        const fs::path folder = parent / ("marvane-" + std::to_string(random()));
        if (!fs::create_directory(folder, error))
            continue;
        folder_ = folder;
        fs::permissions(folder, fs::perms::owner_all, error);
        return;
    }
    throw Trouble("no temporary folder for standard input: " + error.message());
}

} // namespace marvane::tool
