// Bytes as text of the base64 alphabet.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace marvane::tool {

/// Encodes bytes that come piece by piece.
class Base64
{
public:
    /// Appends what is complete: four characters for three bytes.
    void Append(std::string& out, std::string_view bytes);
    /// Appends the rest, filled up with '='. To be called once.
    void Finish(std::string& out);

private:
    void AppendGroup(std::string& out);

    std::uint32_t group_ = 0;
    unsigned count_ = 0; ///< bytes in the group
};

/// All of it at once.
std::string Base64Text(std::string_view bytes);

} // namespace marvane::tool
