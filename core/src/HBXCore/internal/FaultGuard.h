#pragma once

#include <atomic>
#include <cstddef>

namespace HBX::internal {

/// A range of mapped memory that survives its file being cut off: once the guard is installed, touching a
/// page that the file no longer has gives zeros and sets a flag instead of ending the process.
class GuardedRange {
public:
    /// @param damaged  the flag; must outlive this.
    GuardedRange(void* begin, std::size_t size, std::atomic<bool>& damaged);
    ~GuardedRange();
    GuardedRange(const GuardedRange&) = delete;
    GuardedRange& operator=(const GuardedRange&) = delete;

private:
    friend struct FaultHandler;
    char* begin_;
    std::size_t size_;
    std::atomic<bool>& damaged_;
};

/// Takes over SIGBUS for the whole process. 0; -1 with errno. Faults elsewhere go to who had the signal
/// before.
int installFaultGuard();

} // namespace HBX::internal
