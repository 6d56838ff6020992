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

/// /configuration { name "first", value, name "second", <own> "o" }
Cursor sampleTree() {
    Cursor it = newCursor();
    it->newChild(1021);
    it->setComplexType(283, 295);
    it->setNamespace(283);
    it->putAttr("text", 1010);
    it->putAttr(-7, 1026);
    it->putValue("first", 1026);
    it->putValueXML("<x>&</x>", 1018);
    it->putValue("second", 1026);
    it->putValue("o", "own");
    return it;
}

std::string valueHere(const HBXMessageIterator& it) {
    std::string value = "-";
    it.getValue(value, 0);
    return value;
}

TEST(CursorRead, FindsTheFirstOfEqualIdsInAnyOrderOfAsking) {
    const Cursor tree = newCursor();
    const int ids[] = {5, 69, 5, 6, 133, 6, 7}; // 5, 69 and 133 share a bit of a 64-bit mask
    for (std::size_t i = 0; i < std::size(ids); ++i) {
        tree->putValue(static_cast<int>(i), ids[i]);
    }
    overEveryCursor(tree, [&](const HBXMessageIterator& it) {
        std::uint32_t random = 1;
        for (int round = 0; round < 500; ++round) {
            random = random * 1664525U + 1013904223U;
            const int wanted = (random >> 28 & 1) != 0 ? 4711 : ids[(random >> 16) % std::size(ids)];
            int expected = -1;
            for (int i = 0; expected < 0 && i < static_cast<int>(std::size(ids)); ++i) {
                expected = ids[i] == wanted ? i : -1;
            }
            int found = -1;
            EXPECT_EQ(it.getValue(found, wanted), expected < 0 ? 1 : 0) << round;
            EXPECT_EQ(found, expected) << round;
            EXPECT_EQ(it.seekPresence(wanted), expected < 0 ? -1 : 0) << round;
            if ((random >> 29 & 1) != 0 && it.seek(wanted) == 0) {
                EXPECT_EQ(valueHere(it), std::to_string(expected)) << round;
                it.nextSibling();
                it.seekUp();
            }
        }
    });
}

TEST(CursorRead, FindsChildrenByNameAndPathAndAttributes) {
    overEveryCursor(sampleTree(), [](const HBXMessageIterator& it) {
        for (const char* name : {"", "name", "own", "configuration/name", "nobody", "/own",
                                 "/configuration/nobody", "/configuration//name", "//configuration"}) {
            EXPECT_EQ(it.seek(name), -1) << name;
            EXPECT_EQ(it.curID(), 0) << name;
        }
        EXPECT_EQ(it.seek("configuration"), 0);
        EXPECT_EQ(it.firstChild("value"), 0);
        EXPECT_EQ(it.nextSibling("own"), 0);
        EXPECT_EQ(it.nextSibling("own"), -1);
        std::string text = "kept";
        EXPECT_EQ(it.getAttr(text, 1010), 1);
        EXPECT_EQ(it.seek("/configuration/nobody"), -1);
        EXPECT_EQ(valueHere(it), "o");
        EXPECT_EQ(it.seek("/configuration/name"), 0);
        EXPECT_EQ(valueHere(it), "first");
        EXPECT_EQ(it.seekUp(), 0);
        int number = 5;
        EXPECT_EQ(it.getAttr(number, 1010), -1);
        EXPECT_EQ(it.getAttr(text, -1), 1);
        EXPECT_EQ(text, "kept");
        EXPECT_EQ(it.getAttr(number, 1026), 0);
        EXPECT_EQ(number, -7);
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
    {"007", "7|7|1|7|7|7/0|!|"},
    {"+1", "!|!|!|!|!|!|!|"},
    {"1 2", "!|!|!|!|!|!|!|"},
    {"", "!|!|!|!|!|!||"},
    {"true", "!|!|1|!|!|!|\xB6\xBB\x9E|"},
    {"1.5", "!|!|!|1.5|!|!|!|"},
    {"1e999", "!|!|!|!|!|!|!|"},
    {"nan", "!|!|!|nan|!|!|!|"},
    {"1700000000-0530", "!|!|!|!|1700000000|1700000000/-530|!|"},
    {" -5+0030 ", "!|!|!|!|-5|-5/30|!|"},
    {"5-2147483649", "!|!|!|!|!|!|!|"},
    {"5+030", "!|!|!|!|!|!|!|"},
    {"5 +0030", "!|!|!|!|!|!|!|"},
    {"92233720368547758080+0000", "!|!|!|!|!|!|!|"},
    {"YWI=", "!|!|!|!|!|!|ab|"},
    {" Y W\nI=", "!|!|!|!|!|!|ab|"},
    {"YWJ=", "!|!|!|!|!|!|!|"},
};

std::string conversionsOf(const HBXMessageIterator& it, int id) {
    std::ostringstream all;
    all << std::setprecision(20);
    const auto add = [&](auto value, const auto& get) {
        const auto start = value;
        const int result = get(value);
        result == 0 ? all << value : all << (result == -1 && value == start ? "!" : "touched");
        all << '|';
    };
    std::int64_t time = 99;
    int zone = 98;
    add(99, [&](int& v) { return it.getValue(v, id); });
    add(std::int64_t{99}, [&](auto& v) { return it.getValueLongLong(v, id); });
    add(true, [&](bool& v) { return it.getValue(v, id); });
    add(99.0, [&](double& v) { return it.getValueDouble(v, id); });
    add(std::int64_t{99}, [&](auto& v) { return it.getValueTime(v, id); });
    if (it.getValueTimeZone(time, zone, id) == 0) {
        all << time << '/' << zone << '|';
    } else {
        all << (time == 99 && zone == 98 ? "!|" : "touched|");
    }
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
        const auto results = [&](const auto& id) {
            int number = 9;
            std::string text = "t";
            bool flag = true;
            std::int64_t time = 9;
            double real = 9;
            const int all[] = {it.getValue(number, id),     it.getValue(text, id),
                               it.getValue(flag, id),       it.getValueLongLong(time, id),
                               it.getValueDouble(real, id), it.getValueTime(time, id),
                               it.getValueBase64(text, id), it.getValueTimeZone(time, number, id)};
            EXPECT_TRUE(number == 9 && text == "t" && flag && time == 9 && real == 9);
            EXPECT_THAT(all, ::testing::Each(all[0]));
            return all[0];
        };
        EXPECT_EQ(results(0), -1) << "the root has no value";
        EXPECT_EQ(results(1018), -1);
        EXPECT_EQ(results(std::string("value")), -1);
        for (const int absent : {-1, 1026, kDynamic + 7}) {
            EXPECT_EQ(results(absent), 1) << absent;
        }
        EXPECT_EQ(results(std::string()) + results(std::string("nobody")), 2);
        int number = 0;
        EXPECT_EQ(it.getValue(number, "own"), 0);
        EXPECT_EQ(number, 5);
        std::string text;
        EXPECT_EQ(it.getValueXML(text, it.idOfName("own")), 0);
        EXPECT_EQ(text, " 5 ");
    });
}

TEST(CursorRead, BytesInPlaceCannotBeChanged) {
    const std::string bytes = bytesOf(*sampleTree());
    readInPlace(bytes, [](const HBXMessageIterator& reading) {
        auto& it = const_cast<HBXMessageIterator&>(reading);
        EXPECT_THAT(tryEveryChange(it), ::testing::Each(-1));
        EXPECT_EQ(it.curID(), 0);
        return 0;
    });
}

} // namespace
} // namespace HBX::test
