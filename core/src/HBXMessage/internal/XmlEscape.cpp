#include <HBXMessage/internal/XmlEscape.h>

#include <algorithm>
#include <cstring>

#include <HBXCommon/HBXBase64.h>

namespace HBX::internal {
namespace {

constexpr std::string_view kCdataStart = "<![CDATA[";
constexpr std::string_view kCdataEnd = "]]>";

constexpr std::size_t kBlock = 8;            // bytes looked at together
constexpr std::size_t kLongestReference = 6; // "&quot;"

std::string_view referenceOf(char c) {
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    case '\r':
        return "&#13;";
    default:
        return {};
    }
}

/// Copies whole blocks up to the first that may hold more than plain bytes; that one is written behind the
/// end of what counts.
void copyPlainBlocks(const char*& at, const char* end, char*& to) {
    for (; static_cast<std::size_t>(end - at) >= kBlock; at += kBlock, to += kBlock) {
        std::uint64_t block;
        std::memcpy(&block, at, kBlock);
        std::memcpy(to, &block, kBlock);
        if (mayStopXmlRun(block)) {
            return;
        }
    }
}

/// Copies one block byte by byte, with references for the classes `stops`. False when it meets something that
/// cannot be text at all.
bool copyMixedBlock(const char*& at, const char* end, char*& to, std::uint8_t stops) {
    const char* blockEnd = static_cast<std::size_t>(end - at) > kBlock ? at + kBlock : end;
    while (at < blockEnd) {
        const std::uint8_t found = xmlClass(*at) & stops;
        if (found == 0) {
            *to++ = *at++;
        } else if (found == kXmlHigh) {
            const std::size_t length = xmlSequenceLength(at, end);
            if (length == 0) {
                return false;
            }
            to = std::copy_n(at, length, to);
            at += length;
        } else {
            const std::string_view reference = referenceOf(*at++);
            if (reference.empty()) {
                return false;
            }
            to = std::copy(reference.begin(), reference.end(), to);
        }
    }
    return true;
}

} // namespace

bool appendEscaped(ByteBuffer& out, std::string_view text, std::uint8_t stops) {
    const char* at = text.data();
    const char* end = at + text.size();
    while (at != end) {
        char* const start = out.ensure(static_cast<std::size_t>(end - at) + kBlock * kLongestReference);
        char* to = start;
        copyPlainBlocks(at, end, to);
        const bool isText = copyMixedBlock(at, end, to, stops);
        out.advance(static_cast<std::size_t>(to - start));
        if (!isText) {
            return false;
        }
    }
    return true;
}

void appendBase64(ByteBuffer& out, std::string_view bytes) {
    const std::size_t size = base64EncodedSize(bytes.size());
    base64Encode(bytes.data(), bytes.size(), out.ensure(size));
    out.advance(size);
}

bool appendCdata(ByteBuffer& out, std::string_view text) {
    if (endOfXmlRun(text.data(), text.data() + text.size(), kXmlStopsInCdata) != text.data() + text.size()) {
        return false;
    }
    out.append(kCdataStart);
    for (std::size_t end = text.find(kCdataEnd); end != std::string_view::npos; end = text.find(kCdataEnd)) {
        out.append(text.substr(0, end + 2));
        out.append(kCdataEnd);
        out.append(kCdataStart);
        text.remove_prefix(end + 2);
    }
    out.append(text);
    out.append(kCdataEnd);
    return true;
}

} // namespace HBX::internal
