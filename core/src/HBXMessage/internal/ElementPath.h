#pragma once

#include <string>

#include <HBXMessage/internal/Tree.h>

namespace HBX::internal {

/// How error messages show one element: its name, or its number when it has none. Names come from strangers:
/// what could break a line of a log or look like another path is shown as "?", and long names are cut.
std::string shownName(const NameList& names, Ref id);

/// Where an element stands, for error messages: the names from below the root down to it, "/a/b/c"; "/" for
/// the root.
std::string elementPath(const Tree& tree, NodeIndex index);

} // namespace HBX::internal
