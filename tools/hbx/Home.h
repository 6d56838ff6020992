#pragma once

#include <string>

namespace HBX::tool {

/// Where the program keeps its files when it is not told otherwise: $HBX_HOME, else the folder "hbx" in the
/// user's data folder.
std::string homeFolder();

/// Makes the library look for the global configuration file and its like in that folder.
void useHome();

} // namespace HBX::tool
