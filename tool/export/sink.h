// Where an export goes: a file that appears under its name only when it is complete, standard output, or a
// folder with a file a day.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tool/console/console.h"

namespace marvane::tool {

/// Receives the bytes of an export. What goes wrong is thrown as Trouble that names the file.
class Sink
{
public:
    virtual ~Sink() = default;

    virtual void Write(std::string_view bytes) = 0;
    /// Passes on what is buffered: whole lines, if whole lines were written.
    virtual void Flush() = 0;
    /// What is written from here on belongs to that day (since 1970). True if a file begins with it that has
    /// nothing in it yet, so that it needs its first line; only a folder has more than one.
    virtual bool SelectDay(std::int64_t day);
    /// The export is complete: the files get their final names. Without it they are removed.
    virtual void Finish() = 0;

private:
    bool hasDay_ = false;
};

/// How a file that exists is treated.
enum class Existing : std::uint8_t
{
    Refused,
    Replaced, ///< when the new one is complete
    Extended, ///< whole lines are added to it, under its own name
};

/// A file; its path is UTF-8. Devices and pipes are written as they are.
std::unique_ptr<Sink> MakeFileSink(const std::string& path, Existing existing);

/// Standard output. A reader that leaves before the end is trouble: it has half an export.
std::unique_ptr<Sink> MakeOutputSink(Console& console);

/// Standard output for "-", else a file.
std::unique_ptr<Sink> MakeSink(const std::string& path, Existing existing, Console& console);

/// Compressed files DATE + `suffix` + ".gz" in a folder, which is made if it is not there: each is replaced
/// whole, or extended. Not for standard output.
std::unique_ptr<Sink> MakeDayFolder(const std::string& folder, const std::string& suffix, Existing existing);

} // namespace marvane::tool
