#include <regex>

#include <gmock/gmock.h>

#include <HBXCommon/HBXLog.h>
#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXRecordSample.h>

#include "SampleRecords.h"
#include "support/MessageTestUtil.h"

/// Records read and written by their tables: over a tree, in place, straight to bytes, and by a
/// hand-written twin of the readers.
namespace HBX::test {
namespace {

using Random = std::mt19937_64;
using It = HBXMessageIterator;

// --- the twin ---

template <class T, int (It::*Getter)(T&, int) const>
int readOptional(const It& it, HBXOptionalProperty<T>& property, int id) {
    T value{};
    if ((it.*Getter)(value, id) == 0) {
        property.set(value);
    }
    return 0;
}

/// An optional record: whatever is wrong with it, the member then stays as it was.
template <class T, class Reader>
bool readRecordIfGood(const It& it, T& record, int id) {
    T fresh{};
    if (HBXReaderIDT<int, Reader>(Reader(), id, 1)(it, fresh) != 0) {
        return false;
    }
    record = fresh;
    return true;
}

template <class T, class Reader>
int readOptionalRecord(const It& it, HBXOptionalProperty<T>& property, int id) {
    T fresh{};
    if (readRecordIfGood<T, Reader>(it, fresh, id)) {
        property.set(fresh);
    }
    return 0;
}

template <class Item, class Container>
int readList(const It& it, Container& list, int id, Item item) {
    using Sink = std::conditional_t<requires { list.push_back({}); }, HBXReaderListDataT<Item>,
                                    HBXReaderSetDataT<Item>>;
    const HBXReaderListT<int, Sink> reader(Sink(item), 28, 0);
    return HBXReaderIDT<int, HBXReaderListT<int, Sink>>(reader, id, 0)(it, list);
}

using ReadInt = HBXReaderSimple<int, static_cast<int (It::*)(int&, int) const>(&It::getValue)>;
using ReadText =
    HBXReaderSimple<std::string, static_cast<int (It::*)(std::string&, int) const>(&It::getValue)>;

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

struct StampedReader {
    int operator()(const It& it, Stamped& v) const {
        readOptional<std::int64_t, &It::getValueLongLong>(it, v.stamp, 1);
        return HBXReaderIDT<int, LeafReader>(LeafReader(), 2, 1)(it, v.origin);
    }
};

struct EverythingReader {
    int operator()(const It& it, Everything& v) const {
        return StampedReader()(it, v) != 0 || mandatory(it, v) != 0 || optional(it, v) != 0 ||
                       lists(it, v) != 0
                   ? -1
                   : 0;
    }

private:
    static int mandatory(const It& it, Everything& v) {
        int colour = 0;
        if (it.getValue(v.number, 3) != 0 || it.getValueLongLong(v.large, 4) != 0 ||
            it.getValue(v.flag, 5) != 0 || it.getValueDouble(v.real, 6) != 0 || it.getValue(v.text, 7) != 0 ||
            it.getValueBase64(v.bytes, 8) != 0 || it.getValueXML(v.fragment, 9) != 0 ||
            it.getValueTime(v.time, 10) != 0 || it.getValue(colour, 11) != 0) {
            return -1;
        }
        v.colour = static_cast<Colour>(colour);
        return HBXReaderIDT<int, CodeReader>(CodeReader(), 12, 1)(it, v.code) != 0
                   ? -1
                   : HBXReaderIDT<int, LeafReader>(LeafReader(), 13, 1)(it, v.leaf);
    }

    static int getXml(const It& it, HBXOptionalProperty<std::string>& property, int id) {
        std::string value;
        if (it.getValueXML(value, id) == 0) {
            property.set(value);
        }
        return 0;
    }

    static int optional(const It& it, Everything& v) {
        readOptional<int, &It::getValue>(it, v.maybeNumber, 14);
        readOptional<bool, &It::getValue>(it, v.maybeFlag, 15);
        readOptional<double, &It::getValueDouble>(it, v.maybeReal, 16);
        readOptional<std::string, &It::getValue>(it, v.maybeText, 17);
        readOptional<std::string, &It::getValueBase64>(it, v.maybeBytes, 18);
        getXml(it, v.maybeFragment, 19);
        readOptional<std::int64_t, &It::getValueTime>(it, v.maybeTime, 20);
        readOptionalRecord<Code, CodeReader>(it, v.maybeCode, 21);
        readOptionalRecord<Leaf, LeafReader>(it, v.maybeLeaf, 22);
        it.getValue(v.plainNumber, 23);
        readRecordIfGood<Code, CodeReader>(it, v.plainCode, 25);
        readRecordIfGood<Leaf, LeafReader>(it, v.plainLeaf, 26);
        return 0;
    }

