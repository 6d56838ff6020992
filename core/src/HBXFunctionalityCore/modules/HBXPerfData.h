#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXFunctionalityCore/time/HBXTimeInterval.h>

namespace HBX {

/// Where the time of the processors went, percent of all of them together.
struct HBX_EXPORT HBXCPULoad {
    double user = 0;                  ///< programs
    double system = 0;                ///< the kernel
    HBXOptionalProperty<double> nice; ///< programs of low priority
    double idle = 0;
    HBXOptionalProperty<double> wait; ///< idle, waiting for disks

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXCPULoad>;
    using Writer = HBXTableWriter<HBXCPULoad>;
};

/// The mean number of processes that were ready to run, over one period.
struct HBX_EXPORT HBXLoadAvg1 {
    double value = 0;
    HBXOptionalProperty<std::int64_t> time; ///< at the end of the period

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXLoadAvg1>;
    using Writer = HBXTableWriter<HBXLoadAvg1>;
};

/// Load averages over the usual periods.
struct HBX_EXPORT HBXLoadAvg {
    HBXLoadAvg1 one;     ///< the last minute
    HBXLoadAvg1 five;    ///< the last five minutes
    HBXLoadAvg1 fifteen; ///< the last fifteen minutes

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXLoadAvg>;
    using Writer = HBXTableWriter<HBXLoadAvg>;
};

/// How much of something is in use; all numbers in the unit of the resource, bytes for memory and disks.
struct HBX_EXPORT HBXUsageStats {
    std::string name; ///< of the resource
    std::int64_t used = 0;
    std::int64_t free = 0;
    std::int64_t total = 0;
    HBXOptionalProperty<std::int64_t> limit; ///< how much may be used, where that is less than all

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXUsageStats>;
    using Writer = HBXTableWriter<HBXUsageStats>;
};

/// Traffic of one class, counted.
struct HBX_EXPORT HBXNetTransfer {
    int trafficClass = 0;      ///< as in HBXInterfaceRate
    std::int64_t incoming = 0; ///< bytes
    std::int64_t outgoing = 0; ///< bytes
    HBXOptionalProperty<std::int64_t> incomingPackets;
    HBXOptionalProperty<std::int64_t> outgoingPackets;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXNetTransfer>;
    using Writer = HBXTableWriter<HBXNetTransfer>;
};

/// Traffic within an interval, by class.
struct HBX_EXPORT HBXNetTransferStat {
    HBXTimeInterval interval;
    HBXOptionalProperty<HBXEID> eid; ///< whose traffic; unset: that of the host
    std::vector<HBXNetTransfer> transfers;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXNetTransferStat>;
    using Writer = HBXTableWriter<HBXNetTransferStat>;
};

/// What a computer is busy with at one moment.
struct HBX_EXPORT HBXStats {
    std::int64_t time = 0;
    HBXOptionalProperty<HBXCPULoad> cpu;
    HBXOptionalProperty<HBXLoadAvg> loadAvg;
    std::vector<HBXUsageStats> usages;               ///< one a resource
    HBXOptionalProperty<HBXNetTransferStat> network; ///< since the last such record

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXStats>;
    using Writer = HBXTableWriter<HBXStats>;
};

/// One line of a list of the busiest processes.
struct HBX_EXPORT HBXTopInfo {
    int pid = 0;
    std::string command; ///< with its arguments
    HBXOptionalProperty<std::string> user;
    double cpu = 0;                            ///< percent of one processor
    double memory = 0;                         ///< percent of all
    HBXOptionalProperty<std::int64_t> cpuTime; ///< seconds of processor time so far

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXTopInfo>;
    using Writer = HBXTableWriter<HBXTopInfo>;
};

/// The busiest processes at one moment.
struct HBX_EXPORT HBXTopData {
    std::int64_t time = 0;
    HBXOptionalProperty<HBXLoadAvg> loadAvg;
    HBXOptionalProperty<HBXCPULoad> cpu;
    std::vector<HBXTopInfo> processes; ///< the busiest first

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXTopData>;
    using Writer = HBXTableWriter<HBXTopData>;
};

} // namespace HBX
