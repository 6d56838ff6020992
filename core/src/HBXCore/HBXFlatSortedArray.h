#pragma once

#include <bit>
#include <compare>
#include <cstdint>
#include <cstring>

#include <HBXCore/HBXCacheFile.h>

namespace HBX {

/// A key as two numbers whose order is that of its bytes.
struct HBXCacheKey {
    std::uint64_t high;
    std::uint64_t low;

    explicit HBXCacheKey(const void* bytes) {
        std::uint64_t halves[2];
        std::memcpy(halves, bytes, sizeof halves);
        high = bigEndian(halves[0]);
        low = bigEndian(halves[1]);
    }
    friend bool operator==(const HBXCacheKey&, const HBXCacheKey&) = default;
    friend auto operator<=>(const HBXCacheKey&, const HBXCacheKey&) = default;

private:
    static std::uint64_t bigEndian(std::uint64_t value) {
        return std::endian::native == std::endian::little ? __builtin_bswap64(value) : value;
    }
};

/// A view over the entries of a snapshot: a sorted run, and a short tail in order of arrival behind it.
class HBXFlatSortedArray {
public:
    HBXFlatSortedArray(const HBXCacheEntry* entries, std::uint32_t sorted, std::uint32_t tail)
        : entries_(entries), sorted_(sorted), tail_(tail) {}

    /// The entry of a key, also a removed one; null when there is none.
    const HBXCacheEntry* find(const HBXCacheKey& key) const {
        const HBXCacheEntry* found = lowerBound(key, 0);
        if (found != entries_ + sorted_ && HBXCacheKey(found->key) == key) {
            return found;
        }
        for (const HBXCacheEntry* entry = entries_ + sorted_; entry != entries_ + sorted_ + tail_; ++entry) {
            if (HBXCacheKey(entry->key) == key) {
                return entry;
            }
        }
        return nullptr;
    }

    /// The first entry of the sorted run, not before index `from`, whose key is not below. Keys are mostly
    /// random, so the place is guessed from their first half; from there the steps double.
    const HBXCacheEntry* lowerBound(const HBXCacheKey& key, std::uint32_t from) const {
        std::uint64_t low = from;
        std::uint64_t high = sorted_;
        if (low >= high) {
            return entries_ + high;
        }
        std::uint64_t guess = static_cast<std::uint64_t>(static_cast<Wide>(key.high) * sorted_ >> 64);
        guess = guess < low ? low : guess;
        if (isBelow(guess, key)) {
            low = guess + 1;
            for (std::uint64_t step = 1; low + step < high; step *= 2) {
                if (!isBelow(low + step - 1, key)) {
                    high = low + step - 1;
                    break;
                }
                low += step;
            }
        } else {
            high = guess;
            for (std::uint64_t step = 1; low + step < high; step *= 2) {
                if (isBelow(high - step, key)) {
                    low = high - step + 1;
                    break;
                }
                high -= step;
            }
        }
        return halve(low, high, key);
    }

private:
    __extension__ using Wide = unsigned __int128;

    bool isBelow(std::uint64_t index, const HBXCacheKey& key) const {
        return HBXCacheKey(entries_[index].key) < key;
    }

    const HBXCacheEntry* halve(std::uint64_t low, std::uint64_t high, const HBXCacheKey& key) const {
        const HBXCacheEntry* first = entries_ + low;
        for (std::uint64_t length = high - low; length > 0;) {
            const std::uint64_t half = length / 2;
            first = HBXCacheKey(first[half].key) < key ? first + (length - half) : first;
            length = half;
        }
        return first;
    }

    const HBXCacheEntry* entries_;
    std::uint32_t sorted_;
    std::uint32_t tail_;
};

} // namespace HBX
