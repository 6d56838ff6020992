#pragma once

#include "Environment.h"
#include "Way.h"

namespace HBX::bench {

/// From the plain record into pugixml's tree, to text on one line, and back through a tree.
std::unique_ptr<Way<Environment>> makePugixml();

} // namespace HBX::bench
