#pragma once

#include <cstdint>

namespace HBX::internal {

/// Locks on bytes of a file that belong to the open file, not to the process: they outlive the closing of
/// other descriptors and end with the last copy of this one, also when the process is killed.
enum class ByteLock { Shared, Exclusive };

/// @return 0; 1 when somebody else holds it; -1 with errno.
int tryLockByte(int descriptor, std::int64_t byte, ByteLock kind);
void unlockByte(int descriptor, std::int64_t byte);
/// Whether anybody else holds a lock on one of `length` bytes.
bool isAnyByteLocked(int descriptor, std::int64_t first, std::int64_t length);

} // namespace HBX::internal
