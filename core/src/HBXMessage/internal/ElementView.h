#pragma once

#include <cstdint>
#include <string_view>

#include <HBXMessage/internal/BinaryFormat.h>

namespace HBX::internal {

/// One encoded element, taken apart where it lies; small, because many are. References are as written for
/// namespaces, types and attributes (number * 2, or index into the name list * 2 + 1); the id is a number, or
/// kDynamicRef + index.
struct ElementView {
    Ref id;
    std::uint16_t flags; ///< as in kFormFlags, whatever the form
    std::uint16_t attributeCount;
    std::uint32_t ns, typeNs, type;
    std::uint32_t valueLength;
    const std::uint8_t* value; ///< the attributes begin behind it
    const std::uint8_t* children;
    const std::uint8_t* end;

    /// False when the element does not fit before `limit` or is malformed.
    bool parse(const std::uint8_t* at, const std::uint8_t* limit) {
        std::uint64_t head = 0;
        at = readVarint(at, limit, head);
        if (at == nullptr) {
            return false;
        }
        id = static_cast<Ref>(head >> 3) + ((head & 1) != 0 ? kDynamicRef : 0);
        switch (static_cast<Form>(head >> 1 & 3)) {
        case kFormText:
            flags = kHasValue;
            return takeValue(at, limit) && finish(value + valueLength);
        case kFormEmpty:
            flags = 0;
            return finish(at);
        case kFormChildren:
            flags = kHasChildren;
            return takeChildren(at, limit);
        case kFormFlags:
            return parseFlags(at, limit);
        }
        return false;
    }

    [[nodiscard]] bool hasValue() const { return (flags & kHasValue) != 0; }
    [[nodiscard]] bool isXml() const { return (flags & kIsXml) != 0; }
    [[nodiscard]] bool hasChildren() const { return (flags & kHasChildren) != 0; }
    [[nodiscard]] std::string_view text() const {
        return {reinterpret_cast<const char*>(value), valueLength};
    }
    [[nodiscard]] const std::uint8_t* attributes() const { return value + valueLength; }

private:
    bool finish(const std::uint8_t* behind) {
        end = behind;
        return true;
    }

    static bool takeReference(const std::uint8_t*& at, const std::uint8_t* limit, std::uint32_t& reference) {
        std::uint64_t number = 0;
        at = readVarint(at, limit, number);
        reference = static_cast<std::uint32_t>(number);
        return at != nullptr && number == reference;
    }

    bool takeValue(const std::uint8_t* at, const std::uint8_t* limit) {
        value = readLength(at, limit, valueLength);
        return value != nullptr;
    }

    bool takeChildren(const std::uint8_t* at, const std::uint8_t* limit) {
        std::uint32_t length = 0;
        children = readLength(at, limit, length);
        return children != nullptr && finish(children + length);
    }

    bool parseFlags(const std::uint8_t* at, const std::uint8_t* limit) {
        if (at == limit) {
            return false;
        }
        flags = *at++;
        if ((flags & kHasNamespace) != 0 && !takeReference(at, limit, ns)) {
            return false;
        }
        if ((flags & kHasType) != 0 &&
            (!takeReference(at, limit, typeNs) || !takeReference(at, limit, type))) {
            return false;
        }
        value = at;
        valueLength = 0;
        if ((flags & kHasValue) != 0) {
            if (!takeValue(at, limit)) {
                return false;
            }
            at = value + valueLength;
        }
        if ((flags & kHasAttributes) != 0) {
            at = skipAttributes(at, limit);
            if (at == nullptr) {
                return false;
            }
        }
        return (flags & kHasChildren) != 0 ? takeChildren(at, limit) : finish(at);
    }

    const std::uint8_t* skipAttributes(const std::uint8_t* at, const std::uint8_t* limit) {
        std::uint64_t count = 0;
        at = readVarint(at, limit, count);
        if (count > UINT16_MAX) {
            return nullptr;
        }
        attributeCount = static_cast<std::uint16_t>(count);
        for (; count != 0 && at != nullptr; --count) {
            std::uint32_t reference = 0;
            std::uint32_t length = 0;
            if (!takeReference(at, limit, reference)) {
                return nullptr;
            }
            at = readLength(at, limit, length);
            at = at == nullptr ? nullptr : at + length;
        }
        return at;
    }
};

} // namespace HBX::internal
