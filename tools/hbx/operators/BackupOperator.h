#pragma once

#include "Operator.h"

namespace HBX::tool {

/// "backup": references to backups, names of their types.
extern const Operator kBackupOperator;

} // namespace HBX::tool
