#include "Command.h"

#include "Console.h"
#include "HelpText.h"
#include "ManPage.h"
#include "Version.h"

namespace HBX::tool {

namespace {

std::string helpOn(const std::string& topic, const std::string& verb) {
    const Area* area = findArea(topic);
    if (area == nullptr) {
        throw Failure(ExitCode::Usage, "there is no area \"" + topic + "\"; hbx help lists them");
    }
    if (verb.empty()) {
        return helpOf(area->commands());
    }
    const Command* command = findVerb(*area, verb);
    if (command == nullptr) {
        throw Failure(ExitCode::Usage,
                      "there is no verb \"" + verb + "\"; hbx help " + topic + " lists them");
    }
    return helpOf({command, 1});
}

ExitCode help(const Arguments& arguments) {
    const std::string topic = arguments.files.empty() ? "" : arguments.files[0];
    if (arguments.has("man")) {
        print(manPage(kProgramVersion));
    } else if (topic.empty()) {
        print(overview());
    } else if (topic == kExitCodesTopic) {
        print(exitCodesText());
    } else {
        print(helpOn(topic, arguments.files.size() > 1 ? arguments.files[1] : ""));
    }
    return ExitCode::Ok;
}

constexpr Command kHelpCommands[] = {
    {"help", "", "[AREA [VERB] | exit-codes]",
     "Explains the areas, one of them, one verb, or the exit codes.", 0, 2,
     [](boost::program_options::options_description_easy_init option) {
         option("man", "the whole as a manual page, in troff");
     },
     help},
};

} // namespace

std::span<const Command> helpCommands() { return kHelpCommands; }

} // namespace HBX::tool
