#pragma once

#include <HBXCommon/HBXExport.h>

#include <string>
#include <string_view>

namespace HBX {

/// The reason of the last failure on the calling thread, for people. Operations that fail set it; operations
/// that succeed leave it alone.
HBX_EXPORT void setErrorMessage(std::string message);

/// Empty when nothing was set yet. The reference lives as long as the thread and shows later messages.
HBX_EXPORT const std::string& getErrorMessage();

/// Empties the calling thread's message.
HBX_EXPORT void clearErrorMessage();

/// The system's text for an errno value, such as "No such file or directory".
HBX_EXPORT std::string errnoText(int error);

/// Sets the message from the current errno, with action and object: `Cannot open "/a/b": Permission denied`.
/// Keeps errno and returns -1, so that a caller may `return failWithErrno("open", path);`.
HBX_EXPORT int failWithErrno(std::string_view action, std::string_view object);

} // namespace HBX
