#pragma once

#include <string>
#include <vector>

namespace HBX::tool {

/// Lines of cells, each column as wide as its widest cell, two blanks between them, none at the end.
std::string alignColumns(const std::vector<std::vector<std::string>>& lines);

} // namespace HBX::tool
