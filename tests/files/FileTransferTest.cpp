#include <gtest/gtest.h>

#include <cerrno>
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/files/HBXFileDownload.h>
#include <HBXFunctionalityCore/files/HBXFileUpload.h>
#include <HBXFunctionalityCore/modules/HBXSecurityMBase.h>

#include "support/ScratchFolder.h"

// A layer between the library and the system that can fail: these stand before those of the C library.
namespace {

/// What the next calls of one function meet.
struct Fault {
    std::string call;
    int times = 0, error = 0;
} fault;

bool faultIsDue(const char* call) {
    if (fault.times == 0 || fault.call != call) {
        return false;
    }
    --fault.times;
    errno = fault.error;
    return true;
}

/// The system's answer, unless a fault is due.
template <class Result, class... Arguments>
Result answer(const char* call, Arguments... arguments) {
    auto* const real = reinterpret_cast<Result (*)(Arguments...)>(dlsym(RTLD_NEXT, call));
    return faultIsDue(call) ? -1 : real(arguments...);
}

} // namespace

extern "C" {

ssize_t read(int descriptor, void* bytes, size_t size) {
    return answer<ssize_t>("read", descriptor, bytes, size);
}

ssize_t write(int descriptor, const void* bytes, size_t size) {
    return answer<ssize_t>("write", descriptor, bytes, faultIsDue("short write") ? size - 1 : size);
}

off_t lseek(int descriptor, off_t offset, int whence) noexcept {
    return answer<off_t>("lseek", descriptor, offset, whence);
}

int fstat(int descriptor, struct stat* status) noexcept { return answer<int>("fstat", descriptor, status); }

int close(int descriptor) {
    const int result = answer<int>("close", descriptor);
    errno = EIO; // closing may spoil errno at any time
    return result;
}

} // extern "C"

namespace HBX::test {
namespace {

std::ptrdiff_t openFiles() { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); }

/// Leaves no fault behind, and no open file.
class FileTransfer : public testing::Test, protected ScratchFolder {
protected:
    ~FileTransfer() override {
        fault = {};
        EXPECT_EQ(openFiles(), filesBefore_);
    }

    static void expectFailure(int result, const std::string& reason) {
        EXPECT_EQ(result, -1) << reason;
        EXPECT_EQ(getErrorMessage(), reason);
    }

private:
    std::ptrdiff_t filesBefore_ = openFiles();
};

std::string pattern(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    }
    return bytes;
}

HBXFilerOptions filer(int flags) {
    HBXFilerOptions options;
    options.flags = flags;
    return options;
}

/// The lengths of the pieces until a piece fails, and all bytes together.
std::string piecesOf(HBXFileUploadInfo& file, int limit, std::string& bytes) {
    std::string lengths;
    for (;;) {
        const char* piece = nullptr;
        int length = limit;
        if (file.fillBuffer(piece, length) != 0) {
            return lengths;
        }
        lengths += std::to_string(length) + ' ';
        bytes.append(piece, static_cast<std::size_t>(length));
    }
}

TEST_F(FileTransfer, UploadsInPiecesOfTheBuffer) {
    const std::tuple<std::size_t, std::int64_t, std::int64_t, int, std::string, std::int64_t> rows[] = {
        {100, -1, 0, 524288, "100 ", 100},
        {100, -1, 0, 30, "30 30 30 10 ", 100},
        {1048576, -1, 0, 2147483647, "524288 524288 ", 1048576},
        {100, 40, 0, 100, "40 40 20 ", 40}, // the buffer has 40 bytes; the caller counts
        {100, -1, 90, 100, "10 ", 10},
        {100, -1, 100, 100, "", 0},
        {100, -7, 0, 100, "", -7},
    };
    for (const auto& [held, size, offset, limit, pieces, sizeThen] : rows) {
        const std::string bytes = pattern(held);
        HBXFileUploadFromFile file(write("source", bytes), "peer", size, offset);
        std::string read;
        ASSERT_EQ(file.start(), 0) << getErrorMessage();
        EXPECT_EQ(file.size, sizeThen);
        fault = {"read", 3, EINTR}; // signals interrupt nothing
        EXPECT_EQ(piecesOf(file, limit, read), pieces) << held;
        EXPECT_EQ(getErrorMessage(), "Cannot read from file \"" + path("source") + "\": Success [0]");
        EXPECT_EQ(read, pieces.empty() ? "" : bytes.substr(static_cast<std::size_t>(offset)));
        ASSERT_EQ(file.start(), 0) << "a second start begins anew";
        EXPECT_EQ(piecesOf(file, limit, read), pieces);
        file.finish();
    }
}

