#include <HBXCore/HBXMappedMemoryManager.h>

namespace HBX {

HBXMappedMemoryManager::~HBXMappedMemoryManager() = default;

} // namespace HBX
