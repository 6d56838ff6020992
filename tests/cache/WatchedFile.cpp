#include "WatchedFile.h"

#include <algorithm>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace HBX::test {

bool WatchedFile::hasChanged() {
    const bool another = follow();
    const auto differs = [&](const Range& range) {
        const std::size_t begin = std::min(range.begin, memory_.size());
        return memory_.substr(begin, range.size) != std::string_view(bytes_).substr(begin, range.size);
    };
    const bool changed = another || std::any_of(ranges_.begin(), ranges_.end(), differs);
    if (changed) {
        bytes_ = memory_;
    }
    return changed;
}

/// @return whether the name stands for another file, or for one of another length.
bool WatchedFile::follow() {
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

void WatchedFile::unmap() {
    if (!memory_.empty()) {
        munmap(const_cast<char*>(memory_.data()), memory_.size());
        memory_ = {};
    }
}

} // namespace HBX::test
