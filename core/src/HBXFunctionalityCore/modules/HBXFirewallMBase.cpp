#include <HBXFunctionalityCore/modules/HBXFirewallMBase.h>

namespace HBX {

HBXFirewallMBase::~HBXFirewallMBase() = default;

} // namespace HBX
