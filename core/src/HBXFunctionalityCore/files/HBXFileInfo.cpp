#include <HBXFunctionalityCore/files/HBXFileInfo.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kFileInfo[] = {
    member<&HBXFileInfo::name>(1026),
    member<&HBXFileInfo::size>(3056),
    optional<&HBXFileInfo::offset>(3114),
    memberAs<&HBXFileInfo::data>(HBXKind::Base64, 3115, HBXPresence::Optional),
};

} // namespace

constinit const HBXRecordTable HBXFileInfo::table =
    recordTable<HBXFileInfo>("HBXFileInfo", 404, 5047, kFileInfo);

} // namespace HBX
