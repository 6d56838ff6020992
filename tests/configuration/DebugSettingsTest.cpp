#include "ConfigurationTestUtil.h"

#include <gmock/gmock.h>

#include <HBXCommon/HBXInstanceFolders.h>
#include <HBXCommon/HBXLog.h>
#include <HBXCommon/OptionManager.h>
#include <HBXFunctionalityCore/configuration/DebugConfiguration.h>

namespace HBX::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kRead = "HBX::oh_read_global_config_option";
const std::string kGet = "HBX::oh_get_global_config_option";
const std::string kPath = "/data/system/configuration/sorting_order";

/// Keeps lines as "level text"; the global configuration file is one of the test's own.
class DebugSettings : public FolderTest {
protected:
    DebugSettings() {
        setFolderProvider({.etc = {}, .configurationFile = [this] { return path("agent.xml"); }});
        setLogSink([this](const HBXLogLine& line) {
            lines.push_back(std::to_string(line.level) + " " + std::string(line.text));
            places.push_back(std::string(line.place.module) + " " + line.place.file + " " +
                             line.place.function);
        });
    }
    ~DebugSettings() override {
        setLogSink(nullptr);
        setFolderProvider({});
        debug_level = 2;
    }

    void writeSystem(const std::string& settings) const {
        (void)write("agent.xml", messageText("<data><system><configuration>" + settings +
                                             "</configuration></system></data>"));
    }

    std::vector<std::string> takeLines() { return std::exchange(lines, {}); }

    std::vector<std::string> lines;
    std::vector<std::string> places;
};

TEST_F(DebugSettings, OptionIsReadAndTold) {
    writeSystem("<sorting_order>1</sorting_order>");
    debug_level = 4;
    int value = 7;
    EXPECT_EQ(oh_read_global_config_option(kPath.c_str(), &value), 0);
    EXPECT_EQ(value, 1);
    EXPECT_THAT(takeLines(), ElementsAre("4 Calling [" + kRead + "] for " + kPath,
                                         "4 [" + kRead + "] read config file from: " + path("agent.xml"),
                                         "4 Get 1 for " + kPath));
    EXPECT_EQ(places[0], "HBXFunctionalityCore core/src/HBXCommon/OptionManager " + kRead);
}

TEST_F(DebugSettings, OptionFailuresAreToldAndKeepTheDefault) {
    const struct {
        const char* file; ///< null: none
        const char* path;
        std::string line;
    } rows[] = {
        {nullptr, "/data", "can't read config file: " + path("agent.xml")},
        {"<message", "/data", "can't read config file: " + path("agent.xml")},
        {"<data/>", kPath.c_str(), "Can't seek path: " + kPath},
        {"<data/>", "/data", "Can't parse /data option from global config with error 1."},
        {"<data>many</data>", "/data", "Can't parse /data option from global config with error 1."},
        {"<data>99999999999</data>", "/data", "Can't parse /data option from global config with error 1."},
    };
    for (const auto& row : rows) {
        if (row.file != nullptr) {
            (void)write("agent.xml", row.file);
        }
        int value = 7;
        EXPECT_EQ(oh_read_global_config_option(row.path, &value), 1) << row.line;
        EXPECT_EQ(value, 7);
        EXPECT_THAT(takeLines(), ElementsAre("1 [" + kRead + "] " + row.line));
    }
}

TEST_F(DebugSettings, OptionOutOfRangeIsToldAndKeepsTheDefault) {
    const struct {
        int stored;
        bool inclusive;
        int value;
    } rows[] = {{0, true, 0},  {2, true, 2},  {1, true, 1},  {-1, true, 7}, {3, true, 7},
                {0, false, 7}, {2, false, 7}, {1, false, 1}, {3, false, 7}};
    for (const auto& row : rows) {
        writeSystem("<sorting_order>" + std::to_string(row.stored) + "</sorting_order>");
        int value = 7;
        int min = 0;
        int max = 2;
        EXPECT_EQ(oh_get_global_config_option(kPath.c_str(), &value, &min, &max, row.inclusive), 0);
        EXPECT_EQ(value, row.value) << row.stored << row.inclusive;
        if (value == 7) {
            EXPECT_THAT(takeLines(), ElementsAre("1 [" + kGet + "] Value : " + kPath + " must be from 0..2"));
        } else {
            EXPECT_THAT(takeLines(), IsEmpty());
        }
    }
    (void)write("agent.xml", "<data/>");
    int value = 7;
    EXPECT_EQ(oh_get_global_config_option(kPath.c_str(), &value, &value, &value, true), 1);
}

