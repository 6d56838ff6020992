#include <gtest/gtest.h>

#include <HBXMessage/HBXRecordTable.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

/// Reader and writer of a record that throw away what they are in the middle of.
struct Vandal {
    int unused = 0;

    static const HBXRecordTable table;
    static int replaceAll(const HBXMessageIterator& it) {
        const std::string empty = bytesOf(newMessage());
        return it.getMessage()->init(empty.data(), static_cast<int>(empty.size()));
    }
    struct Reader {
        int operator()(const HBXMessageIterator& it, Vandal&) const { return replaceAll(it); }
    };
    struct Writer : HBXWriterMarks<Vandal> {
        int operator()(HBXMessageIterator& it, const Vandal&) const { return replaceAll(it); }
    };
};

constexpr HBXRow kVandal[] = {valueOnly<&Vandal::unused>()};
constinit const HBXRecordTable Vandal::table = recordTable<Vandal>("Vandal", 0, 0, kVandal);

struct Host {
    int before = 1;
    Vandal vandal;
    HBXOptionalProperty<Vandal> other;
    std::vector<int> after{1, 2, 3};

    static const HBXRecordTable table;
    using Reader = HBXTableReader<Host>;
    using Writer = HBXTableWriter<Host>;
};

/// Nothing but the optional member could fail.
struct Lenient {
    HBXOptionalProperty<Vandal> other;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<Lenient>;
};

constexpr HBXRow kLenient[] = {member<&Lenient::other>(2)};
constinit const HBXRecordTable Lenient::table = recordTable<Lenient>("Lenient", 0, 0, kLenient);

constexpr HBXRow kHost[] = {
    member<&Host::before>(1),
    member<&Host::other>(2),
    member<&Host::vandal>(3),
    list<&Host::after>(4, 5),
};
constinit const HBXRecordTable Host::table = recordTable<Host>("Host", 0, 0, kHost);

/// So deep that the element lies beyond the nodes of the new tree.
Cursor deepCursor() {
    Cursor it = newCursor();
    for (int level = 0; level < 200; ++level) {
        it->newChild(7);
    }
    return it;
}

TEST(MisbehavingRecord, FailsWhenItsWriterReplacesTheMessage) {
    const Cursor it = deepCursor();
    EXPECT_EQ(it->putObject(Host(), 0), -1);
    EXPECT_EQ(it->curID(), 0) << "stale";
    EXPECT_EQ(it->seekRoot(), 0);
    EXPECT_EQ(it->firstChild(), -1) << "empty";
}

TEST(MisbehavingRecord, FailsWhenItsReaderReplacesTheMessage) {
    const auto read = [](auto record, int id) {
        const Cursor it = deepCursor();
        for (const int child : {1, id, 4}) {
            it->putValue(1, child);
        }
        EXPECT_EQ(it->getObject(record, 0), -1) << id;
        EXPECT_EQ(it->curID(), 0) << "stale";
    };
    read(Host(), 2);
    read(Host(), 3);
    read(Lenient(), 2);
}

} // namespace
} // namespace HBX::test
