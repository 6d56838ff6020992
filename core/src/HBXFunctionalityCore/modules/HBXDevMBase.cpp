#include <HBXFunctionalityCore/modules/HBXDevMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kCommonDevice[] = {
    member<&HBXCommonDevice::id>(3138),          member<&HBXCommonDevice::name>(1026),
    member<&HBXCommonDevice::description>(1496), member<&HBXCommonDevice::shared>(3139),
    member<&HBXCommonDevice::disabled>(1705),
};

constexpr HBXRow kScsiDevice[] = {
    member<&HBXScsiDevice::controller>(3140), member<&HBXScsiDevice::bus>(3141),
    member<&HBXScsiDevice::target>(3142),     member<&HBXScsiDevice::lun>(3143),
    member<&HBXScsiDevice::vendor>(3144),
};

constexpr HBXRow kWindowsDevice[] = {
    member<&HBXWindowsDevice::instanceId>(3145),
    member<&HBXWindowsDevice::classGuid>(3146),
    member<&HBXWindowsDevice::driver>(3147),
    member<&HBXWindowsDevice::problem>(3148),
};

constexpr HBXRow kDeviceInfo[] = {
    polymorphic<&HBXDeviceInfo::device>(3149),
    member<&HBXDeviceInfo::eid>(1870),
    member<&HBXDeviceInfo::state>(1421),
    member<&HBXDeviceInfo::size>(3056),
};

constexpr HBXRow kDevMountInfo[] = {
    member<&HBXDevMountInfo::device>(3150),     member<&HBXDevMountInfo::mountPoint>(3151),
    member<&HBXDevMountInfo::fileSystem>(3152), member<&HBXDevMountInfo::options>(3153),
    member<&HBXDevMountInfo::usage>(3103),
};

constexpr HBXRow kDiskPartition[] = {
    member<&HBXDiskPartition::number>(3158),     member<&HBXDiskPartition::start>(3159),
    member<&HBXDiskPartition::size>(3056),       member<&HBXDiskPartition::type>(3160),
    member<&HBXDiskPartition::bootable>(3161),   member<&HBXDiskPartition::fileSystem>(3152),
    member<&HBXDiskPartition::mountPoint>(3151),
};

constexpr HBXRow kDisk[] = {
    member<&HBXDisk::name>(1026),   member<&HBXDisk::size>(3056),           member<&HBXDisk::model>(3154),
    member<&HBXDisk::serial>(3155), list<&HBXDisk::partitions>(3156, 3157),
};

constexpr HBXRow kForwardPoint[] = {
    member<&HBXForwardPoint::path>(3074),
    member<&HBXForwardPoint::bus>(3163),
    member<&HBXForwardPoint::number>(3158),
};

constexpr HBXRow kForwardDevice[] = {
    polymorphic<&HBXForwardDevice::device>(3149),
    member<&HBXForwardDevice::eid>(1870),
    member<&HBXForwardDevice::point>(3162),
    member<&HBXForwardDevice::readOnly>(3130),
};

} // namespace

constinit const HBXRecordTable HBXCommonDevice::table =
    recordTable<HBXCommonDevice>("HBXCommonDevice", 406, 5059, kCommonDevice);
constinit const HBXRecordTable HBXScsiDevice::table =
    recordTable<HBXScsiDevice, HBXCommonDevice>("HBXScsiDevice", 406, 5060, kScsiDevice);
constinit const HBXRecordTable HBXWindowsDevice::table =
    recordTable<HBXWindowsDevice, HBXCommonDevice>("HBXWindowsDevice", 406, 5061, kWindowsDevice);
constinit const HBXRecordTable HBXDeviceInfo::table =
    recordTable<HBXDeviceInfo>("HBXDeviceInfo", 406, 5062, kDeviceInfo);
constinit const HBXRecordTable HBXDevMountInfo::table =
    recordTable<HBXDevMountInfo>("HBXDevMountInfo", 406, 5063, kDevMountInfo);
constinit const HBXRecordTable HBXDiskPartition::table =
    recordTable<HBXDiskPartition>("HBXDiskPartition", 406, 5065, kDiskPartition);
constinit const HBXRecordTable HBXDisk::table = recordTable<HBXDisk>("HBXDisk", 406, 5064, kDisk);
constinit const HBXRecordTable HBXForwardPoint::table =
    recordTable<HBXForwardPoint>("HBXForwardPoint", 406, 5067, kForwardPoint);
constinit const HBXRecordTable HBXForwardDevice::table =
    recordTable<HBXForwardDevice>("HBXForwardDevice", 406, 5066, kForwardDevice);

HBXDevMBase::~HBXDevMBase() = default;

} // namespace HBX
