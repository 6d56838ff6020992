#include "ConfigurationTestUtil.h"

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXMessage/HBXDerivedParsers.h>

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
    ASSERT_EQ(configuration.saveToFile(path("copy.xml")), 0) << getErrorMessage();
    EXPECT_EQ(contentOf(path("copy.xml")), contentOf(agentFile()));
}

TEST_F(ConfigurationFile, BadOnesAreToldWithTheirPlaceAndLeaveWhatWasLoaded) {
    std::filesystem::resize_file(write("huge", ""), (std::uintmax_t{256} << 20) + 1); // sparse
    const std::string good = contentOf(agentFile());
    const struct {
        std::string file;
        std::string reason;
    } rows[] = {
        {write("cut", good.substr(0, good.find("<log_rotate_size>") + 20)),
         ": line 58, column 29, /data/system/configuration/log_rotate_size: "},
        {path("huge"), "File too large"},
        {path("missing"), "No such file or directory"},
        {path(), "Is a directory"},
    };
    HBXConfiguration configuration = configured("<data/>");
    const HBXMessage* message = configuration.getMessage();
    for (const auto& row : rows) {
        EXPECT_EQ(configuration.readFromFile(row.file), -1) << row.file;
        EXPECT_NE(getErrorMessage().find(row.file), std::string::npos) << getErrorMessage();
        EXPECT_NE(getErrorMessage().find(row.reason), std::string::npos) << getErrorMessage();
        EXPECT_EQ(getErrorMessage().find('\n'), std::string::npos);
        EXPECT_EQ(configuration.getMessage(), message);
    }
}

TEST_F(ConfigurationFile, WithoutSectionsNothingIsFoundAndLittleIsMade) {
    const HBXConfiguration empty;
    EXPECT_EQ(empty.getIterator(), nullptr);
    EXPECT_EQ(empty.saveToFile(path("none")), -1);
    EXPECT_EQ(files(), 0);
    for (const char* tree : {"no message", "<other/>", "<data/>", "<data><agent/></data>"}) {
        SCOPED_TRACE(tree);
        HBXConfiguration bare = *tree == 'n' ? empty : configured(tree);
        HBXEID id = eid(1);
        HBXConnectionInfo info;
        std::map<HBXEID, HBXConnectionInfo> table;
        Slaves slaves;
        const int results[] = {bare.getEID(id),          bare.setEID(id),
                               bare.getMaster(id),       bare.delMaster(),
                               bare.delClientEnv(id),    bare.getMappingTable(table),
                               bare.removeMapping(id),   bare.findMapping(id, info),
                               bare.setMapping(id, info)};
        for (const int result : results) {
            EXPECT_EQ(result, -1);
        }
        bare.getGroupSlaves(slaves);
        EXPECT_TRUE(slaves.empty());
        EXPECT_EQ(bare.unsetMasterness(), 0);
        EXPECT_TRUE(bare.isMaster() && !bare.isSlave() && !bare.isInServerGroup());
        EXPECT_EQ(bare.getBuiltinRealm(), nullptr);
        EXPECT_EQ(id, eid(1));
        EXPECT_EQ(bare.getMessage() != nullptr ? treeOf(bare) : "no message", tree);
        // Only the writers of the server group make what is missing, and only in a message.
        const int made = bare.getMessage() != nullptr ? 0 : -1;
        EXPECT_EQ(bare.setMasterness(), made);
        EXPECT_EQ(bare.setMaster(id), made);
        EXPECT_EQ(bare.addClientEnv(id), made);
    }
}

TEST(Configuration, CopiesShareTheMessage) {
    HBXConfiguration a = withSection("agent", idText(1));
    HBXConfiguration copied = a;
    HBXEID id;
    ASSERT_EQ(a.setEID(eid(2)), 0);
    EXPECT_EQ(copied.getEID(id), 0);
    EXPECT_EQ(id, eid(2));
    const HBXConfiguration moved = std::move(a);
    copied = moved;
    EXPECT_EQ(copied.getMessage(), moved.getMessage());
    copied = HBXConfiguration();
    EXPECT_EQ(copied.getMessage(), nullptr);
    EXPECT_EQ(moved.getEID(id), 0);
}

TEST(Configuration, IdentifiersAreReplaced) {
    HBXConfiguration configuration = withSection("agent", "<id>nonsense</id>");
    HBXEID own = eid(9), master = own;
    EXPECT_EQ(configuration.getEID(own), -1);
    EXPECT_EQ(own, eid(9));
    for (const int number : {1, 2}) {
        EXPECT_EQ(configuration.setEID(eid(number)), 0);
        EXPECT_EQ(configuration.setMaster(eid(number + 2)), 0);
        EXPECT_EQ(configuration.getEID(own), 0);
        EXPECT_EQ(configuration.getMaster(master), 0);
        EXPECT_TRUE(own == eid(number) && master == eid(number + 2)) << number;
    }
    EXPECT_EQ(treeOf(configuration), "<data><agent><configuration>" + idText(2) +
                                         "</configuration></agent><server_group><configuration><master>" +
                                         idText(4) + "</master></configuration></server_group></data>");
    EXPECT_EQ(configuration.delMaster(), 0);
    EXPECT_EQ(configuration.delMaster(), -1);
}

