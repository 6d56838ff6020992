#pragma once

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace HBX {

/// Owns one file descriptor.
class HBXDescriptor {
public:
    explicit HBXDescriptor(int descriptor) noexcept : descriptor_(descriptor) {}
    ~HBXDescriptor() {
        const int error = errno;
        close();
        errno = error;
    }
    HBXDescriptor(const HBXDescriptor&) = delete;
    HBXDescriptor& operator=(const HBXDescriptor&) = delete;

    bool isOpen() const noexcept { return descriptor_ >= 0; }
    int get() const noexcept { return descriptor_; }

    /// Closes ahead of the destructor, for callers to whom late write errors matter. 0, or -1 with errno.
    int close() noexcept {
        const int descriptor = std::exchange(descriptor_, -1);
        return descriptor < 0 ? 0 : ::close(descriptor);
    }

private:
    int descriptor_;
};

} // namespace HBX
