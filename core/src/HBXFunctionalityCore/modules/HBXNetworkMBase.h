#pragma once

#include <string>
#include <vector>

#include <HBXFunctionalityCore/environment/HBXIPAddress.h>
#include <HBXFunctionalityCore/firewall/HBXInterfaceRate.h>
#include <HBXFunctionalityCore/modules/HBXPerfData.h>
#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXPolymorphic.h>

namespace HBX {

/// The agent's module for networks, devices and interfaces.
class HBX_EXPORT HBXNetworkMBase {
public:
    virtual ~HBXNetworkMBase();
};

/// How an interface of an environment is set up.
struct HBX_EXPORT HBXInterfaceSettings {
    std::string id; ///< of the interface
    std::vector<HBXIPAddress> addresses;
    HBXOptionalProperty<std::string> gateway;
    HBXOptionalProperty<bool> dhcp; ///< addresses come from the network
    std::vector<std::string> nameservers;
    HBXOptionalProperty<int> mtu; ///< bytes
    HBXOptionalProperty<HBXInterfaceRate> rate;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXInterfaceSettings>;
    using Writer = HBXTableWriter<HBXInterfaceSettings>;
};

/// An interface of an environment as it is.
struct HBX_EXPORT HBXNetInterface {
    std::string name;                           ///< such as "eth0"
    HBXOptionalProperty<std::string> mac;       ///< such as "00:11:22:33:44:55"
    HBXOptionalProperty<std::string> networkId; ///< the HBXNetwork that it is connected to
    std::vector<HBXIPAddress> addresses;
    HBXOptionalProperty<HBXNetTransfer> bytes; ///< what went through it so far
    HBXOptionalProperty<int> state;            ///< the system's state code

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXNetInterface>;
    using Writer = HBXTableWriter<HBXNetInterface>;
};

/// A network device of the host: the base of the family. On a message the derived class is told by its
/// complex type; a kind that this library does not know reads as this one.
struct HBX_EXPORT HBXNetDevice : HBXPolymorphic {
    std::string id;                       ///< how the system calls it
    std::string name;                     ///< for people
    HBXOptionalProperty<std::string> mac; ///< such as "00:11:22:33:44:55"
    std::vector<HBXIPAddress> addresses;
    HBXOptionalProperty<int> mtu; ///< bytes
    HBXOptionalProperty<bool> up;

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXNetDevice>;
    using Writer = HBXTableWriter<HBXNetDevice>;
};

/// A physical network card.
struct HBX_EXPORT HBXNetNIC : HBXNetDevice {
    HBXOptionalProperty<int> speed;   ///< megabits per second
    HBXOptionalProperty<bool> duplex; ///< full duplex
    HBXOptionalProperty<std::string> driver;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXNetNIC>;
    using Writer = HBXTableWriter<HBXNetNIC>;
};

/// A bridge between devices.
struct HBX_EXPORT HBXNetBridge : HBXNetDevice {
    std::vector<std::string> members; ///< ids of the devices
    HBXOptionalProperty<bool> stp;    ///< spanning tree protocol

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXNetBridge>;
    using Writer = HBXTableWriter<HBXNetBridge>;
};

/// A virtual network on a device.
struct HBX_EXPORT HBXNetVLAN : HBXNetDevice {
    int vlanId = 0;     ///< 1 to 4094
    std::string parent; ///< id of the device

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXNetVLAN>;
    using Writer = HBXTableWriter<HBXNetVLAN>;
};

/// A network that environments are connected to.
struct HBX_EXPORT HBXNetwork {
    std::string id;
    std::string name;
    HBXOptionalProperty<std::string> description;
    boost::shared_ptr<HBXNetDevice> device; ///< of the host; null: environments only reach each other
    std::vector<HBXGUID> poolIds;           ///< the HBXIPPools that addresses come from
    HBXOptionalProperty<int> vlanId;        ///< 1 to 4094

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXNetwork>;
    using Writer = HBXTableWriter<HBXNetwork>;
};

extern template class HBX_EXPORT HBXDerivedParserFactory<HBXNetDevice>;

} // namespace HBX
