#pragma once

#include "Operator.h"

namespace HBX::tool {

/// "clock": points and spans of time.
extern const Operator kTimeOperator;

} // namespace HBX::tool
