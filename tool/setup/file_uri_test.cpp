#include "tool/setup/file_uri.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

std::string OnWindows(const std::string& uri)
{
    try {
        return PathOfUri(uri, '\\');
    } catch (const UriError& error) {
        return std::string("!") + error.what();
    }
}

std::string OnLinux(const std::string& uri)
{
    try {
        return PathOfUri(uri, '/');
    } catch (const UriError& error) {
        return std::string("!") + error.what();
    }
}

TEST(FileUri, OfWindowsHasManySpellings)
{
    EXPECT_EQ(OnWindows("file:///C:/dir with blanks/x.dll"), "C:\\dir with blanks\\x.dll");
    EXPECT_EQ(OnWindows("FILE:/C:/a/x.dll"), "C:\\a\\x.dll");
    EXPECT_EQ(OnWindows("file://C:\\a\\x.dll"), "C:\\a\\x.dll");
    EXPECT_EQ(OnWindows("file://localhost/C:/a%20b/%C3%A4.dll"), "C:\\a b\\\xC3\xA4.dll");
    EXPECT_EQ(OnWindows("file://server/share/x.dll"), "\\\\server\\share\\x.dll");
    EXPECT_EQ(OnWindows("file:////server/share/x.dll"), "\\\\server\\share\\x.dll");
}

TEST(FileUri, OfLinuxBeginsAtTheRoot)
{
    EXPECT_EQ(OnLinux("file:///opt/v%20x/libpdu.so"), "/opt/v x/libpdu.so");
    EXPECT_EQ(OnLinux("file:/opt/libpdu.so"), "/opt/libpdu.so");
    EXPECT_EQ(OnLinux("file://localhost/opt/libpdu.so"), "/opt/libpdu.so");
    EXPECT_EQ(OnLinux("file:///opt/100%.so"), "/opt/100%.so");
}

TEST(FileUri, MustNameAFileByItsFullPath)
{
    EXPECT_EQ(OnWindows("C:\\a\\x.dll"), "!does not begin with file:");
    EXPECT_EQ(OnWindows("file:x.dll"), "!is a relative path");
    EXPECT_EQ(OnWindows("file:///C:x.dll"), "!is a relative path");
    EXPECT_EQ(OnWindows("file:///C:/a/"), "!names a folder");
    EXPECT_EQ(OnLinux("libpdu.so"), "!does not begin with file:");
    EXPECT_EQ(OnLinux("file:libpdu.so"), "!is a relative path");
    EXPECT_EQ(OnLinux("file://host/opt/libpdu.so"), "!names another machine");
    EXPECT_EQ(OnLinux("file:///a%0Ab"), "!holds a control character");
}

TEST(FileUri, IsWrittenAsEveryReaderUnderstandsIt)
{
    EXPECT_EQ(UriOfPath("C:\\dir with blanks\\100%.dll", '\\'), "file:///C:/dir with blanks/100%25.dll");
    EXPECT_EQ(UriOfPath("\\\\server\\share\\x.dll", '\\'), "file://server/share/x.dll");
    EXPECT_EQ(UriOfPath("/opt/v/libpdu.so", '/'), "file:///opt/v/libpdu.so");
}

} // namespace
} // namespace marvane::tool
