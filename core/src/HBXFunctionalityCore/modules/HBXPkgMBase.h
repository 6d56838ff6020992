#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/environment/HBXOS.h>
#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXPolymorphic.h>

namespace HBX {

/// The agent's module for software packages.
class HBX_EXPORT HBXPkgMBase {
public:
    virtual ~HBXPkgMBase();
};

/// A software package: the base of the package family. On a message the derived class is told by its complex
/// type; a kind that this library does not know reads as this one.
struct HBX_EXPORT HBXPackage : HBXPolymorphic {
    std::string name;
    std::string version;
    HBXOptionalProperty<std::string> architecture;
    HBXOptionalProperty<std::string> summary; ///< one line
    HBXOptionalProperty<int> state;           ///< the package manager's state code

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXPackage>;
    using Writer = HBXTableWriter<HBXPackage>;
};

/// What the packages of Linux distributions have in common; never a family member itself.
struct HBX_EXPORT HBXPackageLinux : HBXPackage {
    std::string release;                    ///< what the distributor adds to the version
    HBXOptionalProperty<int> epoch;         ///< counts before the version
    HBXOptionalProperty<std::int64_t> size; ///< installed, bytes
    std::vector<std::string> dependencies;  ///< names, with versions where they matter

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXPackageLinux>;
    using Writer = HBXTableWriter<HBXPackageLinux>;
};

/// A package in RPM format.
struct HBX_EXPORT HBXPackageRpm : HBXPackageLinux {
    HBXOptionalProperty<std::string> group;
    HBXOptionalProperty<std::string> vendor;
    HBXOptionalProperty<std::string> signature; ///< identifier of the key

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXPackageRpm>;
    using Writer = HBXTableWriter<HBXPackageRpm>;
};

/// A package in deb format.
struct HBX_EXPORT HBXPackageDeb : HBXPackageLinux {
    HBXOptionalProperty<std::string> section;
    HBXOptionalProperty<std::string> priority;   ///< such as "required" or "optional"
    HBXOptionalProperty<std::string> maintainer; ///< name and mail address

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXPackageDeb>;
    using Writer = HBXTableWriter<HBXPackageDeb>;
};

/// A package file that is ready to be installed.
struct HBX_EXPORT HBXInstallationPackage {
    HBXGUID id;
    boost::shared_ptr<HBXPackage> package;
    std::string path;                          ///< of the file
    HBXOptionalProperty<std::string> checksum; ///< of the file, hexadecimal
    HBXOptionalProperty<std::int64_t> size;    ///< of the file, bytes
    HBXOptionalProperty<HBXOS> os;             ///< for which it is made

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXInstallationPackage>;
    using Writer = HBXTableWriter<HBXInstallationPackage>;
};

/// What changed in the list of an environment's packages.
struct HBX_EXPORT HBXPackageListModificationData : HBXPolymorphic {
    HBXEID eid;
    std::vector<boost::shared_ptr<HBXPackage>> installed;
    std::vector<boost::shared_ptr<HBXPackage>> removed;

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXPackageListModificationData>;
    using Writer = HBXTableWriter<HBXPackageListModificationData>;
};

/// What packages are installed or removed, and how.
struct HBX_EXPORT HBXPackageManagerOptions {
    HBXEID eid;                        ///< where
    std::vector<std::string> packages; ///< their names
    HBXOptionalProperty<bool> force;   ///< although others need or forbid it
    HBXOptionalProperty<bool> dryRun;  ///< only says what would be done
    HBXOptionalProperty<int> timeout;  ///< seconds

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXPackageManagerOptions>;
    using Writer = HBXTableWriter<HBXPackageManagerOptions>;
};

/// Which packages are listed.
struct HBX_EXPORT HBXPackageManagerListOptions {
    HBXEID eid;                               ///< where
    HBXOptionalProperty<std::string> pattern; ///< of the name, with * and ?
    HBXOptionalProperty<bool> installedOnly;
    HBXOptionalProperty<bool> updatesOnly; ///< only those with a newer version

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXPackageManagerListOptions>;
    using Writer = HBXTableWriter<HBXPackageManagerListOptions>;
};

extern template class HBX_EXPORT HBXDerivedParserFactory<HBXPackage>;
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXPackageListModificationData>;

} // namespace HBX
