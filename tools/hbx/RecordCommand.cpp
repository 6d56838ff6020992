#include "Command.h"

#include <algorithm>

#include <HBXFunctionalityCore/HBXCatalogue.h>
#include <HBXMessage/HBXRecordCheck.h>
#include <HBXMessage/HBXRecordSample.h>

#include "Console.h"
#include "JsonText.h"
#include "MessageFile.h"
#include "RecordDescription.h"
#include "RecordNames.h"

namespace HBX::tool {

namespace {

namespace po = boost::program_options;
using DeclareOptions = po::options_description_easy_init;

void declareList(DeclareOptions option) {
    declareJsonOption(option);
    option("markdown", "as the page docs/records.md");
}

ExitCode list(const Arguments& arguments) {
    if (arguments.has("json") && arguments.has("markdown")) {
        throw Failure(ExitCode::Usage, "--json or --markdown");
    }
    print(arguments.has("json")       ? jsonText(recordLinesJson())
          : arguments.has("markdown") ? recordPage()
                                      : recordLines());
    return ExitCode::Ok;
}

ExitCode describe(const Arguments& arguments) {
    const HBXRecordEntry& type = recordNamed(arguments.files[0]);
    print(arguments.has("json") ? jsonText(describeRecordJson(type)) : describeRecord(type));
    return ExitCode::Ok;
}

ExitCode makeTemplate(const Arguments& arguments) {
    const HBXRecordEntry& type = recordNamed(arguments.files[0]);
    HBXAnyRecord record(type);
    fillExample(record.get(), *type.table);
    const MessagePointer message = adoptMessage(HBXMsgFactory::createNew());
    if (record.put(*cursorOn(message)) != 0) {
        throw Failure(ExitCode::InvalidInput, arguments.files[0] + ": there is no example of it");
    }
    print(messageBytes(arguments.files[0], message,
                       arguments.has("binary") ? Encoding::Binary : Encoding::Text));
    return ExitCode::Ok;
}

void declareCheck(DeclareOptions option) {
    option("as", po::value<std::string>()->value_name("NAME"),
           "the record type; without it the one that the element is marked with");
    option("path", po::value<std::string>()->default_value("/")->value_name("PATH"),
           "the element to check, such as /data/x");
}

/// The record type that the mark of an element names.
const HBXRecordEntry& recordMarked(const std::string& place, const HBXMessageIterator& element) {
    const std::string mark = element.curType();
    if (mark.empty()) {
        throw Failure(ExitCode::InvalidInput, place + "the element has no complex type, say --as NAME");
    }
    const auto catalogue = recordCatalogue();
    const auto found = std::find_if(catalogue.begin(), catalogue.end(), [&](const HBXRecordEntry& entry) {
        return qualifiedTypeName(*entry.table) == mark;
    });
    if (found == catalogue.end()) {
        throw Failure(ExitCode::InvalidInput, place + "there is no record of type \"" + mark + '"');
    }
    return *found;
}

ExitCode check(const Arguments& arguments) {
    const std::string& path = arguments.get<std::string>("path");
    if (!path.starts_with('/')) {
        throw Failure(ExitCode::Usage, "--path begins with \"/\"");
    }
    const HBXRecordEntry* wanted =
        arguments.has("as") ? &recordNamed(arguments.get<std::string>("as")) : nullptr;
    const std::string& file = arguments.files[0];
    const Cursor element = cursorOn(loadMessage(file));
    const std::string place = file + ": " + path + ": ";
    if (element->seek(path) != 0) {
        throw Failure(ExitCode::NothingMatched, place + "there is no such element");
    }
    const HBXRecordEntry& type = wanted != nullptr ? *wanted : recordMarked(place, *element);
    if (const auto misfit = findMisfit(*element, type)) {
        const std::string below = (path == "/" ? "" : path) + misfit->path;
        throw Failure(ExitCode::InvalidInput, file + ": " + (below.empty() ? "/" : below) + ": expected " +
                                                  misfit->expected + ", found " + misfit->found);
    }
    return ExitCode::Ok;
}

constexpr Command kRecordCommands[] = {
    {"record", "list", "", "Lists the record types.", 0, 0, declareList, list},
    {"record", "describe", "NAME", "Says what a record type consists of.", 1, 1,
     [](DeclareOptions option) { declareJsonOption(option); }, describe},
    {"record", "template", "NAME", "Prints an example of a record as a message.", 1, 1,
     [](DeclareOptions option) { option("binary", "in binary form"); }, makeTemplate},
    {"record", "check", "FILE", "Says where a message is no record of a type, and why.", 1, 1, declareCheck,
     check},
};

} // namespace

std::span<const Command> recordCommands() { return kRecordCommands; }

} // namespace HBX::tool
