// Where the bytes of a log come from: a file, standard input, or either of them compressed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

#include "platform/temporary_file.h"

namespace marvane::read {

class ByteSource
{
public:
    virtual ~ByteSource() = default;

    /// Reads the next bytes. 0 at the end and after trouble.
    virtual std::size_t Read(std::span<char> buffer) = 0;
    /// What went wrong, in a few words; empty if nothing.
    virtual std::string Trouble() const { return {}; }
};

/// A file as it is on disk, from a byte on. Null if it can't be opened.
std::unique_ptr<ByteSource> OpenFileSource(const std::filesystem::path& path, std::uint64_t begin = 0);
/// Standard input, which the caller has set to pass bytes as they are.
std::unique_ptr<ByteSource> StandardInputSource();
/// A copy that was made of another source.
std::unique_ptr<ByteSource> SpoolSource(std::shared_ptr<const platform::TemporaryFile> spool);
/// Unpacks what `source` gives if that begins as a gzip file does; else passes it on.
std::unique_ptr<ByteSource> MaybeUnpacked(std::unique_ptr<ByteSource> source);

} // namespace marvane::read
