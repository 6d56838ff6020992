#pragma once

#include <HBXCommon/HBXExport.h>
#include <HBXCommon/HBXLog.h>

#include <functional>

namespace HBX {

/// Ends the program because one of our own invariants is broken; never called for what input can cause. Logs
/// the place at level 1 and ends by std::abort. Callers must not be noexcept: a test hook throws through
/// them.
/// @param module    library, such as "HBXFunctionalityCore".
/// @param file      path of the source without suffix.
/// @param line      line that the message names.
/// @param function  qualified name of the function, without template arguments.
/// @param functionShown  the name as the line shows it; usually the same.
[[noreturn]] HBX_EXPORT void abort(const char* module, const char* file, int line, const char* function,
                                   const char* functionShown);

/// Called in place of the ending, after the place is logged. It must not return but throw; when it returns,
/// the program ends all the same.
using HBXAbortHook = std::function<void(const HBXSourcePlace&)>;

/// Replaces the hook of the process and returns the previous one; an empty hook restores the ending.
HBX_EXPORT HBXAbortHook setAbortHook(HBXAbortHook hook);

} // namespace HBX
