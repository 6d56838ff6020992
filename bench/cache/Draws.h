#pragma once

#include "Store.h"

namespace HBX::bench {

/// Entries in random order, each time and for every store the same.
class Draws {
public:
    /// @param sequence  which of many sequences.
    /// @param entries   how many there are to draw from, below 2^32.
    Draws(std::uint64_t sequence, std::uint64_t entries) : count(sequence << 48), limit(entries) {}

    Key nextKey() { return keyOf(((scramble(count++) >> 32) * limit) >> 32); }

private:
    std::uint64_t count;
    std::uint64_t limit;
};

} // namespace HBX::bench
