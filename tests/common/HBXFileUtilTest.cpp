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

class FileTest : public testing::Test, protected test::ScratchFolder {};

TEST_F(FileTest, ReadsBackWhatWasWritten) {
    for (const std::size_t size : {0U, 1U, 4095U, 4096U, 4097U, 100000U}) {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 31);
        ASSERT_EQ(writeFileAtomic(path("f"), bytes), 0) << getErrorMessage();
        std::string back;
        EXPECT_EQ(readFile(path("f"), size, back), 0);
        EXPECT_EQ(back, bytes);
    }
    EXPECT_EQ(files(), 1) << "nothing is left beside the file";
    std::string title;
    EXPECT_EQ(readFile("/proc/self/comm", 100, title), 0) << "reports no size";
    EXPECT_EQ(title, "common_test\n");
}

TEST_F(FileTest, ReadFailuresLeaveTheOutputAndNamePathAndCause) {
    writeFileAtomic(path("long"), "123");
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    const std::pair<std::string, int> rows[] = {{path("long"), EFBIG},
                                                {path("none"), ENOENT},
                                                {path(), EISDIR},
                                                {path("pipe"), EINVAL},
                                                {"/dev/zero", EINVAL}};
    for (const auto& [file, error] : rows) {
        std::string out = "old";
        EXPECT_EQ(readFile(file, 2, out), -1) << file;
        EXPECT_EQ(errno, error) << file;
        EXPECT_EQ(out, "old");
        EXPECT_NE(getErrorMessage().find("\"" + file + "\": " + errnoText(error)), std::string::npos)
            << getErrorMessage();
    }
}

TEST_F(FileTest, WritingKeepsModeAndLink) {
    const mode_t umaskBefore = ::umask(027);
    ASSERT_EQ(writeFileAtomic(path("f"), "new"), 0);
    EXPECT_EQ(fs::status(path("f")).permissions(), fs::perms(0640));
    fs::permissions(path("f"), fs::perms(0606));
    fs::create_symlink("f", path("link"));
    ASSERT_EQ(writeFileAtomic(path("link"), "newer"), 0);
    ::umask(umaskBefore);
    EXPECT_TRUE(fs::is_symlink(path("link")));
    EXPECT_EQ(test::contentOf(path("f")), "newer");
    EXPECT_EQ(fs::status(path("f")).permissions(), fs::perms(0606));
}

TEST_F(FileTest, WriteFailuresLeaveTheOldFileAndNothingElse) {
    fs::create_directory(path("d"));
    EXPECT_EQ(writeFileAtomic(path("d"), "x"), -1);
    EXPECT_EQ(errno, EISDIR);
    EXPECT_EQ(writeFileAtomic(path("none/f"), "x"), -1);
    EXPECT_EQ(errno, ENOENT);

    ASSERT_EQ(writeFileAtomic(path("f"), "old"), 0);
    EXPECT_EQ(test::inChild([&] {
                  test::limitFileSize(1000);
                  return writeFileAtomic(path("f"), std::string(100000, 'x')) == -1 ? errno : 0;
              }),
              EFBIG);
    EXPECT_EQ(test::contentOf(path("f")), "old");
    EXPECT_EQ(files(), 2) << "the folder and the old file";
}

TEST_F(FileTest, OpensClosedOnExecAndRemoves) {
    const int descriptor = openU(path("f"), O_CREAT | O_RDWR, 0600);
    ASSERT_GE(descriptor, 0);
    EXPECT_EQ(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
    ::close(descriptor);
    EXPECT_EQ(removeFile(path("f")), 0);
    EXPECT_EQ(removeFile(path("f")), -1);
}

} // namespace
} // namespace HBX
