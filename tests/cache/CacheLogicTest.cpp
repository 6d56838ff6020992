#include "CacheTestUtil.h"

#include <random>

#include <sys/stat.h>

namespace HBX::test {
namespace {

TEST_F(CacheTest, KeepsWhatAModelKeepsWhileListsComeAndGo) {
    std::mt19937_64 random(7);
    const TestCachePointer cache = open();
    ASSERT_NE(cache, nullptr);
    Content model;
    std::vector<std::pair<boost::intrusive_ptr<TestCache::ValuesList>, Content>> held;
    for (std::uint64_t step = 1; step <= 20'000; ++step) {
        const std::uint64_t number = random() % 400;
        switch (random() % 16) {
        case 0:
            held.emplace_back(cache->getList(), model);
            break;
        case 1:
            if (!held.empty()) {
                std::swap(held[random() % held.size()], held.back());
                ASSERT_EQ(contentOf(*held.back().first), held.back().second);
                held.pop_back();
            }
            break;
        case 2:
        case 3:
        case 4:
            ASSERT_EQ(cache->remove(keyOf(number)), 0);
            model.erase(keyOf(number));
            break;
        default:
            const std::size_t size = random() % 3000;
            ASSERT_EQ(put(*cache, number, step, size), 0);
            model[keyOf(number)] = {step, size};
        }
        if (held.size() > 12) {
            held.clear();
        }
        if (step % 500 == 0) {
            ASSERT_EQ(contentOf(*cache), model) << step;
        }
    }
    held.clear();
    EXPECT_EQ(contentOf(*cache), model);
    const auto copy = cache->getCopy(model.begin()->first);
    ASSERT_NE(copy, nullptr);
    EXPECT_TRUE(copy->isWhole());
    EXPECT_EQ(copy->item.references, 0);
    HBXCacheStatus status;
    ASSERT_EQ(cache->getStatus(status), 0);
    EXPECT_EQ(status.entries, model.size());
    EXPECT_EQ(status.achievableSize - kCacheHeapBegin, status.allocated);
    EXPECT_EQ(status.snapshots, 1U);
}

} // namespace
} // namespace HBX::test
