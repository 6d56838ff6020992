#include <HBXFunctionalityCore/modules/HBXResourceMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kResource[] = {
    member<&HBXResource::id>(3002),   member<&HBXResource::current>(3003),  member<&HBXResource::soft>(3004),
    member<&HBXResource::hard>(3005), member<&HBXResource::category>(1264), member<&HBXResource::unit>(3255),
};

constexpr HBXRow kResourcePool[] = {
    member<&HBXResourcePool::id>(1010),          member<&HBXResourcePool::name>(1026),
    member<&HBXResourcePool::parentId>(3135),    list<&HBXResourcePool::resources>(3256, 3257),
    list<&HBXResourcePool::members>(3033, 1870),
};

constexpr HBXRow kPoolResourcePair[] = {
    member<&HBXPoolResourcePair::poolId>(3185),
    member<&HBXPoolResourcePair::resourceId>(3002),
};

} // namespace

constinit const HBXRecordTable HBXResource::table =
    recordTable<HBXResource>("HBXResource", 416, 5116, kResource);
constinit const HBXRecordTable HBXResourcePool::table =
    recordTable<HBXResourcePool>("HBXResourcePool", 416, 5117, kResourcePool);
constinit const HBXRecordTable HBXPoolResourcePair::table =
    recordTable<HBXPoolResourcePair>("HBXPoolResourcePair", 0, 0, kPoolResourcePair);

HBXResourceMBase::~HBXResourceMBase() = default;

} // namespace HBX
