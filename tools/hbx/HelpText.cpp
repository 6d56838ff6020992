#include "HelpText.h"

#include <sstream>

#include "Columns.h"
#include "ExitCodes.h"
#include "OptionList.h"

namespace HBX::tool {

namespace {

constexpr VariableRow kVariables[] = {
    {"HBX_HOME", "The folder of agent.xml, environments.cache and what else is not named in a call."},
    {"XDG_DATA_HOME", "Without HBX_HOME that folder is \"hbx\" in this one, else in ~/.local/share."},
    {"NO_COLOR", "When it is not empty, nothing is coloured on a terminal."},
    {"TZ", "The zone of local times."},
};

} // namespace

std::span<const VariableRow> variables() { return kVariables; }

std::string overview() {
    std::vector<std::vector<std::string>> lines;
    for (const Area& area : areas()) {
        lines.push_back({std::string("  ") + area.name, area.summary});
    }
    return "usage: hbx AREA VERB [OPTIONS] ARGS...\n"
           "       hbx --options FILE [MORE...]\n\n" +
           alignColumns(lines) +
           "\nThe verbs of an area: hbx help AREA. One of them: hbx help AREA VERB.\n"
           "What exit codes mean: hbx help exit-codes.\n";
}

std::string verbsOf(const Area& area) {
    std::string text;
    for (const Command& command : area.commands()) {
        text += "usage: " + callOf(command) + "\n  " + command.summary + '\n';
    }
    return text + "Options: hbx help " + area.name + '\n';
}

std::string helpOf(std::span<const Command> commands) {
    std::ostringstream text;
    for (const Command& command : commands) {
        text << "usage: " << callOf(command) << "\n  " << command.summary << '\n'
             << optionsOf(command) << '\n';
    }
    return text.str();
}

std::string exitCodesText() {
    std::vector<std::vector<std::string>> lines;
    for (const ExitCodeRow& row : exitCodes()) {
        lines.push_back({std::to_string(static_cast<int>(row.code)), row.meaning});
    }
    return alignColumns(lines);
}

} // namespace HBX::tool
