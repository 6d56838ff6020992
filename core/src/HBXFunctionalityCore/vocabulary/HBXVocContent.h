#pragma once

#include <HBXMessage/HBXMessageContent.h>

namespace HBX {

/// The message of a vocabulary.
struct HBX_EXPORT HBXVocContent : HBXMessageContent {
    /// Of a message that is shared from then on; null for none.
    using HBXMessageContent::HBXMessageContent;

    /// One that follows from the number, for tests.
    static HBXVocContent sample(std::uint64_t random);

    friend bool operator==(const HBXVocContent&, const HBXVocContent&) = default;
    friend std::strong_ordering operator<=>(const HBXVocContent&, const HBXVocContent&) = default;

    static const HBXRecordTable table;
    using Reader = HBXTextReader<HBXVocContent>;
    using Writer = HBXTextWriter<HBXVocContent>;
};

} // namespace HBX
