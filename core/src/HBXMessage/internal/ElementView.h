#pragma once

#include <cstdint>
#include <string_view>

#include <HBXMessage/internal/BinaryFormat.h>

namespace HBX::internal {

/// One encoded element, taken apart where it lies. References are as written for namespaces, types and
/// attributes (number * 2, or index into the name list * 2 + 1); the id is a number, or kDynamicRef + index.
struct ElementView {
    Ref id;
    std::uint8_t flags; ///< as in kFormFlags, whatever the form
    std::uint32_t valueLength;
    std::uint32_t attributeCount;
    std::uint64_t ns, typeNs, type;
    const std::uint8_t* value;
    const std::uint8_t* attributes;
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

private:
    bool finish(const std::uint8_t* behind) {
        end = behind;
        return true;
    }

    static bool takeNumber(const std::uint8_t*& at, const std::uint8_t* limit, std::uint64_t& number) {
        at = readVarint(at, limit, number);
        return at != nullptr;
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
        if ((flags & kHasNamespace) != 0 && !takeNumber(at, limit, ns)) {
            return false;
        }
        if ((flags & kHasType) != 0 && (!takeNumber(at, limit, typeNs) || !takeNumber(at, limit, type))) {
            return false;
        }
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
        attributes = at;
        for (std::uint64_t i = 0; i < count && at != nullptr; ++i) {
            std::uint64_t ref = 0;
            std::uint32_t length = 0;
            at = readVarint(at, limit, ref);
            at = at == nullptr ? nullptr : readLength(at, limit, length);
            at = at == nullptr ? nullptr : at + length;
        }
        attributeCount = static_cast<std::uint32_t>(count);
        return at;
    }
};

} // namespace HBX::internal
