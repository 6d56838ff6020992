#pragma once

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
/// The number of a word that `stateWord` gives; nothing when it is none.
std::optional<int> stateOf(const std::string& word);
/// "running", "running (operation 3)".
std::string statusText(const HBXEnvStatus& status);
/// "green", "yellow", "red", "black"; a level that has no name is its number.
std::string alertWord(HBXAlertData::AlertType alert);

/// Text from a cache, fit for a terminal and for one line: control characters and bytes that are no UTF-8
/// become "?".
std::string oneLine(const std::string& text);

/// Columns under a heading. Parents that are in the list are shown by their title.
std::string tableText(const std::vector<EnvRow>& rows);
nlohmann::ordered_json toJson(const EnvRow& row);

} // namespace HBX::tool
