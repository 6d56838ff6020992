#include "EnvVerbs.h"

#include <algorithm>
#include <fstream>

#include <HBXFunctionalityCore/schedule/HBXScheduleText.h>

#include <unistd.h>

#include "CacheFile.h"
#include "Columns.h"
#include "Console.h"
#include "EnvTable.h"
#include "JsonText.h"
#include "TimeText.h"

namespace HBX::tool {

namespace {

using Json = nlohmann::ordered_json;
using Lines = std::vector<std::vector<std::string>>;

/// Of the cache as it is without this program's own look at it.
HBXCacheStatus statusOf(const std::string& path) {
    HBXCacheStatus status;
    demandSuccess(path, openCache({path})->getStatus(status));
    const auto own = static_cast<std::uint32_t>(getpid());
    std::erase_if(status.processes, [own](const HBXCacheProcess& process) { return process.pid == own; });
    return status;
}

/// The name of a program that runs; "" when it does not.
std::string programOf(std::uint32_t pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/comm");
    std::string name;
    std::getline(file, name);
    return oneLine(name);
}

/// "7 s", "12 min", "3 h", "2 days".
std::string durationText(std::int64_t seconds) {
    constexpr struct {
        std::int64_t seconds;
        const char* unit;
    } kUnits[] = {{86'400, " days"}, {3'600, " h"}, {60, " min"}};
    for (const auto& unit : kUnits) {
        if (seconds >= 2 * unit.seconds) {
            return std::to_string(seconds / unit.seconds) + unit.unit;
        }
    }
    return std::to_string(std::max<std::int64_t>(seconds, 0)) + " s";
}

std::string processText(std::uint32_t pid) {
    const std::string program = programOf(pid);
    return std::to_string(pid) + (program.empty() ? "" : " (" + program + ')');
}

std::string textOf(const std::string& path, const HBXCacheStatus& status) {
    const Lines lines = {
        {"file", path},
        {"environments", std::to_string(status.entries)},
        {"size", std::to_string(status.fileSize) + " bytes"},
        {"live data", std::to_string(status.achievableSize) + " bytes"},
        {"allocated", std::to_string(status.allocated) + " bytes"},
        {"states held", std::to_string(status.snapshots)},
        {"changes", std::to_string(status.changes)},
        {"generation", std::to_string(status.generation)},
        {"processes", std::to_string(status.processes.size())},
    };
    std::string text = alignColumns(lines);
    for (const HBXCacheHolder& holder : status.holders) {
        text += processText(holder.pid) + " holds " + std::to_string(holder.lists) +
                (holder.lists == 1 ? " list" : " lists") + " of " +
                (holder.isCurrent ? "the present state" : "an earlier state") + " for " +
                durationText(presentMoment() - holder.since) + '\n';
    }
    return text;
}

Json toJson(const HBXCacheHolder& holder) {
    return {{"pid", holder.pid},
            {"program", programOf(holder.pid)},
            {"lists", holder.lists},
            {"state", holder.snapshot},
            {"current", holder.isCurrent},
            {"since", holder.since},
            {"seconds", presentMoment() - holder.since}};
}

Json toJson(const std::string& path, const HBXCacheStatus& status) {
    Json json{{"file", path},
              {"environments", status.entries},
              {"size", status.fileSize},
              {"live_data", status.achievableSize},
              {"allocated", status.allocated},
              {"states_held", status.snapshots},
              {"changes", status.changes},
              {"generation", status.generation},
              {"processes", status.processes.size()},
              {"holders", Json::array()}};
    for (const HBXCacheHolder& holder : status.holders) {
        json["holders"].push_back(toJson(holder));
    }
    return json;
}

std::uint32_t listsOf(const HBXCacheStatus& status, std::uint32_t pid) {
    std::uint32_t lists = 0;
    for (const HBXCacheHolder& holder : status.holders) {
        lists += holder.pid == pid ? holder.lists : 0;
    }
    return lists;
}

std::string readersText(const HBXCacheStatus& status) {
    Lines lines{{"PROCESS", "PROGRAM", "LISTS", "SINCE"}};
    for (const HBXCacheProcess& process : status.processes) {
        lines.push_back({std::to_string(process.pid), programOf(process.pid),
                         std::to_string(listsOf(status, process.pid)), describeMoment(process.since)});
    }
    return alignColumns(lines);
}

Json readersJson(const HBXCacheStatus& status) {
    Json list = Json::array();
    for (const HBXCacheProcess& process : status.processes) {
        list.push_back({{"pid", process.pid},
                        {"program", programOf(process.pid)},
                        {"lists", listsOf(status, process.pid)},
                        {"since", process.since}});
    }
    return {{"processes", list}};
}

} // namespace

ExitCode showCacheStatus(const Arguments& arguments) {
    const std::string path = cachePath(arguments);
    const HBXCacheStatus status = statusOf(path);
    print(arguments.has("json") ? jsonText(toJson(path, status)) : textOf(path, status));
    return ExitCode::Ok;
}

ExitCode showReaders(const Arguments& arguments) {
    const std::string path = cachePath(arguments);
    const HBXCacheStatus status = statusOf(path);
    print(arguments.has("json")      ? jsonText(readersJson(status))
          : status.processes.empty() ? "no process uses it\n"
                                     : readersText(status));
    return ExitCode::Ok;
}

} // namespace HBX::tool
