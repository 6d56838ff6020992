#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <regex>
#include <set>
#include <vector>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>
#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXRecordCheck.h>
#include <HBXMessage/HBXRecordSample.h>
#include <HBXMessage/HBXRecordVisitor.h>

#include "support/CapturedLog.h"
#include "support/MessageTestUtil.h"
#include "support/ScratchFolder.h"
#include "support/Threads.h"

namespace HBX::test {
namespace {

using Random = std::mt19937_64;

constexpr int kRounds = 200;

HBXAnyRecord randomRecord(const HBXRecordEntry& entry, Random& random) {
    HBXAnyRecord record(entry);
    fillSample(record.get(), *entry.table, random);
    return record;
}

Message messageOf(const HBXAnyRecord& record) {
    Message message = newMessage();
    EXPECT_EQ(record.put(*rootOf(message)), 0);
    return message;
}

/// How many records the public headers declare.
std::ptrdiff_t recordsInHeaders() {
    static const std::regex table("\\n +static const HBXRecordTable table;");
    std::ptrdiff_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(HBX_SOURCE_DIR "/core/src")) {
        const std::string text = entry.path().extension() == ".h" ? contentOf(entry.path()) : "";
        count += std::distance(std::sregex_iterator(text.begin(), text.end(), table), {});
    }
    return count;
}

TEST(Catalogue, ListsEveryRecordOnceWithWhatMarksIt) {
    std::set<std::string> names;
    std::set<std::string> types;
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        const HBXRecordTable* table = entry.table;
        EXPECT_TRUE(names.emplace(table->name.substr(table->name.rfind(':') + 1)).second) << table->name;
        EXPECT_EQ(findRecord(table->name), &entry);
        const std::string type = qualifiedTypeName(*table);
        EXPECT_EQ(table->typeId != 0, !type.empty()) << table->name;
        EXPECT_TRUE(type.empty() || types.insert(type).second) << type;
        for (const HBXRow& row : *table) {
            EXPECT_FALSE(row.name.empty()) << table->name;
            EXPECT_TRUE(row.presence == HBXPresence::ValueOnly || *HBXDefaultMap::findElemID(row.key) != '\0')
                << table->name << '.' << row.name;
        }
    }
    // What is one text inside other records is a value, no record that travels by itself.
    const std::set<std::string> values = {"HBXConfigurationContent", "HBXMessageContent", "HBXVocContent",
                                          "HBXVocName"};
    for (const std::string& value : values) {
        EXPECT_EQ(findRecord(value), nullptr);
    }
    EXPECT_EQ(recordsInHeaders(), std::ssize(names) + std::ssize(values));
    EXPECT_EQ(findRecord("HBXNone"), nullptr);
}

TEST(Catalogue, RandomValuesTravelEveryWayAndCompareEqual) {
    const std::set<std::string_view> needValues = {"HBXDate", "HBXConfiguration", "HBXVocPrototype",
                                                   "HBXDirRealm", "HBXSID"};
    Random random(4);
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        SCOPED_TRACE(entry.table->name);
        std::string straight;
        EXPECT_EQ(HBXAnyRecord(entry).encode(straight), needValues.count(entry.table->name) != 0 ? -1 : 0);
        for (int round = needValues.count(entry.table->name) != 0 ? 1 : 0; round < kRounds; ++round) {
            const HBXAnyRecord record = round == 0 ? HBXAnyRecord(entry) : randomRecord(entry, random);
            const Message message = messageOf(record);
            ASSERT_EQ(record.encode(straight), 0);
            EXPECT_EQ(straight, bytesOf(message));
            EXPECT_FALSE(findMisfit(*rootOf(message), entry));

            HBXAnyRecord inPlace(entry);
            ASSERT_EQ(inPlace.decode(straight), 0);
            EXPECT_TRUE(inPlace == record) << takeText(message->toText(nullptr, " "));

            const Message fromText = newMessage();
            ASSERT_EQ(fromText->fromText(takeText(message->toText(nullptr, " ")).c_str(), nullptr), 0);
            HBXAnyRecord throughText(entry);
            ASSERT_EQ(throughText.get(*rootOf(fromText)), 0);
            EXPECT_TRUE(throughText == record);
        }
    }
}

