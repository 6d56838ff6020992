#include <HBXFunctionalityCore/modules/HBXComputerMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kSystemInfo[] = {
    member<&HBXSystemInfo::hostname>(1261),
    member<&HBXSystemInfo::os>(1277),
    member<&HBXSystemInfo::architecture>(1276),
    member<&HBXSystemInfo::cpuCount>(3085),
    member<&HBXSystemInfo::cpuModel>(3086),
    member<&HBXSystemInfo::memory>(3087),
    memberAs<&HBXSystemInfo::bootTime>(HBXKind::Time, 3088),
    list<&HBXSystemInfo::addresses>(1687, 1008),
};

constexpr HBXRow kFileType[] = {
    member<&HBXFileType::mask>(3116),
};

constexpr HBXRow kFileListType[] = {
    member<&HBXFileListType::path>(3074),
    member<&HBXFileListType::type>(3117),
    list<&HBXFileListType::files>(3118, 3119),
};

constexpr HBXRow kFileFilter[] = {
    member<&HBXFileFilter::pattern>(3076),  member<&HBXFileFilter::type>(3117),
    member<&HBXFileFilter::minSize>(3120),  member<&HBXFileFilter::maxSize>(3034),
    member<&HBXFileFilter::modified>(3031), member<&HBXFileFilter::caseSensitive>(3121),
};

constexpr HBXRow kFilerOptions[] = {
    member<&HBXFilerOptions::flags>(3122),
};

} // namespace

constinit const HBXRecordTable HBXSystemInfo::table =
    recordTable<HBXSystemInfo>("HBXSystemInfo", 404, 5037, kSystemInfo);
constinit const HBXRecordTable HBXFileType::table = recordTable<HBXFileType>("HBXFileType", 0, 0, kFileType);
constinit const HBXRecordTable HBXFileListType::table =
    recordTable<HBXFileListType>("HBXFileListType", 404, 5048, kFileListType);
constinit const HBXRecordTable HBXFileFilter::table =
    recordTable<HBXFileFilter>("HBXFileFilter", 404, 5049, kFileFilter);
constinit const HBXRecordTable HBXFilerOptions::table =
    recordTable<HBXFilerOptions>("HBXFilerOptions", 404, 5050, kFilerOptions);

HBXComputerMBase::~HBXComputerMBase() = default;

} // namespace HBX
