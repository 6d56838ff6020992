#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXFunctionalityCore/modules/HBXPerfData.h>
#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXPolymorphic.h>

namespace HBX {

/// The agent's module for devices.
class HBX_EXPORT HBXDevMBase {
public:
    virtual ~HBXDevMBase();
};

/// A device: the base of the device family. On a message the derived class is told by its complex type; a
/// kind that this library does not know reads as this one.
struct HBX_EXPORT HBXCommonDevice : HBXPolymorphic {
    std::string id;   ///< how the system calls it
    std::string name; ///< for people
    HBXOptionalProperty<std::string> description;
    HBXOptionalProperty<bool> shared; ///< several environments may use it at once
    HBXOptionalProperty<bool> disabled;

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXCommonDevice>;
    using Writer = HBXTableWriter<HBXCommonDevice>;
};

/// A device on a SCSI bus, with its address there.
struct HBX_EXPORT HBXScsiDevice : HBXCommonDevice {
    int controller = 0;
    int bus = 0;
    int target = 0;
    int lun = 0;
    HBXOptionalProperty<std::string> vendor;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXScsiDevice>;
    using Writer = HBXTableWriter<HBXScsiDevice>;
};

/// A device as Windows lists it.
struct HBX_EXPORT HBXWindowsDevice : HBXCommonDevice {
    std::string instanceId;
    HBXOptionalProperty<HBXGUID> classGuid;
    HBXOptionalProperty<std::string> driver; ///< name of the driver package
    HBXOptionalProperty<int> problem;        ///< the system's problem code; 0: it works

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXWindowsDevice>;
    using Writer = HBXTableWriter<HBXWindowsDevice>;
};

/// A device and who has it.
struct HBX_EXPORT HBXDeviceInfo {
    boost::shared_ptr<HBXCommonDevice> device;
    HBXOptionalProperty<HBXEID> eid;        ///< the environment it is given to; unset: the host
    int state = 0;                          ///< the system's state code
    HBXOptionalProperty<std::int64_t> size; ///< bytes, of a disk

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDeviceInfo>;
    using Writer = HBXTableWriter<HBXDeviceInfo>;
};

/// A mounted file system.
struct HBX_EXPORT HBXDevMountInfo {
    std::string device; ///< such as "/dev/sda1"
    std::string mountPoint;
    HBXOptionalProperty<std::string> fileSystem; ///< its kind, such as "ext4"
    HBXOptionalProperty<std::string> options;    ///< as given when it was mounted
    HBXOptionalProperty<HBXUsageStats> usage;    ///< bytes

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDevMountInfo>;
    using Writer = HBXTableWriter<HBXDevMountInfo>;
};

/// A part of a disk.
struct HBX_EXPORT HBXDiskPartition {
    int number = 0;                        ///< from 1
    std::int64_t start = 0;                ///< first sector
    std::int64_t size = 0;                 ///< bytes
    HBXOptionalProperty<std::string> type; ///< the table's type code or identifier
    HBXOptionalProperty<bool> bootable;
    HBXOptionalProperty<std::string> fileSystem; ///< its kind, such as "ext4"
    HBXOptionalProperty<std::string> mountPoint;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDiskPartition>;
    using Writer = HBXTableWriter<HBXDiskPartition>;
};

/// A physical disk.
struct HBX_EXPORT HBXDisk {
    std::string name;      ///< such as "/dev/sda"
    std::int64_t size = 0; ///< bytes
    HBXOptionalProperty<std::string> model;
    HBXOptionalProperty<std::string> serial;
    std::vector<HBXDiskPartition> partitions;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDisk>;
    using Writer = HBXTableWriter<HBXDisk>;
};

/// Where a forwarded device appears inside the environment.
struct HBX_EXPORT HBXForwardPoint {
    std::string path;                     ///< such as "/dev/sdb"
    HBXOptionalProperty<std::string> bus; ///< the kind of bus it is on there
    HBXOptionalProperty<int> number;      ///< its place on that bus

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXForwardPoint>;
    using Writer = HBXTableWriter<HBXForwardPoint>;
};

/// A device of the host that is passed on to an environment.
struct HBX_EXPORT HBXForwardDevice {
    boost::shared_ptr<HBXCommonDevice> device;
    HBXEID eid;                                 ///< the environment
    HBXOptionalProperty<HBXForwardPoint> point; ///< unset: the environment chooses
    HBXOptionalProperty<bool> readOnly;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXForwardDevice>;
    using Writer = HBXTableWriter<HBXForwardDevice>;
};

extern template class HBX_EXPORT HBXDerivedParserFactory<HBXCommonDevice>;

} // namespace HBX
