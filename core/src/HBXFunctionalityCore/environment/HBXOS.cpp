#include <HBXFunctionalityCore/environment/HBXOS.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {
namespace {

constexpr HBXRow kOS[] = {
    member<&HBXOS::platform>(1846),
    member<&HBXOS::kernel>(1279),
    member<&HBXOS::version>(1223),
    member<&HBXOS::name>(1026),
};

} // namespace

constinit const HBXRecordTable HBXOS::table = recordTable<HBXOS>("HBXOS", 0, 0, kOS);

} // namespace HBX
