#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <HBXCore/HBXSharedMemoryManager.h>
#include <HBXCore/internal/CacheDamage.h>

namespace HBX::test {
namespace {

using Heap = HBXSharedMemoryManager;

constexpr std::uint64_t kLargest = 1 << 20;

/// The heap alone in ordinary memory, and what it should hold.
class HeapTest : public ::testing::Test {
protected:
    HeapTest() { heap().create(kCacheHeaderSize, 8192); }

    Heap heap() { return Heap(memory_.data()); }
    const HBXHeapState& state() const { return *reinterpret_cast<const HBXHeapState*>(memory_.data()); }

    std::uint64_t allocate(std::uint64_t size) {
        const std::uint64_t offset = heap().allocate(size);
        if (offset != 0) {
            memory_.replace(offset, size, size, '\xAB');
            used_[offset] = size;
        }
        return offset;
    }
    void release(std::uint64_t offset) {
        heap().free(offset);
        used_.erase(offset);
    }
    /// Offset and size of all that lies between the blocks in use.
    std::map<std::uint64_t, std::uint64_t> gaps() {
        std::map<std::uint64_t, std::uint64_t> gaps;
        std::uint64_t reached = kCacheHeapBegin;
        for (const auto& [offset, size] : used_) {
            gaps[reached] = offset - Heap::kHeadSize - reached;
            reached = offset - Heap::kHeadSize + heap().blockSizeAt(offset);
        }
        gaps[reached] = state().end - Heap::kHeadSize - reached;
        return gaps;
    }
    /// Takes `size` bytes, which must come out of the smallest gap that is large enough.
    void expectBestFit(std::uint64_t size) {
        const auto before = gaps();
        std::uint64_t smallest = 0;
        for (const auto& [offset, gap] : before) {
            if (gap >= Heap::blockSize(size) && (smallest == 0 || gap < smallest)) {
                smallest = gap;
            }
        }
        const std::uint64_t offset = allocate(size);
        ASSERT_EQ(offset != 0, smallest != 0) << size;
        if (offset != 0) {
            const auto gap = before.find(offset - Heap::kHeadSize);
            ASSERT_NE(gap, before.end()) << "not at the beginning of a gap";
            ASSERT_EQ(gap->second, smallest);
        }
    }
    void rebuild() {
        Heap made = heap();
        made.beginRebuild(state().end);
        for (const auto& [offset, size] : used_) {
            made.layUsed(offset, size);
        }
        made.finishRebuild();
    }

    std::string memory_ = std::string(kLargest, '\xAB'); // comes from new, hence aligned
    std::map<std::uint64_t, std::uint64_t> used_;
};

TEST_F(HeapTest, TakesTheBestFitAndNeverContradictsItself) {
    std::mt19937_64 random(11);
    for (int step = 0; step < 8'000; ++step) {
        const std::uint64_t kind = random() % 200;
        if (kind == 0 && state().end < kLargest) {
            heap().resize(std::min(kLargest, state().end + 16 * (1 + random() % 1024) + 48));
        } else if (kind < 90 && !used_.empty()) {
            auto victim = used_.lower_bound(random() % state().end);
            release(victim == used_.end() ? used_.begin()->first : victim->first);
        } else {
            ASSERT_NO_FATAL_FAILURE(expectBestFit(1 + random() % (kind < 120 ? 4000 : 120)));
        }
        ASSERT_NO_THROW(heap().check()) << step;
        if (step % 100 == 0) {
            const std::uint64_t total = state().total;
            rebuild();
            ASSERT_NO_THROW(heap().check());
            ASSERT_LE(state().total, total) << "what a block had beyond need may only go to a free neighbour";
            const std::string rebuilt = memory_;
            rebuild();
            ASSERT_TRUE(memory_ == rebuilt) << step;
        }
    }
    while (!used_.empty()) {
        release(used_.begin()->first);
    }
    EXPECT_EQ(heap().totalAllocated(), 0U);
    ASSERT_EQ(gaps().size(), 1U);
    const std::uint64_t all = gaps()[kCacheHeapBegin];
    for (const std::uint64_t size : {std::uint64_t{0}, all, ~std::uint64_t{0}, ~std::uint64_t{15}}) {
        EXPECT_EQ(heap().allocate(size), 0U) << size;
    }
    EXPECT_NE(heap().allocate(all - Heap::kHeadSize), 0U);
}

TEST_F(HeapTest, NoticesDoubleAndWildFrees) {
    const std::uint64_t first = allocate(200);
    const std::uint64_t second = allocate(200);
    const std::uint64_t third = allocate(200);
    const std::uint64_t fourth = allocate(200);
    release(second);
    release(third); // joins the one before: its old head lies inside a free block
    const std::uint64_t end = state().end;
    const std::string before = memory_;
    for (const std::uint64_t wild : {second, third, first + 8, first + 32, fourth + 208, end,
                                     std::uint64_t{0}, kCacheHeapBegin, ~std::uint64_t{15}}) {
        EXPECT_THROW(heap().free(wild), internal::CacheDamage) << wild;
    }
    EXPECT_TRUE(memory_ == before);
}

/// A free block holds its two children behind its head.
TEST_F(HeapTest, NoticesCirclesAmongFreeBlocks) {
    const std::uint64_t first = allocate(200);
    allocate(64);
    release(first);
    const std::uint64_t circle = first - Heap::kHeadSize;
    const std::string whole = memory_;
    for (const std::uint64_t child : {first, first + 8}) {
        memory_ = whole;
        std::memcpy(memory_.data() + child, &circle, sizeof circle);
        EXPECT_THROW(heap().check(), internal::CacheDamage);
        const auto allocateAll = [&] {
            for (std::uint64_t size = 3'000; size > 200; size -= 100) {
                heap().allocate(size);
            }
        };
        EXPECT_THROW(allocateAll(), internal::CacheDamage);
    }
}

} // namespace
} // namespace HBX::test
