#pragma once

#include <HBXCommon/HBXExport.h>
#include <HBXFunctionalityCore/firewall/HBXFirewallRule.h>

namespace HBX {

/// The agent's module for packet filters.
class HBX_EXPORT HBXFirewallMBase {
public:
    virtual ~HBXFirewallMBase();
};

} // namespace HBX
