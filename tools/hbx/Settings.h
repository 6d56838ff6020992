#pragma once

#include <optional>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>

namespace HBX::tool {

/// One setting of a configuration. Groups are told only by the paths of what is in them.
struct Setting {
    std::string path;
    std::optional<std::string> value; ///< none for an element that has neither a value nor children
};

/// The settings at and below a path ("/" for all), in the order of the tree; none when there is no such path.
/// Elements without a name, which no path leads to, are left out.
std::vector<Setting> listSettings(const HBXConfiguration& configuration, const std::string& path);

bool hasPath(const HBXConfiguration& configuration, const std::string& path);

/// None when the path leads to no value.
std::optional<std::string> readSetting(const HBXConfiguration& configuration, const std::string& path);

/// Creates what is missing on the way. @throws Failure  the path is none, or the file lacks the top element.
void writeSetting(const HBXConfiguration& configuration, const std::string& path, const std::string& value);

/// Throws a usage Failure unless the path is absolute.
void demandAbsolute(const std::string& path);

} // namespace HBX::tool
