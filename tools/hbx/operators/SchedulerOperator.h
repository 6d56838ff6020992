#pragma once

#include "Operator.h"

namespace HBX::tool {

/// "schedule": when triggers run.
extern const Operator kSchedulerOperator;

} // namespace HBX::tool
