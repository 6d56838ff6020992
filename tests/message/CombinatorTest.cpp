#include <set>
#include <vector>

#include <gmock/gmock.h>

#include "support/MessageTestUtil.h"

/// Readers and writers composed by hand.
namespace HBX::test {
namespace {

using It = HBXMessageIterator;
using ReadInt = HBXReaderSimple<int, static_cast<int (It::*)(int&, int) const>(&It::getValue)>;
using WriteInt = HBXWriterSimple<int, static_cast<int (It::*)(int, int)>(&It::putValue)>;
using Ints = HBXReaderListDataT<ReadInt>;
using ReadInts = HBXReaderListT<int, Ints>;
using ReadMember = HBXReaderIDT<int, ReadInts>;
using WriteItem = HBXWriterIDT<int, WriteInt>;
using WriteInts = HBXWriterListT<WriteItem>;

/// A record with marks of one's choice, for writing only; a negative number fails.
template <int NS, int Type>
struct Marked {
    int number = 1;

    struct Writer {
        static inline const char* nsName = "";
        static inline const char* typeName = "";
        static int getNSID() { return NS; }
        static const char* getNSName() { return nsName; }
        static int getTypeID() { return Type; }
        static const char* getTypeName() { return typeName; }
        int operator()(It& it, const Marked& v) const {
            return v.number < 0 ? -7 : it.putValue(v.number, 1010);
        }
    };
};

using Plain = Marked<0, 0>;
using Full = Marked<283, 295>;

using Items = std::vector<const char*>;

/// The items below element 1, with something else between them.
Cursor listOf(const Items& items) {
    Cursor it = newCursor();
    it->newChild(1);
    for (const char* item : items) {
        it->putValue(item, 2);
        it->putValue("between", 3);
    }
    it->seekUp();
    return it;
}

TEST(Combinators, ListsAppendUpToAFailureAndWrapperAndListAreOptionalIndependently) {
    const std::tuple<Items, int, int, int, int, std::vector<int>> rows[] = {
        {{"3", "1", "3"}, 1, 1, 1, 0, {9, 3, 1, 3}},
        {{"3", "bad", "4"}, 1, 0, 0, -1, {9, 3}},
        {{"bad"}, 1, 0, 1, -1, {9}},
        {{}, 7, 1, 0, -1, {9}},
        {{}, 7, 0, 1, 0, {9}},
        {{}, 1, 1, 0, 0, {9}},
        {{}, 1, 0, 1, -1, {9}}};
    for (const auto& [items, wrapper, mandatoryWrapper, mandatoryList, result, after] : rows) {
        const Cursor it = listOf(items);
        std::vector<int> list = {9};
        const ReadMember reader(ReadInts(Ints(), 2, mandatoryList), wrapper, mandatoryWrapper);
        EXPECT_EQ(reader(*it, list), result) << wrapper << mandatoryWrapper << mandatoryList;
        EXPECT_EQ(list, after);
        EXPECT_EQ(it->curID(), 0);
    }
    using Set = HBXReaderSetDataT<ReadInt>;
    const Cursor it = listOf({"3", "1", "3"});
    std::set<int> set;
    EXPECT_EQ((HBXReaderIDT<int, HBXReaderListT<int, Set>>({Set(), 2, 1}, 1, 1)(*it, set)), 0);
    EXPECT_THAT(set, ::testing::ElementsAre(1, 3));
}

TEST(Combinators, WritersWrapEveryItemAndStopAtAFailure) {
    const HBXWriterIDT<int, WriteInts> writer(WriteInts(WriteItem(WriteInt(), 2)), 1);
    const Cursor it = newCursor();
    EXPECT_EQ(writer(*it, std::vector<int>{}), 0);
    EXPECT_EQ(writer(*it, std::set<int>{4, 3}), 0);
    for (const int id : {-3, 0x40000001}) {
        EXPECT_EQ((HBXWriterIDT<int, WriteInt>({}, id)(*it, 1)), -1);
    }
    EXPECT_EQ(it->curID(), 0);
    EXPECT_EQ(contentText(*it),
              R"(<hbx:element hbx:id="1"/><hbx:element hbx:id="1"><hbx:element hbx:id="2">3)"
              R"(</hbx:element><hbx:element hbx:id="2">4</hbx:element></hbx:element>)");
    using WriteRecord = HBXWriterIDT<int, Plain::Writer>;
    std::vector<Plain> records(3);
    records[1].number = -1;
    const Cursor other = newCursor();
    EXPECT_EQ(HBXWriterListT<WriteRecord>(WriteRecord({}, 2))(*other, records), -1);
    EXPECT_EQ(contentText(*other),
              R"(<hbx:element hbx:id="2"><id>1</id></hbx:element><hbx:element hbx:id="2"/>)")
        << "the failed item stays, none follows";
}

TEST(Combinators, PointersAreReplacedOnlyByAGoodRead) {
    using Read = HBXReaderPointerT<ReadInt>;
    const auto old = boost::make_shared<int>(9);
    boost::shared_ptr<int> pointer = old;
    const Cursor it = newCursor();
    it->putValue("bad", 0);
    EXPECT_EQ(Read()(*it, pointer), -1);
    EXPECT_EQ(pointer, old);
    it->putValue("4", 0);
    EXPECT_EQ(Read()(*it, pointer), 0);
    EXPECT_EQ(*pointer, 4);
    EXPECT_EQ(*old, 9);
    using Write = HBXWriterPointerT<Full, Full::Writer>;
    const Cursor out = newCursor();
    EXPECT_EQ((HBXWriterIDT<int, Write>(Write(), 5)(*out, boost::shared_ptr<Full>())), -1);
}

TEST(Combinators, PutObjectReplacesTheFirstAndMovesToTheEnd) {
    const Cursor list = newCursor();
    for (const int id : {1, 9, 1}) {
        list->newChild(id);
        list->putValue(id, 1010);
        list->seekUp();
    }
    EXPECT_EQ(list->putObject(Plain{77}, 1), 0);
    EXPECT_EQ(contentText(*list),
              "<hbx:element hbx:id=\"9\"><id>9</id></hbx:element><hbx:element "
              "hbx:id=\"1\"><id>1</id></hbx:element><hbx:element hbx:id=\"1\"><id>77</id></hbx:element>");
    EXPECT_EQ(list->putObject(Plain{-1}, 1), -7) << "the writer's own result";
    EXPECT_EQ(list->curID(), 0);
}

template <int NS, int Type>
std::string marksOf(const char* nsName, const char* typeName) {
    using Record = Marked<NS, Type>;
    Record::Writer::nsName = nsName;
    Record::Writer::typeName = typeName;
    const Cursor it = newCursor();
    EXPECT_EQ(it->putObject(Record(), 1), 0);
    it->seek(1);
    std::string marks = it->curType() + "/" + std::to_string(it->curNamespaceID() & 0x4FFFFFFF);
    it->firstChild();
    return marks + "/" + std::to_string(it->curNamespaceID() & 0x4FFFFFFF);
}

TEST(Combinators, MarksFollowIdsBeforeNamesAndOnlyBeyondHundred) {
    EXPECT_EQ((marksOf<283, 295>("", "")), "scheduler:daily_trigger/0/283");
    EXPECT_EQ((marksOf<283, 100>("", "")), "/0/283");
    EXPECT_EQ((marksOf<283, 101>("", "")), "scheduler:/0/283");
    EXPECT_EQ((marksOf<283, 100>("", "daily_trigger")), "daily_trigger/0/283");
    EXPECT_EQ((marksOf<283, 295>("common", "other")), "scheduler:daily_trigger/0/283");
    EXPECT_EQ((marksOf<0, 0>("common", "own")), "common:own/0/292");
    EXPECT_EQ((marksOf<0, 0>("mine", "")), "/0/" + std::to_string(0x40000000));
    EXPECT_EQ((marksOf<0, 0>("", "")), "/0/0");
}

/// A record whose nested one has no marks of its own.
struct Outer : HBXPlainMarks {
    static int getNSID() { return 292; }
    int operator()(It& it, int) const {
        it.putValue(1, 1010);
        it.putObject(Plain(), 1026);
        return it.putValue(3, 1010);
    }
};

TEST(Combinators, SavedNamespaceReachesOverARecordWithoutMarks) {
    const Cursor it = newCursor();
    EXPECT_EQ((HBXWriterIDT<int, Outer>(Outer(), 1021, 283)(*it, 0)), 0);
    it->putValue(1, 1018);
    EXPECT_EQ(
        contentText(*it),
        R"(<configuration hbx:ns="scheduler"><id hbx:ns="common">1</id><name hbx:ns="common">)"
        R"(<id hbx:ns="common">1</id></name><id hbx:ns="common">3</id></configuration><value>1</value>)");
}

TEST(Combinators, MisuseAbortsAtItsLine) {
    const Cursor it = newCursor();
    int value = 0;
    const std::string where = "HBXFunctionalityCore core/src/HBXMessage/HBXMessageIterator:";
    EXPECT_EQ(abortOf([&] { HBXReaderIDT<int, ReadInt>({}, 0, 0)(*it, value); }),
              where + "752 HBX::HBXReaderIDT::operator ()");
    EXPECT_EQ(abortOf([&] { HBXWriterIDT<int, WriteInt>({}, 0)(*it, 1); }),
              where + "671 HBX::HBXWriterIDT::operator ()");
    using Nameless = Marked<283, 297>;
    const std::string put = " HBX::HBXMessageIterator::putObjectInternal";
    Nameless::Writer::nsName = Nameless::Writer::typeName = nullptr;
    EXPECT_EQ(abortOf([&] { it->putObject(Nameless(), 0); }), where + "853" + put);
    Nameless::Writer::nsName = "";
    EXPECT_EQ(abortOf([&] { it->putObject(Nameless(), 0); }), where + "854" + put);
    Nameless::Writer::typeName = "";
    EXPECT_EQ(bytesOf(*it), bytesOf(*newCursor())) << "nothing is written before";
    EXPECT_EQ(abortOf([&] { it->putObject(Nameless(), 0); }), "");
}

} // namespace
} // namespace HBX::test