TEST(ServerGroup, KnowsWhoIsMaster) {
    const std::string agent = "<agent><configuration>" + idText(1) + "</configuration></agent>";
    const auto group = [](const std::string& master) {
        return "<server_group><configuration><name>g</name>" + master + "</configuration></server_group>";
    };
    const struct {
        const char* name;
        std::string tree;
        bool inGroup, master, slave;
    } rows[] = {
        {"no group", agent, false, true, false},
        {"a group without a master", agent + group(""), false, true, false},
        {"a master without an identifier", agent + group("<master/>"), false, true, false},
        {"itself", agent + group("<master>" + idText(1) + "</master>"), true, true, false},
        {"another", agent + group("<master>" + idText(2) + "</master>"), true, false, true},
        {"itself unknown", group("<master>" + idText(1) + "</master>"), true, false, false},
        {"the master unreadable", agent + group("<master><id>x</id></master>"), true, false, false},
    };
    for (const auto& row : rows) {
        const HBXConfiguration configuration = configured("<data>" + row.tree + "</data>");
        EXPECT_EQ(configuration.isInServerGroup(), row.inGroup) << row.name;
        EXPECT_EQ(configuration.isMaster(), row.master) << row.name;
        EXPECT_EQ(configuration.isSlave(), row.slave) << row.name;
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
    EXPECT_EQ(configuration.delClientEnv(eid(1)), 0);
    EXPECT_EQ(treeOf(configuration),
              treeOf(withSection("server_group", "<clients><entry>" + idText(2) + "</entry><entry>" +
                                                     idText(1) + "</entry></clients>")));
    for (const int number : {1, 2}) {
        EXPECT_EQ(configuration.unsetMasterness(), -1);
        EXPECT_EQ(configuration.delClientEnv(eid(number)), 0);
        EXPECT_EQ(configuration.delClientEnv(eid(number)), -1);
    }
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

TEST(MappingTable, FirstReadableEntryOfAnIdentifierCounts) {
    const HBXConfiguration configuration = withSection(
        "agent", "<connection_table>" + mapping(1, connection("a")) + mapping(1, connection("b")) +
                     mapping(2, "") + mapping(2, connection("c")) + "<entry><id>x</id>" + connection("d") +
                     "</entry><entry/></connection_table>");
    std::map<HBXEID, HBXConnectionInfo> table;
    ASSERT_EQ(configuration.getMappingTable(table), 0);
    ASSERT_EQ(table.size(), 2U);
    EXPECT_EQ(table[eid(1)].address, "a");
    EXPECT_EQ(table[eid(2)].address, "c");
}

TEST(MappingTable, EntriesAreReplacedAppendedAndRemoved) {
    HBXConnectionInfo info, found;
    info.address = "new";
    const std::string old = "<legacy_connection>old</legacy_connection>" + connection("old");
    HBXConfiguration configuration =
        withSection("agent", "<connection_table>" + mapping(1, old) + "</connection_table>");
    EXPECT_EQ(configuration.setMapping(eid(1), info), 0);
    EXPECT_EQ(configuration.setMapping(eid(2), info), 0);
    EXPECT_EQ(treeOf(configuration),
              treeOf(withSection("agent", "<connection_table>" + mapping(1, connection("new")) +
                                              mapping(2, connection("new")) + "</connection_table>")));
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
    const struct {
        std::string settings;
        const char* name; ///< "": none
    } rows[] = {
        {builtin + "<realms>" + realm(1, good) + realm(2, good) + "</realms>", "r2"},
        {builtin + "<realms>" + realm(1, good) + "</realms>", ""},
        {builtin + "<realms>" + realm(1, "") + realm(2, good) + "</realms>", ""},
        {builtin, ""},
        {"<builtin_realm>x</builtin_realm><realms>" + realm(2, good) + "</realms>", ""},
    };
    for (const auto& row : rows) {
        const auto found = withSection("security", row.settings).getBuiltinRealm();
        EXPECT_EQ(found != nullptr ? found->name : "", row.name) << row.settings;
    }
}

TEST(ConfigurationRecord, IsACopyOfTheContentOfItsElement) {
    const HBXConfiguration configuration = withSection("agent", idText(2));
    const Cursor it = newCursor();
    ASSERT_EQ(it->putObject(configuration, 1185), 0);
    HBXConfiguration back;
    ASSERT_EQ(it->getObject(back, 1185), 0);
    EXPECT_EQ(treeOf(back), treeOf(configuration));
    ASSERT_EQ(back.setEID(eid(1)), 0);
    EXPECT_EQ(it->getObject(back, 1185), 0);
    EXPECT_TRUE(back == configuration) << "what was written into the copy stayed there";

    it->seek(1185);
    it->setComplexType(0, 0);
    boost::shared_ptr<HBXConfiguration> object;
    ASSERT_EQ(HBXReaderDerived<HBXConfiguration>()(*it, object), 0) << "unmarked, as the family's default";
    EXPECT_TRUE(*object == configuration);

    const Cursor bare = newCursor();
    EXPECT_EQ(bare->putObject(configured("<other/>"), 1185), -1);
    EXPECT_EQ(bare->getObject(back, 1185), -1) << "an element without children";
    EXPECT_TRUE(back == configuration);
}

} // namespace
} // namespace HBX::test
