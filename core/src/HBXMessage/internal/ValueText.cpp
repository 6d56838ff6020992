#include <HBXMessage/internal/ValueText.h>

#include <HBXCommon/HBXBase64.h>
#include <HBXCommon/HBXStringUtil.h>

namespace HBX::internal {
namespace {

/// Decimal text without blanks.
template <class Number>
bool parsePlain(std::string_view text, Number& value) {
    Number parsed{};
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, parsed);
    if (error == std::errc() && stopped == end) [[likely]] {
        value = parsed;
        return true;
    }
    return false;
}

/// Plain text, as nearly all numbers are; the general rules otherwise.
template <class Number>
bool parseNumber(std::string_view text, Number& value, bool (*general)(std::string_view, Number&)) {
    return parsePlain(text, value) || general(text, value);
}

template <class T>
T& as(void* value) {
    return *static_cast<T*>(value);
}

template <class T>
const T& as(const void* value) {
    return *static_cast<const T*>(value);
}

template <class Number>
std::string_view numberText(Number number, std::string& text) {
    text.resize(kNumberRoom);
    text.resize(static_cast<std::size_t>(printNumber(text.data(), number) - text.data()));
    return text;
}

std::string_view encodeBase64(const std::string& bytes, std::string& text) {
    text.resize(base64EncodedSize(bytes.size()));
    base64Encode(bytes.data(), bytes.size(), text.data());
    return text;
}

} // namespace

NumberText::NumberText(std::int64_t time, int zone) {
    char* to = std::to_chars(text_, text_ + kNumberRoom, time).ptr;
    *to++ = zone < 0 ? '-' : '+';
    const std::uint32_t digits =
        zone < 0 ? 0U - static_cast<std::uint32_t>(zone) : static_cast<std::uint32_t>(zone);
    for (std::uint32_t limit = 1000; limit > 1 && digits < limit; limit /= 10) {
        *to++ = '0';
    }
    end_ = std::to_chars(to, text_ + kNumberRoom, digits).ptr;
}

bool toInt(std::string_view text, std::int32_t& value) { return parseNumber(text, value, &parseInt32); }

bool toInt64(std::string_view text, std::int64_t& value) { return parseNumber(text, value, &parseInt64); }

bool toUInt32(std::string_view text, std::uint32_t& value) {
    std::int64_t number = 0;
    if (!toInt64(text, number) || number != static_cast<std::uint32_t>(number)) {
        return false;
    }
    value = static_cast<std::uint32_t>(number);
    return true;
}

bool toBool(std::string_view text, bool& value) {
    text = trimBlanks(text);
    std::int32_t number = 0;
    if (text == "true") {
        value = true;
    } else if (text == "false") {
        value = false;
    } else if (parseInt32(text, number)) {
        value = number != 0;
    } else {
        return false;
    }
    return true;
}

bool toTimeZone(std::string_view text, std::int64_t& time, std::int32_t& zone) {
    text = trimBlanks(text);
    const std::size_t sign = text.find_first_of("+-", 1);
    std::int64_t seconds = 0;
    std::int64_t digits = 0;
    if (sign == std::string_view::npos) {
        if (!parseInt64(text, seconds)) {
            return false;
        }
    } else {
        const std::string_view zoneText = text.substr(sign + 1);
        if (zoneText.size() < 4 || zoneText.front() == '-' || !parsePlain(zoneText, digits) ||
            !parsePlain(text.substr(0, sign), seconds)) {
            return false;
        }
        digits = text[sign] == '-' ? -digits : digits;
        if (digits != static_cast<std::int32_t>(digits)) {
            return false;
        }
    }
    time = seconds;
    zone = static_cast<std::int32_t>(digits);
    return true;
}

bool toTime(std::string_view text, std::int64_t& value) {
    std::int32_t zone = 0;
    return toInt64(text, value) || toTimeZone(text, value, zone);
}

bool parseMember(HBXKind kind, const HBXValueType& type, std::string_view text, bool xml, void* value) {
    switch (kind) {
    case HBXKind::Int:
        return toInt(text, as<std::int32_t>(value));
    case HBXKind::Int64:
        return toInt64(text, as<std::int64_t>(value));
    case HBXKind::UInt32:
        return toUInt32(text, as<std::uint32_t>(value));
    case HBXKind::Bool:
        return toBool(text, as<bool>(value));
    case HBXKind::Double:
        return parseDouble(text, as<double>(value));
    case HBXKind::Time:
        return toTime(text, as<std::int64_t>(value));
    case HBXKind::String:
        as<std::string>(value).assign(text);
        return true;
    case HBXKind::Base64:
        return base64Decode(text, as<std::string>(value));
    case HBXKind::Xml:
        if (xml) {
            as<std::string>(value).assign(text);
        }
        return xml;
    case HBXKind::Text:
        return type.parse(text, value);
    case HBXKind::Record:
    case HBXKind::Pointer:
        break;
    }
    return false;
}

std::string_view printMember(HBXKind kind, const HBXValueType& type, const void* value,
                             std::string& scratch) {
    switch (kind) {
    case HBXKind::Int:
        return numberText(as<std::int32_t>(value), scratch);
    case HBXKind::Int64:
    case HBXKind::Time:
        return numberText(as<std::int64_t>(value), scratch);
    case HBXKind::UInt32:
        return numberText(std::int64_t{as<std::uint32_t>(value)}, scratch);
    case HBXKind::Bool:
        return as<bool>(value) ? "1" : "0";
    case HBXKind::Double:
        return numberText(as<double>(value), scratch);
    case HBXKind::String:
    case HBXKind::Xml:
        return as<std::string>(value);
    case HBXKind::Base64:
        return encodeBase64(as<std::string>(value), scratch);
    case HBXKind::Text:
        type.print(value, scratch);
        return scratch;
    case HBXKind::Record:
    case HBXKind::Pointer:
        break;
    }
    return {};
}

} // namespace HBX::internal
