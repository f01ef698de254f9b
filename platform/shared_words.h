// A file of 32-bit words that several processes read and change.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace marvane::platform {

/// The file, mapped into memory: changes by other processes are seen at the next read.
class SharedWords
{
public:
    SharedWords() = default;
    SharedWords(const SharedWords&) = delete;
    SharedWords& operator=(const SharedWords&) = delete;
    ~SharedWords() { Close(); }

    /// Opens the file, creating it if it is missing, appends words of value `fill` until it holds `count`
    /// whole words, and maps these. False on failure: errno's message in `error` if the file can't be opened,
    /// an empty text if it can't be mapped. A file that is already open is only mapped again.
    bool Open(const std::string& path, std::size_t count, std::int32_t fill, std::string& error);
    void Close();

    /// The words, as other processes may change them at any time; null if not mapped.
    const volatile std::int32_t* Words() const { return words_; }

    /// Reads a word. False if it is not mapped, or if another process has truncated the file before it.
    bool Read(std::size_t index, std::int32_t& value) const;

private:
    const volatile std::int32_t* words_ = nullptr;
    std::size_t mappedBytes_ = 0;
    [[maybe_unused]] void* mapping_ = nullptr;
    int descriptor_ = -1;
};

} // namespace marvane::platform
