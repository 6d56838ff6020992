#include <HBXFunctionalityCore/modules/HBXIPPoolMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kIPRange[] = {
    member<&HBXIPRange::first>(3179),
    member<&HBXIPRange::last>(3180),
};

constexpr HBXRow kIPPoolBaseData[] = {
    member<&HBXIPPoolBaseData::id>(1010),
    member<&HBXIPPoolBaseData::name>(1026),
    member<&HBXIPPoolBaseData::description>(1496),
    member<&HBXIPPoolBaseData::parentId>(3135),
};

constexpr HBXRow kIPPool[] = {
    list<&HBXIPPool::ranges>(3181, 3182),
    member<&HBXIPPool::gateway>(3183),
    list<&HBXIPPool::nameservers>(1281, 1018),
    member<&HBXIPPool::vlanId>(3184),
};

constexpr HBXRow kIPPoolAllocationItem[] = {
    member<&HBXIPPoolAllocationItem::address>(1687),
    member<&HBXIPPoolAllocationItem::eid>(1870),
    memberAs<&HBXIPPoolAllocationItem::time>(HBXKind::Time, 1004),
};

constexpr HBXRow kIPPoolAllocation[] = {
    member<&HBXIPPoolAllocation::poolId>(3185),
    list<&HBXIPPoolAllocation::items>(3186, 3187),
};

constexpr HBXRow kIPPoolUsage[] = {
    member<&HBXIPPoolUsage::poolId>(3185),
    member<&HBXIPPoolUsage::total>(3099),
    member<&HBXIPPoolUsage::used>(3097),
    member<&HBXIPPoolUsage::reserved>(3188),
};

constexpr HBXRow kAllocateIPParams[] = {
    member<&HBXAllocateIPParams::poolId>(3185), member<&HBXAllocateIPParams::eid>(1870),
    member<&HBXAllocateIPParams::count>(1259),  list<&HBXAllocateIPParams::preferred>(3189, 1008),
    member<&HBXAllocateIPParams::ipv6>(3190),
};

} // namespace

constinit const HBXRecordTable HBXIPRange::table = recordTable<HBXIPRange>("HBXIPRange", 0, 0, kIPRange);
constinit const HBXRecordTable HBXIPPoolBaseData::table =
    recordTable<HBXIPPoolBaseData>("HBXIPPoolBaseData", 410, 5086, kIPPoolBaseData);
constinit const HBXRecordTable HBXIPPool::table =
    recordTable<HBXIPPool, HBXIPPoolBaseData>("HBXIPPool", 410, 5087, kIPPool);
constinit const HBXRecordTable HBXIPPoolAllocationItem::table =
    recordTable<HBXIPPoolAllocationItem>("HBXIPPoolAllocationItem", 0, 0, kIPPoolAllocationItem);
constinit const HBXRecordTable HBXIPPoolAllocation::table =
    recordTable<HBXIPPoolAllocation>("HBXIPPoolAllocation", 410, 5088, kIPPoolAllocation);
constinit const HBXRecordTable HBXIPPoolUsage::table =
    recordTable<HBXIPPoolUsage>("HBXIPPoolUsage", 410, 5089, kIPPoolUsage);
constinit const HBXRecordTable HBXAllocateIPParams::table =
    recordTable<HBXAllocateIPParams>("HBXAllocateIPParams", 410, 5090, kAllocateIPParams);

HBXIPPoolMBase::~HBXIPPoolMBase() = default;

} // namespace HBX
