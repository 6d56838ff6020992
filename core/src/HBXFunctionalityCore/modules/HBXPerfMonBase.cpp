#include <HBXFunctionalityCore/modules/HBXPerfMonBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kPerfStat[] = {
    member<&HBXPerfStat::counter>(3260), member<&HBXPerfStat::minimum>(3261),
    member<&HBXPerfStat::average>(3262), member<&HBXPerfStat::maximum>(3263),
    member<&HBXPerfStat::samples>(1259),
};

constexpr HBXRow kMonitorData[] = {
    member<&HBXMonitorData::eid>(1870),
    member<&HBXMonitorData::interval>(3031),
    list<&HBXMonitorData::stats>(3258, 3259),
};

constexpr HBXRow kPerfMonActualValue[] = {
    member<&HBXPerfMonActualValue::eid>(1870),
    member<&HBXPerfMonActualValue::counter>(3260),
    memberAs<&HBXPerfMonActualValue::time>(HBXKind::Time, 1004),
    member<&HBXPerfMonActualValue::value>(1018),
};

constexpr HBXRow kPerfMonHistoricalValue[] = {
    member<&HBXPerfMonHistoricalValue::eid>(1870),      member<&HBXPerfMonHistoricalValue::counter>(3260),
    member<&HBXPerfMonHistoricalValue::interval>(3031), member<&HBXPerfMonHistoricalValue::minimum>(3261),
    member<&HBXPerfMonHistoricalValue::average>(3262),  member<&HBXPerfMonHistoricalValue::maximum>(3263),
};

} // namespace

constinit const HBXRecordTable HBXPerfStat::table = recordTable<HBXPerfStat>("HBXPerfStat", 0, 0, kPerfStat);
constinit const HBXRecordTable HBXMonitorData::table =
    recordTable<HBXMonitorData>("HBXMonitorData", 416, 5118, kMonitorData);
constinit const HBXRecordTable HBXPerfMonActualValue::table =
    recordTable<HBXPerfMonActualValue>("HBXPerfMonActualValue", 416, 5119, kPerfMonActualValue);
constinit const HBXRecordTable HBXPerfMonHistoricalValue::table =
    recordTable<HBXPerfMonHistoricalValue>("HBXPerfMonHistoricalValue", 416, 5120, kPerfMonHistoricalValue);

HBXPerfMonBase::~HBXPerfMonBase() = default;

} // namespace HBX
