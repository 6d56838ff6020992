// Identifiers between text and binary form.
//
// Workloads: user (an agent's own, five sub-authorities), short ("S-1-5-7"), longest (fifteen
// sub-authorities); each as to_binary (parse), to_text (print) and round_trip (parse, then print), and two
// threads at it.

#include <string>

#include <benchmark/benchmark.h>

#include <HBXFunctionalityCore/security/HBXSID.h>

namespace {

constexpr const char* kUser = "S-1-8193-1732584193-4023233417-857870592-2003195204-7";
constexpr const char* kShort = "S-1-5-7";
constexpr const char* kLongest =
    "S-1-5-4294967295-4294967295-4294967295-4294967295-4294967295-4294967295-4294967295"
    "-4294967295-4294967295-4294967295-4294967295-4294967295-4294967295-4294967295"
    "-4294967295";

void toBinary(benchmark::State& state, const char* text) {
    HBX::HBXSID sid;
    for (auto _ : state) {
        benchmark::DoNotOptimize(sid.fromString(text));
        benchmark::DoNotOptimize(sid);
    }
}

void toText(benchmark::State& state, const char* text) {
    const HBX::HBXSID sid(text);
    for (auto _ : state) {
        benchmark::DoNotOptimize(sid.toString());
    }
}

void roundTrip(benchmark::State& state, const char* text) {
    for (auto _ : state) {
        HBX::HBXSID sid;
        benchmark::DoNotOptimize(sid.fromString(text));
        benchmark::DoNotOptimize(sid.toString());
    }
}

BENCHMARK_CAPTURE(toBinary, user, kUser);
BENCHMARK_CAPTURE(toText, user, kUser);
BENCHMARK_CAPTURE(roundTrip, user, kUser);
BENCHMARK_CAPTURE(roundTrip, user_2_threads, kUser)->Threads(2);
BENCHMARK_CAPTURE(roundTrip, short, kShort);
BENCHMARK_CAPTURE(roundTrip, longest, kLongest);

} // namespace
