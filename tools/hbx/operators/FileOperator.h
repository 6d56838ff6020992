#pragma once

#include "Operator.h"

namespace HBX::tool {

/// "file": the bytes of local files, in chunks.
extern const Operator kFileOperator;

} // namespace HBX::tool
