#include "ConfigurationTestUtil.h"

#include <HBXCommon/HBXInstanceFolders.h>
#include <HBXCommon/HBXLog.h>
#include <HBXCommon/OptionManager.h>
#include <HBXFunctionalityCore/configuration/DebugConfiguration.h>

#include "support/CapturedLog.h"

namespace HBX::test {
namespace {

const std::string kRead = "[HBX::oh_read_global_config_option]";
const std::string kPath = "/data/system/configuration/sorting_order";

/// The global configuration file is one of the test's own.
class DebugSettings : public ConfigurationFile {
protected:
    DebugSettings() {
        setFolderProvider({.etc = {}, .configurationFile = [this] { return path("agent.xml"); }});
    }
    void TearDown() override {
        setFolderProvider({});
        debug_level = 2;
    }

    CapturedLog log;
};

TEST_F(DebugSettings, OptionIsReadAndToldOrKeepsTheDefault) {
    const std::string failed = "1 " + kRead + ' ';
    const std::tuple<std::string, std::string, int, std::string> rows[] = {
        {"", "/data", 7, failed + "can't read config file: " + path("agent.xml")}, // there is none
        {"1", kPath, 7, failed + "Can't seek path: " + kPath},
        {"99999999999", "/data", 7, failed + "Can't parse /data option from global config with error 1."},
        {"1", "/data", 1, "4 Get 1 for /data"},
    };
    debug_level = 4;
    for (const auto& [data, option, expected, line] : rows) {
        if (!data.empty()) {
            write("agent.xml", messageText("<data>" + data + "</data>"));
        }
        int value = 7;
        EXPECT_EQ(oh_read_global_config_option(option.c_str(), &value), expected == 7 ? 1 : 0) << line;
        EXPECT_EQ(value, expected);
        EXPECT_EQ(log.take(), "4 Calling " + kRead + " for " + option + "\n4 " + kRead +
                                  " read config file from: " + path("agent.xml") + '\n' + line + '\n');
    }
    int value = 7;
    EXPECT_EQ(oh_get_global_config_option(kPath.c_str(), &value, &value, &value, true), 1);
}

TEST_F(DebugSettings, OptionOutOfRangeIsToldAndKeepsTheDefault) {
    const int min = 0;
    const int max = 2;
    for (const bool inclusive : {false, true}) {
        for (int stored = min - 1; stored <= max + 1; ++stored) {
            write("agent.xml",
                  messageText("<data><system><configuration><sorting_order>" + std::to_string(stored) +
                              "</sorting_order></configuration></system></data>"));
            int value = 7;
            EXPECT_EQ(oh_get_global_config_option(kPath.c_str(), &value, &min, &max, inclusive), 0);
            const bool isInside = stored == 1 || (inclusive && stored >= min && stored <= max);
            EXPECT_EQ(value, isInside ? stored : 7);
            EXPECT_EQ(log.take(), isInside ? ""
                                           : "1 [HBX::oh_get_global_config_option] Value : " + kPath +
                                                 " must be from 0..2\n");
            EXPECT_EQ(Debug::Configuration(HBXConfiguration()).order(), stored == 1 ? 1 : 0);
            log.take();
        }
    }
}

TEST_F(DebugSettings, LevelIsReturnedWhateverItIsTheRestHasDefaults) {
    const std::string level = "1 [HBX::Debug::Configuration::level] ";
    const std::string invalid = level + "Invalid log_level value. It must be an integer between 0 and 6\n";
    const std::string unread = level + "Reconfigure. Failed to read log_level from configuration.\n";
    const std::string filter = "1 [HBX::Debug::Configuration::filter] Failed to read log_";
    const std::string noFilter =
        filter + "process_plugins from configuration.\n" + filter + "ignore_plugins from configuration.\n";
    const std::string full = "<log_func_name_level>3</log_func_name_level><log_process_plugins>a,b"
                             "</log_process_plugins><log_ignore_plugins>c</log_ignore_plugins>";
    // Level, format, what to process and what to ignore; and what is told about them.
    const std::tuple<HBXConfiguration, std::string, std::string> rows[] = {
        {withSection("system", full + "<log_level>6</log_level>"), "6 3 a,b c", ""},
        {withSection("system", full + "<log_level>7</log_level>"), "7 3 a,b c", invalid},
        {withSection("system", ""), "-1 0  ", unread + invalid + noFilter},
        {configured("<data/>"), "-1 0  ", invalid},
    };
    for (const auto& [configuration, expected, told] : rows) {
        Debug::Configuration settings(configuration);
        const std::string numbers =
            std::to_string(settings.level()) + ' ' + std::to_string(settings.format());
        const Debug::ModuleFilter modules = settings.filter();
        EXPECT_EQ(numbers + ' ' + modules.process() + ' ' + modules.ignore(), expected);
        EXPECT_EQ(log.take(), told) << expected;
    }
}

TEST_F(DebugSettings, EachCallReadsAfreshAndCopiesTakeTheSection) {
    const HBXConfiguration configuration = withSection("system", "<log_level>3</log_level>");
    Debug::Configuration first(configuration);
    EXPECT_EQ(first.level(), 3);
    OpenIterator(configuration).putValue(5, "/system/log_level");
    EXPECT_EQ(first.level(), 5);
    Debug::Configuration second(first);
    EXPECT_EQ(second.level(), 5);
    EXPECT_EQ(first.level(), -1);
    first = second;
    EXPECT_EQ(first.level(), 5);
    EXPECT_EQ(second.level(), -1);
}

} // namespace
} // namespace HBX::test
