#include <gmock/gmock.h>

#include "support/MessageTestUtil.h"

/// Building and changing a tree through cursors, and what other cursors then see.
namespace HBX::test {
namespace {

constexpr int kDynamic = 0x40000000;

TEST(CursorBuild, RefusesIdsAndNamesThatNameNothing) {
    const Cursor it = newCursor();
    const std::string bytes = bytesOf(*it);
    for (const int id : {-1, kDynamic, kDynamic + 1, 0x7FFFFFFF, -0x7FFFFFFF - 1}) {
        const int results[] = {it->newChild(id),          it->putChild(id),     it->putValue(5, id),
                               it->putAttr(5, id),        it->setNamespace(id), it->saveNamespace(id),
                               it->setNamespaceChild(id), it->deleteChild(id)};
        EXPECT_EQ(it->setComplexType(id, 295) + it->setComplexType(283, id), -2) << id;
        EXPECT_THAT(results, ::testing::Each(-1)) << id;
    }
    const int zeros[] = {it->newChild(0), it->putChild(0), it->putAttr(5, 0), it->newChild(""),
                         it->putChild("")};
    EXPECT_THAT(zeros, ::testing::Each(-1));
    for (const std::string& name : {std::string("a\0b", 3), std::string(1025, 'x')}) {
        const int results[] = {it->newChild(name), it->putChild(name), it->putValue("x", name),
                               it->setNamespace(name), it->setComplexType("n", name)};
        EXPECT_THAT(results, ::testing::Each(-1)) << name.size();
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
    it->putChild("made");
    it->seekUp();
    it->saveNamespace("own");
    it->putValue(2, 1026);
    it->saveNamespace("");
    it->putValue(3, 1026);
    it->saveNamespace("scheduler");
    it->copyToChild(other.get());
    it->fromTextToChild("<parsed/>");
    it->saveNamespace(0);
    it->putValue(4, 1026);
    third->putValue(5, 1026);
    EXPECT_EQ(contentText(*it), R"(<configuration hbx:ns="scheduler"><made hbx:ns="scheduler"/>)"
                                R"(<name hbx:ns="own">2</name><name>3</name>)"
                                R"(<configuration hbx:ns="scheduler"><made hbx:ns="scheduler"/>)"
                                R"(<name hbx:ns="own">2</name><name>3</name></configuration>)"
                                "<parsed/><name>4</name><name>5</name></configuration>");
    EXPECT_EQ(it->setNamespace(0), 0);
    EXPECT_EQ(it->setNamespaceChild(292), 0);
    EXPECT_EQ(it->curNamespaceID(), 0);
    it->firstChild();
    EXPECT_EQ(it->curNamespaceID(), 292);
}

/// Everything a cursor offers, on an element that is gone.
void expectStale(HBXMessageIterator& it, const std::string& bytes, const char* how) {
    SCOPED_TRACE(how);
    const Cursor fresh = newCursor();
    std::string value = "kept";
    int number = 7;
    std::int64_t time = 7;
    char* data = nullptr;
    const Cursor twin = secondCursor(it);
    EXPECT_EQ(it.curID() + it.curNamespaceID(), 0);
    EXPECT_EQ(it.curName() + it.curType() + twin->curName(), "");
    EXPECT_THAT(tryEveryChange(it), ::testing::Each(-1));
    const int moves[] = {it.seekUp(),     it.seek(1026),    it.seek("name"),      it.seekPresence(1026),
                         it.firstChild(), it.nextSibling(), it.nextSibling(1026), twin->seekUp()};
    const int reads[] = {it.getValue(number, 0), it.getValue(value, 1026), it.getValue(value, "nobody"),
                         it.getAttr(value, 1026), it.getValueTimeZone(time, number, 1026)};
    const int trees[] = {fresh->copyToChild(&it), deserializeToChild(it, bytes),
                         it.serializeFromChild(&data, &number), it.getMessage()->deserialize(&it, nullptr)};
    EXPECT_THAT(moves, ::testing::Each(-1));
    EXPECT_THAT(reads, ::testing::Each(-1));
    EXPECT_THAT(trees, ::testing::Each(-1));
    EXPECT_EQ(it.toTextFromChild(), nullptr);
    EXPECT_EQ(it.copyMessage(), nullptr);
    EXPECT_TRUE(value == "kept" && number == 7 && time == 7 && data == nullptr);
    EXPECT_EQ(bytesOf(it), bytes) << "the message as a whole is still there";
    EXPECT_EQ(it.seekRoot(), 0);
    EXPECT_EQ(it.newChild("after"), 0);
    EXPECT_EQ(twin->seek("/after"), 0);
    EXPECT_EQ(twin->deleteFromChild(), 0);
}

TEST(CursorBuild, CursorOnARemovedElementFailsUntilItIsRevived) {
    const std::string other = bytesOf(*newCursor());
    const std::pair<const char*, std::function<void(HBXMessageIterator&)>> ways[] = {
        {"deleted", [](auto& it) { it.seek("/configuration"), it.deleteFromChild(); }},
        {"init", [&](auto& it) { it.getMessage()->init(other.data(), static_cast<int>(other.size())); }},
        {"create", [](auto& it) { it.getMessage()->create(5); }},
        {"text", [](auto& it) { it.getMessage()->fromText("<configuration/>", nullptr); }},
        {"another tree", [](auto& it) { it.getMessage()->deserialize(newCursor().get(), nullptr); }},
        {"the slots used again",
         [](auto& it) {
             it.seek("/"), it.deleteChild(1021); // with what is below it
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

TEST(CursorBuild, TreeThatIsEditedForEverNeitherGrowsNorSlowsDown) {
    for (const int beside : {0, 200'000}) {
        const Cursor it = newCursor();
        for (int i = 0; i < beside; ++i) {
            it->putValue("beside", 7);
        }
        it->newChild(1021);
        const auto edit = [&](int rounds) {
            for (int i = 0; i < rounds; ++i) {
                it->putChild(1026);
                it->putValue(std::string(static_cast<std::size_t>(i % 300), 'v'), 0);
                it->putAttr(std::string(static_cast<std::size_t>(i % 100), 'a'), 1010 + i % 3);
                it->putValue(i, "named");
                it->seekUp();
                if (i % 5 == 4) {
                    it->deleteChild(1026);
                }
                if (i % 100 == 99) {
                    it->copyToChild(secondCursor(*it).get());
                    it->deleteChild(1021);
                }
            }
            return allocatedBytes();
        };
        const std::size_t before = edit(2000);
        EXPECT_LT(edit(50'000), before + 20'000 + static_cast<std::size_t>(beside) * 5);
    }
}

} // namespace
} // namespace HBX::test
