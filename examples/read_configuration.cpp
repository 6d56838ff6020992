#include <cstdio>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

int complain(const std::string& reason) {
    std::fprintf(stderr, "%s\n", reason.c_str());
    return 1;
}

/// Reads a setting of the configuration file named on the command line and changes it there.
int main(int argc, char** argv) {
    const char* file = argc > 1 ? argv[1] : "agent.xml";
    HBX::HBXConfiguration configuration;
    if (configuration.readFromFile(file) != 0) {
        return complain(HBX::getErrorMessage()); // FILE: line 57, column 29, /data/system/...: REASON
    }
    const std::unique_ptr<HBX::HBXConfigurationIterator> it(configuration.getIterator());
    int level = 2; // stays 2 when the setting is missing or no number
    it->getValue(level, "/system/log_level");
    it->putValue(level + 1, "/system/log_level"); // section, wrapper and setting are created when missing
    if (configuration.saveToFile(file) != 0) {
        return complain(HBX::getErrorMessage());
    }
    std::printf("log level %d, from now on %d\n", level, level + 1);
}
