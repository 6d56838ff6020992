#include <HBXFunctionalityCore/modules/HBXServiceMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kService[] = {
    member<&HBXService::name>(1026),
    member<&HBXService::title>(3278),
    member<&HBXService::description>(1496),
    member<&HBXService::state>(1421),
    member<&HBXService::startType>(3279),
    member<&HBXService::account>(3107),
    list<&HBXService::dependencies>(3222, 3223),
};

constexpr HBXRow kTask[] = {
    member<&HBXTask::id>(1010),      member<&HBXTask::name>(1026),
    member<&HBXTask::state>(1421),   member<&HBXTask::owner>(3132),
    member<&HBXTask::eid>(1870),     memberAs<&HBXTask::started>(HBXKind::Time, 1063),
    member<&HBXTask::percent>(3013), member<&HBXTask::info>(1134),
};

constexpr HBXRow kScheduleTask[] = {
    member<&HBXScheduleTask::id>(1010),          member<&HBXScheduleTask::name>(1026),
    member<&HBXScheduleTask::description>(1496), polymorphic<&HBXScheduleTask::trigger>(3071),
    member<&HBXScheduleTask::owner>(3132),       member<&HBXScheduleTask::operation>(3280),
    member<&HBXScheduleTask::disabled>(1705),    memberAs<&HBXScheduleTask::lastRun>(HBXKind::Time, 3281),
};

} // namespace

constinit const HBXRecordTable HBXService::table = recordTable<HBXService>("HBXService", 419, 5129, kService);
constinit const HBXRecordTable HBXTask::table = recordTable<HBXTask>("HBXTask", 419, 5130, kTask);
constinit const HBXRecordTable HBXScheduleTask::table =
    recordTable<HBXScheduleTask>("HBXScheduleTask", 419, 5131, kScheduleTask);

HBXServiceMBase::~HBXServiceMBase() = default;

} // namespace HBX
