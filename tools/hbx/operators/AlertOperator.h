#pragma once

#include "Operator.h"

namespace HBX::tool {

/// "alert": alerts as texts.
extern const Operator kAlertOperator;

} // namespace HBX::tool
