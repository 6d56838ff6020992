#pragma once

#include <HBXFunctionalityCore/schedule/HBXSchedulerTrigger.h>

namespace HBX {

/// Runs once, at its start.
struct HBX_EXPORT HBXSchedulerOnceTrigger : HBXSchedulerTrigger {
    using HBXSchedulerTrigger::HBXSchedulerTrigger;

    /// The start while `now` is before it, then -1: at its very start the trigger is spent. `endTime` does
    /// not count.
    int getNextRunTime(std::int64_t now, std::int64_t& next) const override;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXSchedulerOnceTrigger>;
    using Writer = HBXTableWriter<HBXSchedulerOnceTrigger>;
};

} // namespace HBX
