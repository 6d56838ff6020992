#include "EnvVerbs.h"

#include <algorithm>
#include <optional>
#include <tuple>

#include "CacheFile.h"
#include "Console.h"
#include "EnvTable.h"
#include "JsonText.h"

namespace HBX::tool {

namespace {

/// Which environments are asked for.
struct Filter {
    std::optional<std::string> type;
    std::optional<HBXEID> parent;
    std::optional<int> state;

    bool takes(const HBXEnv& env) const {
        return (!type || env.getType().view() == *type) && (!parent || env.getParentEID() == *parent) &&
               (!state || env.getStatus().state == *state);
    }
};

Filter filterOf(const Arguments& arguments) {
    Filter filter;
    if (arguments.has("type")) {
        filter.type = arguments.get<std::string>("type");
    }
    if (arguments.has("parent") &&
        filter.parent.emplace().fromString(arguments.get<std::string>("parent")) != 0) {
        throw Failure(ExitCode::Usage,
                      "--parent: \"" + arguments.get<std::string>("parent") + "\" is no identifier");
    }
    if (arguments.has("state")) {
        filter.state = stateOf(arguments.get<std::string>("state"));
        if (!filter.state) {
            throw Failure(ExitCode::Usage, "--state is " + stateWords(", ") + " or a number");
        }
    }
    return filter;
}

std::string jsonOf(const std::vector<EnvRow>& rows) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const EnvRow& row : rows) {
        list.push_back(toJson(row));
    }
    return jsonText({{"environments", list}});
}

void sortByTitle(std::vector<EnvRow>& rows) {
    std::sort(rows.begin(), rows.end(), [](const EnvRow& left, const EnvRow& right) {
        return std::tie(left.title, left.eid) < std::tie(right.title, right.eid);
    });
}

} // namespace

ExitCode listEnvironments(const Arguments& arguments) {
    const Filter filter = filterOf(arguments);
    const std::string path = cachePath(arguments);
    std::vector<EnvRow> rows;
    EnvTitles titles;
    const auto list = listOf(*openCache({path}));
    for (const auto& env : *list) {
        titles[env->getEID()] = env->getTitle();
        if (filter.takes(*env)) {
            rows.push_back(rowOf(*env));
        }
    }
    sortByTitle(rows);
    if (arguments.has("json")) {
        print(jsonOf(rows));
    } else if (!rows.empty()) {
        print((arguments.has("tree") ? treeText : tableText)(rows, titles, isColourWanted()));
    }
    if (rows.empty()) {
        throw Failure(ExitCode::NothingMatched, path + ": there is no such environment in it");
    }
    return ExitCode::Ok;
}

} // namespace HBX::tool
