#pragma once

#include <string>
#include <vector>

#include <HBXFunctionalityCore/identity/HBXGUID.h>

namespace HBX {

/// The agent's module for single sign-on.
class HBX_EXPORT HBXSSOBase {
public:
    virtual ~HBXSSOBase();
};

/// A service that takes the agent's word for who a user is.
struct HBX_EXPORT HBXSSOServiceProviderConfig {
    HBXGUID id;
    std::string name;
    std::string url;                              ///< where users come back to with the answer
    HBXOptionalProperty<std::string> certificate; ///< for the service's signatures, PEM
    HBXOptionalProperty<HBXGUID> realmId;         ///< the HBXRealm whose users may go there; unset: all
    HBXOptionalProperty<bool> disabled;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXSSOServiceProviderConfig>;
    using Writer = HBXTableWriter<HBXSSOServiceProviderConfig>;
};

/// How the agent itself says to others who a user is.
struct HBX_EXPORT HBXSSOServerConfig {
    std::string url;                              ///< where users are sent to log in
    std::string issuer;                           ///< the name that stands in every answer
    HBXOptionalProperty<std::string> certificate; ///< for the answers' signatures, PEM
    HBXOptionalProperty<int> tokenLifetime;       ///< seconds that an answer is good for
    std::vector<HBXSSOServiceProviderConfig> providers;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXSSOServerConfig>;
    using Writer = HBXTableWriter<HBXSSOServerConfig>;
};

} // namespace HBX