TEST(Catalogue, OrderIsTotal) {
    Random random(5);
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        std::vector<HBXAnyRecord> values;
        for (int i = 0; i < 12; ++i) {
            values.push_back(i % 4 == 3 ? HBXAnyRecord(entry) : randomRecord(entry, random));
        }
        for (const HBXAnyRecord& a : values) {
            for (const HBXAnyRecord& b : values) {
                EXPECT_EQ(a <=> b, 0 <=> (b <=> a)) << entry.table->name;
                for (const HBXAnyRecord& c : values) {
                    EXPECT_FALSE(a < b && b < c && !(a < c)) << entry.table->name;
                }
            }
        }
    }
}

/// Puts an element that no record knows behind each child of the root.
void addStrangers(const Message& message) {
    const Cursor root = rootOf(message);
    const Cursor child = rootOf(message);
    int children = 0;
    for (int result = child->firstChild(); result == 0; result = child->nextSibling()) {
        ++children;
    }
    for (; children > 0; --children) { // each goes to the end, with its stranger
        child->seekRoot();
        child->firstChild();
        root->copyToChild(child.get());
        child->deleteFromChild();
        root->putValue("x", "stranger");
    }
}

TEST(Catalogue, UnknownElementsArePassedOverAndStayInRecordsThatAreCarriedOn) {
    const std::set<std::string_view> carried = {"HBXEnvConfig", "HBXVEnvConfig", "HBXAnyData",
                                                "HBXAnyEventData"};
    const std::set<std::string_view> wholeMessages = {"HBXConfiguration", "HBXVocPrototype"};
    Random random(8);
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        const std::string_view name = entry.table->name;
        if (wholeMessages.count(name) != 0) {
            continue;
        }
        SCOPED_TRACE(name);
        const HBXAnyRecord record = randomRecord(entry, random);
        const Message message = messageOf(record);
        addStrangers(message);
        HBXAnyRecord back(entry);
        ASSERT_EQ(back.get(*rootOf(message)), 0);
        if (carried.count(name) != 0) {
            EXPECT_EQ(bytesOf(messageOf(back)), bytesOf(message));
        } else {
            EXPECT_TRUE(back == record);
        }
    }
}

TEST(Catalogue, EveryClassOfAFamilyIsFoundByTheMarkItWrites) {
    const std::set<std::string_view> unregistered = {"HBXSchedulerTrigger", "HBXPackageLinux", "HBXEventData",
                                                     "HBXAlertData"};
    std::map<const HBXFamilyRegistry*, std::size_t> registered;
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        const HBXRecordTable* table = entry.table;
        if (table->family == nullptr) {
            continue;
        }
        const HBXFamilyRegistry& registry = table->family->registry();
        const Cursor it = newCursor();
        HBXAnyRecord(entry).put(*it);
        const HBXFamilyEntry* member = registry.ofType(it->curType());
        const bool isRegistered = member != nullptr && &member->table() == table;
        EXPECT_EQ(isRegistered, unregistered.count(table->name) == 0) << table->name;
        registered[&registry] += isRegistered ? 1 : 0;
    }
    EXPECT_EQ(HBXDerivedParserFactory<HBXSchedulerTrigger>::factoryData()->defaultFactory(), nullptr);
    for (const auto& [registry, count] : registered) {
        EXPECT_EQ(registry->byType().size(), count) << "all of them are in the catalogue";
    }
}

TEST(Catalogue, EntriesOfReadersAndWritersAreTracedOnceEach) {
    CapturedLog log;
    const int level = debug_level.exchange(4);
    const Cursor it = newCursor();
    it->putObject(HBXTimeZone(), 3312); // by hand
    it->putObject(HBXEIDList(), 3033);  // by its table
    boost::shared_ptr<HBXSchedulerTrigger> trigger = boost::make_shared<HBXSchedulerDailyTrigger>();
    HBXWriterIDT(HBXWriterDerived<HBXSchedulerTrigger>(), 3071)(*it, trigger);
    HBXTimeZone zone;
    it->getObject(zone, 3312);
    it->seek(3071);
    HBXReaderDerived<HBXSchedulerTrigger>()(*it, trigger);
    debug_level = level;
    EXPECT_EQ(log.take(), "4 Calling [HBX::HBXTimeZone::Writer::operator ()]\n"
                          "4 Calling [HBX::HBXEIDList::Writer::operator ()]\n"
                          "4 Calling [HBX::HBXSchedulerDailyTrigger::Writer::operator ()]\n"
                          "4 Calling [HBX::HBXTimeZone::Reader::operator ()]\n"
                          "4 Calling [HBX::HBXSchedulerDailyTrigger::Reader::operator ()]\n");
}

