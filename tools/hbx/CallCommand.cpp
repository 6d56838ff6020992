#include "Command.h"

#include "CacheFile.h"
#include "Console.h"
#include "Request.h"

namespace HBX::tool {

namespace {

ExitCode callOne(const std::string& file, Encoding encoding) {
    const Reply reply = answerRequest(*loadMessage(file));
    print(messageBytes(file, reply.message, encoding));
    if (reply.failure) {
        throw Failure(ExitCode::InvalidInput, file + ": " + reply.place + ": " + reply.failure->message);
    }
    return ExitCode::Ok;
}

ExitCode call(const Arguments& arguments) {
    const Encoding encoding = arguments.has("binary") ? Encoding::Binary : Encoding::Text;
    if (arguments.has("cache")) {
        useForRequests(cachePath(arguments));
    }
    ExitCode result = ExitCode::Ok;
    for (const std::string& file : arguments.files) {
        try {
            callOne(file, encoding);
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

constexpr Command kCallCommands[] = {
    {"call", "", "FILE...", "Runs request messages and prints their replies.", 1, kAnyNumber,
     [](boost::program_options::options_description_easy_init option) {
         option("binary", "replies in binary form");
         declareCacheOption(option);
     },
     call},
};

} // namespace

std::span<const Command> callCommands() { return kCallCommands; }

} // namespace HBX::tool
