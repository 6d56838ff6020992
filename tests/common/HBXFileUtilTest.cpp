#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXFileUtil.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/ChildProcess.h"
#include "support/ScratchFolder.h"

namespace HBX {
namespace {

namespace fs = std::filesystem;

class FileTest : public testing::Test {
protected:
    std::string at(const char* name) const { return folder.path(name); }
    static unsigned modeOf(const std::string& path) {
        return static_cast<unsigned>(fs::status(path).permissions());
    }

    const test::ScratchFolder folder;
};

TEST_F(FileTest, ReadsBackWhatWasWritten) {
    for (const std::size_t size : {0U, 1U, 4095U, 4096U, 4097U, 100000U}) {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 31);
        ASSERT_EQ(writeFileAtomic(at("f"), bytes), 0) << getErrorMessage();
        std::string back;
        EXPECT_EQ(readFile(at("f"), size, back), 0);
        EXPECT_EQ(back, bytes);
    }
    EXPECT_EQ(folder.files(), 1) << "nothing is left beside the file";
    std::string title;
    EXPECT_EQ(readFile("/proc/self/comm", 100, title), 0) << "reports no size";
    EXPECT_EQ(title, "common_test\n");
}

TEST_F(FileTest, ReadFailuresLeaveTheOutputAndNamePathAndCause) {
    writeFileAtomic(at("long"), "123");
    ASSERT_EQ(::mkfifo(at("pipe").c_str(), 0600), 0);
    const struct {
        std::string path;
        int error;
    } rows[] = {{at("long"), EFBIG},
                {at("none"), ENOENT},
                {folder.path(), EISDIR},
                {at("pipe"), EINVAL},
                {"/dev/zero", EINVAL}};
    for (const auto& row : rows) {
        std::string out = "old";
        EXPECT_EQ(readFile(row.path, 2, out), -1) << row.path;
        EXPECT_EQ(errno, row.error) << row.path;
        EXPECT_EQ(out, "old");
        EXPECT_NE(getErrorMessage().find("\"" + row.path + "\": " + errnoText(row.error)), std::string::npos)
            << getErrorMessage();
    }
}

TEST_F(FileTest, WritingKeepsModeAndLink) {
    const mode_t umaskBefore = ::umask(027);
    ASSERT_EQ(writeFileAtomic(at("f"), "new"), 0);
    EXPECT_EQ(modeOf(at("f")), 0640U);
    fs::permissions(at("f"), fs::perms(0606));
    fs::create_symlink("f", at("link"));
    ASSERT_EQ(writeFileAtomic(at("link"), "newer"), 0);
    ::umask(umaskBefore);
    EXPECT_TRUE(fs::is_symlink(at("link")));
    EXPECT_EQ(test::contentOf(at("f")), "newer");
    EXPECT_EQ(modeOf(at("f")), 0606U);
}

TEST_F(FileTest, WriteFailuresLeaveTheOldFileAndNothingElse) {
    fs::create_directory(at("d"));
    EXPECT_EQ(writeFileAtomic(at("d"), "x"), -1);
    EXPECT_EQ(errno, EISDIR);
    EXPECT_EQ(writeFileAtomic(at("none/f"), "x"), -1);
    EXPECT_EQ(errno, ENOENT);

    ASSERT_EQ(writeFileAtomic(at("f"), "old"), 0);
    EXPECT_EQ(test::inChild([&] {
                  test::limitFileSize(1000);
                  return writeFileAtomic(at("f"), std::string(100000, 'x')) == -1 ? errno : 0;
              }),
              EFBIG);
    EXPECT_EQ(test::contentOf(at("f")), "old");
    EXPECT_EQ(folder.files(), 2) << "the folder and the old file";
}

TEST_F(FileTest, OpensClosedOnExecAndRemoves) {
    const int descriptor = openU(at("f"), O_CREAT | O_RDWR, 0600);
    ASSERT_GE(descriptor, 0);
    EXPECT_EQ(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
    ::close(descriptor);
    EXPECT_EQ(removeFile(at("f")), 0);
    EXPECT_EQ(removeFile(at("f")), -1);
}

TEST(Process, TitleIsTheProgramsName) { EXPECT_NE(getproctitle().find("common_test"), std::string::npos); }

} // namespace
} // namespace HBX
