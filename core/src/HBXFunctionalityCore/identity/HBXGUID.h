#pragma once

#include <HBXCore/HBXGUIDBase.h>
#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// A 128-bit identifier as a record: it travels as its text. The text of the null identifier reads too.
class HBX_EXPORT HBXGUID : public HBXGUIDBase {
public:
    constexpr HBXGUID() = default;
    constexpr HBXGUID(std::int64_t hi, std::int64_t lo) : HBXGUIDBase(hi, lo) {}
    explicit HBXGUID(const void* bytes) : HBXGUIDBase(bytes) {}
    explicit constexpr HBXGUID(const HBXGUIDBase& base) : HBXGUIDBase(base) {}

    /// A new one, random.
    static HBXGUID generate() { return HBXGUID(HBXGUIDBase::generate()); }
    /// One that follows from the number, for tests.
    static HBXGUID sample(std::uint64_t random);

    friend bool operator==(const HBXGUID&, const HBXGUID&) = default;
    friend std::strong_ordering operator<=>(const HBXGUID&, const HBXGUID&) = default;

    static const HBXRecordTable table;
    using Reader = HBXTextReader<HBXGUID>;
    using Writer = HBXTextWriter<HBXGUID>;
};

} // namespace HBX
