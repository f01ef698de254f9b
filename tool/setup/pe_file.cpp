// Windows libraries: the headers, the export and import tables and the version resource of a PE file.
#include <algorithm>

#include "tool/setup/binary_reader.h"

namespace marvane::tool {

namespace {

constexpr std::uint32_t VersionSignature = 0xFEEF04BD;
constexpr std::uint32_t VersionResource = 16;
constexpr std::uint32_t SubfolderFlag = 0x80000000;

enum DataDirectory : std::uint32_t
{
    ExportDirectory = 0,
    ImportDirectory = 1,
    ResourceDirectory = 2,
};

class PeFile
{
public:
    /// The caller has seen the signature at `header`.
    PeFile(const BinaryView& file, std::uint64_t header)
        : file_(file), header_(header), optional_(header + 24), is64_(file.Word(optional_) == 0x20B)
    {
    }

    std::uint16_t MachineNumber() const { return file_.Word(header_ + 4); }
    bool IsLibrary() const { return (file_.Word(header_ + 22) & 0x2000) != 0; }

    /// Offset in the file of a directory's data; 0 if it has none.
    std::uint64_t Directory(DataDirectory directory) const
    {
        const std::uint64_t count = file_.Long(optional_ + (is64_ ? 108 : 92));
        const std::uint64_t at = optional_ + (is64_ ? 112 : 96) + std::uint64_t{directory} * 8;
        return directory < count ? Offset(file_.Long(at)) : 0;
    }

    /// Offset in the file of an address of the loaded library; 0 if the file does not hold it.
    std::uint64_t Offset(std::uint32_t address) const
    {
        const std::uint64_t sections = optional_ + file_.Word(header_ + 20);
        for (std::uint64_t i = 0; i < std::min<std::uint64_t>(file_.Word(header_ + 6), MostParts); ++i) {
            const std::uint64_t section = sections + i * 40;
            const std::uint32_t begin = file_.Long(section + 12);
            if (address >= begin && address - begin < file_.Long(section + 16))
                return std::uint64_t{file_.Long(section + 20)} + (address - begin);
        }
        return 0;
    }

    std::string TextAt(std::uint32_t address) const
    {
        const std::uint64_t offset = Offset(address);
        return offset == 0 ? std::string() : file_.Text(offset);
    }

    std::set<std::string> Exports() const
    {
        std::set<std::string> exports;
        const std::uint64_t table = Directory(ExportDirectory);
        const std::uint64_t names = table == 0 ? 0 : Offset(file_.Long(table + 32));
        const std::uint64_t count =
            names == 0 ? 0 : std::min<std::uint64_t>(file_.Long(table + 24), MostBinaryEntries);
        for (std::uint64_t i = 0; i < count; ++i)
            exports.insert(TextAt(file_.Long(names + i * 4)));
        return exports;
    }

    std::vector<std::string> Needed() const
    {
        std::vector<std::string> needed;
        const std::uint64_t table = Directory(ImportDirectory);
        for (std::uint64_t i = 0; table != 0 && i < MostParts; ++i) {
            const std::uint32_t name = file_.Long(table + i * 20 + 12);
            if (name == 0)
                break;
            needed.push_back(TextAt(name));
        }
        return needed;
    }

    std::optional<std::array<std::uint16_t, 4>> Version() const
    {
        const std::uint64_t root = Directory(ResourceDirectory);
        if (root == 0)
            return std::nullopt;
        // Type, name, language; of the latter two the first that there is.
        std::optional<std::uint32_t> entry = ResourceEntry(root, root, VersionResource);
        for (int level = 0; level < 2 && entry && (*entry & SubfolderFlag) != 0; ++level)
            entry = ResourceEntry(root, root + (*entry & ~SubfolderFlag), std::nullopt);
        if (!entry || (*entry & SubfolderFlag) != 0)
            return std::nullopt;
        return VersionIn(Offset(file_.Long(root + *entry)), file_.Long(root + *entry + 4));
    }

private:
    /// Value of the entry of a resource folder with that number, or of its first.
    std::optional<std::uint32_t> ResourceEntry(std::uint64_t root, std::uint64_t folder,
                                               std::optional<std::uint32_t> number) const
    {
        if (!file_.Holds(root, 16) || !file_.Holds(folder, 16))
            return std::nullopt;
        const std::uint64_t count =
            std::min<std::uint64_t>(file_.Word(folder + 12) + file_.Word(folder + 14), MostParts);
        for (std::uint64_t i = 0; i < count; ++i) {
            const std::uint64_t entry = folder + 16 + i * 8;
            if (!number || file_.Long(entry) == *number)
                return file_.Long(entry + 4);
        }
        return std::nullopt;
    }

    std::optional<std::array<std::uint16_t, 4>> VersionIn(std::uint64_t offset, std::uint32_t size) const
    {
        if (offset == 0 || !file_.Holds(offset, size))
            return std::nullopt;
        for (std::uint64_t at = offset; at + 52 <= offset + size; at += 4)
            if (file_.Long(at) == VersionSignature)
                return {{file_.Word(at + 18), file_.Word(at + 16), file_.Word(at + 22), file_.Word(at + 20)}};
        return std::nullopt;
    }

    const BinaryView& file_;
    std::uint64_t header_;
    std::uint64_t optional_;
    bool is64_;
};

Machine MachineOf(std::uint16_t number)
{
    switch (number) {
    case 0x014C:
        return Machine::X86;
    case 0x8664:
        return Machine::X64;
    case 0xAA64:
        return Machine::Arm64;
    default:
        return Machine::Other;
    }
}

} // namespace

std::optional<BinaryFacts> InspectPe(const BinaryView& file)
{
    const std::uint64_t header = file.Long(0x3C);
    if (file.Word(0) != 0x5A4D || file.Long(header) != 0x00004550)
        return std::nullopt;
    const PeFile pe(file, header);
    BinaryFacts facts;
    facts.Format = BinaryFormat::Pe;
    facts.IsLibrary = pe.IsLibrary();
    facts.For = MachineOf(pe.MachineNumber());
    facts.Exports = pe.Exports();
    facts.Version = pe.Version();
    facts.Needed = pe.Needed();
    return facts;
}

} // namespace marvane::tool
