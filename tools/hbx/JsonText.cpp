#include "JsonText.h"

namespace HBX::tool {

namespace {

using Json = nlohmann::ordered_json;

std::string textOf(const Json& members, int indent) {
    Json document{{"schema", kJsonSchema}};
    document.update(members);
    return document.dump(indent, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace

void declareJsonOption(boost::program_options::options_description_easy_init& option) {
    option("json", "as JSON");
}

std::string jsonText(const Json& members) { return textOf(members, 2); }

std::string jsonLine(const Json& members) { return textOf(members, -1); }

} // namespace HBX::tool
