// Linux libraries: the dynamic section, the dynamic symbols and the version note of an ELF file.
#include <algorithm>

#include "tool/setup/binary_reader.h"

namespace marvane::tool {

namespace {

enum SegmentType : std::uint32_t
{
    LoadSegment = 1,
    DynamicSegment = 2,
    NoteSegment = 4,
};

enum DynamicTag : std::uint64_t
{
    NeededTag = 1,
    HashTag = 4,
    StringTableTag = 5,
    SymbolTableTag = 6,
    RPathTag = 15,
    RunPathTag = 29,
    GnuHashTag = 0x6FFFFEF5,
};

struct Segment
{
    std::uint32_t Type;
    std::uint64_t Offset;
    std::uint64_t Address;
    std::uint64_t Size;
};

class ElfFile
{
public:
    explicit ElfFile(const BinaryView& file) : file_(file), is64_(file.Number(4, 1) == 2)
    {
        const std::uint64_t table = is64_ ? file.Number(32, 8) : file.Long(28);
        const std::uint64_t size = file.Word(is64_ ? 54 : 42);
        for (std::uint64_t i = 0; i < std::min<std::uint64_t>(file.Word(is64_ ? 56 : 44), MostParts); ++i)
            segments_.push_back(SegmentAt(table + i * size));
        for (const Segment& segment : segments_)
            if (segment.Type == DynamicSegment)
                ReadDynamic(segment);
    }

    std::uint16_t MachineNumber() const { return file_.Word(18); }
    bool IsLibrary() const { return file_.Word(16) == 3; }

    std::vector<std::string> Texts(std::initializer_list<DynamicTag> tags) const
    {
        std::vector<std::string> texts;
        for (const auto& [tag, value] : dynamic_)
            if (std::find(tags.begin(), tags.end(), tag) != tags.end())
                texts.push_back(file_.Text(Offset(Dynamic(StringTableTag)) + value));
        return texts;
    }

    std::set<std::string> Exports() const
    {
        std::set<std::string> exports;
        const std::uint64_t symbols = Offset(Dynamic(SymbolTableTag));
        const std::uint64_t strings = Offset(Dynamic(StringTableTag));
        if (symbols == 0 || strings == 0)
            return exports;
        const std::uint64_t size = is64_ ? 24 : 16;
        const std::uint64_t count = SymbolCount();
        for (std::uint64_t i = 1; i < count; ++i) {
            const std::uint64_t symbol = symbols + i * size;
            const std::uint64_t info = file_.Number(symbol + (is64_ ? 4 : 12), 1);
            const std::uint64_t visibility = file_.Number(symbol + (is64_ ? 5 : 13), 1) & 3;
            const bool isDefined = file_.Word(symbol + (is64_ ? 6 : 14)) != 0;
            const bool isLocal = info >> 4 == 0;
            if (isDefined && !isLocal && (visibility == 0 || visibility == 3))
                exports.insert(file_.Text(strings + file_.Long(symbol)));
        }
        return exports;
    }

    /// The four numbers of a note of our own.
    std::optional<std::array<std::uint16_t, 4>> Version() const
    {
        for (const Segment& segment : segments_)
            if (segment.Type == NoteSegment)
                if (const auto version = VersionIn(segment))
                    return version;
        return std::nullopt;
    }

private:
    Segment SegmentAt(std::uint64_t at) const
    {
        if (is64_)
            return {file_.Long(at), file_.Number(at + 8, 8), file_.Number(at + 16, 8),
                    file_.Number(at + 32, 8)};
        return {file_.Long(at), file_.Long(at + 4), file_.Long(at + 8), file_.Long(at + 16)};
    }

    void ReadDynamic(const Segment& segment)
    {
        const unsigned word = is64_ ? 8 : 4;
        const std::uint64_t count = std::min(segment.Size / (2 * word), MostParts);
        for (std::uint64_t i = 0; i < count; ++i) {
            const std::uint64_t at = segment.Offset + i * 2 * word;
            dynamic_.emplace_back(file_.Number(at, word), file_.Number(at + word, word));
        }
    }

