#include "Command.h"

#include <HBXCommon/HBXErrorMessage.h>

#include "Console.h"
#include "JsonText.h"
#include "RecordJson.h"
#include "VocItems.h"

namespace HBX::tool {

namespace {

namespace po = boost::program_options;
using Json = nlohmann::ordered_json;

void declareOptions(po::options_description_easy_init option) {
    option("tag", po::value<std::vector<std::string>>()->value_name("CATEGORY"),
           "only what is filed under this category; several: under all of them");
    declareJsonOption(option);
}

VocTags tagsOf(const Arguments& arguments) {
    VocTags tags;
    if (arguments.has("tag")) {
        const auto& given = arguments.get<std::vector<std::string>>("tag");
        tags.insert(given.begin(), given.end());
    }
    return tags;
}

/// What failures name when no file is given.
constexpr const char* kLocal = "the agent's vocabulary";

std::string sourceOf(const Arguments& arguments, std::size_t position) {
    return position < arguments.files.size() ? arguments.files[position] : kLocal;
}

/// The vocabulary in the file at this position, without one that of this installation.
VocCursor open(const Arguments& arguments, std::size_t position) {
    const VocTags tags = tagsOf(arguments);
    if (position >= arguments.files.size()) {
        VocCursor it = openLocalVocabulary(tags);
        return it ? std::move(it) : throw Failure(ExitCode::InvalidInput, getErrorMessage());
    }
    const std::string& file = arguments.files[position];
    VocCursor it = openVocabulary(loadMessage(file), tags);
    return it ? std::move(it)
              : throw Failure(ExitCode::InvalidInput, file + ": there is no vocabulary in it");
}

/// "backup: env.clone = yes (environment, container)"
std::string lineOf(const VocItem& item) {
    std::string line = item.vocabulary.isSet() ? item.vocabulary.get() + ": " + item.id : item.id;
    if (item.value.isSet()) {
        line += " = " + item.value.get();
    }
    const char* separator = " (";
    for (const std::string& tag : item.tags) {
        line += separator + tag;
        separator = ", ";
    }
    return line + (item.tags.empty() ? "\n" : ")\n");
}

ExitCode printItems(const Arguments& arguments, const char* what, const std::vector<VocItem>& items) {
    if (items.empty()) {
        throw Failure(ExitCode::NothingMatched, sourceOf(arguments, 0) + ": there are no such " + what);
    }
    Json list = Json::array();
    std::string text;
    for (const VocItem& item : items) {
        text += lineOf(item);
        list.push_back(recordJson(&item, VocItem::table));
    }
    print(arguments.has("json") ? jsonText({{what, list}}) : text);
    return ExitCode::Ok;
}

ExitCode features(const Arguments& arguments) {
    return printItems(arguments, "features", featuresOf(*open(arguments, 0)));
}

ExitCode categories(const Arguments& arguments) {
    return printItems(arguments, "categories", categoriesOf(*open(arguments, 0)));
}

ExitCode has(const Arguments& arguments) {
    const std::string& name = arguments.files[0];
    const VocCursor it = open(arguments, 1);
    if (it->seekParameter(name) != 0) {
        throw Failure(ExitCode::NothingMatched,
                      sourceOf(arguments, 1) + ": there is no feature \"" + name + '"');
    }
    const VocItem item = itemAt(*it);
    print(arguments.has("json") ? jsonText(recordJson(&item, VocItem::table)) : lineOf(item));
    return ExitCode::Ok;
}

constexpr Command kVocCommands[] = {
    {"voc", "features", "[FILE]", "Lists the features that a vocabulary, or this agent's own, offers.", 0, 1,
     declareOptions, features},
    {"voc", "categories", "[FILE]", "Lists the categories that features are filed under.", 0, 1,
     declareOptions, categories},
    {"voc", "has", "NAME [FILE]", "Prints the feature of this name; exit code 1 when it is not offered.", 1,
     2, declareOptions, has},
};

} // namespace

std::span<const Command> vocCommands() { return kVocCommands; }

} // namespace HBX::tool
