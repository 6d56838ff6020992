#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

/// The binary form put together by hand, so that tests can also say what no writer would.
namespace HBX::test {

enum NodeForm { kText, kEmpty, kChildren, kFlags };

inline std::string varint(std::uint64_t value) {
    std::string bytes;
    for (; value >= 0x80; value >>= 7) {
        bytes += static_cast<char>(value | 0x80);
    }
    return bytes + static_cast<char>(value);
}

/// A length and the bytes.
inline std::string sized(std::string_view bytes) { return varint(bytes.size()).append(bytes); }

inline std::string head(std::uint64_t number, NodeForm form) {
    return varint(number * 8 + static_cast<std::uint64_t>(form) * 2);
}
inline std::string namedHead(std::uint64_t index, NodeForm form) {
    return varint(index * 8 + static_cast<std::uint64_t>(form) * 2 + 1);
}

inline std::string textNode(std::uint64_t number, std::string_view value) {
    return head(number, kText) + sized(value);
}
inline std::string emptyNode(std::uint64_t number) { return head(number, kEmpty); }
inline std::string parentNode(std::uint64_t number, std::string_view children) {
    return head(number, kChildren) + sized(children);
}
inline std::string flaggedNode(std::uint64_t number, unsigned flags, std::string_view pieces) {
    return (head(number, kFlags) + static_cast<char>(flags)).append(pieces);
}

inline std::string nameList(std::initializer_list<std::string_view> names) {
    std::string list = varint(names.size());
    for (const std::string_view name : names) {
        list += sized(name);
    }
    return list;
}

inline std::string withHeader(std::string_view body, char form, char version = 1) {
    std::string bytes = "HBXM";
    bytes += version;
    bytes += form;
    bytes += std::string(2, '\0');
    for (unsigned shift = 0; shift < 32; shift += 8) {
        bytes += static_cast<char>(body.size() >> shift);
    }
    return bytes.append(body);
}

/// A whole message without envelope whose root node is given.
inline std::string messageBytes(std::string_view root, std::string_view names = std::string_view("\0", 1),
                                std::string_view envelope = std::string_view("\0", 1)) {
    return withHeader(std::string(names).append(envelope).append(root), 0);
}

/// A whole message whose root has these children and nothing else.
inline std::string messageOf(std::string_view children) { return messageBytes(parentNode(0, children)); }

inline std::string elementBytes(std::string_view node, std::string_view names = std::string_view("\0", 1)) {
    return withHeader(std::string(names).append(node), 1);
}

} // namespace HBX::test
