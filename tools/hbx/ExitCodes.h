#pragma once

#include <span>

#include "Failure.h"

namespace HBX::tool {

struct ExitCodeRow {
    ExitCode code;
    const char* meaning;
};

/// Every exit code, ascending. docs/hbx.md has the same table.
std::span<const ExitCodeRow> exitCodes();

} // namespace HBX::tool
