#include <HBXCommon/HBXStringUtil.h>

#include <algorithm>
#include <charconv>

namespace HBX {

namespace {

unsigned char lowerCase(char c) { return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c | 0x20 : c); }

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

template <class Number>
bool parseNumber(std::string_view text, Number& value) {
    text = trimBlanks(text);
    const char* const end = text.data() + text.size();
    Number parsed;
    const auto [stop, error] = std::from_chars(text.data(), end, parsed);
    if (error != std::errc() || stop != end)
        return false;
    value = parsed;
    return true;
}

template <class Number>
std::string numberText(Number value) {
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

} // namespace

int compareNoCase(std::string_view a, std::string_view b, int length) {
    if (length >= 0) {
        a = a.substr(0, static_cast<std::size_t>(length));
        b = b.substr(0, static_cast<std::size_t>(length));
    }
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (const int difference = lowerCase(a[i]) - lowerCase(b[i]))
            return difference;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

std::string toLower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return static_cast<char>(lowerCase(c)); });
    return lower;
}

std::string intToStr(int value) { return numberText(value); }

std::string longlongToStr(std::int64_t value) { return numberText(value); }

std::string doubleToStr(double value) { return numberText(value); }

std::string_view trimBlanks(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool parseInt32(std::string_view text, std::int32_t& value) { return parseNumber(text, value); }

bool parseInt64(std::string_view text, std::int64_t& value) { return parseNumber(text, value); }

bool parseDouble(std::string_view text, double& value) { return parseNumber(text, value); }

bool strToUlong(std::string_view text, unsigned long& value) { return parseNumber(text, value); }

} // namespace HBX
