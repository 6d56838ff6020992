#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <HBXFunctionalityCore/environment/HBXEnvCache.h>

namespace HBX::tool {

/// What a list says of one environment.
struct EnvRow {
    HBXEID eid;
    HBXEID parent;
    std::string title;
    std::string type;
    HBXEnvStatus status;
    HBXAlertData::AlertType alert; ///< the worst
};

EnvRow rowOf(const HBXEnv& env);

/// "running"; a state that has no name is its number.
std::string stateWord(int state);
/// The words for states, with this between them.
std::string stateWords(const std::string& separator);
/// The number of a word that `stateWord` gives; nothing when it is none.
std::optional<int> stateOf(const std::string& word);
/// "running", "running (operation 3)".
std::string statusText(const HBXEnvStatus& status);
/// "green", "yellow", "red", "black"; a level that has no name is its number.
std::string alertWord(HBXAlertData::AlertType alert);

/// Text from a cache, fit for a terminal and for one line: control characters and bytes that are no UTF-8
/// become "?".
std::string oneLine(const std::string& text);

using EnvTitles = std::map<HBXEID, std::string>;

/// The parent by its title where that is known, else by its identifier; "-" when there is none.
std::string parentText(const EnvRow& row, const EnvTitles& titles);

/// Columns under a heading.
/// @param titles    of all environments, listed or not.
/// @param coloured  alerts in their colours, for a terminal.
std::string tableText(const std::vector<EnvRow>& rows, const EnvTitles& titles, bool coloured);

/// The same with children below their parents.
std::string treeText(const std::vector<EnvRow>& rows, const EnvTitles& titles, bool coloured);
nlohmann::ordered_json toJson(const EnvRow& row);

} // namespace HBX::tool
