#include <HBXFunctionalityCore/directory/HBXDirControl.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kDirControl[] = {
    member<&HBXDirControl::oid>(1007),
    member<&HBXDirControl::critical>(1921),
    member<&HBXDirControl::value>(1018),
};

constexpr HBXRow kDirVlvControl[] = {
    member<&HBXDirVlvControl::beforeCount>(1923),
    member<&HBXDirVlvControl::afterCount>(1924),
    member<&HBXDirVlvControl::offset>(1087),
    member<&HBXDirVlvControl::contentCount>(1259),
};

constexpr HBXRow kDirSortControl[] = {
    member<&HBXDirSortControl::attribute>(1926),
    member<&HBXDirSortControl::reverse>(1927),
};

constexpr HBXRow kDirControlList[] = {
    list<&HBXDirControlList::controls>(0, 3490),
};

} // namespace

constinit const HBXRecordTable HBXDirControl::table =
    recordTable<HBXDirControl>("HBXDirControl", 407, 5068, kDirControl);
constinit const HBXRecordTable HBXDirSortControl::table =
    recordTable<HBXDirSortControl, HBXDirControl>("HBXDirSortControl", 407, 5069, kDirSortControl);
constinit const HBXRecordTable HBXDirVlvControl::table =
    recordTable<HBXDirVlvControl, HBXDirControl>("HBXDirVlvControl", 407, 5070, kDirVlvControl);
constinit const HBXRecordTable HBXDirControlList::table =
    recordTable<HBXDirControlList>("HBXDirControlList", 0, 0, kDirControlList);

HBXDirControl::~HBXDirControl() = default;

} // namespace HBX
