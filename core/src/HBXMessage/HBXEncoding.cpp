#include <HBXMessage/HBXEncoding.h>

#include <HBXMessage/HBXBinaryIterator.h>
#include <HBXMessage/internal/Binary.h>
#include <HBXMessage/internal/EncodingCursor.h>
#include <HBXMessage/internal/InPlaceCursor.h>

namespace HBX {
namespace {

/// A thread keeps its buffer for the next record; one large record must not cost it that much for ever.
constexpr std::size_t kKeptBuffer = std::size_t{1} << 20;

int encodeOverTree(HBXWriteCall call, std::string& bytes) {
    const auto message = adoptMessage(HBXMsgFactory::createNew());
    auto& binary = static_cast<HBXBinary&>(*message);
    HBXBinaryIterator cursor(binary);
    if (const int result = call.run(cursor, call.value); result != 0) {
        return result;
    }
    internal::ByteBuffer out;
    if (writeBinary(binary.tree(), binary.envelope(), internal::kRoot, internal::Top::Message, out) != 0) {
        return -1;
    }
    bytes.assign(out.view());
    return 0;
}

int readInPlace(std::string_view bytes, HBXReadCall call) {
    const internal::InPlaceCursor cursor(bytes);
    return cursor.good() ? call.run(cursor, call.value) : -1;
}

} // namespace

int encodeMessage(HBXWriteCall call, std::string& bytes) {
    thread_local bool busy = false;
    thread_local internal::ByteBuffer shared;
    internal::ByteBuffer own;
    const bool nested = busy; // a writer that encodes another record meanwhile
    internal::ByteBuffer& out = nested ? own : shared;
    busy = true;
    internal::EncodingCursor cursor(out);
    const int result = call.run(cursor, call.value);
    const bool complete = cursor.finish();
    busy = nested;
    if (complete && result == 0) {
        bytes.assign(out.view());
    }
    if (out.size() > kKeptBuffer) {
        internal::ByteBuffer().swap(out);
    }
    return complete ? result : encodeOverTree(call, bytes);
}

int decodeMessage(std::string_view bytes, HBXReadCall call) {
    return internal::checkBinary(bytes) == 0 ? readInPlace(bytes, call) : -1;
}

int decodeTrustedMessage(std::string_view bytes, HBXReadCall call) { return readInPlace(bytes, call); }

} // namespace HBX
