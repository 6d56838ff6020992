#include "CacheFileAudit.h"
#include "CacheTestUtil.h"
#include "support/ChildProcess.h"

#include <atomic>
#include <chrono>
#include <functional>

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
};

// --- no room ---

TEST_F(FaultTest, WithoutRoomNothingChanges) {
    for (const bool isDiskFull : {false, true}) {
        name_ = path(isDiskFull ? "full disk" : "largest size");
        const auto work = [&] {
            const TestCachePointer cache = openCache(name_, isDiskFull ? 64 << 20 : 100'000);
            isDiskFull ? limitFileSize(100'000) : void();
            Content model;
            std::uint64_t failures = 0;
            for (std::uint64_t i = 0; i < 400 && failures < 50; ++i) {
                if (const int code = put(*cache, i % 150, i, i * 7 % 1'500); code == 0) {
                    model[keyOf(i % 150)] = {i, i * 7 % 1'500};
                } else {
                    EXPECT_EQ(code, -1);
                    ++failures;
                }
                EXPECT_EQ(contentOf(*cache), model) << "a list never needs room";
            }
            EXPECT_EQ(failures, 50U);
            EXPECT_LE(std::filesystem::file_size(name_), 100'000U);
            EXPECT_EQ(cache->remove(model.begin()->first), 0);
            EXPECT_EQ(put(*cache, 0, 1, std::size_t{65} << 20), -1) << "can never fit";
            EXPECT_EQ(auditFile(name_, TestCache::kFormat), "");
            return HasFailure() ? 1 : 0;
        };
        EXPECT_EQ(inChild(work), 0) << name_;
    }
}

TEST_F(FaultTest, WhatTheDeadHeldIsUsedAgain) {
    const TestCachePointer cache = open();
    const auto leak = [&] {
        static const auto leaked = cache->getList();
        return leaked->holdsSnapshot() ? 0 : 1;
    };
    std::uintmax_t size = 0;
    for (std::uint64_t round = 0; round < 30; ++round) {
        for (std::uint64_t i = 0; i < 50; ++i) {
            ASSERT_EQ(put(*cache, i, round, 1'000), 0);
        }
        size = round == 3 ? std::filesystem::file_size(name_) : size;
        EXPECT_EQ(inChild(leak), 0);
    }
    EXPECT_EQ(std::filesystem::file_size(name_), size);
}

// --- operations that the system refuses ---

TEST_F(FaultTest, WhatCannotBeMappedOrLockedGivesItsCode) {
    const Content content = fill();
    TestManager::wishes.fails = "map";
    EXPECT_EQ(OpenCache::tryOpen(name_, false), -2);
    TestManager::wishes = Wishes();
    TestManager::wishes.reservation = 16 << 10;
    const TestCachePointer cache = open();
    TestManager::wishes.fails = "remap";
    EXPECT_EQ(inChild([&] {
                  TestManager::wishes = Wishes();
                  return put(*open(), 9, 1, 200'000);
              }),
              0);
    EXPECT_EQ(put(*cache, 1, 1, 1), -10);
    TestManager::wishes.fails = "";
    EXPECT_EQ(cache->remove(keyOf(9)), 0) << "the mapping before stayed in use";
    EXPECT_EQ(contentOf(*cache), content);
    TestManager::wishes.fails = "lock";
    EXPECT_EQ(put(*cache, 1, 1, 1), -9);
    EXPECT_EQ(OpenCache::tryOpen(name_, false), -9);
    TestManager::wishes.fails = "";
    EXPECT_EQ(put(*cache, 1, 1, 1), -14) << "who could not lock it when opening gave it up";
}

// --- files that change under those who use them ---

/// Whatever somebody does to the files of a cache in use, the next who opens it finds a new one.
TEST_F(FaultTest, WhoUsesAReplacedFileNoticesAndOpensTheNewOne) {
    const std::pair<std::string, void (*)(const std::string& name)> rows[] = {
        {"removed",
         [](const std::string& name) {
             std::string error;
             EXPECT_EQ(removeCacheFile(name, TestCache::kFormat, error), 0) << error;
         }},
        {"another moved there",
         [](const std::string& name) {
             EXPECT_NE(openCache(name + "2"), nullptr);
             rename((name + "2").c_str(), name.c_str());
         }},
        {"lock file deleted", [](const std::string& name) { unlink((name + ".lock").c_str()); }},
    };
    for (const auto& [name, act] : rows) {
        SCOPED_TRACE(name);
        name_ = path(name);
        const Content content = fill();
        const boost::intrusive_ptr<OpenCache> cache(new OpenCache(name_));
        ASSERT_EQ(cache->initialize(true, true), 0);
        auto list = cache->getList();
        act(name_);
        ASSERT_EQ(inChild([&] { return contentOf(*open()).empty() && fill(8).size() == 3 ? 0 : 1; }), 0)
            << "two locks would guard one file";
        EXPECT_FALSE(cache->getList()->holdsSnapshot());
        EXPECT_EQ(put(*cache, 60, 1, 10), -1) << "not accessible any more";
        EXPECT_EQ(contentOf(*list), content);
        ASSERT_EQ(cache->initialize(true, true), 0);
        list = nullptr; // gives back nothing of the new file
        EXPECT_EQ(put(*cache, 61, 1, 10), 0);
        EXPECT_EQ(contentOf(*cache->getList()).size(), 4U);
        EXPECT_EQ(auditFile(name_, TestCache::kFormat), "");
    }
}

TEST_F(FaultTest, EntriesSurviveWhatHappensToAClosedCache) {
    const auto restart = [&](std::uint32_t clean) {
        writeNumberAt(name_ + ".lock", offsetof(SidecarHead, clean), clean);
        writeAt(name_ + ".lock", offsetof(SidecarHead, bootId), "another");
    };
    const std::tuple<std::string, bool, std::function<void()>> rows[] = {
        {"lock file deleted", true, [&] { unlink((name_ + ".lock").c_str()); }},
        {"lock file cut off", true, [&] { std::filesystem::resize_file(name_ + ".lock", 5'000); }},
        {"lock file of another version", true,
         [&] { writeNumberAt(name_ + ".lock", offsetof(SidecarHead, version), 99); }},
        {"moved over another", true,
         [&] {
             ASSERT_NE(openCache(name_ + "2"), nullptr);
             std::filesystem::rename(name_, name_ + "2");
             name_ += "2";
         }},
        {"system restarted", true, [&] { restart(1); }},
        {"system fell", false, [&] { restart(0); }},
        {"file grew", true, [&] { std::filesystem::resize_file(name_, 50'000); }},
        {"file cut off", false, [&] { std::filesystem::resize_file(name_, 4'096); }},
        {"file emptied", false, [&] { std::filesystem::resize_file(name_, 0); }},
    };
    for (const auto& [name, keeps, act] : rows) {
        name_ = path(name);
        fill();
        ASSERT_EQ(put(*open(), 9, 1, 20'000), 0);
        const Content content = contentOf(*open());
        act();
        const TestCachePointer cache = open();
        ASSERT_NE(cache, nullptr) << name;
        EXPECT_EQ(contentOf(*cache), keeps ? content : Content()) << name;
        EXPECT_EQ(put(*cache, 8, 1, 10), 0) << name;
        EXPECT_EQ(auditFile(name_, TestCache::kFormat), "") << name;
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

/// Who only works with the cache loses nothing by a stopped holder; who opens it gives the file up, as nobody
/// knows whether the holder will ever go on.
TEST_F(FaultTest, AStoppedHolderIsNotWaitedForForever) {
    for (const bool opens : {false, true}) {
        Content content = fill();
        TestManager::wishes.patience = std::chrono::milliseconds(100);
        const TestCachePointer cache = open();
        ChildProcess holder([&] {
            const TestCachePointer mine = open();
            TestManager::wishes.stopOnce = true;
            return put(*mine, 4, 1, 50) == 0 && mine->remove(keyOf(0)) == (opens ? -14 : 0) ? 0 : 1;
        });
        holder.waitUntilStopped();
        EXPECT_EQ(put(*cache, 5, 1, 10), -9);
        EXPECT_TRUE(cache->isAccessible());
        EXPECT_FALSE(cache->getList()->holdsSnapshot());
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_TRUE(!opens || open() == nullptr);
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

TEST_F(FaultTest, FilesThatAreNotOursAreRefusedAndUntouched) {
    const std::string other = write("other", "");
    const std::pair<std::string, std::function<int(const char* path)>> rows[] = {
        {"symbolic link", [&](const char* path) { return symlink(other.c_str(), path); }},
        {"second name", [&](const char* path) { return link(other.c_str(), path); }},
        {"pipe", [](const char* path) { return mkfifo(path, 0644); }},
        {"folder", [](const char* path) { return mkdir(path, 0755); }},
    };
    for (const std::string suffix : {"", ".lock"}) {
        for (const auto& [kind, make] : rows) {
            SCOPED_TRACE(kind + suffix);
            name_ = path(kind + std::to_string(suffix.size()));
            const std::string foreign = name_ + suffix;
            ASSERT_EQ(make(foreign.c_str()), 0);
            const auto before = std::filesystem::symlink_status(foreign);
            EXPECT_EQ(OpenCache::tryOpen(name_, false), -2);
            EXPECT_EQ(open(), nullptr);
            EXPECT_EQ(std::filesystem::symlink_status(foreign), before);
            EXPECT_EQ(contentOf(other), "");
        }
    }
    name_ = path("text");
    write("text.lock", "Somebody's that must not be lost");
    EXPECT_EQ(open(), nullptr);
    EXPECT_EQ(contentOf(name_ + ".lock"), "Somebody's that must not be lost");
}

} // namespace
} // namespace HBX::test
