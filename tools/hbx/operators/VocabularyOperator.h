#pragma once

#include "Operator.h"

namespace HBX::tool {

/// "voc": what vocabularies offer, those that the request carries or this agent's own.
extern const Operator kVocabularyOperator;

} // namespace HBX::tool
