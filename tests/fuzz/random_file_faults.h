// Random faults of the file system in a session whose logger library is MarvaneWithFileFaults.
#pragma once

#include <map>
#include <random>
#include <string>

#include "tests/support/session.h"
#include "tests/target/file_faults.h"

namespace marvane::testing {

/// Faults begin with the first call of Apply, and end with this object.
class RandomFileFaults
{
public:
    enum class Kind
    {
        Transient, ///< short writes and EINTR, which lose nothing
        Failing    ///< also ENOSPC, EIO, EMFILE, EACCES
    };

    /// Throws std::runtime_error if the session has another logger library.
    RandomFileFaults(Session& session, std::uint32_t seed);
    ~RandomFileFaults();
    RandomFileFaults(const RandomFileFaults&) = delete;
    RandomFileFaults& operator=(const RandomFileFaults&) = delete;

    void Apply(Kind kind) { kind_ = kind; }
    Kind Applied() const { return kind_; }
    /// Number of faults so far, by system call and error: "write EIO".
    const std::map<std::string, int>& Counts() const { return counts_; }

private:
    static bool Concerns(void* self, const char* path);
    static int Choose(void* self, const char* call);

    std::string folder_;
    std::mt19937 random_;
    FileFaults* faults_;
    Kind kind_ = Kind::Transient;
    std::map<std::string, int> counts_;
};

} // namespace marvane::testing
