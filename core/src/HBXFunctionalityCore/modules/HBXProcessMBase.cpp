#include <HBXFunctionalityCore/modules/HBXProcessMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kProcessInfo[] = {
    member<&HBXProcessInfo::pid>(3105),
    member<&HBXProcessInfo::parentPid>(3244),
    member<&HBXProcessInfo::name>(1026),
    member<&HBXProcessInfo::command>(3106),
    member<&HBXProcessInfo::user>(3107),
    member<&HBXProcessInfo::state>(3245),
    member<&HBXProcessInfo::memory>(3087),
    member<&HBXProcessInfo::cpuTime>(3110),
    memberAs<&HBXProcessInfo::started>(HBXKind::Time, 1063),
    member<&HBXProcessInfo::eid>(1870),
};

constexpr HBXRow kProcessList[] = {
    member<&HBXProcessList::eid>(1870),
    memberAs<&HBXProcessList::time>(HBXKind::Time, 1004),
    list<&HBXProcessList::processes>(3111, 3112),
};

constexpr HBXRow kProcessMExecParams[] = {
    member<&HBXProcessMExecParams::command>(3106),
    list<&HBXProcessMExecParams::arguments>(3246, 3247),
    list<&HBXProcessMExecParams::environment>(3248, 3249),
    member<&HBXProcessMExecParams::directory>(3074),
    member<&HBXProcessMExecParams::user>(3107),
    member<&HBXProcessMExecParams::input>(3250),
    member<&HBXProcessMExecParams::timeout>(3047),
};

constexpr HBXRow kProcessMExecOutput[] = {
    member<&HBXProcessMExecOutput::exitCode>(3251),
    member<&HBXProcessMExecOutput::output>(3252),
    member<&HBXProcessMExecOutput::errors>(3253),
    member<&HBXProcessMExecOutput::timedOut>(3254),
};

} // namespace

constinit const HBXRecordTable HBXProcessInfo::table =
    recordTable<HBXProcessInfo>("HBXProcessInfo", 415, 5112, kProcessInfo);
constinit const HBXRecordTable HBXProcessList::table =
    recordTable<HBXProcessList>("HBXProcessList", 415, 5113, kProcessList);
constinit const HBXRecordTable HBXProcessMExecParams::table =
    recordTable<HBXProcessMExecParams>("HBXProcessMExecParams", 415, 5114, kProcessMExecParams);
constinit const HBXRecordTable HBXProcessMExecOutput::table =
    recordTable<HBXProcessMExecOutput>("HBXProcessMExecOutput", 415, 5115, kProcessMExecOutput);

HBXProcessMBase::~HBXProcessMBase() = default;

} // namespace HBX
