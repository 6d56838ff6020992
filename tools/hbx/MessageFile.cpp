#include "MessageFile.h"

#include <cstdlib>

#include <HBXCommon/HBXErrorMessage.h>

#include "Console.h"

namespace HBX::tool {

namespace {

constexpr std::string_view kBinaryMark = "HBXM";

using Buffer = std::unique_ptr<char, decltype(&std::free)>;

[[noreturn]] void failWithReason(const std::string& path) {
    throw Failure(ExitCode::InvalidInput, path + ": " + getErrorMessage());
}

} // namespace

Encoding encodingOf(std::string_view bytes) {
    return bytes.starts_with(kBinaryMark) ? Encoding::Binary : Encoding::Text;
}

MessagePointer parseMessage(const std::string& path, const std::string& bytes) {
    MessagePointer message = adoptMessage(HBXMsgFactory::createNew());
    clearErrorMessage();
    if (encodingOf(bytes) == Encoding::Binary) {
        if (message->init(bytes.data(), static_cast<int>(bytes.size())) != 0) {
            failWithReason(path);
        }
        return message;
    }
    if (const std::size_t zero = bytes.find('\0'); zero != std::string::npos) {
        throw Failure(ExitCode::InvalidInput,
                      path + ": offset " + std::to_string(zero) + ": a zero byte, which no text has");
    }
    if (message->fromText(bytes.c_str(), nullptr) != 0) {
        failWithReason(path);
    }
    return message;
}

MessagePointer loadMessage(const std::string& path) { return parseMessage(path, readInput(path)); }

std::string elementText(const std::string& path, const HBXMessageIterator& element, int indent) {
    const std::string unit(static_cast<std::size_t>(indent), ' ');
    const Buffer text(element.getMessage()->toText(&element, unit), &std::free);
    if (text == nullptr) {
        failWithReason(path);
    }
    std::string result = text.get();
    return result.ends_with('\n') ? result : result + '\n';
}

std::string messageBytes(const std::string& path, const MessagePointer& message, Encoding encoding) {
    if (encoding == Encoding::Text) {
        return elementText(path, *cursorOn(message));
    }
    char* bytes = nullptr;
    int length = 0;
    if (message->serialize(&bytes, &length, nullptr, 0) != 0) {
        failWithReason(path);
    }
    const Buffer owner(bytes, &std::free);
    return {bytes, static_cast<std::size_t>(length)};
}

std::string takePath(const HBXMessageIterator& element) {
    std::string path;
    for (std::string name = element.curName(); element.seekUp() == 0; name = element.curName()) {
        path.insert(0, name).insert(0, "/");
    }
    return path.empty() ? "/" : path;
}

bool advance(const HBXMessageIterator& element, bool into) {
    if (into && element.firstChild() == 0) {
        return true;
    }
    while (element.nextSibling() != 0) {
        if (element.seekUp() != 0) {
            return false;
        }
    }
    return true;
}

} // namespace HBX::tool
