#include <HBXCommon/HBXBase64.h>

#include <HBXCommon/internal/HBXBase64Vector.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>

namespace HBX {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// The two characters of every 12 bits: half the look-ups of one character at a time.
constexpr auto kPairs = [] {
    std::array<std::array<char, 2>, 4096> pairs{};
    for (std::size_t bits = 0; bits < pairs.size(); ++bits)
        pairs[bits] = {kAlphabet[bits >> 6], kAlphabet[bits & 63]};
    return pairs;
}();

constexpr std::uint32_t kBlank = 0x40000000;   ///< Passed over.
constexpr std::uint32_t kForeign = 0x80000000; ///< Not in the alphabet; '=' too, which ends a text.
constexpr std::uint32_t kNoDigit = kBlank | kForeign;

/// The six bits of every character, placed for each of the four positions of a group.
constexpr auto kDigits = [] {
    std::array<std::array<std::uint32_t, 256>, 4> digits{};
    for (std::size_t position = 0; position < 4; ++position) {
        digits[position].fill(kForeign);
        for (std::uint32_t value = 0; value < 64; ++value)
            digits[position][static_cast<unsigned char>(kAlphabet[value])] = value << (18 - 6 * position);
        for (const char blank : {' ', '\t', '\r', '\n'})
            digits[position][static_cast<unsigned char>(blank)] = kBlank;
    }
    return digits;
}();

std::uint32_t byteAt(const char* bytes) { return static_cast<unsigned char>(*bytes); }

std::uint32_t digitAt(std::size_t position, const char* text) { return kDigits[position][byteAt(text)]; }

void putBytes(std::uint32_t group, char* out) {
    out[0] = static_cast<char>(group >> 16);
    out[1] = static_cast<char>(group >> 8);
    out[2] = static_cast<char>(group);
}

/// Decodes whole groups without blanks or padding; stops at the first that is none.
void decodePlainGroups(const char*& text, const char* end, char*& out) {
    if (hasBase64Vector())
        base64DecodeVector(text, end, out);
    for (; end - text >= 4; text += 4, out += 3) {
        const std::uint32_t group =
            digitAt(0, text) | digitAt(1, text + 1) | digitAt(2, text + 2) | digitAt(3, text + 3);
        if (group & kNoDigit)
            return;
        putBytes(group, out);
    }
}

/// What steps write behind their last byte.
constexpr std::size_t kSpareBytes = 4;

/// One group with whatever blanks stand in it.
struct Group {
    std::uint32_t bits = 0;
    std::size_t digits = 0;
    std::size_t padding = 0;
    bool foreign = false;
};

Group readGroup(const char*& text, const char* end) {
    Group group;
    for (; text != end && group.digits + group.padding < 4; ++text) {
        const std::uint32_t digit = digitAt(group.digits & 3U, text);
        if (digit == kBlank)
            continue;
        if (*text == '=')
            ++group.padding;
        else if (digit == kForeign || group.padding > 0)
            group.foreign = true;
        else
            group.bits |= digit, ++group.digits;
    }
    return group;
}

/// The bytes that a group stands for, or -1 when it is not canonical.
int bytesOf(const Group& group) {
    static constexpr std::uint32_t kUnusedBits[] = {0, 0, 0xFFFF, 0xFF, 0};
    if (group.foreign || group.digits < 2 || group.digits + group.padding != 4)
        return -1;
    return group.bits & kUnusedBits[group.digits] ? -1 : static_cast<int>(group.digits) - 1;
}

bool isAllBlank(const char* text, const char* end) {
    while (text != end && digitAt(0, text) == kBlank)
        ++text;
    return text == end;
}

/// Decodes into `out`, which has kSpareBytes more room than the text can give. The end of the bytes, or
/// null when the text is not canonical.
char* decode(const char* text, const char* end, char* out) {
    for (;;) {
        decodePlainGroups(text, end, out);
        if (isAllBlank(text, end))
            return out;
        const Group group = readGroup(text, end);
        const int count = bytesOf(group);
        if (count < 0)
            return nullptr;
        putBytes(group.bits, out);
        out += count;
        if (count < 3)
            return isAllBlank(text, end) ? out : nullptr;
    }
}

} // namespace

void base64Encode(const char* bytes, std::size_t n, char* out) {
    if (hasBase64Vector())
        base64EncodeVector(bytes, n, out);
    for (; n >= 3; n -= 3, bytes += 3, out += 4) {
        const std::uint32_t group = byteAt(bytes) << 16 | byteAt(bytes + 1) << 8 | byteAt(bytes + 2);
        std::memcpy(out, kPairs[group >> 12].data(), 2);
        std::memcpy(out + 2, kPairs[group & 0xFFF].data(), 2);
    }
    if (n == 0)
        return;
    const std::uint32_t group = byteAt(bytes) << 16 | (n == 2 ? byteAt(bytes + 1) << 8 : 0);
    std::memcpy(out, kPairs[group >> 12].data(), 2);
    out[2] = n == 2 ? kAlphabet[group >> 6 & 63U] : '=';
    out[3] = '=';
}

bool base64Decode(std::string_view text, std::string& out) {
    char onStack[1024];
    std::unique_ptr<char[]> onHeap;
    const std::size_t room = text.size() / 4 * 3 + 3 + kSpareBytes;
    if (room > sizeof onStack)
        onHeap.reset(new char[room]);
    char* const bytes = onHeap ? onHeap.get() : onStack;
    const char* const end = decode(text.data(), text.data() + text.size(), bytes);
    if (end == nullptr)
        return false;
    out.assign(bytes, static_cast<std::size_t>(end - bytes));
    return true;
}

} // namespace HBX
