#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include <boost/program_options/option.hpp>
#include <boost/program_options/options_description.hpp>
#include <boost/program_options/variables_map.hpp>

#include "Failure.h"

namespace HBX::tool {

/// What a verb was called with.
struct Arguments {
    std::vector<std::string> files;
    boost::program_options::variables_map options;

    bool has(const char* name) const { return options.count(name) != 0; }
    template <class T>
    const T& get(const char* name) const {
        return options[name].as<T>();
    }
};

/// One verb of the program.
struct Command {
    const char* area;
    const char* verb;     ///< "" for an area that is itself the verb
    const char* operands; ///< where one of them is called FILE, completion offers files
    const char* summary;  ///< a sentence
    std::size_t minFiles;
    std::size_t maxFiles;
    /// The name of an option's value is "FILE" or its few possible words, "text|binary", where completion is
    /// to offer these.
    void (*declareOptions)(boost::program_options::options_description_easy_init option);
    ExitCode (*run)(const Arguments& arguments); ///< may throw Failure
};

inline constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

std::span<const Command> backupUriCommands();
std::span<const Command> callCommands();
std::span<const Command> completionCommands();
std::span<const Command> configCommands();
std::span<const Command> envCommands();
std::span<const Command> helpCommands();
std::span<const Command> messageCommands();
std::span<const Command> optionsCommands();
std::span<const Command> recordCommands();
std::span<const Command> scheduleCommands();
std::span<const Command> sidCommands();
std::span<const Command> versionCommands();
std::span<const Command> vocCommands();

/// A call of the program as options: area, verb and operands without a key and one value each, in order, then
/// the options proper; a switch has the value "true".
/// @throws Failure  the words are no call, apart from the number of operands.
std::vector<boost::program_options::option> optionsOfCall(std::vector<std::string> words);

/// The words that give these options again.
std::vector<std::string> wordsOfCall(const std::vector<boost::program_options::option>& options);

/// Finds the verb that the command line names and runs it. @return the exit code, as a number.
int runCommandLine(std::vector<std::string> words);

} // namespace HBX::tool
