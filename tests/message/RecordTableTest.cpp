#include <regex>
#include <utility>

#include <gmock/gmock.h>

#include <HBXCommon/HBXLog.h>
#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXRecordSample.h>

#include "RandomEdits.h"
#include "SampleRecords.h"

/// Records read and written by their tables: over a tree, in place, straight to bytes, and by a
/// hand-written twin of the readers.
namespace HBX::test {
namespace {

using It = HBXMessageIterator;

// --- the twin ---

template <class T>
using Getter = int (It::*)(T&, int) const;

template <class T>
void assign(T& member, const T& value) {
    member = value;
}

template <class T>
void assign(HBXOptionalProperty<T>& member, const T& value) {
    member.set(value);
}

/// An optional value: whatever is wrong with it, the member then stays as it was.
template <class T, class Member>
void readIfGood(const It& it, Member& member, int id, Getter<T> get) {
    T value{};
    if ((it.*get)(value, id) == 0) {
        assign(member, value);
    }
}

/// An optional record likewise.
template <class T, class Member, class Reader>
void readIfGood(const It& it, Member& member, int id, Reader reader) {
    T value{};
    if (HBXReaderIDT<int, Reader>(reader, id, 1)(it, value) == 0) {
        assign(member, value);
    }
}

template <class Sink, class Container>
int readList(const It& it, Container& list, int id, int itemId) {
    using List = HBXReaderListT<int, Sink>;
    return HBXReaderIDT<int, List>(List(Sink(), itemId, 0), id, 0)(it, list);
}

constexpr Getter<int> kInt = &It::getValue;
constexpr Getter<std::string> kText = &It::getValue;

struct LeafReader {
    int operator()(const It& it, Leaf& v) const {
        return it.getValue(v.number, 1010) != 0 || it.getValue(v.text, 1018) != 0 ? -1 : 0;
    }
};

struct CodeReader {
    int operator()(const It& it, Code& v) const {
        std::string text;
        return it.getValue(text, 0) != 0 ? -1 : v.fromString(text);
    }
};

struct EverythingReader {
    int operator()(const It& it, Everything& v) const {
        readIfGood<std::int64_t>(it, v.stamp, 1, Getter<std::int64_t>(&It::getValueLongLong));
        const bool good = HBXReaderIDT<int, LeafReader>({}, 2, 1)(it, v.origin) == 0 && mandatory(it, v);
        if (!good) {
            return -1;
        }
        optional(it, v);
        return lists(it, v) ? 0 : -1;
    }

private:
    static bool mandatory(const It& it, Everything& v) {
        int colour = 0;
        const int results[] = {it.getValue(v.number, 3),
                               it.getValueLongLong(v.large, 4),
                               it.getValue(v.flag, 5),
                               it.getValueDouble(v.real, 6),
                               it.getValue(v.text, 7),
                               it.getValueBase64(v.bytes, 8),
                               it.getValueXML(v.fragment, 9),
                               it.getValueTime(v.time, 10),
                               it.getValue(colour, 11),
                               HBXReaderIDT<int, CodeReader>({}, 12, 1)(it, v.code),
                               HBXReaderIDT<int, LeafReader>({}, 13, 1)(it, v.leaf)};
        v.colour = static_cast<Colour>(colour);
        return std::count(std::begin(results), std::end(results), 0) == std::ssize(results) &&
               unsigned32(it, v.mask, 42);
    }

    static bool unsigned32(const It& it, std::uint32_t& value, int id) {
        std::int64_t number = 0;
        const bool good = it.getValueLongLong(number, id) == 0 && std::in_range<std::uint32_t>(number);
        value = good ? static_cast<std::uint32_t>(number) : value;
        return good;
    }

    static void optional(const It& it, Everything& v) {
        readIfGood<int>(it, v.maybeNumber, 14, kInt);
        readIfGood<std::string>(it, v.maybeText, 17, kText);
        readIfGood<std::string>(it, v.maybeFragment, 19, Getter<std::string>(&It::getValueXML));
        readIfGood<Code>(it, v.maybeCode, 21, CodeReader());
        readIfGood<Leaf>(it, v.maybeLeaf, 22, LeafReader());
        readIfGood<int>(it, v.plainNumber, 23, kInt);
        readIfGood<Leaf>(it, v.plainLeaf, 26, LeafReader());
    }

