#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <HBXMessage/HBXRecordTable.h>
#include <HBXMessage/internal/NumberText.h>

/// Between values and the text that a message holds for them. No locale anywhere.
namespace HBX::internal {

/// Reads plain decimal text of up to 18 digits, as nearly all numbers are; false for everything else.
inline bool parseShortNumber(std::string_view text, std::int64_t& number) {
    const bool negative = !text.empty() && text.front() == '-';
    text.remove_prefix(negative ? 1 : 0);
    if (text.empty() || text.size() > 18) {
        return false;
    }
    std::int64_t sum = 0;
    for (const char c : text) {
        const auto digit = static_cast<unsigned>(c - '0');
        if (digit > 9) {
            return false;
        }
        sum = sum * 10 + digit;
    }
    number = negative ? -sum : sum;
    return true;
}

// Each false, with the output untouched, when the text does not convert.
bool toInt(std::string_view text, std::int32_t& value);
bool toInt64(std::string_view text, std::int64_t& value);
bool toUInt32(std::string_view text, std::uint32_t& value);
bool toBool(std::string_view text, bool& value);
bool toTimeZone(std::string_view text, std::int64_t& time, std::int32_t& zone);
bool toTime(std::string_view text, std::int64_t& value);

/// Stores the text as a member of this kind (not Record or Pointer).
bool parseMember(HBXKind kind, const HBXValueType& type, std::string_view text, bool xml, void* value);

/// The text of a member of this kind (not Record or Pointer); it lies in the member or in `scratch`.
std::string_view printMember(HBXKind kind, const HBXValueType& type, const void* value, std::string& scratch);

} // namespace HBX::internal
