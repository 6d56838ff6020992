#include <HBXFunctionalityCore/directory/HBXDirEntry.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kDirEntry[] = {
    member<&HBXDirEntry::dn>(1928),
    list<&HBXDirEntry::attributes>(0, 1918),
};

} // namespace

constinit const HBXRecordTable HBXDirEntry::table =
    recordTable<HBXDirEntry>("HBXDirEntry", 407, 5071, kDirEntry);

} // namespace HBX
