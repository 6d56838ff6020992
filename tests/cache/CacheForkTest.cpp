#include "CacheFileAudit.h"
#include "CacheTestUtil.h"
#include "support/ChildProcess.h"
#include "support/Threads.h"

#include <atomic>

namespace HBX::test {
namespace {

class CacheForkTest : public CacheTest {};

/// What a child does with the objects that it inherited: it leaves them alone, uses them, or opens others of
/// the same name and ends with their lists open.
TEST_F(CacheForkTest, ForkedChildChangesNoCountOfItsParent) {
    TestCachePointer cache = open();
    boost::intrusive_ptr<TestCache::ValuesList> list;
    const auto use = [&] {
        HBXCacheStatus status;
        return put(*cache, 1, 2, 30) == 0 && cache->getCopy(keyOf(1))->version == 2 &&
               contentOf(*cache).size() == 2 && list->find(keyOf(1))->version == 1 &&
               cache->getStatus(status) == 0 && status.processes.size() == 2;
    };
    const auto leak = [&] {
        static auto leaked = cache->getList();
        static auto another = open()->getList();
        return leaked->holdsSnapshot() && another->holdsSnapshot();
    };
    for (int way = 0; way < 3; ++way) {
        SCOPED_TRACE(way);
        ASSERT_EQ(put(*cache, 1, 1, 20), 0);
        ASSERT_EQ(put(*cache, 2, 1, 20), 0);
        list = cache->getList();
        const Content content = contentOf(*list);
        const auto inherit = [&] {
            alarm(30);
            const bool good = way == 0 || (way == 1 ? use() : leak());
            list = nullptr;
            cache = nullptr;
            return good ? 0 : 1;
        };
        EXPECT_EQ(inChild(inherit), 0);
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
    const auto openUntilEnough = [&](const std::string& name) {
        while (!enough) {
            openCache(name);
        }
    };
    const auto forkOften = [&] {
        for (std::uint64_t round = 1; round <= 100; ++round) {
            const auto change = [&] {
                alarm(10);
                return put(*cache, 1, round, 20);
            };
            EXPECT_EQ(inChild(change), 0) << round;
            EXPECT_EQ(cache->getCopy(keyOf(1))->version, round);
        }
        enough = true;
    };
    runThreads({[&] { openUntilEnough(name_); }, [&] { openUntilEnough(name_ + "2"); }, forkOften});
}

} // namespace
} // namespace HBX::test
