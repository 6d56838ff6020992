#include <regex>

#include <gmock/gmock.h>

#include <HBXMessage/HBXRecordTable.h>

#include "SampleRecords.h"
#include "support/MessageTestUtil.h"

/// The rules by which tables read, write and compare; that every way of reading and writing agrees is shown
/// with the records of the catalogue.
namespace HBX::test {
namespace {

using It = HBXMessageIterator;

Everything written() {
    Everything value;
    value.number = 5;
    value.fragment = "<x/>";
    value.maybeNumber.set(6);
    value.maybeLeaf.set(Leaf{7, "leaf"});
    value.numbers = {3, 2};
    value.leafSet = {Leaf{1, "a"}};
    value.bareNumbers = {4};
    value.shape.reset(new Circle);
    return value;
}

/// What is read into; every member that may be absent is there.
Everything start() {
    Everything value;
    value.maybeNumber.set(99);
    value.maybeLeaf.set(Leaf{99, "kept"});
    value.plainNumber = 99;
    value.numbers = {1};
    return value;
}

void replace(It& it, int id, const char* value) { it.deleteChild(id), it.putValue(value, id); }
void replaceByEmpty(It& it, int id) { it.deleteChild(id), it.newChild(id), it.seekUp(); }

struct Change {
    const char* what;
    void (*change)(It& it);
    void (*expect)(Everything& value); ///< null: it does not read
};

constexpr Change kChanges[] = {
    {"two, of which the first counts", [](It& it) { it.putValue(99, 3); }, [](Everything&) {}},
    {"another order", [](It& it) { replace(it, 3, "5"); }, [](Everything&) {}},
    {"a mandatory value that is none", [](It& it) { replace(it, 3, "five"); }, nullptr},
    {"a mandatory value out of range", [](It& it) { replace(it, 42, "4294967296"); }, nullptr},
    {"a mandatory record that does not read", [](It& it) { replaceByEmpty(it, 13); }, nullptr},
    {"no optional value", [](It& it) { it.deleteChild(14); }, [](Everything& v) { v.maybeNumber.set(99); }},
    {"an optional element without a value", [](It& it) { replaceByEmpty(it, 14); },
     [](Everything& v) { v.maybeNumber.set(99); }},
    {"an optional record that does not read", [](It& it) { replaceByEmpty(it, 22); },
     [](Everything& v) {
         v.maybeLeaf.set(Leaf{99, "kept"});
     }},
    {"an optional number that is none", [](It& it) { replace(it, 23, "x"); },
     [](Everything& v) { v.plainNumber = 99; }},
    {"a set with an item that does not read", [](It& it) { it.seek(33), it.newChild(28), it.seekRoot(); },
     nullptr},
    {"a list with an item that does not read", [](It& it) { it.seek(27), it.newChild(28), it.seekRoot(); },
     nullptr},
    {"no list", [](It& it) { it.deleteChild(27); }, [](Everything& v) { v.numbers = {1}; }},
    {"no pointer", [](It& it) { it.deleteChild(36); }, [](Everything& v) { v.shape.reset(); }},
    {"a pointer of an unknown type", [](It& it) { it.seek(36), it.setComplexType(283, 9999), it.seekUp(); },
     [](Everything& v) { v.shape.reset(new Shape); }},
    {"a pointer that does not read", [](It& it) { replaceByEmpty(it, 36); }, nullptr},
};

TEST(RecordTable, ReadsByIdAndLeavesWhatIsOptionalAlone) {
    for (const Change& row : kChanges) {
        SCOPED_TRACE(row.what);
        const Cursor it = newCursor();
        it->putObject(written(), 0);
        row.change(*it);
        Everything read = start();
        EXPECT_EQ(it->getObject(read, 0), row.expect == nullptr ? -1 : 0);
        if (row.expect != nullptr) {
            Everything expected = written();
            expected.numbers = {1, 3, 2};
            row.expect(expected);
            EXPECT_TRUE(read == expected);
        }
        Everything inPlace = start();
        decodeRecord(bytesOf(*it), inPlace);
        EXPECT_TRUE(inPlace == read);
    }
}

TEST(RecordTable, WritesRowsInOrderWithMarks) {
    const Cursor it = newCursor();
    it->putObject(written(), 0);
    const std::string text =
        std::regex_replace(takeText(it->toText()), std::regex("hbx:element hbx:id=|hbx:"), "");
    EXPECT_THAT(
        text,
        ::testing::HasSubstr(
            R"( tns="backup" type="log_info">)"
            R"(<"2" ns="backup" tns="alert" type="info"><id ns="alert">7</id><value ns="alert" kind="text"/></element>)"
            R"(<"3">5</element><"6">0</element><"9" kind="xml"><![CDATA[<x/>]]></element>)"
            R"(<"13" tns="alert" type="info"><id ns="alert">7</id>)"
            R"(<value ns="alert" kind="text"/></element><"42">0</element><"14">6</element>)"
            R"(<"22" tns="alert" type="info"><id ns="alert">7</id><value ns="alert">leaf</value></element>)"
            R"(<"23">3</element><"27"><"28">3</element><"28">2</element></element>)"
            R"(<"33"><"28" tns="alert" type="info"><id ns="alert">1</id><value ns="alert">a</value></element></element>)"
            R"(<"35">4</element><"36" tns="scheduler" type="mailer_account"><limit ns="scheduler">0</limit>)"
            R"(<offset ns="scheduler">0</offset></element><"37"/></message>)"));
}

TEST(RecordTable, WhatCannotBeWrittenFailsInEveryWay) {
    Everything value;
    value.shapes.resize(1); // a null pointer
    const Cursor it = newCursor();
    std::string bytes = "kept";
    EXPECT_EQ(it->putObject(value, 0), -1);
    EXPECT_EQ(it->curID(), 0);
    EXPECT_EQ(encodeRecord(value, bytes), -1);
    EXPECT_EQ(bytes, "kept");
}

TEST(RecordTable, RecordsWithinRecordsEndWhereTheStackWould) {
    Chain deepest;
    for (int level = 0; level < 257; ++level) {
        Chain outer;
        outer.links.push_back(std::move(deepest));
        deepest = std::move(outer);
    }
    std::string bytes;
    EXPECT_EQ(encodeRecord(deepest, bytes), -1) << "deeper than a message may be";
    const Chain& readable = deepest.links[0];
    EXPECT_EQ(encodeRecord(readable, bytes), 0);
    Chain read;
    EXPECT_EQ(decodeRecord(bytes, read), 0);
    EXPECT_TRUE(read == readable);
    const Cursor it = newCursor();
    for (int i = 0; i < 100'000; ++i) {
        it->newChild(5);
    }
    it->seekRoot();
    EXPECT_EQ(it->getObject(read, 0), -1);
}

TEST(RecordTable, ComparesMemberByMember) {
    Everything a;
    Everything b;
    const auto isLess = [&] { return a < b && !(b < a) && a != b; };
    b.maybeNumber.set(-1);
    EXPECT_TRUE(isLess()) << "unset comes first";
    b.maybeNumber.reset();
    a.shape.reset(new Shape);
    EXPECT_TRUE(b < a) << "null comes first";
    b.shape.reset(new Circle);
    EXPECT_TRUE(isLess()) << "by type name";
    b.shape.reset(new Shape);
    a.stamp.set(1);
    b.number = 9;
    EXPECT_TRUE(b < a) << "the base first";
    b.stamp.set(1);
    a.real = -0.0;
    b.number = 0;
    EXPECT_TRUE(isLess()) << "zeros differ, as their texts do";
}

/// Reader and writer of a record that throw away what they are in the middle of.
struct Vandal {
    static const HBXRecordTable table;
    static int replaceAll(const It& it) { return it.getMessage()->create(5); }
    struct Reader {
        int operator()(const It& it, Vandal&) const { return replaceAll(it); }
    };
    struct Writer : HBXWriterMarks<Vandal> {
        int operator()(It& it, const Vandal&) const { return replaceAll(it); }
    };
};

template <class Member>
struct Host {
    Member vandal{Vandal()};
    std::vector<int> after{1, 2, 3};

    static const HBXRecordTable table;
    using Reader = HBXTableReader<Host>;
    using Writer = HBXTableWriter<Host>;
};

template <class Member>
constexpr HBXRow kHost[] = {member<&Host<Member>::vandal>(3), list<&Host<Member>::after>(4, 5)};
template <class Member>
constinit const HBXRecordTable Host<Member>::table = recordTable<Host<Member>>("Host", 0, 0, kHost<Member>);
constinit const HBXRecordTable Vandal::table = recordTable<Vandal>("Vandal", 0, 0);

template <class Member>
void expectFailure() {
    for (const bool writes : {true, false}) {
        const Cursor it = newCursor();
        for (int level = 0; level < 200; ++level) { // beyond the nodes of the new tree
            it->newChild(7);
        }
        it->putValue(1, 3);
        it->putValue(1, 4);
        Host<Member> host;
        EXPECT_EQ(writes ? it->putObject(host, 0) : it->getObject(host, 0), -1);
        EXPECT_EQ(it->curID(), 0) << "stale";
    }
}

TEST(RecordTable, FailsWhenAMemberReplacesTheMessage) {
    expectFailure<Vandal>();
    expectFailure<HBXOptionalProperty<Vandal>>();
}

} // namespace
} // namespace HBX::test
