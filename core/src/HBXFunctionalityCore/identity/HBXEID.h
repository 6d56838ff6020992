#pragma once

#include <HBXFunctionalityCore/identity/HBXGUID.h>

namespace HBX {

/// The identifier of an environment. A type of its own, so that environments and other things are not mixed
/// up.
class HBX_EXPORT HBXEID : public HBXGUID {
public:
    constexpr HBXEID() = default;
    explicit constexpr HBXEID(const HBXGUID& id) : HBXGUID(id) {}

    /// A new one, random.
    static HBXEID generate() { return HBXEID(HBXGUID::generate()); }
    /// One that follows from the number, for tests.
    static HBXEID sample(std::uint64_t random) { return HBXEID(HBXGUID::sample(random)); }

    friend bool operator==(const HBXEID&, const HBXEID&) = default;
    friend std::strong_ordering operator<=>(const HBXEID&, const HBXEID&) = default;

    static const HBXRecordTable table;
    using Reader = HBXTextReader<HBXEID>;
    using Writer = HBXTextWriter<HBXEID>;

private:
    constexpr HBXEID(std::int64_t hi, std::int64_t lo) : HBXGUID(hi, lo) {}
};

/// The order of containers that are keyed by environment.
struct HBXEnvIDComparator {
    bool operator()(const HBXEID& a, const HBXEID& b) const { return a < b; }
};

} // namespace HBX
