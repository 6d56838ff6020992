#include "CacheTestUtil.h"
#include "support/ChildProcess.h"
#include "support/Threads.h"

#include <atomic>
#include <mutex>
#include <random>

namespace HBX::test {
namespace {

constexpr std::uint32_t kThreads = 4;
constexpr std::uint32_t kWorkers = 2 * kThreads; // in two processes
constexpr std::uint64_t kRounds = 1500;
constexpr std::uint64_t kKeys = 40; // of each worker

/// Changes keys of its own, so that it knows at any time what they must hold; reads everybody's. It does the
/// same in every run, so that another process can tell what came out.
class Worker {
public:
    /// Lists are opened by one thread and left to another.
    struct Shared {
        std::mutex mutex;
        std::vector<boost::intrusive_ptr<TestCache::ValuesList>> lists;
    };

    explicit Worker(std::uint32_t number) : number_(number), random_(number) {}

    /// @param cache  null to go through the motions only. @return whether all was as it should be.
    bool work(TestCache* cache, Shared* shared) {
        for (std::uint64_t round = 1; round <= kRounds && good_; ++round) {
            const std::uint64_t key = random_() % kKeys * kWorkers + number_;
            const std::uint64_t size = random_() % 200;
            if (random_() % 3 == 0) {
                model_.erase(keyOf(key));
                expect(cache == nullptr || cache->remove(keyOf(key)) == 0);
            } else {
                model_[keyOf(key)] = {round, size};
                expect(cache == nullptr || put(*cache, key, round, size) == 0);
            }
            if (cache != nullptr) {
                readOwn(*cache, keyOf(key));
                readAll(*cache, *shared, round);
            }
        }
        return good_;
    }
    const Content& model() const { return model_; }

private:
    void expect(bool condition) { good_ = good_ && condition; }

    void readOwn(TestCache& cache, const HBXGUIDBase& key) {
        const auto known = model_.find(key);
        const auto copy = cache.getCopy(key);
        expect(copy == nullptr || copy->item.references == 0);
        const auto list = cache.getList(); // mostly one that rests, and must not show the past
        expect(list->holdsSnapshot());
        for (const TestValue* shown : {static_cast<const TestValue*>(copy.get()), list->find(key)}) {
            expect((shown != nullptr) == (known != model_.end()));
            expect(shown == nullptr || (shown->isWhole() && shown->version == known->second.first));
        }
        doneReading();
    }

    void readAll(TestCache& cache, Shared& shared, std::uint64_t round) {
        if (round % 8 == 0) {
            auto list = cache.getList();
            expect(list->holdsSnapshot());
            std::size_t own = 0;
            for (const TestValue& value : *list) {
                expect(value.isWhole());
                own += model_.count(value.key);
            }
            expect(own == model_.size());
            doneReading();
            const std::lock_guard guard(shared.mutex);
            shared.lists.push_back(std::move(list));
            if (shared.lists.size() > 6) {
                shared.lists.erase(shared.lists.begin(), shared.lists.begin() + 4);
            }
        }
        HBXCacheStatus status;
        expect(round % 64 != 0 || (cache.getStatus(status) == 0 && cache.getChangeCount() > 0));
    }

    std::uint32_t number_;
    std::mt19937_64 random_;
    Content model_;
    bool good_ = true;
};

/// Four threads over one cache object. @return whether all were content.
bool hammer(const TestCachePointer& cache, std::uint32_t firstNumber) {
    Worker::Shared shared;
    std::atomic<std::uint32_t> number{firstNumber};
    std::atomic<std::uint32_t> content{0};
    const auto work = [&] { content += Worker(number++).work(cache.get(), &shared) ? 1 : 0; };
    runThreads(std::vector<std::function<void()>>(kThreads, work));
    return content == kThreads;
}

class CacheThreadTest : public CacheTest {};

/// Every growth moves the mapping. The other process is forked off before threads exist; it leaves through
/// exit, where the thread sanitizer turns its findings into a code.
TEST_F(CacheThreadTest, TwoProcessesOfFourThreadsShareACache) {
    TestManager::wishes.reservation = 16 << 10;
    const auto openLarge = [&] { return openCache(name_, 16 << 20, 64); };
    ChildProcess other([&]() -> int { std::exit(hammer(openLarge(), kThreads) ? 0 : 1); });
    const TestCachePointer cache = openLarge();
    ASSERT_NE(cache, nullptr);
    EXPECT_TRUE(hammer(cache, 0));
    EXPECT_EQ(other.wait(), 0);
    Content expected;
    for (std::uint32_t number = 0; number < kWorkers; ++number) {
        Worker worker(number);
        worker.work(nullptr, nullptr);
        expected.insert(worker.model().begin(), worker.model().end());
    }
    EXPECT_EQ(contentOf(*cache), expected);
    HBXCacheStatus end;
    ASSERT_EQ(cache->getStatus(end), 0);
    EXPECT_EQ(end.processes.size(), 1U);
    EXPECT_TRUE(end.holders.empty());
    EXPECT_EQ(end.achievableSize - kCacheHeapBegin, end.allocated);
}

} // namespace
} // namespace HBX::test
