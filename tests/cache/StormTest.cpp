#include "CacheFileAudit.h"
#include "CacheTestUtil.h"
#include "support/ChildProcess.h"

#include <array>
#include <atomic>
#include <deque>
#include <memory>
#include <optional>
#include <random>
#include <thread>

namespace HBX::test {
namespace {

constexpr std::size_t kWriters = 3;
constexpr std::size_t kReaders = 2;
constexpr std::uint64_t kKeysEach = 60;
constexpr std::uint64_t kLargest = 2'000;

/// Version and size of a value in one word, so that a kill cannot leave half of it in the log; 0 for none.
using Trace = std::uint64_t;
Trace traceOf(std::uint64_t version, std::uint64_t size) { return version << 16 | size; }
Trace traceOf(const TestValue* value) { return value == nullptr ? 0 : traceOf(value->version, value->size); }

/// What one writer says about the keys that only it changes. Outlives the writer.
struct WriterLog {
    std::atomic<Trace> returned[kKeysEach]{}; ///< Written after the operation returned.
    std::atomic<Trace> intended{0};           ///< Of the key `pending`, written before the operation.
    std::atomic<std::uint64_t> pending{0};    ///< Index + 1; 0 for no operation.
    std::atomic<std::uint64_t> version{0};

    /// @param base  number of the first key.
    bool agrees(const TestCache::ValuesList& list, std::uint64_t base) const {
        for (std::uint64_t i = 0; i < kKeysEach; ++i) {
            const TestValue* value = list.find(keyOf(base + i));
            const Trace found = traceOf(value);
            if ((found != returned[i] && (pending != i + 1 || found != intended)) ||
                (value != nullptr && !value->isWhole())) {
                return false;
            }
        }
        return true;
    }
};

/// Processes that use one cache without pause, until they are killed.
class Storm {
public:
    explicit Storm(std::string name) : name_(std::move(name)), children_(kWriters + kReaders) {}

