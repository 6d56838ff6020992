#pragma once

#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace HBX::test {

/// A file that other processes change while it is looked at.
class WatchedFile {
public:
    ino_t inode = 0;   ///< Of the last look; 0 when there was no file.
    std::string bytes; ///< Of the last look.

    explicit WatchedFile(std::string path) : path_(std::move(path)) {}
    ~WatchedFile() { unmap(); }
    WatchedFile(const WatchedFile&) = delete;
    WatchedFile& operator=(const WatchedFile&) = delete;

    /// Whether it is another file or holds other bytes than at the last look.
    bool hasChanged() {
        struct stat status {};
        if (stat(path_.c_str(), &status) != 0) {
            status = {};
        }
        if (status.st_ino != inode || static_cast<std::size_t>(status.st_size) != memory_.size()) {
            inode = status.st_ino;
            map(static_cast<std::size_t>(status.st_size));
        } else if (memory_ == bytes) {
            return false;
        }
        bytes = memory_;
        return true;
    }

private:
    void map(std::size_t size) {
        unmap();
        const int file = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
        memory_ = {static_cast<const char*>(mmap(nullptr, size, PROT_READ, MAP_SHARED, file, 0)), size};
        ::close(file);
    }
    /// Nothing happens when it is empty, or missing.
    void unmap() const { munmap(const_cast<char*>(memory_.data()), memory_.size()); }

    std::string path_;
    std::string_view memory_;
};

} // namespace HBX::test
