// Features of C++20 that Marvane needs. Compiled, never run, to recognise compilers that are too old.
#include <algorithm>
#include <array>
#include <charconv>
#include <latch>
#include <span>

constinit int counter = 0;

consteval int Twice(int value)
{
    return 2 * value;
}

struct Form
{
    int first = 0;
    double second = 0;
    auto operator<=>(const Form&) const = default;
};

template <typename T>
concept Addable = requires(T value)
{
    value + value;
};

bool Parse(std::span<const char> text, int& value)
{
    return Addable<int> && std::from_chars(text.data(), text.data() + text.size(), value).ec == std::errc();
}

int main()
{
    std::latch latch(Twice(1) - 2);
    latch.wait();
    const Form form{.first = counter, .second = 1.5};
    int value = 0;
    const std::array<char, 1> text{'1'};
    const bool found = std::ranges::find(text, '1') != text.end() && Parse(text, value);
    return found && form > Form() ? 0 : 1;
}
