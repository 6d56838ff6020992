#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Outline.h"

namespace HBX::tool {

/// One place where two messages differ.
struct Difference {
    enum class Kind { Removed, Added, Changed };

    Kind kind;
    std::string path; ///< "/data/run[2]": the second "run" of several
    std::string what; ///< of a changed element: "value", or the name of an attribute
    std::optional<std::string> left;
    std::optional<std::string> right;
};

/// What turns the left element into the right one, in document order. The order of elements counts.
std::vector<Difference> differencesOf(const Outline& left, const Outline& right);

/// One line: "- PATH", "+ PATH", or "~ PATH: WHAT LEFT -> RIGHT".
std::string describe(const Difference& difference);

nlohmann::ordered_json toJson(const Difference& difference);

} // namespace HBX::tool
