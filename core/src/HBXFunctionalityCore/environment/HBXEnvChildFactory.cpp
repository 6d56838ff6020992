#include <HBXFunctionalityCore/environment/HBXEnvChildFactory.h>

namespace HBX {

HBXEnvChildFactory::~HBXEnvChildFactory() = default;

} // namespace HBX
