#include "Command.h"

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXFileUtil.h>

#include "Console.h"
#include "JsonText.h"
#include "MessageDiff.h"
#include "MessageFile.h"
#include "Outline.h"

namespace HBX::tool {

namespace {

namespace po = boost::program_options;
using DeclareOptions = po::options_description_easy_init;

Failure usageFailure(const std::string& reason) { return {ExitCode::Usage, reason}; }

int indentOf(const Arguments& arguments) {
    constexpr int kWidest = 16;
    const int indent = arguments.get<int>("indent");
    if (indent < 0 || indent > kWidest) {
        throw usageFailure("--indent is 0 to " + std::to_string(kWidest));
    }
    return indent;
}

Encoding targetOf(const Arguments& arguments, Encoding source) {
    if (!arguments.has("to")) {
        return source == Encoding::Text ? Encoding::Binary : Encoding::Text;
    }
    const std::string& name = arguments.get<std::string>("to");
    if (name != "text" && name != "binary") {
        throw usageFailure("--to is \"text\" or \"binary\"");
    }
    return name == "text" ? Encoding::Text : Encoding::Binary;
}

void declareShow(DeclareOptions option) {
    option("indent", po::value<int>()->value_name("N")->default_value(2),
           "blanks for each level, 0: one line");
    option("path", po::value<std::string>()->value_name("PATH")->default_value("/"),
           "the element to show, such as /data/x");
    declareJsonOption(option);
}

ExitCode show(const Arguments& arguments) {
    const std::string& path = arguments.get<std::string>("path");
    const int indent = indentOf(arguments);
    if (!path.starts_with('/')) {
        throw usageFailure("--path begins with \"/\"");
    }
    const Cursor element = cursorOn(loadMessage(arguments.files[0]));
    if (element->seek(path) != 0) {
        throw Failure(ExitCode::NothingMatched,
                      arguments.files[0] + ": " + path + ": there is no such element");
    }
    const std::string& file = arguments.files[0];
    print(arguments.has("json") ? jsonText(toJson(outlineOf(file, *element)))
                                : elementText(file, *element, indent));
    return ExitCode::Ok;
}

void declareJson(DeclareOptions option) { declareJsonOption(option); }

void declareConvert(DeclareOptions option) {
    option("to", po::value<std::string>()->value_name("text|binary"), "the other encoding when not given");
    option("output,o", po::value<std::string>()->value_name("FILE"),
           "replace this file, whole or not at all");
}

ExitCode convert(const Arguments& arguments) {
    const std::string source = readInput(arguments.files[0]);
    const Encoding target = targetOf(arguments, encodingOf(source));
    const std::string bytes =
        messageBytes(arguments.files[0], parseMessage(arguments.files[0], source), target);
    if (!arguments.has("output")) {
        print(bytes);
        return ExitCode::Ok;
    }
    const std::string& output = arguments.get<std::string>("output");
    if (writeFileAtomic(output, bytes) != 0) {
        const bool refused = exitCodeOf(errno) == ExitCode::NotPermitted;
        throw Failure(refused ? ExitCode::NotPermitted : ExitCode::OutputFailed,
                      output + ": " + errnoText(errno));
    }
    return ExitCode::Ok;
}

ExitCode check(const Arguments& arguments) {
    ExitCode result = ExitCode::Ok;
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const std::string& file : arguments.files) {
        nlohmann::ordered_json& json = list.emplace_back();
        json["file"] = file;
        json["message"] = true;
        try {
            loadMessage(file);
        } catch (const Failure& failure) {
            complain(failure.what());
            json["message"] = false;
            json["reason"] = failure.what();
            result = result == ExitCode::Ok ? failure.code : result;
        }
    }
    if (arguments.has("json")) {
        print(jsonText({{"files", list}}));
    }
    return result;
}

Outline outlineOfFile(const std::string& file) { return outlineOf(file, *cursorOn(loadMessage(file))); }

ExitCode diff(const Arguments& arguments) {
    const std::vector<Difference> differences =
        differencesOf(outlineOfFile(arguments.files[0]), outlineOfFile(arguments.files[1]));
    if (arguments.has("json")) {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const Difference& difference : differences) {
            list.push_back(toJson(difference));
        }
        print(jsonText({{"differences", list}}));
    } else {
        std::string text;
        for (const Difference& difference : differences) {
            text += describe(difference) + '\n';
        }
        print(text);
    }
    return differences.empty() ? ExitCode::Ok : ExitCode::NothingMatched;
}

constexpr Command kMessageCommands[] = {
    {"message", "show", "FILE", "Prints a message, or one element of it, as text.", 1, 1, declareShow, show},
    {"message", "convert", "FILE", "Changes the encoding of a message.", 1, 1, declareConvert, convert},
    {"message", "check", "FILE...", "Says which files are no messages, where and why.", 1, kAnyNumber,
     declareJson, check},
    {"message", "diff", "FILE FILE",
     "Lists what differs between two messages; exit code 1 when something does.", 2, 2, declareJson, diff},
};

} // namespace

std::span<const Command> messageCommands() { return kMessageCommands; }

} // namespace HBX::tool
