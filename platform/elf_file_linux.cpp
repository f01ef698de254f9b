#include "platform/elf_file.h"

#include <algorithm>
#include <cstring>
#include <elf.h>
#include <fstream>
#include <link.h>

namespace marvane::platform {

namespace {

// Of the width of this program, as the libraries that it can load.
constexpr unsigned char OwnClass = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;

// Tables of real libraries are far smaller.
constexpr std::size_t MostBytes = 1 << 20;

class ElfFile
{
public:
    explicit ElfFile(const std::string& path) : file_(path, std::ios::binary)
    {
        ElfW(Ehdr) header = {};
        if (!ReadInto(0, &header, sizeof header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
            header.e_ident[EI_CLASS] != OwnClass || header.e_phentsize != sizeof(ElfW(Phdr)))
            return;
        segments_.resize(header.e_phnum);
        if (!ReadInto(header.e_phoff, segments_.data(), segments_.size() * sizeof(ElfW(Phdr))))
            segments_.clear();
    }

    /// Contents of each segment of a type; segments that the file does not contain completely are omitted.
    std::vector<std::vector<char>> Segments(std::uint32_t type)
    {
        std::vector<std::vector<char>> contents;
        for (const ElfW(Phdr) & segment : segments_) {
            if (segment.p_type != type || segment.p_filesz > MostBytes)
                continue;
            std::vector<char> bytes(segment.p_filesz);
            if (ReadInto(segment.p_offset, bytes.data(), bytes.size()))
                contents.push_back(std::move(bytes));
        }
        return contents;
    }

    /// NUL-terminated string at an address of the loaded library.
    std::string TextAt(std::uint64_t address)
    {
        for (const ElfW(Phdr) & segment : segments_) {
            if (segment.p_type != PT_LOAD || address < segment.p_vaddr ||
                address - segment.p_vaddr >= segment.p_filesz)
                continue;
            char text[256] = {};
            Seek(segment.p_offset + (address - segment.p_vaddr));
            file_.read(text, sizeof text - 1);
            return text;
        }
        return {};
    }

private:
    void Seek(std::uint64_t offset)
    {
        file_.clear();
        file_.seekg(static_cast<std::streamoff>(offset & 0x7FFFFFFFFFFFFFFF));
    }

    bool ReadInto(std::uint64_t offset, void* out, std::size_t size)
    {
        Seek(offset);
        return static_cast<bool>(file_.read(static_cast<char*>(out), static_cast<std::streamsize>(size)));
    }

    std::ifstream file_;
    std::vector<ElfW(Phdr)> segments_;
};

std::size_t Aligned(std::size_t size)
{
    return (size + 3) & ~std::size_t{3};
}

/// The version in one note segment, if it holds a note of our own.
std::optional<std::array<std::uint16_t, 4>> VersionIn(const std::vector<char>& notes)
{
    constexpr char owner[] = "Marvane";
    std::array<std::uint16_t, 4> version;
    for (std::size_t at = 0; notes.size() - at >= sizeof(ElfW(Nhdr));) {
        ElfW(Nhdr) note;
        std::memcpy(&note, notes.data() + at, sizeof note);
        const std::size_t name = at + sizeof note;
        const std::size_t description = name + Aligned(note.n_namesz);
        const std::size_t end = description + Aligned(note.n_descsz);
        if (end > notes.size())
            break;
        if (note.n_type == 1 && note.n_namesz == sizeof owner && note.n_descsz == sizeof version &&
            std::memcmp(notes.data() + name, owner, sizeof owner) == 0) {
            std::memcpy(version.data(), notes.data() + description, sizeof version);
            return version;
        }
        at = end;
    }
    return std::nullopt;
}

} // namespace

std::optional<std::array<std::uint16_t, 4>> ElfProductVersion(const std::string& path)
{
    ElfFile file(path);
    for (const std::vector<char>& notes : file.Segments(PT_NOTE))
        if (const auto version = VersionIn(notes))
            return version;
    return std::nullopt;
}

std::vector<std::string> ElfNeededLibraries(const std::string& path)
{
    ElfFile file(path);
    std::uint64_t strings = 0;
    std::vector<std::uint64_t> offsets;
    for (const std::vector<char>& bytes : file.Segments(PT_DYNAMIC))
        for (std::size_t at = 0; at + sizeof(ElfW(Dyn)) <= bytes.size(); at += sizeof(ElfW(Dyn))) {
            ElfW(Dyn) entry;
            std::memcpy(&entry, bytes.data() + at, sizeof entry);
            if (entry.d_tag == DT_STRTAB)
                strings = entry.d_un.d_ptr;
            else if (entry.d_tag == DT_NEEDED)
                offsets.push_back(entry.d_un.d_val);
        }
    std::vector<std::string> names;
    names.reserve(offsets.size());
    for (const std::uint64_t offset : offsets)
        names.push_back(file.TextAt(strings + offset));
    return names;
}

} // namespace marvane::platform
