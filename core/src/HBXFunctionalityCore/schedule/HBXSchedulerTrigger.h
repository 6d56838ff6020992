#pragma once

#include <cstdint>

#include <HBXMessage/HBXDerivedParsers.h>

namespace HBX {

/// When a scheduled task runs: the base of the trigger family. On a message the derived class is told by its
/// complex type; the base itself is never written there. Rules and worked examples: docs/schedule.md.
///
/// All times are seconds since 1970-01-01 UTC; -1 means never. Days, weeks and months are those of the
/// process's time zone (TZ, or the system's). A trigger is a plain value; several threads may ask one at the
/// same time.
struct HBX_EXPORT HBXSchedulerTrigger {
    std::int64_t startTime = 0; ///< First moment of a run; its local time of day is that of every run.
    std::int64_t endTime = -1;  ///< Last moment of a run; -1: no end.

    HBXSchedulerTrigger() = default;
    /// From first to last moment.
    HBXSchedulerTrigger(std::int64_t start, std::int64_t end) : startTime(start), endTime(end) {}
    HBXSchedulerTrigger(const HBXSchedulerTrigger&) = default;
    HBXSchedulerTrigger(HBXSchedulerTrigger&&) noexcept = default;
    HBXSchedulerTrigger& operator=(const HBXSchedulerTrigger&) = default;
    HBXSchedulerTrigger& operator=(HBXSchedulerTrigger&&) noexcept = default;
    virtual ~HBXSchedulerTrigger();

    /// The next run as seen from `now`.
    /// @param next  receives the run; -1 when there is none any more: `now` or the run lies after `endTime`.
    /// @return 0; -1 (and `next` untouched) when `now` is negative or the trigger's own numbers name no run.
    /// The derived classes say what "next" means to them. A plain base trigger has no runs: -1.
    virtual int getNextRunTime(std::int64_t now, std::int64_t& next) const;

    static const HBXRecordTable table;
    static const HBXPointerType family;

    /// The start must be there; an end that is absent or unreadable is none (-1).
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXSchedulerTrigger& value) const;
    };
    /// -1 for a negative start; the end is left out when there is none.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXSchedulerTrigger> {
        int operator()(HBXMessageIterator& it, const HBXSchedulerTrigger& value) const;
    };

protected:
    /// The next run without regard to `endTime`, for a `now` that is not negative: what a repeating trigger
    /// supplies to getNextRunTime. 0 or -1; `next` may be written on failure.
    virtual int computeNextRun(std::int64_t now, std::int64_t& next) const;
};

/// The one registry of the family in the process.
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXSchedulerTrigger>;

} // namespace HBX
