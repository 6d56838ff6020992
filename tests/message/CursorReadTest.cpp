#include <iomanip>
#include <sstream>

#include <gmock/gmock.h>

#include "support/MessageTestUtil.h"

/// What reading through a cursor promises, over a tree and over encoded bytes alike.
namespace HBX::test {
namespace {

constexpr int kDynamic = 0x40000000;

/// Runs the checks over the tree of a message, over its bytes checked, and over its bytes as they are.
void overEveryCursor(const Cursor& it, const std::function<void(const HBXMessageIterator&)>& check) {
    const auto run = [&](const HBXMessageIterator& cursor) {
        check(cursor);
        return 0;
    };
    run(*secondCursor(*it, false));
    EXPECT_EQ(readInPlace(bytesOf(*it), run), 0);
    EXPECT_EQ(readTrusted(bytesOf(*it), run), 0);
}

TEST(CursorRead, FindsChildrenByNameAndPathAndAttributes) {
    const Cursor tree = newCursor();
    tree->newChild(1021);
    tree->putAttr("replaced", 1026);
    tree->putAttr(-7, 1026);
    tree->putValue("first", 1026);
    tree->putValueXML("<x>&</x>", 1018);
    tree->putValue("o", "own");
    overEveryCursor(tree, [&](const HBXMessageIterator& it) {
        for (const char* name : {"", "configuration/name", "nobody", "/own", "/configuration//name"}) {
            EXPECT_EQ(it.seek(name), -1) << name;
            EXPECT_EQ(it.curID(), 0) << name;
        }
        EXPECT_EQ(it.seek("configuration"), 0);
        EXPECT_EQ(it.firstChild("value"), 0);
        EXPECT_EQ(it.nextSibling("own"), 0);
        std::string text = "kept";
        EXPECT_EQ(it.getAttr(text, 1026), 1);
        EXPECT_EQ(it.seek("/configuration/nobody"), -1);
        EXPECT_EQ(it.getValue(text, 0), 0);
        EXPECT_EQ(text, "o") << "still there";
        EXPECT_EQ(it.seek("/configuration/name"), 0);
        EXPECT_EQ(it.seekUp(), 0);
        int number = 5;
        EXPECT_EQ(it.getAttr(text, -1), 1);
        EXPECT_EQ(it.getAttr(number, 1026), 0);
        EXPECT_EQ(number, -7);
        EXPECT_EQ(it.seekTo(*newCursor()), -1) << "another tree";
        EXPECT_EQ(it.seek("/"), 0);
        EXPECT_EQ(it.curID(), 0);
    });
}

/// What every getter makes of one text, "!" = refused: int, int64, bool, double, time, time/zone, base64.
constexpr std::pair<const char*, const char*> kConversions[] = {
    {"0", "0|0|0|0|0|0/0|!|"},
    {" -1\t\r\n", "-1|-1|1|-1|-1|-1/0|!|"},
    {"2147483647", "2147483647|2147483647|1|2147483647|2147483647|2147483647/0|!|"},
    {"2147483648", "!|2147483648|!|2147483648|2147483648|2147483648/0|!|"},
    {"9223372036854775808", "!|!|!|9223372036854775808|!|!|!|"},
    {"", "!|!|!|!|!|!||"},
    {"true", "!|!|1|!|!|!|\xB6\xBB\x9E|"},
    {"1.5", "!|!|!|1.5|!|!|!|"},
    {"1700000000-0530", "!|!|!|!|1700000000|1700000000/-530|!|"},
    {" -5+0030 ", "!|!|!|!|-5|-5/30|!|"},
    {"5-2147483649", "!|!|!|!|!|!|!|"},
    {"5+030", "!|!|!|!|!|!|!|"},
    {"92233720368547758080+0000", "!|!|!|!|!|!|!|"},
    {" Y W\nI=", "!|!|!|!|!|!|ab|"},
};

/// "?" = absent.
template <class Id>
std::string conversionsOf(const HBXMessageIterator& it, const Id& id) {
    std::ostringstream all;
    all << std::setprecision(20);
    const auto add = [&](auto value, const auto& get) {
        const auto start = value;
        const int result = get(value);
        result == 0 ? all << value : all << (value != start ? "touched" : result == -1 ? "!" : "?");
        all << '|';
    };
    int zone = 98;
    add(99, [&](int& v) { return it.getValue(v, id); });
    add(std::int64_t{99}, [&](auto& v) { return it.getValueLongLong(v, id); });
    add(true, [&](bool& v) { return it.getValue(v, id); });
    add(99.0, [&](double& v) { return it.getValueDouble(v, id); });
    add(std::int64_t{99}, [&](auto& v) { return it.getValueTime(v, id); });
    add(std::string("kept"), [&](std::string& v) {
        std::int64_t time = 99;
        const int result = it.getValueTimeZone(time, zone, id);
        const std::string both = std::to_string(time) + '/' + std::to_string(zone);
        v = both == "99/98" ? v : both;
        return result;
    });
    add(std::string("kept"), [&](auto& v) { return it.getValueBase64(v, id); });
    return all.str();
}

TEST(CursorRead, ConvertsTextsToTheKindThatIsAskedFor) {
    for (const auto& [text, expected] : kConversions) {
        const Cursor tree = newCursor();
        tree->putValue(text, 1018);
        overEveryCursor(tree, [&, expected = expected](const HBXMessageIterator& it) {
            std::string fragment = "kept";
            EXPECT_EQ(conversionsOf(it, 1018), expected);
            EXPECT_EQ(it.getValueXML(fragment, 1018), -1);
            ASSERT_EQ(it.seek(1018), 0);
            EXPECT_EQ(conversionsOf(it, 0), expected);
        });
    }
}

TEST(CursorRead, TellsAbsentFromUnreadable) {
    const Cursor tree = newCursor();
    tree->newChild(1018);
    tree->seekUp();
    tree->newChild("own");
    tree->putValueXML(" 5 ", 0);
    overEveryCursor(tree, [](const HBXMessageIterator& it) {
        const std::string refused = "!|!|!|!|!|!|!|";
        EXPECT_EQ(conversionsOf(it, 0), refused) << "the root has no value";
        EXPECT_EQ(conversionsOf(it, 1018), refused);
        for (const int absent : {-1, 1026, kDynamic + 7}) {
            EXPECT_EQ(conversionsOf(it, absent), "?|?|?|?|?|?|?|") << absent;
        }
        EXPECT_EQ(conversionsOf(it, std::string("nobody")), "?|?|?|?|?|?|?|");
        EXPECT_EQ(conversionsOf(it, std::string("own")), "5|5|1|5|5|5/0|!|");
        std::string text;
        EXPECT_EQ(it.getValueXML(text, it.idOfName("own")), 0);
        EXPECT_EQ(text, " 5 ");
    });
}

/// By number or by name.
template <class Id>
std::string putEveryKind(const Id& id) {
    const Cursor it = newCursor();
    it->putValue(-1, id), it->putValue("a&", id), it->putValueLongLong(INT64_MIN, id);
    it->putValueDouble(0.1, id), it->putValueTime(-9, id), it->putValueTimeZone(5, -30, id);
    it->putValueBase64("abc", id);
    return contentText(*it);
}

TEST(CursorRead, PuttersWriteTheTextsOfTheirKindByNumberAndByName) {
    const std::string all = "<id>-1</id><id>a&amp;</id><id>-9223372036854775808</id><id>0.1</id><id>-9</id>"
                            "<id>5-0030</id><id>YWJj</id>";
    EXPECT_EQ(putEveryKind(1010), all);
    EXPECT_EQ(putEveryKind(std::string("id")), all);
    const Cursor it = newCursor();
    it->putValue("abc", 2, 1010), it->putValueBase64("abcd", 3, 1010);
    EXPECT_EQ(it->putValue("abc", -1, 5) + it->putValueBase64("abc", -1, 5), -2);
    EXPECT_EQ(contentText(*it), "<id>ab</id><id>YWJj</id>");
    EXPECT_EQ(it->putAttrTime(-9, 1010), 0);
    std::int64_t time = 0;
    EXPECT_EQ(it->getAttrTime(time, 1010), 0);
    EXPECT_EQ(time, -9);
}

TEST(CursorRead, BytesInPlaceCannotBeChanged) {
    readInPlace(bytesOf(*newCursor()), [](const HBXMessageIterator& reading) {
        auto& it = const_cast<HBXMessageIterator&>(reading);
        EXPECT_THAT(tryEveryChange(it), ::testing::Each(-1));
        return 0;
    });
}

} // namespace
} // namespace HBX::test
