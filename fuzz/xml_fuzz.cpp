// Bytes as text of a message. What is accepted must be written again as a text of the same tree.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <HBXMessage/HBXMessage.h>

namespace {

using Message = boost::intrusive_ptr<HBX::HBXMessage>;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

std::string bytesOf(const Message& message) {
    char* bytes = nullptr;
    int length = 0;
    require(message->serialize(&bytes, &length, nullptr, 0) == 0);
    std::string result(bytes, static_cast<std::size_t>(length));
    std::free(bytes);
    return result;
}

void checkRoundTrip(const Message& message, const char* indent) {
    char* text = message->toText(nullptr, indent);
    require(text != nullptr);
    const Message again = HBX::adoptMessage(HBX::HBXMsgFactory::createNew());
    require(again->fromText(text, nullptr) == 0);
    std::free(text);
    require(bytesOf(again) == bytesOf(message));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const Message message = HBX::adoptMessage(HBX::HBXMsgFactory::createNew());
    if (message->fromText(text.c_str(), nullptr) == 0) {
        checkRoundTrip(message, "");
        checkRoundTrip(message, "  ");
    }
    return 0;
}
