#include "tool/report/base64.h"

namespace marvane::tool {

namespace {

constexpr char Letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr unsigned GroupBytes = 3;

} // namespace

void Base64::AppendGroup(std::string& out)
{
    const char letters[] = {Letters[group_ >> 18], Letters[group_ >> 12 & 63], Letters[group_ >> 6 & 63],
                            Letters[group_ & 63]};
    out.append(letters, sizeof letters);
    group_ = 0;
    count_ = 0;
}

void Base64::Append(std::string& out, std::string_view bytes)
{
    for (const char byte : bytes) {
        group_ = group_ << 8 | static_cast<unsigned char>(byte);
        if (++count_ == GroupBytes)
            AppendGroup(out);
    }
}

void Base64::Finish(std::string& out)
{
    const unsigned missing = count_ == 0 ? 0 : GroupBytes - count_;
    if (missing == 0)
        return;
    group_ <<= 8 * missing;
    AppendGroup(out);
    out.replace(out.size() - missing, missing, missing, '=');
}

std::string Base64Text(std::string_view bytes)
{
    std::string text;
    Base64 encoder;
    encoder.Append(text, bytes);
    encoder.Finish(text);
    return text;
}

} // namespace marvane::tool
