#include "tests/support/temporary_folder.h"

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>
#include <utility>

#include "platform/narrow_text.h"

namespace marvane::testing {

namespace {

void SetVariable(const std::string& name, const std::optional<std::string>& value)
{
#ifdef _WIN32
    _wputenv_s(FilePath(name).c_str(), FilePath(value.value_or("")).c_str());
#else
    if (value)
        setenv(name.c_str(), value->c_str(), 1);
    else
        unsetenv(name.c_str());
#endif
}

} // namespace

TemporaryFolder::TemporaryFolder()
{
    static std::random_device random;
    // Names of equal length: some tests count the bytes of a log that contains the name.
    do
        path_ = std::filesystem::temp_directory_path() /
                ("marvane-test-" + std::to_string(1000000000 + random() % 1000000000));
    while (!std::filesystem::create_directory(path_));
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

EnvironmentValue::EnvironmentValue(std::string name, const std::optional<std::string>& value)
    : name_(std::move(name)), former_(platform::Utf8Variable(name_))
{
    SetVariable(name_, value);
}

EnvironmentValue::~EnvironmentValue()
{
    SetVariable(name_, former_);
}

std::string FileBytes(const std::filesystem::path& path, std::uintmax_t from)
{
    std::ifstream file(path, std::ios::binary);
    file.seekg(static_cast<std::streamoff>(from));
    std::ostringstream bytes;
    bytes << file.rdbuf(); // by blocks: sanitizers make each step of an iterator cost
    return std::move(bytes).str();
}

std::string FileText(const std::filesystem::path& path, std::uintmax_t from)
{
    const std::string bytes = FileBytes(path, from);
    std::string text;
    text.reserve(bytes.size());
    // One pass: a log may have megabytes.
    for (std::size_t i = 0; i < bytes.size(); ++i)
        if (bytes[i] != '\r' || i + 1 == bytes.size() || bytes[i + 1] != '\n')
            text += bytes[i];
    return text;
}

void WriteFileBytes(const std::filesystem::path& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

} // namespace marvane::testing
