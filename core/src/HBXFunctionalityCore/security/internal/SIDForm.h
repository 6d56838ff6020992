#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// The binary form of security identifiers and its text: revision 1, number of sub-authorities, authority (48
/// bits, big-endian), sub-authorities (32 bits each, little-endian).
namespace HBX::internal {

inline constexpr std::uint8_t kSIDRevision = 1;
inline constexpr std::size_t kSIDHeader = 8;
inline constexpr std::size_t kMaxSubAuthorities = 15;

constexpr std::size_t sidSize(std::size_t subAuthorities) { return kSIDHeader + 4 * subAuthorities; }

/// A valid binary form, or none.
using SIDBytes = std::span<const std::uint8_t>;

/// Room for the longest one.
struct SIDBuffer {
    std::array<std::uint8_t, sidSize(kMaxSubAuthorities)> bytes{};
    std::size_t size = 0; ///< 0: none

    void begin(std::uint64_t authority);
    /// REQUIRES fewer than kMaxSubAuthorities so far.
    void add(std::uint32_t subAuthority);
};

std::uint32_t littleEndian(const std::uint8_t* fourBytes);

std::size_t subAuthorityCount(SIDBytes sid);
std::uint64_t authorityOf(SIDBytes sid);
/// REQUIRES index < subAuthorityCount(sid).
std::uint32_t subAuthority(SIDBytes sid, std::size_t index);

/// "S-1-5-7", "" for none.
std::string sidText(SIDBytes sid);
/// False when the text is no identifier; what `sid` holds is then of no use.
bool parseSIDText(std::string_view text, SIDBuffer& sid);

} // namespace HBX::internal