TEST(Catalogue, ThreadsEncodeAndDecodeSideBySide) {
    std::atomic<int> failures{0};
    std::atomic<unsigned> seed{0};
    const auto travel = [&] {
        Random random(++seed);
        std::string bytes;
        for (int round = 0; round < kRounds; ++round) {
            const auto trigger = makeSample<HBXSchedulerMonthlyDayOfWeekTrigger>(random);
            HBXSchedulerMonthlyDayOfWeekTrigger back;
            const bool travels = encodeRecord(trigger, bytes) == 0 && decodeRecord(bytes, back) == 0;
            failures += travels && back == trigger ? 0 : 1;
        }
    };
    runThreads({travel, travel, travel, travel});
    EXPECT_EQ(failures, 0);
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

constexpr void (*kDamages[])(HBXMessageIterator& it, HBXMessageIterator& parent) = {
    [](auto& it, auto&) { it.deleteFromChild(); },
    [](auto& it, auto&) { it.putValue("x y", 0); },
    [](auto& it, auto&) { it.setComplexType(283, 9999); },
    [](auto& it, auto&) { it.putValue("", 0); },
    [](auto& it, auto& parent) { parent.copyToChild(&it); },                       // twice
    [](auto& it, auto& parent) { parent.copyToChild(&it), it.deleteFromChild(); }, // behind its siblings
};

TEST(RecordCheck, WhatDoesNotReadDoesNotFitAndTheCursorStays) {
    Random random(22);
    int refused = 0;
    int stricter = 0;
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        for (int round = 0; round < 100; ++round) {
            const Message message = messageOf(randomRecord(entry, random));
            const Cursor damaged = anyElement(message, random);
            const Cursor parent = secondCursor(*damaged);
            parent->seekUp();
            kDamages[random() % std::size(kDamages)](*damaged, *parent);
            const Cursor it = rootOf(message);
            HBXAnyRecord record(entry);
            HBXAnyRecord inPlace(entry);
            const bool reads = record.get(*it) == 0;
            EXPECT_EQ(inPlace.decode(bytesOf(message)) == 0, reads) << entry.table->name;
            EXPECT_TRUE(inPlace == record) << entry.table->name;
            const bool fits = !findMisfit(*it, entry);
            EXPECT_TRUE(reads || !fits) << entry.table->name;
            EXPECT_EQ(it->seekUp(), -1) << "at the root again";
            refused += reads ? 0 : 1;
            stricter += reads && !fits ? 1 : 0;
        }
    }
    EXPECT_GT(refused, 2000);
    EXPECT_GT(stricter, 500) << "optional members with unreadable values";
}

TEST(Catalogue, OptionalMembersMayAllBeMissingAndMandatoryOnesAreNamed) {
    Random random(23);
    int mandatory = 0;
    int others = 0;
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        const HBXAnyRecord record = randomRecord(entry, random);
        const Cursor without = rootOf(messageOf(record));
        for (const HBXRecordTable* level = entry.table; level != nullptr; level = level->base) {
            for (const HBXRow& row : *level) {
                SCOPED_TRACE(std::string(entry.table->name) + '.' + std::string(row.name));
                if (row.name == "alertTypes") {
                    continue; // a list of as many as there are reasons
                }
                const bool mustBeThere = row.presence == HBXPresence::Mandatory;
                (mustBeThere ? mandatory : others)++;
                const Cursor it = rootOf(messageOf(record));
                it->deleteChild(row.key);
                HBXAnyRecord back(entry);
                EXPECT_EQ(back.get(*it), mustBeThere ? -1 : 0);
                const auto misfit = findMisfit(*it, entry);
                EXPECT_EQ(misfit ? misfit->path + ": " + misfit->found : "",
                          mustBeThere ? "/" + std::string(memberLabel(row)) + ": no such element" : "");
                if (!mustBeThere) {
                    without->deleteChild(row.key);
                    EXPECT_TRUE(back != record || entry.table->compare != nullptr ||
                                bytesOf(messageOf(back)) == bytesOf(messageOf(record)))
                        << "equal without it";
                }
            }
        }
        const bool needsSome = entry.table->name == "HBXDate";
        EXPECT_EQ(HBXAnyRecord(entry).decode(bytesOf(*without)), needsSome ? -1 : 0) << entry.table->name;
    }
    EXPECT_GT(mandatory, 250);
    EXPECT_GT(others, 350);
}

} // namespace
} // namespace HBX::test
