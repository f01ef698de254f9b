#include "tool/input/log_source.h"

#include <algorithm>

#include "platform/utf8_path.h"
#include "tool/console/progress.h"
#include "tool/console/row_text.h"
#include "tool/input/default_logs.h"
#include "tool/input/follow.h"

namespace marvane::tool {

namespace {

std::uint64_t SizeOf(const std::vector<read::LogFile>& files)
{
    std::uint64_t size = 0;
    for (const read::LogFile& file : files)
        size += file.Size;
    return size;
}

bool IsFolder(const std::string& path)
{
    std::error_code unknown;
    return std::filesystem::is_directory(platform::FilePath(path), unknown);
}

} // namespace

std::vector<read::LogFile> FindLogs(const std::vector<std::string>& paths, Console& console)
{
    read::FoundFiles found = read::FindLogFiles(paths);
    for (const read::FoundFiles::Failure& failure : found.Failures)
        console.Complain(failure.Path + ": " + failure.Reason);
    if (found.Files.empty() && found.Failures.empty())
        throw Trouble("no log found");
    return std::move(found.Files);
}

std::vector<read::LogFile> FindLogs(const Arguments& arguments, Console& console)
{
    const bool isDefault = arguments.Operands().empty();
    const std::vector<std::string> paths =
        isDefault ? std::vector{DefaultLogFolder(arguments.Value("--entry"), arguments.Values("--root"))}
                  : arguments.Operands();
    if (IsFollowing(arguments) &&
        !WaitFor(arguments, [&] { return !read::FindLogFiles(paths).Files.empty(); }))
        return {};
    std::vector<read::LogFile> files = FindLogs(paths, console);
    const bool newestOnly = isDefault || (IsFollowing(arguments) && std::ranges::any_of(paths, IsFolder));
    return newestOnly ? read::NewestSession(files) : files;
}

void ReadLogs(const std::vector<read::LogFile>& files, read::LogReader& reader,
              const read::ReadOptions& options)
{
    Progress progress("reading", SizeOf(files));
    std::uint64_t done = 0;
    for (const read::LogFile& file : files) {
        if (reader.IsEnough())
            break;
        read::ReadLogFile(file, reader, options);
        progress.At(done += file.Size);
    }
    reader.Finish();
}

void WriteFileNames(const std::vector<read::LogFile>& files, Console& console)
{
    constexpr std::size_t most = 20;
    if (files.size() < 2)
        return;
    console.Write("\n");
    for (std::size_t i = 0; i < std::min(files.size(), most); ++i)
        console.Write("file " + std::to_string(i + 1) + "   " + Printable(files[i].Begin.Name) + "\n");
    if (files.size() > most)
        console.Write("and " + Counted(files.size() - most, "more file") + ", in the order of time\n");
}

void ComplainAbout(const read::Problem& problem, const std::vector<read::LogFile>& files, Console& console)
{
    if (problem.What != read::ProblemKind::FileTrouble && problem.What != read::ProblemKind::FileChanged)
        return;
    // The reader knows the name of a file, but not its folder.
    std::string text(problem.Text);
    const bool isOfFile = problem.At.File < files.size() && files[problem.At.File].Begin.Name != "-";
    if (isOfFile && text.starts_with(files[problem.At.File].Begin.Name))
        text.replace(0, files[problem.At.File].Begin.Name.size(),
                     platform::PathText(files[problem.At.File].Path));
    console.Complain(text);
}

} // namespace marvane::tool
