#include "tool/commands/log_source.h"

#include "tool/commands/default_logs.h"
#include "tool/commands/progress.h"

namespace marvane::tool {

namespace {

std::uint64_t SizeOf(const std::vector<read::LogFile>& files)
{
    std::uint64_t size = 0;
    for (const read::LogFile& file : files)
        size += file.Size;
    return size;
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
    if (!arguments.Operands().empty())
        return FindLogs(arguments.Operands(), console);
    return read::NewestSession(FindLogs({DefaultLogFolder(arguments.Value("--entry"))}, console));
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

void ComplainAbout(const read::Problem& problem, const std::vector<read::LogFile>& files, Console& console)
{
    if (problem.What != read::ProblemKind::FileTrouble && problem.What != read::ProblemKind::FileChanged)
        return;
    const bool known = problem.At.File < files.size();
    const std::string name = known ? files[problem.At.File].Path.string() : std::string("?");
    console.Complain(name + ": " + std::string(problem.Text));
}

} // namespace marvane::tool
