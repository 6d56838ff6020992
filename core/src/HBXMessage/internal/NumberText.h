#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace HBX::internal {

/// Room for the text of any number, a time with its zone included.
inline constexpr std::size_t kNumberRoom = 40;

/// Writes the text of a number, for doubles the shortest that reads back exactly; returns the place behind
/// it.
template <class Number>
char* printNumber(char* to, Number number) {
    return std::to_chars(to, to + kNumberRoom, number).ptr;
}

/// The text of a number in a buffer of its own.
class NumberText {
public:
    explicit NumberText(std::int64_t value) : end_(printNumber(text_, value)) {}
    explicit NumberText(double value) : end_(printNumber(text_, value)) {}
    /// Time and zone (+-HHMM) as given.
    NumberText(std::int64_t time, int zone);

    [[nodiscard]] std::string_view view() const { return {text_, static_cast<std::size_t>(end_ - text_)}; }

private:
    char text_[kNumberRoom] = {};
    char* end_;
};

} // namespace HBX::internal
