// The file URIs of a root description file, in the spellings that are in use.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace marvane::tool {

/// A URI that names no file by its full path.
class UriError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The path that a URI names: file:///C:/a, file:/C:/a, file://C:\a, file://localhost/C:/a, percent signs
/// decoded. With the separator '\\' it is a Windows path, else one of Linux. Throws UriError for all that is
/// no absolute path.
std::string PathOfUri(std::string_view uri, char separator);

/// The spelling of a path that every reader of root description files understands: file:/// with forward
/// slashes and plain blanks.
std::string UriOfPath(std::string_view path, char separator);

} // namespace marvane::tool
