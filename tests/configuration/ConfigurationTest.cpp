#include "ConfigurationTestUtil.h"

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXMessage/HBXDerivedParsers.h>

namespace HBX::test {
namespace {

HBXEID eid(int number) { return HBXEID(HBXGUID(1, number)); }
std::string idText(int number) { return "<id>" + eid(number).toString() + "</id>"; }

/// A configuration with one section, of this content.
HBXConfiguration withSection(const std::string& section, const std::string& settings) {
    return configured("<data><" + section + "><configuration>" + settings + "</configuration></" + section +
                      "></data>");
}

using ConfigurationFile = FolderTest;

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

TEST_F(ConfigurationFile, EmptyOneFailsEverywhereAndCrashesNowhere) {
    HBXConfiguration empty;
    HBXEID id = eid(1);
    HBXGUID realm;
    HBXConnectionInfo info;
    std::map<HBXEID, HBXConnectionInfo> table;
    std::set<HBXEID, HBXEnvIDComparator> slaves;
    EXPECT_EQ(empty.getMessage(), nullptr);
    EXPECT_EQ(empty.getIterator(), nullptr);
    EXPECT_EQ(empty.saveToFile(path("none")), -1);
    const int results[] = {empty.getEID(id),
                           empty.setEID(id),
                           empty.getMaster(id),
                           empty.setMaster(id),
                           empty.delMaster(),
                           empty.setMasterness(),
                           empty.addClientEnv(id),
                           empty.delClientEnv(id),
                           empty.getMappingTable(table),
                           empty.findMapping(id, info),
                           empty.setMapping(id, info),
                           empty.removeMapping(id),
                           empty.getBuiltinRealmID(realm)};
    for (const int result : results) {
        EXPECT_EQ(result, -1);
    }
    EXPECT_EQ(empty.unsetMasterness(), 0);
    EXPECT_FALSE(empty.isInServerGroup());
    EXPECT_TRUE(empty.isMaster());
    EXPECT_FALSE(empty.isSlave());
    EXPECT_EQ(empty.getBuiltinRealm(), nullptr);
    empty.getGroupSlaves(slaves);
    EXPECT_TRUE(slaves.empty());
    EXPECT_EQ(id, eid(1));
    EXPECT_EQ(files(), 0);
}

TEST_F(ConfigurationFile, BadFilesAreToldWithTheirPlaceAndLeaveWhatWasLoaded) {
    std::string deep, closing;
    for (int level = 0; level < 300; ++level) {
        deep += "<level>";
        closing += "</level>";
    }
    const std::string good = contentOf(agentFile());
    std::filesystem::create_directory(path("folder"));
    std::ofstream(path("huge")) << "";
    std::filesystem::resize_file(path("huge"), (std::uintmax_t{256} << 20) + 1); // sparse
    const struct {
        std::string file;
        std::string reason;
    } rows[] = {
        {write("empty", ""), ": line 1, column 1"},
        {write("text", "log_level=4\n"), ": line 1, column 1"},
        {write("cut", good.substr(0, good.find("<log_rotate_size>") + 20)),
         ": line 58, column 29, /data/system/configuration/log_rotate_size: "},
        {write("crossed", messageText("<data><system>\n<configuration></system>")),
         ": line 2, column 18, /data/system/configuration: "},
        {write("deep", messageText(deep + closing)), "more than 256 levels of elements"},
        {path("huge"), "File too large"},
        {path("missing"), "No such file or directory"},
        {path("folder"), "Is a directory"},
    };
    HBXConfiguration configuration =
        configured("<data><s><configuration><a>1</a></configuration></s></data>");
    const HBXMessage* message = configuration.getMessage();
    for (const auto& row : rows) {
        clearErrorMessage();
        EXPECT_EQ(configuration.readFromFile(row.file), -1) << row.file;
        EXPECT_NE(getErrorMessage().find(row.file), std::string::npos) << getErrorMessage();
        EXPECT_NE(getErrorMessage().find(row.reason), std::string::npos) << getErrorMessage();
        EXPECT_EQ(getErrorMessage().find('\n'), std::string::npos);
        EXPECT_EQ(configuration.getMessage(), message);
    }
    for (std::size_t length = 0; length + 2 < good.size(); length += 97) {
        EXPECT_EQ(configuration.readFromFile(write("cut", good.substr(0, length))), -1) << length;
    }
    EXPECT_EQ(treeOf(configuration), "<data><s><configuration><a>1</a></configuration></s></data>");
}

TEST_F(ConfigurationFile, WithoutATopElementLoadsButAnswersNothing) {
    HBXConfiguration configuration;
    ASSERT_EQ(configuration.readFromFile(write("other.xml", messageText("<other/>"))), 0);
    HBXEID id;
    EXPECT_EQ(configuration.getEID(id), -1);
    EXPECT_EQ(configuration.setEID(eid(1)), -1);
    EXPECT_EQ(configuration.delMaster(), -1);
    EXPECT_EQ(treeOf(configuration), "<other/>");
    EXPECT_EQ(configuration.setMasterness(), 0) << "the server group's writers create it";
    EXPECT_EQ(treeOf(configuration), "<other/><data><server_group><configuration><clients/></configuration>"
                                     "</server_group></data>");
}

TEST(Configuration, CopiesShareTheMessage) {
    HBXConfiguration a = withSection("agent", idText(1));
    const HBXConfiguration copied = a;
    HBXConfiguration assigned;
    assigned = copied;
    assigned = a; // the same message already
    HBXEID id;
    ASSERT_EQ(a.setEID(eid(2)), 0);
    EXPECT_EQ(copied.getMessage(), a.getMessage());
    EXPECT_EQ(copied.getEID(id), 0);
    EXPECT_EQ(id, eid(2));
    const HBXConfiguration moved = std::move(a);
    EXPECT_EQ(moved.getEID(id), 0);
    EXPECT_EQ(assigned.getMessage(), moved.getMessage());
    assigned = HBXConfiguration();
    EXPECT_EQ(assigned.getMessage(), nullptr);
}

TEST(Configuration, IdentifierIsReplacedInItsSectionOnly) {
    const struct {
        const char* tree;
        int result;
    } rows[] = {{"<data><agent><configuration/></agent></data>", 0},
                {"<data><agent/></data>", -1},
                {"<data/>", -1},
                {"", -1}};
    for (const auto& row : rows) {
        HBXConfiguration configuration = configured(row.tree);
        HBXEID id = eid(9);
        EXPECT_EQ(configuration.getEID(id), -1);
        EXPECT_EQ(id, eid(9));
        EXPECT_EQ(configuration.setEID(eid(1)), row.result) << row.tree;
        EXPECT_EQ(configuration.setEID(eid(2)), row.result);
        EXPECT_EQ(configuration.getEID(id), row.result);
        EXPECT_EQ(treeOf(configuration), row.result == 0 ? "<data><agent><configuration>" + idText(2) +
                                                               "</configuration></agent></data>"
                                                         : row.tree);
    }
    HBXEID id;
    EXPECT_EQ(withSection("agent", "<id>nonsense</id>").getEID(id), -1);
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
        EXPECT_EQ(treeOf(configuration), "<data>" + row.tree + "</data>") << row.name;
    }
}

TEST(ServerGroup, MasterComesAndGoes) {
    HBXConfiguration configuration = configured("");
    EXPECT_EQ(configuration.delMaster(), -1);
    EXPECT_EQ(configuration.setMaster(eid(1)), 0);
    EXPECT_EQ(configuration.setMaster(eid(2)), 0);
    EXPECT_EQ(treeOf(configuration), "<data><server_group><configuration><master>" + idText(2) +
                                         "</master></configuration></server_group></data>");
    HBXEID id;
    EXPECT_EQ(configuration.getMaster(id), 0);
    EXPECT_EQ(id, eid(2));
    EXPECT_EQ(configuration.delMaster(), 0);
    EXPECT_EQ(configuration.delMaster(), -1);
    EXPECT_EQ(configuration.getMaster(id), -1);
}

TEST(ServerGroup, ClientsKeepMasterness) {
    HBXConfiguration configuration = configured("<data/>");
    std::set<HBXEID, HBXEnvIDComparator> slaves = {eid(9)};
    EXPECT_EQ(configuration.unsetMasterness(), 0);
    EXPECT_EQ(treeOf(configuration), "<data/>");
    EXPECT_EQ(configuration.delClientEnv(eid(1)), -1);
    for (const int number : {1, 2, 1}) {
        EXPECT_EQ(configuration.addClientEnv(eid(number)), 0);
    }
    EXPECT_EQ(configuration.setMasterness(), 0);
    configuration.getGroupSlaves(slaves);
    EXPECT_EQ(slaves, (std::set<HBXEID, HBXEnvIDComparator>{eid(1), eid(2), eid(9)}));
    EXPECT_EQ(configuration.unsetMasterness(), -1);
    EXPECT_EQ(configuration.delClientEnv(eid(1)), 0);
    EXPECT_EQ(treeOf(configuration), "<data><server_group><configuration><clients><entry>" + idText(2) +
                                         "</entry><entry>" + idText(1) +
                                         "</entry></clients></configuration></server_group></data>");
    EXPECT_EQ(configuration.delClientEnv(eid(1)), 0);
    EXPECT_EQ(configuration.delClientEnv(eid(1)), -1);
    EXPECT_EQ(configuration.unsetMasterness(), -1);
    EXPECT_EQ(configuration.delClientEnv(eid(2)), 0);
    EXPECT_EQ(configuration.unsetMasterness(), 0);
    EXPECT_EQ(treeOf(configuration), "<data><server_group><configuration/></server_group></data>");
}

std::string mapping(int number, const std::string& content) {
    return "<entry>" + idText(number) + content + "</entry>";
}
std::string connection(const std::string& address) {
    return "<connection_info><address>" + address + "</address></connection_info>";
}
/// The same as it is written: with the marks of its type.
std::string written(const std::string& address) {
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
    HBXConnectionInfo info;
    info.address = "new";
    HBXConfiguration configuration = withSection(
        "agent", "<connection_table>" +
                     mapping(1, "<legacy_connection>old</legacy_connection>" + connection("old")) +
                     "</connection_table>");
    EXPECT_EQ(configuration.setMapping(eid(1), info), 0);
    EXPECT_EQ(configuration.setMapping(eid(2), info), 0);
    EXPECT_EQ(treeOf(configuration), "<data><agent><configuration><connection_table>" +
                                         mapping(1, written("new")) + mapping(2, written("new")) +
                                         "</connection_table></configuration></agent></data>");
    HBXConnectionInfo found;
    EXPECT_EQ(configuration.findMapping(eid(2), found), 0);
    EXPECT_TRUE(found == info);
    EXPECT_EQ(configuration.removeMapping(eid(1)), 0);
    EXPECT_EQ(configuration.removeMapping(eid(1)), -1);
    EXPECT_EQ(configuration.findMapping(eid(1), found), -1);

    for (const char* tree : {"", "<data/>", "<data><agent/></data>"}) {
        HBXConfiguration bare = configured(tree);
        EXPECT_EQ(bare.setMapping(eid(1), info), -1) << tree;
        EXPECT_EQ(treeOf(bare), tree);
    }
    HBXConfiguration first = withSection("agent", "");
    EXPECT_EQ(first.setMapping(eid(1), info), 0) << "the table itself is created";
}

TEST(Realms, BuiltinOneIsFoundUnlessTheListIsDamaged) {
    const auto realm = [](int number, const std::string& type) {
        return "<realm>" + idText(number) + "<name>r" + std::to_string(number) + "</name>" + type +
               "</realm>";
    };
    const std::string good = "<realm_type>0</realm_type>";
    const std::string builtin = "<builtin_realm>" + HBXGUID(1, 2).toString() + "</builtin_realm>";
    const struct {
        std::string settings;
        const char* name; ///< null: none
    } rows[] = {
        {builtin + "<realms>" + realm(1, good) + realm(2, good) + "</realms>", "r2"},
        {builtin + "<realms>" + realm(1, good) + "</realms>", nullptr},
        {builtin + "<realms>" + realm(1, "") + realm(2, good) + "</realms>", nullptr},
        {builtin + "<realms/>", nullptr},
        {builtin, nullptr},
        {"<builtin_realm>x</builtin_realm><realms>" + realm(2, good) + "</realms>", nullptr},
        {"<realms>" + realm(2, good) + "</realms>", nullptr},
    };
    for (const auto& row : rows) {
        const auto found = withSection("security", row.settings).getBuiltinRealm();
        ASSERT_EQ(found != nullptr, row.name != nullptr) << row.settings;
        EXPECT_EQ(found != nullptr ? found->name : "", row.name != nullptr ? row.name : "");
    }
}

TEST(ConfigurationRecord, TravelsAsTheContentOfItsElement) {
    HBXConfiguration configuration;
    ASSERT_EQ(configuration.readFromFile(agentFile()), 0);
    const Cursor it = newCursor();
    ASSERT_EQ(it->putObject(configuration, 1185), 0);
    HBXConfiguration back = configured("<data/>");
    ASSERT_EQ(it->getObject(back, 1185), 0);
    EXPECT_EQ(treeOf(back), treeOf(configuration));
    EXPECT_TRUE(back == configuration);
    ASSERT_EQ(back.setEID(eid(1)), 0);
    EXPECT_TRUE(back != configuration) << "the message was copied";

    boost::shared_ptr<HBXConfiguration> object;
    it->seek(1185);
    EXPECT_EQ(it->curType(), "computer:configuration");
    EXPECT_EQ(HBXReaderDerived<HBXConfiguration>()(*it, object), 0);
    EXPECT_TRUE(*object == configuration);
    it->setComplexType(0, 0);
    EXPECT_EQ(HBXReaderDerived<HBXConfiguration>()(*it, object), 0) << "unmarked, as the family's default";
}

TEST(ConfigurationRecord, NothingIsNoConfiguration) {
    const Cursor it = newCursor();
    EXPECT_EQ(it->putObject(HBXConfiguration(), 1185), -1);
    EXPECT_EQ(it->putObject(configured("<other/>"), 1185), -1);
    HBXConfiguration kept = configured("<data/>");
    EXPECT_EQ(it->getObject(kept, 1185), -1) << "an element without children";
    EXPECT_EQ(treeOf(kept), "<data/>");
}

TEST(ConfigurationRecord, IsComparedByItsBytes) {
    const HBXConfiguration empty, a = configured("<data><a/></data>"), b = configured("<data><b/></data>");
    EXPECT_TRUE(a == configured("<data><a/></data>"));
    EXPECT_TRUE(a != b);
    EXPECT_TRUE((a < b) != (b < a));
    EXPECT_TRUE(empty < a && empty < b);
    EXPECT_TRUE(empty == HBXConfiguration());
}

} // namespace
} // namespace HBX::test
