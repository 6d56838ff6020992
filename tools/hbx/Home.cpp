#include "Home.h"

#include <cstdlib>

#include <HBXCommon/HBXInstanceFolders.h>

namespace HBX::tool {

namespace {

/// "" when the variable is not set.
std::string variable(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): the program has one thread
    return value != nullptr ? value : "";
}

} // namespace

std::string homeFolder() {
    if (std::string home = variable("HBX_HOME"); !home.empty()) {
        return home;
    }
    const std::string data = variable("XDG_DATA_HOME");
    return (data.empty() ? variable("HOME") + "/.local/share" : data) + "/hbx";
}

void useHome() {
    setFolderProvider({.etc = homeFolder, .configurationFile = [] { return homeFolder() + "/agent.xml"; }});
}

} // namespace HBX::tool
