// The next run after "now", ours against a fresh iterator of libical over the equivalent rule.
//
// Workloads: once, days (every second day), workdays, weeks (every second week, three weekdays), months (1st,
// 15th and last day), days_of_week (2nd and 4th Tuesday and Thursday); each with the start near (the two days
// before now) and 50 years back. Both sides answer for the same 1024 moments in turn, in Europe/Berlin.
// libical is given its rule parsed and its moments converted beforehand: only making the iterator and
// stepping it to the first occurrence after now is measured. One more row per start asks us from two threads
// at once.

#include <array>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <random>

#include <benchmark/benchmark.h>
#include <libical/ical.h>

#include <HBXFunctionalityCore/schedule/HBXSchedulerDailyTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerMonthlyDayOfWeekTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerMonthlyTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerOnceTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerWeeklyTrigger.h>

namespace {

using Trigger = std::unique_ptr<HBX::HBXSchedulerTrigger>;

constexpr std::int64_t kNear = 1717228800;   // 2024-06-01 10:00 in Berlin
constexpr std::int64_t kLongAgo = 139395600; // 1974-06-02 10:00
constexpr std::size_t kMoments = 1024;

struct Workload {
    const char* name;
    Trigger (*trigger)(std::int64_t start);
    const char* rule;
};

template <class T>
Trigger make(std::int64_t start, void (*fill)(T&)) {
    auto trigger = std::make_unique<T>(start, -1);
    fill(*trigger);
    return trigger;
}

const std::set<int> kAllMonths{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};

Trigger once(std::int64_t start) { return std::make_unique<HBX::HBXSchedulerOnceTrigger>(start, -1); }

Trigger days(std::int64_t start) {
    return make<HBX::HBXSchedulerDailyTrigger>(start, [](auto& trigger) { trigger.daysInterval = 2; });
}

Trigger workdays(std::int64_t start) {
    return make<HBX::HBXSchedulerDailyTrigger>(start, [](auto& trigger) { trigger.workdaysOnly = true; });
}

Trigger weeks(std::int64_t start) {
    return make<HBX::HBXSchedulerWeeklyTrigger>(start, [](auto& trigger) {
        trigger.weeksInterval = 2;
        trigger.weekDays = {1, 3, 5};
    });
}

Trigger months(std::int64_t start) {
    return make<HBX::HBXSchedulerMonthlyTrigger>(start, [](auto& trigger) {
        trigger.monthDays = {1, 15, 32};
        trigger.months = kAllMonths;
    });
}

Trigger daysOfWeek(std::int64_t start) {
    return make<HBX::HBXSchedulerMonthlyDayOfWeekTrigger>(start, [](auto& trigger) {
        trigger.weekDays = {2, 4};
        trigger.monthWeeks = {2, 4};
        trigger.months = kAllMonths;
    });
}

constexpr Workload kWorkloads[] = {
    {"once", once, "FREQ=DAILY;COUNT=1"},
    {"days", days, "FREQ=DAILY;INTERVAL=2"},
    {"workdays", workdays, "FREQ=WEEKLY;BYDAY=MO,TU,WE,TH,FR"},
    {"weeks", weeks, "FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,WE,FR"},
    {"months", months, "FREQ=MONTHLY;BYMONTHDAY=1,15,-1"},
    {"days_of_week", daysOfWeek, "FREQ=MONTHLY;BYDAY=2TU,2TH,4TU,4TH"},
};

/// Moments of the two days after the near start, in no order.
std::array<std::int64_t, kMoments> moments() {
    std::mt19937_64 random(1);
    std::uniform_int_distribution<std::int64_t> later(0, std::int64_t{2} * 86400);
    std::array<std::int64_t, kMoments> result{};
    for (std::int64_t& moment : result) {
        moment = kNear + later(random);
    }
    return result;
}

void runOurs(benchmark::State& state, const Workload& workload, std::int64_t start) {
    const Trigger trigger = workload.trigger(start);
    const auto nows = moments();
    std::size_t i = 0;
    for (auto _ : state) {
        std::int64_t next = 0;
        benchmark::DoNotOptimize(trigger->getNextRunTime(nows[i], next));
        benchmark::DoNotOptimize(next);
        i = (i + 1) % kMoments;
    }
}

void runLibical(benchmark::State& state, const Workload& workload, std::int64_t start) {
    icaltimezone* zone = icaltimezone_get_builtin_timezone("Europe/Berlin");
    const icalrecurrencetype rule = icalrecurrencetype_from_string(workload.rule);
    const icaltimetype first = icaltime_from_timet_with_zone(start, 0, zone);
    std::array<icaltimetype, kMoments> nows{};
    const auto seconds = moments();
    for (std::size_t i = 0; i < kMoments; ++i) {
        nows[i] = icaltime_from_timet_with_zone(seconds[i], 0, zone);
    }
    std::size_t i = 0;
    for (auto _ : state) {
        icalrecur_iterator* iterator = icalrecur_iterator_new(rule, first);
        icaltimetype next{};
        do {
            next = icalrecur_iterator_next(iterator);
        } while (icaltime_is_null_time(next) == 0 && icaltime_compare(next, nows[i]) <= 0);
        benchmark::DoNotOptimize(next);
        icalrecur_iterator_free(iterator);
        i = (i + 1) % kMoments;
    }
}

bool registerAll() {
    setenv("TZ", "Europe/Berlin", 1);
    tzset();
    for (const Workload& workload : kWorkloads) {
        for (const auto& [start, when] : {std::pair{kNear, "near"}, std::pair{kLongAgo, "50_years"}}) {
            const std::string name = std::string(workload.name) + "/" + when;
            const auto add = [&, from = start](const std::string& side, auto run) {
                return benchmark::RegisterBenchmark(
                    (name + "/" + side).c_str(),
                    [&workload, run, from](benchmark::State& state) { run(state, workload, from); });
            };
            add("hbx", runOurs);
            add("hbx_2_threads", runOurs)->Threads(2);
            add("libical", runLibical);
        }
    }
    return true;
}

const bool registered = registerAll();

} // namespace
