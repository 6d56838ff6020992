#include <cstdio>
#include <ctime>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

/// Prints the next run of a schedule: every second day, at the time of day of its start.
int main() {
    HBX::HBXSchedulerDailyTrigger trigger;
    trigger.startTime = 1704103200; // 2024-01-01 10:00 UTC
    trigger.daysInterval = 2;

    std::int64_t next = -1;
    if (trigger.getNextRunTime(std::time(nullptr), next) != 0) {
        return 1;
    }
    std::printf("%s\n", HBX::describeTrigger(trigger).c_str());
    std::printf("next run: %s\n", HBX::describeMoment(next).c_str());
}
