#include "tool/words/dialect.h"

namespace marvane::words {

namespace {

struct Beginning
{
    std::string_view Text;
    Dialect Speaks;
};

constexpr Beginning Beginnings[] = {
    {"ISO_14229", Dialect::Uds},   {"ISO_15765_3", Dialect::Uds}, {"ISO_27145", Dialect::Uds},
    {"ISO_14230", Dialect::Kwp},   {"KWP", Dialect::Kwp},         {"ISO_OBD", Dialect::Obd},
    {"ISO_15031_5", Dialect::Obd}, {"SAE_J1979", Dialect::Obd},
};

constexpr bool IsDigit(char letter)
{
    return letter >= '0' && letter <= '9';
}

} // namespace

Dialect DialectOf(std::string_view protocol)
{
    for (const Beginning& beginning : Beginnings) {
        if (!protocol.starts_with(beginning.Text))
            continue;
        // "ISO_15765_31" is another number than "ISO_15765_3".
        const std::string_view rest = protocol.substr(beginning.Text.size());
        if (rest.empty() || !IsDigit(beginning.Text.back()) || !IsDigit(rest.front()))
            return beginning.Speaks;
    }
    return Dialect::Unknown;
}

} // namespace marvane::words
