// The documents name files and functions, and quote files: these must exist, and say so.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/pattern.h"

namespace marvane::testing {
namespace {

namespace fs = std::filesystem;

const fs::path Root = MARVANE_SOURCE_DIR;

std::string TextOf(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

/// Every document for people: those at the root, and docs/.
std::vector<fs::path> Documents()
{
    std::vector<fs::path> documents;
    for (const fs::path& folder : {Root, Root / "docs"})
        for (const fs::directory_entry& entry : fs::directory_iterator(folder))
            if (entry.path().extension() == ".md")
                documents.push_back(entry.path());
    return documents;
}

/// The last part of a qualified name.
std::string Unqualified(const std::string& name)
{
    const std::size_t colons = name.rfind("::");
    return colons == std::string::npos ? name : name.substr(colons + 2);
}

TEST(Documents, LinkToFilesThatExist)
{
    const std::string link = R"(\]\(([^)#:]+)(#[^)]*)?\))";
    std::size_t links = 0;
    for (const fs::path& document : Documents()) {
        const std::string text = TextOf(document);
        for (const PatternMatch& match : Matches(text, link)) {
            ++links;
            EXPECT_TRUE(fs::exists(document.parent_path() / match[1])) << document << ": " << match[0];
        }
    }
    EXPECT_GT(links, 20u) << "the documents were not found";
}

TEST(Documents, NameSourcesThatExist)
{
    const std::string folders = "pdu|platform|config|text|line|logger|tool|examples|tests|bench|cmake|docs";
    const std::string source = "`((?:" + folders + R"()/[A-Za-z0-9_/.-]+\.[a-z]+)`)";
    std::size_t sources = 0;
    for (const fs::path& document : Documents()) {
        const std::string text = TextOf(document);
        for (const PatternMatch& match : Matches(text, source)) {
            ++sources;
            EXPECT_TRUE(fs::exists(Root / match[1])) << document << ": " << match[0];
        }
    }
    EXPECT_GT(sources, 50u) << "the documents were not found";
}

TEST(Documents, TheMapNamesFunctionsWhereTheyAre)
{
    const std::string place = R"(`([A-Za-z_:]+)`,\s+`([a-z][A-Za-z0-9_/]+\.(?:cpp|h))`)";
    const std::string map = TextOf(Root / "docs" / "architecture.md");
    const std::vector<PatternMatch> places = Matches(map, place);
    EXPECT_GT(places.size(), 8u);
    for (const PatternMatch& match : places)
        EXPECT_NE(TextOf(Root / match[2]).find(Unqualified(match[1])), std::string::npos) << match[0];
}

/// The lines of a text.
std::vector<std::string> Lines(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// The pieces of an excerpt, between lines of "...", that do not follow each other as whole lines of
/// `source`.
std::vector<std::string> PiecesNotIn(const std::vector<std::string>& source, const std::string& excerpt)
{
    std::vector<std::string> missing;
    auto from = source.begin();
    std::vector<std::string> piece;
    const auto look = [&] {
        const auto found = std::search(from, source.end(), piece.begin(), piece.end());
        if (found == source.end())
            missing.push_back(piece.front());
        else
            from = found + static_cast<std::ptrdiff_t>(piece.size());
        piece.clear();
    };
    for (const std::string& line : Lines(excerpt)) {
        if (line != "...")
            piece.push_back(line);
        else if (!piece.empty())
            look();
    }
    if (!piece.empty())
        look();
    return missing;
}

TEST(Documents, QuoteFilesAsTheyAre)
{
    const std::string quote = "<!-- from ([^ ]+) -->\n```[a-z]*\n([^`]+)```\n";
    std::size_t quotes = 0;
    for (const fs::path& document : Documents()) {
        const std::string text = TextOf(document);
        for (const PatternMatch& match : Matches(text, quote)) {
            ++quotes;
            const std::vector<std::string> missing = PiecesNotIn(Lines(TextOf(Root / match[1])), match[2]);
            EXPECT_TRUE(missing.empty())
                << document << " quotes something that is not in " << match[1] << ", from this line on:\n"
                << missing.front();
        }
    }
    EXPECT_GE(quotes, 2u) << "the conversation and the log of README.md were not found";
}

} // namespace
} // namespace marvane::testing
