#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>

#include <cstdlib>
#include <memory>
#include <string_view>

#include <HBXFunctionalityCore/configuration/internal/ConfigurationElements.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

using Buffer = std::unique_ptr<char, decltype(&std::free)>;

/// The binary form, which is the same for equal trees; "" when there is no message.
std::string bytesOf(const HBXMessage* message) {
    char* data = nullptr;
    int length = 0;
    if (message == nullptr || message->serialize(&data, &length, nullptr, 0) != 0) {
        return {};
    }
    const Buffer owner(data, &std::free);
    return {data, static_cast<std::size_t>(length)};
}

} // namespace

constinit const HBXRecordTable HBXConfigurationContent::table =
    recordTable<HBXConfigurationContent>("HBXConfigurationContent", 0, 0);

HBXConfigurationContent& HBXConfigurationContent::operator=(const HBXConfigurationContent& other) {
    if (message_ != other.message_) {
        reset(other.message_.get(), false);
    }
    return *this;
}

void HBXConfigurationContent::reset(HBXMessage* message, bool deep) {
    message_ = message != nullptr ? adoptMessage(message->copy(deep)) : nullptr;
    iterator_.reset(message_ != nullptr ? message_->newIterator() : nullptr);
}

std::string HBXConfigurationContent::toString() const {
    const Buffer text(message_ != nullptr ? message_->toText(nullptr, "") : nullptr, &std::free);
    return text != nullptr ? text.get() : "";
}

int HBXConfigurationContent::fromString(std::string_view text) {
    const boost::intrusive_ptr<HBXMessage> message = adoptMessage(HBXMsgFactory::createNew());
    if (message->fromText(std::string(text).c_str(), nullptr) != 0) {
        return -1;
    }
    reset(message.get(), false);
    return 0;
}

HBXConfigurationContent HBXConfigurationContent::sample(std::uint64_t random) {
    const boost::intrusive_ptr<HBXMessage> message = adoptMessage(HBXMsgFactory::createNew());
    const std::unique_ptr<HBXMessageIterator> it(message->newIterator());
    it->newChild(internal::kTop);
    it->newChild("section_" + std::to_string(random % 7));
    it->newChild(internal::kSettings);
    it->putValue(std::to_string(random), "setting");
    HBXConfigurationContent content;
    content.reset(message.get(), false);
    return content;
}

bool operator==(const HBXConfigurationContent& a, const HBXConfigurationContent& b) {
    return std::is_eq(a <=> b);
}

std::strong_ordering operator<=>(const HBXConfigurationContent& a, const HBXConfigurationContent& b) {
    return a.message_ == b.message_ ? std::strong_ordering::equal
                                    : bytesOf(a.message()) <=> bytesOf(b.message());
}

} // namespace HBX
