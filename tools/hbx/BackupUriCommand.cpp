#include "Command.h"

#include "BackupReference.h"
#include "Console.h"
#include "JsonText.h"
#include "RecordJson.h"

namespace HBX::tool {

namespace {

namespace po = boost::program_options;

void declareParse(po::options_description_easy_init option) { declareJsonOption(option); }

void declareStorage(po::options_description_easy_init option) {
    option("storage-id", po::value<std::string>()->value_name("EID"),
           "identifier of the storage that holds the backup");
    option("storage-path", po::value<std::string>()->value_name("PATH"), "where the backup is in it");
    option("server", po::value<std::string>()->value_name("NAME"), "the server that has the storage");
    option("share", po::value<std::string>()->value_name("NAME"), "its name there");
    declareJsonOption(option);
}

std::string describe(const HBXDSLocation& storage) {
    std::string text = "storage: " + storage.id.toString() + ' ' + storage.path + '\n';
    if (storage.server.isSet()) {
        text += "server: " + storage.server.get() + '\n';
    }
    if (storage.share.isSet()) {
        text += "share: " + storage.share.get() + '\n';
    }
    if (storage.credentials.isSet()) {
        text += "with credentials\n"; // JSON shows them
    }
    return text;
}

ExitCode parse(const Arguments& arguments) {
    const auto reference = parseBackupReference(arguments.files[0]);
    if (!reference) {
        throw Failure(ExitCode::InvalidInput, '"' + arguments.files[0] + "\" is no backup reference");
    }
    if (arguments.has("json")) {
        print(jsonText(recordJson(&*reference, BackupReference::table)));
        return ExitCode::Ok;
    }
    const std::string storage = reference->storage.isSet() ? describe(reference->storage.get()) : "";
    print("id: " + reference->id + "\npath: " + reference->path.get() + '\n' + storage);
    return ExitCode::Ok;
}

HBXDSLocation storageOf(const Arguments& arguments) {
    if (!arguments.has("storage-id") || !arguments.has("storage-path")) {
        throw Failure(ExitCode::Usage, "a storage has --storage-id and --storage-path");
    }
    HBXDSLocation storage;
    const auto& id = arguments.get<std::string>("storage-id");
    if (storage.id.fromString(id) != 0) {
        throw Failure(ExitCode::Usage, "--storage-id: \"" + id + "\" is no identifier");
    }
    storage.path = arguments.get<std::string>("storage-path");
    if (arguments.has("server")) {
        storage.server = arguments.get<std::string>("server");
    }
    if (arguments.has("share")) {
        storage.share = arguments.get<std::string>("share");
    }
    return storage;
}

ExitCode make(const Arguments& arguments) {
    BackupReference reference;
    reference.id = arguments.files[0];
    reference.path = arguments.files.size() > 1 ? arguments.files[1] : "";
    for (const char* option : {"storage-id", "storage-path", "server", "share"}) {
        if (arguments.has(option) && !reference.storage.isSet()) {
            reference.storage = storageOf(arguments);
        }
    }
    std::string reason;
    const auto text = textOfReference(reference, reason);
    if (!text) {
        throw Failure(ExitCode::InvalidInput, reason);
    }
    if (arguments.has("json")) {
        nlohmann::ordered_json json = recordJson(&reference, BackupReference::table);
        json["uri"] = *text;
        print(jsonText(json));
    } else {
        print(*text + '\n');
    }
    return ExitCode::Ok;
}

constexpr Command kBackupUriCommands[] = {
    {"backup-uri", "parse", "URI", "Takes a backup reference apart.", 1, 1, declareParse, parse},
    {"backup-uri", "make", "ID [PATH]", "Makes a backup reference.", 1, 2, declareStorage, make},
};

} // namespace

std::span<const Command> backupUriCommands() { return kBackupUriCommands; }

} // namespace HBX::tool
