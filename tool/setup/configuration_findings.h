// What is wrong with a configuration, found in the file alone: nothing outside it is looked at.
#pragma once

#include "config/paths.h"
#include "tool/setup/configuration.h"
#include "tool/setup/finding.h"

namespace marvane::tool {

/// The file as a whole: encoding, first two lines, end.
CheckFindings FileFindings(const Configuration& configuration);

/// Each line: attributes that are not read as they are meant, comments that count, unknown keys, wrong types.
CheckFindings LineFindings(const Configuration& configuration);

/// The numbers and what they do together.
CheckFindings NumberFindings(const Configuration& configuration);

/// The texts that are paths: blanks, ~, $VAR, %VAR%, entities, relative folders, the separator at the end.
CheckFindings PathFindings(const Configuration& configuration, char separator, const Expander& expand);

/// All of the above, in the order of the lines where they have one.
CheckFindings ConfigurationFindings(const Configuration& configuration, char separator,
                                    const Expander& expand);

/// An attribute as it must be written.
std::string AttributeText(std::string_view key, std::string_view value);

} // namespace marvane::tool
