#include "Command.h"

#include <cerrno>

#include <HBXCommon/HBXErrorMessage.h>

#include "Console.h"
#include "FileTurn.h"
#include "JsonText.h"
#include "Settings.h"

namespace HBX::tool {

namespace {

void declareOptions(boost::program_options::options_description_easy_init option) {
    declareJsonOption(option);
}

HBXConfiguration loadConfiguration(const std::string& file) {
    HBXConfiguration configuration;
    errno = 0;
    if (configuration.readFromFile(file) != 0) {
        throw Failure(exitCodeOf(errno), getErrorMessage());
    }
    return configuration;
}

std::string textOf(const Setting& setting) {
    return setting.path + (setting.value ? " = " + *setting.value : "") + '\n';
}

nlohmann::ordered_json toJson(const Setting& setting) {
    nlohmann::ordered_json json = {{"path", setting.path}, {"value", nullptr}};
    if (setting.value) {
        json["value"] = *setting.value;
    }
    return json;
}

ExitCode list(const Arguments& arguments) {
    const std::string path = arguments.files.size() > 1 ? arguments.files[1] : "/";
    demandAbsolute(path);
    const HBXConfiguration configuration = loadConfiguration(arguments.files[0]);
    if (!hasPath(configuration, path)) {
        throw Failure(ExitCode::NothingMatched, arguments.files[0] + ": there is no " + path);
    }
    std::string text;
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const Setting& setting : listSettings(configuration, path)) {
        text += textOf(setting);
        list.push_back(toJson(setting));
    }
    print(arguments.has("json") ? jsonText({{"settings", list}}) : text);
    return ExitCode::Ok;
}

ExitCode get(const Arguments& arguments) {
    const std::string& file = arguments.files[0];
    const std::string& path = arguments.files[1];
    demandAbsolute(path);
    const std::optional<std::string> value = readSetting(loadConfiguration(file), path);
    if (!value) {
        throw Failure(ExitCode::NothingMatched, file + ": there is no value at " + path);
    }
    print(arguments.has("json") ? jsonText(toJson({path, value})) : *value + '\n');
    return ExitCode::Ok;
}

ExitCode set(const Arguments& arguments) {
    const std::string& file = arguments.files[0];
    const std::string& path = arguments.files[1];
    demandAbsolute(path);
    const FileTurn turn(file);
    const HBXConfiguration configuration = loadConfiguration(file);
    writeSetting(configuration, path, arguments.files[2]);
    if (configuration.saveToFile(file) != 0) {
        throw Failure(ExitCode::OutputFailed, getErrorMessage());
    }
    return ExitCode::Ok;
}

constexpr Command kConfigCommands[] = {
    {"config", "list", "FILE [PATH]", "Lists the settings of a configuration, or those at and below a path.",
     1, 2, declareOptions, list},
    {"config", "get", "FILE PATH", "Prints the value of one setting.", 2, 2, declareOptions, get},
    {"config", "set", "FILE PATH VALUE",
     "Writes the value of one setting; what is missing on the way is created.", 3, 3,
     [](boost::program_options::options_description_easy_init) {}, set},
};

} // namespace

std::span<const Command> configCommands() { return kConfigCommands; }

} // namespace HBX::tool
