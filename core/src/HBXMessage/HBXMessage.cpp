#include <HBXMessage/HBXMessage.h>

#include <HBXMessage/HBXBinary.h>

namespace HBX {

boost::intrusive_ptr<HBXMsgFactory> HBXMessage::getFactory() {
    static HBXMsgFactory factory;
    return {&factory};
}

void HBXMessage::destroy() { release(this); }

int HBXMessage::getSessionID(HBXSessionID& value) const {
    std::string text;
    const int result = getSessionID(text);
    if (result == 0) {
        value = HBXSessionID(std::move(text));
    }
    return result;
}

HBXMessage* HBXMsgFactory::createNew() { return new HBXBinary(); }

HBXMessage* HBXMsgFactory::createNew(const char* data, int length) {
    auto message = adoptMessage(createNew());
    if (message->init(data, length) != 0) {
        return nullptr;
    }
    return message.detach();
}

} // namespace HBX
