#include "Command.h"

#include <algorithm>
#include <iostream>

#include <boost/program_options/parsers.hpp>
#include <boost/program_options/positional_options.hpp>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/configuration/HBXOptionsFileSerializer.h>

#include "Areas.h"
#include "Console.h"
#include "HelpText.h"
#include "OptionList.h"

namespace HBX::tool {

namespace {

namespace po = boost::program_options;

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
        print(helpOf({&command, 1}));
        return static_cast<int>(ExitCode::Ok);
    }
    if (arguments.files.size() < command.minFiles || arguments.files.size() > command.maxFiles) {
        return refuse("wrong number of operands", usage);
    }
    return static_cast<int>(command.run(arguments));
}

bool isHelp(const std::string& word) { return word == "--help" || word == "-h"; }

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

/// Runs the area's verb, the words being what stands behind the area.
int runArea(const Area& area, std::vector<std::string> words) {
    if (isVerbItself(area)) {
        return run(area.commands().front(), words);
    }
    if (words.empty()) {
        return refuse("which verb?", verbsOf(area));
    }
    if (isHelp(words[0])) {
        print(helpOf(area.commands()));
        return static_cast<int>(ExitCode::Ok);
    }
    const Command* command = findVerb(area, words[0]);
    if (command == nullptr) {
        return refuse("there is no verb \"" + words[0] + '"', verbsOf(area));
    }
    words.erase(words.begin());
    return run(*command, words);
}

int runCall(std::vector<std::string> words) {
    if (words.empty()) {
        return refuse("which area?", overview());
    }
    if (isHelp(words[0])) {
        words[0] = "help";
    } else if (words[0] == "--version") {
        words[0] = "version";
    }
    const Area* area = findArea(words[0]);
    if (area == nullptr) {
        return refuse("there is no area \"" + words[0] + '"', overview());
    }
    words.erase(words.begin());
    return runArea(*area, std::move(words));
}

} // namespace

std::vector<po::option> optionsOfCall(std::vector<std::string> words) try {
    const FoundCommand found = findCommand(words);
    if (found.command == nullptr) {
        throw Failure(ExitCode::Usage, "these words name no area and verb");
    }
    const auto rest = words.begin() + static_cast<std::ptrdiff_t>(found.words);
    const ParsedCall call(*found.command, {rest, words.end()});

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
    const Command* command = findCommand(words).command;
    const po::options_description description =
        command != nullptr ? optionsOf(*command) : po::options_description();
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
