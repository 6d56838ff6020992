#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>

#include <HBXFunctionalityCore/configuration/internal/ConfigurationWalk.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

using internal::kAgent;
using internal::kIdentifier;
using internal::kTop;
using internal::seekSection;

/// Reaches the content that a configuration keeps to its own.
struct HBXConfigurationRows {
    static constexpr HBXRow rows[] = {valueOnly<&HBXConfiguration::content_>(kTop)};
};

constinit const HBXRecordTable HBXConfiguration::table =
    recordTable<HBXConfiguration>("HBXConfiguration", 404, 5046, HBXConfigurationRows::rows);

int HBXConfiguration::Reader::operator()(const HBXMessageIterator& it,
                                         HBXConfiguration& configuration) const {
    const boost::intrusive_ptr<HBXMessage> message = adoptMessage(it.copyMessage());
    if (message == nullptr) {
        return -1;
    }
    HBXConfiguration read;
    read.reset(message.get(), true);
    if (read.content_.iterator()->firstChild() != 0) {
        return -1;
    }
    configuration = std::move(read);
    return 0;
}

int HBXConfiguration::Writer::operator()(HBXMessageIterator& it,
                                         const HBXConfiguration& configuration) const {
    const HBXMessageIterator* own = configuration.content_.iterator();
    return own != nullptr && own->seekRoot() == 0 && own->seek(kTop) == 0 ? it.copyToChild(own) : -1;
}

int HBXConfiguration::readFromFile(const std::string& file) {
    const boost::intrusive_ptr<HBXMessage> message = adoptMessage(HBXMsgFactory::createNew());
    if (message == nullptr || message->fromTextFile(file) != 0) {
        return -1;
    }
    reset(message.get(), false);
    return getMessage() != nullptr ? 0 : -1;
}

int HBXConfiguration::saveToFile(const std::string& file) const {
    return getMessage() != nullptr ? getMessage()->toTextFile(file) : -1;
}

HBXConfigurationIterator* HBXConfiguration::getIterator() const {
    return getMessage() != nullptr ? new HBXConfigurationIterator(getMessage()) : nullptr;
}

int HBXConfiguration::getEID(HBXEID& id) const {
    const HBXMessageIterator* it = content_.iterator();
    return seekSection(it, kAgent) && it->getObject(id, kIdentifier) == 0 ? 0 : -1;
}

int HBXConfiguration::setEID(const HBXEID& id) {
    HBXMessageIterator* it = content_.iterator();
    return seekSection(it, kAgent) && it->putObject(id, kIdentifier) == 0 ? 0 : -1;
}

} // namespace HBX
