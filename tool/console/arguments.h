// The arguments of a command, parsed.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tool/console/command.h"

namespace marvane::tool {

/// Wrong usage: main prints it with a hint at --help, exit status 2.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Something that prevents the whole command: main prints it, exit status 2. Names the file it is about.
class Trouble : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// What stood on the command line. Options are asked for by their long name ("--link"), by the short one
/// only if they have no other.
class Arguments
{
public:
    bool Has(std::string_view option) const;
    /// The value given last; none if the option was not given.
    std::optional<std::string> Value(std::string_view option) const;
    /// All values given, in their order.
    const std::vector<std::string>& Values(std::string_view option) const;
    /// The value as a whole number from `least` to `most`; throws UsageError for anything else.
    std::optional<std::uint64_t> Number(std::string_view option, std::uint64_t least = 0,
                                        std::uint64_t most = UINT64_MAX) const;
    /// The words that are no options.
    const std::vector<std::string>& Operands() const { return operands_; }

    void Set(std::string_view option, std::vector<std::string> values);
    void SetOperands(std::vector<std::string> operands) { operands_ = std::move(operands); }

private:
    std::map<std::string, std::vector<std::string>, std::less<>> values_;
    std::vector<std::string> operands_;
};

/// The name that an option is asked for by: the long one of "-n,--limit".
std::string_view LongName(const Option& option);

/// Parses the words after the command's name. Throws UsageError, which names the nearest option for one that
/// is unknown. The values of options with choices are checked; --help is not acted on.
Arguments ParseArguments(const Command& command, std::vector<std::string> words);

} // namespace marvane::tool
