#include <HBXFunctionalityCore/modules/HBXDirMBase.h>

namespace HBX {

HBXDirMBase::~HBXDirMBase() = default;

} // namespace HBX
