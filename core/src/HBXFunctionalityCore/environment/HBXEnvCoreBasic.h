#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <HBXCommon/limited_length_string.h>
#include <HBXCore/HBXCachedItem.h>
#include <HBXFunctionalityCore/alert/HBXAlertData.h>
#include <HBXFunctionalityCore/environment/HBXEnvStatus.h>
#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXMessage/HBXMessage.h>

namespace HBX {

/// Which of the two messages of an environment.
enum EnvConfigType : std::int32_t { ENV_CONFIG = 0, VIRTUAL_CONFIG = 1 };

/// The name of a kind of environments.
using HBXEnvType = limited_length_string<16, char>;

/// The core record of an environment: fixed fields, then both configuration messages in binary form. Caches
/// store it byte for byte, so the layout is a storage format (docs/environments.md). Records are made by
/// `createInstance` only and owned through shared pointers; a record may also lie in a read-only mapped file.
class HBX_EXPORT HBXEnvCoreBasic {
public:
    using pointer = boost::shared_ptr<HBXEnvCoreBasic>;

    static constexpr std::size_t kFixedSize = 112;
    static constexpr std::size_t kDataOffset = 104;
    static constexpr std::size_t kKeyOffset = 8; ///< where a cache finds the identifier

    HBXCachedItem item; ///< of the cache; never copied
    HBXEID eid;
    HBXEID parentEid; ///< null for a top-level environment
    HBXEnvStatus status;
    HBXEnvType type;
    HBXAlertData::AlertType alertTypes[HBXAlertData::kReasons] = {};
    std::uint32_t spare = 0;
    std::uint64_t configSize = 0; ///< bytes
    std::uint64_t virtualConfigSize = 0;
    char data[kFixedSize - kDataOffset] = {}; ///< the beginning of the messages, which go on behind it

    HBXEnvCoreBasic& operator=(const HBXEnvCoreBasic&) = delete;

    // A message is what a cursor over a tree stands on. One that cannot be serialised, or exceeds 2^31-1
    // bytes, gives a new empty record instead.

    /// A copy.
    static pointer createInstance(const HBXEnvCoreBasic& other);
    /// Fields and configuration of `base`, virtual configuration of `other`, and its type unless empty.
    static pointer createInstance(const HBXEnvCoreBasic& base, const HBXEnvCoreBasic& other);
    /// A new record that holds the message; an empty one without a cursor.
    static pointer createInstance(const HBXMessageIterator* it, EnvConfigType kind);
    static pointer createInstance(const HBXMessageIterator& it, EnvConfigType kind);
    /// A copy of `base` with one of its messages replaced; without a cursor, taken out.
    static pointer createInstance(const HBXMessageIterator* it, const HBXEnvCoreBasic& base,
                                  EnvConfigType kind);

    /// Bytes that the record takes where it is stored: 8 more than its content, by the format.
    [[nodiscard]] std::size_t length() const { return kFixedSize + configSize + virtualConfigSize; }
    /// `length()` of what may be no record at all; 0 when it does not fit in the bytes that are there.
    static std::size_t checkedLength(const void* record, std::size_t available);

    /// Where the record begins (when `start` is not null) and its `length()`. Always 0.
    int getBuffer(const void** start, std::size_t& size, const void* unused = nullptr) const;

    /// The messages as bytes, good as long as the record.
    [[nodiscard]] std::string_view configBytes() const { return {dataStart(), configSize}; }
    [[nodiscard]] std::string_view virtualConfigBytes() const {
        return {dataStart() + configSize, virtualConfigSize};
    }
    /// A new message that the caller owns; null when there are no bytes or they are damaged.
    [[nodiscard]] HBXMessage* getConfig() const;
    [[nodiscard]] HBXMessage* getVirtualConfig() const;

    /// Takes the configuration out. Only `configSize` bytes behind it move down: when there are more, the
    /// virtual configuration is damaged.
    void resetConfigData();
    void resetVirtualConfigData() { virtualConfigSize = 0; }

private:
    friend class HBXEnv;

    HBXEnvCoreBasic() = default;
    HBXEnvCoreBasic(const HBXEnvCoreBasic&) = default;
    ~HBXEnvCoreBasic() = default;

    /// The fixed fields of `fields` with these messages. `room` is at least the content's length.
    static pointer make(const HBXEnvCoreBasic& fields, std::string_view config,
                        std::string_view virtualConfig, std::size_t room = 0);
    static pointer makeEmpty() { return make(HBXEnvCoreBasic(), {}, {}); }

    [[nodiscard]] const char* dataStart() const { return reinterpret_cast<const char*>(this) + kDataOffset; }
};

// In place, as whoever walks through a cache asks it for each record.
inline std::size_t HBXEnvCoreBasic::checkedLength(const void* record, std::size_t available) {
    if (available < kFixedSize) {
        return 0;
    }
    std::uint64_t sizes[2];
    std::memcpy(sizes, static_cast<const char*>(record) + offsetof(HBXEnvCoreBasic, configSize),
                sizeof sizes);
    const std::uint64_t room = available - kFixedSize;
    if (sizes[0] > room || sizes[1] > room - sizes[0]) {
        return 0;
    }
    return kFixedSize + sizes[0] + sizes[1];
}

static_assert(std::is_standard_layout_v<HBXEnvCoreBasic>);
static_assert(offsetof(HBXEnvCoreBasic, item) == 0);
static_assert(offsetof(HBXEnvCoreBasic, eid) == HBXEnvCoreBasic::kKeyOffset);
static_assert(offsetof(HBXEnvCoreBasic, parentEid) == 24);
static_assert(offsetof(HBXEnvCoreBasic, status) == 40);
static_assert(offsetof(HBXEnvCoreBasic, status.transition) == 44);
static_assert(offsetof(HBXEnvCoreBasic, type) == 48);
static_assert(offsetof(HBXEnvCoreBasic, alertTypes) == 64);
static_assert(offsetof(HBXEnvCoreBasic, configSize) == 88);
static_assert(offsetof(HBXEnvCoreBasic, virtualConfigSize) == 96);
static_assert(offsetof(HBXEnvCoreBasic, data) == HBXEnvCoreBasic::kDataOffset);
static_assert(sizeof(HBXEnvCoreBasic) == HBXEnvCoreBasic::kFixedSize);

} // namespace HBX
