#include <HBXFunctionalityCore/environment/HBXEnvCoreBasic.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <string>

namespace HBX {
namespace {

constexpr std::size_t kLargestMessage = std::numeric_limits<std::int32_t>::max();
constexpr int kTooShort = -2;

/// The message as a record holds it; empty when it cannot be serialised.
std::string serialized(const HBXMessageIterator& it) {
    const HBXMessage& message = *it.getMessage();
    std::size_t length = 0;
    if (message.serialize(nullptr, &length, &it) != kTooShort || length > kLargestMessage) {
        return {};
    }
    std::string bytes(length, '\0');
    std::size_t written = length;
    return message.serialize(bytes.data(), &written, &it) == 0 && written == length ? bytes : std::string();
}

HBXMessage* parse(std::string_view bytes) {
    return bytes.empty() || bytes.size() > kLargestMessage
               ? nullptr
               : HBXMsgFactory::createNew(bytes.data(), static_cast<int>(bytes.size()));
}

} // namespace

static_assert(std::is_trivially_copyable_v<HBXEID> && std::is_trivially_copyable_v<HBXEnvStatus> &&
              std::is_trivially_copyable_v<HBXEnvType>);

HBXEnvCoreBasic::pointer HBXEnvCoreBasic::make(const HBXEnvCoreBasic& fields, std::string_view config,
                                               std::string_view virtualConfig, std::size_t room) {
    const std::size_t length = kFixedSize + config.size() + virtualConfig.size();
    // Zeros, so that the bytes behind the content are the same in equal records.
    void* memory = std::calloc(1, std::max(room, length));
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    auto* record = new (memory) HBXEnvCoreBasic();
    pointer owner(record, HBXCachedItem::deleter_free());
    record->eid = fields.eid;
    record->parentEid = fields.parentEid;
    record->status = fields.status;
    record->type = fields.type;
    std::copy(std::begin(fields.alertTypes), std::end(fields.alertTypes), record->alertTypes);
    record->configSize = config.size();
    record->virtualConfigSize = virtualConfig.size();
    char* behind = std::copy(config.begin(), config.end(), static_cast<char*>(memory) + kDataOffset);
    std::copy(virtualConfig.begin(), virtualConfig.end(), behind);
    return owner;
}

HBXEnvCoreBasic::pointer HBXEnvCoreBasic::createInstance(const HBXEnvCoreBasic& other) {
    return make(other, other.configBytes(), other.virtualConfigBytes());
}

HBXEnvCoreBasic::pointer HBXEnvCoreBasic::createInstance(const HBXEnvCoreBasic& base,
                                                         const HBXEnvCoreBasic& other) {
    pointer merged = make(base, base.configBytes(), other.virtualConfigBytes());
    if (!other.type.empty()) {
        merged->type = other.type;
    }
    return merged;
}

HBXEnvCoreBasic::pointer HBXEnvCoreBasic::createInstance(const HBXMessageIterator* it, EnvConfigType kind) {
    return createInstance(it, HBXEnvCoreBasic(), kind);
}

HBXEnvCoreBasic::pointer HBXEnvCoreBasic::createInstance(const HBXMessageIterator& it, EnvConfigType kind) {
    return createInstance(&it, kind);
}

HBXEnvCoreBasic::pointer HBXEnvCoreBasic::createInstance(const HBXMessageIterator* it,
                                                         const HBXEnvCoreBasic& base, EnvConfigType kind) {
    std::string message;
    if (it != nullptr) {
        message = serialized(*it);
        if (message.empty()) {
            return makeEmpty();
        }
    }
    // The room of the message that is replaced is not given back.
    const std::size_t room = base.length() + message.size();
    return kind == VIRTUAL_CONFIG ? make(base, base.configBytes(), message, room)
                                  : make(base, message, base.virtualConfigBytes(), room);
}

int HBXEnvCoreBasic::getBuffer(const void** start, std::size_t& size, const void*) const {
    if (start != nullptr) {
        *start = this;
    }
    size = length();
    return 0;
}

HBXMessage* HBXEnvCoreBasic::getConfig() const { return parse(configBytes()); }

HBXMessage* HBXEnvCoreBasic::getVirtualConfig() const { return parse(virtualConfigBytes()); }

void HBXEnvCoreBasic::resetConfigData() {
    char* start = reinterpret_cast<char*>(this) + kDataOffset;
    const std::size_t behind = virtualConfigSize + (kFixedSize - kDataOffset); // what the record still has
    std::memmove(start, start + configSize, std::min<std::size_t>(configSize, behind));
    configSize = 0;
}

} // namespace HBX
