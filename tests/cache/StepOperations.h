#pragma once

#include <vector>

#include "StepActor.h"

namespace HBX::test {

using Script = void (*)(Actor&);

/// An operation that is to be cut short, and the world in which it runs. Scripts may be null.
struct Operation {
    const char* name;
    Script before;    ///< By a bystander, which stays.
    Script doomed;    ///< Then by a process that is killed just before the operation.
    Script prepare;   ///< Then by the process that will perform the operation.
    Script meanwhile; ///< Then by the bystander.
    Script operation;
    bool repaired = false; ///< The repair of what it leaves is to be stepped through, too.
};

const std::vector<Operation>& stepOperations();

} // namespace HBX::test
