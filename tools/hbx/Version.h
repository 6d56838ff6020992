#pragma once

namespace HBX::tool {

/// "0.1.0"
extern const char* const kProgramVersion;

} // namespace HBX::tool
