#include <HBXFunctionalityCore/modules/HBXDataStorageMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kDSLocation[] = {
    member<&HBXDSLocation::id>(1010),          member<&HBXDSLocation::path>(3074),
    member<&HBXDSLocation::server>(1687),      member<&HBXDSLocation::share>(3128),
    member<&HBXDSLocation::credentials>(3022),
};

constexpr HBXRow kDSConfiguration[] = {
    member<&HBXDSConfiguration::location>(3057),    member<&HBXDSConfiguration::name>(1026),
    member<&HBXDSConfiguration::description>(1496), member<&HBXDSConfiguration::quota>(3129),
    member<&HBXDSConfiguration::readOnly>(3130),
};

constexpr HBXRow kDSObjectInfo[] = {
    member<&HBXDSObjectInfo::name>(1026),      member<&HBXDSObjectInfo::path>(3074),
    member<&HBXDSObjectInfo::size>(3056),      memberAs<&HBXDSObjectInfo::time>(HBXKind::Time, 1004),
    member<&HBXDSObjectInfo::directory>(3131), member<&HBXDSObjectInfo::owner>(3132),
};

constexpr HBXRow kFileShare[] = {
    member<&HBXFileShare::name>(1026),        member<&HBXFileShare::path>(3074),
    member<&HBXFileShare::description>(1496), member<&HBXFileShare::readOnly>(3130),
    list<&HBXFileShare::users>(3133, 3107),
};

constexpr HBXRow kDiskImage[] = {
    member<&HBXDiskImage::id>(1010),       member<&HBXDiskImage::path>(3074),
    member<&HBXDiskImage::size>(3056),     member<&HBXDiskImage::format>(3134),
    member<&HBXDiskImage::usedSize>(3097), member<&HBXDiskImage::parentId>(3135),
};

constexpr HBXRow kImageInfo[] = {
    member<&HBXImageInfo::id>(1010),     member<&HBXImageInfo::name>(1026),
    member<&HBXImageInfo::format>(3134), member<&HBXImageInfo::os>(1277),
    member<&HBXImageInfo::size>(3056),   list<&HBXImageInfo::images>(3136, 3137),
};

} // namespace

constinit const HBXRecordTable HBXDSLocation::table =
    recordTable<HBXDSLocation>("HBXDSLocation", 405, 5053, kDSLocation);
constinit const HBXRecordTable HBXDSConfiguration::table =
    recordTable<HBXDSConfiguration>("HBXDSConfiguration", 405, 5054, kDSConfiguration);
constinit const HBXRecordTable HBXDSObjectInfo::table =
    recordTable<HBXDSObjectInfo>("HBXDSObjectInfo", 405, 5055, kDSObjectInfo);
constinit const HBXRecordTable HBXFileShare::table =
    recordTable<HBXFileShare>("HBXFileShare", 405, 5056, kFileShare);
constinit const HBXRecordTable HBXDiskImage::table =
    recordTable<HBXDiskImage>("HBXDiskImage", 405, 5057, kDiskImage);
constinit const HBXRecordTable HBXImageInfo::table =
    recordTable<HBXImageInfo>("HBXImageInfo", 405, 5058, kImageInfo);

HBXDataStorageMBase::~HBXDataStorageMBase() = default;

} // namespace HBX
