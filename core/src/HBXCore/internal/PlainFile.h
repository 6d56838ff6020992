#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

struct stat;

namespace HBX::internal {

/// Opens a file that only we may have made: regular, ours, under one name, no link, on a local disk. A new
/// one gets mode 0600.
/// @param status  of the file, on success.
/// @return the descriptor, or -1 with errno and error message; a refused file is untouched.
int openPlainFile(const std::string& path, bool create, struct stat& status);

/// Takes a file away from other users. 0; -1 with errno and error message.
int restrictAccess(int descriptor, const std::string& path);

/// Makes a file longer without holes, so that writing to its pages cannot fail for want of space.
/// @return 0; -1 with errno and error message.
int extendFile(int descriptor, std::uint64_t from, std::uint64_t to, const std::string& path);

/// Reads exactly `size` bytes. 0, or -1 with errno (0 when the file is too short).
int readAt(int descriptor, void* to, std::size_t size, std::uint64_t offset);
int writeAt(int descriptor, const void* from, std::size_t size, std::uint64_t offset);

} // namespace HBX::internal
