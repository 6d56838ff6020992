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
    explicit WatchedFile(std::string path) : path_(std::move(path)) {}
    ~WatchedFile() { unmap(); }
    WatchedFile(const WatchedFile&) = delete;
    WatchedFile& operator=(const WatchedFile&) = delete;

    /// Whether it is another file or holds other bytes than at the last call.
    bool hasChanged() {
        if (!follow() && memory_ == bytes_) {
            return false;
        }
        bytes_ = memory_;
        return true;
    }
    bool exists() const { return inode_ != 0; }
    ino_t inode() const { return inode_; }
    /// Of the last call.
    const std::string& bytes() const { return bytes_; }

private:
    /// @return whether the name stands for another file, or for one of another length.
    bool follow() {
        struct stat status {};
        if (stat(path_.c_str(), &status) != 0) {
            status = {};
        }
        const auto size = static_cast<std::size_t>(status.st_size);
        if (status.st_ino == inode_ && size == memory_.size()) {
            return false;
        }
        unmap();
        inode_ = status.st_ino;
        if (size > 0) {
            const int file = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
            memory_ = {static_cast<const char*>(mmap(nullptr, size, PROT_READ, MAP_SHARED, file, 0)), size};
            ::close(file);
        }
        return true;
    }
    void unmap() {
        if (!memory_.empty()) {
            munmap(const_cast<char*>(memory_.data()), memory_.size());
            memory_ = {};
        }
    }

    std::string path_;
    ino_t inode_ = 0;
    std::string_view memory_;
    std::string bytes_;
};

} // namespace HBX::test
