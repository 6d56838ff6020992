#pragma once

#include "Operator.h"

namespace HBX::tool {

/// "security": identifiers of principals, and what tokens may do.
extern const Operator kSecurityOperator;

} // namespace HBX::tool
