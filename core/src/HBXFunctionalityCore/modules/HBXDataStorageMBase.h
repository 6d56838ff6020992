#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/environment/HBXOS.h>
#include <HBXFunctionalityCore/modules/HBXAuthMBase.h>
#include <HBXFunctionalityCore/security/HBXSID.h>

namespace HBX {

/// The agent's module for where backups and images are stored.
class HBX_EXPORT HBXDataStorageMBase {
public:
    virtual ~HBXDataStorageMBase();
};

/// A place for files, on this server or on a share of another.
struct HBX_EXPORT HBXDSLocation {
    HBXGUID id;
    std::string path;                                    ///< below the share, where there is one
    HBXOptionalProperty<std::string> server;             ///< host name or IP address; unset: here
    HBXOptionalProperty<std::string> share;              ///< its name on the server
    HBXOptionalProperty<HBXUserCredentials> credentials; ///< for the share

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDSLocation>;
    using Writer = HBXTableWriter<HBXDSLocation>;
};

/// A storage as the agent uses it.
struct HBX_EXPORT HBXDSConfiguration {
    HBXDSLocation location;
    std::string name;
    HBXOptionalProperty<std::string> description;
    HBXOptionalProperty<std::int64_t> quota; ///< bytes that may be used
    HBXOptionalProperty<bool> readOnly;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDSConfiguration>;
    using Writer = HBXTableWriter<HBXDSConfiguration>;
};

/// A file or folder in a storage.
struct HBX_EXPORT HBXDSObjectInfo {
    std::string name;
    std::string path;                       ///< from the storage's root
    HBXOptionalProperty<std::int64_t> size; ///< bytes
    HBXOptionalProperty<std::int64_t> time; ///< of the last change
    HBXOptionalProperty<bool> directory;
    HBXOptionalProperty<HBXSID> owner;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDSObjectInfo>;
    using Writer = HBXTableWriter<HBXDSObjectInfo>;
};

/// A folder that the server offers to others.
struct HBX_EXPORT HBXFileShare {
    std::string name;
    std::string path;
    HBXOptionalProperty<std::string> description;
    HBXOptionalProperty<bool> readOnly;
    std::vector<std::string> users; ///< who may use it; none: everybody

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXFileShare>;
    using Writer = HBXTableWriter<HBXFileShare>;
};

/// A file that holds a disk.
struct HBX_EXPORT HBXDiskImage {
    HBXGUID id;
    std::string path;
    std::int64_t size = 0;                      ///< of the disk, bytes
    HBXOptionalProperty<std::string> format;    ///< such as "raw"
    HBXOptionalProperty<std::int64_t> usedSize; ///< of the file, bytes
    HBXOptionalProperty<HBXGUID> parentId;      ///< the image that this one holds the changes to

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDiskImage>;
    using Writer = HBXTableWriter<HBXDiskImage>;
};

/// A set of disks from which environments are made.
struct HBX_EXPORT HBXImageInfo {
    HBXGUID id;
    std::string name;
    std::string format;                     ///< of all its disks
    HBXOptionalProperty<HBXOS> os;          ///< what is installed on them
    HBXOptionalProperty<std::int64_t> size; ///< of all files, bytes
    std::vector<HBXDiskImage> images;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXImageInfo>;
    using Writer = HBXTableWriter<HBXImageInfo>;
};

} // namespace HBX
