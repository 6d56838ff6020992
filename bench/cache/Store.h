#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

#include <benchmark/benchmark.h>

namespace HBX::bench {

using Key = std::array<std::uint64_t, 2>;
using Bytes = std::span<const std::byte>;

/// Well mixed bits of a number: what takes the place of a random generator.
constexpr std::uint64_t scramble(std::uint64_t number) {
    number = (number + 1) * 0x9e3779b97f4a7c15;
    number = (number ^ (number >> 30)) * 0xbf58476d1ce4e5b9;
    number = (number ^ (number >> 27)) * 0x94d049bb133111eb;
    return number ^ (number >> 31);
}

/// The key of an entry: 16 bytes in no order, the same in every run and for every store.
constexpr Key keyOf(std::uint64_t entry) { return {scramble(2 * entry), scramble(2 * entry + 1)}; }

/// What is stored under a key, 600 bytes in all: whose it is, what fills it, and how new it is.
struct Value {
    Key key{};
    std::array<std::byte, 576> content{};
    std::uint64_t version = 0;

    Bytes bytes() const { return std::as_bytes(std::span(this, 1)); }
};
static_assert(sizeof(Value) == 600);

/// Eight of the bytes, which need not be aligned.
inline std::uint64_t wordAt(const std::byte* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

/// Reads the first and the last 8 bytes of a stored value.
inline std::uint64_t touch(Bytes value) {
    return wordAt(value.data()) + wordAt(value.data() + value.size() - sizeof(std::uint64_t));
}

/// A stored value as a caller takes it home: on the heap, independent of the store.
class Copy {
public:
    explicit Copy(Bytes value) : bytes(new std::byte[value.size()]), size(value.size()) {
        std::memcpy(bytes.get(), value.data(), size);
        benchmark::DoNotOptimize(bytes.get());
        benchmark::ClobberMemory();
    }

    /// The version it carries, 0 when it is the value of another key.
    std::uint64_t version(const Key& key) const {
        const bool same = std::memcmp(bytes.get(), key.data(), sizeof key) == 0;
        return same ? wordAt(bytes.get() + size - sizeof(std::uint64_t)) : 0;
    }

private:
    std::unique_ptr<std::byte[]> bytes;
    std::size_t size;
};

/// A file of values by key that several processes share: ours or a peer. Everything that a process needs to
/// be safe beside the others is part of each call. Errors other than an absent key throw.
class Store {
public:
    virtual ~Store() = default;

    /// Takes a private copy. @return its version, 0 when the key is absent.
    virtual std::uint64_t get(const Key& key) = 0;

    /// Inserts the key's value of this version, or replaces the one that is there.
    virtual void put(const Key& key, std::uint64_t version) = 0;

    /// @return whether the key was there.
    virtual bool remove(const Key& key) = 0;

    /// @return the sum of touch() over all values, each read where it lies.
    virtual std::uint64_t walk() = 0;

    /// Opens and closes what a reader holds to see one state of all values.
    virtual void openAndCloseView() = 0;

    /// Fills the empty store with the first entries, version 1, put in the order of their numbers.
    virtual void fill(std::uint64_t entries) {
        for (std::uint64_t entry = 0; entry < entries; ++entry) {
            put(keyOf(entry), 1);
        }
    }
};

enum class Open { create, existing };

/// A kind of store.
struct Peer {
    const char* name;
    std::unique_ptr<Store> (*open)(const char* path, Open how);
};

} // namespace HBX::bench
