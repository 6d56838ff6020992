#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include <HBXCommon/HBXExport.h>

namespace HBX {

/// A 128-bit identifier: 16 plain bytes, all zero when null. The order is that of the bytes, so that sorted
/// texts are sorted identifiers.
class HBX_EXPORT HBXGUIDBase {
public:
    static constexpr std::size_t kSize = 16;
    static constexpr std::size_t kTextLength = 36;

    constexpr HBXGUIDBase() = default;
    /// The halves are stored big-endian, `hi` first.
    constexpr HBXGUIDBase(std::int64_t hi, std::int64_t lo) {
        for (std::size_t i = 0; i < kSize / 2; ++i) {
            const auto shift = 56 - 8 * i;
            bytes_[i] = static_cast<std::uint8_t>(static_cast<std::uint64_t>(hi) >> shift);
            bytes_[kSize / 2 + i] = static_cast<std::uint8_t>(static_cast<std::uint64_t>(lo) >> shift);
        }
    }
    /// From 16 raw bytes.
    explicit HBXGUIDBase(const void* bytes) { std::memcpy(bytes_.data(), bytes, kSize); }

    /// A new random identifier from the system's random source.
    static HBXGUIDBase generate();

    /// Whether it is not null.
    [[nodiscard]] bool isValid() const { return *this != HBXGUIDBase(); }
    /// The two halves as the constructor takes them.
    void getData(std::int64_t& hi, std::int64_t& lo) const;
    /// The 16 bytes; good as long as this object.
    [[nodiscard]] const std::uint8_t* data() const { return bytes_.data(); }

    /// 36 characters, lower case: "01234567-89ab-cdef-0123-456789abcdef".
    [[nodiscard]] std::string toString() const;
    /// Upper case and enclosing braces are taken too. 0; -1 and unchanged when the text is none.
    int fromString(std::string_view text);

    friend bool operator==(const HBXGUIDBase&, const HBXGUIDBase&) = default;
    friend std::strong_ordering operator<=>(const HBXGUIDBase& a, const HBXGUIDBase& b) {
        return std::memcmp(a.bytes_.data(), b.bytes_.data(), kSize) <=> 0;
    }

private:
    std::array<std::uint8_t, kSize> bytes_{};
};

} // namespace HBX
