#pragma once

#include "Environment.h"
#include "Way.h"

namespace HBX::bench {

/// From the plain record into Cap'n Proto's builders, to one flat array, and back from there without a copy.
std::unique_ptr<Way<Environment>> makeCapnProto();

} // namespace HBX::bench