    static bool lists(const It& it, Everything& v) {
        using ReadInt = HBXReaderSimple<int, kInt>;
        using ReadText = HBXReaderSimple<std::string, kText>;
        using Numbers = HBXReaderSetDataT<ReadInt>;
        using Shapes = HBXReaderDerivedList<int, Shape, Shape>;
        return readList<HBXReaderListDataT<ReadInt>>(it, v.numbers, 27, 28) == 0 &&
               readList<HBXReaderSetDataT<ReadText>>(it, v.words, 32, 28) == 0 &&
               readList<HBXReaderSetDataT<LeafReader>>(it, v.leafSet, 33, 28) == 0 &&
               HBXReaderListT<int, Numbers>(Numbers(), 35, 0)(it, v.bareNumbers) == 0 &&
               HBXReaderIDT<int, HBXReaderDerived<Shape>>(HBXReaderDerived<Shape>(), 36, 0)(it, v.shape) ==
                   0 &&
               HBXReaderIDT<int, Shapes>(Shapes(38, 0), 37, 0)(it, v.shapes) == 0 &&
               readList<HBXReaderListDataT<EverythingReader>>(it, v.nested, 39, 40) == 0 &&
               HBXReaderIDT<int, CodeReader>({}, 41, 0)(it, v.emptyable) == 0;
    }
};

// --- samples ---

/// Members that are not written get their default, and some optional ones are taken away.
void thin(Everything& v, Random& random) {
    v.byHand = Everything().byHand;
    const auto maybe = [&](auto& property) {
        if (random() % 3 == 0) {
            property.reset();
        }
    };
    maybe(v.stamp), maybe(v.maybeNumber), maybe(v.maybeText), maybe(v.maybeFragment);
    maybe(v.maybeCode), maybe(v.maybeLeaf);
    if (random() % 3 == 0) {
        v.shape.reset();
    }
    for (Everything& nested : v.nested) {
        thin(nested, random);
    }
}

Everything sample(Random& random) {
    auto v = makeSample<Everything>(random);
    if (v.nested.size() > 1) {
        v.nested.resize(1);
    }
    thin(v, random);
    return v;
}

std::string throughTree(const Everything& value) {
    const Cursor it = newCursor();
    EXPECT_EQ(it->putObject(value, 0), 0);
    return bytesOf(*it);
}

/// Reads the same bytes in every way into a copy of `start` each.
struct Outcome {
    int result;
    Everything value;
};

std::vector<Outcome> readEveryWay(const std::string& bytes, const Everything& start) {
    std::vector<Outcome> outcomes(5, {-9, start});
    const Message message = parseMessage(bytes);
    if (message == nullptr) {
        ADD_FAILURE() << "no message";
        return outcomes;
    }
    outcomes[0].result = rootOf(message)->getObject(outcomes[0].value, 0);
    outcomes[1].result = decodeRecord(bytes, outcomes[1].value);
    outcomes[2].result = decodeTrustedRecord(bytes, outcomes[2].value);
    outcomes[3].result = EverythingReader()(*rootOf(message), outcomes[3].value);
    outcomes[4].result =
        readInPlace(bytes, [&](const It& it) { return EverythingReader()(it, outcomes[4].value); });
    return outcomes;
}

TEST(RecordTable, EveryWayWritesTheSameBytesAndReadsEqualValues) {
    Random random(3);
    for (int round = 0; round < 300; ++round) {
        const Everything value = round == 0 ? Everything() : sample(random);
        const std::string bytes = throughTree(value);
        std::string encoded;
        EXPECT_EQ(encodeRecord(value, encoded), 0);
        EXPECT_EQ(encoded, bytes) << round;
        for (const Outcome& outcome : readEveryWay(bytes, Everything())) {
            EXPECT_EQ(outcome.result, 0) << round;
            EXPECT_TRUE(outcome.value == value) << round << " way " << &outcome;
        }
    }
}

constexpr void (*kDamages[])(It& it, It& parent, Random& random) = {
    [](It& it, It&, Random&) { it.deleteFromChild(); },
    [](It& it, It& parent, Random&) { parent.copyToChild(&it); },                       // twice
    [](It& it, It& parent, Random&) { parent.copyToChild(&it), it.deleteFromChild(); }, // to the end
    [](It& it, It& parent, Random&) { parent.newChild(it.curID()); },
    [](It& it, It&, Random&) { it.putValueXML("<x/>", 0); },
    [](It& it, It&, Random& random) { it.putValue("x", static_cast<int>(random() % 43) + 1); },
    [](It& it, It&, Random& random) { it.setComplexType(292, static_cast<int>(random() % 4) + 5008); },
    [](It& it, It&, Random& random) {
        static constexpr const char* kValues[] = {"",     "x",   "-1",  "ABC", " 12 ", "99999999999",
                                                  "YWI=", "1.5", "true"};
        it.putValue(oneOf(random, kValues), 0);
    },
};

/// Goes to some element of the tree and does something to it.
void damage(It& it, Random& random) {
    for (std::size_t turn = random() % 4; turn != 0 || it.curID() == 0; turn = random() % 4) {
        if (turn == 1 || it.firstChild() != 0) {
            for (std::size_t steps = random() % 8; steps > 0 && it.nextSibling() == 0; --steps) {
            }
        }
    }
    const Cursor parent = secondCursor(it);
    parent->seekUp();
    oneOf(random, kDamages)(it, *parent, random);
}

TEST(RecordTable, EveryWayReadsDamagedRecordsAlike) {
    Random random(4);
    int good = 0;
    for (int round = 0; round < 1500; ++round) {
        Everything value = sample(random);
        value.nested.clear();
        const Cursor it = newCursor();
        it->putObject(value, 0);
        for (std::size_t times = 1 + random() % 3; times > 0; --times) {
            const Cursor other = secondCursor(*it, false);
            damage(*other, random);
        }
        const std::vector<Outcome> outcomes = readEveryWay(bytesOf(*it), sample(random));
        good += outcomes[0].result == 0 ? 1 : 0;
        for (const Outcome& outcome : outcomes) {
            const auto way = &outcome - outcomes.data();
            ASSERT_EQ(outcome.result, outcomes[0].result) << round << " way " << way;
            if (outcome.result == 0 || way < 3) {
                ASSERT_TRUE(outcome.value == outcomes[0].value) << round << " way " << way;
            }
        }
    }
    EXPECT_GT(good, 300);
    EXPECT_LT(good, 1200);
}

// --- single rules ---

TEST(RecordTable, FailedReadKeepsListItemsAndLeavesOptionalMembersAlone) {
    Everything start;
    start.maybeText.set("kept");
    start.numbers = {1};
    const Cursor it = newCursor();
    it->putObject(Everything(), 0);
    it->seek(27);
    it->putValue(2, 28);
    it->putValue("bad", 28);
    it->putValue(3, 28);
    it->seekUp();
    it->newChild(17);
    it->seekUp();
    it->newChild(24);
    for (const Outcome& outcome : readEveryWay(bytesOf(*it), start)) {
        EXPECT_EQ(outcome.result, -1);
        EXPECT_THAT(outcome.value.numbers, ::testing::ElementsAre(1, 2));
        EXPECT_EQ(outcome.value.maybeText.get(), "kept");
    }
}

TEST(RecordTable, WritesRowsInOrderWithMarks) {
    Everything value;
    value.fragment = "<x/>";
    value.bytes = "ab";
    value.maybeCode.set(Code{"AB"});
    value.numbers = {2, 1};
    value.leafSet = {Leaf{1, "a"}};
    value.bareNumbers = {4};
    value.shape.reset(new Circle);
    const Cursor it = newCursor();
    it->putObject(value, 0);
    const std::string text =
        std::regex_replace(takeText(it->toText()), std::regex("hbx:element hbx:id=|hbx:"), "");
    EXPECT_THAT(
        text,
        ::testing::HasSubstr(
            R"( tns="backup" type="log_info">)"
            R"(<"2" ns="backup" tns="alert" type="info"><id ns="alert">7</id><value ns="alert" kind="text"/></element>)"
            R"(<"3">0</element><"4">0</element><"5">0</element><"6">0</element><"7" kind="text"/>)"
            R"(<"8">YWI=</element><"9" kind="xml"><![CDATA[<x/>]]></element><"10">0</element><"11">0</element>)"
            R"(<"12" kind="text"/><"13" tns="alert" type="info"><id ns="alert">7</id>)"
            R"(<value ns="alert" kind="text"/></element><"42">0</element><"21">AB</element><"23">3</element>)"
            R"(<"26" tns="alert" type="info"><id ns="alert">7</id><value ns="alert" kind="text"/></element>)"
            R"(<"27"><"28">2</element><"28">1</element></element><"32"/>)"
            R"(<"33"><"28" tns="alert" type="info"><id ns="alert">1</id><value ns="alert">a</value></element></element>)"
            R"(<"35">4</element><"36" tns="scheduler" type="mailer_account"><limit ns="scheduler">0</limit>)"
            R"(<offset ns="scheduler">0</offset></element><"37"/><"39"/></message>)"));
}

TEST(RecordTable, WritingTwiceReplacesRecordsAndAppendsTheRest) {
    Everything value;
    value.leaf.text = value.text = "second";
    const Cursor it = newCursor();
    it->putObject(Everything(), 0);
    it->putObject(value, 0);
    Leaf leaf;
    EXPECT_EQ(it->getObject(leaf, 13), 0);
    EXPECT_EQ(leaf.text, "second");
    std::string text = "?";
    EXPECT_EQ(it->getValue(text, 7), 0);
    EXPECT_EQ(text, "");
    std::string bytes;
    EXPECT_EQ(encode([&](It& out) { return out.putObject(Everything(), 0), out.putObject(value, 0); }, bytes),
              0);
    EXPECT_EQ(bytesOf(*it), bytes);
}

TEST(RecordTable, WhatCannotBeWrittenFailsInEveryWay) {
    Everything nullItem;
    nullItem.shapes.resize(1);
    Everything nested; // deeper than a message may be
    for (int level = 0; level < 200; ++level) {
        Everything outer;
        outer.nested.push_back(std::move(nested));
        nested = std::move(outer);
    }
    for (const Everything& value : {nullItem, nested}) {
        const Cursor it = newCursor();
        std::string bytes = "kept";
        EXPECT_TRUE(it->putObject(value, 0) == -1 || bytesOf(*it).empty());
        EXPECT_EQ(it->curID(), 0);
        EXPECT_EQ(encodeRecord(value, bytes), -1);
        EXPECT_EQ(bytes, "kept");
    }
}

TEST(RecordTable, RecordsWithinRecordsEndWhereTheStackWould) {
    Chain deepest;
    for (int level = 0; level < 255; ++level) {
        Chain outer;
        outer.links.push_back(std::move(deepest));
        deepest = std::move(outer);
    }
    std::string bytes;
    EXPECT_EQ(encodeRecord(deepest, bytes), 0);
    Chain read;
    EXPECT_EQ(decodeRecord(bytes, read), 0);
    EXPECT_TRUE(read == deepest);
    const Cursor it = newCursor();
    for (int i = 0; i < 100'000; ++i) {
        it->newChild(5);
    }
    it->seekRoot();
    EXPECT_EQ(it->getObject(read, 0), -1);
}

TEST(RecordTable, ComparesMemberByMember) {
    Random random(5);
    std::vector<Everything> values(40);
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = i % 2 == 0 ? sample(random) : values[i - 1];
    }
    for (const Everything& a : values) {
        for (const Everything& b : values) {
            const bool equal = throughTree(a) == throughTree(b);
            EXPECT_EQ(a == b, equal);
            EXPECT_EQ((a < b) + (b < a), equal ? 0 : 1);
        }
    }
    Everything a;
    Everything b;
    const auto isLess = [&] { return a < b && !(b < a) && a != b; };
    b.maybeNumber.set(-1);
    EXPECT_TRUE(isLess()) << "unset comes first";
    a.maybeNumber.set(-1);
    a.shape.reset(new Shape);
    EXPECT_TRUE(b < a) << "null comes first";
    b.shape.reset(new Circle);
    EXPECT_TRUE(isLess()) << "by type name";
    b.shape.reset(new Shape);
    EXPECT_TRUE(a == b) << "by value";
    a.stamp.set(1);
    b.number = 9;
    EXPECT_TRUE(b < a) << "the base first";
    b.stamp.set(1);
    a.real = -0.0;
    b.number = 0;
    EXPECT_TRUE(isLess()) << "zeros differ, as their texts do";
}

} // namespace
} // namespace HBX::test