    void startAll() {
        for (std::size_t place = 0; place < children_.size(); ++place) {
            start(place);
        }
    }
    void killAll() {
        for (std::size_t place = 0; place < children_.size(); ++place) {
            ASSERT_NO_FATAL_FAILURE(kill(place));
        }
    }
    /// Kills one after the other at random moments, and starts another in its place.
    void rage(int kills) {
        for (int i = 0; i < kills; ++i) {
            std::this_thread::sleep_for(std::chrono::microseconds(random_() % 5'000));
            const std::size_t victim = random_() % children_.size();
            ASSERT_NO_FATAL_FAILURE(kill(victim));
            start(victim);
        }
    }
    /// Nobody but us is left.
    void expectQuietState() {
        const TestCachePointer cache = openCache(name_);
        ASSERT_NE(cache, nullptr);
        HBXCacheStatus status;
        ASSERT_EQ(cache->getStatus(status), 0);
        EXPECT_EQ(status.achievableSize - kCacheHeapBegin, status.allocated)
            << "space that nothing refers to";
        EXPECT_TRUE(status.holders.empty());
        EXPECT_EQ(status.generation, generation_.value_or(status.generation)) << "the file was given up";
        generation_ = status.generation;
        EXPECT_EQ(auditFile(name_, TestCache::kFormat), "");
        const auto list = cache->getList();
        for (std::size_t writer = 0; writer < kWriters; ++writer) {
            ASSERT_TRUE((*logs_)[writer].agrees(*list, writer * kKeysEach)) << writer;
        }
    }

private:
    void start(std::size_t place) {
        const std::uint64_t seed = random_();
        children_[place] = std::make_unique<ChildProcess>([&]() noexcept -> int { // ends by what it throws
            place < kWriters ? write(place, seed) : read(seed);
            return 0;
        });
    }
    void kill(std::size_t place) {
        children_[place]->signal(SIGKILL);
        ASSERT_EQ(children_[place]->wait(), 1000 + SIGKILL) << "process " << place << " ended by itself";
    }

    // What the processes do.

    [[noreturn]] void write(std::size_t writer, std::uint64_t seed) {
        std::mt19937_64 random(seed);
        WriterLog& log = (*logs_)[writer];
        const std::uint64_t base = writer * kKeysEach;
        const TestCachePointer cache = openCache(name_);
        demand(cache != nullptr, "no cache for a writer");
        resolve(log, *cache, base);
        for (;;) {
            change(log, *cache, base, random);
        }
    }
    /// Finds out whether the operation in which the writer before was killed took effect.
    static void resolve(WriterLog& log, TestCache& cache, std::uint64_t base) {
        const auto list = cache.getList();
        demand(list->holdsSnapshot() && log.agrees(*list, base), "what was written is lost");
        if (const std::uint64_t index = log.pending; index != 0) {
            log.returned[index - 1] = traceOf(list->find(keyOf(base + index - 1)));
            log.pending = 0;
        }
    }
    static void change(WriterLog& log, TestCache& cache, std::uint64_t base, std::mt19937_64& random) {
        const std::uint64_t index = random() % kKeysEach;
        const std::uint64_t version = ++log.version;
        const std::uint64_t size = random() % kLargest;
        const bool removes = random() % 4 == 0;
        log.intended = removes ? 0 : traceOf(version, size);
        log.pending = index + 1;
        demand((removes ? cache.remove(keyOf(base + index)) : put(cache, base + index, version, size)) == 0,
               "a change failed");
        log.returned[index] = log.intended.load();
        log.pending = 0;
    }
    /// Keeps a few lists open, each of which must stay as it was.
    [[noreturn]] void read(std::uint64_t seed) {
        std::mt19937_64 random(seed);
        const TestCachePointer cache = openCache(name_);
        demand(cache != nullptr, "no cache for a reader");
        std::deque<std::pair<boost::intrusive_ptr<TestCache::ValuesList>, std::optional<Content>>> held;
        for (;;) {
            const auto list = cache->getList();
            held.emplace_back(list, readList(*list));
            demand(list->holdsSnapshot() && held.back().second.has_value(), "a list shows no whole values");
            if (held.size() > random() % 4) {
                demand(readList(*held.front().first) == held.front().second, "a list has changed");
                held.pop_front();
            }
        }
    }

    std::string name_;
    Shared<std::array<WriterLog, kWriters>> logs_;
    std::vector<std::unique_ptr<ChildProcess>> children_;
    std::mt19937_64 random_{23};
    std::optional<std::uint64_t> generation_;
};

/// The states of the cache that are held at once, when a slow reader finds each changed from end to end: the
/// current one, those of a reader's four lists, that of a writer's first list. What the dead held is taken
/// back before a file grows; a growth is by a fifth. Values have half the largest size on average, and a
/// quarter of the keys has none, which makes up for snapshots and for gaps.
constexpr std::uint64_t kStates = 1 + 4 * kReaders + kWriters;
constexpr std::uint64_t kLargestState = kWriters * kKeysEach * (TestValue::kFixedSize + kLargest);
constexpr std::uint64_t kLargestFile = kStates * kLargestState * 6 / 5;

class StormTest : public CacheTest {
protected:
    void weather(int rounds, int killsEach) const {
        Storm storm(name_);
        for (int round = 0; round < rounds; ++round) {
            storm.startAll();
            ASSERT_NO_FATAL_FAILURE(storm.rage(killsEach));
            ASSERT_NO_FATAL_FAILURE(storm.killAll());
            ASSERT_NO_FATAL_FAILURE(storm.expectQuietState()) << "round " << round;
            ASSERT_LE(std::filesystem::file_size(name_), kLargestFile) << "round " << round;
        }
    }
};

#ifdef __SANITIZE_ADDRESS__
constexpr int kKillsEach = 20; // with it a process takes long to start and to end
#else
constexpr int kKillsEach = 100;
#endif

TEST_F(StormTest, NothingThatReturnedIsLostWhoeverIsKilled) { weather(3, kKillsEach); }

TEST_F(StormTest, SoakOfTenThousandKills) { weather(50, 200); }

} // namespace
} // namespace HBX::test
