#include <HBXFunctionalityCore/modules/HBXNetworkMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kInterfaceSettings[] = {
    member<&HBXInterfaceSettings::id>(3198),
    list<&HBXInterfaceSettings::addresses>(1687, 1008),
    member<&HBXInterfaceSettings::gateway>(3183),
    member<&HBXInterfaceSettings::dhcp>(3199),
    list<&HBXInterfaceSettings::nameservers>(1281, 1018),
    member<&HBXInterfaceSettings::mtu>(3200),
    member<&HBXInterfaceSettings::rate>(3201),
};

constexpr HBXRow kNetInterface[] = {
    member<&HBXNetInterface::name>(1026),      member<&HBXNetInterface::mac>(3202),
    member<&HBXNetInterface::networkId>(3203), list<&HBXNetInterface::addresses>(1687, 1008),
    member<&HBXNetInterface::bytes>(3204),     member<&HBXNetInterface::state>(1421),
};

constexpr HBXRow kNetDevice[] = {
    member<&HBXNetDevice::id>(3138),  member<&HBXNetDevice::name>(1026),
    member<&HBXNetDevice::mac>(3202), list<&HBXNetDevice::addresses>(1687, 1008),
    member<&HBXNetDevice::mtu>(3200), member<&HBXNetDevice::up>(3205),
};

constexpr HBXRow kNetNIC[] = {
    member<&HBXNetNIC::speed>(3206),
    member<&HBXNetNIC::duplex>(3207),
    member<&HBXNetNIC::driver>(3147),
};

constexpr HBXRow kNetBridge[] = {
    list<&HBXNetBridge::members>(3208, 3209),
    member<&HBXNetBridge::stp>(3210),
};

constexpr HBXRow kNetVLAN[] = {
    member<&HBXNetVLAN::vlanId>(3184),
    member<&HBXNetVLAN::parent>(3211),
};

constexpr HBXRow kNetwork[] = {
    member<&HBXNetwork::id>(3203),          member<&HBXNetwork::name>(1026),
    member<&HBXNetwork::description>(1496), polymorphic<&HBXNetwork::device>(3212),
    list<&HBXNetwork::poolIds>(3213, 3185), member<&HBXNetwork::vlanId>(3184),
};

} // namespace

constinit const HBXRecordTable HBXInterfaceSettings::table =
    recordTable<HBXInterfaceSettings>("HBXInterfaceSettings", 412, 5093, kInterfaceSettings);
constinit const HBXRecordTable HBXNetInterface::table =
    recordTable<HBXNetInterface>("HBXNetInterface", 412, 5094, kNetInterface);
constinit const HBXRecordTable HBXNetDevice::table =
    recordTable<HBXNetDevice>("HBXNetDevice", 412, 5095, kNetDevice);
constinit const HBXRecordTable HBXNetNIC::table =
    recordTable<HBXNetNIC, HBXNetDevice>("HBXNetNIC", 412, 5096, kNetNIC);
constinit const HBXRecordTable HBXNetBridge::table =
    recordTable<HBXNetBridge, HBXNetDevice>("HBXNetBridge", 412, 5097, kNetBridge);
constinit const HBXRecordTable HBXNetVLAN::table =
    recordTable<HBXNetVLAN, HBXNetDevice>("HBXNetVLAN", 412, 5098, kNetVLAN);
constinit const HBXRecordTable HBXNetwork::table = recordTable<HBXNetwork>("HBXNetwork", 412, 5099, kNetwork);

HBXNetworkMBase::~HBXNetworkMBase() = default;

} // namespace HBX
