#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/schedule/HBXSchedulerTrigger.h>

namespace HBX::tool {

inline constexpr int kMaxRuns = 1000; ///< of one list

/// One run of a trigger.
struct Run {
    std::int64_t time; ///< seconds since 1970-01-01 UTC
    std::string text;  ///< the same in local time
    std::string note;  ///< how a clock change moved it; empty when none did
};

/// The next runs, and why there are no more than these.
struct RunList {
    enum class Ending {
        Complete, ///< as many as were asked for
        Over,     ///< the trigger has no further run
        Past,     ///< the trigger's answer lies in the past: asking on from there could go round in circles
        Unusable, ///< the trigger's own numbers name no run
    };

    std::vector<Run> runs;
    Ending ending = Ending::Complete;
    std::string reason; ///< for people; empty when complete
};

/// Asks the trigger for its next run, then from each answer on for the one after it. Never throws, and ends
/// for every trigger.
RunList nextRuns(const HBXSchedulerTrigger& trigger, std::int64_t from, int count);

} // namespace HBX::tool
