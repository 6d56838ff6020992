#include "VocabularyTestUtil.h"

namespace HBX::test {
namespace {

using MapCursor = std::unique_ptr<HBXVocMapIterator>;

std::string named(const std::string& name, const std::string& version = "") {
    return "<name>" + name + "</name>" + (version.empty() ? "" : "<version>" + version + "</version>");
}

/// By name: "a" (two versions, of which the first counts), "b" without a root, "c".
Message threeVocabularies() {
    return textMessage(vocEntry(named("c", "1"), {"c:net", "p:x,net", "p:only_c,net"}) +
                       vocEntry(named("a"), {"c:net,t", "p:x,t", "p:y,net", "p:vocversion=7"}) +
                       vocEntry(named("a", "8"), {"p:hidden"}) + "<vocabulary>" + named("b", "1") +
                       "</vocabulary><vocabulary><version>9</version></vocabulary>");
}

std::string idText(const HBXVocID& id) { return id.name.toString() + ' ' + id.version; }

/// Result, vocabulary and place: "0 a 7 x".
template <class Call>
std::string step(HBXVocMapIterator& it, const Call& call) {
    const int result = call(it);
    return std::to_string(result) + ' ' + idText(it.getVocID()) + ' ' + placeOf(&it);
}

/// Identifiers of all vocabularies of a message in document order, and the name of their first parameter.
std::string contentOf(const Message& map) {
    std::string content;
    const Cursor it = rootOf(map);
    for (int found = it->seek(1871); found == 0; found = it->nextSibling(1871)) {
        HBXVocID id;
        EXPECT_EQ(it->getObject(id, 0), 0);
        const HBXVocPrototype voc(it->copyMessage());
        const VocCursor parameter(voc.read());
        content += idText(id) + ' ' + walkParameters(*parameter, {}) + "| ";
    }
    return content;
}

TEST(VocID, TakesItsVersionFromTheNearestPlace) {
    const std::string kept = "old 5"; // does not read
    const std::pair<std::string, std::string> rows[] = {
        {named("n", "1") + vocText({"p:vocversion=2"}), "n 1"},
        {named("n") + "<version></version>" + vocText({"p:vocversion=2"}), "n "},
        {named("n") + vocText({"c:vocversion", "p:x=1", "p:vocversion=2", "p:vocversion=3"}), "n 2"},
        {named("n"), "n "},
        {R"(<name hbx:kind="text"></name>)", " "},
        {"<name></name>", kept},
        {named(std::string(255, 'n')), std::string(255, 'n') + ' '},
        {named(std::string(256, 'n'), "1"), kept},
        {R"(<name hbx:enc="base64">YQBi</name>)", kept}, // a zero byte within
    };
    for (const auto& [content, expected] : rows) {
        const Cursor it = rootOf(textMessage("<vocabulary>" + content + "</vocabulary>"));
        ASSERT_EQ(it->seek(1871), 0);
        HBXVocID id("old", "5");
        EXPECT_EQ(it->getObject(id, 0), expected == kept ? -1 : 0) << content;
        EXPECT_EQ(idText(id), expected);
        EXPECT_EQ(it->curID(), 1871) << "the cursor is back";
    }
}

TEST(VocID, OrdersByNameThenVersionByteByByte) {
    const HBXVocID ordered[] = {{nullptr, ""}, {nullptr, "9"}, {"Z", ""},       {"a", "10"},
                                {"a", "9"},    {"aa", ""},     {"\xC3\xA4", ""}};
    const HBXVocMap::HBXVocIDSortUniqueName byName;
    for (const HBXVocID& a : ordered) {
        for (const HBXVocID& b : ordered) {
            EXPECT_EQ(a < b, &a < &b) << idText(a) << " < " << idText(b);
            EXPECT_EQ(a == b, &a == &b);
            EXPECT_EQ(byName(a, b), a.name < b.name);
        }
    }
    EXPECT_FALSE(byName({"a", "1"}, {"a", "2"}));
}

TEST(VocID, TooLongANameOrNoMessageInCodeEndsTheProgram) {
    const std::string longest(255, 'n');
    EXPECT_EQ(HBXVocID(longest.c_str(), "").name.toString(), longest);
    for (const std::string& place : {abortOf([&] { HBXVocID((longest + 'n').c_str(), ""); }),
                                     abortOf([] { const HBXVocMapIterator it(nullptr, {}); })}) {
        EXPECT_EQ(place.find("HBXFunctionalityCore core/src/HBXFunctionalityCore/HBXVoc:"), 0U) << place;
    }
}

TEST(VocMapIterator, MeetsEachNameOnceInOrder) {
    const Message map = threeVocabularies();
    HBXVocMapIterator it(map.get(), {});
    EXPECT_EQ(step(it, [](auto&) { return 0; }), "0 a 7 agent");
    EXPECT_EQ(step(it, [](auto& i) { return i.nextVocabulary(); }), "0 b 1 vocabulary");
    EXPECT_EQ(step(it, [](auto& i) { return i.seekRoot(); }), "-1 b 1 vocabulary");
    EXPECT_EQ(step(it, [](auto& i) { return i.nextVocabulary(); }), "0 c 1 agent");
    const MapCursor copy(it.newIterator());
    EXPECT_EQ(step(it, [](auto& i) { return i.nextVocabulary(); }), "-1   agent");
    EXPECT_EQ(step(it, [](auto& i) { return i.nextParameter(); }), "-1   agent");
    EXPECT_EQ(step(*copy, [](auto& i) { return i.firstParameter("net"); }), "0 a 7 y");
    EXPECT_EQ(step(*copy, [](auto& i) { return i.nextParameter("net"); }), "0 c 1 x");
    EXPECT_EQ(step(it, [](auto& i) { return i.firstVocabulary(); }), "0 a 7 agent");

    HBXVocMapIterator some(map.get(), {{"c", "no such version"}, {"z", ""}});
    EXPECT_EQ(step(some, [](auto& i) { return i.seekParameter("x"); }), "0 c 1 x");
    EXPECT_EQ(step(some, [](auto& i) { return i.seekParameter("y"); }), "-1   agent");
    EXPECT_EQ(HBXVocMapIterator(newMessage().get(), {}).firstVocabulary(), -1);
}

TEST(VocMapIterator, SearchesGoOnInTheNextVocabulary) {
    HBXVocMapIterator it(threeVocabularies().get(), {});
    EXPECT_EQ(step(it, [](auto& i) { return i.seekParameter("x"); }), "0 a 7 x");
    EXPECT_EQ(step(it, [](auto& i) { return i.seekParameter("only_c"); }), "0 c 1 only_c");
    EXPECT_EQ(step(it, [](auto& i) { return i.seekCategory("net"); }), "0 a 7 net");
    EXPECT_EQ(step(it, [](auto& i) { return i.seekParameter("hidden"); }), "-1   agent");
    EXPECT_EQ(walkParameters(it, {}), "x y vocversion x only_c ");
    EXPECT_EQ(walkParameters(it, {"net"}), "y x only_c ");
    EXPECT_EQ(step(it, [](auto& i) { return i.firstCategory("t"); }), "0 a 7 net");
    EXPECT_EQ(step(it, [](auto& i) { return i.nextCategory(); }), "0 c 1 net");
}

TEST(VocMapIterator, FindsBackIntoItsVocabularyFromAnywhere) {
    const Message map = threeVocabularies();
    HBXVocMapIterator it(map.get(), {});
    ASSERT_EQ(it.seekParameter("y"), 0); // in the second vocabulary of the document
    for (const char* place : {"/", "/vocabulary/data/agent/category"}) {
        it.seek(place);
        EXPECT_EQ(step(it, [](auto& i) { return i.seekRoot() + i.firstChild(1017) + i.nextSibling(1017); }),
                  "0 a 7 y")
            << place;
    }
    EXPECT_EQ(walkParameters(dynamic_cast<HBXVocIterator&>(it), {"net"}), "y x only_c ");
    rootOf(map)->deleteChild(1871);
    EXPECT_EQ(it.seekRoot(), -1);
    EXPECT_EQ(it.seekParameter("x"), -1);
}

TEST(VocMap, AnswersForAllVocabulariesThatAreAdmitted) {
    HBXVocMap map(threeVocabularies().detach(), {});
    EXPECT_TRUE(map.isFeatureEnabled("only_c"));
    EXPECT_FALSE(map.isFeatureEnabled("net"));
    EXPECT_EQ(placeOf(MapCursor(map.read()).get()), "agent");
    EXPECT_EQ(MapCursor(map.readParameter("y"))->getVocID().version, "7");
    EXPECT_EQ(step(*MapCursor(map.readCategory("t")), [](auto& i) { return i.firstParameter(); }), "0 a 7 x");

    ASSERT_EQ(map.setRestrictVocSet({"a"}), 0);
    EXPECT_FALSE(map.isFeatureEnabled("only_c"));
    EXPECT_EQ(map.setRestrictVocSet({"c", std::string(256, 'n')}), -1);
    EXPECT_FALSE(map.isFeatureEnabled("only_c")) << "a refused set changes nothing";
    const HBXVocMap copy(map);
    ASSERT_EQ(map.setRestrictVocSet({}), 0);
    EXPECT_TRUE(map.isFeatureEnabled("only_c"));
    EXPECT_FALSE(copy.isFeatureEnabled("only_c"));

    map.reset(nullptr);
    EXPECT_EQ(map.read(), nullptr);
    EXPECT_EQ(map.readParameter("x"), nullptr);
    EXPECT_EQ(map.erase({"a", "7"}), -1);
    EXPECT_TRUE(copy.isFeatureEnabled("x"));
}

TEST(VocMap, InsertReplacesOneOfTheSameNameAndVersion) {
    const Message map = newMessage();
    ASSERT_EQ(HBXVocMap::insert(map.get(), {"a", "1"}, vocOf({"p:x"})), 0);
    ASSERT_EQ(HBXVocMap::insert(map.get(), {"a", "2"}, vocOf({"p:y"})), 0);
    ASSERT_EQ(HBXVocMap::insert(map.get(), {"a", "1"}, vocOf({"p:z"})), 0);
    EXPECT_EQ(contentOf(map), "a 2 y | a 1 z | ");

    // From a cursor: whatever element it stands on, with the version of its own content.
    const Cursor source =
        rootOf(textMessage("<info>" + named("a") + vocText({"p:vocversion=2"}) + "<time>5</time></info>"));
    EXPECT_EQ(HBXVocMap::insert(map.get(), source.get()), -1) << "no identifier";
    ASSERT_EQ(source->firstChild(), 0);
    ASSERT_EQ(HBXVocMap::insert(map.get(), source.get()), 0);
    EXPECT_EQ(contentOf(map), "a 1 z | a 2 vocversion | ");
    const Cursor own = rootOf(map);
    ASSERT_EQ(own->seek(1871), 0);
    ASSERT_EQ(HBXVocMap::insert(map.get(), own.get()), 0) << "one of the map itself";
    EXPECT_EQ(contentOf(map), "a 2 vocversion | a 1 z | ");

    EXPECT_EQ(HBXVocMap::insert(map.get(), {"a", "1"}, nullptr), -1);
    EXPECT_EQ(HBXVocMap::insert(map.get(), {"a", "1"}, new HBXVocPrototype()), -1);
    EXPECT_EQ(HBXVocMap::insert(nullptr, {"a", "1"}, vocOf({})), -1);
    EXPECT_EQ(contentOf(map), "a 2 vocversion | a 1 z | ") << "a failure changes nothing";

    HBXVocMap over(map->copy(false), {});
    EXPECT_EQ(over.erase({"a", "3"}), -1);
    EXPECT_EQ(over.erase({"a", "2"}), 0);
    EXPECT_EQ(contentOf(map), "a 1 z | ");
}

} // namespace
} // namespace HBX::test
