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

/// Offset of one of a PE file's directories, which follow an optional header of 32 or 64 bits.
std::size_t PeDirectory(const File& file, std::size_t index)
{
    constexpr std::uint16_t magicOf64Bits = 0x20B;
    const std::size_t header = file.At<std::uint32_t>(0x3C) + 24;
    const std::size_t directories = header + (file.At<std::uint16_t>(header) == magicOf64Bits ? 112 : 96);
    return PeOffset(file, file.At<std::uint32_t>(directories + index * 8));
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

/// Where the fields of an ELF file are. Addresses, offsets and sizes have the file's width, all else is
/// fixed.
struct ElfLayout
{
    std::size_t Width;
    std::size_t ProgramHeaders, Sections, ProgramHeaderCount, SectionCount; // in the file header
    std::size_t SectionSize, SectionOffset, SectionLength, SectionLink;     // of a section header
    std::size_t SymbolSize, SymbolSection;                                  // of a symbol
    std::size_t ProgramSize, ProgramOffset, ProgramLength, ProgramFlags;    // of a program header
};

constexpr ElfLayout Elf32 = {4, 28, 32, 44, 48, 40, 16, 20, 24, 16, 14, 32, 4, 16, 24};
constexpr ElfLayout Elf64 = {8, 32, 40, 56, 60, 64, 24, 32, 40, 24, 6, 56, 8, 32, 4};

const ElfLayout& LayoutOf(const File& file)
{
    return file.At<std::uint8_t>(4) == 1 ? Elf32 : Elf64;
}

std::size_t ElfWord(const File& file, std::size_t offset)
{
    return LayoutOf(file).Width == 4 ? file.At<std::uint32_t>(offset)
                                     : static_cast<std::size_t>(file.At<std::uint64_t>(offset));
}

std::vector<std::string> ElfExports(const File& file)
{
    constexpr std::uint32_t dynamicSymbols = 11;
    const ElfLayout& layout = LayoutOf(file);
    const auto sections = ElfWord(file, layout.Sections);
    std::vector<std::string> found;
    for (std::size_t i = 0; i < file.At<std::uint16_t>(layout.SectionCount); ++i) {
        const std::size_t section = sections + i * layout.SectionSize;
        if (file.At<std::uint32_t>(section + 4) != dynamicSymbols)
            continue;
        const std::size_t strings =
            sections + file.At<std::uint32_t>(section + layout.SectionLink) * layout.SectionSize;
        const auto names = ElfWord(file, strings + layout.SectionOffset);
        const auto symbols = ElfWord(file, section + layout.SectionOffset);
        for (std::size_t at = 0; at < ElfWord(file, section + layout.SectionLength); at += layout.SymbolSize)
            // Defined in a section of this file: exported, not imported.
            if (file.At<std::uint16_t>(symbols + at + layout.SymbolSection) != 0)
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
std::size_t ElfDynamicFlags(const File& file, std::size_t section, std::size_t size, std::size_t tag)
{
    const std::size_t width = LayoutOf(file).Width;
    for (std::size_t at = section; at < section + size; at += 2 * width)
        if (ElfWord(file, at) == tag)
            return ElfWord(file, at + width);
    return 0;
}

std::string ElfGuards(const File& file)
{
    constexpr std::uint32_t dynamic = 2;
    constexpr std::uint32_t stack = 0x6474E551;
    constexpr std::uint32_t readOnlyRelocations = 0x6474E552;
    constexpr std::size_t flagsTag = 0x6FFFFFFB;
    const ElfLayout& layout = LayoutOf(file);
    bool now = false;
    bool relro = false;
    bool plainStack = false;
    for (std::size_t i = 0; i < file.At<std::uint16_t>(layout.ProgramHeaderCount); ++i) {
        const std::size_t header = ElfWord(file, layout.ProgramHeaders) + i * layout.ProgramSize;
        const auto type = file.At<std::uint32_t>(header);
        if (type == dynamic)
            now = ElfDynamicFlags(file, ElfWord(file, header + layout.ProgramOffset),
                                  ElfWord(file, header + layout.ProgramLength), flagsTag) &
                  1;
        relro |= type == readOnlyRelocations;
        plainStack |= type == stack && !(file.At<std::uint32_t>(header + layout.ProgramFlags) & 1);
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
