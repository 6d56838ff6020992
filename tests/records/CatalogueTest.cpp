#include <gmock/gmock.h>

#include <atomic>
#include <set>
#include <thread>
#include <vector>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>
#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXRecordSample.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

constexpr int kRounds = 200;

/// A record of any type in the catalogue, held by value behind one interface.
class AnyRecord {
public:
    virtual ~AnyRecord() = default;
    virtual void fill(std::mt19937_64& random) = 0;
    virtual int put(HBXMessageIterator& it) const = 0;
    virtual int get(const HBXMessageIterator& it) = 0;
    virtual int encode(std::string& bytes) const = 0;
    virtual int decode(std::string_view bytes) = 0;
    virtual std::strong_ordering compare(const AnyRecord& other) const = 0;
    virtual const HBXRecordTable& table() const = 0;
    virtual std::unique_ptr<AnyRecord> blank() const = 0;
};

template <class T>
class Held final : public AnyRecord {
public:
    void fill(std::mt19937_64& random) override { fillSample(&value_, T::table, random); }
    int put(HBXMessageIterator& it) const override { return it.putObject(value_, 0); }
    int get(const HBXMessageIterator& it) override { return it.getObject(value_, 0); }
    int encode(std::string& bytes) const override { return encodeRecord(value_, bytes); }
    int decode(std::string_view bytes) override { return decodeRecord(bytes, value_); }
    std::strong_ordering compare(const AnyRecord& other) const override {
        return value_ <=> dynamic_cast<const Held&>(other).value_;
    }
    const HBXRecordTable& table() const override { return T::table; }
    std::unique_ptr<AnyRecord> blank() const override { return std::make_unique<Held>(); }

private:
    T value_;
};

/// Random members hardly make a valid realm.
template <>
void Held<HBXDirRealm>::fill(std::mt19937_64& random) {
    fillSample(&value_, HBXDirRealm::table, random);
    value_.type = HBXDirRealm::kType;
    value_.server += '.';
    value_.port |= 1;
    value_.principalsDn += value_.baseDn;
}

template <class... T>
std::vector<std::unique_ptr<AnyRecord>> hold() {
    std::vector<std::unique_ptr<AnyRecord>> held;
    (held.push_back(std::make_unique<Held<T>>()), ...);
    return held;
}

std::vector<std::unique_ptr<AnyRecord>> allRecords() {
    return hold<HBXGUID, HBXEID, HBXEIDList, HBXTimeInterval, HBXTimeZone, HBXDate, HBXNamedOpStrListProperty,
                HBXSchedulerTrigger, HBXSchedulerOnceTrigger, HBXSchedulerDailyTrigger,
                HBXSchedulerWeeklyTrigger, HBXSchedulerMonthlyTrigger, HBXSchedulerMonthlyDayOfWeekTrigger,
                HBXEnv, HBXEnvConfig, HBXVEnvConfig, HBXEnvStatus, HBXQoS, HBXOS, HBXVtSettings, HBXVtVersion,
                HBXIPAddress, HBXVocID, HBXVocPrototype, HBXAuthName, HBXConnectionInfo, HBXDirControl,
                HBXDirSortControl, HBXDirVlvControl, HBXDirEntry, HBXRealm, HBXDirRealm, HBXSID, HBXToken,
                HBXConfiguration>();
}

TEST(Catalogue, ListsEveryRecordOnceWithWhatMarksIt) {
    std::set<std::string_view> names;
    for (const HBXRecordTable* table : recordCatalogue()) {
        EXPECT_TRUE(names.insert(table->name).second) << table->name;
        EXPECT_EQ(findRecord(table->name), table);
        EXPECT_EQ(table->typeId != 0, !qualifiedTypeName(*table).empty()) << table->name;
        for (const HBXRow& row : *table) {
            EXPECT_FALSE(row.name.empty()) << table->name;
            EXPECT_TRUE(row.presence == HBXPresence::ValueOnly || *HBXDefaultMap::findElemID(row.key) != '\0')
                << table->name << '.' << row.name;
        }
    }
    EXPECT_EQ(names.size(), allRecords().size()) << "this test knows every record";
    EXPECT_EQ(findRecord("HBXNone"), nullptr);
}

