#include "tool/setup/file_uri.h"

#include <algorithm>

namespace marvane::tool {

namespace {

bool StartsWithIgnoringCase(std::string_view text, std::string_view lowerCase)
{
    return text.size() >= lowerCase.size() &&
           std::equal(lowerCase.begin(), lowerCase.end(), text.begin(), [](char wanted, char found) {
               return wanted == (found >= 'A' && found <= 'Z' ? static_cast<char>(found - 'A' + 'a') : found);
           });
}

int HexDigit(char character)
{
    if (character >= '0' && character <= '9')
        return character - '0';
    const int letter = (character | 0x20) - 'a';
    return letter >= 0 && letter < 6 ? letter + 10 : -1;
}

std::string PercentDecoded(std::string_view text)
{
    std::string decoded;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const int high = at + 2 < text.size() && text[at] == '%' ? HexDigit(text[at + 1]) : -1;
        const int low = high >= 0 ? HexDigit(text[at + 2]) : -1;
        if (low < 0) {
            decoded += text[at];
            continue;
        }
        decoded += static_cast<char>(high * 16 + low);
        at += 2;
    }
    return decoded;
}

bool HasDrive(std::string_view path)
{
    const char letter = path.empty() ? '\0' : static_cast<char>(path[0] | 0x20);
    return path.size() >= 2 && letter >= 'a' && letter <= 'z' && path[1] == ':';
}

/// The path with forward slashes that follows "file:".
std::string WindowsPath(std::string path)
{
    std::replace(path.begin(), path.end(), '\\', '/');
    const std::size_t slashes = std::min(path.find_first_not_of('/'), path.size());
    if (HasDrive(std::string_view(path).substr(slashes))) {
        if (path.size() < slashes + 3 || path[slashes + 2] != '/')
            throw UriError("is a relative path");
        path.erase(0, slashes);
    } else if (slashes == 2 || slashes >= 4)
        path.erase(0, slashes - 2); // file://server/share and file:////server/share
    else
        throw UriError("is a relative path");
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

std::string LinuxPath(const std::string& path)
{
    const std::size_t slashes = std::min(path.find_first_not_of('/'), path.size());
    if (slashes == 0)
        throw UriError("is a relative path");
    if (slashes == 2)
        throw UriError("names another machine");
    return path.substr(slashes - 1);
}

} // namespace

std::string PathOfUri(std::string_view uri, char separator)
{
    if (!StartsWithIgnoringCase(uri, "file:"))
        throw UriError("does not begin with file:");
    std::string path = PercentDecoded(uri.substr(5));
    if (StartsWithIgnoringCase(path, "//localhost/"))
        path.erase(0, std::string_view("//localhost").size());
    if (std::any_of(path.begin(), path.end(), [](unsigned char c) { return c < 0x20; }))
        throw UriError("holds a control character");
    path = separator == '\\' ? WindowsPath(path) : LinuxPath(path);
    if (path.back() == separator)
        throw UriError("names a folder");
    return path;
}

std::string UriOfPath(std::string_view path, char separator)
{
    std::string uri;
    for (const char character : path) {
        if (character == separator)
            uri += '/';
        else if (character == '%')
            uri += "%25";
        else
            uri += character;
    }
    if (uri.starts_with("//"))
        return "file:" + uri;
    return (uri.starts_with('/') ? "file://" : "file:///") + uri;
}

} // namespace marvane::tool
