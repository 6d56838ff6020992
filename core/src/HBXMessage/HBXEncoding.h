#pragma once

#include <string>
#include <string_view>

#include <HBXCommon/HBXExport.h>
#include <HBXMessage/HBXMessageIterator.h>

/// Records straight to bytes and back, without a tree between. The bytes are those of a message (binary form)
/// whose root was written by `putObject(value, 0)`, whichever way they are made.
namespace HBX {

/// Something that writes through a cursor, and something that reads; handed to the functions below.
struct HBXWriteCall {
    int (*run)(HBXMessageIterator& it, const void* value);
    const void* value;
};
struct HBXReadCall {
    int (*run)(const HBXMessageIterator& it, void* value);
    void* value;
};

/// Replaces `bytes` by what the call writes on a root. A writer may do everything that a cursor offers; what
/// cannot be encoded in one go is done over a tree by itself, the call then runs a second time.
/// @return the call's result; -1 when the message would exceed its limits. `bytes` is untouched unless 0.
HBX_EXPORT int encodeMessage(HBXWriteCall call, std::string& bytes);

/// Checks the bytes, which may come from anywhere, then reads them where they lie.
/// @return the call's result; -1 with offset and element path in the thread's error message when they are no
///         message.
HBX_EXPORT int decodeMessage(std::string_view bytes, HBXReadCall call);

/// Reads bytes that we wrote ourselves and that nobody can have changed, without the check: damage in a part
/// that is not read goes unseen, and a damaged element looks like an absent one. Never reads out of bounds.
HBX_EXPORT int decodeTrustedMessage(std::string_view bytes, HBXReadCall call);

namespace internal {

template <class T>
HBXWriteCall writeCall(const T& value) {
    return {
        [](HBXMessageIterator& it, const void* raw) { return it.putObject(*static_cast<const T*>(raw), 0); },
        &value};
}

template <class T>
HBXReadCall readCall(T& value) {
    return {[](const HBXMessageIterator& it, void* raw) { return it.getObject(*static_cast<T*>(raw), 0); },
            &value};
}

} // namespace internal

/// Encodes a record as a whole message; see `encodeMessage`.
template <class T>
int encodeRecord(const T& value, std::string& bytes) {
    return encodeMessage(internal::writeCall(value), bytes);
}

/// Reads such a message; see `decodeMessage`.
template <class T>
int decodeRecord(std::string_view bytes, T& value) {
    return decodeMessage(bytes, internal::readCall(value));
}

/// Reads one that nobody can have changed; see `decodeTrustedMessage`.
template <class T>
int decodeTrustedRecord(std::string_view bytes, T& value) {
    return decodeTrustedMessage(bytes, internal::readCall(value));
}

} // namespace HBX
