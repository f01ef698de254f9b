#include "tool/report/raw_copy.h"

#include <algorithm>

namespace marvane::tool::report {

void RawCopy::Begin(std::uint32_t file)
{
    Bytes.resize(std::max<std::size_t>(Bytes.size(), file + std::size_t(1)));
    if (next_)
        next_->Begin(file);
}

void RawCopy::Take(std::uint32_t file, std::string_view bytes, std::string& out)
{
    const std::size_t before = out.size();
    if (next_)
        next_->Take(file, bytes, out);
    else
        out += bytes;
    Copy(file, std::string_view(out).substr(before));
}

void RawCopy::End(std::uint32_t file, std::string& out)
{
    const std::size_t before = out.size();
    if (next_)
        next_->End(file, out);
    Copy(file, std::string_view(out).substr(before));
}

void RawCopy::Copy(std::uint32_t file, std::string_view bytes)
{
    Bytes[file] += bytes.size();
    packed_.Write(bytes);
}

} // namespace marvane::tool::report
