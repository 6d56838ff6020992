#include <HBXCommon/HBXErrorMessage.h>

#include <HBXCommon/HBXTLS.h>

#include <cerrno>
#include <system_error>

namespace HBX {

namespace {

/// Never destroyed, so that static destructors may still report.
HBXTLS<std::string>& messages() {
    static auto& storage = *new HBXTLS<std::string>();
    return storage;
}

} // namespace

void setErrorMessage(std::string message) { messages().set(std::move(message)); }

const std::string& getErrorMessage() { return messages().get(); }

void clearErrorMessage() { messages().get().clear(); }

std::string errnoText(int error) { return std::generic_category().message(error); }

int failWithErrno(std::string_view action, std::string_view object) {
    const int error = errno;
    std::string message("Cannot ");
    message.append(action).append(" \"").append(object).append("\": ").append(errnoText(error));
    setErrorMessage(std::move(message));
    errno = error;
    return -1;
}

} // namespace HBX
