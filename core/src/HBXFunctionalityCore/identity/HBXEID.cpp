#include <HBXFunctionalityCore/identity/HBXEID.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

constinit const HBXRecordTable HBXEID::table = recordTable<HBXEID>("HBXEID", 0, 0);

} // namespace HBX
