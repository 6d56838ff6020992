#pragma once

#include <string>
#include <string_view>

#include "Failure.h"

namespace HBX::tool {

/// Writes to standard output, all of it or a Failure; nothing stays in a buffer.
void print(std::string_view bytes);

/// Whether standard output is a terminal whose user has nothing against colours.
bool isColourWanted();

/// Writes "hbx: LINE" to standard error.
void complain(std::string_view line);

/// Reads a file whole, whatever kind it is; "-" is standard input.
/// @throws Failure  it cannot be read, is longer than any message may be, or is empty.
std::string readInput(const std::string& path);

/// The exit code that fits an errno value of a file operation.
ExitCode exitCodeOf(int error);

} // namespace HBX::tool
