#include "Command.h"

#include <algorithm>
#include <iostream>
#include <sstream>

#include <boost/program_options/parsers.hpp>
#include <boost/program_options/positional_options.hpp>

#include "Console.h"

namespace HBX::tool {

namespace {

namespace po = boost::program_options;

std::vector<Command> allCommands() {
    std::vector<Command> commands;
    for (const auto& area : {callCommands(), envCommands(), messageCommands(), scheduleCommands()}) {
        commands.insert(commands.end(), area.begin(), area.end());
    }
    return commands;
}

std::vector<Command> commandsOf(const std::string& area) {
    std::vector<Command> commands = allCommands();
    std::erase_if(commands, [&](const Command& command) { return command.area != area; });
    return commands;
}

std::string callOf(const Command& command) {
    const std::string verb = *command.verb == '\0' ? "" : std::string(" ") + command.verb;
    return std::string("hbx ") + command.area + verb + " [OPTIONS] " + command.operands;
}

po::options_description optionsOf(const Command& command) {
    po::options_description options;
    command.declareOptions(options.add_options());
    options.add_options()("help", "show this help");
    return options;
}

std::string overview() {
    std::ostringstream text;
    text << "usage: hbx AREA VERB [OPTIONS] FILE...\n\n";
    for (const Command& command : allCommands()) {
        text << "  " << callOf(command) << "\n      " << command.summary << "\n";
    }
    text << "\nFILE is a message in text or binary form, \"-\" is standard input. More: hbx AREA --help\n";
    return text.str();
}

std::string helpOf(const std::vector<Command>& commands) {
    std::ostringstream text;
    for (const Command& command : commands) {
        text << "usage: " << callOf(command) << "\n  " << command.summary << "\n"
             << optionsOf(command) << "\n";
    }
    return text.str();
}

/// A wrong call gets its reason and how to call, on standard error.
int refuse(const std::string& reason, const std::string& usage) {
    complain(reason);
    std::cerr << usage;
    return static_cast<int>(ExitCode::Usage);
}

Arguments parse(const Command& command, const std::vector<std::string>& words) {
    po::options_description options = optionsOf(command);
    Arguments arguments;
    options.add_options()("file", po::value(&arguments.files));
    po::positional_options_description positions;
    positions.add("file", -1);
    namespace style = po::command_line_style;
    po::store(po::command_line_parser(words)
                  .options(options)
                  .positional(positions)
                  .style(style::unix_style & ~style::allow_guessing)
                  .run(),
              arguments.options);
    po::notify(arguments.options);
    return arguments;
}

int run(const Command& command, const std::vector<std::string>& words) {
    const std::string usage = "usage: " + callOf(command) + "\n";
    Arguments arguments;
    try {
        arguments = parse(command, words);
    } catch (const po::error& error) {
        return refuse(error.what(), usage);
    }
    if (arguments.has("help")) {
        print(helpOf({command}));
        return static_cast<int>(ExitCode::Ok);
    }
    if (arguments.files.size() < command.minFiles || arguments.files.size() > command.maxFiles) {
        return refuse("wrong number of files", usage);
    }
    return static_cast<int>(command.run(arguments));
}

bool isHelp(const std::string& word) { return word == "--help" || word == "-h"; }

} // namespace

int runCommandLine(std::vector<std::string> words) {
    if (words.empty()) {
        return refuse("which area?", overview());
    }
    if (isHelp(words[0])) {
        print(overview());
        return static_cast<int>(ExitCode::Ok);
    }
    const std::vector<Command> commands = commandsOf(words[0]);
    if (commands.empty()) {
        return refuse("there is no area \"" + words[0] + '"', overview());
    }
    words.erase(words.begin());
    if (*commands[0].verb == '\0') {
        return run(commands[0], words);
    }
    if (!words.empty() && isHelp(words[0])) {
        print(helpOf(commands));
        return static_cast<int>(ExitCode::Ok);
    }
    const auto command = std::find_if(commands.begin(), commands.end(), [&](const Command& candidate) {
        return !words.empty() && words[0] == candidate.verb;
    });
    if (command == commands.end()) {
        return refuse(words.empty() ? "which verb?" : "there is no verb \"" + words[0] + '"',
                      helpOf(commands));
    }
    words.erase(words.begin());
    return run(*command, words);
}

} // namespace HBX::tool
