#include <HBXFunctionalityCore/modules/HBXSessionMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kSession[] = {
    member<&HBXSession::id>(3041),
    member<&HBXSession::user>(1630),
    member<&HBXSession::token>(3282),
    member<&HBXSession::address>(1687),
    memberAs<&HBXSession::started>(HBXKind::Time, 1063),
    memberAs<&HBXSession::lastActive>(HBXKind::Time, 3045),
    member<&HBXSession::timeout>(3047),
};

constexpr HBXRow kPagerSortCondition[] = {
    member<&HBXPagerSortCondition::column>(3287),
    member<&HBXPagerSortCondition::descending>(3288),
};

constexpr HBXRow kRowSet[] = {
    member<&HBXRowSet::offset>(1087),
    member<&HBXRowSet::limit>(3283),
    member<&HBXRowSet::total>(3284),
    list<&HBXRowSet::sort>(3285, 3286),
};

constexpr HBXRow kBrowseColumn[] = {
    member<&HBXBrowseColumn::name>(1026),
    member<&HBXBrowseColumn::title>(3278),
    member<&HBXBrowseColumn::width>(3289),
    member<&HBXBrowseColumn::hidden>(3193),
};

constexpr HBXRow kBrowseInfo[] = {
    member<&HBXBrowseInfo::id>(3290),
    member<&HBXBrowseInfo::title>(3278),
    list<&HBXBrowseInfo::columns>(3291, 3292),
    member<&HBXBrowseInfo::pageSize>(3293),
};

constexpr HBXRow kBrowseSettings[] = {
    member<&HBXBrowseSettings::id>(3290),       list<&HBXBrowseSettings::columns>(3291, 3292),
    list<&HBXBrowseSettings::sort>(3285, 3286), member<&HBXBrowseSettings::pageSize>(3293),
    member<&HBXBrowseSettings::filter>(3294),
};

constexpr HBXRow kDashboardSection[] = {
    member<&HBXDashboardSection::id>(3295),
    member<&HBXDashboardSection::title>(3278),
    member<&HBXDashboardSection::position>(3296),
    member<&HBXDashboardSection::collapsed>(3297),
    list<&HBXDashboardSection::parameters>(3298, 1018),
};

constexpr HBXRow kScreenInfo[] = {
    member<&HBXScreenInfo::id>(3299),
    member<&HBXScreenInfo::title>(3278),
    member<&HBXScreenInfo::url>(3048),
    list<&HBXScreenInfo::sections>(3300, 3301),
};

constexpr HBXRow kScreenSettings[] = {
    member<&HBXScreenSettings::id>(3299),
    list<&HBXScreenSettings::sections>(3300, 3301),
    list<&HBXScreenSettings::browses>(3302, 3303),
    member<&HBXScreenSettings::refresh>(3304),
};

constexpr HBXRow kDesktopAction[] = {
    member<&HBXDesktopAction::id>(3305),       member<&HBXDesktopAction::title>(3278),
    member<&HBXDesktopAction::icon>(3191),     member<&HBXDesktopAction::url>(3048),
    member<&HBXDesktopAction::disabled>(1705),
};

constexpr HBXRow kDesktopSettings[] = {
    list<&HBXDesktopSettings::actions>(3306, 3307),
    member<&HBXDesktopSettings::theme>(3308),
    member<&HBXDesktopSettings::language>(3017),
};

constexpr HBXRow kPersonalSettings[] = {
    member<&HBXPersonalSettings::user>(1630),
    member<&HBXPersonalSettings::desktop>(3309),
    list<&HBXPersonalSettings::screens>(3310, 3311),
    member<&HBXPersonalSettings::timeZone>(3312),
};

constexpr HBXRow kProfile[] = {
    member<&HBXProfile::id>(1010),          member<&HBXProfile::name>(1026),
    member<&HBXProfile::description>(1496), member<&HBXProfile::settings>(3313),
    member<&HBXProfile::builtin>(3276),
};

} // namespace

constinit const HBXRecordTable HBXSession::table = recordTable<HBXSession>("HBXSession", 420, 5132, kSession);
constinit const HBXRecordTable HBXPagerSortCondition::table =
    recordTable<HBXPagerSortCondition>("HBXPagerSortCondition", 0, 0, kPagerSortCondition);
constinit const HBXRecordTable HBXRowSet::table = recordTable<HBXRowSet>("HBXRowSet", 420, 5133, kRowSet);
constinit const HBXRecordTable HBXBrowseColumn::table =
    recordTable<HBXBrowseColumn>("HBXBrowseColumn", 0, 0, kBrowseColumn);
constinit const HBXRecordTable HBXBrowseInfo::table =
    recordTable<HBXBrowseInfo>("HBXBrowseInfo", 420, 5134, kBrowseInfo);
constinit const HBXRecordTable HBXBrowseSettings::table =
    recordTable<HBXBrowseSettings>("HBXBrowseSettings", 420, 5135, kBrowseSettings);
constinit const HBXRecordTable HBXDashboardSection::table =
    recordTable<HBXDashboardSection>("HBXDashboardSection", 420, 5136, kDashboardSection);
constinit const HBXRecordTable HBXScreenInfo::table =
    recordTable<HBXScreenInfo>("HBXScreenInfo", 420, 5137, kScreenInfo);
constinit const HBXRecordTable HBXScreenSettings::table =
    recordTable<HBXScreenSettings>("HBXScreenSettings", 420, 5138, kScreenSettings);
constinit const HBXRecordTable HBXDesktopAction::table =
    recordTable<HBXDesktopAction>("HBXDesktopAction", 420, 5139, kDesktopAction);
constinit const HBXRecordTable HBXDesktopSettings::table =
    recordTable<HBXDesktopSettings>("HBXDesktopSettings", 420, 5140, kDesktopSettings);
constinit const HBXRecordTable HBXPersonalSettings::table =
    recordTable<HBXPersonalSettings>("HBXPersonalSettings", 420, 5141, kPersonalSettings);
constinit const HBXRecordTable HBXProfile::table = recordTable<HBXProfile>("HBXProfile", 420, 5142, kProfile);

HBXSessionMBase::~HBXSessionMBase() = default;

} // namespace HBX
