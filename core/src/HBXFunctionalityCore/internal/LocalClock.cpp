#include <HBXFunctionalityCore/internal/LocalClock.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <string>

#include <HBXFunctionalityCore/internal/Calendar.h>

namespace HBX::internal {

namespace {

struct Answer {
    std::uint64_t generation = 0; // of the zone it was given for; 0: none yet
    std::int64_t moment = 0;
    LocalTime local{};
};

std::int64_t coarseSecond() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return now.tv_sec;
}

LocalTime localTimeFrom(const std::tm& fields) {
    LocalTime local{};
    local.year = std::int64_t{fields.tm_year} + 1900;
    local.month = fields.tm_mon + 1;
    local.day = fields.tm_mday;
    local.weekDay = fields.tm_wday;
    local.secondOfDay = fields.tm_hour * 3600 + fields.tm_min * 60 + fields.tm_sec;
    const std::int64_t day = daysBeforeMonth(local.year, local.month) + local.day - 1;
    local.wall = day * kSecondsPerDay + local.secondOfDay;
    return local;
}

} // namespace

/// The answers that one thread remembers, and the zone that they hold for.
class ZoneMemory {
public:
    /// Brings the C library's zone and this memory up to date. The C library tells a change by the text of TZ
    /// alone, which costs next to nothing; without TZ, by the system's zone file, which costs a system call.
    void followZone() {
        const char* zone = std::getenv("TZ");
        const bool current = isCurrent(zone);
        if (zone != nullptr || !current) {
            tzset();
        }
        if (current) {
            return;
        }
        ++generation_;
        named_ = zone != nullptr;
        zone_ = named_ ? zone : "";
        looked_ = named_ ? 0 : coarseSecond();
    }

    bool find(std::int64_t moment, LocalTime& local) const {
        const Answer& answer = answers_[slotOf(moment)];
        if (answer.generation != generation_ || answer.moment != moment) {
            return false;
        }
        local = answer.local;
        return true;
    }

    void store(std::int64_t moment, const LocalTime& local) {
        answers_[slotOf(moment)] = {generation_, moment, local};
    }

private:
    static constexpr unsigned kSlotBits = 6;

    bool isCurrent(const char* zone) const {
        if (zone != nullptr) {
            return named_ && zone_ == zone;
        }
        return generation_ != 0 && !named_ && looked_ == coarseSecond();
    }

    static std::size_t slotOf(std::int64_t moment) {
        constexpr std::uint64_t kGoldenRatio = 0x9E3779B97F4A7C15; // scatters moments whole days apart
        return static_cast<std::uint64_t>(moment) * kGoldenRatio >> (64 - kSlotBits);
    }

    std::uint64_t generation_ = 0;
    bool named_ = false;
    std::string zone_;
    std::int64_t looked_ = 0;
    std::array<Answer, std::size_t{1} << kSlotBits> answers_{};
};

static ZoneMemory& memoryOfThread() {
    static thread_local ZoneMemory memory;
    return memory;
}

LocalClock::LocalClock() : memory_(memoryOfThread()) { memory_.followZone(); }

bool LocalClock::read(std::int64_t moment, LocalTime& local) const {
    if (memory_.find(moment, local)) {
        return true;
    }
    const std::time_t time = moment;
    std::tm fields{};
    if (localtime_r(&time, &fields) == nullptr) {
        return false;
    }
    local = localTimeFrom(fields);
    memory_.store(moment, local);
    return true;
}

bool LocalClock::offsetAt(std::int64_t moment, std::int64_t& offset) const {
    LocalTime local{};
    if (!read(moment, local)) {
        return false;
    }
    offset = local.wall - moment;
    return true;
}

bool LocalClock::momentOf(std::int64_t wall, std::int64_t& moment) const {
    constexpr std::int64_t kReach = std::int64_t{25} * 3600; // no wall clock is further from universal time
    std::int64_t before = 0;
    std::int64_t after = 0;
    if (!offsetAt(wall - kReach, before) || !offsetAt(wall + kReach, after)) {
        return false;
    }
    const std::int64_t byOldClock = wall - before;
    const std::int64_t byNewClock = wall - after;
    if (before == after) {
        moment = byOldClock;
        return true;
    }
    // The clock changes near here. The new clock's moment counts when the new clock is in force by then; it
    // is the later one of a repeated reading. A reading that neither clock shows is counted by the old clock.
    std::int64_t offset = 0;
    if (!offsetAt(byNewClock, offset)) {
        return false;
    }
    moment = offset == after ? byNewClock : byOldClock;
    return true;
}

} // namespace HBX::internal
