#include "Command.h"

#include <HBXFunctionalityCore/schedule/HBXScheduleText.h>

#include "Console.h"
#include "JsonText.h"
#include "RecordJson.h"
#include "RunList.h"
#include "TimeText.h"
#include "TriggerFile.h"

namespace HBX::tool {

namespace {

namespace po = boost::program_options;

void declareOptions(po::options_description_easy_init option) {
    option(
        "from", po::value<std::string>()->value_name("TIME"),
        "first moment that counts: seconds since 1970, or \"YYYY-MM-DD[ HH:MM[:SS]]\", local or with a \"Z\" "
        "behind it UTC; now when not given");
    option("count", po::value<int>()->value_name("N")->default_value(5), "how many runs, 1 to 1000");
    declareJsonOption(option);
}

std::int64_t fromOf(const Arguments& arguments) {
    std::int64_t from = presentMoment();
    if (arguments.has("from") && parseMoment(arguments.get<std::string>("from"), from) != 0) {
        throw Failure(ExitCode::Usage, "--from: \"" + arguments.get<std::string>("from") +
                                           "\" is no moment since 1970 (YYYY-MM-DD HH:MM:SS or seconds)");
    }
    return from;
}

int countOf(const Arguments& arguments) {
    const int count = arguments.get<int>("count");
    if (count < 1 || count > kMaxRuns) {
        throw Failure(ExitCode::Usage, "--count is 1 to " + std::to_string(kMaxRuns));
    }
    return count;
}

/// Without a run there is nothing to print.
void demandRuns(const std::string& file, const RunList& list) {
    if (list.runs.empty()) {
        const bool unusable = list.ending == RunList::Ending::Unusable;
        throw Failure(unusable ? ExitCode::InvalidInput : ExitCode::NothingMatched,
                      file + ": no run: " + list.reason);
    }
}

std::string textOf(const RunList& list) {
    std::string text;
    for (const Run& run : list.runs) {
        text += run.text + (run.note.empty() ? "" : "  (" + run.note + ')') + '\n';
    }
    return list.reason.empty() ? text : text + "no further run: " + list.reason + '\n';
}

nlohmann::ordered_json toJson(const RunList& list) {
    nlohmann::ordered_json runs = nlohmann::ordered_json::array();
    for (const Run& run : list.runs) {
        nlohmann::ordered_json& json = runs.emplace_back();
        json["time"] = run.time;
        json["text"] = run.text;
        if (!run.note.empty()) {
            json["note"] = run.note;
        }
    }
    return runs;
}

nlohmann::ordered_json toJson(const boost::shared_ptr<HBXSchedulerTrigger>& trigger) {
    const void* object = nullptr;
    const HBXRecordTable& table = HBXSchedulerTrigger::family.object(&trigger, object);
    return recordJson(object, table);
}

std::string jsonOf(nlohmann::ordered_json document, const RunList& list) {
    document["runs"] = toJson(list);
    if (!list.reason.empty()) {
        document["ending"] = list.reason;
    }
    return jsonText(document);
}

ExitCode next(const Arguments& arguments) {
    const std::int64_t from = fromOf(arguments);
    const int count = countOf(arguments);
    const RunList list = nextRuns(*loadTrigger(arguments.files[0]), from, count);
    demandRuns(arguments.files[0], list);
    print(arguments.has("json") ? jsonOf({}, list) : textOf(list));
    return ExitCode::Ok;
}

ExitCode explain(const Arguments& arguments) {
    const std::int64_t from = fromOf(arguments);
    const int count = countOf(arguments);
    const auto trigger = loadTrigger(arguments.files[0]);
    const std::string sentence = describeTrigger(*trigger);
    const RunList list = nextRuns(*trigger, from, count);
    print(arguments.has("json") ? jsonOf({{"explanation", sentence}, {"trigger", toJson(trigger)}}, list)
                                : sentence + '\n' + textOf(list));
    return ExitCode::Ok;
}

constexpr Command kScheduleCommands[] = {
    {"schedule", "next", "FILE", "Prints the next runs of the first trigger in a message.", 1, 1,
     declareOptions, next},
    {"schedule", "explain", "FILE", "Says in words what that trigger does, then its next runs.", 1, 1,
     declareOptions, explain},
};

} // namespace

std::span<const Command> scheduleCommands() { return kScheduleCommands; }

} // namespace HBX::tool
