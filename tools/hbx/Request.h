#pragma once

#include <string>

#include "MessageFile.h"
#include "operators/Operator.h"

namespace HBX::tool {

struct Reply {
    MessagePointer message;
    Outcome failure;   ///< what the reply tells of, too
    std::string place; ///< "/data/OPERATOR/VERB" as far as the request names them
};

/// Hands a request to the operator and verb that it names. Every request gets a reply; it carries the
/// request's id, session and origin.
Reply answerRequest(const HBXMessage& request);

} // namespace HBX::tool
