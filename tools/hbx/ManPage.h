#pragma once

#include <string>

namespace HBX::tool {

/// The manual page of the program, as troff takes it.
/// @param version  of the program, for the foot of the page.
std::string manPage(const std::string& version);

} // namespace HBX::tool
