#include <gtest/gtest.h>

#include <cerrno>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
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
    int times = 0;
    int error = 0; ///< 0: a write takes one byte less
} fault;

bool faultIsDue(const char* call) {
    if (fault.times == 0 || fault.call != call) {
        return false;
    }
    --fault.times;
    errno = fault.error;
    return true;
}

template <class Function>
Function* real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

ssize_t read(int descriptor, void* bytes, size_t size) {
    static auto* const call = real<ssize_t(int, void*, size_t)>("read");
    return faultIsDue("read") ? -1 : call(descriptor, bytes, size);
}

ssize_t write(int descriptor, const void* bytes, size_t size) {
    static auto* const call = real<ssize_t(int, const void*, size_t)>("write");
    if (!faultIsDue("write")) {
        return call(descriptor, bytes, size);
    }
    return fault.error != 0 ? -1 : call(descriptor, bytes, size - 1);
}

off_t lseek(int descriptor, off_t offset, int whence) noexcept {
    static auto* const call = real<off_t(int, off_t, int)>("lseek");
    return faultIsDue("lseek") ? -1 : call(descriptor, offset, whence);
}

int close(int descriptor) {
    static auto* const call = real<int(int)>("close");
    const int result = call(descriptor);
    errno = EIO; // closing may spoil errno at any time
    return result;
}

} // extern "C"

