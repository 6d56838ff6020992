#include <HBXFunctionalityCore/security/internal/SIDForm.h>

#include <charconv>

namespace HBX::internal {

namespace {

constexpr std::size_t kAuthorityBytes = 6;
constexpr std::uint64_t kAuthorityEnd = std::uint64_t{1} << 48;
constexpr std::uint64_t kDecimalAuthorityEnd = std::uint64_t{1} << 32;
constexpr std::size_t kAuthorityDigits = 12; ///< hexadecimal
/// "S-1-", the authority, and "-4294967295" for each sub-authority.
constexpr std::size_t kTextRoom = 4 + 2 + kAuthorityDigits + 11 * kMaxSubAuthorities;

/// The number that the text begins with goes; false when there is none or it is too large.
template <class Number>
bool takeNumber(std::string_view& text, int base, Number& number) {
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return error == std::errc();
}

bool takeAuthority(std::string_view& text, std::uint64_t& authority) {
    if (!text.starts_with("0x")) {
        return takeNumber(text, 10, authority) && authority < kAuthorityEnd;
    }
    text.remove_prefix(2);
    const std::size_t before = text.size();
    return takeNumber(text, 16, authority) && before - text.size() <= kAuthorityDigits;
}

char* printAuthority(char* to, std::uint64_t authority) {
    if (authority < kDecimalAuthorityEnd) {
        return std::to_chars(to, to + kAuthorityDigits, authority).ptr;
    }
    *to++ = '0';
    *to++ = 'x';
    for (std::size_t shift = 4 * kAuthorityDigits; shift != 0;) {
        shift -= 4;
        *to++ = "0123456789abcdef"[(authority >> shift) & 15];
    }
    return to;
}

} // namespace

void SIDBuffer::begin(std::uint64_t authority) {
    bytes[0] = kSIDRevision;
    bytes[1] = 0;
    for (std::size_t i = kSIDHeader; i-- > kSIDHeader - kAuthorityBytes; authority >>= 8) {
        bytes[i] = static_cast<std::uint8_t>(authority);
    }
    size = kSIDHeader;
}

void SIDBuffer::add(std::uint32_t subAuthority) {
    ++bytes[1];
    for (int i = 0; i < 4; ++i, subAuthority >>= 8) {
        bytes[size++] = static_cast<std::uint8_t>(subAuthority);
    }
}

std::uint32_t littleEndian(const std::uint8_t* fourBytes) {
    std::uint32_t value = 0;
    for (int i = 4; i-- > 0;) {
        value = value << 8 | fourBytes[i];
    }
    return value;
}

std::size_t subAuthorityCount(SIDBytes sid) { return sid.empty() ? 0 : sid[1]; }

std::uint64_t authorityOf(SIDBytes sid) {
    std::uint64_t authority = 0;
    for (std::size_t i = kSIDHeader - kAuthorityBytes; i < kSIDHeader; ++i) {
        authority = authority << 8 | sid[i];
    }
    return authority;
}

std::uint32_t subAuthority(SIDBytes sid, std::size_t index) {
    return littleEndian(sid.data() + sidSize(index));
}

std::string sidText(SIDBytes sid) {
    if (sid.empty()) {
        return {};
    }
    char text[kTextRoom] = {'S', '-', '1', '-'};
    char* end = printAuthority(text + 4, authorityOf(sid));
    for (std::size_t i = 0; i < subAuthorityCount(sid); ++i) {
        *end++ = '-';
        end = std::to_chars(end, text + kTextRoom, subAuthority(sid, i)).ptr;
    }
    return {text, end};
}

bool parseSIDText(std::string_view text, SIDBuffer& sid) {
    if (!text.starts_with("S-1-") && !text.starts_with("s-1-")) {
        return false;
    }
    text.remove_prefix(4);
    std::uint64_t authority = 0;
    if (!takeAuthority(text, authority)) {
        return false;
    }
    sid.begin(authority);
    while (!text.empty()) {
        if (!text.starts_with('-') || subAuthorityCount(sid.bytes) == kMaxSubAuthorities) {
            return false;
        }
        text.remove_prefix(1);
        std::uint32_t value = 0;
        if (!takeNumber(text, 10, value)) {
            return false;
        }
        sid.add(value);
    }
    return true;
}

} // namespace HBX::internal
