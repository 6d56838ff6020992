#include <HBXFunctionalityCore/schedule/HBXSchedulerDailyTrigger.h>

#include <HBXFunctionalityCore/internal/Calendar.h>
#include <HBXFunctionalityCore/internal/LocalClock.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr int kDaysInterval = 2095;
constexpr int kWorkdaysOnly = 2096;
constexpr int kWeekendsOnly = 2097;

constexpr HBXRow kDailyTrigger[] = {
    member<&HBXSchedulerDailyTrigger::daysInterval>(kDaysInterval),
    optional<&HBXSchedulerDailyTrigger::workdaysOnly>(kWorkdaysOnly),
    optional<&HBXSchedulerDailyTrigger::weekendsOnly>(kWeekendsOnly),
};

using internal::kSecondsPerDay;

enum WeekDay { Sunday = 0, Saturday = 6 };

bool addSeconds(std::int64_t moment, std::int64_t seconds, std::int64_t& sum) {
    return !__builtin_add_overflow(moment, seconds, &sum);
}

/// The product as 32-bit numbers make it: what does not fit is cut off.
std::int32_t wrappingProduct(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

/// Time since the start, cut to its low 32 bits.
std::int32_t elapsedSince(std::int64_t start, std::int64_t now) {
    return static_cast<std::int32_t>(static_cast<std::uint64_t>(now) - static_cast<std::uint64_t>(start));
}

int daysToMonday(int weekDay) {
    switch (weekDay) {
    case Sunday:
        return 1;
    case Saturday:
        return 2;
    default:
        return 0;
    }
}

int daysToWeekend(int weekDay) { return weekDay == Sunday ? 0 : Saturday - weekDay; }

int nextByInterval(std::int64_t start, std::int32_t elapsed, std::int32_t interval, std::int64_t& next) {
    const std::int32_t period = wrappingProduct(interval, kSecondsPerDay);
    if (period == 0) {
        return -1;
    }
    return addSeconds(start, wrappingProduct(period, elapsed / period + 1), next) ? 0 : -1;
}

/// The next step of a day from the start, then on by as many days as its weekday asks for.
int nextByWeekDay(std::int64_t start, std::int32_t elapsed, int (*daysToRunDay)(int), std::int64_t& next) {
    std::int64_t step = 0;
    internal::LocalTime local{};
    if (!addSeconds(start, (elapsed / kSecondsPerDay + 1) * kSecondsPerDay, step) ||
        !internal::LocalClock().read(step, local)) {
        return -1;
    }
    return addSeconds(step, daysToRunDay(local.weekDay) * kSecondsPerDay, next) ? 0 : -1;
}

/// A flag is an empty element that is there or not.
void putFlag(HBXMessageIterator& it, bool flag, int id) {
    if (flag && it.newChild(id) == 0) {
        it.seekUp();
    }
}

} // namespace

constinit const HBXRecordTable HBXSchedulerDailyTrigger::table =
    recordTable<HBXSchedulerDailyTrigger, HBXSchedulerTrigger>("HBXSchedulerDailyTrigger", 283, 295,
                                                               kDailyTrigger);

int HBXSchedulerDailyTrigger::computeNextRun(std::int64_t now, std::int64_t& next) const {
    if (now < startTime) {
        next = startTime;
        return 0;
    }
    const std::int32_t elapsed = elapsedSince(startTime, now);
    if (daysInterval.isSet() && daysInterval.get() != 0) {
        return nextByInterval(startTime, elapsed, daysInterval.get(), next);
    }
    return nextByWeekDay(startTime, elapsed, workdaysOnly ? daysToMonday : daysToWeekend, next);
}

int HBXSchedulerDailyTrigger::Reader::operator()(const HBXMessageIterator& it,
                                                 HBXSchedulerDailyTrigger& value) const {
    if (HBXSchedulerTrigger::Reader()(it, value) != 0) {
        return -1;
    }
    value.daysInterval.reset();
    if (int days = 0; it.getValue(days, kDaysInterval) == 0) {
        value.daysInterval.set(days);
    }
    value.workdaysOnly = it.seekPresence(kWorkdaysOnly) == 0;
    value.weekendsOnly = it.seekPresence(kWeekendsOnly) == 0;
    return 0;
}

int HBXSchedulerDailyTrigger::Writer::operator()(HBXMessageIterator& it,
                                                 const HBXSchedulerDailyTrigger& value) const {
    if (HBXSchedulerTrigger::Writer()(it, value) != 0) {
        return -1;
    }
    if (value.daysInterval.isSet()) {
        it.putValue(value.daysInterval.get(), kDaysInterval);
    }
    putFlag(it, value.workdaysOnly, kWorkdaysOnly);
    putFlag(it, value.weekendsOnly, kWeekendsOnly);
    return 0;
}

} // namespace HBX
