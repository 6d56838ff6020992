#include "CacheTestUtil.h"

#include <cerrno>
#include <fstream>
#include <sstream>

#include <HBXCommon/HBXLog.h>
#include <HBXCore/HBXCacheCheck.h>
#include <HBXCore/internal/Sidecar.h>

#include <csignal>
#include <sys/wait.h>

namespace HBX::test {
namespace {

using Severity = HBXCacheFinding::Severity;

class CacheCheckTest : public CacheTest {
protected:
    void SetUp() override {
        CacheTest::SetUp();
        debug_level = 0; // thousands of files are damaged on purpose
    }

    std::string bytes(const std::string& path) const {
        std::ifstream file(path, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
    std::string write(const std::string& path, const std::string& content) const {
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }
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
    /// Whether the library opens a file with these bytes, and what it then finds there.
    bool opens(const std::string& path) const {
        return TestCache::createInstance(path, true, true, 0, 16, 64 << 20) != nullptr;
    }
};

TEST_F(CacheCheckTest, FindsNothingInWhatTheLibraryLeaves) {
    for (const std::uint64_t count : {0U, 1U, 8U, 300U}) {
        std::filesystem::remove(name_);
        build(count, 700);
        const HBXCacheFindings findings = check(name_);
        EXPECT_TRUE(findings.list.empty()) << findings.list[0].what;
        EXPECT_EQ(findings.kind, HBXCacheFileKind::Cache);
        EXPECT_FALSE(findings.inUse);
        EXPECT_EQ(findings.entries, count - (count + 3) / 4);
        EXPECT_EQ(findings.values, findings.entries);
        EXPECT_EQ(findings.snapshots, 1U);
        EXPECT_EQ(findings.fileSize, std::filesystem::file_size(name_));
    }
}

TEST_F(CacheCheckTest, CountsWhatIsHeldWhileTheFileIsInUse) {
    build(40, 100);
    const TestCachePointer cache = open();
    const auto first = cache->getList();
    const auto second = cache->getList();
    ASSERT_EQ(put(*cache, 1, 2, 50), 0);
    const auto third = cache->getList();
    const HBXCacheFindings findings = check(name_);
    EXPECT_TRUE(findings.list.empty()) << findings.list[0].what;
    EXPECT_TRUE(findings.inUse);
    EXPECT_EQ(findings.snapshots, 2U);
    EXPECT_EQ(findings.entries, 30U);
    EXPECT_EQ(findings.values, 31U);
}

/// The library itself says what is damage: it does not open the file.
TEST_F(CacheCheckTest, CallsDamageWhatCannotBeOpened) {
    build(8, 20);
    const std::string good = bytes(name_);
    ASSERT_EQ(good.size(), 4096U);
    constexpr unsigned kChanges[] = {0x01, 0x80, 0xFF};
    int damaged = 0;
    int repairable = 0;
    for (std::size_t offset = 0; offset < good.size(); offset += offset < 96 ? 1 : 5) {
        std::string bad = good;
        bad[offset] = static_cast<char>(bad[offset] ^ static_cast<char>(kChanges[offset % 3]));
        const std::string path = write(folder_ + "/bad", bad);
        const HBXCacheFindings findings = check(path);
        ASSERT_EQ(opens(path), !findings.isDamaged()) << offset;
        if (findings.isDamaged()) {
            ++damaged;
            continue;
        }
        repairable += findings.list.empty() ? 0 : 1;
        ASSERT_TRUE(check(path).list.empty()) << "not repaired: " << offset;
    }
    EXPECT_GT(damaged, 50);
    EXPECT_GT(repairable, 50);
}

TEST_F(CacheCheckTest, JudgesFilesThatWereCutOrExtended) {
    build(60, 200);
    const std::string good = bytes(name_);
    for (std::size_t length = 0; length < good.size() + 600; length += 61) {
        std::string cut = good;
        cut.resize(length);
        const std::string path = write(folder_ + "/cut", cut);
        const HBXCacheFindings findings = check(path);
        if (findings.kind != HBXCacheFileKind::Other) { // those the program does not let the library open
            ASSERT_EQ(opens(path), !findings.isDamaged()) << length;
        }
        if (length < good.size() && length > 0) {
            EXPECT_FALSE(findings.list.empty()) << length;
        }
    }
}

TEST_F(CacheCheckTest, SaysWhereTheDamageIs) {
    build(8, 20);
    const std::string good = bytes(name_);
    std::uint64_t snapshot = 0;
    std::memcpy(&snapshot, good.data() + 40, sizeof snapshot);
    HBXCacheEntry entry{};
    for (std::uint64_t i = 0; entry.value == 0; ++i) { // entry 0 may be a removed one
        std::memcpy(&entry, good.data() + snapshot + kSnapshotEntriesOffset + i * sizeof entry, sizeof entry);
    }
    const struct {
        std::uint64_t at;
        std::uint64_t value;
        Severity severity;
        std::uint64_t offset;
        const char* what;
    } rows[] = {
        {40, 4096, Severity::Damage, 4096, "an offset leads out of the heap"},
        {snapshot + 24, 0, Severity::Damage, snapshot, "the head of a snapshot is damaged"},
        {entry.value + 8, 7, Severity::Damage, entry.value, "a value belongs to another key"},
        {entry.value + 32, 1 << 20, Severity::Damage, entry.value, "a value does not fit into the file"},
        {entry.value, 9, Severity::Repairable, entry.value, "a count of references is wrong"},
        {0, 8192, Severity::Repairable, 0, "the heap ends elsewhere than the file"},
        {8, 64, Severity::Repairable, 0, "the number or the size of the used blocks is wrong"},
    };
    for (const auto& row : rows) {
        std::string bad = good;
        std::memcpy(bad.data() + row.at, &row.value, sizeof row.value);
        const HBXCacheFindings findings = check(write(name_, bad));
        ASSERT_EQ(findings.list.size(), 1U) << row.what;
        EXPECT_EQ(findings.list[0].severity, row.severity) << row.what;
        EXPECT_EQ(findings.list[0].what, row.what);
        EXPECT_EQ(findings.list[0].offset, row.offset) << row.what;
        EXPECT_FALSE(findings.list[0].inLockFile);
    }
}

TEST_F(CacheCheckTest, ReadsTheLockFileToo) {
    using internal::SidecarHead;
    build(8, 20);
    const std::string lock = name_ + ".lock";
    const std::string good = bytes(lock);
    const struct {
        std::size_t offset;
        bool damage;
        const char* what;
    } rows[] = {
        {offsetof(SidecarHead, magic), true, "this is no lock file, and no process will use it as one"},
        {offsetof(SidecarHead, bootId), false, ""}, // closed in good order before the system went down
        {offsetof(SidecarHead, rebuild), false, "a change was cut short"},
        {offsetof(SidecarHead, inode), false, ""}, // of another file
    };
    for (const auto& row : rows) {
        std::string other = good;
        other[row.offset] = static_cast<char>(other[row.offset] ^ 1);
        write(lock, other);
        const HBXCacheFindings findings = check(name_);
        EXPECT_EQ(findings.list.empty() ? "" : findings.list[0].what, row.what) << row.offset;
        EXPECT_EQ(findings.isDamaged(), row.damage);
    }
    std::string unclean = good;
    unclean[offsetof(SidecarHead, bootId)] ^= 1;
    unclean[offsetof(SidecarHead, clean)] = 0;
    write(lock, unclean);
    EXPECT_TRUE(check(name_).isDamaged());
    EXPECT_FALSE(opens(name_));
}

TEST_F(CacheCheckTest, NotesListsOfAKilledProcess) {
    build(8, 20);
    const pid_t child = fork();
    if (child == 0) {
        const TestCachePointer cache = open();
        const auto list = cache->getList();
        _exit(list->holdsSnapshot() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_EQ(status, 0);
    const HBXCacheFindings findings = check(name_);
    EXPECT_FALSE(findings.isDamaged());
    ASSERT_FALSE(findings.list.empty());
    EXPECT_TRUE(std::any_of(findings.list.begin(), findings.list.end(), [](const HBXCacheFinding& finding) {
        return finding.inLockFile && finding.what == "lists of a process that has ended are noted";
    }));
    EXPECT_TRUE(opens(name_));
    EXPECT_TRUE(check(name_).list.empty());
}

TEST_F(CacheCheckTest, NeverCallsDamageWhatAnotherProcessIsChanging) {
    build(200, 300);
    const pid_t child = fork();
    if (child == 0) {
        const TestCachePointer cache = open();
        for (std::uint64_t i = 0;; ++i) {
            put(*cache, i % 300, i, i * 37 % 2000);
            usleep(i % 20 == 0 ? 4000 : 0);
        }
    }
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
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_FALSE(check(name_).isDamaged());
}

TEST_F(CacheCheckTest, TellsCachesFromOtherFiles) {
    build(8, 20);
    const std::string good = bytes(name_);
    std::string threeKnown = good;
    threeKnown[49] = threeKnown[57] = 0;
    std::string twoKnown = threeKnown;
    twoKnown[65] = 0;
    const struct {
        std::string content;
        HBXCacheFileKind kind;
    } rows[] = {
        {"", HBXCacheFileKind::Empty},
        {std::string(10, '\0'), HBXCacheFileKind::Empty},
        {std::string(4096, '\0'), HBXCacheFileKind::Empty},
        {std::string(200'000, '\0'), HBXCacheFileKind::Other},
        {"text", HBXCacheFileKind::Other},
        {good, HBXCacheFileKind::Cache},
        {good.substr(0, 77), HBXCacheFileKind::Cache},
        {threeKnown, HBXCacheFileKind::Cache},
        {twoKnown, HBXCacheFileKind::Other},
    };
    HBXCacheFileKind kind{};
    for (const auto& row : rows) {
        const std::string path = write(folder_ + "/file", row.content);
        ASSERT_EQ(recogniseCacheFile(path, TestCache::kFormat, kind), 0);
        EXPECT_EQ(kind, row.kind);
        EXPECT_EQ(check(path).kind, row.kind);
        EXPECT_EQ(bytes(path), row.content);
    }
    ASSERT_EQ(recogniseCacheFile(folder_ + "/none", TestCache::kFormat, kind), 0);
    EXPECT_EQ(kind, HBXCacheFileKind::Missing);
    HBXCacheFindings findings;
    for (const std::string& path : {folder_, std::string("/dev/zero"), folder_ + "/none"}) {
        EXPECT_EQ(checkCacheFile(path, TestCache::kFormat, findings), -1) << path;
    }
}

} // namespace
} // namespace HBX::test
