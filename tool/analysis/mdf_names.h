// Names and defaults of module description files, for what the log shows as bare numbers.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/read/links.h"
#include "tool/words/module_description.h"

namespace marvane::tool {

/// The file that --mdf names, else for each session the one beside its library's entry in the root
/// description file. Copies share what they know. Without a file it knows nothing.
class MdfNames
{
public:
    MdfNames() = default;
    /// Reads the file that --mdf names; what is wrong with it is complained about. Others are read when a
    /// session asks for them; without one that can be read there are no names. `console` outlives it.
    static MdfNames Of(const Arguments& arguments, Console& console);

    /// To be told every session before its calls.
    void OnSession(const read::Session& session) const;
    /// The same sources for a log whose sessions have the same numbers.
    MdfNames ForAnotherLog() const;

    bool IsEmpty() const { return Source().empty(); }
    /// Path of the first file that is in use; empty if there is none.
    std::string Source() const;

    /// For read::LinkBook. Good beyond this object.
    read::LinkNames Names() const;
    /// `name` as the log has it, if it has one; else the file's, else "ComParam 603".
    std::string ParamName(std::uint32_t session, std::uint32_t id, std::string_view name) const;
    /// "ERR_BUS_OFF, The controller is off the bus": what the file says about an error number of the library.
    std::optional<std::string> ErrorText(std::uint32_t session, std::uint32_t number) const;
    std::optional<std::string> DefaultOf(const read::Link& link, std::uint32_t id) const;

private:
    struct Knowledge;
    std::shared_ptr<Knowledge> knowledge_;
};

} // namespace marvane::tool
