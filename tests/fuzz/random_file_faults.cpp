#include "tests/fuzz/random_file_faults.h"

#include <cerrno>
#include <stdexcept>
#include <vector>

namespace marvane::testing {

namespace {

struct Fault
{
    std::string Call;
    int Error;
    const char* Name;
};

const std::vector<Fault> TransientFaults = {
    {"write", EINTR, "EINTR"},
    {"write", ShortWrite, "short"},
    {"writev", EINTR, "EINTR"},
    {"writev", ShortWrite, "short"},
};
const std::vector<Fault> FailingFaults = {
    {"write", EINTR, "EINTR"},     {"write", ShortWrite, "short"}, {"write", ENOSPC, "ENOSPC"},
    {"write", EIO, "EIO"},         {"writev", EINTR, "EINTR"},     {"writev", ShortWrite, "short"},
    {"writev", ENOSPC, "ENOSPC"},  {"writev", EIO, "EIO"},         {"open", EMFILE, "EMFILE"},
    {"open", ENOSPC, "ENOSPC"},    {"open", EACCES, "EACCES"},     {"open", EINTR, "EINTR"},
    {"lseek", EIO, "EIO"},         {"close", EIO, "EIO"},          {"mkdir", ENOSPC, "ENOSPC"},
    {"opendir", EMFILE, "EMFILE"},
};

} // namespace

RandomFileFaults::RandomFileFaults(Session& session, std::uint32_t seed)
    : folder_(session.Folder().Path().string()), random_(seed)
{
    const auto getFaults = reinterpret_cast<GetFileFaults_t>(session.FindFunction("PDUFileFaults"));
    if (!getFaults)
        throw std::runtime_error("this logger library has no file faults");
    faults_ = getFaults();
    *faults_ = {.Context = this, .Concerns = Concerns, .Choose = Choose};
}

RandomFileFaults::~RandomFileFaults()
{
    *faults_ = {.Context = this, .Concerns = nullptr, .Choose = [](void*, const char*) { return NoFault; }};
}

bool RandomFileFaults::Concerns(void* self, const char* path)
{
    // The configuration stays readable: its settings are part of the model.
    const std::string_view text = path;
    return text.starts_with(static_cast<RandomFileFaults*>(self)->folder_) && !text.ends_with(".xml");
}

int RandomFileFaults::Choose(void* context, const char* call)
{
    auto& self = *static_cast<RandomFileFaults*>(context);
    const bool failing = self.kind_ == Kind::Failing;
    if (self.random_() % (failing ? 2 : 4) != 0)
        return NoFault;
    std::vector<const Fault*> possible;
    for (const Fault& fault : failing ? FailingFaults : TransientFaults)
        if (fault.Call == call)
            possible.push_back(&fault);
    if (possible.empty())
        return NoFault;
    const Fault& fault = *possible[self.random_() % possible.size()];
    ++self.counts_[fault.Call + " " + fault.Name];
    return fault.Error;
}

} // namespace marvane::testing
