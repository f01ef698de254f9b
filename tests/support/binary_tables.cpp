#include "tests/support/binary_tables.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "tests/support/temporary_folder.h"

namespace marvane::testing {

namespace {

class File
{
public:
    explicit File(const std::string& path) : bytes_(FileBytes(path)) {}

    template <class Number> Number At(std::size_t offset) const
    {
        Number number = {};
        if (offset + sizeof number <= bytes_.size())
            std::memcpy(&number, bytes_.data() + offset, sizeof number);
        return number;
    }
    std::string TextAt(std::size_t offset) const { return bytes_.c_str() + offset; }
    bool IsPe() const { return bytes_.starts_with("MZ"); }

private:
    std::string bytes_;
};

/// The offset in a PE file of an address in the loaded image.
std::size_t PeOffset(const File& file, std::uint32_t address)
{
    const std::size_t header = file.At<std::uint32_t>(0x3C);
    const std::size_t sections = header + 24 + file.At<std::uint16_t>(header + 20);
    for (std::size_t i = 0; i < file.At<std::uint16_t>(header + 6); ++i) {
        const std::size_t section = sections + i * 40;
        const auto start = file.At<std::uint32_t>(section + 12);
        if (address >= start && address < start + file.At<std::uint32_t>(section + 16))
            return file.At<std::uint32_t>(section + 20) + (address - start);
    }
    return 0;
}

/// Offset of one of a 64-bit PE file's directories.
std::size_t PeDirectory(const File& file, std::size_t index)
{
    const std::size_t header = file.At<std::uint32_t>(0x3C);
    return PeOffset(file, file.At<std::uint32_t>(header + 24 + 112 + index * 8));
}

std::vector<std::string> PeExports(const File& file)
{
    const std::size_t table = PeDirectory(file, 0);
    const std::size_t names = PeOffset(file, file.At<std::uint32_t>(table + 32));
    std::vector<std::string> found;
    for (std::size_t i = 0; i < file.At<std::uint32_t>(table + 24); ++i)
        found.push_back(file.TextAt(PeOffset(file, file.At<std::uint32_t>(names + i * 4))));
    return found;
}

std::vector<std::string> ElfExports(const File& file)
{
    constexpr std::uint32_t dynamicSymbols = 11;
    constexpr std::size_t sectionSize = 64;
    constexpr std::size_t symbolSize = 24;
    const auto sections = file.At<std::uint64_t>(40);
    std::vector<std::string> found;
    for (std::size_t i = 0; i < file.At<std::uint16_t>(60); ++i) {
        const std::size_t section = sections + i * sectionSize;
        if (file.At<std::uint32_t>(section + 4) != dynamicSymbols)
            continue;
        const std::size_t strings = sections + file.At<std::uint32_t>(section + 40) * sectionSize;
        const auto names = file.At<std::uint64_t>(strings + 24);
        const auto symbols = file.At<std::uint64_t>(section + 24);
        for (std::size_t at = 0; at < file.At<std::uint64_t>(section + 32); at += symbolSize)
            // Defined in a section of this file: exported, not imported.
            if (file.At<std::uint16_t>(symbols + at + 6) != 0)
                found.push_back(file.TextAt(names + file.At<std::uint32_t>(symbols + at)));
    }
    return found;
}

std::string Joined(std::initializer_list<std::pair<bool, const char*>> guards)
{
    std::string text;
    for (const auto& [present, name] : guards)
        if (present)
            text += (text.empty() ? "" : ", ") + std::string(name);
    return text;
}

std::string PeGuards(const File& file)
{
    const std::size_t header = file.At<std::uint32_t>(0x3C);
    const auto characteristics = file.At<std::uint16_t>(header + 24 + 70);
    return Joined({{characteristics & 0x40, "dynamic base"},
                   {characteristics & 0x100, "no execution"},
                   {characteristics & 0x20, "high entropy"}});
}

/// The flags of the dynamic section under a tag.
std::uint64_t ElfDynamicFlags(const File& file, std::size_t section, std::size_t size, std::uint64_t tag)
{
    for (std::size_t at = section; at < section + size; at += 16)
        if (file.At<std::uint64_t>(at) == tag)
            return file.At<std::uint64_t>(at + 8);
    return 0;
}

std::string ElfGuards(const File& file)
{
    constexpr std::uint32_t dynamic = 2;
    constexpr std::uint32_t stack = 0x6474E551;
    constexpr std::uint32_t readOnlyRelocations = 0x6474E552;
    constexpr std::uint64_t flagsTag = 0x6FFFFFFB;
    bool now = false;
    bool relro = false;
    bool plainStack = false;
    for (std::size_t i = 0; i < file.At<std::uint16_t>(56); ++i) {
        const std::size_t header = file.At<std::uint64_t>(32) + i * 56;
        const auto type = file.At<std::uint32_t>(header);
        if (type == dynamic)
            now = ElfDynamicFlags(file, file.At<std::uint64_t>(header + 8),
                                  file.At<std::uint64_t>(header + 32), flagsTag) &
                  1;
        relro |= type == readOnlyRelocations;
        plainStack |= type == stack && !(file.At<std::uint32_t>(header + 4) & 1);
    }
    return Joined(
        {{now, "bound at load"}, {relro, "read-only relocations"}, {plainStack, "no executable stack"}});
}

} // namespace

std::vector<std::string> ExportedNames(const std::string& path)
{
    const File file(path);
    std::vector<std::string> names = file.IsPe() ? PeExports(file) : ElfExports(file);
    std::sort(names.begin(), names.end());
    return names;
}

std::string LinkerGuards(const std::string& path)
{
    const File file(path);
    return file.IsPe() ? PeGuards(file) : ElfGuards(file);
}

std::vector<std::string> ImportedLibraries(const std::string& path)
{
    const File file(path);
    std::vector<std::string> names;
    for (std::size_t entry = PeDirectory(file, 1); file.At<std::uint32_t>(entry + 12) != 0; entry += 20)
        names.push_back(file.TextAt(PeOffset(file, file.At<std::uint32_t>(entry + 12))));
    return names;
}

} // namespace marvane::testing
