#include "ConfigurationTestUtil.h"

#include <gmock/gmock.h>

#include <HBXCommon/HBXInstanceFolders.h>
#include <HBXCommon/HBXLog.h>
#include <HBXCommon/OptionManager.h>
#include <HBXFunctionalityCore/configuration/DebugConfiguration.h>

namespace HBX::test {
namespace {

using testing::ElementsAre;

const std::string kRead = "HBX::oh_read_global_config_option";
const std::string kGet = "HBX::oh_get_global_config_option";
const std::string kPath = "/data/system/configuration/sorting_order";

/// Keeps lines as "level text"; the global configuration file is one of the test's own.
class DebugSettings : public ConfigurationFile {
protected:
    DebugSettings() {
        setFolderProvider({.etc = {}, .configurationFile = [this] { return path("agent.xml"); }});
        setLogSink([this](const HBXLogLine& line) {
            lines.push_back(std::to_string(line.level) + " " + std::string(line.text));
            place = std::string(line.place.module) + " " + line.place.file + " " + line.place.function;
        });
    }
    void TearDown() override {
        setLogSink(nullptr);
        setFolderProvider({});
        debug_level = 2;
    }

    void storeOrder(const std::string& order) const {
        write("agent.xml", messageText("<data><system><configuration><sorting_order>" + order +
                                       "</sorting_order></configuration></system></data>"));
    }

    std::vector<std::string> takeLines() { return std::exchange(lines, {}); }

    std::vector<std::string> lines;
    std::string place;
};

TEST_F(DebugSettings, OptionIsReadAndToldOrKeepsTheDefault) {
    const std::string failed = "1 [" + kRead + "] ";
    const std::string unread = failed + "can't read config file: " + path("agent.xml");
    const std::string unparsed = failed + "Can't parse /data option from global config with error 1.";
    const std::tuple<std::string, std::string, int, std::string> rows[] = {
        {"", "/data", 7, unread}, // no file
        {"1", kPath, 7, failed + "Can't seek path: " + kPath},
        {"99999999999", "/data", 7, unparsed},
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
        EXPECT_THAT(takeLines(),
                    ElementsAre("4 Calling [" + kRead + "] for " + option,
                                "4 [" + kRead + "] read config file from: " + path("agent.xml"), line));
    }
    EXPECT_EQ(place, "HBXFunctionalityCore core/src/HBXCommon/OptionManager " + kRead);
    int value = 7;
    EXPECT_EQ(oh_get_global_config_option(kPath.c_str(), &value, &value, &value, true), 1);
}

TEST_F(DebugSettings, OptionOutOfRangeIsToldAndKeepsTheDefault) {
    const std::string refused = "1 [" + kGet + "] Value : " + kPath + " must be from 0..2";
    const int min = 0;
    const int max = 2;
    for (const bool inclusive : {false, true}) {
        for (int stored = min - 1; stored <= max + 1; ++stored) {
            storeOrder(std::to_string(stored));
            int value = 7;
            EXPECT_EQ(oh_get_global_config_option(kPath.c_str(), &value, &min, &max, inclusive), 0);
            const bool isInside = stored == 1 || (inclusive && stored >= min && stored <= max);
            EXPECT_EQ(value, isInside ? stored : 7);
            EXPECT_EQ(takeLines(), std::vector<std::string>(isInside ? 0 : 1, refused));
            EXPECT_EQ(Debug::Configuration(HBXConfiguration()).order(), stored == 1 ? 1 : 0);
            takeLines();
        }
    }
}

TEST_F(DebugSettings, LevelIsReturnedWhateverItIsTheRestHasDefaults) {
    const std::string level = "1 [HBX::Debug::Configuration::level] ";
    const std::string filter = "1 [HBX::Debug::Configuration::filter] Failed to read log_";
    const std::string invalid = level + "Invalid log_level value. It must be an integer between 0 and 6";
    const std::string unread = level + "Reconfigure. Failed to read log_level from configuration.";
    const std::string noProcess = filter + "process_plugins from configuration.";
    const std::string noIgnore = filter + "ignore_plugins from configuration.";
    const std::string full = "<log_func_name_level>3</log_func_name_level><log_process_plugins>a,b"
                             "</log_process_plugins><log_ignore_plugins>c</log_ignore_plugins>";
    // Level, format, what to process and what to ignore; and what is told about them.
    const std::tuple<HBXConfiguration, std::string, std::vector<std::string>> rows[] = {
        {withSection("system", full + "<log_level>0</log_level>"), "0 3 a,b c", {}},
        {withSection("system", full + "<log_level>6</log_level>"), "6 3 a,b c", {}},
        {withSection("system", full + "<log_level>7</log_level>"), "7 3 a,b c", {invalid}},
        {withSection("system", full + "<log_level>x</log_level>"), "-1 3 a,b c", {unread, invalid}},
        {withSection("system", ""), "-1 0  ", {unread, invalid, noProcess, noIgnore}},
        {configured("<data/>"), "-1 0  ", {invalid}},
    };
    for (const auto& [configuration, expected, told] : rows) {
        Debug::Configuration settings(configuration);
        std::ostringstream seen;
        seen << settings.level();
        seen << ' ' << settings.format() << ' ';
        const Debug::ModuleFilter modules = settings.filter();
        EXPECT_EQ(seen.str() + modules.process() + ' ' + modules.ignore(), expected);
        EXPECT_EQ(takeLines(), told) << expected;
    }
    EXPECT_EQ(place, "HBXFunctionalityCore core/src/HBXFunctionalityCore/HBXConfig "
                     "HBX::Debug::Configuration::level");
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
