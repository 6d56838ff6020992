#include "CacheFileAudit.h"
#include "CacheTestUtil.h"
#include "ChildProcess.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>

#include <HBXCore/internal/Sidecar.h>

#include <sys/resource.h>
#include <sys/stat.h>

namespace HBX::test {
namespace {

using internal::SidecarHead;

class FaultTest : public CacheTest {
protected:
    /// Three entries, which `contentOf` then finds.
    Content fill(std::uint64_t version = 7) const {
        const TestCachePointer cache = open();
        for (std::uint64_t i = 0; i < 3; ++i) {
            EXPECT_EQ(put(*cache, i, version, 100), 0);
        }
        return contentOf(*cache);
    }
    /// Changes the head of the lock file.
    template <class Change>
    void changeLockFile(Change change) const {
        std::string content = readFile(name_ + ".lock");
        ASSERT_GE(content.size(), sizeof(internal::Sidecar));
        change(*reinterpret_cast<SidecarHead*>(content.data()));
        writeFile(name_ + ".lock", content);
    }
};

// --- no room ---

/// The limit stands for a full disk.
void limitFileSize(std::uint64_t size) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{size, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &limit);
}

struct RoomRow {
    const char* name;
    std::size_t maximum;
    void (*begin)();
};

TEST_F(FaultTest, WithoutRoomNothingChanges) {
    const RoomRow rows[] = {
        {"full disk", 64 << 20, [] { limitFileSize(100'000); }},
        {"growing fails", 64 << 20, [] { TestManager::wishes.failGrow = true; }},
        {"largest size", 100'000, [] {}},
    };
    for (const RoomRow& row : rows) {
        name_ = folder_ + '/' + row.name;
        const auto work = [&] {
            const TestCachePointer cache = open(row.maximum);
            row.begin();
            Content model;
            std::uint64_t failures = 0;
            for (std::uint64_t i = 0; i < 400 && failures < 50; ++i) {
                const int code = put(*cache, i % 150, i, i * 7 % 1'500);
                EXPECT_TRUE(code == 0 || code == -1) << code;
                failures += code == 0 ? 0 : 1;
                if (code == 0) {
                    model[keyOf(i % 150)] = {i, i * 7 % 1'500};
                }
                EXPECT_EQ(contentOf(*cache), model) << "a list never needs room";
            }
            EXPECT_EQ(failures, 50U);
            EXPECT_LE(std::filesystem::file_size(name_), 100'000U);
            EXPECT_EQ(cache->remove(model.begin()->first), 0);
            EXPECT_EQ(cache->put(model.begin()->first, ValueBuffer(model.begin()->first, 1, 0).value()), 0);
            EXPECT_EQ(put(*cache, 0, 1, std::size_t{65} << 20), -1) << "can never fit";
            EXPECT_EQ(auditFile(name_, TestCache::kFormat), "");
            return HasFailure() ? 1 : 0;
        };
        EXPECT_EQ(inChild(work), 0) << row.name;
    }
}

// --- operations that the system refuses ---

TEST_F(FaultTest, WhatCannotBeMappedOrLockedGivesItsCode) {
    const Content content = fill();
    TestManager::wishes.failMap = true;
    EXPECT_EQ(OpenCache::tryOpen(name_, false), -2);
    TestManager::wishes = Wishes();
    TestManager::wishes.reservation = 16 << 10;
    const TestCachePointer cache = open();
    TestManager::wishes.failRemap = true;
    EXPECT_EQ(inChild([&] {
                  TestManager::wishes = Wishes();
                  return put(*open(), 9, 1, 200'000);
              }),
              0);
    EXPECT_EQ(put(*cache, 1, 1, 1), -10);
    TestManager::wishes.failRemap = false;
    EXPECT_EQ(cache->remove(keyOf(9)), 0) << "the mapping before stayed in use";
    EXPECT_EQ(contentOf(*cache), content);
    TestManager::wishes.failLock = true;
    EXPECT_EQ(put(*cache, 1, 1, 1), -9);
    EXPECT_EQ(OpenCache::tryOpen(name_, false), -9);
    TestManager::wishes.failLock = false;
    EXPECT_EQ(put(*cache, 1, 1, 1), -14) << "who could not lock it when opening gave it up";
}

// --- files that change under those who use them ---

/// What somebody does to the files of a cache in use; the next who opens it finds a new one.
struct ReplacedRow {
    const char* name;
    std::function<void(const std::string& name)> act;
};

TEST_F(FaultTest, WhoUsesAReplacedFileNoticesAndOpensTheNewOne) {
    const ReplacedRow rows[] = {
        {"removed",
         [](const std::string& name) {
             std::string error;
             EXPECT_EQ(removeCacheFile(name, TestCache::kFormat, error), 0) << error;
         }},
        {"moved away", [](const std::string& name) { rename(name.c_str(), (name + ".old").c_str()); }},
        {"another moved there",
         [](const std::string& name) {
             EXPECT_NE(TestCache::createInstance(name + "2", false, true, 0, 1, 1 << 20), nullptr);
             rename((name + "2").c_str(), name.c_str());
         }},
        {"lock file deleted", [](const std::string& name) { unlink((name + ".lock").c_str()); }},
    };
    for (const ReplacedRow& row : rows) {
        name_ = folder_ + '/' + row.name;
        const Content content = fill();
        const boost::intrusive_ptr<OpenCache> cache(new OpenCache(name_));
        ASSERT_EQ(cache->initialize(true, true), 0);
        auto list = cache->getList();
        row.act(name_);
        ASSERT_EQ(inChild([&] {
                      const TestCachePointer other = open();
                      return other != nullptr && contentOf(*other).empty() && fill(8).size() == 3 ? 0 : 1;
                  }),
                  0)
            << row.name << ": two locks would guard one file";
        EXPECT_EQ(cache->getList()->holdsSnapshot(), false) << row.name;
        EXPECT_EQ(put(*cache, 60, 1, 10), -1) << row.name << ": not accessible any more";
        EXPECT_EQ(contentOf(*list), content) << row.name;
        ASSERT_EQ(cache->initialize(true, true), 0) << row.name;
        list = nullptr; // gives back nothing of the new file
        EXPECT_EQ(put(*cache, 61, 1, 10), 0) << row.name;
        EXPECT_EQ(contentOf(*cache->getList()).size(), 4U) << row.name;
        HBXCacheStatus status;
        EXPECT_EQ(cache->getStatus(status), 0);
        EXPECT_EQ(status.achievableSize - kCacheHeapBegin, status.allocated) << row.name;
    }
}

/// What somebody does while nobody uses the cache.
struct ClosedRow {
    const char* name;
    bool keeps;
    std::function<void()> act;
};

TEST_F(FaultTest, EntriesSurviveWhatHappensToAClosedCache) {
    const auto bootId = [](std::uint32_t clean) {
        return [clean](SidecarHead& head) {
            head.bootId[3] ^= 1;
            head.clean = clean;
        };
    };
    const ClosedRow rows[] = {
        {"nothing", true, [] {}},
        {"lock file deleted", true, [&] { unlink((name_ + ".lock").c_str()); }},
        {"lock file cut off", true, [&] { std::filesystem::resize_file(name_ + ".lock", 5'000); }},
        {"lock file zeroed", true, [&] { writeFile(name_ + ".lock", std::string(100, '\0')); }},
        {"lock file of another version", true,
         [&] { changeLockFile([](SidecarHead& head) { head.version = 99; }); }},
        {"copied", true,
         [&] {
             std::filesystem::copy_file(name_, name_ + "2");
             name_ += "2";
         }},
        {"moved over another", true,
         [&] {
             ASSERT_NE(TestCache::createInstance(name_ + "2", false, true, 0, 1, 1 << 20), nullptr);
             std::filesystem::rename(name_, name_ + "2");
             name_ += "2";
         }},
        {"system restarted", true, [&] { changeLockFile(bootId(1)); }},
        {"system fell", false, [&] { changeLockFile(bootId(0)); }},
        {"file grew", true, [&] { std::filesystem::resize_file(name_, 50'000); }},
        {"file cut off", false, [&] { std::filesystem::resize_file(name_, 4'096); }},
        {"file emptied", false, [&] { std::filesystem::resize_file(name_, 0); }},
    };
    for (const ClosedRow& row : rows) {
        name_ = folder_ + '/' + row.name;
        fill();
        ASSERT_EQ(put(*open(), 9, 1, 20'000), 0);
        const Content content = contentOf(*open());
        row.act();
        const TestCachePointer cache = open();
        ASSERT_NE(cache, nullptr) << row.name;
        EXPECT_EQ(contentOf(*cache), row.keeps ? content : Content()) << row.name;
        EXPECT_EQ(put(*cache, 8, 1, 10), 0) << row.name;
        EXPECT_EQ(auditFile(name_, TestCache::kFormat), "") << row.name;
    }
}

/// A walk over a list, which touches what is gone.
void walkCutFile(const std::string& name, TestCache& cache, std::uintmax_t left) {
    const auto list = cache.getList();
    auto value = list->begin();
    std::advance(value, 20);
    std::filesystem::resize_file(name, left);
    for (; value != list->end(); ++value) {
        EXPECT_EQ(value->item.isPrivate, 0U);
    }
    EXPECT_EQ(cache.remove(keyOf(50)), -8) << left;
    EXPECT_FALSE(cache.isAccessible());
}

/// A copy of a large value whose end is gone.
void copyFromCutFile(const std::string& name, TestCache& cache, std::uintmax_t left) {
    std::filesystem::resize_file(name, left);
    EXPECT_EQ(cache.getCopy(keyOf(1)), nullptr) << left;
    EXPECT_FALSE(cache.isAccessible());
}

TEST_F(FaultTest, AFileThatIsCutOffEndsNobody) {
    for (const std::uintmax_t left : {0U, 60U, 4'096U, 20'000U}) {
        for (const bool walks : {true, false}) {
            EXPECT_EQ(inChild([&] {
                          EXPECT_EQ(guardMappedFiles(), 0);
                          const TestCachePointer cache = open();
                          for (std::uint64_t i = 0; i < (walks ? 60 : 2); ++i) {
                              EXPECT_EQ(put(*cache, i, 1, walks ? 2'000 : i * 200'000), 0);
                          }
                          walks ? walkCutFile(name_, *cache, left) : copyFromCutFile(name_, *cache, left);
                          return HasFailure() ? 1 : 0;
                      }),
                      0);
            const TestCachePointer next = open();
            ASSERT_NE(next, nullptr) << left;
            EXPECT_EQ(put(*next, 1, 1, 10), 0);
            std::filesystem::remove(name_);
        }
    }
}

// --- several at once ---

TEST_F(FaultTest, TwoBuildersMakeOneFile) {
    const Shared<std::atomic<int>> ready;
    for (int round = 0; round < 100; ++round) {
        std::filesystem::remove(name_);
        if (round % 2 == 0) {
            writeFile(name_, std::string(5'000, 'x')); // both find it invalid
        }
        *ready = 0;
        const auto build = [&](std::uint64_t number) {
            ++*ready;
            while (*ready < 2) {
            }
            const TestCachePointer cache = open();
            return cache == nullptr ? 2 : put(*cache, number, 1, 10) == 0 ? 0 : 3;
        };
        ChildProcess other([&] { return build(1); });
        ASSERT_EQ(inChild([&] { return build(2); }), 0) << round;
        ASSERT_EQ(other.wait(), 0) << round;
        ASSERT_EQ(contentOf(*open()).size(), 2U) << round;
    }
}

/// Stops its process once, in the middle of an operation.
class StoppingManager : public TestManager {
public:
    using TestManager::TestManager;
    void prepareBlock(void* memory, std::size_t size) override {
        TestManager::prepareBlock(memory, size);
        if (!std::exchange(stopped_, true)) {
            std::raise(SIGSTOP);
        }
    }

private:
    static inline bool stopped_ = false;
};
using StoppingCache = HBXCacheLogic<HBXGUIDBase, TestValue, StoppingManager>;

/// Who only works with the cache loses nothing by a stopped holder; who opens it gives the file up, as nobody
/// knows whether the holder will ever go on.
TEST_F(FaultTest, AStoppedHolderIsNotWaitedForForever) {
    for (const bool opens : {false, true}) {
        Content content = fill();
        TestManager::wishes.patience = std::chrono::milliseconds(100);
        const TestCachePointer cache = open();
        ChildProcess holder([&] {
            const auto mine = StoppingCache::createInstance(name_, false, true, 0, 16, 64 << 20);
            const int first = mine->put(keyOf(4), ValueBuffer(keyOf(4), 1, 50).value());
            return first == 0 && mine->remove(keyOf(0)) == (opens ? -14 : 0) ? 0 : 1;
        });
        holder.waitUntilStopped();
        EXPECT_EQ(put(*cache, 5, 1, 10), -9);
        EXPECT_TRUE(cache->isAccessible());
        EXPECT_FALSE(cache->getList()->holdsSnapshot());
        const auto begin = std::chrono::steady_clock::now();
        if (opens) {
            EXPECT_EQ(open(), nullptr);
        }
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(3))
            << "waits again and again";
        holder.signal(SIGCONT);
        EXPECT_EQ(holder.wait(), 0);
        EXPECT_EQ(put(*cache, 5, 1, 10), opens ? -14 : 0);
        content[keyOf(4)] = {1, 50};
        content[keyOf(5)] = {1, 10};
        content.erase(keyOf(0));
        EXPECT_EQ(contentOf(*open()), opens ? Content() : content);
    }
}

// --- files that are not ours ---

struct ForeignRow {
    const char* name;
    void (*make)(const std::string& path);
};

const ForeignRow kForeign[] = {
    {"symbolic link",
     [](const std::string& path) {
         writeFile(path + ".target", "");
         EXPECT_EQ(symlink((path + ".target").c_str(), path.c_str()), 0);
     }},
    {"pipe", [](const std::string& path) { EXPECT_EQ(mkfifo(path.c_str(), 0644), 0); }},
    {"folder", [](const std::string& path) { EXPECT_EQ(mkdir(path.c_str(), 0755), 0); }},
    {"second name",
     [](const std::string& path) {
         writeFile(path + ".first", "");
         EXPECT_EQ(link((path + ".first").c_str(), path.c_str()), 0);
     }},
};

/// What a file is, and what it and the file behind it hold.
std::string describe(const std::string& path) {
    struct stat status {};
    lstat(path.c_str(), &status);
    return std::to_string(status.st_mode) + ' ' + std::to_string(status.st_nlink) + ' ' +
           std::to_string(status.st_size) + ' ' +
           (S_ISREG(status.st_mode) || S_ISLNK(status.st_mode) ? readFile(path) : "");
}

TEST_F(FaultTest, FilesThatAreNotOursAreRefusedAndUntouched) {
    for (const std::string suffix : {"", ".lock"}) {
        for (const ForeignRow& row : kForeign) {
            name_ = folder_ + '/' + row.name + (suffix.empty() ? "" : "2");
            row.make(name_ + suffix);
            const std::string before = describe(name_ + suffix);
            EXPECT_EQ(OpenCache::tryOpen(name_, false), -2) << row.name << suffix;
            EXPECT_EQ(open(), nullptr) << row.name << suffix;
            EXPECT_EQ(describe(name_ + suffix), before);
        }
    }
    name_ = folder_ + "/text";
    for (const char* content : {"x", "Somebody's text that must not be lost"}) {
        writeFile(name_ + ".lock", content);
        const std::string before = describe(name_ + ".lock");
        EXPECT_EQ(open(), nullptr);
        EXPECT_EQ(describe(name_ + ".lock"), before);
    }
}

} // namespace
} // namespace HBX::test
