#pragma once

#include <HBXCommon/HBXExport.h>

#include <cstddef>
#include <string>
#include <string_view>

// Files and the process. What returns int gives 0 (or a descriptor) for success and -1 for failure, with
// errno and, where said so, the thread's error message set.

namespace HBX {

/// Opens a file by its UTF-8 path, closed when another program is executed.
/// @param flags  those of open(2).
/// @param mode   permissions of a file that is created, under the umask.
/// @return the descriptor, owned by the caller, or -1 with errno.
HBX_EXPORT int openU(const std::string& path, int flags, int mode);

/// Removes a file; -1 with errno (ENOENT when there is none) and error message.
HBX_EXPORT int removeFile(const std::string& path);

/// Reads a whole regular file; follows links, never waits on pipes or devices.
/// @param maxBytes  a longer file is a failure (EFBIG).
/// @param out       replaced on success, untouched on failure.
/// @return 0, or -1 with errno and error message.
HBX_EXPORT int readFile(const std::string& path, std::size_t maxBytes, std::string& out);

/// Replaces or creates a regular file so that after a crash it holds either the old or the new bytes, whole.
/// The new file stands beside the old one until it is safely stored, hence the folder must be writable. Keeps
/// the permissions of the old file (0644 under the umask for a new one) and, behind a link, the link.
/// @return 0, or -1 with errno and error message; the old file is then intact and nothing is left behind,
/// with
///         one exception: when only the folder could not be stored, the new file is in place already.
HBX_EXPORT int writeFileAtomic(const std::string& path, std::string_view bytes);

/// Lets other threads run.
HBX_EXPORT void schedYield();

/// The name under which this process was started, without folders.
HBX_EXPORT std::string getproctitle();

} // namespace HBX
