#pragma once

#include <cstdint>
#include <string>

#include <HBXCommon/HBXExport.h>

namespace HBX {

struct HBXSchedulerTrigger;

/// Schedules in words, for people. Dates and times of day are those of the process's time zone.

/// One line that says what the trigger does, its oddities included: "Every 2 days at 10:00, from Monday
/// 2024-01-01 10:00." A trigger that can have no run says why.
HBX_EXPORT std::string describeTrigger(const HBXSchedulerTrigger& trigger);

/// A moment as "Sunday 2024-03-31 11:00 +02:00" (seconds when there are any); "never" for -1; "moment N" when
/// N is beyond the calendar.
HBX_EXPORT std::string describeMoment(std::int64_t moment);

/// How a run departs from the plain rule, empty when it does not: by how much its time of day differs from
/// the start's, and by how much the clock was set since the run before. The first without the second means an
/// earlier clock change, or the end of a month's last run that stands for a run.
/// @param previous  the run before; -1 when there is none
HBX_EXPORT std::string clockChangeNote(const HBXSchedulerTrigger& trigger, std::int64_t run,
                                       std::int64_t previous);

} // namespace HBX
