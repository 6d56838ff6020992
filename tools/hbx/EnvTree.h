#pragma once

#include <string>
#include <vector>

#include "EnvTable.h"

namespace HBX::tool {

/// An environment at its place below its parent.
struct TreeRow {
    /// Why it stands where it does.
    enum class Why {
        Place,  ///< below its parent, or at the top without one
        Orphan, ///< at the top: its parent is not among the rows
        Circle, ///< at the top: its parents lead back to it
    };

    EnvRow row;
    std::string branch; ///< what a line of the tree has before the title: "│  └─ "
    Why why;
};

/// Every row once, children in their order behind their parents. A row whose parent is not among them stands
/// at the top; so does one row of each circle of parents.
std::vector<TreeRow> treeOf(const std::vector<EnvRow>& rows);

} // namespace HBX::tool
