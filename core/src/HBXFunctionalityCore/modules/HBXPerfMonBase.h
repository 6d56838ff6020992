#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXFunctionalityCore/time/HBXTimeInterval.h>

namespace HBX {

/// The agent's module for performance counters.
class HBX_EXPORT HBXPerfMonBase {
public:
    virtual ~HBXPerfMonBase();
};

/// The values of one counter within an interval, summed up.
struct HBX_EXPORT HBXPerfStat {
    std::string counter; ///< its name
    HBXOptionalProperty<double> minimum;
    double average = 0;
    HBXOptionalProperty<double> maximum;
    HBXOptionalProperty<int> samples; ///< how many values it is made of

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXPerfStat>;
    using Writer = HBXTableWriter<HBXPerfStat>;
};

/// Summed-up values of an environment's counters.
struct HBX_EXPORT HBXMonitorData {
    HBXEID eid;
    HBXTimeInterval interval;
    std::vector<HBXPerfStat> stats; ///< one a counter

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXMonitorData>;
    using Writer = HBXTableWriter<HBXMonitorData>;
};

/// The value of a counter now.
struct HBX_EXPORT HBXPerfMonActualValue {
    HBXEID eid;
    std::string counter;   ///< its name
    std::int64_t time = 0; ///< when it was taken
    double value = 0;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXPerfMonActualValue>;
    using Writer = HBXTableWriter<HBXPerfMonActualValue>;
};

/// The values of a counter within an interval of the past.
struct HBX_EXPORT HBXPerfMonHistoricalValue {
    HBXEID eid;
    std::string counter; ///< its name
    HBXTimeInterval interval;
    HBXOptionalProperty<double> minimum;
    double average = 0;
    HBXOptionalProperty<double> maximum;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXPerfMonHistoricalValue>;
    using Writer = HBXTableWriter<HBXPerfMonHistoricalValue>;
};

} // namespace HBX
