#pragma once

#include <cstdint>

#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXFunctionalityCore/security/HBXSID.h>

namespace HBX {

/// An identifier of the agent's own: a principal, by its number, of an environment.
class HBX_EXPORT HBXLocalSID {
public:
    /// What a principal is; NONE: no identifier of the agent's own.
    enum PrincipalType : unsigned { NONE = 0, USER = 1, GROUP = 2, ROLE = 3, ENVIRONMENT = 4 };
    static constexpr unsigned kUnknownId = 0xFFFFFFFF;

    /// Takes an identifier apart. One that is not the agent's own has type NONE, the null environment and
    /// kUnknownId.
    explicit HBXLocalSID(const HBXSID& sid);
    /// A principal of the local environment; the identifier is empty while that has none itself, and for
    /// NONE.
    HBXLocalSID(unsigned localId, PrincipalType type);
    /// The identifier is empty for NONE.
    HBXLocalSID(unsigned localId, PrincipalType type, const HBXEID& eid);

    /// The identifier, and what it is made of.
    [[nodiscard]] const HBXSID& getSID() const { return sid_; }
    [[nodiscard]] const HBXEID& getEID() const { return eid_; }
    [[nodiscard]] unsigned getLocalID() const { return localId_; }
    [[nodiscard]] PrincipalType getPrincipalType() const { return principalType_; }

private:
    void encode();

    HBXEID eid_;
    std::uint32_t localId_ = kUnknownId;
    PrincipalType principalType_ = NONE;
    HBXSID sid_;
};

} // namespace HBX