TEST(Catalogue, RandomValuesTravelEveryWayAndCompareEqual) {
    std::mt19937_64 random(4);
    for (const auto& record : allRecords()) {
        SCOPED_TRACE(record->table().name);
        for (int round = 0; round < kRounds; ++round) {
            record->fill(random);
            const Message message = newMessage();
            ASSERT_EQ(record->put(*rootOf(message)), 0);
            std::string straight;
            ASSERT_EQ(record->encode(straight), 0);
            EXPECT_EQ(straight, bytesOf(message));

            const auto inPlace = record->blank();
            ASSERT_EQ(inPlace->decode(straight), 0);
            EXPECT_TRUE(std::is_eq(record->compare(*inPlace)));

            const Message fromText = newMessage();
            ASSERT_EQ(fromText->fromText(takeText(message->toText(nullptr, " ")).c_str(), nullptr), 0);
            const auto throughText = record->blank();
            ASSERT_EQ(throughText->get(*rootOf(fromText)), 0);
            EXPECT_TRUE(std::is_eq(record->compare(*throughText)));
        }
    }
}

TEST(Catalogue, DefaultValuesTravelUnlessTheRecordRefusesItsOwn) {
    const std::set<std::string_view> refused = {"HBXDate", "HBXConfiguration", "HBXVocPrototype",
                                                "HBXDirRealm", "HBXSID"};
    for (const auto& record : allRecords()) {
        SCOPED_TRACE(record->table().name);
        std::string bytes;
        const bool isRefused = refused.count(record->table().name) != 0;
        EXPECT_EQ(record->encode(bytes), isRefused ? -1 : 0);
        if (!isRefused) {
            const auto back = record->blank();
            EXPECT_EQ(back->decode(bytes), 0);
            EXPECT_TRUE(std::is_eq(record->compare(*back)));
        }
    }
}

TEST(Catalogue, OrderIsTotal) {
    std::mt19937_64 random(5);
    for (const auto& record : allRecords()) {
        std::vector<std::unique_ptr<AnyRecord>> values;
        for (int i = 0; i < 12; ++i) {
            values.push_back(record->blank());
            values.back()->fill(random);
        }
        for (const auto& a : values) {
            for (const auto& b : values) {
                EXPECT_EQ(a->compare(*b), 0 <=> b->compare(*a)) << record->table().name;
                for (const auto& c : values) {
                    EXPECT_FALSE(a->compare(*b) < 0 && b->compare(*c) < 0 && !(a->compare(*c) < 0))
                        << record->table().name;
                }
            }
        }
    }
}

TEST(Catalogue, EveryTriggerIsFoundByTheMarkItWrites) {
    const auto family = HBXDerivedParserFactory<HBXSchedulerTrigger>::factoryData();
    EXPECT_EQ(family->defaultFactory(), nullptr);
    EXPECT_EQ(family->factories().size(), 5U);
    std::mt19937_64 random(6);
    for (const auto& [key, entry] : family->factories()) {
        boost::shared_ptr<HBXSchedulerTrigger> trigger = entry->create();
        const void* object = nullptr;
        const HBXRecordTable& table = HBXSchedulerTrigger::family.object(&trigger, object);
        EXPECT_EQ(qualifiedTypeName(table), key);
        fillSample(const_cast<void*>(object), table, random);

        const Cursor it = newCursor();
        ASSERT_EQ(HBXWriterIDT(HBXWriterDerived<HBXSchedulerTrigger>(), 3071)(*it, trigger), 0);
        ASSERT_EQ(it->seek(3071), 0);
        EXPECT_EQ(it->curType(), key);
        boost::shared_ptr<HBXSchedulerTrigger> back;
        ASSERT_EQ(HBXReaderDerived<HBXSchedulerTrigger>()(*it, back), 0);
        EXPECT_EQ(typeid(*back), typeid(*trigger));
        EXPECT_TRUE(std::is_eq(compareRecords(object, dynamic_cast<const void*>(back.get()), table)));

        it->setComplexType(292, 294); // the base itself is not registered
        EXPECT_EQ(HBXReaderDerived<HBXSchedulerTrigger>()(*it, back), -1);
    }
}

TEST(Catalogue, EntriesOfReadersAndWritersAreTracedOnceEach) {
    std::vector<std::string> lines;
    const HBXLogSink sink = setLogSink([&](const HBXLogLine& line) { lines.emplace_back(line.text); });
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
    setLogSink(sink);
    EXPECT_THAT(lines, testing::ElementsAre("Calling [HBX::HBXTimeZone::Writer::operator ()]",
                                            "Calling [HBX::HBXEIDList::Writer::operator ()]",
                                            "Calling [HBX::HBXSchedulerDailyTrigger::Writer::operator ()]",
                                            "Calling [HBX::HBXTimeZone::Reader::operator ()]",
                                            "Calling [HBX::HBXSchedulerDailyTrigger::Reader::operator ()]"));
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

} // namespace
} // namespace HBX::test
