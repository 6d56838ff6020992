#include "WatchedFile.h"

#include <algorithm>
#include <cstring>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace HBX::test {

bool WatchedFile::hasChanged() {
    const bool another = follow();
    const std::vector<Range> whole{{0, bytes_.size()}};
    const std::vector<Range>& ranges = ranges_.empty() ? whole : ranges_;
    const bool changed = another || std::any_of(ranges.begin(), ranges.end(),
                                                [&](const Range& range) { return differs(range); });
    if (changed && memory_ != nullptr) {
        std::memcpy(bytes_.data(), memory_, bytes_.size());
    }
    return changed;
}

/// @return whether the name stands for another file, or for a longer one.
bool WatchedFile::follow() {
    struct stat status {};
    if (stat(path_.c_str(), &status) != 0) {
        status = {};
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    if (status.st_ino == inode_ && size == bytes_.size()) {
        return false;
    }
    unmap();
    inode_ = status.st_ino;
    bytes_.assign(size, 0);
    if (size > 0) {
        const int file = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
        memory_ = static_cast<const char*>(mmap(nullptr, size, PROT_READ, MAP_SHARED, file, 0));
        ::close(file);
    }
    return true;
}

void WatchedFile::unmap() {
    if (memory_ != nullptr) {
        munmap(const_cast<char*>(memory_), bytes_.size());
        memory_ = nullptr;
    }
}

bool WatchedFile::differs(const Range& range) const {
    if (range.begin >= bytes_.size()) {
        return false;
    }
    const std::size_t size = std::min(range.size, bytes_.size() - range.begin);
    return std::memcmp(memory_ + range.begin, bytes_.data() + range.begin, size) != 0;
}

} // namespace HBX::test
