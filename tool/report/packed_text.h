// A text as a page carries it: compressed, then base64.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace marvane::tool {

/// Compresses (gzip) what is written to it. Only the result is held in memory.
class PackedText
{
public:
    PackedText();
    ~PackedText();
    PackedText(const PackedText&) = delete;
    PackedText& operator=(const PackedText&) = delete;

    void Write(std::string_view bytes);
    /// The whole result. To be called once; nothing is written after it.
    std::string Finish();

private:
    class Packer;
    std::unique_ptr<Packer> packer_;
};

} // namespace marvane::tool
