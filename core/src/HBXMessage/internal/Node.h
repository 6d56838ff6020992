#pragma once

#include <cstdint>

namespace HBX::internal {

/// An element, namespace or type as a message holds it: 0 = none, below kDynamicRef the number of the fixed
/// table, from kDynamicRef on an index into the message's own list of names.
using Ref = std::uint32_t;
inline constexpr Ref kDynamicRef = 0x40000000;

/// The bit of an id in a mask of ids passed or written. Ids share bits: a clear bit says "not there", a set
/// one "perhaps".
constexpr std::uint64_t bitOf(Ref id) { return std::uint64_t{1} << (id & 63U); }

enum class ValueKind : std::uint32_t { None, Text, Xml };

using NodeIndex = std::uint32_t;
inline constexpr NodeIndex kNoNode = 0;
inline constexpr NodeIndex kRoot = 1;

/// Bytes inside the tree's one byte buffer.
struct Span {
    std::uint32_t offset;
    std::uint32_t length;
};

struct Node {
    Ref id;
    NodeIndex parent, first, last, next, prev;
    std::uint32_t generation; ///< a cursor that remembers another generation is stale
    ValueKind kind;
    Ref ns;
    std::uint32_t extra; ///< row + 1 of the side table with type mark and attributes, 0 = none
    Span text;
};
static_assert(sizeof(Node) == 48);

} // namespace HBX::internal
