#pragma once

#include <optional>
#include <string>

#include <HBXFunctionalityCore/alert/HBXInfo.h>

namespace HBX::tool {

/// The text as people read it: every "%name%" that names a parameter replaced by that parameter's text, which
/// is filled in first; everything else as it is.
/// @return nothing when that makes more than a megabyte, which only a malicious text does.
std::optional<std::string> filledText(const HBXInfo& info);

} // namespace HBX::tool
