#include "CacheFileAudit.h"
#include "CacheTestUtil.h"
#include "support/ChildProcess.h"

#include <atomic>
#include <thread>

namespace HBX::test {
namespace {

/// What a child does with the objects that it inherited.
struct Inheritance {
    const char* name;
    bool (*use)(TestCachePointer& cache, boost::intrusive_ptr<TestCache::ValuesList>& list);
};

constexpr Inheritance kInheritances[] = {
    {"changes and reads the cache, then destroys everything",
     [](TestCachePointer& cache, auto& list) {
         HBXCacheStatus status;
         const bool good = put(*cache, 1, 2, 30) == 0 && cache->getCopy(keyOf(1))->version == 2 &&
                           contentOf(*cache).size() == 2 && list->find(keyOf(1))->version == 1 &&
                           cache->getStatus(status) == 0 && status.processes.size() == 2;
         list = nullptr;
         cache = nullptr;
         return good;
     }},
    {"destroys everything unused",
     [](TestCachePointer& cache, auto& list) {
         list = nullptr;
         cache = nullptr;
         return true;
     }},
    {"opens the cache by name and ends with lists open",
     [](TestCachePointer& cache, auto&) {
         static auto leaked = cache->getList();
         static auto another = openCache(cache->getID())->getList();
         return leaked->holdsSnapshot() && another->holdsSnapshot();
     }},
};

class CacheForkTest : public CacheTest {};

TEST_F(CacheForkTest, ForkedChildChangesNoCountOfItsParent) {
    TestCachePointer cache = open();
    for (const Inheritance& inheritance : kInheritances) {
        SCOPED_TRACE(inheritance.name);
        ASSERT_EQ(put(*cache, 1, 1, 20), 0);
        ASSERT_EQ(put(*cache, 2, 1, 20), 0);
        boost::intrusive_ptr<TestCache::ValuesList> list = cache->getList();
        const Content content = contentOf(*list);
        EXPECT_EQ(inChild([&] {
                      alarm(30);
                      return inheritance.use(cache, list) ? 0 : 1;
                  }),
                  0);
        ASSERT_EQ(put(*cache, 2, 2, 50), 0); // would reuse what is free too early
        EXPECT_EQ(contentOf(*list), content);
        HBXCacheStatus status;
        ASSERT_EQ(cache->getStatus(status), 0);
        ASSERT_EQ(status.holders.size(), 1U);
        EXPECT_EQ(status.holders[0].lists, 1U);
        EXPECT_EQ(auditFile(name_, TestCache::kFormat), "");
        list = nullptr;
        ASSERT_EQ(cache->getStatus(status), 0);
        EXPECT_EQ(status.achievableSize - kCacheHeapBegin, status.allocated);
    }
}

/// What another thread holds at that moment stays locked in the child for ever, unless somebody sees to it.
TEST_F(CacheForkTest, ForkWhileOthersOpenCaches) {
    const TestCachePointer cache = open();
    ASSERT_EQ(put(*cache, 1, 1, 20), 0);
    std::atomic<bool> enough{false};
    std::vector<std::thread> openers;
    for (const std::string& name : {name_, name_ + "2"}) {
        openers.emplace_back([&, name] {
            while (!enough) {
                openCache(name);
            }
        });
    }
    for (std::uint64_t round = 1; round <= 100; ++round) {
        EXPECT_EQ(inChild([&] {
                      alarm(10);
                      return put(*cache, 1, round, 20);
                  }),
                  0)
            << round;
        ASSERT_EQ(cache->getCopy(keyOf(1))->version, round);
    }
    enough = true;
    for (std::thread& opener : openers) {
        opener.join();
    }
}

} // namespace
} // namespace HBX::test
