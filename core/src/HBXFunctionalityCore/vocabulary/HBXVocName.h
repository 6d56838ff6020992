#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <HBXCommon/limited_length_string.h>
#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// The name of a vocabulary: a zero-terminated text of at most 255 characters, held in place.
class HBX_EXPORT HBXVocName {
public:
    static constexpr std::size_t kMaxLength = 255;

    HBXVocName() = default;
    HBXVocName(const char* text) { *this = text; }
    /// Null clears. A longer text ends the program; use `fromString` for what strangers choose.
    HBXVocName& operator=(const char* text);

    /// The text; empty at first. Pointer and view are good until the name changes.
    const char* c_str() const { return text_.view().data(); }
    std::string_view view() const { return text_.view(); }
    bool empty() const { return text_.empty(); }

    /// As a value that is one text.
    std::string toString() const { return text_.str(); }
    /// -1 and unchanged when the text is too long or holds a zero byte.
    int fromString(std::string_view text);
    /// One that follows from the number, for tests.
    static HBXVocName sample(std::uint64_t random);

    friend bool operator==(const HBXVocName&, const HBXVocName&) = default;
    friend std::strong_ordering operator<=>(const HBXVocName&, const HBXVocName&) = default;

    static const HBXRecordTable table;
    using Reader = HBXTextReader<HBXVocName>;
    using Writer = HBXTextWriter<HBXVocName>;

private:
    limited_length_string<kMaxLength + 1, char> text_; ///< never full, so that a zero ends it
};

} // namespace HBX
