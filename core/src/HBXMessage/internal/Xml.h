#pragma once

#include <string_view>

#include <HBXMessage/internal/ByteBuffer.h>
#include <HBXMessage/internal/Envelope.h>
#include <HBXMessage/internal/Tree.h>

namespace HBX::internal {

/// Parses the text form into `tree`, which is a fresh one: a whole message's content under its root, or, for
/// the text of one element, that element as the root's only child.
/// @return 0; -1 with line, column and element path in the thread's error message (tree and envelope are then
///         to be thrown away).
int readXml(std::string_view text, Tree& tree, Envelope& envelope, bool& wholeMessage);

/// Writes the text form to `out`, which is empty: of the whole message when `from` is the root, else of that
/// element.
/// @param indent  unit of indentation, "" = everything on one line.
/// @return 0; -1 with the reason in the thread's error message when the tree exceeds what could be read
/// again.
int writeXml(const Tree& tree, const Envelope& envelope, NodeIndex from, std::string_view indent,
             ByteBuffer& out);

} // namespace HBX::internal
