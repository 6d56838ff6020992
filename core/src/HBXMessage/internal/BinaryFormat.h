#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <HBXMessage/HBXMessageForms.h>
#include <HBXMessage/internal/ByteBuffer.h>
#include <HBXMessage/internal/Tree.h>

/// The pieces of the binary form (docs/message-binary.md) that its readers and writers share.
namespace HBX::internal {

inline constexpr char kMagic[4] = {'H', 'B', 'X', 'M'};
inline constexpr std::size_t kHeaderSize = 12;

enum class Wrapping : std::uint8_t { Message, Element }; // form byte of the header

enum Form : std::uint32_t { kFormText, kFormEmpty, kFormChildren, kFormFlags };

/// Bits of the flags byte of kFormFlags; the pieces follow in this order.
inline constexpr unsigned kHasNamespace = 1;
inline constexpr unsigned kHasType = 2;
inline constexpr unsigned kHasValue = 4;
inline constexpr unsigned kIsXml = 8;
inline constexpr unsigned kHasAttributes = 16;
inline constexpr unsigned kHasChildren = 32;

/// Whether these flags say what a shorter form says too.
constexpr bool hasShorterForm(unsigned flags) {
    return flags == 0 || flags == kHasValue || flags == kHasChildren;
}

inline constexpr std::size_t kMaxVarint = 5;

inline unsigned varintSize(std::uint64_t value) {
    unsigned size = 1;
    while (value >= 0x80) {
        value >>= 7;
        ++size;
    }
    return size;
}

/// Writes at most kMaxVarint bytes; returns the place behind them.
inline char* putVarint(char* to, std::uint64_t value) {
    while (value >= 0x80) {
        *to++ = static_cast<char>(value | 0x80);
        value >>= 7;
    }
    *to++ = static_cast<char>(value);
    return to;
}

/// Reads a varint in its shortest form; null when it is cut off, too long or padded.
inline const std::uint8_t* readVarint(const std::uint8_t* from, const std::uint8_t* end,
                                      std::uint64_t& value) {
    if (from < end && *from < 0x80) [[likely]] {
        value = *from;
        return from + 1;
    }
    if (end - from >= 2 && from[1] < 0x80) [[likely]] {
        value = (from[0] & 0x7FU) | static_cast<std::uint64_t>(from[1]) << 7;
        return from[1] != 0 ? from + 2 : nullptr;
    }
    std::uint64_t result = 0;
    for (unsigned shift = 0; shift < 7 * kMaxVarint && from < end; shift += 7) {
        const std::uint8_t byte = *from++;
        result |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
        if (byte < 0x80) {
            value = result;
            return byte != 0 ? from : nullptr;
        }
    }
    return nullptr;
}

/// Reads a length and checks it against what is left.
inline const std::uint8_t* readLength(const std::uint8_t* from, const std::uint8_t* end,
                                      std::uint32_t& length) {
    std::uint64_t value = 0;
    from = readVarint(from, end, value);
    if (from == nullptr || value > static_cast<std::uint64_t>(end - from)) {
        return nullptr;
    }
    length = static_cast<std::uint32_t>(value);
    return from;
}

inline std::uint32_t loadU32(const char* from) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(from);
    return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8 | static_cast<std::uint32_t>(bytes[2]) << 16 |
           static_cast<std::uint32_t>(bytes[3]) << 24;
}

inline void storeU32(char* to, std::uint32_t value) {
    to[0] = static_cast<char>(value);
    to[1] = static_cast<char>(value >> 8);
    to[2] = static_cast<char>(value >> 16);
    to[3] = static_cast<char>(value >> 24);
}

/// The header with the body length left open; `finishHeader` fills it in.
inline void putHeader(ByteBuffer& out, Wrapping wrapping) {
    char* to = out.ensure(kHeaderSize);
    std::memcpy(to, kMagic, sizeof kMagic);
    to[4] = static_cast<char>(kMessageBinaryVersion);
    to[5] = static_cast<char>(wrapping);
    std::memset(to + 6, 0, 6);
    out.advance(kHeaderSize);
}

inline void finishHeader(ByteBuffer& out) {
    storeU32(out.data() + 8, static_cast<std::uint32_t>(out.size() - kHeaderSize));
}

/// A block of children whose length is not known yet.
struct OpenBlock {
    std::uint32_t at; ///< where the length stands
    std::uint8_t width;
    std::uint8_t slot;
};

/// Guesses how many bytes the length of a child block will need: as many as under the same element at the
/// same depth last time. A wrong guess costs moving the block by a byte or two; the bytes come out the same.
class BlockLengths {
public:
    OpenBlock open(ByteBuffer& out, Ref element, std::uint32_t depth) const {
        const auto slot = static_cast<std::uint8_t>(element + 37 * depth);
        const OpenBlock block{static_cast<std::uint32_t>(out.size()), widths_[slot], slot};
        out.ensure(kMaxVarint);
        out.advance(block.width);
        return block;
    }

    void close(ByteBuffer& out, const OpenBlock& block) {
        const std::size_t content = block.at + block.width;
        const std::size_t length = out.size() - content;
        if (length < 0x80 && block.width == 1) [[likely]] {
            out.data()[block.at] = static_cast<char>(length);
            return;
        }
        const unsigned width = varintSize(length);
        if (width != block.width) [[unlikely]] {
            out.ensure(kMaxVarint);
            std::memmove(out.data() + block.at + width, out.data() + content, length);
            out.truncate(block.at + width + length);
            widths_[block.slot] = static_cast<std::uint8_t>(width);
        }
        putVarint(out.data() + block.at, length);
    }

    /// The calling thread's guesses.
    static BlockLengths& ofThread() {
        thread_local BlockLengths lengths;
        return lengths;
    }

private:
    BlockLengths() { std::memset(widths_, 1, sizeof widths_); }

    std::uint8_t widths_[256];
};

} // namespace HBX::internal
