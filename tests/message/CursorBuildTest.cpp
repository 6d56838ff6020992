#include <gmock/gmock.h>

#include "support/MessageTestUtil.h"

/// Building and changing a tree through cursors, and what other cursors then see.
namespace HBX::test {
namespace {

constexpr int kDynamic = 0x40000000;

std::string text(const HBXMessageIterator& it) {
    std::string text = takeText(it.toText());
    const std::size_t start = text.find("v=\"1\"");
    return start == std::string::npos ? text : text.substr(start + 5, text.rfind("</message>") - start - 5);
}

/// The content below the root in text form.
std::string below(const HBXMessageIterator& it) {
    const std::string all = text(it);
    return all.empty() || all[0] != '>' ? all : all.substr(1);
}

TEST(CursorBuild, AppendsChildrenAndValues) {
    const Cursor it = newCursor();
    EXPECT_EQ(it->newChild(1021), 0);
    EXPECT_EQ(it->putValue(1, 1026), 0);
    EXPECT_EQ(it->putValue("2", 1026), 0);
    EXPECT_EQ(it->putValue("123", 1, 1026), 0) << "one byte";
    EXPECT_EQ(it->putValue("own", "own"), 0);
    int first = 0;
    EXPECT_EQ(it->getValue(first, 1026), 0);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(it->putValue("here", 0), 0);
    EXPECT_EQ(it->putValue("there", 0), 0);
    EXPECT_EQ(it->putChild(1026), 0);
    EXPECT_EQ(it->putValue("one", 0), 0);
    EXPECT_EQ(it->seekUp(), 0);
    EXPECT_EQ(it->putChild(1018), 0);
    EXPECT_EQ(it->seekUp(), 0);
    EXPECT_EQ(it->putChild("own"), 0);
    EXPECT_EQ(it->curName(), "own");
    EXPECT_EQ(below(*it),
              "<configuration "
              "hbx:kind=\"text\">there<name>one</name><name>2</name><name>1</name><own>own</own><value/>"
              "</configuration>");
}

TEST(CursorBuild, RefusesIdsAndNamesThatNameNothing) {
    const Cursor it = newCursor();
    const std::string bytes = bytesOf(*it);
    for (const int id : {-1, kDynamic, kDynamic + 1, 0x7FFFFFFF, -0x7FFFFFFF - 1}) {
        EXPECT_EQ(it->newChild(id), -1) << id;
        EXPECT_EQ(it->putChild(id), -1) << id;
        EXPECT_EQ(it->putValue(5, id), -1) << id;
        EXPECT_EQ(it->putAttr(5, id), -1) << id;
        EXPECT_EQ(it->setNamespace(id), -1) << id;
        EXPECT_EQ(it->saveNamespace(id), -1) << id;
        EXPECT_EQ(it->setNamespaceChild(id), -1) << id;
        EXPECT_EQ(it->setComplexType(id, 295), -1) << id;
        EXPECT_EQ(it->setComplexType(283, id), -1) << id;
        EXPECT_EQ(it->deleteChild(id), -1) << id;
    }
    EXPECT_EQ(it->newChild(0), -1);
    EXPECT_EQ(it->putChild(0), -1);
    EXPECT_EQ(it->putAttr(5, 0), -1);
    EXPECT_EQ(it->putValue("abc", -1, 5), -1);
    EXPECT_EQ(it->putValueBase64("abc", -1, 5), -1);
    for (const std::string& name : {std::string(), std::string("a\0b", 3), std::string(1025, 'x')}) {
        EXPECT_EQ(it->newChild(name), -1);
        EXPECT_EQ(it->putChild(name), -1);
        EXPECT_EQ(it->putValue("x", name), -1);
        if (!name.empty()) {
            EXPECT_EQ(it->setNamespace(name), -1) << "could not be written";
            EXPECT_EQ(it->saveNamespace(name), -1);
            EXPECT_EQ(it->setComplexType(name, "t"), -1);
            EXPECT_EQ(it->setComplexType("n", name), -1);
        }
    }
    EXPECT_EQ(bytesOf(*it), bytes);
    EXPECT_EQ(it->newChild(std::string(1024, 'x')), 0);
    EXPECT_NE(parseMessage(bytesOf(*it)), nullptr);
}

TEST(CursorBuild, SavedNamespaceReachesWhatThisCursorCreates) {
    const Cursor it = newCursor();
    const Cursor other = secondCursor(*it);
    EXPECT_EQ(it->saveNamespace(283), 0);
    it->newChild(1021);
    const Cursor third = secondCursor(*it);
    it->putValue(1, 1026);
    it->putChild("made");
    it->seekUp();
    it->saveNamespace("own");
    it->putChild("made");
    it->seekUp();
    it->putValue(2, 1026);
    it->saveNamespace("");
    it->putValue(3, 1026);
    it->saveNamespace("scheduler");
    it->copyToChild(other.get());
    it->fromTextToChild("<parsed/>");
    it->saveNamespace(0);
    it->putValue(4, 1026);
    third->putValue(5, 1026);
    EXPECT_EQ(below(*it),
              R"(<configuration hbx:ns="scheduler"><name hbx:ns="scheduler">1</name>)"
              R"(<made hbx:ns="scheduler"/><name hbx:ns="own">2</name><name>3</name>)"
              R"(<configuration hbx:ns="scheduler"><name hbx:ns="scheduler">1</name>)"
              R"(<made hbx:ns="scheduler"/><name hbx:ns="own">2</name><name>3</name></configuration>)"
              "<parsed/><name>4</name><name>5</name></configuration>");
    EXPECT_EQ(it->setNamespace(0), 0);
    EXPECT_EQ(it->setNamespaceChild(292), 0);
    EXPECT_EQ(it->curNamespaceID(), 0);
    it->firstChild();
    EXPECT_EQ(it->curNamespaceID(), 292);
    it->putValue(1, 7);
    it->firstChild();
    EXPECT_EQ(it->curNamespaceID(), 0) << "direct children only, and those of then";
}

TEST(CursorBuild, FoldsTypeNamesAndTakesMarksAway) {
    const Cursor byId = newCursor();
    const Cursor byName = newCursor();
    byId->setComplexType(283, 295);
    byName->setComplexType("scheduler", "daily_trigger");
    byId->setNamespace(283);
    byName->setNamespace("scheduler");
    EXPECT_EQ(bytesOf(*byId), bytesOf(*byName));
    const struct {
        int ns, type;
        const char* shown;
    } rows[] = {{0, 295, "daily_trigger"},
                {283, 0, "scheduler:"},
                {9999, 295, "daily_trigger"},
                {283, 9999, "scheduler:"}};
    for (const auto& row : rows) {
        EXPECT_EQ(byId->setComplexType(row.ns, row.type), 0);
        EXPECT_EQ(byId->curType(), row.shown);
        const Message again = parseMessage(bytesOf(*byId));
        EXPECT_EQ(rootOf(again)->curType(), row.shown);
    }
    byId->setComplexType(0, 0);
    byName->setComplexType("", "");
    byName->setNamespace("");
    byId->setNamespace(0);
    EXPECT_EQ(byId->curType(), "");
    EXPECT_EQ(bytesOf(*byId), bytesOf(*newCursor()));
    EXPECT_EQ(bytesOf(*byName), bytesOf(*newCursor()));
}

TEST(CursorBuild, AttributesReplaceAndKeepTheirOrder) {
    const Cursor a = newCursor();
    const Cursor b = newCursor();
    const auto named = [](HBXMessageIterator& it, const char* name) {
        const Cursor scratch = secondCursor(it);
        scratch->newChild(name);
        const int id = scratch->curID();
        scratch->deleteFromChild();
        return id;
    };
    const auto fill = [&](HBXMessageIterator& it, std::initializer_list<const char*> names) {
        for (const char* name : names) {
            EXPECT_EQ(it.putAttr("old", named(it, name)), 0);
            EXPECT_EQ(it.putAttr(name, named(it, name)), 0);
        }
    };
    fill(*a, {"zz", "name", "aa", "value"});
    fill(*b, {"value", "aa", "name", "unused", "zz"});
    EXPECT_NE(bytesOf(*a), bytesOf(*b));
    fill(*a, {"unused"});
    EXPECT_EQ(bytesOf(*a), bytesOf(*b));
    EXPECT_EQ(text(*a), text(*b));
}

TEST(CursorBuild, CopiesWithoutMoving) {
    const Cursor it = newCursor();
    it->newChild(1021);
    it->setNamespace("own");
    it->putValue("v", "named");
    const Cursor root = secondCursor(*it, false);
    EXPECT_EQ(it->copyToChild(root.get()), 0) << "an ancestor, and a root: its children";
    EXPECT_EQ(it->curID(), 1021);
    EXPECT_EQ(it->copyToChild(it.get()), 0) << "itself";
    const std::string inner = R"(<configuration hbx:ns="own"><named>v</named></configuration>)";
    EXPECT_EQ(below(*it), R"(<configuration hbx:ns="own"><named>v</named>)" + inner +
                              R"(<configuration hbx:ns="own"><named>v</named>)" + inner +
                              "</configuration></configuration>");
    const Cursor target = newCursor();
    target->newChild("other first name");
    target->seekUp();
    it->seek("named");
    EXPECT_EQ(target->copyToChild(it.get()), 0);
    EXPECT_EQ(below(*target), "<hbx:element hbx:name=\"other first name\"/><named>v</named>");
    EXPECT_EQ(target->copyToChild(nullptr), -1);
}

TEST(CursorBuild, DeletesChildrenAndItself) {
    const Cursor it = newCursor();
    it->newChild(1021);
    for (const int id : {1, 2, 1, 3, 1}) {
        it->putValue(id, id);
    }
    EXPECT_EQ(it->deleteChild(1), 0);
    EXPECT_EQ(it->deleteChild(1), -1);
    EXPECT_EQ(it->seek(3), 0);
    EXPECT_EQ(it->deleteFromChild(), 0);
    EXPECT_EQ(it->curID(), 1021);
    int two = 0;
    EXPECT_EQ(it->getValue(two, 2), 0);
    EXPECT_EQ(it->firstChild(), 0);
    EXPECT_EQ(it->nextSibling(), -1);
    it->seekRoot();
    EXPECT_EQ(it->deleteFromChild(), -1);
}

/// Everything a cursor offers, on an element that is gone.
void expectStale(HBXMessageIterator& it, const std::string& bytes, const char* how) {
    SCOPED_TRACE(how);
    const Cursor fresh = newCursor();
    std::string value = "kept";
    int number = 7;
    std::int64_t time = 7;
    char* data = nullptr;
    EXPECT_EQ(it.curID(), 0);
    EXPECT_EQ(it.curNamespaceID(), 0);
    EXPECT_EQ(it.curName(), "");
    EXPECT_EQ(it.curType(), "");
    const Cursor twin = secondCursor(it);
    EXPECT_EQ(twin->curName(), "");
    const int results[] = {it.seekUp(),
                           it.seek(1026),
                           it.seek("name"),
                           it.seek("/nobody"),
                           it.seekPresence(1026),
                           it.firstChild(),
                           it.nextSibling(),
                           it.nextSibling(1026),
                           it.newChild(1026),
                           it.newChild("n"),
                           it.putChild(1026),
                           it.deleteChild(1026),
                           it.deleteFromChild(),
                           it.copyToChild(fresh.get()),
                           fresh->copyToChild(&it),
                           it.setNamespace(283),
                           it.setNamespace("n"),
                           it.saveNamespace(283),
                           it.saveNamespace("n"),
                           it.setNamespaceChild(283),
                           it.setComplexType(283, 295),
                           it.setComplexType("n", "t"),
                           it.getValue(number, 0),
                           it.getValue(value, 1026),
                           it.getValue(value, "name"),
                           it.getValue(value, "nobody"),
                           it.getValueTimeZone(time, number, 1026),
                           it.putValue(1, 0),
                           it.putValue("x", 1026),
                           it.putValue("x", "n"),
                           it.getAttr(value, 1026),
                           it.putAttr("x", 1026),
                           it.serializeFromChild(&data, &number),
                           deserializeToChild(it, bytes),
                           it.fromTextToChild("<a/>"),
                           it.getMessage()->serialize(&data, &number, &it, 0),
                           it.getMessage()->deserialize(&it, nullptr),
                           it.getMessage()->deserialize(bytes.data(), static_cast<int>(bytes.size()), &it),
                           twin->seekUp()};
    EXPECT_THAT(results, ::testing::Each(-1));
    EXPECT_EQ(it.toTextFromChild(), nullptr);
    EXPECT_EQ(it.copyMessage(), nullptr);
    EXPECT_TRUE(value == "kept" && number == 7 && time == 7 && data == nullptr);
    EXPECT_EQ(bytesOf(it), bytes) << "the message as a whole is still there";
    EXPECT_EQ(it.seekRoot(), 0);
    EXPECT_EQ(it.curID(), 0);
    EXPECT_EQ(it.newChild(1026), 0);
    EXPECT_EQ(it.deleteFromChild(), 0);
    EXPECT_EQ(it.newChild("after"), 0);
    EXPECT_EQ(twin->seek("/after"), 0);
    EXPECT_EQ(twin->deleteFromChild(), 0);
}

TEST(CursorBuild, CursorOnARemovedElementFailsUntilItIsRevived) {
    const std::string other = bytesOf(*newCursor());
    const std::pair<const char*, std::function<void(HBXMessageIterator&)>> ways[] = {
        {"deleted", [](auto& it) { it.seek("/configuration"), it.deleteFromChild(); }},
        {"an ancestor deleted as a child", [](auto& it) { it.seek("/"), it.deleteChild(1021); }},
        {"init", [&](auto& it) { it.getMessage()->init(other.data(), static_cast<int>(other.size())); }},
        {"create", [](auto& it) { it.getMessage()->create(5); }},
        {"create with a child", [](auto& it) { it.getMessage()->create("configuration"); }},
        {"text", [](auto& it) { it.getMessage()->fromText("<configuration/>", nullptr); }},
        {"another tree",
         [](auto& it) {
             const Cursor tree = newCursor();
             tree->newChild(1021);
             it.getMessage()->deserialize(tree.get(), nullptr);
         }},
        {"the slots used again",
         [](auto& it) {
             it.seek("/"), it.deleteChild(1021);
             for (int i = 0; i < 20; ++i) {
                 it.putValue(i, 1026);
             }
         }},
    };
    for (const auto& [how, change] : ways) {
        const Cursor it = newCursor();
        it->newChild(1021);
        it->putValue("x", 1026);
        it->newChild(1018);
        it->putValue("y", 1026);
        const Cursor changer = secondCursor(*it);
        change(*changer);
        expectStale(*it, bytesOf(*changer), how);
    }
}

TEST(CursorBuild, CursorOutlivesTheReferenceOfItsMaker) {
    HBXMessage* message = HBXMsgFactory::createNew();
    const Cursor it(message->newIterator());
    it->putValue("x", 1026);
    message->destroy();
    std::string value;
    EXPECT_EQ(it->getValue(value, 1026), 0);
    EXPECT_EQ(it->getMessage(), message);
}

TEST(CursorBuild, TreeThatIsEditedForEverDoesNotGrow) {
    const Cursor it = newCursor();
    it->newChild(1021);
    const auto edit = [&](int rounds) {
        for (int i = 0; i < rounds; ++i) {
            it->putChild(1026);
            it->putValue(std::string(static_cast<std::size_t>(i % 300), 'v'), 0);
            it->setComplexType(283, i % 2 == 0 ? 295 : 0);
            it->putAttr(std::string(static_cast<std::size_t>(i % 100), 'a'), 1010 + i % 3);
            it->putValue(i, "named");
            it->seekUp();
            if (i % 5 == 4) {
                it->deleteChild(1026);
            }
            if (i % 100 == 99) {
                const Cursor root = secondCursor(*it, false);
                it->copyToChild(root.get());
                it->deleteChild(1021);
            }
        }
    };
    edit(2000);
    const std::size_t before = allocatedBytes();
    edit(50'000);
    EXPECT_LT(allocatedBytes(), before + 20'000);
    EXPECT_LT(bytesOf(*it).size(), 200U);
}

TEST(CursorBuild, SmallEditsOfALargeTreeStayCheap) {
    const Cursor it = newCursor();
    for (int i = 0; i < 200'000; ++i) {
        it->newChild(7);
        it->seekUp();
    }
    it->newChild(8);
    const std::string value(100, 'v');
    for (int i = 0; i < 200'000; ++i) {
        it->putValue(value, 0);
    }
    EXPECT_EQ(it->curID(), 8);
}

} // namespace
} // namespace HBX::test
