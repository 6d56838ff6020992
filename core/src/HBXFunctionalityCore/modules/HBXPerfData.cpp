#include <HBXFunctionalityCore/modules/HBXPerfData.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kCPULoad[] = {
    member<&HBXCPULoad::user>(3089), member<&HBXCPULoad::system>(3090), member<&HBXCPULoad::nice>(3091),
    member<&HBXCPULoad::idle>(3092), member<&HBXCPULoad::wait>(3093),
};

constexpr HBXRow kLoadAvg1[] = {
    member<&HBXLoadAvg1::value>(1018),
    memberAs<&HBXLoadAvg1::time>(HBXKind::Time, 1004),
};

constexpr HBXRow kLoadAvg[] = {
    member<&HBXLoadAvg::one>(3094),
    member<&HBXLoadAvg::five>(3095),
    member<&HBXLoadAvg::fifteen>(3096),
};

constexpr HBXRow kUsageStats[] = {
    member<&HBXUsageStats::name>(1026),  member<&HBXUsageStats::used>(3097),
    member<&HBXUsageStats::free>(3098),  member<&HBXUsageStats::total>(3099),
    member<&HBXUsageStats::limit>(1067),
};

constexpr HBXRow kNetTransfer[] = {
    member<&HBXNetTransfer::trafficClass>(3196),    member<&HBXNetTransfer::incoming>(3214),
    member<&HBXNetTransfer::outgoing>(3215),        member<&HBXNetTransfer::incomingPackets>(3216),
    member<&HBXNetTransfer::outgoingPackets>(3217),
};

constexpr HBXRow kNetTransferStat[] = {
    member<&HBXNetTransferStat::interval>(3031),
    member<&HBXNetTransferStat::eid>(1870),
    list<&HBXNetTransferStat::transfers>(3218, 3204),
};

constexpr HBXRow kStats[] = {
    memberAs<&HBXStats::time>(HBXKind::Time, 1004),
    member<&HBXStats::cpu>(3100),
    member<&HBXStats::loadAvg>(3101),
    list<&HBXStats::usages>(3102, 3103),
    member<&HBXStats::network>(3104),
};

constexpr HBXRow kTopInfo[] = {
    member<&HBXTopInfo::pid>(3105), member<&HBXTopInfo::command>(3106), member<&HBXTopInfo::user>(3107),
    member<&HBXTopInfo::cpu>(3108), member<&HBXTopInfo::memory>(3109),  member<&HBXTopInfo::cpuTime>(3110),
};

constexpr HBXRow kTopData[] = {
    memberAs<&HBXTopData::time>(HBXKind::Time, 1004),
    member<&HBXTopData::loadAvg>(3101),
    member<&HBXTopData::cpu>(3100),
    list<&HBXTopData::processes>(3111, 3112),
};

} // namespace

constinit const HBXRecordTable HBXCPULoad::table = recordTable<HBXCPULoad>("HBXCPULoad", 404, 5038, kCPULoad);
constinit const HBXRecordTable HBXLoadAvg1::table = recordTable<HBXLoadAvg1>("HBXLoadAvg1", 0, 0, kLoadAvg1);
constinit const HBXRecordTable HBXLoadAvg::table = recordTable<HBXLoadAvg>("HBXLoadAvg", 404, 5039, kLoadAvg);
constinit const HBXRecordTable HBXUsageStats::table =
    recordTable<HBXUsageStats>("HBXUsageStats", 404, 5040, kUsageStats);
constinit const HBXRecordTable HBXNetTransfer::table =
    recordTable<HBXNetTransfer>("HBXNetTransfer", 0, 0, kNetTransfer);
constinit const HBXRecordTable HBXNetTransferStat::table =
    recordTable<HBXNetTransferStat>("HBXNetTransferStat", 412, 5100, kNetTransferStat);
constinit const HBXRecordTable HBXStats::table = recordTable<HBXStats>("HBXStats", 404, 5041, kStats);
constinit const HBXRecordTable HBXTopInfo::table = recordTable<HBXTopInfo>("HBXTopInfo", 404, 5042, kTopInfo);
constinit const HBXRecordTable HBXTopData::table = recordTable<HBXTopData>("HBXTopData", 404, 5043, kTopData);

} // namespace HBX
