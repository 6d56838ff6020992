#include <gmock/gmock.h>

#include "support/MessageTestUtil.h"

/// Building a tree through cursors, and changing it for ever.
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

TEST(CursorBuild, TreeThatIsEditedForEverDoesNotGrow) {
    const Cursor it = newCursor();
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
    EXPECT_LT(edit(50'000), before + 20'000);
}

} // namespace
} // namespace HBX::test
