#include <HBXFunctionalityCore/security/HBXLocalSID.h>

#include <HBXFunctionalityCore/security/HBXIdentityProvider.h>
#include <HBXFunctionalityCore/security/internal/SIDForm.h>

namespace HBX {

namespace {

/// By principal type. That users have the higher of the first two is as every agent has it.
constexpr std::uint64_t kAuthorities[] = {0, 8193, 8192, 8194, 8195};

/// The four that hold the environment's bytes as they are, and the local number.
constexpr std::size_t kSubAuthorities = 5;

HBXLocalSID::PrincipalType typeOf(std::uint64_t authority) {
    for (unsigned type = HBXLocalSID::USER; type <= HBXLocalSID::ENVIRONMENT; ++type) {
        if (kAuthorities[type] == authority) {
            return static_cast<HBXLocalSID::PrincipalType>(type);
        }
    }
    return HBXLocalSID::NONE;
}

} // namespace

HBXLocalSID::HBXLocalSID(const HBXSID& sid) : sid_(sid) {
    const internal::SIDBytes bytes = sid.toBinary();
    if (internal::subAuthorityCount(bytes) != kSubAuthorities) {
        return;
    }
    principalType_ = typeOf(internal::authorityOf(bytes));
    if (principalType_ != NONE) {
        eid_ = HBXEID(HBXGUID(bytes.data() + internal::kSIDHeader));
        localId_ = internal::subAuthority(bytes, kSubAuthorities - 1);
    }
}

HBXLocalSID::HBXLocalSID(unsigned localId, PrincipalType type)
    : eid_(localEnvironment()), localId_(localId), principalType_(type) {
    if (eid_.isValid()) {
        encode();
    }
}

HBXLocalSID::HBXLocalSID(unsigned localId, PrincipalType type, const HBXEID& eid)
    : eid_(eid), localId_(localId), principalType_(type) {
    encode();
}

void HBXLocalSID::encode() {
    if (principalType_ == NONE || principalType_ > ENVIRONMENT) {
        return;
    }
    internal::SIDBuffer made;
    made.begin(kAuthorities[principalType_]);
    for (std::size_t i = 0; i < HBXEID::kSize; i += 4) {
        made.add(internal::littleEndian(eid_.data() + i));
    }
    made.add(localId_);
    sid_.fromBinary(made.bytes.data(), made.size);
}

} // namespace HBX
