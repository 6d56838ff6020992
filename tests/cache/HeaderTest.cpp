#include "CacheFileAudit.h"
#include "CacheTestUtil.h"
#include "support/ChildProcess.h"

#include <atomic>

#include <HBXCore/internal/CacheSizes.h>

#include <fcntl.h>

namespace HBX::test {
namespace {

constexpr std::uint64_t kPage = 4096;

class HeaderTest : public CacheTest {
protected:
    void SetUp() override {
        CacheTest::SetUp();
        ASSERT_EQ(put(*open(), 1, 1, 100), 0);
    }
};

TEST_F(HeaderTest, OpeningOnlyAlsoMakesAFileWithTheBytesThatOthersExpect) {
    const std::string other = path("other");
    ASSERT_NE(TestCache::createInstance(other, true, true, 0, 16, 1 << 20), nullptr);
    for (const std::string& file : {other, other + ".lock"}) {
        EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms{0600}) << file;
    }
    const std::string content = readFile(other);
    ASSERT_EQ(content.size(), kPage);
    constexpr unsigned char kExpected[] = {0x03, 0xFE, 0xCE, 0xCA, 0x4D, 0, 0, 0, 0x10, 0, 0, 0, 0xE1, 0,
                                           0,    0,    0x30, 0,    0,    0, 1, 0, 0,    0, 1, 0, 0,    0};
    EXPECT_EQ(content.substr(49, sizeof kExpected),
              std::string(reinterpret_cast<const char*>(kExpected), sizeof kExpected));
    EXPECT_EQ(numberAt(content, 40), kCacheHeapBegin + 16) << "the snapshot";
}

/// Each field is wrong together with all that are validated after it.
TEST_F(HeaderTest, CreatorsReplaceWhatIsRefusedAndOthersLeaveIt) {
    const struct {
        std::size_t offset;
        std::uint32_t wrong;
        int code;
    } rows[] = {{73, 0, -14}, {53, 78, -11}, {57, 20, -13}, {49, 1, -12}, {61, 224, -15}, {65, 47, -16}};
    for (const auto* row = std::begin(rows); row != std::end(rows); ++row) {
        ASSERT_EQ(put(*open(), 1, 1, 100), 0);
        std::for_each(row, std::end(rows), [&](const auto& r) { writeNumberAt(name_, r.offset, r.wrong); });
        const std::string before = readFile(name_);
        EXPECT_EQ(TestCache::createInstance(name_, true, true, 0, 16, 64 << 20), nullptr) << row->code;
        EXPECT_EQ(readFile(name_), before);
        EXPECT_EQ(OpenCache::tryOpen(name_, true), row->code);
        EXPECT_EQ(static_cast<std::uint32_t>(numberAt(readFile(name_), 73)), 0U)
            << "marked, so that the next creator replaces it";
        const TestCachePointer cache = open();
        ASSERT_NE(cache, nullptr) << row->code;
        EXPECT_TRUE(contentOf(*cache).empty());
    }
}

TEST_F(HeaderTest, SomeFieldsAreNotValidated) {
    writeNumberAt(name_, 69, 7);
    writeNumberAt(name_, 73, 2);
    EXPECT_EQ(OpenCache::tryOpen(name_, false), 0);
    EXPECT_EQ(contentOf(*open()).size(), 1U);
    writeNumberAt(name_, 40, 0);
    EXPECT_EQ(OpenCache::tryOpen(name_, false), -8) << "a finished header without a snapshot";
}

TEST(CacheSizesTest, FilesGrowByAFifthOrFiveTimesTheRequest) {
    EXPECT_EQ(internal::initialFileSize(16384), 16384U);
    EXPECT_EQ(internal::initialFileSize(1024), 3072U);
    struct Row {
        std::uint64_t from, request, to;
    };
    constexpr Row kRows[] = {{4096, 112, 8192}, {8192, 112, 12288}, {4096, 5112, 32768}, {40960, 624, 49152}};
    for (const Row& row : kRows) {
        EXPECT_EQ(internal::grownFileSize(row.from, row.request, kPage), row.to) << row.from;
    }
}

/// Beyond the reserved addresses every growth moves the mapping, here and in the other process.
TEST_F(HeaderTest, GrowsBeyondTheReservationWhileOthersReadAndWrite) {
    TestManager::wishes.reservation = 64 << 10;
    const Shared<std::atomic<bool>> finished;
    ChildProcess other([&] {
        const TestCachePointer cache = open();
        bool good = true;
        for (std::uint64_t i = 0; good && (!*finished || i < 50); ++i) {
            const auto list = cache->getList();
            good = put(*cache, 1'000 + i % 50, i, i * 37 % 4000) == 0 && !contentOf(*list).empty();
        }
        return good && !HasFailure() ? 0 : 1;
    });
    const TestCachePointer cache = open();
    std::vector<std::pair<boost::intrusive_ptr<TestCache::ValuesList>, Content>> held;
    for (std::uint64_t i = 0; i < 400; ++i) {
        ASSERT_EQ(put(*cache, i, i, 3000), 0);
        if (i % 40 == 0) {
            const auto list = cache->getList();
            held.emplace_back(list, contentOf(*list));
        }
    }
    *finished = true;
    EXPECT_EQ(other.wait(), 0);
    for (const auto& [list, content] : held) {
        EXPECT_EQ(contentOf(*list), content);
    }
    EXPECT_GT(std::filesystem::file_size(name_), std::uintmax_t{1} << 20);
    EXPECT_EQ(contentOf(*cache).size(), 450U);
    EXPECT_EQ(auditFile(name_, TestCache::kFormat), "");
}

/// The system tells without harm whether memory may be written: by what a read into it answers.
bool isWritable(const void* memory) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0 || write(ends[1], memory, 1) != 1) {
        return false;
    }
    const bool result = read(ends[0], const_cast<void*>(memory), 1) == 1;
    close(ends[0]);
    close(ends[1]);
    return result;
}

TEST_F(HeaderTest, MappingsAreReadOnlyBetweenOperationsWhenAskedFor) {
    TestManager::wishes.reservation = 64 << 10;
    for (const bool keepWritable : {false, true}) {
        const TestCachePointer cache = TestCache::createInstance(name_, false, keepWritable, 0, 16, 64 << 20);
        ASSERT_NE(cache, nullptr);
        const auto list = cache->getList();
        for (std::uint64_t i = 0; i < 100; ++i) {
            ASSERT_EQ(put(*cache, i, i, 2000), 0);
        }
        const auto grown = cache->getList();
        EXPECT_EQ(isWritable(&*list->begin()), keepWritable) << "the mapping before the file grew";
        EXPECT_EQ(isWritable(&*grown->begin()), keepWritable);
        EXPECT_EQ(contentOf(*cache).size(), 100U);
    }
}

} // namespace
} // namespace HBX::test
