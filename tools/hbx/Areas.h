#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Command.h"

namespace HBX::tool {

/// What the program works on, or what it does when the area is itself the verb.
struct Area {
    const char* name;
    const char* summary;
    std::span<const Command> (*commands)();
};

/// In the order of their names, those about the program itself at the end.
std::span<const Area> areas();

/// Null when there is none.
const Area* findArea(std::string_view name);

bool isVerbItself(const Area& area);

/// The command of an area and a verb; null when there is none.
const Command* findVerb(const Area& area, std::string_view verb);

struct FoundCommand {
    const Command* command; ///< null when the words name none
    std::size_t words;      ///< how many of them name it
};
/// The command that the first words name.
FoundCommand findCommand(const std::vector<std::string>& words);

/// "hbx env list", followed by "[OPTIONS]" and operands.
std::string nameOf(const Command& command);
std::string callOf(const Command& command);

} // namespace HBX::tool
