#pragma once

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <HBXCore/HBXCacheLogic.h>
#include <HBXCore/HBXGUIDBase.h>

#include "support/ScratchFolder.h"

#include <unistd.h>

#include "ThreadSanitizer.h"

namespace HBX::test {

/// Throws what is wrong.
inline void demand(bool success, const std::string& what) {
    if (!success) {
        throw std::runtime_error(what);
    }
}

/// A value whose bytes tell whether it is whole: all of them follow from key, version and size.
struct TestValue {
    static constexpr std::size_t kFixedSize = 48;
    static constexpr std::size_t kKeyOffset = 8;

    HBXCachedItem item;
    HBXGUIDBase key;
    std::uint64_t version;
    std::uint64_t size; ///< Of `data`.
    std::uint8_t data[8];

    std::size_t length() const { return kFixedSize + size; }
    static std::size_t checkedLength(const void* bytes, std::size_t available) {
        const auto& value = *static_cast<const TestValue*>(bytes);
        return available >= kFixedSize && value.size <= available - kFixedSize ? value.length() : 0;
    }
    bool isWhole() const {
        for (std::size_t i = 0; i < size; ++i) {
            if (data[i] != byteAt(i)) {
                return false;
            }
        }
        return true;
    }
    std::uint8_t byteAt(std::size_t i) const {
        return static_cast<std::uint8_t>(key.data()[i % 16] + version * 31 + i * 7);
    }
};
static_assert(sizeof(TestValue) == TestValue::kFixedSize);

/// Room for a value of any size.
class ValueBuffer {
public:
    ValueBuffer(const HBXGUIDBase& key, std::uint64_t version, std::size_t size)
        : bytes_((TestValue::kFixedSize + size + 7) / 8) {
        TestValue& value = *reinterpret_cast<TestValue*>(bytes_.data());
        value.key = key;
        value.version = version;
        value.size = size;
        for (std::size_t i = 0; i < size; ++i) {
            value.data[i] = value.byteAt(i);
        }
    }
    const TestValue& value() const { return *reinterpret_cast<const TestValue*>(bytes_.data()); }

private:
    std::vector<std::uint64_t> bytes_;
};

/// What a test wants to go wrong.
struct Wishes {
    std::string fails;                         ///< "map", "remap" or "lock".
    bool stopOnce = false;                     ///< The process, in the middle of storing a value.
    std::size_t reservation = ~std::size_t{0}; ///< At most so many bytes.
    std::chrono::milliseconds patience = std::chrono::seconds(60);
};

/// A manager that fills what it hands out, so that nothing is right only because memory was zero.
class TestManager : public HBXMappedMemoryManager {
public:
    static inline Wishes wishes;

    TestManager(std::string name, std::size_t reservation)
        : HBXMappedMemoryManager(std::move(name), std::min(reservation, wishes.reservation),
                                 wishes.patience) {}

    int map(std::size_t size) override {
        return wishes.fails == "map" ? -1 : HBXMappedMemoryManager::map(size);
    }
    int remap(std::size_t size, const HBXMappedMemoryManager& previous) override {
        return wishes.fails == "remap" ? -1 : HBXMappedMemoryManager::remap(size, previous);
    }
    int lock() override {
        const int result = wishes.fails == "lock" ? -1 : HBXMappedMemoryManager::lock();
        lockTaken();
        return result;
    }
    void prepareBlock(void* memory, std::size_t size) override {
        std::memset(memory, 0xAB, size);
        if (std::exchange(wishes.stopOnce, false)) {
            std::raise(SIGSTOP);
        }
    }
};

using TestCache = HBXCacheLogic<HBXGUIDBase, TestValue, TestManager>;
using TestCachePointer = boost::intrusive_ptr<TestCache>;

/// A cache whose opening tells its code.
class OpenCache : public TestCache {
public:
    explicit OpenCache(const std::string& name) : TestCache(name, 0, 16, 64 << 20) {}
    static int tryOpen(const std::string& name, bool invalidateOnFailure) {
        return boost::intrusive_ptr<OpenCache>(new OpenCache(name))->initialize(true, invalidateOnFailure);
    }
};

inline HBXGUIDBase keyOf(std::uint64_t number) {
    const std::uint64_t spread = (number + 1) * 0x9E3779B97F4A7C15U;
    return {static_cast<std::int64_t>(spread), static_cast<std::int64_t>(number)};
}

inline int put(TestCache& cache, std::uint64_t number, std::uint64_t version, std::size_t size) {
    return cache.put(keyOf(number), ValueBuffer(keyOf(number), version, size).value());
}

/// Key to version and size.
using Content = std::map<HBXGUIDBase, std::pair<std::uint64_t, std::uint64_t>>;

/// Everything in a list; nothing when a value is not whole.
inline std::optional<Content> readList(const TestCache::ValuesList& list) {
    Content content;
    for (const TestValue& value : list) {
        if (!value.isWhole()) {
            return std::nullopt;
        }
        content[value.key] = {value.version, value.size};
    }
    return content;
}

inline Content contentOf(const TestCache::ValuesList& list) {
    const std::optional<Content> content = readList(list);
    EXPECT_TRUE(content.has_value()) << "a value is not whole";
    return content.value_or(Content());
}

inline Content contentOf(TestCache& cache) { return contentOf(*cache.getList()); }

inline TestCachePointer openCache(const std::string& name, std::size_t maximumFileSize = 64 << 20,
                                  std::size_t maximumLists = 16) {
    return TestCache::createInstance(name, false, true, 0, maximumLists, maximumFileSize);
}

/// Puts the files of a test suite into memory where that is possible; to be called before its fixtures.
inline void keepFilesInMemory() {
    if (access("/dev/shm", W_OK) == 0) {
        setenv("TMPDIR", "/dev/shm", 1);
    }
}

/// A folder of its own for each test.
class CacheTest : public ::testing::Test, protected ScratchFolder {
protected:
    void SetUp() override { TestManager::wishes = Wishes(); }

    TestCachePointer open() const { return openCache(name_); }

    std::string name_ = path("cache");
};

} // namespace HBX::test
