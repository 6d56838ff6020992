#include "CacheFileAudit.h"
#include "CacheTestUtil.h"
#include "support/ChildProcess.h"

#include <cerrno>
#include <set>

namespace HBX::test {
namespace {

using Severity = HBXCacheFinding::Severity;

class CacheCheckTest : public CacheTest {
protected:
    HBXCacheFindings check(const std::string& path) const {
        HBXCacheFindings findings;
        EXPECT_EQ(checkCacheFile(path, TestCache::kFormat, findings), 0) << path;
        return findings;
    }
    /// A closed file with entries, removed entries and free space.
    void build(std::uint64_t count, std::size_t size) const {
        const TestCachePointer cache = open();
        for (std::uint64_t i = 0; i < count; ++i) {
            ASSERT_EQ(put(*cache, i, 1, size + i % 5), 0);
        }
        for (std::uint64_t i = 0; i < count; i += 4) {
            ASSERT_EQ(cache->remove(keyOf(i)), 0);
        }
    }
};

TEST_F(CacheCheckTest, CountsWhatIsHeldAndNotesWhatDiedHoldingIt) {
    build(300, 700);
    EXPECT_FALSE(check(name_).inUse);
    const TestCachePointer cache = open();
    const auto first = cache->getList();
    const auto second = cache->getList();
    ASSERT_EQ(put(*cache, 1, 2, 50), 0);
    const auto third = cache->getList();
    const HBXCacheFindings findings = check(name_);
    EXPECT_TRUE(findings.list.empty()) << findings.list[0].what;
    EXPECT_TRUE(findings.inUse);
    EXPECT_EQ(findings.snapshots, 2U);
    EXPECT_EQ(findings.entries, 225U);
    EXPECT_EQ(findings.values, 226U);
    EXPECT_EQ(findings.fileSize, std::filesystem::file_size(name_));
    ASSERT_EQ(inChild([&] {
                  static const auto leaked = open()->getList();
                  return leaked->holdsSnapshot() ? 0 : 1;
              }),
              0);
    const HBXCacheFindings died = check(name_);
    EXPECT_FALSE(died.isDamaged());
    EXPECT_TRUE(died.list.at(0).inLockFile);
    EXPECT_EQ(died.list[0].what, "lists of a process that has ended are noted");
    EXPECT_NE(open(), nullptr);
    EXPECT_TRUE(check(name_).list.empty());
}

TEST_F(CacheCheckTest, SaysWhereTheDamageIs) {
    build(8, 20);
    const std::string good = contentOf(name_);
    const std::uint64_t snapshot = numberAt(good, offsetof(HBXCacheHead, snapshot));
    std::uint64_t value = 0;
    for (std::uint64_t i = 0; value == 0; ++i) { // entry 0 may be a removed one
        value = numberAt(good, snapshot + kSnapshotEntriesOffset + i * 24 + 16);
    }
    const std::tuple<std::uint64_t, std::uint64_t, Severity, std::uint64_t, const char*> rows[] = {
        {40, 0, Severity::Damage, 40, "there is no current snapshot"},
        {40, 4096, Severity::Damage, 4096, "an offset leads out of the heap"},
        {snapshot + 24, 0, Severity::Damage, snapshot, "the head of a snapshot is damaged"},
        {value + 8, 7, Severity::Damage, value, "a value belongs to another key"},
        {value + 32, 1 << 20, Severity::Damage, value, "a value does not fit into the file"},
        {value, 9, Severity::Repairable, value, "a count of references is wrong"},
        {0, 8192, Severity::Repairable, 0, "the heap ends elsewhere than the file"},
        {8, 64, Severity::Repairable, 0, "the number or the size of the used blocks is wrong"},
    };
    for (const auto& [at, number, severity, offset, what] : rows) {
        writeFile(name_, good);
        writeAt(name_, at, {reinterpret_cast<const char*>(&number), sizeof number});
        const HBXCacheFindings findings = check(name_);
        ASSERT_EQ(findings.list.size(), 1U) << what;
        EXPECT_EQ(findings.list[0].severity, severity) << what;
        EXPECT_EQ(findings.list[0].what, what);
        EXPECT_EQ(findings.list[0].offset, offset) << what;
    }
}

TEST_F(CacheCheckTest, ReadsTheLockFileToo) {
    using internal::SidecarHead;
    build(8, 20);
    const std::string lock = name_ + ".lock";
    const std::string good = contentOf(lock);
    const std::tuple<std::set<std::size_t>, bool, const char*> rows[] = {
        {{offsetof(SidecarHead, magic)}, true, "this is no lock file, and no process will use it as one"},
        {{offsetof(SidecarHead, bootId)}, false, ""}, // closed in good order before the system went down
        {{offsetof(SidecarHead, bootId), offsetof(SidecarHead, clean)},
         true,
         "the system went down while the cache file was not yet on the disk"},
        {{offsetof(SidecarHead, rebuild)}, false, "a change was cut short"},
        {{offsetof(SidecarHead, inode)}, false, ""}, // of another file
    };
    for (const auto& [changed, damage, what] : rows) {
        std::string other = good;
        for (const std::size_t offset : changed) {
            other[offset] = static_cast<char>(other[offset] ^ 1);
        }
        writeFile(lock, other);
        const HBXCacheFindings findings = check(name_);
        EXPECT_EQ(findings.list.empty() ? "" : findings.list[0].what, what);
        EXPECT_EQ(findings.isDamaged(), damage) << what;
    }
}

TEST_F(CacheCheckTest, NeverCallsDamageWhatAnotherProcessIsChanging) {
    build(200, 300);
    ChildProcess changer([&]() -> int {
        const TestCachePointer cache = open();
        for (std::uint64_t i = 0;; ++i) {
            put(*cache, i % 300, i, i * 37 % 2000);
            usleep(i % 20 == 0 ? 4000 : 0);
        }
    });
    const TestCachePointer cache = open();
    const std::uint64_t before = cache->getChangeCount();
    int looks = 0;
    for (; looks < 20 || cache->getChangeCount() < before + 200; ++looks) {
        HBXCacheFindings findings;
        if (checkCacheFile(name_, TestCache::kFormat, findings) == 0) {
            ASSERT_FALSE(findings.isDamaged()) << findings.list[0].what;
        } else {
            ASSERT_EQ(errno, EAGAIN);
        }
    }
    changer.signal(SIGKILL);
    changer.wait();
    EXPECT_FALSE(check(name_).isDamaged());
}

TEST_F(CacheCheckTest, TellsCachesFromOtherFiles) {
    build(8, 20);
    const std::string good = contentOf(name_);
    std::string threeKnown = good;
    threeKnown[49] = threeKnown[57] = 0;
    std::string twoKnown = threeKnown;
    twoKnown[65] = 0;
    const std::pair<std::string, HBXCacheFileKind> rows[] = {
        {"", HBXCacheFileKind::Empty},
        {std::string(4096, '\0'), HBXCacheFileKind::Empty},
        {std::string(200'000, '\0'), HBXCacheFileKind::Other},
        {"text", HBXCacheFileKind::Other},
        {good, HBXCacheFileKind::Cache},
        {good.substr(0, 77), HBXCacheFileKind::Cache},
        {threeKnown, HBXCacheFileKind::Cache},
        {twoKnown, HBXCacheFileKind::Other},
    };
    HBXCacheFileKind kind{};
    for (const auto& [content, expected] : rows) {
        const std::string path = write("file", content);
        ASSERT_EQ(recogniseCacheFile(path, TestCache::kFormat, kind), 0);
        EXPECT_EQ(kind, expected);
        EXPECT_EQ(check(path).kind, expected);
        EXPECT_EQ(contentOf(path), content);
    }
    ASSERT_EQ(recogniseCacheFile(path("none"), TestCache::kFormat, kind), 0);
    EXPECT_EQ(kind, HBXCacheFileKind::Missing);
    HBXCacheFindings findings;
    for (const std::string& file : {path(), std::string("/dev/zero"), path("none")}) {
        EXPECT_EQ(checkCacheFile(file, TestCache::kFormat, findings), -1) << file;
    }
}

} // namespace
} // namespace HBX::test
