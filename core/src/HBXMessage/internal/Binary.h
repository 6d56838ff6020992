#pragma once

#include <string_view>

#include <HBXMessage/internal/BinaryFormat.h>
#include <HBXMessage/internal/Envelope.h>
#include <HBXMessage/internal/Tree.h>

namespace HBX::internal {

/// Parses the binary form into `tree`, which is a fresh one: a whole message's content under its root, or,
/// for one element, that element as the root's only child.
/// @return 0; -1 with byte offset and element path in the thread's error message (tree and envelope are then
/// to
///         be thrown away).
int readBinary(std::string_view bytes, Tree& tree, Envelope& envelope, bool& wholeMessage);

/// Checks bytes as `readBinary` does, without building anything. Same results and messages.
int checkBinary(std::string_view bytes);

/// What becomes the top node of the written form.
enum class Top {
    Message, ///< the whole message with its envelope
    Content, ///< a message without envelope whose root has the content of the element
    Element, ///< the element alone
};

/// Appends the binary form to `out`.
/// @return 0; -1 with the reason in the thread's error message when the tree exceeds what could be read
/// again.
int writeBinary(const Tree& tree, const Envelope& envelope, NodeIndex from, Top top, ByteBuffer& out);

} // namespace HBX::internal
