#include <HBXFunctionalityCore/alert/HBXEventData.h>

namespace HBX {

constinit const HBXRecordTable HBXEventData::table = recordTable<HBXEventData>("HBXEventData", 401, 5001);

} // namespace HBX
