#include "Command.h"

#include "CacheFile.h"
#include "Console.h"
#include "EnvEntry.h"
#include "EnvTable.h"
#include "EnvVerbs.h"
#include "JsonText.h"
#include "RecordJson.h"

namespace HBX::tool {

namespace {

namespace po = boost::program_options;
using Options = po::options_description_easy_init;

constexpr int kData = 1307;
constexpr int kEntry = 1008;

HBXEID eidOf(const std::string& text) {
    HBXEID eid;
    if (eid.fromString(text) != 0 || !eid.isValid()) {
        throw Failure(ExitCode::Usage, '"' + text + "\" is no identifier of an environment");
    }
    return eid;
}

[[noreturn]] void failOnMissing(const std::string& path, const std::string& eid) {
    throw Failure(ExitCode::NothingMatched, path + ": there is no environment " + eid);
}

/// A message that `put` reads.
std::string messageOf(const EnvEntry& entry) {
    const MessagePointer message = adoptMessage(HBXMsgFactory::createNew());
    const Cursor root = cursorOn(message);
    root->putChild(kData);
    if (root->putObject(entry, kEntry) != 0) {
        throw Failure(ExitCode::Damaged, "this environment's configurations cannot be read");
    }
    return messageBytes("the environment", message, Encoding::Text);
}

ExitCode get(const Arguments& arguments) {
    const HBXEID eid = eidOf(arguments.files[0]);
    const std::string path = cachePath(arguments);
    const auto env = listOf(*openCache({path}))->getEnv(eid);
    if (env == nullptr) {
        failOnMissing(path, arguments.files[0]);
    }
    const EnvEntry entry = entryOf(*env);
    print(arguments.has("json") ? jsonText(recordJson(&entry, EnvEntry::table)) : messageOf(entry));
    return ExitCode::Ok;
}

std::vector<EnvEntry> entriesOf(const Arguments& arguments) {
    std::vector<EnvEntry> entries = loadEntries(arguments.files[0]);
    for (EnvEntry& entry : entries) {
        if (arguments.has("type")) {
            entry.type = arguments.get<std::string>("type");
        }
        if (entry.type.isSet() && !isTypeName(entry.type.get())) {
            throw Failure(ExitCode::Usage, "a type has 1 to 16 bytes: \"" + entry.type.get() + '"');
        }
        if (!entry.env.getEID().isValid()) {
            throw Failure(ExitCode::InvalidInput,
                          arguments.files[0] + ": an environment has a null identifier");
        }
    }
    return entries;
}

ExitCode put(const Arguments& arguments) {
    const std::vector<EnvEntry> entries = entriesOf(arguments);
    const std::string path = cachePath(arguments);
    const EnvCache cache = openCache({path, true, arguments.has("force")});
    for (const EnvEntry& entry : entries) {
        demandSuccess(path, cache->insert(typedEnv(entry, *cache)));
    }
    return ExitCode::Ok;
}

ExitCode remove(const Arguments& arguments) {
    std::vector<HBXEID> eids;
    eids.reserve(arguments.files.size());
    for (const std::string& text : arguments.files) {
        eids.push_back(eidOf(text));
    }
    const std::string path = cachePath(arguments);
    const EnvCache cache = openCache({path});
    ExitCode result = ExitCode::Ok;
    for (const HBXEID& eid : eids) {
        if (cache->getEnvCopy(eid) == nullptr) {
            complain(path + ": there is no environment " + eid.toString());
            result = ExitCode::NothingMatched;
        }
        demandSuccess(path, cache->remove(eid));
    }
    return result;
}

void declareCacheAndJson(Options option) {
    declareCacheOption(option);
    declareJsonOption(option);
}

void declareListOptions(Options option) {
    declareCacheAndJson(option);
    option("tree", "children below their parents");
    option("type", po::value<std::string>()->value_name("TYPE"), "only environments of this type");
    option("parent", po::value<std::string>()->value_name("EID"), "only children of this environment");
    option("state", po::value<std::string>()->value_name(stateWords("|")),
           "only those in this state; other states are named by their numbers");
}

void declarePutOptions(Options option) {
    declareCacheOption(option);
    option("type", po::value<std::string>()->value_name("TYPE"),
           "their type; else the one beside each in the message, else the one that it has in the cache");
    option("force", "use the cache file whatever it holds; one that is no cache in order is replaced");
}

void declareRemoveOptions(Options option) { declareCacheOption(option); }

void declareWatchOptions(Options option) {
    declareCacheOption(option);
    option("json", "as JSON, one document a line");
    option("count", po::value<int>()->value_name("N"), "end after so many changes");
    option("timeout", po::value<double>()->value_name("SECONDS"), "end after so many seconds");
}

constexpr Command kEnvCommands[] = {
    {"env", "list", "", "Lists the environments of a cache.", 0, 0, declareListOptions, listEnvironments},
    {"env", "get", "EID", "Prints one environment, as a message that put reads.", 1, 1, declareCacheAndJson,
     get},
    {"env", "put", "FILE", "Stores the environments in a message; a cache file that is missing is made.", 1,
     1, declarePutOptions, put},
    {"env", "remove", "EID...", "Removes environments.", 1, kAnyNumber, declareRemoveOptions, remove},
    {"env", "stat", "", "Tells the sizes of a cache and who holds what.", 0, 0, declareCacheAndJson,
     showCacheStatus},
    {"env", "readers", "", "Lists the processes that use a cache.", 0, 0, declareCacheAndJson, showReaders},
    {"env", "check", "[FILE]", "Examines a cache file, without mapping or changing it.", 0, 1,
     declareCacheAndJson, checkCache},
    {"env", "watch", "", "Prints changes of a cache as they are made.", 0, 0, declareWatchOptions,
     watchCache},
};

} // namespace

std::span<const Command> envCommands() { return kEnvCommands; }

} // namespace HBX::tool
