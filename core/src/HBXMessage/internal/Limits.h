#pragma once

#include <cstddef>
#include <cstdint>

namespace HBX::internal {

/// The budget that every way into a message obeys, and that every way out refuses to exceed: what we write,
/// we can read again. Building a tree in memory is not limited.
inline constexpr std::uint32_t kMaxDepth = 256; // below the root
inline constexpr std::uint32_t kMaxElements = 1'000'000;
inline constexpr std::uint32_t kMaxAttributes = 256; // of one element
inline constexpr std::uint32_t kMaxNames = 65'536;   // outside the fixed table
inline constexpr std::size_t kMaxNameLength = 1024;
/// In the text form alone, where a number without a name is written as an attribute name of its own: so many
/// of those, and what names of all sorts may come to in the whole text.
inline constexpr std::size_t kMaxXmlNumbers = 16'384;
inline constexpr std::uint32_t kMaxXmlNames = 196'608;
inline constexpr std::size_t kMaxInput = std::size_t{256} << 20;

} // namespace HBX::internal
