#include "CacheFileAudit.h"
#include "CacheTestUtil.h"
#include "support/ChildProcess.h"

#include <atomic>
#include <random>
#include <set>

#include <HBXCommon/HBXLog.h>

#include <sys/stat.h>
#include <sys/time.h>

namespace HBX::test {
namespace {

using internal::Sidecar;
using internal::SidecarHead;

constexpr std::uint64_t kKeys = 200;

/// Rounds, each of which damages a cache and then uses it in every way.
class Damager {
public:
    explicit Damager(std::string name) : name_(std::move(name)), lockName_(name_ + ".lock") {}

    /// Empty; with a tail, small and big values; with a second snapshot and removed entries.
    void addShapes() {
        const auto add = [&] { shapes_.push_back({contentOf(name_), contentOf(lockName_)}); };
        const TestCachePointer cache = open();
        add();
        for (std::uint64_t i = 0; i < 30; ++i) {
            ASSERT_EQ(put(*cache, i, 1, i % 5 == 0 ? 5'000 : i), 0);
        }
        add();
        const auto list = cache->getList();
        for (std::uint64_t i = 0; i < kKeys; ++i) {
            ASSERT_EQ(i % 7 == 0 ? cache->remove(keyOf(i)) : put(*cache, i, 2, i * 13 % 300), 0);
        }
        add();
    }
    void round(std::uint64_t seed) {
        random_.seed(seed);
        const Shape& shape = shapes_[below(shapes_.size())];
        seed % 2 == 0 ? damageClosed(shape) : damageOpen(shape);
        useRepaired();
    }
    void expectBothKinds(std::uint64_t rounds) const {
        EXPECT_GT(damaged_, rounds / 10);
        EXPECT_GT(repaired_, rounds / 10);
    }

private:
    /// The content of both files of a cache.
    struct Shape {
        std::string file;
        std::string lockFile;
    };

    TestCachePointer open() const { return openCache(name_, 4 << 20); }
    std::uint64_t below(std::uint64_t limit) { return random_() % limit; }

    /// Anywhere, or where the structure is: header, current snapshot, one value with the head of its block.
    /// @return its begin and its end.
    std::pair<std::size_t, std::size_t> choosePlace(const std::string& file) {
        const auto snapshot = numberAt(file, offsetof(HBXCacheHead, snapshot));
        const auto value = numberAt(file, snapshot + kSnapshotEntriesOffset + below(30) * 24 + 16);
        const std::uint64_t inside = value > 16 && value < file.size() ? value : snapshot;
        const std::pair<std::size_t, std::size_t> places[] = {
            {0, file.size()}, {0, kCacheHeapBegin}, {snapshot - 16, 80}, {inside - 16, 64}};
        const auto [begin, length] = places[below(4)];
        return {begin, std::min(file.size(), begin + length)};
    }
    /// Up to 30 bytes, often one or two, which do not give themselves away by others. Small numbers and
    /// single bits are more likely than other values.
    void change(std::string& content, std::size_t begin, std::size_t end) {
        for (std::uint64_t i = 1 + below(below(2) == 0 ? 2 : 30); i > 0; --i) {
            char& byte = content[begin + below(end - begin)];
            const std::uint64_t kind = below(3);
            byte = kind == 0   ? static_cast<char>(random_())
                   : kind == 1 ? static_cast<char>(byte ^ 1U << below(8))
                               : static_cast<char>(below(3) - 1);
        }
    }
    void changeStored(const std::string& path, std::size_t begin, std::size_t end) {
        std::string content = contentOf(path);
        end = std::min(end, content.size());
        change(content, begin, end);
        writeAt(path, begin, std::string_view(content).substr(begin, end - begin));
    }

    /// The lock file mostly knows the cache file; else it would count as replaced.
    void restore(const Shape& shape) {
        writeFile(name_, shape.file);
        struct stat status {};
        stat(name_.c_str(), &status);
        std::string lockFile = shape.lockFile;
        if (below(5) != 0 && lockFile.size() >= sizeof(SidecarHead)) {
            auto& head = *reinterpret_cast<SidecarHead*>(lockFile.data());
            head.device = status.st_dev;
            head.inode = status.st_ino;
        }
        writeFile(lockName_, lockFile);
    }
    void damageClosed(Shape shape) {
        const auto [begin, end] = choosePlace(shape.file);
        change(shape.file, begin, end);
        if (below(4) == 0) {
            shape.file.resize(below(shape.file.size()));
        }
        if (below(3) == 0) {
            change(shape.lockFile, offsetof(SidecarHead, version), shape.lockFile.size());
        }
        if (below(20) == 0) {
            shape.lockFile.resize(below(shape.lockFile.size()));
        }
        restore(shape);
        judge();
    }
    /// The library itself says what is damage: it does not open the file. All else it repairs.
    void judge() {
        HBXCacheFindings before;
        ASSERT_EQ(checkCacheFile(name_, TestCache::kFormat, before), 0);
        if (before.kind == HBXCacheFileKind::Other) {
            return; // the program does not let the library open it
        }
        const bool opens = TestCache::createInstance(name_, true, true, 0, 16, 4 << 20) != nullptr;
        ASSERT_EQ(opens, !before.isDamaged()) << (before.list.empty() ? "" : before.list[0].what);
        HBXCacheFindings after;
        ASSERT_EQ(checkCacheFile(name_, TestCache::kFormat, after), 0);
        ASSERT_TRUE(!opens || after.list.empty()) << "it is not repaired";
        damaged_ += opens ? 0 : 1;
        repaired_ += opens && !before.list.empty() ? 1 : 0;
    }
    /// Each operation checks what it meets, and the next one who opens the file all of it.
    void damageOpen(const Shape& shape) {
        restore(shape);
        const TestCachePointer cache = open();
        ASSERT_NE(cache, nullptr);
        const auto list = cache->getList();
        const std::uint64_t kind = below(6);
        const std::uint64_t left = below(shape.file.size());
        if (kind == 0) {
            changeStored(lockName_, offsetof(SidecarHead, version), offsetof(Sidecar, mutex));
        } else if (kind == 1) {
            changeStored(lockName_, offsetof(Sidecar, attachments), sizeof(Sidecar));
        } else if (kind == 2) {
            std::filesystem::resize_file(name_, left);
        } else {
            const auto [begin, end] = choosePlace(shape.file);
            changeStored(name_, begin, end);
        }
        readList(*list); // touches what is gone
        use(*cache, {0, -1, -8, -14});
        ASSERT_TRUE(kind != 2 || left > kCacheHeapBegin || !cache->isAccessible());
    }

    /// Whatever the file holds: every operation answers with one of `codes`, and none is caught in a loop.
    void use(TestCache& cache, const std::set<int>& codes) {
        readList(*cache.getList());
        for (std::uint64_t i = 0; i < 12; ++i) {
            const std::uint64_t number = below(kKeys + 5);
            const auto copy = cache.getCopy(keyOf(number));
            ASSERT_TRUE(copy == nullptr || copy->item.references == 0);
            const int code = i % 3 == 0 ? cache.remove(keyOf(number)) : put(cache, number, 3, below(3'000));
            ASSERT_TRUE(codes.contains(code)) << code;
        }
        HBXCacheStatus status;
        const int code = cache.getStatus(status);
        ASSERT_TRUE(codes.contains(code)) << code;
    }
    /// Who opens a file alone checks all of it: what passes is then used without a fault, and makes sense.
    void useRepaired() {
        const TestCachePointer cache = open();
        ASSERT_NE(cache, nullptr) << getErrorMessage();
        use(*cache, {0});
        ASSERT_EQ(auditFile(name_, TestCache::kFormat), "");
    }

    std::string name_;
    std::string lockName_;
    std::vector<Shape> shapes_;
    std::mt19937_64 random_;
    std::uint64_t damaged_ = 0;
    std::uint64_t repaired_ = 0;
};

class DamageTest : public CacheTest {
protected:
    static void SetUpTestSuite() { keepFilesInMemory(); } // every round writes and syncs both files
    /// In a process of its own, as a signal may end it: one of them when a round works for a second. It
    /// leaves through exit, where tools write down what was leaked or reached.
    void damage(std::uint64_t rounds) const {
        const Shared<std::atomic<std::uint64_t>> seed;
        const int result = inChild([&]() -> int {
            setLogSink([](const HBXLogLine&) {});
            Damager damager(name_);
            damager.addShapes();
            for (*seed = 0; *seed < rounds && guardMappedFiles() == 0 && !HasFailure(); ++*seed) {
                constexpr itimerval kSecondOfWork{{0, 0}, {1, 0}};
                setitimer(ITIMER_PROF, &kSecondOfWork, nullptr);
                damager.round(*seed);
            }
            damager.expectBothKinds(*seed);
            std::exit(*seed == rounds && !HasFailure() ? 0 : 1);
        });
        EXPECT_EQ(result, 0) << "round " << *seed;
    }
};

TEST_F(DamageTest, DamagedFilesGiveCodesAndFindings) { damage(3'000); }

TEST_F(DamageTest, SoakOfDamagedFiles) { damage(100'000); }

} // namespace
} // namespace HBX::test
