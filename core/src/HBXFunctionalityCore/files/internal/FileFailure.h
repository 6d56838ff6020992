#pragma once

#include <cerrno>
#include <string>

#include <HBXCommon/HBXErrorMessage.h>

namespace HBX::internal {

/// Sets the message `Cannot ACTION "PATH": the system's text [errno]`. @return -1
inline int failOnFile(const char* action, const std::string& path) {
    const int error = errno;
    setErrorMessage(std::string("Cannot ") + action + " \"" + path + "\": " + errnoText(error) + " [" +
                    std::to_string(error) + ']');
    return -1;
}

} // namespace HBX::internal
