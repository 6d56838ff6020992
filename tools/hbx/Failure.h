#pragma once

#include <stdexcept>
#include <string>

namespace HBX::tool {

/// What the program ends with; scripts rely on the numbers.
enum class ExitCode {
    Ok = 0,
    NothingMatched = 1, ///< also: two messages differ
    Usage = 2,
    InvalidInput = 3,
    LockedOrTimedOut = 4,
    Damaged = 5,
    NotPermitted = 6,
    OutputFailed = 7,
};

/// Ends a verb, or its work on one file: the line that standard error gets (without "hbx: "), and the exit
/// code.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode exitCode, const std::string& line) : std::runtime_error(line), code(exitCode) {}

    ExitCode code;
};

} // namespace HBX::tool
