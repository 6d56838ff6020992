#pragma once

#include <span>
#include <string>

#include "Areas.h"

namespace HBX::tool {

inline constexpr const char* kPurpose = "looks into the data of a management agent for virtual environments";
inline constexpr const char* kFiles = "FILE is a message in text or binary form, told apart by its content; "
                                      "\"-\" is standard input. Results go "
                                      "to standard output, each failure is one line on standard error. "
                                      "--json prints one document for programs.";

/// A variable that the program obeys.
struct VariableRow {
    const char* name;
    const char* meaning;
};
std::span<const VariableRow> variables();

/// The areas, one line each, and how to ask for more.
std::string overview();

/// The verbs of an area, one line each.
std::string verbsOf(const Area& area);

/// How these are called, what they do, and their options.
std::string helpOf(std::span<const Command> commands);

/// What "help" explains besides the areas.
inline constexpr const char* kExitCodesTopic = "exit-codes";

/// The exit codes, one line each: number, two blanks, meaning.
std::string exitCodesText();

} // namespace HBX::tool
