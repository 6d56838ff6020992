#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <HBXMessage/HBXMessage.h>

namespace HBX::tool {

using MessagePointer = boost::intrusive_ptr<HBXMessage>;
using Cursor = std::unique_ptr<HBXMessageIterator>;

enum class Encoding { Text, Binary };

/// The encoding of the bytes of a message: binary ones begin with a mark that no text can have.
Encoding encodingOf(std::string_view bytes);

/// A message out of bytes of either encoding.
/// @param path  what a failure names.
/// @throws Failure  with the place in the bytes and the reason.
MessagePointer parseMessage(const std::string& path, const std::string& bytes);

/// The message in a file, "-" being standard input.
MessagePointer loadMessage(const std::string& path);

/// A message as bytes.
/// @param path  what a failure names: a message may be too big for an encoding.
std::string messageBytes(const std::string& path, const MessagePointer& message, Encoding encoding);

/// The element under a cursor as text, with a line end.
/// @param indent  blanks of each level, 0: all in one line.
std::string elementText(const std::string& path, const HBXMessageIterator& element, int indent = 2);

/// "/data/schedule/next". Moves the cursor to the root.
std::string takePath(const HBXMessageIterator& element);

/// Moves the cursor to the element that follows in document order, without what lies within the present one
/// when `into` is false. @return false at the end.
bool advance(const HBXMessageIterator& element, bool into = true);

inline Cursor cursorOn(const MessagePointer& message) { return Cursor(message->newIterator()); }

} // namespace HBX::tool
