#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

// Which bytes XML 1.0 can carry as they are, which need a reference, and which it cannot carry at all.

namespace HBX::internal {

/// Why a byte cannot simply be copied into the text; 0 = it can.
enum XmlClass : std::uint8_t {
    kXmlMarkup = 1, ///< & < >
    kXmlQuote = 2,
    kXmlTabOrLf = 4, ///< an attribute would read them back as blanks
    kXmlCr = 8,      ///< would read back as LF
    kXmlHigh = 16,   ///< part of a UTF-8 sequence, if that is valid
    kXmlBad = 32,    ///< a control character that no reference can name either
};

inline constexpr std::uint8_t kXmlStopsInText = kXmlMarkup | kXmlCr | kXmlHigh | kXmlBad;
inline constexpr std::uint8_t kXmlStopsInAttribute = kXmlStopsInText | kXmlQuote | kXmlTabOrLf;
inline constexpr std::uint8_t kXmlStopsInCdata = kXmlCr | kXmlHigh | kXmlBad;

inline constexpr std::array<std::uint8_t, 256> kXmlClasses = [] {
    std::array<std::uint8_t, 256> classes{};
    for (std::size_t c = 0; c < 0x20; ++c) {
        classes[c] = kXmlBad;
    }
    for (std::size_t c = 0x80; c < 0x100; ++c) {
        classes[c] = kXmlHigh;
    }
    classes['\t'] = classes['\n'] = kXmlTabOrLf;
    classes['\r'] = kXmlCr;
    classes['&'] = classes['<'] = classes['>'] = kXmlMarkup;
    classes['"'] = kXmlQuote;
    return classes;
}();

inline std::uint8_t xmlClass(char c) { return kXmlClasses[static_cast<unsigned char>(c)]; }

/// The length of the sequence at `at`, whose first byte is kXmlHigh; 0 when it is no valid UTF-8 or names a
/// character outside XML (surrogates, U+FFFE, U+FFFF).
inline std::size_t xmlSequenceLength(const char* at, const char* end) {
    const auto byte = [&](std::size_t i) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(at[i]));
    };
    const std::uint32_t lead = byte(0);
    const std::size_t length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    if (length == 0 || static_cast<std::size_t>(end - at) < length) {
        return 0;
    }
    std::uint32_t code = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) {
            return 0;
        }
        code = code << 6 | (byte(i) & 0x3F);
    }
    constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isXml = code >= kLeast[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF) &&
                       code != 0xFFFE && code != 0xFFFF;
    return isXml ? length : 0;
}

/// The first byte from `at` on that cannot be copied because it is of one of the classes `stops`; valid
/// sequences are passed over. `end` when there is none.
inline const char* endOfXmlRun(const char* at, const char* end, std::uint8_t stops) {
    while (at != end) {
        const std::uint8_t found = xmlClass(*at) & stops;
        if (found == 0) {
            ++at;
            continue;
        }
        const std::size_t length = found == kXmlHigh ? xmlSequenceLength(at, end) : 0;
        if (length == 0) {
            break;
        }
        at += length;
    }
    return at;
}

/// Whether one of eight bytes may be of a class above; never misses one, whatever the byte order.
inline bool mayStopXmlRun(std::uint64_t bytes) {
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    constexpr std::uint64_t kHighs = kOnes * 0x80;
    const auto hasZero = [](std::uint64_t x) { return (x - kOnes) & ~x; };
    const std::uint64_t control = (bytes - kOnes * 0x20) & ~bytes;
    const std::uint64_t angle = hasZero((bytes | kOnes * 0x02) ^ kOnes * '>'); // '<' is '>' without bit 1
    const std::uint64_t quoteOrAmpersand = hasZero((bytes | kOnes * 0x04) ^ kOnes * '&'); // '"' without bit 2
    return ((control | angle | quoteOrAmpersand | bytes) & kHighs) != 0;
}

/// The first character that is not blank, npos when all are.
inline std::size_t findNonBlank(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != ' ' && text[i] != '\n' && text[i] != '\t' && text[i] != '\r') {
            return i;
        }
    }
    return std::string_view::npos;
}

} // namespace HBX::internal
