#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/alert/HBXInfo.h>
#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerDailyTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerMonthlyDayOfWeekTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerMonthlyTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerOnceTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerWeeklyTrigger.h>
#include <HBXFunctionalityCore/security/HBXSID.h>

namespace HBX {

/// The agent's module for services, tasks and schedules.
class HBX_EXPORT HBXServiceMBase {
public:
    virtual ~HBXServiceMBase();
};

/// A service of an environment's operating system.
struct HBX_EXPORT HBXService {
    std::string name;
    HBXOptionalProperty<std::string> title; ///< for people
    HBXOptionalProperty<std::string> description;
    int state = 0;                            ///< the system's state code
    HBXOptionalProperty<int> startType;       ///< the system's code of when it is started
    HBXOptionalProperty<std::string> account; ///< under which it runs
    std::vector<std::string> dependencies;    ///< names of services that it needs

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXService>;
    using Writer = HBXTableWriter<HBXService>;
};

/// Something that the agent is doing or has done.
struct HBX_EXPORT HBXTask {
    HBXGUID id;
    std::string name;                  ///< of the operation
    int state = 0;                     ///< how far it is, a code
    HBXOptionalProperty<HBXSID> owner; ///< who asked for it
    HBXOptionalProperty<HBXEID> eid;   ///< the environment that it is about
    HBXOptionalProperty<std::int64_t> started;
    HBXOptionalProperty<int> percent;  ///< 0 to 100
    HBXOptionalProperty<HBXInfo> info; ///< for people

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXTask>;
    using Writer = HBXTableWriter<HBXTask>;
};

/// Something that the agent does when a trigger says so.
struct HBX_EXPORT HBXScheduleTask {
    HBXGUID id;
    std::string name;
    HBXOptionalProperty<std::string> description;
    boost::shared_ptr<HBXSchedulerTrigger> trigger;
    HBXOptionalProperty<HBXSID> owner; ///< on whose behalf
    std::string operation;             ///< what is done: a request
    HBXOptionalProperty<bool> disabled;
    HBXOptionalProperty<std::int64_t> lastRun;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXScheduleTask>;
    using Writer = HBXTableWriter<HBXScheduleTask>;
};

} // namespace HBX
