#include <HBXFunctionalityCore/environment/HBXEnvUpdater.h>

namespace HBX {

HBXEnvUpdater::~HBXEnvUpdater() = default;

int HBXEnvUpdater::sync(const std::set<HBXEID, HBXEnvIDComparator>&) { return 0; }

} // namespace HBX
