// Names and defaults of a module description file, for what the log shows as bare numbers.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "tool/commands/arguments.h"
#include "tool/commands/console.h"
#include "tool/read/links.h"
#include "tool/words/module_description.h"

namespace marvane::tool {

/// Without a file it knows nothing.
class MdfNames
{
public:
    /// Reads the file that --mdf names; what is wrong with it is complained about.
    static MdfNames Of(const Arguments& arguments, Console& console);

    bool IsEmpty() const { return !description_; }

    /// For read::LinkBook. Good beyond this object.
    read::LinkNames Names() const;
    /// `name` as the log has it, if it has one; else the file's, else "ComParam 603".
    std::string ParamName(std::uint32_t id, std::string_view name) const;
    std::optional<std::string> DefaultOf(const read::Link& link, std::uint32_t id) const;

private:
    std::shared_ptr<const words::ModuleDescription> description_;
};

} // namespace marvane::tool
