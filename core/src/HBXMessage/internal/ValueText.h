#pragma once

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

#include <HBXMessage/HBXRecordTable.h>

/// Between values and the text that a message holds for them. No locale anywhere.
namespace HBX::internal {

/// Room for the text of any number, a time with its zone included.
inline constexpr std::size_t kNumberRoom = 40;

/// The text of a number in a buffer of its own.
class NumberText {
public:
    explicit NumberText(std::int64_t value) : end_(std::to_chars(text_, text_ + kNumberRoom, value).ptr) {}
    /// The shortest text that reads back exactly.
    explicit NumberText(double value) : end_(std::to_chars(text_, text_ + kNumberRoom, value).ptr) {}
    /// Time and zone (+-HHMM) as given.
    NumberText(std::int64_t time, int zone);

    [[nodiscard]] std::string_view view() const { return {text_, static_cast<std::size_t>(end_ - text_)}; }

private:
    char text_[kNumberRoom];
    char* end_;
};

// Each false, with the output untouched, when the text does not convert.
bool toInt(std::string_view text, std::int32_t& value);
bool toInt64(std::string_view text, std::int64_t& value);
bool toBool(std::string_view text, bool& value);
bool toTimeZone(std::string_view text, std::int64_t& time, std::int32_t& zone);
bool toTime(std::string_view text, std::int64_t& value);

/// Stores the text as a member of this kind (not Record or Pointer).
bool parseMember(HBXKind kind, const HBXValueType& type, std::string_view text, bool xml, void* value);

/// The text of a member of this kind (not Record or Pointer); it lies in the member, in `number` or in
/// `scratch`.
std::string_view printMember(HBXKind kind, const HBXValueType& type, const void* value,
                             char (&number)[kNumberRoom], std::string& scratch);

} // namespace HBX::internal
