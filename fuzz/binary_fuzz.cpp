#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include <HBXMessage/HBXDefaultMap.h>
#include <HBXMessage/HBXEncoding.h>
#include <HBXMessage/HBXMessage.h>

#include "FitHeader.h"

/// Bytes as a binary message: checking and parsing agree, what parses is written again byte for byte, and
/// walking the bytes in place, checked or not, stays within them and sees what the tree holds.
namespace {

using namespace HBX;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

struct Walk {
    std::string dump;
    int elements = 0;
};

void walk(const HBXMessageIterator& it, Walk& walked) {
    if (++walked.elements > 2000) {
        return;
    }
    std::string_view text;
    bool xml = false;
    walked.dump += it.curName() + '|' + it.curType() + (it.curNamespaceID() != 0 ? "|n" : "|");
    if (it.rawValue(0, text, xml) == 0) {
        walked.dump.append(xml ? "x" : "t").append(text);
    }
    if (it.rawAttr(1010, text) == 0 || it.rawAttr(it.idOfName("name"), text) == 0) {
        walked.dump.append("@").append(text);
    }
    it.seekPresence(it.curID());
    if (it.firstChild() == 0) {
        const int first = it.curID();
        do {
            walk(it, walked);
        } while (it.nextSibling() == 0);
        require(it.nextSibling(first) == -1);
        require(it.seekUp() == 0);
        require(it.seek(first) == (first > 0 ? 0 : -1));
        require(first <= 0 || it.seekUp() == 0);
    }
}

int walkCall(const HBXMessageIterator& it, void* walked) {
    walk(it, *static_cast<Walk*>(walked));
    return 0;
}

std::string serialized(const HBXMessageIterator& it, bool whole) {
    char* data = nullptr;
    int length = 0;
    require((whole ? it.serialize(&data, &length, 0) : it.serializeFromChild(&data, &length)) == 0);
    const std::unique_ptr<char, decltype(&std::free)> owner(data, &std::free);
    return {data, static_cast<std::size_t>(length)};
}

std::uint32_t varint(std::string_view bytes, std::size_t& at) {
    std::uint32_t value = 0;
    for (unsigned shift = 0; at < bytes.size(); shift += 7) {
        const auto byte = static_cast<std::uint8_t>(bytes[at++]);
        value |= static_cast<std::uint32_t>(byte & 0x7FU) << shift;
        if (byte < 0x80) {
            break;
        }
    }
    return value;
}

/// A listed name that a fixed table knows is accepted, but written by its number.
bool listsKnownName(std::string_view bytes) {
    std::size_t at = 12;
    for (std::uint32_t count = varint(bytes, at); count > 0; --count) {
        const std::size_t length = varint(bytes, at);
        const std::string_view name = bytes.substr(at, length);
        at += length;
        if (HBXDefaultMap::findElemName(name) != 0 || HBXDefaultMap::findNSName(name) != 0 ||
            HBXDefaultMap::findTypeName(name) != 0) {
            return true;
        }
    }
    return false;
}

void checkParsed(HBXMessage& message, std::string_view bytes) {
    const std::unique_ptr<HBXMessageIterator> it(message.newIterator());
    Walk tree;
    walk(*it, tree);
    Walk inPlace;
    require(decodeMessage(bytes, {&walkCall, &inPlace}) == 0);
    require(tree.elements > 2000 || tree.dump == inPlace.dump);
    require(it->seekRoot() == 0);
    const bool whole = bytes[5] == 0;
    require(whole || it->firstChild() == 0);
    const std::string again = serialized(*it, whole);
    if (!listsKnownName(bytes)) {
        require(again == bytes);
    } else {
        const auto second =
            adoptMessage(HBXMsgFactory::createNew(again.data(), static_cast<int>(again.size())));
        require(second != nullptr);
    }
}

void check(std::string_view bytes) {
    Walk checked;
    Walk trusted;
    const bool good = decodeMessage(bytes, {&walkCall, &checked}) == 0;
    decodeTrustedMessage(bytes, {&walkCall, &trusted});
    const auto message = adoptMessage(HBXMsgFactory::createNew(bytes.data(), static_cast<int>(bytes.size())));
    require(good == (message != nullptr));
    if (message != nullptr) {
        require(checked.dump == trusted.dump);
        checkParsed(*message, bytes);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    check(bytes);
    check(fitHeader(bytes));
    return 0;
}
