#include <HBXFunctionalityCore/modules/HBXPkgMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kPackage[] = {
    member<&HBXPackage::name>(1026),         member<&HBXPackage::version>(1223),
    member<&HBXPackage::architecture>(1276), member<&HBXPackage::summary>(3219),
    member<&HBXPackage::state>(1421),
};

constexpr HBXRow kPackageLinux[] = {
    member<&HBXPackageLinux::release>(3220),
    member<&HBXPackageLinux::epoch>(3221),
    member<&HBXPackageLinux::size>(3056),
    list<&HBXPackageLinux::dependencies>(3222, 3223),
};

constexpr HBXRow kPackageRpm[] = {
    member<&HBXPackageRpm::group>(3224),
    member<&HBXPackageRpm::vendor>(3144),
    member<&HBXPackageRpm::signature>(3225),
};

constexpr HBXRow kPackageDeb[] = {
    member<&HBXPackageDeb::section>(3226),
    member<&HBXPackageDeb::priority>(3227),
    member<&HBXPackageDeb::maintainer>(3228),
};

constexpr HBXRow kInstallationPackage[] = {
    member<&HBXInstallationPackage::id>(1010),   polymorphic<&HBXInstallationPackage::package>(3229),
    member<&HBXInstallationPackage::path>(3074), member<&HBXInstallationPackage::checksum>(3230),
    member<&HBXInstallationPackage::size>(3056), member<&HBXInstallationPackage::os>(1277),
};

constexpr HBXRow kPackageListModificationData[] = {
    member<&HBXPackageListModificationData::eid>(1870),
    list<&HBXPackageListModificationData::installed>(3231, 3229),
    list<&HBXPackageListModificationData::removed>(3232, 3229),
};

constexpr HBXRow kPackageManagerOptions[] = {
    member<&HBXPackageManagerOptions::eid>(1870),     list<&HBXPackageManagerOptions::packages>(3233, 3234),
    member<&HBXPackageManagerOptions::force>(3080),   member<&HBXPackageManagerOptions::dryRun>(3235),
    member<&HBXPackageManagerOptions::timeout>(3047),
};

constexpr HBXRow kPackageManagerListOptions[] = {
    member<&HBXPackageManagerListOptions::eid>(1870),
    member<&HBXPackageManagerListOptions::pattern>(3076),
    member<&HBXPackageManagerListOptions::installedOnly>(3236),
    member<&HBXPackageManagerListOptions::updatesOnly>(3237),
};

} // namespace

constinit const HBXRecordTable HBXPackage::table = recordTable<HBXPackage>("HBXPackage", 413, 5101, kPackage);
constinit const HBXRecordTable HBXPackageLinux::table =
    recordTable<HBXPackageLinux, HBXPackage>("HBXPackageLinux", 413, 5102, kPackageLinux);
constinit const HBXRecordTable HBXPackageRpm::table =
    recordTable<HBXPackageRpm, HBXPackageLinux>("HBXPackageRpm", 413, 5103, kPackageRpm);
constinit const HBXRecordTable HBXPackageDeb::table =
    recordTable<HBXPackageDeb, HBXPackageLinux>("HBXPackageDeb", 413, 5104, kPackageDeb);
constinit const HBXRecordTable HBXInstallationPackage::table =
    recordTable<HBXInstallationPackage>("HBXInstallationPackage", 413, 5105, kInstallationPackage);
constinit const HBXRecordTable HBXPackageListModificationData::table =
    recordTable<HBXPackageListModificationData>("HBXPackageListModificationData", 413, 5106,
                                                kPackageListModificationData);
constinit const HBXRecordTable HBXPackageManagerOptions::table =
    recordTable<HBXPackageManagerOptions>("HBXPackageManagerOptions", 413, 5107, kPackageManagerOptions);
constinit const HBXRecordTable HBXPackageManagerListOptions::table =
    recordTable<HBXPackageManagerListOptions>("HBXPackageManagerListOptions", 413, 5108,
                                              kPackageManagerListOptions);

HBXPkgMBase::~HBXPkgMBase() = default;

} // namespace HBX
