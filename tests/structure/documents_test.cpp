// The documents name files and functions: these must exist.
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

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

std::vector<std::smatch> Matches(const std::string& text, const std::regex& pattern)
{
    return {std::sregex_iterator(text.begin(), text.end(), pattern), std::sregex_iterator()};
}

/// The last part of a qualified name.
std::string Unqualified(const std::string& name)
{
    const std::size_t colons = name.rfind("::");
    return colons == std::string::npos ? name : name.substr(colons + 2);
}

TEST(Documents, LinkToFilesThatExist)
{
    const std::regex link(R"(\]\(([^)#:]+)(#[^)]*)?\))");
    std::size_t links = 0;
    for (const fs::path& document : Documents()) {
        const std::string text = TextOf(document);
        for (const std::smatch& match : Matches(text, link)) {
            ++links;
            EXPECT_TRUE(fs::exists(document.parent_path() / match[1].str())) << document << ": " << match[0];
        }
    }
    EXPECT_GT(links, 20u) << "the documents were not found";
}

TEST(Documents, NameSourcesThatExist)
{
    const std::string folders = "pdu|platform|config|text|line|logger|tool|examples|tests|bench|cmake|docs";
    const std::regex source("`((?:" + folders + R"()/[A-Za-z0-9_/.-]+\.[a-z]+)`)");
    std::size_t sources = 0;
    for (const fs::path& document : Documents()) {
        const std::string text = TextOf(document);
        for (const std::smatch& match : Matches(text, source)) {
            ++sources;
            EXPECT_TRUE(fs::exists(Root / match[1].str())) << document << ": " << match[0];
        }
    }
    EXPECT_GT(sources, 50u) << "the documents were not found";
}

TEST(Documents, TheMapNamesFunctionsWhereTheyAre)
{
    const std::regex place(R"(`([A-Za-z_:]+)`,\s+`([a-z][A-Za-z0-9_/]+\.(?:cpp|h))`)");
    const std::string map = TextOf(Root / "docs" / "architecture.md");
    const std::vector<std::smatch> places = Matches(map, place);
    EXPECT_GT(places.size(), 8u);
    for (const std::smatch& match : places)
        EXPECT_NE(TextOf(Root / match[2].str()).find(Unqualified(match[1])), std::string::npos) << match[0];
}

} // namespace
