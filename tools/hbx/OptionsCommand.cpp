#include "Command.h"

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/configuration/HBXOptionsFileSerializer.h>

#include "Console.h"

namespace HBX::tool {

namespace {

ExitCode save(const Arguments& arguments) {
    auto options = optionsOfCall({arguments.files.begin() + 1, arguments.files.end()});
    if (HBXOptionsFileSerializer(arguments.files[0]).write(options) != 0) {
        throw Failure(ExitCode::OutputFailed, getErrorMessage());
    }
    return ExitCode::Ok;
}

constexpr Command kOptionsCommands[] = {
    {"options", "save", "FILE -- AREA VERB ARGS...",
     "Keeps a call in a file; \"hbx --options FILE\" replays it, with more arguments behind it when given.",
     2, kAnyNumber, [](boost::program_options::options_description_easy_init) {}, save},
};

} // namespace

std::span<const Command> optionsCommands() { return kOptionsCommands; }

} // namespace HBX::tool
