#include <algorithm>

#include <gtest/gtest.h>

#include "SampleRecords.h"
#include "support/MessageTestUtil.h"

/// Writers of every kind straight to bytes: what comes out is what a tree would have given.
namespace HBX::test {
namespace {

using It = HBXMessageIterator;

struct Row {
    const char* what;
    int (*write)(It&);
};

const Row kWriters[] = {
    {"nothing", [](It&) { return 0; }},
    {"marks on the root",
     [](It& it) { return it.setNamespace(283), it.setComplexType("scheduler", "daily_trigger"); }},
    {"open elements", [](It& it) { return it.newChild(1), it.newChild(2), it.setNamespace(283); }},
    {"saved namespaces",
     [](It& it) {
         it.saveNamespace("common");
         it.newChild(1);
         it.putValue(1, 2);
         it.saveNamespace(0);
         it.putValue(1, 2);
         it.putValueXML("<a/>", 3);
         return it.seekUp();
     }},
    {"every putter",
     [](It& it) {
         it.putValueLongLong(-5, 1), it.putValueDouble(0.1, 2), it.putValueTimeZone(5, -30, 3);
         it.putValueBase64("abc", 4), it.putValueBase64("abc", 2, 5), it.putValue("abc", 2, 6);
         it.putValue("named", "name"), it.putValueXML("<x>", 7);
         return it.putValueTime(9, 8);
     }},
    {"refusals",
     [](It& it) {
         const int results[] = {it.newChild(0),  it.newChild(-1), it.seekUp(), it.putValue(1, -1),
                                it.newChild(""), it.seek(5),      it.seek(-1), it.setNamespace(-1)};
         return std::count(std::begin(results), std::end(results), -1) == 8 ? 0 : 3;
     }},
    {"its own failure", [](It& it) { return it.putValue(1, 5) - 7; }},
    {"a value twice", [](It& it) { return it.putValue(1, 0), it.putValue(2, 0); }},
    {"children behind a value", [](It& it) { return it.putValue(1, 0), it.putValue(2, 5), it.newChild(6); }},
    {"marks behind content",
     [](It& it) { return it.putValue(1, 5), it.setNamespace(283), it.setComplexType(283, 295); }},
    {"own names",
     [](It& it) { return it.putValue("v", "own"), it.newChild("other"), it.putValue("w", "own"); }},
    {"own namespaces and types",
     [](It& it) {
         return it.setNamespace("own"), it.setComplexType("own", "type"), it.saveNamespace("more");
     }},
    {"attributes", [](It& it) { return it.newChild(5), it.putAttr("v", 1010), it.putAttrTime(5, 1026); }},
    {"a value behind children", [](It& it) { return it.putValue(1, 5), it.putValue(2, 0); }},
    {"putting onto a finished child",
     [](It& it) { return it.newChild(5), it.seekUp(), it.putChild(5), it.putValue(1, 6); }},
    {"deletion", [](It& it) { return it.putValue(1, 5), it.putValue(1, 6), it.deleteChild(5); }},
    {"a path", [](It& it) { return it.newChild(1021), it.seek("/configuration"), it.putValue(1, 5); }},
    {"records twice",
     [](It& it) {
         return it.putObject(Leaf(), 69), it.putObject(Leaf{8, ""}, 5), it.putValue(1, 6),
                it.putObject(Leaf(), 5);
     }},
    {"ids that look alike", [](It& it) { return it.putObject(Leaf(), 5), it.putObject(Leaf(), 69); }},
    {"deletion of itself", [](It& it) { return it.newChild(5), it.deleteFromChild(), it.putValue(1, 6); }},
    {"reading back a record",
     [](It& it) {
         Leaf leaf;
         leaf.number = 99;
         it.putObject(leaf, 5);
         leaf.number = 1;
         return it.getObject(leaf, 5), it.putValue(leaf.number, 6);
     }},
    {"walking back",
     [](It& it) {
         return it.putValue(4, 5), it.putValue(4, 6), it.seekRoot(), it.firstChild(), it.nextSibling(6),
                it.putValue(5, 0);
     }},
    {"copying",
     [](It& it) {
         const Cursor other = newCursor();
         other->putValue("v", 5);
         return it.copyToChild(other.get()), it.putValue(1, 6);
     }},
    {"parsing", [](It& it) { return it.fromTextToChild("<name>x</name>"), it.putValue(1, 6); }},
    {"namespaces of children", [](It& it) { return it.putValue(1, 5), it.setNamespaceChild(283); }},
    {"a second cursor",
     [](It& it) {
         it.newChild(5);
         const Cursor other = secondCursor(it);
         it.putValue(1, 6);
         return other->putValue(2, 7);
     }},
    {"the message",
     [](It& it) {
         it.putValue(1, 5);
         const std::string bytes = bytesOf(it);
         return it.getMessage()->setOrigin(bytes.empty() ? "" : "agent");
     }},
    {"encoding another record meanwhile",
     [](It& it) {
         std::string bytes;
         it.newChild(5);
         const int result = encodeRecord(Leaf(), bytes);
         return result != 0 ? result : it.putValueBase64(bytes, 6);
     }},
    {"blocks of every size",
     [](It& it) {
         for (const std::size_t size : {0U, 120U, 130U, 16'380U, 16'390U, 100U, 2'100'000U, 1U}) {
             it.newChild(5);
             it.newChild(5);
             it.putValue(std::string(size, 'x'), 5);
             it.seekUp();
             it.seekUp();
         }
         return 0;
     }},
    {"a step too far up",
     [](It& it) { return it.newChild(5), it.seekUp(), it.seekUp(), it.putValue(1, 6), 1; }},
};

TEST(EncodingCursor, GivesTheBytesOfATree) {
    for (const Row& row : kWriters) {
        const Cursor tree = newCursor();
        const int result = row.write(*tree);
        std::string bytes = "kept";
        EXPECT_EQ(encode([&](It& it) { return row.write(it); }, bytes), result) << row.what;
        EXPECT_EQ(bytes, result == 0 ? bytesOf(*tree) : "kept") << row.what;
    }
}

/// Levels of elements, the deepest with a child that is a value.
int nest(It& it, int levels) {
    for (; levels > 1; --levels) {
        it.newChild(5);
    }
    return it.putValue(1, 5);
}

TEST(EncodingCursor, KeepsTheLimits) {
    std::string bytes = "kept";
    EXPECT_EQ(encode([](It& it) { return nest(it, 257); }, bytes), -1);
    EXPECT_EQ(encode(
                  [](It& it) {
                      for (int i = 0; i < 1'000'001; ++i) {
                          it.putValue("", 5);
                      }
                      return 0;
                  },
                  bytes),
              -1);
    EXPECT_EQ(encode([](It& it) { return it.putValue(std::string(std::size_t{256} << 20, 'x'), 5); }, bytes),
              -1);
    EXPECT_EQ(bytes, "kept");
    EXPECT_EQ(encode([](It& it) { return nest(it, 256); }, bytes), 0);
    EXPECT_NE(parseMessage(bytes), nullptr);
}

TEST(EncodingCursor, GivesBackTheMemoryOfALargeRecord) {
    std::string bytes;
    const auto write = [&](std::size_t size) {
        const std::string value(size, 'x');
        EXPECT_EQ(encode([&](It& it) { return it.putValue(value, 5); }, bytes), 0);
        std::string().swap(bytes);
    };
    write(1);
    const std::size_t before = allocatedBytes();
    write(20'000'000);
    EXPECT_LT(allocatedBytes(), before + 100'000);
}

} // namespace
} // namespace HBX::test