namespace HBX::test {
namespace {

std::size_t openFiles() {
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

/// Leaves no fault behind, and no open file.
class FileTransfer : public testing::Test {
protected:
    ~FileTransfer() override {
        fault = {};
        EXPECT_EQ(openFiles(), filesBefore_);
    }

    std::string path(const std::string& name) const { return folder_.path(name); }
    std::string write(const std::string& name, const std::string& bytes) const {
        return folder_.write(name, bytes);
    }
    std::string content(const std::string& name) const { return contentOf(path(name)); }

private:
    std::size_t filesBefore_ = openFiles();
    ScratchFolder folder_;
};

std::string pattern(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    }
    return bytes;
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
    const struct {
        std::size_t held;
        std::int64_t size;
        std::int64_t offset;
        int limit;
        const char* pieces;
        std::int64_t sizeThen;
    } rows[] = {
        {100, -1, 0, 524288, "100 ", 100},
        {100, -1, 0, 30, "30 30 30 10 ", 100},
        {1048576, -1, 0, 2147483647, "524288 524288 ", 1048576},
        {524289, -1, 0, 1000000, "524288 1 ", 524289},
        {100, 40, 0, 100, "40 40 20 ", 40}, // the buffer has 40 bytes; the caller counts
        {100, -1, 90, 100, "10 ", 10},
        {100, -1, 100, 100, "", 0},
        {100, -1, 1000, 100, "", 0},
        {100, -7, 0, 100, "", -7},
    };
    for (const auto& row : rows) {
        const std::string bytes = pattern(row.held);
        HBXFileUploadFromFile file(write("source", bytes), "peer", row.size, row.offset);
        std::string read;
        ASSERT_EQ(file.start(), 0) << getErrorMessage();
        EXPECT_EQ(file.size, row.sizeThen);
        EXPECT_EQ(piecesOf(file, row.limit, read), row.pieces) << row.held;
        EXPECT_EQ(getErrorMessage(), "Cannot read from file \"" + path("source") + "\": Success [0]");
        if (*row.pieces != '\0') {
            EXPECT_EQ(read, bytes.substr(static_cast<std::size_t>(row.offset)));
        }
        ASSERT_EQ(file.start(), 0) << "a second start begins anew";
        EXPECT_EQ(piecesOf(file, row.limit, read), row.pieces);
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
    EXPECT_EQ(shrunk.start(), -1);
    EXPECT_EQ(getErrorMessage(), "Src file size was changed \"" + source + '"');

    write("source", pattern(5000));
    ASSERT_EQ(grown.start(), 0);
    EXPECT_EQ(grown.size, 100);
    const char* piece = nullptr;
    int length = 5000;
    EXPECT_EQ(grown.fillBuffer(piece, length), 0);
    EXPECT_EQ(length, 100) << "the buffer holds no more";

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
    const std::string source = write("source", pattern(100));
    const struct {
        std::string path;
        Fault fault;
        int error;
    } rows[] = {
        {path("none"), {}, ENOENT},
        {source, {"lseek", 1, ESPIPE}, ESPIPE},
    };
    for (const auto& row : rows) {
        HBXFileUploadFromFile file(row.path, "peer", 50, 10);
        fault = row.fault;
        EXPECT_EQ(file.start(), -1);
        EXPECT_EQ(getErrorMessage(), "Cannot open src file \"" + row.path + "\": " + errnoText(row.error) +
                                         " [" + std::to_string(row.error) + ']');
        const char* piece = nullptr;
        int length = 10;
        EXPECT_EQ(file.fillBuffer(piece, length), -1) << "nothing is open";
        EXPECT_EQ(piece, nullptr);
    }
    HBXFileUploadFromFile folder(path(""), "peer", 1);
    ASSERT_EQ(folder.start(), 0);
    for (const auto& [length, reason] : {std::pair(1, "Is a directory [21]"), {0, "Invalid argument [22]"}}) {
        const char* piece = nullptr;
        int taken = length;
        EXPECT_EQ(folder.fillBuffer(piece, taken), -1);
        EXPECT_EQ(getErrorMessage(), "Cannot read from file \"" + folder.path + "\": " + reason);
    }
}

TEST_F(FileTransfer, SignalsInterruptNothing) {
    std::string bytes;
    HBXFileUploadFromFile source(write("source", pattern(100)), "peer");
    ASSERT_EQ(source.start(), 0);
    fault = {"read", 3, EINTR};
    EXPECT_EQ(piecesOf(source, 100, bytes), "100 ");

    HBXFileDownloadToFile target(path("target"), "peer", 100, 0, {}, nullptr);
    ASSERT_EQ(target.start(), 0);
    fault = {"write", 3, EINTR};
    EXPECT_EQ(target.saveBuffer(bytes.data(), 100), 0);
    target.finish();
    EXPECT_EQ(content("target"), bytes);
}

HBXFilerOptions filer(int flags) {
    HBXFilerOptions options;
    options.flags = flags;
    return options;
}

TEST_F(FileTransfer, DownloadsWhereTheOffsetSays) {
    const struct {
        const char* present; ///< null: there is no file
        std::int64_t offset;
        int flags;
        int result;
        std::string then;
    } rows[] = {
        {nullptr, 0, 0, 0, "new"},
        {nullptr, -2, 0, 0, "new"},
        {nullptr, 2, 0, 0, std::string("\0\0new", 5)},
        {"old old", 0, 0, -1, "old old"},
        {"old old", -2, 0, -1, "old old"},
        {"old old", -2, ~1, -1, "old old"}, // every bit but the one that counts
        {"old old", 0, 1, 0, "new old"},    // the tail stays
        {"old old", -1, 1, 0, "old oldnew"},
        {"old old", -2, 1, 0, "new"},
        {"old old", -3, 1, 0, "new old"},
        {"old old", 2, -1, 0, "olnewld"},
    };
    for (const auto& row : rows) {
        std::filesystem::remove(path("target"));
        if (row.present != nullptr) {
            write("target", row.present);
        }
        HBXFileDownloadToFile file(path("target"), "peer", 3, row.offset, filer(row.flags), nullptr);
        EXPECT_EQ(file.start(), row.result);
        if (row.result == 0) {
            EXPECT_EQ(file.saveBuffer("ne", 2), 0);
            EXPECT_EQ(file.saveBuffer(nullptr, 0), 0);
            EXPECT_EQ(file.saveBuffer("w", 1), 0);
        } else {
            EXPECT_EQ(getErrorMessage(), "Cannot open dst file \"" + path("target") + "\": File exists [17]");
        }
        EXPECT_EQ(content("target"), row.then) << row.offset << ' ' << row.flags;
    }
}

TEST_F(FileTransfer, NewFilesHaveTheModeThatIsAskedForUnderTheUmask) {
    const mode_t mask = umask(027);
    HBXSecurityAttributes attributes;
    const struct {
        const HBXSecurityAttributes* attributes;
        int mode; ///< -1: unset
        unsigned then;
    } rows[] = {{nullptr, -1, 0750}, {&attributes, -1, 0750}, {&attributes, 0666, 0640}, {&attributes, 0, 0}};
    for (const auto& row : rows) {
        attributes.mode.reset();
        if (row.mode >= 0) {
            attributes.mode = row.mode;
        }
        HBXFileDownloadToFile file(path("target"), "peer", 0, 0, {}, row.attributes);
        EXPECT_EQ(file.start(), 0);
        EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(path("target")).permissions()), row.then);
        std::filesystem::remove(path("target"));
    }
    umask(mask);
}

TEST_F(FileTransfer, ReasonsOfFailedDownloads) {
    HBXFileDownloadToFile nowhere(path("none/target"), "peer", 0, 0, {}, nullptr);
    EXPECT_EQ(nowhere.saveBuffer("x", 1), -1) << "not started";
    EXPECT_EQ(getErrorMessage(), "Cannot write to file \"" + nowhere.path + "\": Bad file descriptor [9]");
    EXPECT_EQ(nowhere.start(), -1);
    EXPECT_EQ(getErrorMessage(),
              "Cannot open dst file \"" + nowhere.path + "\": No such file or directory [2]");

    HBXFileDownloadToFile full("/dev/full", "peer", 0, 0, filer(1), nullptr);
    ASSERT_EQ(full.start(), 0);
    EXPECT_EQ(full.saveBuffer("x", 1), -1);
    EXPECT_EQ(getErrorMessage(), "Cannot write to file \"/dev/full\": No space left on device [28]");
    EXPECT_EQ(full.saveBuffer("x", -1), -1);

    HBXFileDownloadToFile part(path("target"), "peer", 0, 0, {}, nullptr);
    ASSERT_EQ(part.start(), 0);
    fault = {"write", 1, 0};
    EXPECT_EQ(part.saveBuffer("abc", 3), -1) << "the system took two bytes";
    EXPECT_EQ(getErrorMessage(), "Cannot write to file \"" + part.path + "\": No space left on device [28]");
    part.finish();

    fault = {"lseek", 1, EINVAL};
    HBXFileDownloadToFile seeks(path("target"), "peer", 0, 5, filer(1), nullptr);
    EXPECT_EQ(seeks.start(), -1);
    EXPECT_EQ(getErrorMessage(), "Cannot open dst file \"" + part.path + "\": Invalid argument [22]");
}

TEST_F(FileTransfer, AFileThatIsOpenIsNotOpenedAgain) {
    HBXFile file;
    std::int64_t remaining = -1;
    ASSERT_EQ(file.openRead(write("one", pattern(10)), 0, &remaining), 0);
    ASSERT_EQ(file.openRead(path("two"), 4, &remaining), 0) << "goes on with the file that it has";
    EXPECT_EQ(remaining, 6);
    char byte = 0;
    EXPECT_EQ(file.read(&byte, 1), 1);
    EXPECT_EQ(byte, pattern(10)[4]);
    HBXFile other(std::move(file));
    EXPECT_TRUE(other.isOpened());
    other.close();
    EXPECT_FALSE(other.isOpened());
}

TEST_F(FileTransfer, InMemoryBytesAreHandedOutWholeAndChecked) {
    const std::string zeros("a\0b", 3);
    const struct {
        std::int64_t size;
        const char* bytes;
        std::int64_t sizeThen;
        int result;
        std::string data;
    } rows[] = {
        {-1, "abc", 3, 0, "abc"}, {3, zeros.data(), 3, 0, zeros}, {2, "abc", 2, 0, "ab"},
        {-2, "abc", -2, -1, ""},  {-1, nullptr, -1, -1, ""},      {2147483648, nullptr, 2147483648, -1, ""},
    };
    for (const auto& row : rows) {
        HBXFileUploadInfo file("local", "peer", row.size, 0, row.bytes);
        EXPECT_EQ(file.size, row.sizeThen);
        EXPECT_EQ(file.start(), 0);
        const char* piece = nullptr;
        int length = 1; // takes no notice of it
        EXPECT_EQ(file.fillBuffer(piece, length), row.result) << row.size;
        if (row.result == 0) {
            EXPECT_EQ(std::string(piece, static_cast<std::size_t>(length)), row.data);
        } else {
            EXPECT_EQ(getErrorMessage(), "Invalid data size of file \"peer\"");
        }
        file.finish();
    }
    HBXFileDownloadInfo download("local", "peer", -1, 0, {}, nullptr);
    EXPECT_EQ(download.start() + download.saveBuffer("a\0b", 3) + download.saveBuffer("c", 1), 0);
    EXPECT_EQ(download.data, zeros + 'c');
}

} // namespace
} // namespace HBX::test
