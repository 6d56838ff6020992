// A thousand records of ten types of the catalogue, from the objects to bytes or text and back into new ones:
// each in a message of its own, or all in one.
//
//   single/hbx_trusted, mixed/hbx_trusted   encoded straight, read unchecked
//   single/hbx_checked, mixed/hbx_checked   encoded straight, checked as a whole first
//   single/hbx_tree, mixed/hbx_tree         through a message object on both sides, binary form
//   single/hbx_text, mixed/hbx_text         the same, text form
//
// Times are per element. Every way first shows that it gives back what it was given.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/HBXCatalogue.h>
#include <HBXMessage/HBXEncoding.h>
#include <HBXMessage/HBXMessage.h>
#include <HBXMessage/HBXRecordSample.h>

namespace HBX::bench {
namespace {

constexpr const char* kTypes[] = {"HBXNetNIC", "HBXIPPool",     "HBXDisk",      "HBXUser",    "HBXService",
                                  "HBXStats",  "HBXPackageDeb", "HBXEnvConfig", "HBXSession", "HBXPolicy"};
constexpr std::size_t kRecords = 1000;
constexpr int kEntry = 1008;

struct Sample {
    explicit Sample(const HBXRecordEntry& entry) : type(entry), record(entry) {
        fillExample(record.get(), *type.table);
    }

    const HBXRecordEntry& type;
    HBXAnyRecord record;
};
using Records = std::span<const Sample>;
using Cursor = std::unique_ptr<HBXMessageIterator>;

std::vector<Sample> sampleRecords() {
    std::vector<Sample> records;
    for (std::size_t i = 0; i < kRecords; ++i) {
        records.emplace_back(*findRecord(kTypes[i % std::size(kTypes)]));
    }
    return records;
}

int writeAll(HBXMessageIterator& it, const void* raw) {
    for (const Sample& sample : *static_cast<const Records*>(raw)) {
        if (it.newChild(kEntry) != 0 || sample.record.put(it) != 0 || it.seekUp() != 0) {
            return -1;
        }
    }
    return 0;
}

/// Records to be read, and whether they must be those that were written.
struct Reading {
    Records expected;
    bool compares;
};

int readAll(const HBXMessageIterator& it, void* raw) {
    const Reading& reading = *static_cast<const Reading*>(raw);
    int result = it.firstChild();
    for (const Sample& expected : reading.expected) {
        HBXAnyRecord record(expected.type);
        if (result != 0 || record.get(it) != 0 || (reading.compares && !(record == expected.record))) {
            return -1;
        }
        benchmark::DoNotOptimize(record);
        result = it.nextSibling();
    }
    return 0;
}

/// One way of taking records in one message to bytes and back.
using RoundTrip = int (*)(Records records, bool compares);

template <int (*Decode)(std::string_view, HBXReadCall)>
int straight(Records records, bool compares) {
    static std::string bytes;
    Reading reading{records, compares};
    return encodeMessage({&writeAll, &records}, bytes) == 0 ? Decode(bytes, {&readAll, &reading}) : -1;
}

int roundTree(Records records, bool compares, bool asText) {
    static const auto written = adoptMessage(HBXMsgFactory::createNew());
    static const auto parsed = adoptMessage(HBXMsgFactory::createNew());
    if (written->create(0) != 0 || writeAll(*Cursor(written->newIterator()), &records) != 0) {
        return -1;
    }
    char* data = nullptr;
    int length = 0;
    if (asText) {
        data = written->toText(nullptr, "");
    } else {
        written->serialize(&data, &length, nullptr, 0);
    }
    const std::unique_ptr<char, decltype(&std::free)> owner(data, &std::free);
    Reading reading{records, compares};
    const int result = asText ? parsed->fromText(data, nullptr) : parsed->init(data, length);
    return result == 0 ? readAll(*Cursor(parsed->newIterator()), &reading) : -1;
}

int tree(Records records, bool compares) { return roundTree(records, compares, false); }
int text(Records records, bool compares) { return roundTree(records, compares, true); }

std::size_t elementsOf(const HBXMessageIterator& it) {
    std::size_t count = 1;
    for (int result = it.firstChild(); result == 0;) {
        count += elementsOf(it);
        result = it.nextSibling();
        if (result != 0) {
            it.seekUp();
        }
    }
    return count;
}

std::size_t elementsOf(Records records) {
    const auto message = adoptMessage(HBXMsgFactory::createNew());
    const Cursor it(message->newIterator());
    writeAll(*it, &records);
    return elementsOf(*it) - 1;
}

void run(benchmark::State& state, RoundTrip roundTrip, std::size_t inOneMessage) {
    static const std::vector<Sample> records = sampleRecords();
    const Records all(records);
    bool good = roundTrip(all, true) == 0;
    for (auto _ : state) {
        for (std::size_t i = 0; i < all.size(); i += inOneMessage) {
            good = roundTrip(all.subspan(i, inOneMessage), false) == 0 && good;
        }
    }
    if (!good) {
        state.SkipWithError("gives back something else");
    }
    state.counters["items"] = static_cast<double>(elementsOf(all));
}

void add(const std::string& way, RoundTrip roundTrip) {
    for (const auto& [name, inOneMessage] : {std::pair("single/", std::size_t{1}), {"mixed/", kRecords}}) {
        benchmark::RegisterBenchmark((name + way).c_str(),
                                     [=](benchmark::State& state) { run(state, roundTrip, inOneMessage); });
    }
}

const bool registered = [] {
    add("hbx_trusted", straight<decodeTrustedMessage>);
    add("hbx_checked", straight<decodeMessage>);
    add("hbx_tree", tree);
    add("hbx_text", text);
    return true;
}();

} // namespace
} // namespace HBX::bench
