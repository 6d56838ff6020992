#include <HBXMessage/HBXMessageContent.h>

#include <cstdlib>
#include <memory>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

/// Bytes of equal messages are equal.
std::string bytesOf(const boost::intrusive_ptr<HBXMessage>& message) {
    char* data = nullptr;
    int length = 0;
    if (!message || message->serialize(&data, &length, nullptr, 0) != 0) {
        return {};
    }
    const std::unique_ptr<char, decltype(&std::free)> owner(data, &std::free);
    return {data, static_cast<std::size_t>(length)};
}

} // namespace

constinit const HBXRecordTable HBXMessageContent::table =
    recordTable<HBXMessageContent>("HBXMessageContent", 0, 0);

std::string HBXMessageContent::toString() const {
    const std::unique_ptr<char, decltype(&std::free)> text(message_ ? message_->toText(nullptr, "") : nullptr,
                                                           &std::free);
    return text ? text.get() : "";
}

int HBXMessageContent::fromString(std::string_view text) {
    auto message = adoptMessage(HBXMsgFactory::createNew());
    if (text.find('\0') != std::string_view::npos ||
        message->fromText(std::string(text).c_str(), nullptr) != 0) {
        return -1;
    }
    message_ = std::move(message);
    return 0;
}

HBXMessageContent HBXMessageContent::sample(std::uint64_t random) {
    auto message = adoptMessage(HBXMsgFactory::createNew());
    const std::unique_ptr<HBXMessageIterator> it(message->newIterator());
    it->putValue("sample", "text");
    for (std::uint64_t left = random % 5; left != 0; --left) {
        it->newChild("sample");
        it->putValueLongLong(static_cast<std::int64_t>(random >> left), "number");
        it->seekUp();
    }
    return HBXMessageContent(std::move(message));
}

bool operator==(const HBXMessageContent& a, const HBXMessageContent& b) {
    return a.message_ == b.message_ || bytesOf(a.message_) == bytesOf(b.message_);
}

std::strong_ordering operator<=>(const HBXMessageContent& a, const HBXMessageContent& b) {
    return a.message_ == b.message_ ? std::strong_ordering::equal
                                    : bytesOf(a.message_) <=> bytesOf(b.message_);
}

} // namespace HBX
