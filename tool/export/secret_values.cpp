#include "tool/export/secret_values.h"

#include <algorithm>
#include <cstring>

namespace marvane::tool {

namespace {

constexpr std::size_t ShortestLearned = 4;
constexpr std::size_t FewestDifferent = 3; // different bytes, so that no padding counts
constexpr std::size_t MostLearned = 4096;
constexpr std::size_t LongestVin = 17;

bool IsDigit(std::uint8_t letter)
{
    return letter >= '0' && letter <= '9';
}
bool IsCapital(std::uint8_t letter)
{
    return letter >= 'A' && letter <= 'Z';
}
bool IsSmall(std::uint8_t letter)
{
    return letter >= 'a' && letter <= 'z';
}

std::uint32_t HeadOf(SecretBytes bytes)
{
    std::uint32_t head = 0;
    std::memcpy(&head, bytes.data(), sizeof head);
    return head;
}

/// A text has its letters and digits replaced by others, so that it stays one.
std::uint8_t Substitute(std::uint8_t old, std::uint8_t random, bool isText)
{
    constexpr std::string_view capitals =
        "ABCDEFGHJKLMNPRSTUVWXYZ"; // those of vehicle identification numbers
    if (!isText)
        return random;
    if (IsDigit(old))
        return static_cast<std::uint8_t>('0' + random % 10);
    if (!IsCapital(old) && !IsSmall(old))
        return old;
    const auto letter = static_cast<std::uint8_t>(capitals[random % capitals.size()]);
    return IsSmall(old) ? static_cast<std::uint8_t>(letter + ('a' - 'A')) : letter;
}

} // namespace

std::vector<std::uint8_t> SecretValues::Replacement(SecretBytes secret) const
{
    const bool isText = std::ranges::all_of(secret, [](auto byte) { return byte >= 0x20 && byte < 0x7F; });
    if (secret.size() < ShortestLearned)
        return std::vector<std::uint8_t>(secret.size(), isText ? '0' : 0);
    const std::uint64_t seed = KeyedHash(key_, secret);
    std::vector<std::uint8_t> replaced;
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < secret.size(); ++i, word >>= 8) {
        if (i % 8 == 0) {
            const std::uint64_t block[] = {seed, i};
            std::uint8_t bytes[sizeof block];
            std::memcpy(bytes, block, sizeof block);
            word = KeyedHash(key_, bytes);
        }
        replaced.push_back(Substitute(secret[i], static_cast<std::uint8_t>(word), isText));
    }
    return replaced;
}

void SecretValues::Learn(SecretBytes secret)
{
    std::vector<std::uint8_t> different(secret.begin(), secret.end());
    std::ranges::sort(different);
    different.erase(std::unique(different.begin(), different.end()), different.end());
    if (secret.size() < ShortestLearned || different.size() < FewestDifferent)
        return;
    auto& sameHead = byHead_[HeadOf(secret)];
    if (std::ranges::any_of(sameHead, [&](const auto& known) { return std::ranges::equal(known, secret); }))
        return;
    sameHead.emplace_back(secret.begin(), secret.end());
    // The longest first: it may begin with a shorter one.
    std::ranges::stable_sort(sameHead, std::ranges::greater(),
                             [](const auto& known) { return known.size(); });
    order_.push_back(HeadOf(secret));
    if (order_.size() > MostLearned) {
        byHead_.erase(order_.front());
        order_.pop_front();
    }
}

SecretBytes SecretValues::FindAt(SecretBytes bytes) const
{
    if (bytes.size() < ShortestLearned)
        return {};
    const auto sameHead = byHead_.find(HeadOf(bytes));
    if (sameHead == byHead_.end())
        return {};
    for (const std::vector<std::uint8_t>& known : sameHead->second)
        if (known.size() <= bytes.size() && std::ranges::equal(known, bytes.first(known.size())))
            return known;
    return {};
}

bool IsWordLetter(std::uint8_t letter)
{
    return IsDigit(letter) || IsCapital(letter) || IsSmall(letter) || letter == '_';
}

std::size_t VinLength(SecretBytes text)
{
    constexpr std::ptrdiff_t fewestDigits = 3;
    constexpr std::ptrdiff_t fewestLetters = 2;
    if (text.size() < LongestVin || (text.size() > LongestVin && IsWordLetter(text[LongestVin])))
        return 0;
    const SecretBytes vin = text.first(LongestVin);
    const auto digits = std::ranges::count_if(vin, IsDigit);
    const auto letters = std::ranges::count_if(vin, IsCapital);
    const bool isVin = digits + letters == static_cast<std::ptrdiff_t>(LongestVin) &&
                       digits >= fewestDigits && letters >= fewestLetters;
    return isVin ? LongestVin : 0;
}

} // namespace marvane::tool
