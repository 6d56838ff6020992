#include "Command.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <sstream>

#include <boost/program_options/parsers.hpp>
#include <boost/program_options/positional_options.hpp>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/configuration/HBXOptionsFileSerializer.h>

#include "Console.h"

namespace HBX::tool {

namespace {

namespace po = boost::program_options;

std::vector<Command> allCommands() {
    std::vector<Command> commands;
    for (const auto& area :
         {backupUriCommands(), callCommands(), configCommands(), envCommands(), messageCommands(),
          optionsCommands(), recordCommands(), scheduleCommands(), sidCommands(), vocCommands()}) {
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
    text << "usage: hbx AREA VERB [OPTIONS] FILE...\n       hbx --options FILE [MORE...]\n\n";
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

constexpr const char* kOperand = "file"; ///< the key that operands have while they are parsed

/// What one call holds; keeps its description because parsed options refer to it.
struct ParsedCall {
    ParsedCall(const Command& command, const std::vector<std::string>& words)
        : description(optionsOf(command)) {
        description.add_options()(kOperand, po::value(&arguments.files));
        po::positional_options_description positions;
        positions.add(kOperand, -1);
        namespace style = po::command_line_style;
        const po::parsed_options parsed = po::command_line_parser(words)
                                              .options(description)
                                              .positional(positions)
                                              .style(style::unix_style & ~style::allow_guessing)
                                              .run();
        po::store(parsed, arguments.options);
        po::notify(arguments.options);
        options = parsed.options;
    }
    ParsedCall(const ParsedCall&) = delete;
    ParsedCall& operator=(const ParsedCall&) = delete;

    Arguments arguments;
    po::options_description description;
    std::vector<po::option> options;
};

int run(const Command& command, const std::vector<std::string>& words) {
    const std::string usage = "usage: " + callOf(command) + "\n";
    Arguments arguments;
    try {
        arguments = ParsedCall(command, words).arguments;
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

/// The command that the first words name, and how many words that takes.
std::optional<std::pair<Command, std::size_t>> findCommand(const std::vector<std::string>& words) {
    for (const Command& command : commandsOf(words.empty() ? "" : words[0])) {
        if (*command.verb == '\0') {
            return std::pair(command, std::size_t{1});
        }
        if (words.size() > 1 && words[1] == command.verb) {
            return std::pair(command, std::size_t{2});
        }
    }
    return std::nullopt;
}

bool isSwitch(const po::options_description& description, const std::string& key) {
    const po::option_description* option = description.find_nothrow(key, false);
    return option != nullptr && option->semantic()->max_tokens() == 0;
}

po::option operandOption(const std::string& word) {
    if (word.size() > 1 && word[0] == '-') {
        throw Failure(ExitCode::Usage, "an operand that looks like an option cannot be kept: " + word);
    }
    po::option option;
    option.value = {word};
    return option;
}

/// "--options FILE MORE..." gives the call that is kept in the file, with more words behind it.
std::vector<std::string> replayed(const std::vector<std::string>& words) {
    if (words.size() < 2) {
        throw Failure(ExitCode::Usage, "--options needs a file");
    }
    std::vector<po::option> options;
    if (HBXOptionsFileSerializer(words[1]).read(options) != 0) {
        throw Failure(ExitCode::InvalidInput, getErrorMessage());
    }
    std::vector<std::string> call = wordsOfCall(options);
    call.insert(call.end(), words.begin() + 2, words.end());
    return call;
}

int runCall(std::vector<std::string> words) {
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

} // namespace

std::vector<po::option> optionsOfCall(std::vector<std::string> words) try {
    const auto found = findCommand(words);
    if (!found) {
        throw Failure(ExitCode::Usage, "these words name no area and verb");
    }
    const auto& [command, count] = *found;
    const auto rest = words.begin() + static_cast<std::ptrdiff_t>(count);
    const ParsedCall call(command, {rest, words.end()});

    words.erase(rest, words.end());
    words.insert(words.end(), call.arguments.files.begin(), call.arguments.files.end());
    std::vector<po::option> options;
    std::transform(words.begin(), words.end(), std::back_inserter(options), operandOption);
    for (po::option option : call.options) {
        if (option.string_key != kOperand) {
            if (option.value.empty()) {
                option.value = {"true"};
            }
            options.push_back(std::move(option));
        }
    }
    return options;
} catch (const po::error& error) {
    throw Failure(ExitCode::Usage, error.what());
}

std::vector<std::string> wordsOfCall(const std::vector<po::option>& options) {
    std::vector<std::string> words;
    for (const po::option& option : options) {
        if (option.string_key.empty()) {
            words.insert(words.end(), option.value.begin(), option.value.end());
        }
    }
    const auto command = findCommand(words);
    const po::options_description description =
        command ? optionsOf(command->first) : po::options_description();
    for (const po::option& option : options) {
        if (option.string_key.empty()) {
            continue;
        }
        const std::string word = "--" + option.string_key;
        if (isSwitch(description, option.string_key)) {
            words.push_back(word);
            continue;
        }
        for (const std::string& value : option.value) {
            words.emplace_back(word).append("=").append(value);
        }
    }
    return words;
}

int runCommandLine(std::vector<std::string> words) {
    const bool replays = !words.empty() && words[0] == "--options";
    return runCall(replays ? replayed(words) : std::move(words));
}

} // namespace HBX::tool
