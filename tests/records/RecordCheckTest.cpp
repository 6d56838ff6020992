#include <gtest/gtest.h>

#include <algorithm>

#include <HBXFunctionalityCore/HBXCatalogue.h>
#include <HBXMessage/HBXRecordCheck.h>
#include <HBXMessage/HBXRecordSample.h>
#include <HBXMessage/HBXRecordVisitor.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

using Random = std::mt19937_64;

HBXAnyRecord randomRecord(const HBXRecordEntry& entry, Random& random) {
    HBXAnyRecord record(entry);
    fillSample(record.get(), *entry.table, random);
    return record;
}

/// "" when the element fits.
std::string misfitOf(const HBXMessageIterator& it, const HBXRecordEntry& entry) {
    const auto misfit = findMisfit(it, entry);
    return misfit ? misfit->path + ": " + misfit->expected + ", not " + misfit->found : "";
}

/// On an element that is chosen among all below the root, one step down with each throw of the dice.
Cursor anyElement(const Message& message, Random& random) {
    Cursor it = rootOf(message);
    while (it->firstChild() == 0) {
        while (random() % 3 != 0 && it->nextSibling() == 0) {
        }
        if (random() % 3 == 0) {
            break;
        }
    }
    return it;
}

void damage(HBXMessageIterator& it, Random& random) {
    switch (random() % 4) {
    case 0:
        it.deleteFromChild();
        break;
    case 1:
        it.putValue("x y", 0);
        break;
    case 2:
        it.setComplexType(283, 9999);
        break;
    default:
        it.putValue("", 0);
    }
}

TEST(RecordCheck, WhatRecordsWriteFits) {
    Random random(21);
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        for (int round = 0; round < 50; ++round) {
            const Cursor it = newCursor();
            ASSERT_EQ(randomRecord(entry, random).put(*it), 0);
            EXPECT_EQ(misfitOf(*it, entry), "") << entry.table->name;
        }
    }
}

TEST(RecordCheck, WhatDoesNotReadDoesNotFitAndTheCursorStays) {
    Random random(22);
    int refused = 0;
    int stricter = 0;
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        for (int round = 0; round < 100; ++round) {
            const Message message = newMessage();
            ASSERT_EQ(randomRecord(entry, random).put(*rootOf(message)), 0);
            damage(*anyElement(message, random), random);
            const Cursor it = rootOf(message);
            const bool reads = HBXAnyRecord(entry).get(*it) == 0;
            const std::string misfit = misfitOf(*it, entry);
            EXPECT_TRUE(reads || !misfit.empty()) << entry.table->name;
            EXPECT_EQ(it->seekUp(), -1) << "at the root again";
            refused += reads ? 0 : 1;
            stricter += reads && !misfit.empty() ? 1 : 0;
        }
    }
    EXPECT_GT(refused, 3000);
    EXPECT_GT(stricter, 500) << "optional members with unreadable values";
}

TEST(RecordCheck, MandatoryMembersThatAreMissingAreNamed) {
    Random random(23);
    int missing = 0;
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        const HBXRecordTable& table = *entry.table;
        for (const HBXRow& row : table) {
            if (row.presence != HBXPresence::Mandatory || table.read != nullptr) {
                continue;
            }
            const Cursor it = newCursor();
            ASSERT_EQ(randomRecord(entry, random).put(*it), 0);
            it->deleteChild(row.id);
            const auto misfit = findMisfit(*it, entry);
            ASSERT_TRUE(misfit) << table.name << '.' << row.name;
            EXPECT_EQ(misfit->path, "/" + std::string(memberLabel(row)));
            EXPECT_EQ(misfit->found, "no such element");
            ++missing;
        }
    }
    EXPECT_GT(missing, 200);
}

} // namespace
} // namespace HBX::test
