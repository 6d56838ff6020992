#include <HBXFunctionalityCore/schedule/HBXSchedulerOnceTrigger.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

constinit const HBXRecordTable HBXSchedulerOnceTrigger::table =
    recordTable<HBXSchedulerOnceTrigger, HBXSchedulerTrigger>("HBXSchedulerOnceTrigger", 283, 299);

int HBXSchedulerOnceTrigger::getNextRunTime(std::int64_t now, std::int64_t& next) const {
    if (now < 0) {
        return -1;
    }
    next = now < startTime ? startTime : -1;
    return 0;
}

} // namespace HBX
