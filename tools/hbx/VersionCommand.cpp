#include "Command.h"

#include <HBXCore/HBXSharedMemoryManager.h>
#include <HBXMessage/HBXMessageForms.h>

#include "Columns.h"
#include "Console.h"
#include "JsonText.h"
#include "Version.h"

namespace HBX::tool {

const char* const kProgramVersion = HBX_PROGRAM_VERSION;

namespace {

ExitCode version(const Arguments& arguments) {
    const std::string text(kMessageTextVersion);
    const struct {
        const char* format;
        const char* key;
        std::string version;
    } rows[] = {
        {"message, text form", "message_text", text},
        {"message, binary form", "message_binary", std::to_string(kMessageBinaryVersion)},
        {"cache file", "cache_file", std::to_string(HBXSharedMemoryManager::kVersion)},
        {"options file", "options_file", text}, // a message in text form
        {"JSON documents", "json", std::to_string(kJsonSchema)},
    };
    nlohmann::ordered_json json{{"program", kProgramVersion}, {"formats", nlohmann::ordered_json::object()}};
    std::vector<std::vector<std::string>> lines{{"hbx", kProgramVersion}};
    for (const auto& row : rows) {
        lines.push_back({row.format, row.version});
        json["formats"][row.key] = std::stoi(row.version);
    }
    print(arguments.has("json") ? jsonText(json) : alignColumns(lines));
    return ExitCode::Ok;
}

constexpr Command kVersionCommands[] = {
    {"version", "", "", "Prints the version of the program and those of its file formats.", 0, 0,
     [](boost::program_options::options_description_easy_init option) { declareJsonOption(option); },
     version},
};

} // namespace

std::span<const Command> versionCommands() { return kVersionCommands; }

} // namespace HBX::tool
