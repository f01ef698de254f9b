#include "tool/commands/redaction.h"

#include "tool/console/nearest.h"
#include "tool/console/row_text.h"

namespace marvane::tool {

namespace {

constexpr words::Secret Secrets[] = {words::Secret::Vin, words::Secret::Key, words::Secret::Authentication,
                                     words::Secret::Serial, words::Secret::Transfer};

/// The kinds that an option names; `usual` if it names none.
SecretKinds KindsOf(const Arguments& arguments, std::string_view option, SecretKinds usual)
{
    const std::optional<std::string> text = arguments.Value(option);
    if (!text)
        return usual;
    SecretKinds kinds;
    const std::vector<std::string_view> names = Words(SecretNames);
    for (const std::string_view chosen : Words(*text))
        for (std::size_t i = 0; i < names.size(); ++i)
            if (names[i] == chosen)
                kinds.insert(Secrets[i]);
    return kinds;
}

SecretKinds KindsOf(const Arguments& arguments)
{
    SecretKinds kinds = KindsOf(arguments, "--redact", AllSecrets());
    for (const words::Secret kept : KindsOf(arguments, "--keep", {}))
        kinds.erase(kept);
    return kinds;
}

} // namespace

std::optional<Redactor> RedactorOf(const Arguments& arguments)
{
    if (!arguments.Has("--redact") && arguments.Has("--keep"))
        throw UsageError("--keep is for --redact, which is missing");
    if (!arguments.Has("--redact"))
        return std::nullopt;
    SecretKinds kinds = KindsOf(arguments);
    if (kinds.empty())
        throw UsageError("--keep leaves nothing to redact");
    return std::optional<Redactor>(std::in_place, std::move(kinds));
}

std::vector<std::string_view> RedactedKinds(const Arguments& arguments)
{
    std::vector<std::string_view> kinds;
    const std::vector<std::string_view> names = Words(SecretNames);
    const SecretKinds taken = KindsOf(arguments);
    for (std::size_t i = 0; i < names.size(); ++i)
        if (taken.contains(Secrets[i]))
            kinds.push_back(names[i]);
    return kinds;
}

void NoteRedaction(const Arguments& arguments, std::uint64_t lines, Console& console)
{
    if (!arguments.Has("--redact"))
        return;
    std::string kinds;
    for (const std::string_view kind : RedactedKinds(arguments))
        kinds.append(kinds.empty() ? "" : ", ").append(kind);
    console.Note("redacted (" + kinds + "): " + Counted(lines, "line"));
}

} // namespace marvane::tool
