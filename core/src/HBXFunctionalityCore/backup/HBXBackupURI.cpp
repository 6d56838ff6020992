#include <HBXFunctionalityCore/backup/HBXBackupURI.h>

#include <charconv>
#include <climits>
#include <cstdlib>
#include <memory>

#include <HBXCommon/HBXLog.h>
#include <HBXMessage/HBXBinary.h>

namespace HBX {

namespace {

using Buffer = std::unique_ptr<char, decltype(&std::free)>;
using Message = boost::intrusive_ptr<HBXMessage>;
using Iterator = std::unique_ptr<HBXMessageIterator>;

constexpr int kSerializeFlags = 40500; // without a meaning here; peers pass it too

/// Logs which step has failed.
bool fail(int line, const char* function, const char* step) {
    Log2("HBXFunctionalityCore", "core/src/HBXFunctionalityCore/HBXBackupMBase", line, function, function)
        .put(1, "%s", step);
    return false;
}

void appendHex(const char* bytes, std::size_t size, std::string& text) {
    constexpr const char* kDigits = "0123456789abcdef";
    for (std::size_t i = 0; i < size; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0xF];
    }
}

/// Pairs of digits, up to the first that does not begin with one. One digit is a byte too.
std::string bytesFromHex(std::string_view text) {
    std::string bytes;
    for (; !text.empty(); text.remove_prefix(std::min<std::size_t>(text.size(), 2))) {
        unsigned byte = 0;
        const char* const end = text.data() + std::min<std::size_t>(text.size(), 2);
        if (std::from_chars(text.data(), end, byte, 16).ec != std::errc()) {
            break;
        }
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

bool encode(const HBXDSLocation& location, std::string& appendTo) {
    constexpr const char* kFunction = "HBX::encode";
    const Message message = adoptMessage(new HBXBinary());
    if (message->create(0) != 0) {
        return fail(__LINE__, kFunction, "create message");
    }
    const Iterator it(message->newIterator());
    if (!it) {
        return fail(__LINE__, kFunction, "new iterator");
    }
    if (HBXDSLocation::Writer()(*it, location) != 0) {
        return fail(__LINE__, kFunction, "encode object");
    }
    char* data = nullptr;
    int length = 0;
    if (message->serialize(&data, &length, nullptr, kSerializeFlags) != 0) {
        return fail(__LINE__, kFunction, "encode message");
    }
    const Buffer owner(data, &std::free);
    appendHex(data, static_cast<std::size_t>(length), appendTo);
    return true;
}

bool decode(const std::string& text, std::size_t length, HBXDSLocation& location) {
    constexpr const char* kFunction = "HBX::decode";
    const std::string bytes = bytesFromHex(std::string_view(text).substr(0, length));
    const Message message = adoptMessage(new HBXBinary());
    if (bytes.size() > INT_MAX ||
        message->deserialize(bytes.data(), static_cast<int>(bytes.size()), nullptr) != 0) {
        return fail(__LINE__, kFunction, "decode binary");
    }
    const Iterator it(message->newIterator());
    if (!it) {
        return fail(__LINE__, kFunction, "new iterator");
    }
    if (HBXDSLocation::Reader()(*it, location) != 0) {
        return fail(__LINE__, kFunction, "parse object");
    }
    return true;
}

} // namespace

HBXBackupURI::HBXBackupURI(const std::string& text) {
    const HBXURI reference(text);
    const std::string& all = reference.path();
    std::size_t slash = all.find_first_of("&/");
    if (!reference.isValid() || reference.type() != TYPE || slash == std::string::npos) {
        return;
    }
    std::size_t start = 0;
    if (all[slash] == '&') {
        HBXDSLocation location;
        if (!decode(all, slash, location)) {
            return;
        }
        start = slash + 1;
        slash = all.find('/', start);
        if (slash == std::string::npos) {
            return;
        }
        storage_.set(std::move(location));
    }
    const std::size_t split = all.find_first_of("/\\", slash + 1);
    id_ = all.substr(start, split - start);
    if (split != std::string::npos) {
        path_ = all.substr(split + 1);
    }
}

bool HBXBackupURI::uri(HBXURI& out) const {
    std::string text;
    if (!isValid() || (storage_.isSet() && !encode(storage_.get(), text))) {
        return true;
    }
    if (storage_.isSet()) {
        text += '&';
    }
    out.type(TYPE);
    out.path(text.append(id_).append("/").append(path_));
    return false;
}

} // namespace HBX
