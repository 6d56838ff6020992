#include <cmath>
#include <iomanip>
#include <limits>
#include <sstream>

#include <gmock/gmock.h>

#include "support/MessageTestUtil.h"

/// What reading through a cursor promises, over a tree and over encoded bytes alike.
namespace HBX::test {
namespace {

constexpr int kDynamic = 0x40000000;
constexpr std::int64_t kInt64Max = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kInt64Min = std::numeric_limits<std::int64_t>::min();

/// Runs the checks over the tree of a message, over its bytes checked, and over its bytes as they are.
void overEveryCursor(const Cursor& it, const std::function<void(const HBXMessageIterator&)>& check) {
    const auto run = [&](const HBXMessageIterator& cursor) {
        check(cursor);
        return 0;
    };
    {
        SCOPED_TRACE("tree");
        run(*secondCursor(*it, false));
    }
    {
        SCOPED_TRACE("in place");
        EXPECT_EQ(readInPlace(bytesOf(*it), run), 0);
        EXPECT_EQ(readTrusted(bytesOf(*it), run), 0);
    }
}

/// /configuration { name "first", value, name "second", <own> "o", 77 } /status, each with a mark of its own.
Cursor sampleTree() {
    Cursor it = newCursor();
    it->newChild(1021);
    it->setComplexType(283, 295);
    it->setNamespace(283);
    it->putAttr("text", 1010);
    it->putAttr(-7, 1026);
    it->putAttrTime(kInt64Max, 9999);
    it->putValue("first", 1026);
    it->putValueXML("<x>&</x>", 1018);
    it->putValue("second", 1026);
    it->putValue("o", "own");
    it->newChild(77);
    it->newChild(77);
    it->seekUp();
    it->seekUp();
    it->seekUp();
    it->newChild(1192);
    it->setComplexType("ns of mine", "type of mine");
    it->setNamespace("ns of mine");
    it->seekUp();
    return it;
}

std::string valueHere(const HBXMessageIterator& it) {
    std::string value = "-";
    it.getValue(value, 0);
    return value;
}

TEST(CursorRead, MovesOnlyWhereThereIsSomething) {
    overEveryCursor(sampleTree(), [](const HBXMessageIterator& it) {
        EXPECT_EQ(it.seekUp(), -1);
        EXPECT_EQ(it.nextSibling(), -1);
        EXPECT_EQ(it.nextSibling(1021), -1);
        EXPECT_EQ(it.curID(), 0);
        for (const int id : {0, -1, 1026, kDynamic, kDynamic + 500}) {
            EXPECT_EQ(it.seek(id), -1) << id;
            EXPECT_EQ(it.seekPresence(id), -1) << id;
            EXPECT_EQ(it.firstChild(id), -1) << id;
        }
        ASSERT_EQ(it.seek(1021), 0);
        EXPECT_EQ(it.seekPresence(1026), 0);
        EXPECT_EQ(it.curID(), 1021);
        ASSERT_EQ(it.firstChild(1026), 0);
        EXPECT_EQ(valueHere(it), "first");
        EXPECT_EQ(it.firstChild(), -1);
        EXPECT_EQ(it.nextSibling(0), -1);
        EXPECT_EQ(it.nextSibling(-5), -1);
        EXPECT_EQ(it.nextSibling(4711), -1);
        EXPECT_EQ(valueHere(it), "first");
        ASSERT_EQ(it.nextSibling(1026), 0);
        EXPECT_EQ(valueHere(it), "second");
        EXPECT_EQ(it.nextSibling(1026), -1);
        EXPECT_EQ(it.nextSibling(1018), -1);
        ASSERT_EQ(it.nextSibling(), 0);
        EXPECT_EQ(it.curName(), "own");
        EXPECT_GE(it.curID(), kDynamic);
        EXPECT_EQ(it.seekUp(), 0);
        EXPECT_EQ(it.seek(it.idOfName("own")), 0);
        ASSERT_EQ(it.nextSibling(), 0);
        EXPECT_EQ(it.curID(), 77);
        EXPECT_EQ(it.curName(), "");
        EXPECT_EQ(it.nextSibling(), -1);
        EXPECT_EQ(it.seek(77), 0);
        EXPECT_EQ(it.seekUp(), 0);
        EXPECT_EQ(it.seekUp(), 0);
        EXPECT_EQ(it.curID(), 1021);
        EXPECT_EQ(it.seekUp(), 0);
        EXPECT_EQ(it.seekUp(), -1);
        EXPECT_EQ(it.seek(1192), 0);
        EXPECT_EQ(it.seekRoot(), 0);
        EXPECT_EQ(it.curID(), 0);
    });
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

TEST(CursorRead, FindsChildrenByNameAndByAbsolutePath) {
    overEveryCursor(sampleTree(), [](const HBXMessageIterator& it) {
        for (const char* name : {"", "name", "own", "configuration/name", "nobody", "/own",
                                 "/configuration/nobody", "/configuration//name", "//configuration"}) {
            EXPECT_EQ(it.seek(name), -1) << name;
            EXPECT_EQ(it.curID(), 0) << name;
        }
        EXPECT_EQ(it.seekPresence("configuration"), 0);
        EXPECT_EQ(it.seekPresence(""), -1);
        EXPECT_EQ(it.seek("configuration"), 0);
        EXPECT_EQ(it.firstChild("value"), 0);
        EXPECT_EQ(it.nextSibling("own"), 0);
        EXPECT_EQ(valueHere(it), "o");
        EXPECT_EQ(it.nextSibling("own"), -1);
        EXPECT_EQ(it.nextSibling(""), -1);
        EXPECT_EQ(it.seek("/configuration/nobody"), -1);
        EXPECT_EQ(valueHere(it), "o");
        EXPECT_EQ(it.seek("/configuration/name"), 0);
        EXPECT_EQ(valueHere(it), "first");
        EXPECT_EQ(it.seekUp(), 0);
        EXPECT_EQ(it.curName(), "configuration");
        EXPECT_EQ(it.seek("/"), 0);
        EXPECT_EQ(it.curID(), 0);
        EXPECT_EQ(it.curName(), "");
    });
}

TEST(CursorRead, ShowsMarksAndAttributes) {
    overEveryCursor(sampleTree(), [](const HBXMessageIterator& it) {
        EXPECT_EQ(it.curType(), "");
        EXPECT_EQ(it.curNamespaceID(), 0);
        ASSERT_EQ(it.seek(1021), 0);
        EXPECT_EQ(it.curType(), "scheduler:daily_trigger");
        EXPECT_EQ(it.curNamespaceID(), 283);
        std::string text = "kept";
        int number = 5;
        std::int64_t time = 5;
        EXPECT_EQ(it.getAttr(number, 1010), -1);
        EXPECT_EQ(number, 5);
        EXPECT_EQ(it.getAttr(text, 4711), 1);
        EXPECT_EQ(it.getAttr(text, 0), 1);
        EXPECT_EQ(it.getAttr(text, -1), 1);
        EXPECT_EQ(text, "kept");
        EXPECT_EQ(it.getAttr(text, 1010), 0);
        EXPECT_EQ(text, "text");
        EXPECT_EQ(it.getAttr(number, 1026), 0);
        EXPECT_EQ(number, -7);
        EXPECT_EQ(it.getAttrTime(time, 9999), 0);
        EXPECT_EQ(time, kInt64Max);
        EXPECT_EQ(it.getAttr(number, 9999), -1);
        ASSERT_EQ(it.seek(1018), 0);
        EXPECT_EQ(it.getAttr(text, 1010), 1);
        it.seekUp();
        ASSERT_EQ(it.nextSibling(), 0);
        EXPECT_EQ(it.curType(), "ns of mine:type of mine");
        EXPECT_GE(it.curNamespaceID(), kDynamic);
    });
}

/// What every getter makes of one text: "!" = refused.
struct Conversion {
    const char* text;
    const char* asInt;
    const char* asInt64;
    const char* asBool;
    const char* asDouble;
    const char* asTime;
    const char* asTimeZone;
    const char* asBase64;
};

constexpr Conversion kConversions[] = {
    {"0", "0", "0", "0", "0", "0", "0/0", "!"},
    {" -1\t\r\n", "-1", "-1", "1", "-1", "-1", "-1/0", "!"},
    {"2147483647", "2147483647", "2147483647", "1", "2147483647", "2147483647", "2147483647/0", "!"},
    {"-2147483648", "-2147483648", "-2147483648", "1", "-2147483648", "-2147483648", "-2147483648/0", "!"},
    {"2147483648", "!", "2147483648", "!", "2147483648", "2147483648", "2147483648/0", "!"},
    {"-2147483649", "!", "-2147483649", "!", "-2147483649", "-2147483649", "-2147483649/0", "!"},
    {"9223372036854775808", "!", "!", "!", "9223372036854775808", "!", "!", "!"},
    {"007", "7", "7", "1", "7", "7", "7/0", "!"},
    {"+1", "!", "!", "!", "!", "!", "!", "!"},
    {"- 1", "!", "!", "!", "!", "!", "!", "!"},
    {"1 2", "!", "!", "!", "!", "!", "!", "!"},
    {"1x", "!", "!", "!", "!", "!", "!", "!"},
    {"", "!", "!", "!", "!", "!", "!", ""},
    {"  ", "!", "!", "!", "!", "!", "!", ""},
    {"true", "!", "!", "1", "!", "!", "!", "\xB6\xBB\x9E"},
    {" false ", "!", "!", "0", "!", "!", "!", "!"},
    {"True", "!", "!", "!", "!", "!", "!", "N\xBB\x9E"},
    {"1.5", "!", "!", "!", "1.5", "!", "!", "!"},
    {" 1e3 ", "!", "!", "!", "1000", "!", "!", "!"},
    {"1e999", "!", "!", "!", "!", "!", "!", "!"},
    {"-inf", "!", "!", "!", "-inf", "!", "!", "!"},
    {"nan", "!", "!", "!", "nan", "!", "!", "!"},
    {"0x10", "!", "!", "!", "!", "!", "!", "\xD3\x1D\x74"},
    {"1700000000-0530", "!", "!", "!", "!", "1700000000", "1700000000/-530", "!"},
    {" -5+0030 ", "!", "!", "!", "!", "-5", "-5/30", "!"},
    {"5-2147483648", "!", "!", "!", "!", "5", "5/-2147483648", "!"},
    {"5-2147483649", "!", "!", "!", "!", "!", "!", "!"},
    {"5+030", "!", "!", "!", "!", "!", "!", "!"},
    {"5+-030", "!", "!", "!", "!", "!", "!", "!"},
    {"5 +0030", "!", "!", "!", "!", "!", "!", "!"},
    {"5+ 030", "!", "!", "!", "!", "!", "!", "!"},
    {"5+0030x", "!", "!", "!", "!", "!", "!", "!"},
    {"92233720368547758080+0000", "!", "!", "!", "!", "!", "!", "!"},
    {"+0030", "!", "!", "!", "!", "!", "!", "!"},
    {"YWI=", "!", "!", "!", "!", "!", "!", "ab"},
    {" Y W\nI=", "!", "!", "!", "!", "!", "!", "ab"},
    {"YWI", "!", "!", "!", "!", "!", "!", "!"},
    {"YWJ=", "!", "!", "!", "!", "!", "!", "!"},
    {"-_==", "!", "!", "!", "!", "!", "!", "!"},
};

/// "!" when the getter refuses, whatever else it did then.
template <class Value, class Get>
std::string outcome(Value start, const Get& get) {
    Value value = start;
    const int result = get(value);
    std::ostringstream text;
    if (result == 0) {
        text << std::setprecision(20) << value;
    } else {
        text << (result == -1 && value == start ? "!" : "touched");
    }
    return text.str();
}

std::string zoneOutcome(const HBXMessageIterator& it, int id) {
    std::int64_t time = 99;
    int zone = 98;
    const int result = it.getValueTimeZone(time, zone, id);
    return result == 0                                ? std::to_string(time) + "/" + std::to_string(zone)
           : result == -1 && time == 99 && zone == 98 ? "!"
                                                      : "touched";
}

TEST(CursorRead, ConvertsTextsToTheKindThatIsAskedFor) {
    for (const Conversion& row : kConversions) {
        const Cursor tree = newCursor();
        tree->putValue(row.text, 1018);
        overEveryCursor(tree, [&](const HBXMessageIterator& it) {
            for (const int id : {1018, 0}) {
                SCOPED_TRACE('"' + std::string(row.text) + "\" id " + std::to_string(id));
                if (id == 0) {
                    ASSERT_EQ(it.seek(1018), 0);
                }
                EXPECT_EQ(outcome(99, [&](int& v) { return it.getValue(v, id); }), row.asInt);
                EXPECT_EQ(outcome<std::int64_t>(99, [&](auto& v) { return it.getValueLongLong(v, id); }),
                          row.asInt64);
                for (const bool start : {false, true}) {
                    EXPECT_EQ(outcome(start, [&](bool& v) { return it.getValue(v, id); }), row.asBool);
                }
                EXPECT_EQ(outcome(99.0, [&](double& v) { return it.getValueDouble(v, id); }), row.asDouble);
                EXPECT_EQ(outcome<std::int64_t>(99, [&](auto& v) { return it.getValueTime(v, id); }),
                          row.asTime);
                EXPECT_EQ(zoneOutcome(it, id), row.asTimeZone);
                const std::string kept = "kept";
                EXPECT_EQ(outcome(kept, [&](auto& v) { return it.getValueBase64(v, id); }), row.asBase64);
                EXPECT_EQ(outcome(kept, [&](auto& v) { return it.getValueXML(v, id); }), "!");
                EXPECT_EQ(outcome(kept, [&](auto& v) { return it.getValue(v, id); }), row.text);
            }
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
        EXPECT_EQ(results(-1), 1);
        EXPECT_EQ(results(1026), 1);
        EXPECT_EQ(results(kDynamic + 7), 1);
        EXPECT_EQ(results(std::string()), 1);
        EXPECT_EQ(results(std::string("nobody")), 1);
        int number = 0;
        EXPECT_EQ(it.getValue(number, "own"), 0);
        EXPECT_EQ(number, 5);
        std::string text;
        EXPECT_EQ(it.getValueXML(text, it.idOfName("own")), 0);
        EXPECT_EQ(text, " 5 ");
    });
}

TEST(CursorRead, ReturnsWhatPuttersPut) {
    const Cursor tree = newCursor();
    const double reals[] = {0.1,
                            -0.0,
                            5e-324,
                            1.7976931348623157e308,
                            std::nextafter(1.0, 2.0),
                            -std::numeric_limits<double>::infinity()};
    for (const double real : reals) {
        tree->putValueDouble(real, 1);
    }
    const std::pair<std::int64_t, int> times[] = {
        {0, 0}, {kInt64Min, -2147483647 - 1}, {kInt64Max, 2147483647}, {-1, -30}};
    for (const auto& [time, zone] : times) {
        tree->putValueTimeZone(time, zone, 2);
    }
    const std::string bytes("\0\xFF<&>\r\n", 7);
    tree->putValueBase64(bytes, 3);
    tree->putValueBase64(bytes.data(), 2, 4);
    tree->putValue(bytes.data(), 3, 5);
    overEveryCursor(tree, [&](const HBXMessageIterator& it) {
        it.firstChild(1);
        for (const double real : reals) {
            double back = 99;
            EXPECT_EQ(it.getValueDouble(back, 0), 0);
            EXPECT_EQ(std::signbit(back), std::signbit(real));
            EXPECT_EQ(back, real);
            it.nextSibling();
        }
        for (const auto& [time, zone] : times) {
            std::int64_t timeBack = 0;
            int zoneBack = 0;
            EXPECT_EQ(it.getValueTimeZone(timeBack, zoneBack, 0), 0);
            EXPECT_EQ(timeBack, time);
            EXPECT_EQ(zoneBack, zone);
            it.nextSibling();
        }
        it.seekUp();
        std::string text;
        EXPECT_EQ(it.getValueBase64(text, 3), 0);
        EXPECT_EQ(text, bytes);
        EXPECT_EQ(it.getValue(text, 4), 0);
        EXPECT_EQ(text, "AP8=");
        EXPECT_EQ(it.getValue(text, 5), 0);
        EXPECT_EQ(text, bytes.substr(0, 3));
    });
}

TEST(CursorRead, OffersWholeTreesOverBytesToo) {
    const Cursor tree = sampleTree();
    tree->getMessage()->setOrigin("here");
    overEveryCursor(tree, [&](const HBXMessageIterator& it) {
        std::string origin;
        EXPECT_EQ(it.getOrigin(origin), 0);
        EXPECT_EQ(origin, "here");
        EXPECT_EQ(bytesOf(it), bytesOf(*tree));
        EXPECT_EQ(takeText(it.toText()), takeText(tree->toText()));
        ASSERT_EQ(it.seek("/configuration"), 0);
        ASSERT_EQ(it.firstChild(1026), 0);
        ASSERT_EQ(it.nextSibling(1026), 0);
        const Cursor twin = secondCursor(it);
        const Cursor root = secondCursor(it, false);
        EXPECT_EQ(twin->nextSibling(), 0);
        EXPECT_EQ(twin->curName(), "own");
        EXPECT_EQ(root->curID(), 0);
        EXPECT_EQ(valueHere(it), "second");
        EXPECT_THAT(takeText(it.toTextFromChild()), ::testing::EndsWith(">second</name>"));
        const Cursor target = newCursor();
        EXPECT_EQ(target->copyToChild(&it), 0);
        EXPECT_EQ(deserializeToChild(*target, bytesFromChild(it)), 0);
        it.seekUp();
        EXPECT_EQ(target->copyToChild(&it), 0);
        it.seekUp();
        EXPECT_EQ(target->copyToChild(&it), 0);
        const Cursor expected = newCursor();
        const Cursor source = secondCursor(*tree, false);
        source->seek("/configuration");
        source->firstChild(1026);
        source->nextSibling(1026);
        expected->copyToChild(source.get());
        expected->copyToChild(source.get());
        source->seekUp();
        expected->copyToChild(source.get());
        source->seekUp();
        expected->copyToChild(source.get());
        EXPECT_EQ(bytesOf(*target), bytesOf(*expected));
        it.seek("/configuration");
        const Message copy = adoptMessage(it.copyMessage());
        source->seek("/configuration");
        EXPECT_EQ(bytesOf(copy), bytesOf(adoptMessage(source->copyMessage())));
    });
}

TEST(CursorRead, BytesInPlaceCannotBeChanged) {
    const std::string bytes = bytesOf(*sampleTree());
    readInPlace(bytes, [](const HBXMessageIterator& reading) {
        auto& it = const_cast<HBXMessageIterator&>(reading);
        const Cursor other = newCursor();
        EXPECT_EQ(it.newChild(5), -1);
        EXPECT_EQ(it.newChild("own"), -1);
        EXPECT_EQ(it.putChild(1234), -1);
        EXPECT_EQ(it.putValue(5, 5), -1);
        EXPECT_EQ(it.putValue(5, 0), -1);
        EXPECT_EQ(it.putValue("x", "own"), -1);
        EXPECT_EQ(it.putAttr(5, 5), -1);
        EXPECT_EQ(it.deleteChild(1021), -1);
        EXPECT_EQ(it.deleteFromChild(), -1);
        EXPECT_EQ(it.copyToChild(other.get()), -1);
        EXPECT_EQ(it.setNamespace(283), -1);
        EXPECT_EQ(it.setNamespace("scheduler"), -1);
        EXPECT_EQ(it.saveNamespace(283), -1);
        EXPECT_EQ(it.setNamespaceChild(283), -1);
        EXPECT_EQ(it.setComplexType(283, 295), -1);
        EXPECT_EQ(it.setComplexType("scheduler", "daily_trigger"), -1);
        EXPECT_EQ(it.fromTextToChild("<a/>"), -1);
        EXPECT_EQ(it.curID(), 0);
        return 0;
    });
}

} // namespace
} // namespace HBX::test
