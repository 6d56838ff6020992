#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace HBX::test {

/// A file that other processes change while it is looked at.
class WatchedFile {
public:
    struct Range {
        std::size_t begin;
        std::size_t size;
    };

    /// @param ranges  outside of them nothing changes.
    WatchedFile(std::string path, std::vector<Range> ranges)
        : path_(std::move(path)), ranges_(std::move(ranges)) {}
    ~WatchedFile() { unmap(); }
    WatchedFile(const WatchedFile&) = delete;
    WatchedFile& operator=(const WatchedFile&) = delete;

    /// Whether it is another file or holds other bytes than at the last call.
    bool hasChanged();
    bool exists() const { return inode_ != 0; }
    ino_t inode() const { return inode_; }
    /// Of the last call.
    const std::string& bytes() const { return bytes_; }

private:
    bool follow();
    void unmap();

    std::string path_;
    std::vector<Range> ranges_;
    ino_t inode_ = 0;
    std::string_view memory_;
    std::string bytes_;
};

} // namespace HBX::test
