#include "ConfigurationOperator.h"

#include <cerrno>
#include <filesystem>
#include <vector>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXInstanceFolders.h>

#include "Failure.h"
#include "Settings.h"

namespace HBX::tool {

namespace {

constexpr int kPath = 3074;
constexpr int kValue = 1018;

struct PathArgument {
    std::string path;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<PathArgument>;
};

constexpr HBXRow kPathArgument[] = {member<&PathArgument::path>(kPath)};

struct SettingRecord {
    std::string path;
    std::string value;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<SettingRecord>;
    using Writer = HBXTableWriter<SettingRecord>;
};

constexpr HBXRow kSettingRecord[] = {
    member<&SettingRecord::path>(kPath),
    member<&SettingRecord::value>(kValue),
};

struct ListedRecord {
    std::string path;
    HBXOptionalProperty<std::string> value;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<ListedRecord>;
};

constexpr HBXRow kListedRecord[] = {
    member<&ListedRecord::path>(kPath),
    member<&ListedRecord::value>(kValue),
};

struct ListResult {
    std::vector<ListedRecord> settings;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<ListResult>;
    using Writer = HBXTableWriter<ListResult>;
};

constexpr HBXRow kListResult[] = {list<&ListResult::settings>(3444, 3445)};

constinit const HBXRecordTable PathArgument::table =
    recordTable<PathArgument>("PathArgument", 0, 0, kPathArgument);
constinit const HBXRecordTable SettingRecord::table =
    recordTable<SettingRecord>("SettingRecord", 0, 0, kSettingRecord);
constinit const HBXRecordTable ListedRecord::table =
    recordTable<ListedRecord>("ListedRecord", 0, 0, kListedRecord);
constinit const HBXRecordTable ListResult::table = recordTable<ListResult>("ListResult", 0, 0, kListResult);

Outcome noAnswer(const std::string& reason) { return RequestFailure{RequestError::NoAnswer, reason}; }

/// The global configuration file, for a request about one path; a file that is not there is a configuration
/// without settings.
Outcome open(const std::string& path, HBXConfiguration& configuration) {
    if (!path.starts_with('/')) {
        return RequestFailure{RequestError::BadArguments, "path begins with \"/\""};
    }
    errno = 0;
    if (configuration.readFromFile(getConfigurationFile()) == 0) {
        return {};
    }
    if (errno != ENOENT) {
        return noAnswer(getErrorMessage());
    }
    const boost::intrusive_ptr<HBXMessage> message = adoptMessage(HBXMsgFactory::createNew());
    message->create("data");
    configuration = HBXConfiguration(message.get());
    return {};
}

Outcome save(const HBXConfiguration& configuration) {
    const std::filesystem::path file = getConfigurationFile();
    std::error_code ignored; // the file cannot be written then, and that is told
    std::filesystem::create_directories(file.parent_path(), ignored);
    return configuration.saveToFile(file) == 0 ? Outcome() : noAnswer(getErrorMessage());
}

Outcome get(const PathArgument& arguments, SettingRecord& result) {
    HBXConfiguration configuration;
    if (Outcome failure = open(arguments.path, configuration)) {
        return failure;
    }
    const std::optional<std::string> value = readSetting(configuration, arguments.path);
    if (!value) {
        return noAnswer("there is no value at " + arguments.path);
    }
    result = {arguments.path, *value};
    return {};
}

Outcome set(const SettingRecord& arguments, SettingRecord& result) {
    HBXConfiguration configuration;
    if (Outcome failure = open(arguments.path, configuration)) {
        return failure;
    }
    try {
        writeSetting(configuration, arguments.path, arguments.value);
    } catch (const Failure& failure) {
        return noAnswer(failure.what());
    }
    result = arguments;
    return save(configuration);
}

Outcome list(const PathArgument& arguments, ListResult& result) {
    HBXConfiguration configuration;
    if (Outcome failure = open(arguments.path, configuration)) {
        return failure;
    }
    if (!hasPath(configuration, arguments.path)) {
        return noAnswer("there is no " + arguments.path);
    }
    for (const Setting& setting : listSettings(configuration, arguments.path)) {
        ListedRecord& record = result.settings.emplace_back();
        record.path = setting.path;
        if (setting.value) {
            record.value = *setting.value;
        }
    }
    return {};
}

constexpr OperatorVerb kVerbs[] = {
    {3441, answer<PathArgument, SettingRecord, get>},
    {3442, answer<SettingRecord, SettingRecord, set>},
    {3443, answer<PathArgument, ListResult, list>},
};

} // namespace

constinit const Operator kConfigurationOperator{3440, kVerbs};

} // namespace HBX::tool
