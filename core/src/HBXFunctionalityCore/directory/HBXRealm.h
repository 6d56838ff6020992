#pragma once

#include <string>

#include <HBXFunctionalityCore/identity/HBXGUID.h>
#include <HBXMessage/HBXDerivedParsers.h>

namespace HBX {

/// Where principals are looked up: the base of the realm family. On a message the derived class is told by
/// its complex type; an element of another or no type reads as this one.
struct HBX_EXPORT HBXRealm {
    HBXGUID id;
    std::string name;
    int type = 0; ///< kind of realm, such as HBXDirRealm::kType
    HBXOptionalProperty<std::string> description;

    HBXRealm() = default;
    HBXRealm(const HBXRealm&) = default;
    HBXRealm(HBXRealm&&) noexcept = default;
    HBXRealm& operator=(const HBXRealm&) = default;
    HBXRealm& operator=(HBXRealm&&) noexcept = default;
    virtual ~HBXRealm();

    /// Takes over the settings of another realm. 0; a derived class refuses what does not fit it with -1, the
    /// thread's error message says why, and nothing has changed.
    virtual int set(const HBXRealm& other);

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXRealm>;
    using Writer = HBXTableWriter<HBXRealm>;
};

/// The one registry of the family in the process.
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXRealm>;

} // namespace HBX
