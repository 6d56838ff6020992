#include "CacheFileAudit.h"
#include "CacheTestUtil.h"
#include "ChildProcess.h"

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
    void setField(std::size_t offset, std::uint32_t value) const {
        std::fstream file(name_, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(static_cast<std::streamoff>(offset));
        file.write(reinterpret_cast<const char*>(&value), sizeof value);
    }
};

TEST_F(HeaderTest, ANewFileHasTheBytesThatOthersExpect) {
    const std::string other = path("other");
    ASSERT_NE(openCache(other), nullptr);
    const std::string content = readFile(other);
    ASSERT_EQ(content.size(), kPage);
    constexpr unsigned char kExpected[] = {0x03, 0xFE, 0xCE, 0xCA, 0x4D, 0, 0, 0, 0x10, 0, 0, 0, 0xE1, 0,
                                           0,    0,    0x30, 0,    0,    0, 1, 0, 0,    0, 1, 0, 0,    0};
    EXPECT_EQ(content.substr(49, sizeof kExpected),
              std::string(reinterpret_cast<const char*>(kExpected), sizeof kExpected));
    EXPECT_EQ(numberAt(content, 40), kCacheHeapBegin + 16) << "the snapshot";
}

struct FieldRow {
    std::size_t offset;
    std::uint32_t wrong;
    std::uint32_t right;
    int code;
};

/// In the order in which they are validated.
constexpr FieldRow kFields[] = {
    {73, 0, 1, -14},          {53, 78, 77, -11},   {57, 20, 16, -13},
    {49, 1, 0xCACEFE03, -12}, {61, 224, 225, -15}, {65, 47, TestValue::kFixedSize, -16},
};

TEST_F(HeaderTest, FieldsAreValidatedInTheirOrder) {
    for (const FieldRow& row : kFields) {
        setField(row.offset, row.wrong);
    }
    for (const FieldRow& row : kFields) {
        EXPECT_EQ(OpenCache::tryOpen(name_, false), row.code);
        setField(row.offset, row.right);
    }
    EXPECT_EQ(OpenCache::tryOpen(name_, false), 0);
    EXPECT_EQ(contentOf(*open()).size(), 1U);
}

TEST_F(HeaderTest, SomeFieldsAreNotValidated) {
    setField(69, 7);
    setField(73, 2);
    EXPECT_EQ(OpenCache::tryOpen(name_, false), 0);
    EXPECT_EQ(contentOf(*open()).size(), 1U);
    setField(40, 0);
    EXPECT_EQ(OpenCache::tryOpen(name_, false), -8) << "a finished header without a snapshot";
}

TEST_F(HeaderTest, CreatorsReplaceWhatIsRefusedAndOthersLeaveIt) {
    for (const FieldRow& row : kFields) {
        ASSERT_EQ(put(*open(), 1, 1, 100), 0);
        setField(row.offset, row.wrong);
        const std::string before = readFile(name_);
        EXPECT_EQ(TestCache::createInstance(name_, true, true, 0, 16, 64 << 20), nullptr) << row.code;
        EXPECT_EQ(readFile(name_), before);
        EXPECT_EQ(OpenCache::tryOpen(name_, true), row.code);
        EXPECT_EQ(static_cast<std::uint32_t>(numberAt(readFile(name_), 73)), 0U)
            << "marked, so that the next creator replaces it";
        const TestCachePointer cache = open();
        ASSERT_NE(cache, nullptr) << row.code;
        EXPECT_TRUE(contentOf(*cache).empty());
    }
}

TEST_F(HeaderTest, OpeningOnlyAlsoMakesAFileWhereNoneIs) {
    const std::string other = path("other");
    EXPECT_NE(TestCache::createInstance(other, true, true, 0, 16, 1 << 20), nullptr);
    for (const std::string& file : {other, other + ".lock"}) {
        EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms{0600}) << file;
    }
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
