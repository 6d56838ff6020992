#include "Areas.h"

#include <algorithm>
#include <iterator>

namespace HBX::tool {

namespace {

constexpr Area kAreas[] = {
    {"backup-uri", "Take backup references apart and make them.", backupUriCommands},
    {"call", "Run request messages and print their replies.", callCommands},
    {"config", "Read and write configuration files.", configCommands},
    {"env", "List, change, check and watch the cache of environments.", envCommands},
    {"message", "Show, convert, check and compare messages.", messageCommands},
    {"options", "Keep calls of this program in files.", optionsCommands},
    {"record", "Describe record types, make and check records.", recordCommands},
    {"schedule", "Say when a trigger runs, and why then.", scheduleCommands},
    {"sid", "Take security identifiers apart and make them.", sidCommands},
    {"voc", "Ask what an installation offers.", vocCommands},
    {"completion", "Print what makes a shell complete calls.", completionCommands},
    {"help", "Explain areas, verbs and exit codes.", helpCommands},
    {"version", "Print the versions of the program and its formats.", versionCommands},
};

} // namespace

std::span<const Area> areas() { return kAreas; }

const Area* findArea(std::string_view name) {
    const auto* found = std::find_if(std::begin(kAreas), std::end(kAreas),
                                     [name](const Area& area) { return area.name == name; });
    return found == std::end(kAreas) ? nullptr : found;
}

bool isVerbItself(const Area& area) { return *area.commands().front().verb == '\0'; }

const Command* findVerb(const Area& area, std::string_view verb) {
    const std::span<const Command> commands = area.commands();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [verb](const Command& command) { return command.verb == verb; });
    return found == commands.end() ? nullptr : &*found;
}

FoundCommand findCommand(const std::vector<std::string>& words) {
    const Area* area = words.empty() ? nullptr : findArea(words[0]);
    if (area == nullptr) {
        return {nullptr, 0};
    }
    if (isVerbItself(*area)) {
        return {&area->commands().front(), 1};
    }
    return {words.size() > 1 ? findVerb(*area, words[1]) : nullptr, 2};
}

std::string nameOf(const Command& command) {
    const std::string verb = *command.verb == '\0' ? "" : std::string(" ") + command.verb;
    return std::string("hbx ") + command.area + verb;
}

std::string callOf(const Command& command) {
    const std::string operands = *command.operands == '\0' ? "" : std::string(" ") + command.operands;
    return nameOf(command) + " [OPTIONS]" + operands;
}

} // namespace HBX::tool
