// One record of 72 elements (Environment.h) from the plain struct to bytes and back into a fresh struct, and
// a list of 1,000 of them in one message.
//
//   record/hbx_trusted    encodeRecord, decodeTrustedRecord
//   record/hbx_checked    encodeRecord, decodeRecord
//   record/hbx_tree       through a message object on both sides
//   record/hbx_hand       as hbx_trusted, reader and writer by hand over the virtual cursor
//   record/hbx_marked     as hbx_trusted, the record carries a complex type: a namespace on every child
//   record/protobuf       struct to protobuf's class, to bytes, and back; the class objects are used again
//   record/protobuf_unchecked  without the look whether texts are UTF-8, which ours does not take either
//   record/protobuf_class protobuf's class instead of the struct
//   record/capnproto, record/pugixml  the same with these
//   list/...              1,000 records in one message
//
// Every way first shows that it gives back what it was given.

#include <benchmark/benchmark.h>

#include "CapnProtoWay.h"
#include "HbxWay.h"
#include "ProtobufWay.h"
#include "PugixmlWay.h"

namespace HBX::bench {
namespace {

constexpr unsigned kListLength = 1000;

template <class Record>
void run(benchmark::State& state, Way<Record>& way, const Record& in, std::size_t records) {
    if (!way.works(in)) {
        state.SkipWithError("gives back something else");
        return;
    }
    std::size_t size = 0;
    for (auto _ : state) {
        Record out;
        size = way.roundTrip(in, out);
        benchmark::DoNotOptimize(out);
    }
    state.counters["items"] = static_cast<double>(records);
    state.counters["bytes"] = static_cast<double>(size);
}

template <class Record>
using MakeWay = std::unique_ptr<Way<Record>> (*)();

template <class TheWay, class Record>
std::unique_ptr<Way<Record>> make() {
    return std::make_unique<TheWay>();
}

template <class Record>
void add(const char* name, MakeWay<Record> makeWay, Record (*sample)(), std::size_t records) {
    benchmark::RegisterBenchmark(name, [=](benchmark::State& state) {
        const Record in = sample();
        run(state, *makeWay(), in, records);
    });
}

Environment single() { return sampleEnvironment(7); }
MarkedEnvironment marked() { return {sampleEnvironment(7)}; }
EnvironmentList list() { return sampleList(kListLength); }

void addSingle(const char* name, MakeWay<Environment> makeWay) { add<Environment>(name, makeWay, single, 1); }

void addList(const char* name, MakeWay<EnvironmentList> makeWay) {
    add<EnvironmentList>(name, makeWay, list, kListLength);
}

bool registerAll() {
    addSingle("record/hbx_trusted", make<TrustedWay<Environment>, Environment>);
    addSingle("record/hbx_checked", make<CheckedWay<Environment>, Environment>);
    addSingle("record/hbx_tree", make<TreeWay<Environment>, Environment>);
    addSingle("record/hbx_hand", make<HandWay, Environment>);
    add<MarkedEnvironment>("record/hbx_marked", make<TrustedWay<MarkedEnvironment>, MarkedEnvironment>,
                           marked, 1);
    addSingle("record/protobuf", makeProtobuf<Environment>);
    addSingle("record/protobuf_unchecked", makeProtobufUnchecked);
    addSingle("record/protobuf_class", makeProtobufClass);
    addSingle("record/capnproto", makeCapnProto);
    addSingle("record/pugixml", makePugixml);
    addList("list/hbx_trusted", make<TrustedWay<EnvironmentList>, EnvironmentList>);
    addList("list/hbx_checked", make<CheckedWay<EnvironmentList>, EnvironmentList>);
    addList("list/hbx_tree", make<TreeWay<EnvironmentList>, EnvironmentList>);
    addList("list/protobuf", makeProtobuf<EnvironmentList>);
    return true;
}

const bool registered = registerAll();

} // namespace
} // namespace HBX::bench
