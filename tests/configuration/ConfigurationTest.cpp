#include "ConfigurationTestUtil.h"

#include <gmock/gmock.h>

#include <HBXCommon/HBXErrorMessage.h>

namespace HBX::test {
namespace {

using Slaves = std::set<HBXEID, HBXEnvIDComparator>;

TEST_F(ConfigurationFile, SavesWhatItReads) {
    HBXConfiguration configuration;
    ASSERT_EQ(configuration.readFromFile(agentFile()), 0) << getErrorMessage();
    EXPECT_EQ(configuration.getBuiltinRealm()->name, "System");
    std::map<HBXEID, HBXConnectionInfo> table;
    EXPECT_EQ(configuration.getMappingTable(table), 0);
    EXPECT_EQ(table.size(), 2U);
    const std::string file = path("copy.xml");
    ASSERT_EQ(configuration.saveToFile(file), 0) << getErrorMessage();
    EXPECT_EQ(contentOf(file), contentOf(agentFile()));
}

TEST_F(ConfigurationFile, BadOnesAreToldWithTheirPlaceAndLeaveWhatWasLoaded) {
    std::filesystem::resize_file(write("huge", ""), (std::uintmax_t{256} << 20) + 1); // sparse
    const std::string good = contentOf(agentFile());
    write("cut", good.substr(0, good.find("<log_rotate_size>") + 20));
    const std::pair<const char*, const char*> rows[] = {
        {"cut", ": line 58, column 29, /data/system/configuration/log_rotate_size: "},
        {"huge", "File too large"},
    };
    HBXConfiguration configuration = configured("<data/>");
    const HBXMessage* message = configuration.getMessage();
    for (const auto& [file, reason] : rows) {
        EXPECT_EQ(configuration.readFromFile(path(file)), -1) << file;
        EXPECT_NE(getErrorMessage().find(path(file)), std::string::npos) << getErrorMessage();
        EXPECT_NE(getErrorMessage().find(reason), std::string::npos) << getErrorMessage();
        EXPECT_EQ(configuration.getMessage(), message);
    }
}

TEST_F(ConfigurationFile, WithoutSectionsNothingIsFoundAndLittleIsMade) {
    const HBXConfiguration empty;
    EXPECT_EQ(empty.getIterator(), nullptr);
    EXPECT_EQ(empty.saveToFile(path("none")), -1);
    EXPECT_EQ(files(), 0);
    for (HBXConfiguration bare : {empty, configured("<other/>"), configured("<data><agent/></data>")}) {
        const bool hasMessage = bare.getMessage() != nullptr;
        const std::string tree = hasMessage ? treeOf(bare) : "";
        HBXEID id = eid(1);
        HBXConnectionInfo info;
        std::map<HBXEID, HBXConnectionInfo> table;
        EXPECT_THAT(
            (std::vector<int>{bare.getEID(id), bare.setEID(id), bare.getMaster(id), bare.delMaster(),
                              bare.delClientEnv(id), bare.getMappingTable(table), bare.removeMapping(id),
                              bare.findMapping(id, info), bare.setMapping(id, info)}),
            testing::Each(-1));
        Slaves slaves;
        bare.getGroupSlaves(slaves);
        EXPECT_TRUE(slaves.empty());
        EXPECT_EQ(bare.unsetMasterness(), 0);
        EXPECT_TRUE(bare.isMaster() && !bare.isSlave() && !bare.isInServerGroup());
        EXPECT_EQ(bare.getBuiltinRealm(), nullptr);
        EXPECT_EQ(hasMessage ? treeOf(bare) : "", tree);
        // Only the writers of the server group make what is missing, and only in a message.
        EXPECT_THAT((std::vector<int>{bare.setMasterness(), bare.setMaster(id), bare.addClientEnv(id)}),
                    testing::Each(hasMessage ? 0 : -1));
    }
}

TEST(Configuration, IdentifiersAreReplacedInAllCopies) {
    HBXConfiguration configuration = withSection("agent", "<id>nonsense</id>");
    HBXConfiguration copied = configuration;
    HBXEID own = eid(9), master = own;
    EXPECT_EQ(configuration.getEID(own), -1);
    EXPECT_EQ(own, eid(9));
    for (const int number : {1, 2}) {
        EXPECT_EQ(configuration.setEID(eid(number)), 0);
        EXPECT_EQ(configuration.setMaster(eid(number + 2)), 0);
        EXPECT_EQ(copied.getEID(own), 0);
        EXPECT_EQ(copied.getMaster(master), 0);
        EXPECT_TRUE(own == eid(number) && master == eid(number + 2)) << number;
    }
    copied = HBXConfiguration();
    EXPECT_EQ(copied.getMessage(), nullptr);
    EXPECT_EQ(configuration.delMaster(), 0);
    EXPECT_EQ(configuration.delMaster(), -1);
}

TEST(ServerGroup, KnowsWhoIsMaster) {
    const std::string agent = "<agent><configuration>" + idText(1) + "</configuration></agent>";
    const auto group = [](const std::string& master) {
        return "<server_group><configuration><name>g</name>" + master + "</configuration></server_group>";
    };
    const std::pair<std::string, const char*> rows[] = {
        {agent, "master"},
        {agent + group("<master/>"), "master"},
        {agent + group("<master>" + idText(1) + "</master>"), "in group, master"},
        {agent + group("<master>" + idText(2) + "</master>"), "in group, slave"},
        {group("<master>" + idText(1) + "</master>"), "in group, "}, // itself is unknown
        {agent + group("<master><id>x</id></master>"), "in group, "},
    };
    for (const auto& [tree, role] : rows) {
        const HBXConfiguration configuration = configured("<data>" + tree + "</data>");
        const std::string seen = configuration.isInServerGroup() ? "in group, " : "";
        EXPECT_EQ(seen + (configuration.isMaster() ? "master" : "") +
                      (configuration.isSlave() ? "slave" : ""),
                  role)
            << tree;
    }
}

TEST(ServerGroup, ClientsKeepMasterness) {
    HBXConfiguration configuration = configured("");
    for (const int number : {1, 2, 1}) {
        EXPECT_EQ(configuration.addClientEnv(eid(number)), 0);
    }
    EXPECT_EQ(configuration.setMasterness(), 0);
    Slaves slaves = {eid(9)};
    configuration.getGroupSlaves(slaves);
    EXPECT_EQ(slaves, (Slaves{eid(1), eid(2), eid(9)}));
    for (const int number : {1, 1, 2}) { // one entry at a time
        EXPECT_EQ(configuration.unsetMasterness(), -1);
        EXPECT_EQ(configuration.delClientEnv(eid(number)), 0);
    }
    EXPECT_EQ(configuration.delClientEnv(eid(2)), -1);
    EXPECT_EQ(configuration.unsetMasterness(), 0);
    EXPECT_EQ(treeOf(configuration), treeOf(withSection("server_group", "")));
}

std::string mapping(int number, const std::string& content) {
    return "<entry>" + idText(number) + content + "</entry>";
}
/// With the marks of its type, as it is written.
std::string connection(const std::string& address) {
    return "<connection_info hbx:tns=\"auth\" hbx:type=\"connection_info\"><address hbx:ns=\"auth\">" +
           address + "</address></connection_info>";
}

HBXConfiguration withTable(const std::string& entries) {
    return withSection("agent", "<connection_table>" + entries + "</connection_table>");
}

TEST(MappingTable, FirstReadableEntryOfAnIdentifierCounts) {
    const HBXConfiguration configuration =
        withTable(mapping(1, connection("a")) + mapping(1, connection("b")) + mapping(2, "") +
                  mapping(2, connection("c")) + "<entry><id>x</id>" + connection("d") + "</entry><entry/>");
    std::map<HBXEID, HBXConnectionInfo> table;
    ASSERT_EQ(configuration.getMappingTable(table), 0);
    EXPECT_EQ(table.size(), 2U);
    EXPECT_TRUE(table[eid(1)].address == "a" && table[eid(2)].address == "c");
}

TEST(MappingTable, EntriesAreReplacedAppendedAndRemoved) {
    HBXConnectionInfo info, found;
    info.address = "new";
    HBXConfiguration configuration =
        withTable(mapping(1, "<legacy_connection>old</legacy_connection>" + connection("old")));
    EXPECT_EQ(configuration.setMapping(eid(1), info), 0);
    EXPECT_EQ(configuration.setMapping(eid(2), info), 0);
    EXPECT_EQ(treeOf(configuration),
              treeOf(withTable(mapping(1, connection("new")) + mapping(2, connection("new")))));
    EXPECT_EQ(configuration.findMapping(eid(2), found), 0);
    EXPECT_TRUE(found == info);
    EXPECT_EQ(configuration.removeMapping(eid(1)), 0);
    EXPECT_EQ(configuration.removeMapping(eid(1)), -1);
    EXPECT_EQ(configuration.findMapping(eid(1), found), -1);
    EXPECT_EQ(withSection("agent", "").setMapping(eid(1), info), 0) << "the table itself is created";
}

TEST(Realms, BuiltinOneIsFoundUnlessTheListIsDamaged) {
    const auto realm = [](int number, const std::string& type) {
        return "<realm>" + idText(number) + "<name>r" + std::to_string(number) + "</name>" + type +
               "</realm>";
    };
    const std::string good = "<realm_type>0</realm_type>";
    const std::string builtin = "<builtin_realm>" + eid(2).toString() + "</builtin_realm>";
    const std::pair<std::string, const char*> rows[] = {
        {builtin + "<realms>" + realm(1, good) + realm(2, good) + "</realms>", "r2"},
        {builtin + "<realms>" + realm(1, good) + "</realms>", ""},
        {builtin + "<realms>" + realm(1, "") + realm(2, good) + "</realms>", ""},
        {"<builtin_realm>x</builtin_realm><realms>" + realm(2, good) + "</realms>", ""},
    };
    for (const auto& [settings, name] : rows) {
        const auto found = withSection("security", settings).getBuiltinRealm();
        EXPECT_EQ(found != nullptr ? found->name : "", name) << settings;
    }
}

TEST(ConfigurationRecord, IsACopyOfTheContentOfItsElement) {
    const HBXConfiguration configuration = withSection("agent", idText(2));
    const Cursor it = newCursor();
    ASSERT_EQ(it->putObject(configuration, 1185), 0);
    HBXConfiguration back;
    ASSERT_EQ(it->getObject(back, 1185), 0);
    ASSERT_EQ(back.setEID(eid(1)), 0);
    EXPECT_EQ(it->getObject(back, 1185), 0);
    EXPECT_TRUE(back == configuration) << "what was written into the copy stayed there";
    const Cursor bare = newCursor();
    EXPECT_EQ(bare->putObject(configured("<other/>"), 1185), -1);
    EXPECT_EQ(bare->getObject(back, 1185), -1) << "an element without children";
    EXPECT_TRUE(back == configuration);
}

} // namespace
} // namespace HBX::test
