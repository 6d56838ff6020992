#include <cstdio>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

int main() {
    HBX::HBXSchedulerWeeklyTrigger trigger(1700000000, -1);
    trigger.weekDays = {1, 3};
    std::string bytes;
    HBX::HBXSchedulerWeeklyTrigger back;
    if (HBX::encodeRecord(trigger, bytes) != 0 || HBX::decodeRecord(bytes, back) != 0 || back != trigger) {
        return 1;
    }
    std::printf("a weekly trigger travelled in %zu bytes\n", bytes.size());
    return 0;
}
