#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

#include <HBXMessage/HBXMessage.h>
#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// A message as a value: copies share the message, comparison looks at its content. Empty without a message.
class HBX_EXPORT HBXMessageContent {
public:
    HBXMessageContent() = default;
    explicit HBXMessageContent(boost::intrusive_ptr<HBXMessage> message) : message_(std::move(message)) {}

    /// The message, shared; null when empty.
    const boost::intrusive_ptr<HBXMessage>& message() const { return message_; }

    /// The text form of the message.
    std::string toString() const;
    /// Reads such a text; -1 and unchanged when it is no message.
    int fromString(std::string_view text);
    /// One that follows from the number, for tests.
    static HBXMessageContent sample(std::uint64_t random);

    HBX_EXPORT friend bool operator==(const HBXMessageContent& a, const HBXMessageContent& b);
    HBX_EXPORT friend std::strong_ordering operator<=>(const HBXMessageContent& a,
                                                       const HBXMessageContent& b);

    static const HBXRecordTable table;
    using Reader = HBXTextReader<HBXMessageContent>;
    using Writer = HBXTextWriter<HBXMessageContent>;

private:
    boost::intrusive_ptr<HBXMessage> message_;
};

} // namespace HBX