TEST_F(DebugSettings, OrderIsThatOfTheGlobalFile) {
    const struct {
        const char* stored;
        int order;
    } rows[] = {{"0", 0}, {"1", 1}, {"2", 0}, {"-1", 0}, {"up", 0}, {"", 0}};
    Debug::Configuration settings(configured("<data><system><configuration><sorting_order>1</sorting_order>"
                                             "</configuration></system></data>"));
    EXPECT_EQ(settings.order(), 0) << "there is no global file";
    takeLines();
    for (const auto& row : rows) {
        writeSystem("<sorting_order>" + std::string(row.stored) + "</sorting_order>");
        EXPECT_EQ(settings.order(), row.order) << row.stored;
    }
    EXPECT_THAT(lines,
                testing::Contains("1 [" + kGet + "] Value : " + kPath + " must be from 0..1").Times(2));
}

const std::string kInvalid =
    "1 [HBX::Debug::Configuration::level] Invalid log_level value. It must be an integer "
    "between 0 and 6";
const std::string kUnreadable =
    "1 [HBX::Debug::Configuration::level] Reconfigure. Failed to read log_level from configuration.";

TEST_F(DebugSettings, LevelIsReturnedWhateverItIs) {
    const struct {
        const char* tree;
        int level;
        std::vector<std::string> lines;
    } rows[] = {
        {"<data><system><configuration><log_level>0</log_level></configuration></system></data>", 0, {}},
        {"<data><system><configuration><log_level>6</log_level></configuration></system></data>", 6, {}},
        {"<data><system><configuration><log_level>7</log_level></configuration></system></data>",
         7,
         {kInvalid}},
        {"<data><system><configuration><log_level>-2</log_level></configuration></system></data>",
         -2,
         {kInvalid}},
        {"<data><system><configuration><log_level>x</log_level></configuration></system></data>",
         -1,
         {kUnreadable, kInvalid}},
        {"<data><system><configuration/></system></data>", -1, {kUnreadable, kInvalid}},
        {"<data><system/></data>", -1, {kUnreadable, kInvalid}},
        {"<data/>", -1, {kInvalid}},
        {"", -1, {kInvalid}},
    };
    for (const auto& row : rows) {
        Debug::Configuration settings(configured(row.tree));
        EXPECT_EQ(settings.level(), row.level) << row.tree;
        EXPECT_EQ(takeLines(), row.lines) << row.tree;
    }
    EXPECT_EQ(places[0], "HBXFunctionalityCore core/src/HBXFunctionalityCore/HBXConfig "
                         "HBX::Debug::Configuration::level");
    Debug::Configuration none{HBXConfiguration()};
    EXPECT_EQ(none.level(), -1);
    EXPECT_THAT(takeLines(), ElementsAre(kInvalid));
}

TEST_F(DebugSettings, FormatAndFilterHaveDefaults) {
    const std::string prefix = "1 [HBX::Debug::Configuration::filter] Failed to read ";
    Debug::Configuration full(configured(
        "<data><system><configuration><log_func_name_level>3</log_func_name_level><log_process_plugins>a,b"
        "</log_process_plugins><log_ignore_plugins>c</log_ignore_plugins></configuration></system></data>"));
    EXPECT_EQ(full.format(), 3);
    EXPECT_EQ(full.filter().process(), "a,b");
    EXPECT_EQ(full.filter().ignore(), "c");
    EXPECT_THAT(takeLines(), IsEmpty());

    Debug::Configuration hollow(configured("<data><system><configuration/></system></data>"));
    EXPECT_EQ(hollow.format(), 0);
    EXPECT_THAT(takeLines(), IsEmpty());
    const Debug::ModuleFilter filter = hollow.filter();
    EXPECT_EQ(filter.process() + filter.ignore(), "");
    EXPECT_THAT(takeLines(), ElementsAre(prefix + "log_process_plugins from configuration.",
                                         prefix + "log_ignore_plugins from configuration."));

    Debug::Configuration bare(configured("<data/>"));
    EXPECT_EQ(bare.format(), 0);
    EXPECT_EQ(bare.filter().process(), "");
    EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(DebugSettings, EachCallReadsAfreshAndCopiesTakeTheSection) {
    const HBXConfiguration configuration =
        configured("<data><system><configuration><log_level>3</log_level></configuration></system></data>");
    Debug::Configuration first(configuration);
    EXPECT_EQ(first.level(), 3);
    OpenIterator(configuration).putValue(5, "/system/log_level");
    EXPECT_EQ(first.level(), 5);
    Debug::Configuration second(first);
    EXPECT_EQ(second.level(), 5);
    EXPECT_EQ(first.level(), -1);
    first = second;
    Debug::Configuration& same = first;
    first = same;
    EXPECT_EQ(first.level(), 5);
    EXPECT_EQ(second.level(), -1);
}

} // namespace
} // namespace HBX::test