TEST_F(FileTransfer, AnUploadWhoseFileChangesIsNoticed) {
    const std::string source = write("source", pattern(100));
    HBXFileUploadFromFile shrunk(source, "peer");
    HBXFileUploadFromFile grown(source, "peer");
    HBXFileUploadFromFile created(path("later"), "peer");
    EXPECT_EQ(created.size, HBXFileInfo::kWholeFile);
    std::string bytes;

    write("source", pattern(99));
    expectFailure(shrunk.start(), "Src file size was changed \"" + source + '"');

    write("source", pattern(250));
    ASSERT_EQ(grown.start(), 0);
    EXPECT_EQ(grown.size, 100);
    EXPECT_EQ(piecesOf(grown, 5000, bytes), "100 100 50 ") << "the buffer holds no more";

    write("later", pattern(600000));
    ASSERT_EQ(created.start(), 0);
    EXPECT_EQ(created.size, 600000);
    EXPECT_EQ(piecesOf(created, 524288, bytes), "524288 75712 ");

    HBXFileUploadFromFile cut(source, "peer"); // while it is sent
    ASSERT_EQ(cut.start(), 0);
    std::filesystem::resize_file(source, 30);
    EXPECT_EQ(piecesOf(cut, 1000, bytes), "30 ");
}

TEST_F(FileTransfer, ReasonsOfFailedUploads) {
    HBXFileUploadFromFile file(write("source", pattern(100)), "peer", 50, 10);
    std::string bytes;
    for (const auto& [due, reason] :
         {std::pair(Fault{"lseek", 1, ESPIPE}, "Illegal seek [29]"),
          {{"fstat", 1, EOVERFLOW}, "Value too large for defined data type [75]"}}) {
        fault = due;
        expectFailure(file.start(), "Cannot open src file \"" + file.path + "\": " + reason);
        EXPECT_EQ(piecesOf(file, 10, bytes), "") << "nothing is open";
    }
    ASSERT_EQ(file.start(), 0);
    EXPECT_EQ(piecesOf(file, 0, bytes), "");
    EXPECT_EQ(getErrorMessage(), "Cannot read from file \"" + file.path + "\": Invalid argument [22]");
}

TEST_F(FileTransfer, MissingPermissionsAreSaid) {
    const std::string secret = write("secret", "x");
    std::filesystem::permissions(secret, std::filesystem::perms::none);
    HBXFileUploadFromFile upload(secret, "peer", 1);
    HBXFileDownloadToFile download(secret, "peer", 0, 0, filer(1), nullptr);
    const uid_t user = geteuid();
    ASSERT_TRUE(user != 0 || seteuid(65534) == 0) << "nothing is forbidden to root";
    expectFailure(upload.start(), "Cannot open src file \"" + secret + "\": Permission denied [13]");
    expectFailure(download.start(), "Cannot open dst file \"" + secret + "\": Permission denied [13]");
    EXPECT_EQ(seteuid(user), 0);
}

TEST_F(FileTransfer, DownloadsWhereTheOffsetSays) {
    const std::string target = path("target");
    const struct {
        const char* present; ///< null: there is no file
        std::int64_t offset;
        int flags;
        std::string then;
    } rows[] = {
        // Of the flags one bit counts; behind what is written the old bytes stay.
        {nullptr, 0, 0, "new"},        {nullptr, 2, 0, std::string("\0\0new", 5)},
        {"old old", 0, 0, "old old"},  {"old old", -2, ~1, "old old"},
        {"old old", 0, 1, "new old"},  {"old old", -1, 1, "old oldnew"},
        {"old old", -2, 1, "new"},     {"old old", -3, 1, "new old"},
        {"old old", 2, -1, "olnewld"},
    };
    for (const auto& row : rows) {
        std::filesystem::remove(target);
        if (row.present != nullptr) {
            write("target", row.present);
        }
        HBXFileDownloadToFile file(target, "peer", 3, row.offset, filer(row.flags), nullptr);
        const int result = file.start();
        if (row.then == "old old") {
            expectFailure(result, "Cannot open dst file \"" + target + "\": File exists [17]");
        } else {
            fault = {"write", 3, EINTR}; // signals interrupt nothing
            EXPECT_EQ(result + file.saveBuffer("ne", 2) + file.saveBuffer(nullptr, 0), 0);
            EXPECT_EQ(file.saveBuffer("w", 1), 0);
        }
        EXPECT_EQ(contentOf(target), row.then) << row.offset << ' ' << row.flags;
    }
}

