#include <HBXFunctionalityCore/modules/HBXSSOBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kSSOServiceProviderConfig[] = {
    member<&HBXSSOServiceProviderConfig::id>(1010),
    member<&HBXSSOServiceProviderConfig::name>(1026),
    member<&HBXSSOServiceProviderConfig::url>(3048),
    member<&HBXSSOServiceProviderConfig::certificate>(3050),
    member<&HBXSSOServiceProviderConfig::realmId>(1957),
    member<&HBXSSOServiceProviderConfig::disabled>(1705),
};

constexpr HBXRow kSSOServerConfig[] = {
    member<&HBXSSOServerConfig::url>(3048),           member<&HBXSSOServerConfig::issuer>(3049),
    member<&HBXSSOServerConfig::certificate>(3050),   member<&HBXSSOServerConfig::tokenLifetime>(3051),
    list<&HBXSSOServerConfig::providers>(3052, 3053),
};

} // namespace

constinit const HBXRecordTable HBXSSOServiceProviderConfig::table = recordTable<HBXSSOServiceProviderConfig>(
    "HBXSSOServiceProviderConfig", 402, 5021, kSSOServiceProviderConfig);
constinit const HBXRecordTable HBXSSOServerConfig::table =
    recordTable<HBXSSOServerConfig>("HBXSSOServerConfig", 402, 5020, kSSOServerConfig);

HBXSSOBase::~HBXSSOBase() = default;

} // namespace HBX
