#include "tool/setup/root_file.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

std::string Entry(const std::string& name, const std::string& library)
{
    return "  <MVCI_PDU_API>\r\n    <SHORT_NAME>" + name + "</SHORT_NAME>\r\n    " + library +
           "\r\n    <SUPPLIER_NAME> A &amp; B </SUPPLIER_NAME>\r\n  </MVCI_PDU_API>\r\n";
}

std::string Root(const std::string& entries)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<MVCI_PDU_API_ROOT MVCI_PART2_STANDARD_VERSION=\"2.2.0\">\r\n" +
           entries + "</MVCI_PDU_API_ROOT>\r\n";
}

const std::string OneUri = "<LIBRARY_FILE URI=\"file:///C:/v/x.dll\"/>";

std::string Reason(const std::string& root, std::size_t entry = 0)
{
    const RootFile file = ParseRootFile(root);
    return ReasonNotToChange(file, file.Entries.at(entry));
}

TEST(RootFile, ListsItsEntries)
{
    const RootFile file =
        ParseRootFile(Root("<!-- " + Entry("No", OneUri) + " -->" + Entry(" One ", OneUri) +
                           Entry("<![CDATA[Two]]>", "<LIBRARY_FILE URI='file:/C:/&#x41;.dll'/>")));
    ASSERT_EQ(file.Entries.size(), 2u);
    EXPECT_EQ(file.Entries[0].ShortName, "One");
    EXPECT_EQ(file.Entries[0].Supplier, "A & B");
    EXPECT_EQ(file.Entries[0].Line, 8u);
    EXPECT_EQ(file.Entries[1].ShortName, "Two");
    EXPECT_EQ(file.Entries[1].RawUri, "file:/C:/&#x41;.dll");
    EXPECT_EQ(file.Entries[1].Uri, "file:/C:/A.dll");
    EXPECT_EQ(file.Entries[1].Quote, '\'');
}

TEST(RootFile, KnowsTheModuleDescriptionOfAnEntry)
{
    const RootFile file = ParseRootFile(
        Root(Entry("One", OneUri + "<MODULE_DESCRIPTION_FILE URI=\"file:///C:/v/m &amp; d.xml\"/>") +
             Entry("Two", "<MODULE_DESCRIPTION_FILE/>" + OneUri)));
    EXPECT_EQ(file.Entries[0].ModuleDescription, "file:///C:/v/m & d.xml");
    EXPECT_EQ(file.Entries[0].Uri, "file:///C:/v/x.dll");
    EXPECT_EQ(file.Entries[1].ModuleDescription, std::nullopt);
}

TEST(RootFile, TakesAnEntryInsideANameForNestedAndNotForTheName)
{
    const RootFile file = ParseRootFile(
        Root("<MVCI_PDU_API><SHORT_NAME>One<MVCI_PDU_API><SHORT_NAME>Two</SHORT_NAME></MVCI_PDU_API>"
             "more</SHORT_NAME></MVCI_PDU_API>"));
    ASSERT_EQ(file.Entries.size(), 2u);
    EXPECT_EQ(file.Entries[0].ShortName, "One");
    EXPECT_EQ(file.Entries[1].ShortName, "Two");
    EXPECT_FALSE(file.Entries[0].Nested);
    EXPECT_TRUE(file.Entries[1].Nested);
}

TEST(RootFile, ChangesTheBytesOfItsUrisAlone)
{
    const std::string root = Root(Entry("One", OneUri) + Entry("Two", OneUri));
    const RootFile file = ParseRootFile(root);
    const UriChange changes[] = {{0, "file:///C:/longer/m.dll"}, {1, "m"}};
    const std::string changed = WithUris(file, changes);
    EXPECT_EQ(changed, Root(Entry("One", "<LIBRARY_FILE URI=\"file:///C:/longer/m.dll\"/>") +
                            Entry("Two", "<LIBRARY_FILE URI=\"m\"/>")));
    const UriChange back[] = {{0, "file:///C:/v/x.dll"}, {1, "file:///C:/v/x.dll"}};
    EXPECT_EQ(WithUris(ParseRootFile(changed), back), root);
}

TEST(RootFile, RefusesAValueThatWouldChangeMore)
{
    const RootFile file = ParseRootFile(Root(Entry("One", OneUri)));
    const UriChange changes[] = {{0, "x\" other=\""}};
    EXPECT_THROW(WithUris(file, changes), XmlError);
}

TEST(RootFile, SaysWhyAnEntryCanNotBeChanged)
{
    EXPECT_EQ(Reason(Root(Entry("One", OneUri))), "");
    EXPECT_EQ(Reason(Root(Entry("One", OneUri) + Entry(" One", OneUri))),
              "there are two entries of this name");
    EXPECT_EQ(Reason(Root(Entry("One\nold_uri=x", OneUri))), "its SHORT_NAME goes over several lines");
    EXPECT_EQ(Reason(Root(Entry("One", OneUri + OneUri))), "it has two LIBRARY_FILE elements");
    EXPECT_EQ(Reason(Root(Entry("One", "<LIBRARY_FILE/>"))), "it has no LIBRARY_FILE with a URI");
    EXPECT_EQ(Reason(Root("<group>" + Entry("One", OneUri) + "</group>")),
              "it is nested deeper than the root element's children");
    const std::string doctype = "<!DOCTYPE r [<!ENTITY v \"C:\">]>";
    EXPECT_EQ(Reason(doctype + "<MVCI_PDU_API_ROOT>" +
                     Entry("One", "<LIBRARY_FILE URI=\"file:///&v;/x.dll\"/>") + "</MVCI_PDU_API_ROOT>"),
              "its URI holds an entity other than the five predefined ones");
}

TEST(RootFile, MustBeOne)
{
    const auto fault = [](const std::string& bytes) -> std::string {
        try {
            ParseRootFile(bytes);
        } catch (const XmlError& error) {
            return error.what();
        }
        return "";
    };
    EXPECT_EQ(fault("<other/>"), "line 1: is no root description file: its root element is other");
    EXPECT_EQ(fault("<MVCI_PDU_API_ROOT>\n<b>\n</MVCI_PDU_API_ROOT>"),
              "line 3: the end tag MVCI_PDU_API_ROOT ends no open element");
    EXPECT_EQ(fault(std::string(RootFileLimit + 1, ' ')), "is larger than 16 MB");
}

} // namespace
} // namespace marvane::tool
