#include <HBXFunctionalityCore/modules/HBXUserMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kUser[] = {
    member<&HBXUser::name>(1026),  member<&HBXUser::uid>(3315),        member<&HBXUser::gid>(3316),
    member<&HBXUser::sid>(3265),   member<&HBXUser::realName>(3020),   member<&HBXUser::home>(3317),
    member<&HBXUser::shell>(3318), list<&HBXUser::groups>(3319, 3320), member<&HBXUser::disabled>(1705),
};

constexpr HBXRow kGroup[] = {
    member<&HBXGroup::name>(1026),        member<&HBXGroup::gid>(3316),         member<&HBXGroup::sid>(3265),
    member<&HBXGroup::description>(1496), list<&HBXGroup::members>(3133, 3107),
};

constexpr HBXRow kUGIDLimits[] = {
    member<&HBXUGIDLimits::firstUid>(3321),
    member<&HBXUGIDLimits::lastUid>(3322),
    member<&HBXUGIDLimits::firstGid>(3323),
    member<&HBXUGIDLimits::lastGid>(3324),
};

} // namespace

constinit const HBXRecordTable HBXUser::table = recordTable<HBXUser>("HBXUser", 422, 5144, kUser);
constinit const HBXRecordTable HBXGroup::table = recordTable<HBXGroup>("HBXGroup", 422, 5145, kGroup);
constinit const HBXRecordTable HBXUGIDLimits::table =
    recordTable<HBXUGIDLimits>("HBXUGIDLimits", 0, 0, kUGIDLimits);

HBXUserMBase::~HBXUserMBase() = default;

} // namespace HBX