    static int lists(const It& it, Everything& v) {
        using Numbers = HBXReaderSetDataT<ReadInt>;
        using NestedItems = HBXReaderListDataT<EverythingReader>;
        using Nested = HBXReaderListT<int, NestedItems>;
        using Shapes = HBXReaderDerivedList<int, Shape, Shape>;
        const bool bad =
            readList(it, v.numbers, 27, ReadInt()) != 0 || readList(it, v.leaves, 31, LeafReader()) != 0 ||
            readList(it, v.words, 32, ReadText()) != 0 || readList(it, v.leafSet, 33, LeafReader()) != 0;
        if (bad) {
            return -1;
        }
        const HBXReaderListT<int, Numbers> bareNumbers(Numbers(), 35, 0);
        const HBXReaderIDT<int, HBXReaderDerived<Shape>> shape(HBXReaderDerived<Shape>(), 36, 0);
        return bareNumbers(it, v.bareNumbers) != 0 || shape(it, v.shape) != 0 ||
                       HBXReaderIDT<int, Shapes>(Shapes(38, 0), 37, 0)(it, v.shapes) != 0 ||
                       HBXReaderIDT<int, Nested>(Nested(NestedItems(), 40, 0), 39, 0)(it, v.nested) != 0
                   ? -1
                   : 0;
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
    maybe(v.stamp), maybe(v.maybeNumber), maybe(v.maybeFlag), maybe(v.maybeReal), maybe(v.maybeText);
    maybe(v.maybeBytes), maybe(v.maybeFragment), maybe(v.maybeTime), maybe(v.maybeCode), maybe(v.maybeLeaf);
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

/// Does something to some element of the tree.
void damage(It& it, Random& random) {
    while (true) { // goes somewhere
        const std::size_t turn = random() % 4;
        if (turn == 0 && it.curID() != 0) {
            break;
        }
        if (turn == 1 || it.firstChild() != 0) {
            for (std::size_t steps = random() % 8; steps > 0 && it.nextSibling() == 0; --steps) {
            }
        }
    }
    const Cursor parent = secondCursor(it);
    parent->seekUp();
    static constexpr const char* kValues[] = {"",     "x",   "-1",  "ABC", " 12 ", "99999999999",
                                              "YWI=", "1.5", "true"};
    switch (random() % 9) {
    case 0:
        it.deleteFromChild();
        break;
    case 1: // twice
        parent->copyToChild(&it);
        break;
    case 2: // to the end
        parent->copyToChild(&it);
        it.deleteFromChild();
        break;
    case 3:
        parent->newChild(it.curID());
        break;
    case 4:
        it.putValueXML("<x/>", 0);
        break;
    case 5:
        it.putValue("x", static_cast<int>(random() % 41) + 1);
        break;
    case 6:
        it.setComplexType(292, static_cast<int>(random() % 4) + 5008);
        break;
    default:
        it.putValue(kValues[random() % std::size(kValues)], 0);
    }
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
            R"(<value ns="alert" kind="text"/></element><"21">AB</element><"23">3</element><"25">PLAIN</element>)"
            R"(<"26" tns="alert" type="info"><id ns="alert">7</id><value ns="alert" kind="text"/></element>)"
            R"(<"27"><"28">2</element><"28">1</element></element><"31"/><"32"/>)"
            R"(<"33"><"28" tns="alert" type="info"><id ns="alert">1</id><value ns="alert">a</value></element></element>)"
            R"(<"35">4</element><"36" tns="scheduler" type="mailer_account"><limit ns="scheduler">0</limit>)"
            R"(<offset ns="scheduler">0</offset></element><"37"/><"39"/></message>)"));
}

TEST(RecordTable, WritingTwiceReplacesRecordsAndAppendsTheRest) {
    Everything value;
    const auto write = [&](It& it) {
        it.putObject(Everything(), 0);
        return it.putObject(value, 0);
    };
    value.leaf.text = value.text = "second";
    const Cursor it = newCursor();
    std::string bytes;
    EXPECT_EQ(encode(write, bytes), 0);
    EXPECT_EQ(write(*it), 0);
    EXPECT_EQ(bytesOf(*it), bytes);
    Leaf leaf;
    EXPECT_EQ(it->getObject(leaf, 13), 0);
    EXPECT_EQ(leaf.text, "second");
    std::string text = "?";
    EXPECT_EQ(it->getValue(text, 7), 0);
    EXPECT_EQ(text, "");
}

TEST(RecordTable, NullItemOfAListFailsTheWriteInEveryWay) {
    Everything value;
    value.shapes.resize(1);
    const Cursor it = newCursor();
    std::string bytes = "kept";
    EXPECT_EQ(it->putObject(value, 0), -1);
    EXPECT_EQ(it->curID(), 0);
    EXPECT_EQ(encodeRecord(value, bytes), -1);
    EXPECT_EQ(bytes, "kept");
}

TEST(RecordTable, RecordsWithinRecordsEndWhereTheStackWould) {
    const auto chain = [](int levels) {
        Chain top;
        Chain* last = &top;
        for (; levels > 0; --levels) {
            last->links.resize(1);
            last = &last->links[0];
        }
        return top;
    };
    const Chain deepest = chain(255);
    std::string bytes;
    EXPECT_EQ(encodeRecord(deepest, bytes), 0);
    Chain read;
    EXPECT_EQ(decodeRecord(bytes, read), 0);
    EXPECT_TRUE(read == deepest);
    bytes = "kept";
    EXPECT_EQ(encodeRecord(chain(300), bytes), -1) << "deeper than a message may be";
    EXPECT_EQ(bytes, "kept");
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
