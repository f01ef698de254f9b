#include "tool/report/page.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

struct TextSink : Sink
{
    std::string Text;
    void Write(std::string_view bytes) override { Text += bytes; }
    void Flush() override {}
    void Finish() override {}
};

std::string PageOf(const PageContent& content)
{
    TextSink sink;
    WritePage(content, sink);
    return sink.Text;
}

std::size_t CountOf(std::string_view text, std::string_view part)
{
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string_view::npos; at += part.size())
        ++count;
    return count;
}

TEST(Page, TheSkeletonHasEachPlaceOnce)
{
    for (const char* const place : {"POLICY", "TITLE", "DATA"})
        EXPECT_EQ(CountOf(ReportPage(), "@@" + std::string(place) + "@@"), 1u) << place;
    // Nothing beside them, since the policy names them by their hashes.
    EXPECT_EQ(CountOf(ReportPage(), "<style>@@STYLE@@</style>"), 1u);
    EXPECT_EQ(CountOf(ReportPage(), "<script>@@SCRIPT@@</script>"), 1u);
    EXPECT_EQ(CountOf(ReportPage(), "@@"), 10u);
}

TEST(Page, ItsFilesDoNotEndTheirElements)
{
    for (const std::string_view text : {ReportStyle(), ReportScript()})
        for (const char* const end : {"</script", "</style", "<!--"})
            EXPECT_EQ(text.find(end), std::string_view::npos) << end;
}

TEST(Page, HoldsItsDataStyleAndScript)
{
    const std::string page = PageOf({"run.LGR", "TU9ERUw=", "TElORVM=", ""});
    EXPECT_NE(page.find("<title>run.LGR</title>"), std::string::npos);
    EXPECT_NE(page.find("<script type=\"text/plain\" id=\"model\">TU9ERUw=</script>\n"
                        "<script type=\"text/plain\" id=\"lines\">TElORVM=</script>\n"),
              std::string::npos);
    EXPECT_EQ(page.find("id=\"raw\""), std::string::npos);
    EXPECT_NE(page.find("<style>" + std::string(ReportStyle()) + "</style>"), std::string::npos);
    EXPECT_NE(page.find("<script>" + std::string(ReportScript()) + "</script>"), std::string::npos);
    EXPECT_NE(page.find("default-src 'none'; script-src 'sha256-"), std::string::npos);
    EXPECT_NE(page.find("; img-src data:; base-uri 'none'; form-action 'none'\""), std::string::npos);
    EXPECT_NE(PageOf({"", "", "", "UkFX"}).find("id=\"raw\">UkFX</script>"), std::string::npos);
}

TEST(Page, ATitleIsNoMarkup)
{
    EXPECT_EQ(HtmlText("a<b>&\"c\"@@SCRIPT@@"), "a&lt;b&gt;&amp;&quot;c&quot;@@SCRIPT@@");
    const std::string page = PageOf({"</title><script>", "", "", ""});
    EXPECT_NE(page.find("<title>&lt;/title&gt;&lt;script&gt;</title>"), std::string::npos);
}

} // namespace
} // namespace marvane::tool
