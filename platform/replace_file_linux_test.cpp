#include "platform/replace_file.h"

#include <cerrno>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "tests/support/temporary_folder.h"

namespace marvane::platform {
namespace {

/// The value of an extended attribute; empty if the file lacks it.
std::string Attribute(const std::string& path, const char* name)
{
    char value[256];
    const ssize_t size = getxattr(path.c_str(), name, value, sizeof value);
    return size < 0 ? std::string() : std::string(value, static_cast<std::size_t>(size));
}

/// Sets an attribute of a file; false on a file system that has none.
bool SetAttribute(const std::string& path, const char* name, const std::string& value)
{
    return setxattr(path.c_str(), name, value.data(), value.size(), 0) == 0;
}

std::string Replace(const std::string& path)
{
    return ReplaceFileContents(path, "new", [] { return true; });
}

TEST(FileThatIsReplaced, KeepsItsExtendedAttributes)
{
    const testing::TemporaryFolder folder;
    const std::string path = folder / "file";
    testing::WriteFileBytes(path, "old");
    if (!SetAttribute(path, "user.one", "first") || !SetAttribute(path, "user.empty", ""))
        GTEST_SKIP() << "no extended attributes in this folder";
    EXPECT_EQ(Replace(path), "");
    EXPECT_EQ(testing::FileBytes(path), "new");
    EXPECT_EQ(Attribute(path, "user.one"), "first");
    EXPECT_EQ(getxattr(path.c_str(), "user.empty", nullptr, 0), 0);
}

TEST(FileThatIsReplaced, KeepsItsAccessList)
{
    // Version 2; each entry is tag, rights and id: owner rw, user 65534 r, group r, mask r, others none.
    const char list[] = "\2\0\0\0"
                        "\1\0\6\0\377\377\377\377"
                        "\2\0\4\0\376\377\0\0"
                        "\4\0\4\0\377\377\377\377"
                        "\20\0\4\0\377\377\377\377"
                        "\40\0\0\0\377\377\377\377";
    const testing::TemporaryFolder folder;
    const std::string path = folder / "file";
    testing::WriteFileBytes(path, "old");
    const std::string value(list, sizeof list - 1);
    if (!SetAttribute(path, "system.posix_acl_access", value))
        GTEST_SKIP() << "no access lists in this folder";
    EXPECT_EQ(Replace(path), "");
    EXPECT_EQ(testing::FileBytes(path), "new");
    EXPECT_EQ(Attribute(path, "system.posix_acl_access"), value);
    struct stat status = {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
}

} // namespace
} // namespace marvane::platform
