#include <gmock/gmock.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <thread>
#include <vector>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>
#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXRecordCheck.h>
#include <HBXMessage/HBXRecordSample.h>
#include <HBXMessage/HBXRecordVisitor.h>

#include "support/MessageTestUtil.h"

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

/// The names of all records that the public headers declare, without those of enclosing classes.
std::set<std::string> recordsInHeaders() {
    static const std::regex owner(R"((\s*)(?:struct|class) (?:HBX_EXPORT )?(\w+)[^;]*)");
    static const std::regex table(R"((\s*)static const HBXRecordTable table;)");
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(HBX_SOURCE_DIR "/core/src")) {
        if (entry.path().extension() != ".h") {
            continue;
        }
        std::map<std::ptrdiff_t, std::string> owners; // by indentation
        std::ifstream header(entry.path());
        std::smatch match;
        for (std::string line; std::getline(header, line);) {
            if (std::regex_match(line, match, owner)) {
                owners[match.length(1)] = match[2];
            } else if (std::regex_match(line, match, table)) {
                names.insert(owners[match.length(1) - 4]);
            }
        }
    }
    return names;
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
    std::set<std::string> expected = recordsInHeaders();
    for (const char* value :
         {"HBXConfigurationContent", "HBXMessageContent", "HBXVocContent", "HBXVocName"}) {
        EXPECT_EQ(expected.erase(value), 1U) << value;
    }
    EXPECT_THAT(names, testing::ContainerEq(expected));
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
    std::set<const HBXPointerType*> families;
    std::set<const HBXRecordTable*> registered;
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        const HBXRecordTable* table = entry.table;
        if (table->family != nullptr) {
            families.insert(table->family);
        }
    }
    for (const HBXPointerType* family : families) {
        for (const auto& [key, member] : family->registry().byType()) {
            const HBXRecordTable& table = member->table();
            EXPECT_EQ(table.family, family) << key;
            EXPECT_TRUE(registered.insert(&table).second) << key;
            const Cursor it = newCursor();
            const HBXRecordEntry* entry = findRecord(table.name);
            ASSERT_NE(entry, nullptr) << key;
            HBXAnyRecord(*entry).put(*it);
            EXPECT_EQ(it->curType(), key);
        }
    }
    const std::set<std::string_view> unregistered = {"HBXSchedulerTrigger", "HBXPackageLinux", "HBXEventData",
                                                     "HBXAlertData"};
    const std::map<std::string_view, const HBXRecordTable*> otherDefaults = {
        {"HBXSchedulerTrigger", nullptr}, {"HBXEventData", &HBXAnyEventData::table}};
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        const HBXRecordTable* table = entry.table;
        if (table->family == nullptr) {
            continue;
        }
        EXPECT_EQ(registered.count(table), unregistered.count(table->name) == 0 ? 1 : 0) << table->name;
        if (table->base == nullptr) {
            const auto other = otherDefaults.find(table->name);
            const HBXFamilyEntry* fallback = table->family->registry().fallback();
            EXPECT_EQ(fallback == nullptr ? nullptr : &fallback->table(),
                      other == otherDefaults.end() ? table : other->second)
                << table->name;
        }
    }
}

TEST(Catalogue, EntriesOfReadersAndWritersAreTracedOnceEach) {
    std::vector<std::string> lines;
    const HBXLogSink sink = setLogSink([&](const HBXLogLine& line) { lines.emplace_back(line.text); });
    const int level = debug_level.exchange(4);
    const Cursor it = newCursor();
    it->putObject(HBXTimeZone(), 3312); // by hand
    it->putObject(HBXEIDList(), 3033);  // by its table
    const boost::shared_ptr<HBXSchedulerTrigger> trigger = boost::make_shared<HBXSchedulerDailyTrigger>();
    HBXWriterIDT(HBXWriterDerived<HBXSchedulerTrigger>(), 3071)(*it, trigger);
    HBXTimeZone zone;
    it->getObject(zone, 3312);
    debug_level = level;
    setLogSink(sink);
    EXPECT_THAT(lines, testing::ElementsAre("Calling [HBX::HBXTimeZone::Writer::operator ()]",
                                            "Calling [HBX::HBXEIDList::Writer::operator ()]",
                                            "Calling [HBX::HBXSchedulerDailyTrigger::Writer::operator ()]",
                                            "Calling [HBX::HBXTimeZone::Reader::operator ()]"));
}

TEST(Catalogue, ThreadsEncodeAndDecodeSideBySide) {
    std::vector<std::thread> threads;
    std::atomic<int> failures{0};
    for (unsigned seed = 0; seed < 4; ++seed) {
        threads.emplace_back([seed, &failures] {
            std::mt19937_64 random(seed);
            std::string bytes;
            for (int round = 0; round < kRounds; ++round) {
                const auto trigger = makeSample<HBXSchedulerMonthlyDayOfWeekTrigger>(random);
                HBXSchedulerMonthlyDayOfWeekTrigger back;
                failures +=
                    encodeRecord(trigger, bytes) == 0 && decodeRecord(bytes, back) == 0 && back == trigger
                        ? 0
                        : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
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

void damage(HBXMessageIterator& it, Random& random) {
    const Cursor parent = secondCursor(it);
    switch (random() % 6) {
    case 0:
        it.deleteFromChild();
        break;
    case 1:
        it.putValue("x y", 0);
        break;
    case 2:
        it.setComplexType(283, 9999);
        break;
    case 3:
        it.putValue("", 0);
        break;
    default: // there twice, or behind its siblings
        parent->seekUp();
        parent->copyToChild(&it);
        if (random() % 2 == 0) {
            it.deleteFromChild();
        }
    }
}

TEST(RecordCheck, WhatDoesNotReadDoesNotFitAndTheCursorStays) {
    Random random(22);
    int refused = 0;
    int stricter = 0;
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        for (int round = 0; round < 100; ++round) {
            const Message message = messageOf(randomRecord(entry, random));
            damage(*anyElement(message, random), random);
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

TEST(RecordCheck, MandatoryMembersThatAreMissingAreNamed) {
    Random random(23);
    int missing = 0;
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        const HBXRecordTable& table = *entry.table;
        for (const HBXRow& row : table) {
            if (row.presence != HBXPresence::Mandatory || table.read != nullptr) {
                continue;
            }
            const Cursor it = rootOf(messageOf(randomRecord(entry, random)));
            it->deleteChild(row.id);
            EXPECT_EQ(HBXAnyRecord(entry).get(*it), -1) << table.name << '.' << row.name;
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
