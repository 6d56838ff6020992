#include "CacheFileAudit.h"
#include "CacheTestUtil.h"

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
    const std::string content = contentOf(other);
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
        std::uint32_t offset, wrong;
        int code;
    } rows[] = {{73, 0, -14}, {53, 78, -11}, {57, 20, -13}, {49, 1, -12}, {61, 224, -15}, {65, 47, -16}};
    for (const auto* row = std::begin(rows); row != std::end(rows); ++row) {
        ASSERT_EQ(put(*open(), 1, 1, 100), 0);
        std::for_each(row, std::end(rows), [&](const auto& r) { writeNumberAt(name_, r.offset, r.wrong); });
        const std::string before = contentOf(name_);
        EXPECT_EQ(TestCache::createInstance(name_, true, true, 0, 16, 64 << 20), nullptr) << row->code;
        EXPECT_EQ(contentOf(name_), before);
        EXPECT_EQ(OpenCache::tryOpen(name_, true), row->code);
        EXPECT_EQ(static_cast<std::uint32_t>(numberAt(contentOf(name_), 73)), 0U)
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
    EXPECT_EQ(internal::grownFileSize(4096, 5112, kPage), 32768U);
    EXPECT_EQ(internal::grownFileSize(40960, 624, kPage), 49152U);
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

/// Beyond the reserved addresses every growth moves the mapping.
TEST_F(HeaderTest, MappingsAreReadOnlyBetweenOperationsWhenAskedFor) {
    TestManager::wishes.reservation = 64 << 10;
    for (const bool keepWritable : {false, true}) {
        const TestCachePointer cache = TestCache::createInstance(name_, false, keepWritable, 0, 16, 64 << 20);
        ASSERT_NE(cache, nullptr);
        const auto list = cache->getList();
        const Content before = contentOf(*list);
        for (std::uint64_t i = 0; i < 100; ++i) {
            ASSERT_EQ(put(*cache, i, i, 2000), 0);
        }
        const auto grown = cache->getList();
        EXPECT_EQ(isWritable(&*list->begin()), keepWritable) << "the mapping before the file grew";
        EXPECT_EQ(isWritable(&*grown->begin()), keepWritable);
        EXPECT_EQ(contentOf(*list), before);
        EXPECT_EQ(contentOf(*grown).size(), 100U);
    }
}

} // namespace
} // namespace HBX::test
