#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/environment/HBXIPAddress.h>
#include <HBXFunctionalityCore/identity/HBXEID.h>

namespace HBX {

/// The agent's module for pools of IP addresses.
class HBX_EXPORT HBXIPPoolMBase {
public:
    virtual ~HBXIPPoolMBase();
};

/// A range of addresses, both ends included.
struct HBX_EXPORT HBXIPRange {
    HBXIPAddress first;
    HBXIPAddress last;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXIPRange>;
    using Writer = HBXTableWriter<HBXIPRange>;
};

/// What a pool is called, and where it belongs.
struct HBX_EXPORT HBXIPPoolBaseData {
    HBXGUID id;
    std::string name;
    HBXOptionalProperty<std::string> description;
    HBXOptionalProperty<HBXGUID> parentId; ///< the pool that its addresses are taken from

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXIPPoolBaseData>;
    using Writer = HBXTableWriter<HBXIPPoolBaseData>;
};

/// Addresses to be given to environments, with what an interface needs beside an address.
struct HBX_EXPORT HBXIPPool : HBXIPPoolBaseData {
    std::vector<HBXIPRange> ranges;

    HBXOptionalProperty<std::string> gateway;
    std::vector<std::string> nameservers;
    HBXOptionalProperty<int> vlanId; ///< 1 to 4094

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXIPPool>;
    using Writer = HBXTableWriter<HBXIPPool>;
};

/// An address that is given to an environment.
struct HBX_EXPORT HBXIPPoolAllocationItem {
    HBXIPAddress address;
    HBXEID eid;
    HBXOptionalProperty<std::int64_t> time; ///< since when

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXIPPoolAllocationItem>;
    using Writer = HBXTableWriter<HBXIPPoolAllocationItem>;
};

/// The addresses of a pool that are given.
struct HBX_EXPORT HBXIPPoolAllocation {
    HBXGUID poolId;
    std::vector<HBXIPPoolAllocationItem> items;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXIPPoolAllocation>;
    using Writer = HBXTableWriter<HBXIPPoolAllocation>;
};

/// How full a pool is, in addresses.
struct HBX_EXPORT HBXIPPoolUsage {
    HBXGUID poolId;
    std::int64_t total = 0;
    std::int64_t used = 0;
    HBXOptionalProperty<std::int64_t> reserved; ///< not given to anybody, and kept free

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXIPPoolUsage>;
    using Writer = HBXTableWriter<HBXIPPoolUsage>;
};

/// A request for addresses from a pool.
struct HBX_EXPORT HBXAllocateIPParams {
    HBXGUID poolId;
    HBXEID eid;                          ///< for whom
    HBXOptionalProperty<int> count;      ///< how many; unset: one
    std::vector<HBXIPAddress> preferred; ///< given where they are free
    HBXOptionalProperty<bool> ipv6;      ///< IPv6 addresses are wanted

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXAllocateIPParams>;
    using Writer = HBXTableWriter<HBXAllocateIPParams>;
};

} // namespace HBX
