#include "Command.h"

#include "CacheFile.h"
#include "Console.h"
#include "JsonText.h"
#include "Outline.h"
#include "Request.h"

namespace HBX::tool {

namespace {

namespace po = boost::program_options;
using Json = nlohmann::ordered_json;

void declareOptions(po::options_description_easy_init option) {
    option("binary", "replies in binary form");
    declareCacheOption(option);
    declareJsonOption(option);
}

/// Prints the reply, or keeps it when there is a list. @throws Failure  the reply tells of an error, too.
void callOne(const std::string& file, Encoding encoding, Json* replies) {
    const Reply reply = answerRequest(*loadMessage(file));
    if (replies != nullptr) {
        replies->push_back({{"file", file}, {"reply", toJson(outlineOf(file, *cursorOn(reply.message)))}});
    } else {
        print(messageBytes(file, reply.message, encoding));
    }
    if (reply.failure) {
        throw Failure(ExitCode::InvalidInput, file + ": " + reply.place + ": " + reply.failure->message);
    }
}

ExitCode callAll(const Arguments& arguments, Encoding encoding, Json* replies) {
    ExitCode result = ExitCode::Ok;
    for (const std::string& file : arguments.files) {
        try {
            callOne(file, encoding, replies);
        } catch (const Failure& failure) {
            if (failure.code == ExitCode::OutputFailed) {
                throw;
            }
            complain(failure.what());
            result = result == ExitCode::Ok ? failure.code : result;
        }
    }
    return result;
}

ExitCode call(const Arguments& arguments) {
    const Encoding encoding = arguments.has("binary") ? Encoding::Binary : Encoding::Text;
    if (arguments.has("json") && arguments.has("binary")) {
        throw Failure(ExitCode::Usage, "replies are printed as --json or --binary, not both");
    }
    if (arguments.has("cache")) {
        useForRequests(cachePath(arguments));
    }
    if (!arguments.has("json")) {
        return callAll(arguments, encoding, nullptr);
    }
    Json replies = Json::array();
    const ExitCode result = callAll(arguments, encoding, &replies);
    print(jsonText({{"replies", replies}}));
    return result;
}

constexpr Command kCallCommands[] = {
    {"call", "", "FILE...", "Runs request messages and prints their replies.", 1, kAnyNumber, declareOptions,
     call},
};

} // namespace

std::span<const Command> callCommands() { return kCallCommands; }

} // namespace HBX::tool
