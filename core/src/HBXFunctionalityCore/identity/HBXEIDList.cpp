#include <HBXFunctionalityCore/identity/HBXEIDList.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {
namespace {

constexpr HBXRow kEIDList[] = {
    list<&HBXEIDList::eids>(0, 1870),
};

} // namespace

constinit const HBXRecordTable HBXEIDList::table = recordTable<HBXEIDList>("HBXEIDList", 0, 0, kEIDList);

} // namespace HBX
