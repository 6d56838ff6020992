#pragma once

#include <algorithm>
#include <array>
#include <compare>
#include <cstddef>
#include <string>
#include <string_view>

namespace HBX {

/// A text of at most N characters inside fixed storage: zero-padded, without a terminator when full. Plain
/// memory, fit for storage formats.
template <std::size_t N, class Char>
class limited_length_string {
public:
    using view_type = std::basic_string_view<Char>;

    constexpr limited_length_string() = default;
    /// Cut after N characters, and before the first zero.
    constexpr limited_length_string(view_type text) {
        text = text.substr(0, std::min(N, text.find(Char())));
        std::copy(text.begin(), text.end(), chars_.begin());
    }
    constexpr limited_length_string(const Char* text) : limited_length_string(view_type(text)) {}
    constexpr limited_length_string(const std::basic_string<Char>& text)
        : limited_length_string(view_type(text)) {}

    /// The text, without the zeros behind it; a view is good as long as this object.
    [[nodiscard]] constexpr view_type view() const {
        const view_type all(chars_.data(), N);
        return all.substr(0, all.find(Char()));
    }
    [[nodiscard]] std::basic_string<Char> str() const { return std::basic_string<Char>(view()); }
    [[nodiscard]] constexpr bool empty() const { return view().empty(); }

    friend constexpr bool operator==(const limited_length_string& a, const limited_length_string& b) {
        return a.view() == b.view();
    }
    friend constexpr std::strong_ordering operator<=>(const limited_length_string& a,
                                                      const limited_length_string& b) {
        return a.view() <=> b.view();
    }

private:
    std::array<Char, N> chars_{};
};

} // namespace HBX
