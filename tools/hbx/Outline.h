#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include <HBXMessage/HBXMessageIterator.h>

namespace HBX::tool {

/// An element as its text form shows it: tag, attributes (the "hbx:" marks among them), value, children; so
/// nothing that a message can hold is left out. The envelope is the first child of a message.
struct Outline {
    std::string tag;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::optional<std::string> value;
    std::vector<Outline> children;
    std::size_t hash = 0; ///< of all the above

    friend bool operator==(const Outline&, const Outline&) = default;
};

/// The outline of the element under a cursor.
/// @param path  what a failure names: a message may be too big for its text form.
Outline outlineOf(const std::string& path, const HBXMessageIterator& element);

/// {"name", "attributes", "value", "children"}, each where there is one.
nlohmann::ordered_json toJson(const Outline& outline);

} // namespace HBX::tool
