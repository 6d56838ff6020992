#include <HBXFunctionalityCore/schedule/HBXSchedulerTrigger.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr int kStartTime = 1063;
constexpr int kEndTime = 1064;
constexpr std::int64_t kNever = -1;

constexpr HBXRow kSchedulerTrigger[] = {
    memberAs<&HBXSchedulerTrigger::startTime>(HBXKind::Time, kStartTime),
    memberAs<&HBXSchedulerTrigger::endTime>(HBXKind::Time, kEndTime, HBXPresence::Optional),
};

} // namespace

constinit const HBXRecordTable HBXSchedulerTrigger::table =
    recordTable<HBXSchedulerTrigger>("HBXSchedulerTrigger", 292, 294, kSchedulerTrigger);

HBXSchedulerTrigger::~HBXSchedulerTrigger() = default;

int HBXSchedulerTrigger::getNextRunTime(std::int64_t now, std::int64_t& next) const {
    if (now < 0) {
        return -1;
    }
    const auto isOver = [this](std::int64_t moment) { return endTime != kNever && moment > endTime; };
    if (isOver(now)) {
        next = kNever;
        return 0;
    }
    std::int64_t run = 0;
    if (computeNextRun(now, run) != 0) {
        return -1;
    }
    next = isOver(run) ? kNever : run;
    return 0;
}

int HBXSchedulerTrigger::computeNextRun(std::int64_t, std::int64_t&) const { return -1; }

int HBXSchedulerTrigger::Reader::operator()(const HBXMessageIterator& it, HBXSchedulerTrigger& value) const {
    if (it.getValueLongLong(value.startTime, kStartTime) != 0) {
        return -1;
    }
    if (it.getValueLongLong(value.endTime, kEndTime) != 0) {
        value.endTime = kNever;
    }
    return 0;
}

int HBXSchedulerTrigger::Writer::operator()(HBXMessageIterator& it, const HBXSchedulerTrigger& value) const {
    if (value.startTime < 0 || it.putValueLongLong(value.startTime, kStartTime) != 0) {
        return -1;
    }
    return value.endTime != kNever && it.putValueLongLong(value.endTime, kEndTime) != 0 ? -1 : 0;
}

} // namespace HBX
