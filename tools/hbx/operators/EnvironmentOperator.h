#pragma once

#include "Operator.h"

namespace HBX::tool {

/// "environments": the environments in the cache.
extern const Operator kEnvironmentOperator;

} // namespace HBX::tool
