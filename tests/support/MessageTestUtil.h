#pragma once

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <malloc.h>

#include <HBXCommon/HBXAbort.h>
#include <HBXMessage/HBXEncoding.h>
#include <HBXMessage/HBXMessage.h>

#include "support/CapturedLog.h"

#ifdef __SANITIZE_ADDRESS__
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

/// Short ways to messages, cursors, their bytes and texts.
namespace HBX::test {

using Message = boost::intrusive_ptr<HBXMessage>;
using Cursor = std::unique_ptr<HBXMessageIterator>;

inline Message newMessage() { return adoptMessage(HBXMsgFactory::createNew()); }

/// Null when the bytes are no message.
inline Message parseMessage(std::string_view bytes) {
    return adoptMessage(HBXMsgFactory::createNew(bytes.data(), static_cast<int>(bytes.size())));
}

inline Cursor rootOf(const Message& message) { return Cursor(message->newIterator()); }

/// On the root of a new message.
inline Cursor newCursor() { return rootOf(newMessage()); }

inline Cursor secondCursor(const HBXMessageIterator& it, bool same = true) {
    return Cursor(it.newIterator(same));
}

/// Takes over a result from malloc.
inline std::string takeBytes(char* data, int length) {
    const std::unique_ptr<char, decltype(&std::free)> owner(data, &std::free);
    return data == nullptr ? std::string() : std::string(data, static_cast<std::size_t>(length));
}

inline std::string takeText(char* text) {
    const std::unique_ptr<char, decltype(&std::free)> owner(text, &std::free);
    return text == nullptr ? std::string() : std::string(text);
}

/// The whole message; "" when it cannot be serialised.
inline std::string bytesOf(const HBXMessageIterator& it) {
    char* data = nullptr;
    int length = 0;
    it.serialize(&data, &length, 0);
    return takeBytes(data, length);
}

inline std::string bytesOf(const Message& message) { return bytesOf(*rootOf(message)); }

inline std::string bytesFromChild(const HBXMessageIterator& it) {
    char* data = nullptr;
    int length = 0;
    it.serializeFromChild(&data, &length);
    return takeBytes(data, length);
}

inline int deserializeToChild(HBXMessageIterator& it, std::string_view bytes) {
    return it.deserializeToChild(bytes.data(), static_cast<int>(bytes.size()));
}

/// The content below the root in text form.
inline std::string contentText(const HBXMessageIterator& it) {
    const std::string text = takeText(it.toText());
    const std::size_t start = text.find("v=\"1\">") + 6;
    return text.substr(start, text.rfind("</message>") - start);
}

using Reading = std::function<int(const HBXMessageIterator&)>;
using Writing = std::function<int(HBXMessageIterator&)>;

inline HBXReadCall readCall(Reading& reading) {
    return {[](const HBXMessageIterator& it, void* raw) { return (*static_cast<Reading*>(raw))(it); },
            &reading};
}

/// Runs on a cursor over the bytes where they lie, after the check.
inline int readInPlace(std::string_view bytes, Reading reading) {
    return decodeMessage(bytes, readCall(reading));
}

/// The same without the check.
inline int readTrusted(std::string_view bytes, Reading reading) {
    return decodeTrustedMessage(bytes, readCall(reading));
}

/// Whether the check takes the bytes, without building a tree.
inline bool checks(std::string_view bytes) {
    return readInPlace(bytes, [](const HBXMessageIterator&) { return 0; }) == 0;
}

/// What encoding in one go makes; `bytes` keeps its content on failure.
inline int encode(const Writing& writing, std::string& bytes) {
    return encodeMessage(
        {[](HBXMessageIterator& it, const void* raw) { return (*static_cast<const Writing*>(raw))(it); },
         &writing},
        bytes);
}

/// The results of every change that a cursor offers.
inline std::vector<int> tryEveryChange(HBXMessageIterator& it) {
    const Cursor other = newCursor();
    return {it.newChild(1026),           it.newChild("n"),
            it.putChild(1026),           it.deleteChild(1026),
            it.deleteFromChild(),        it.setNamespace(283),
            it.setNamespace("n"),        it.saveNamespace(283),
            it.saveNamespace("n"),       it.setNamespaceChild(283),
            it.setComplexType(283, 295), it.setComplexType("n", "t"),
            it.putValue(1, 0),           it.putValue("x", 1026),
            it.putValue("x", "n"),       it.putAttr("x", 1026),
            it.copyToChild(other.get()), it.fromTextToChild("<a/>")};
}

/// Bytes that the program holds at present.
inline std::size_t allocatedBytes() {
#ifdef __SANITIZE_ADDRESS__
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
#endif
}

/// "file:line function" of the abort that the call ends in; "" when it returns.
inline std::string abortOf(const std::function<void()>& call) {
    struct Aborted {
        std::string place;
    };
    HBXAbortHook previous = setAbortHook([](const HBXSourcePlace& place) {
        throw Aborted{std::string(place.module) + " " + place.file + ":" + std::to_string(place.line) + " " +
                      place.function};
    });
    const CapturedLog quiet;
    std::string place;
    try {
        call();
    } catch (const Aborted& aborted) {
        place = aborted.place;
    }
    setAbortHook(std::move(previous));
    return place;
}

} // namespace HBX::test
