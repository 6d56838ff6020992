#pragma once

#include "Operator.h"

namespace HBX::tool {

/// "config": the settings of the global configuration file.
extern const Operator kConfigurationOperator;

} // namespace HBX::tool