TEST_F(FileTransfer, NewFilesHaveTheModeThatIsAskedForUnderTheUmask) {
    const mode_t mask = umask(027);
    HBXSecurityAttributes unset, readable, none;
    readable.mode = 0666;
    none.mode = 0;
    const std::pair<const HBXSecurityAttributes*, unsigned> rows[] = {
        {nullptr, 0750}, {&unset, 0750}, {&readable, 0640}, {&none, 0}};
    for (const auto& [attributes, mode] : rows) {
        HBXFileDownloadToFile file(path("target"), "peer", 0, 0, {}, attributes);
        EXPECT_EQ(file.start(), 0);
        EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(file.path).permissions()), mode);
        std::filesystem::remove(file.path);
    }
    umask(mask);
}

TEST_F(FileTransfer, ReasonsOfFailedDownloads) {
    HBXFileDownloadToFile nowhere(path("none/target"), "peer", 0, 0, {}, nullptr);
    expectFailure(nowhere.saveBuffer("x", 1), // not started
                  "Cannot write to file \"" + nowhere.path + "\": Bad file descriptor [9]");
    expectFailure(nowhere.start(),
                  "Cannot open dst file \"" + nowhere.path + "\": No such file or directory [2]");

    HBXFileDownloadToFile full("/dev/full", "peer", 0, 0, filer(1), nullptr);
    ASSERT_EQ(full.start(), 0);
    const std::string noRoom = "\": No space left on device [28]";
    expectFailure(full.saveBuffer("x", 1), "Cannot write to file \"/dev/full" + noRoom);
    expectFailure(full.saveBuffer("x", -1), "Cannot write to file \"/dev/full\": Invalid argument [22]");

    HBXFileDownloadToFile part(path("target"), "peer", 0, 5, {}, nullptr);
    fault = {"lseek", 1, EINVAL};
    expectFailure(part.start(), "Cannot open dst file \"" + part.path + "\": Invalid argument [22]");
    std::filesystem::remove(part.path);
    ASSERT_EQ(part.start(), 0);
    fault = {"short write", 1, 0};
    expectFailure(part.saveBuffer("abc", 3), "Cannot write to file \"" + part.path + noRoom);
}

TEST_F(FileTransfer, AFileThatIsOpenIsNotOpenedAgain) {
    HBXFile file;
    std::int64_t remaining = -1;
    fault = {"lseek", 1, ESPIPE};
    EXPECT_EQ(file.openRead(write("one", pattern(10)), 1, &remaining), -1);
    EXPECT_FALSE(file.isOpened());
    ASSERT_EQ(file.openRead(path("one"), 0, &remaining), 0);
    ASSERT_EQ(file.openRead(path("two"), 4, &remaining), 0) << "goes on with the file that it has";
    EXPECT_EQ(remaining, 6);
    HBXFile other(std::move(file));
    HBXFile third;
    third = std::move(other);
    char byte = 0;
    EXPECT_EQ(third.read(&byte, 1), 1);
    EXPECT_EQ(byte, pattern(10)[4]);
    third.close();
    EXPECT_FALSE(third.isOpened());
}

TEST_F(FileTransfer, InMemoryBytesAreHandedOutWholeAndChecked) {
    const std::string zeros("a\0b", 3);
    // What has no bytes then is refused.
    const std::tuple<std::int64_t, const char*, std::string> rows[] = {
        {-1, "abc", "abc"}, {3, zeros.data(), zeros}, {2, "abc", "ab"},
        {-2, "abc", ""},    {-1, nullptr, ""},        {2147483648, nullptr, ""},
    };
    for (const auto& [size, bytes, data] : rows) {
        HBXFileUploadInfo file("local", "peer", size, 0, bytes);
        EXPECT_EQ(file.size, data.empty() ? size : static_cast<std::int64_t>(data.size()));
        EXPECT_EQ(file.start(), 0);
        const char* piece = nullptr;
        int length = 1; // takes no notice of it
        const int result = file.fillBuffer(piece, length);
        if (data.empty()) {
            expectFailure(result, "Invalid data size of file \"peer\"");
        } else {
            EXPECT_EQ(std::string(piece, static_cast<std::size_t>(length)), data);
        }
        file.finish();
    }
    HBXFileDownloadInfo download("local", "peer", -1, 0, {}, nullptr);
    EXPECT_EQ(download.start() + download.saveBuffer("a\0b", 3) + download.saveBuffer("c", 1), 0);
    EXPECT_EQ(download.data, zeros + 'c');
}

} // namespace
} // namespace HBX::test