    std::uint64_t Dynamic(std::uint64_t wanted) const
    {
        for (const auto& [tag, value] : dynamic_)
            if (tag == wanted)
                return value;
        return 0;
    }

    /// Offset in the file of an address of the loaded library; 0 if the file does not hold it.
    std::uint64_t Offset(std::uint64_t address) const
    {
        for (const Segment& segment : segments_)
            if (segment.Type == LoadSegment && address != 0 && address >= segment.Address &&
                address - segment.Address < segment.Size)
                return segment.Offset + (address - segment.Address);
        return 0;
    }

    std::uint64_t SymbolCount() const
    {
        if (const std::uint64_t hash = Offset(Dynamic(HashTag)))
            return std::min<std::uint64_t>(file_.Long(hash + 4), MostBinaryEntries);
        const std::uint64_t hash = Offset(Dynamic(GnuHashTag));
        if (hash == 0)
            return 0;
        const std::uint64_t bucketCount = std::min<std::uint64_t>(file_.Long(hash), MostBinaryEntries);
        const std::uint64_t firstSymbol = file_.Long(hash + 4);
        const std::uint64_t buckets = hash + 16 + std::uint64_t{file_.Long(hash + 8)} * (is64_ ? 8 : 4);
        const std::uint64_t chains = buckets + std::uint64_t{file_.Long(hash)} * 4;
        std::uint64_t last = 0;
        for (std::uint64_t i = 0; i < bucketCount; ++i)
            last = std::max<std::uint64_t>(last, file_.Long(buckets + i * 4));
        if (last < firstSymbol)
            return 0;
        // The last chain ends at the last symbol, which has the lowest bit set.
        while (last < MostBinaryEntries && (file_.Long(chains + (last - firstSymbol) * 4) & 1) == 0)
            ++last;
        return std::min(last + 1, MostBinaryEntries);
    }

    std::optional<std::array<std::uint16_t, 4>> VersionIn(const Segment& segment) const
    {
        const auto aligned = [](std::uint64_t size) { return (size + 3) & ~std::uint64_t{3}; };
        for (std::uint64_t at = segment.Offset;
             at + 12 <= segment.Offset + segment.Size && file_.Holds(at, 12);) {
            const std::uint64_t nameSize = file_.Long(at);
            const std::uint64_t size = file_.Long(at + 4);
            const std::uint64_t data = at + 12 + aligned(nameSize);
            if (file_.Long(at + 8) == 1 && nameSize == 8 && size == 8 && file_.Text(at + 12) == "Marvane" &&
                file_.Holds(data, 8))
                return {{file_.Word(data), file_.Word(data + 2), file_.Word(data + 4), file_.Word(data + 6)}};
            at = data + aligned(size);
        }
        return std::nullopt;
    }

    const BinaryView& file_;
    bool is64_;
    std::vector<Segment> segments_;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> dynamic_;
};

Machine MachineOf(std::uint16_t number)
{
    switch (number) {
    case 3:
        return Machine::X86;
    case 62:
        return Machine::X64;
    case 183:
        return Machine::Arm64;
    default:
        return Machine::Other;
    }
}

} // namespace

std::optional<BinaryFacts> InspectElf(const BinaryView& file)
{
    // "\x7FELF", little-endian.
    if (file.Long(0) != 0x464C457F || file.Number(5, 1) != 1)
        return std::nullopt;
    const ElfFile elf(file);
    BinaryFacts facts;
    facts.Format = BinaryFormat::Elf;
    facts.IsLibrary = elf.IsLibrary();
    facts.For = MachineOf(elf.MachineNumber());
    facts.Exports = elf.Exports();
    facts.Version = elf.Version();
    facts.Needed = elf.Texts({NeededTag});
    facts.SearchPaths = elf.Texts({RPathTag, RunPathTag});
    return facts;
}

} // namespace marvane::tool
