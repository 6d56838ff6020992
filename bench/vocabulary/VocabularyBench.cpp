// Is a feature offered? A vocabulary of 2,000 parameters and 20 categories, each parameter under 3 of them.
//
// Workloads: the first, the middle and the last parameter, and one that is absent, each by isFeatureEnabled
// and by the same walk over the same text in pugixml; the absent one also from two threads at once, and in a
// map of 4 vocabularies of 500. "tags": all parameters that carry two tags, walked.

#include <memory>
#include <set>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include <HBXFunctionalityCore/vocabulary/HBXVocMapIterator.h>

namespace {

constexpr int kParameters = 2000;
constexpr int kCategories = 20;
constexpr int kVocabularies = 4;

std::string nameOf(int parameter) { return "feature.of.module." + std::to_string(parameter); }

std::string vocabulary(int from, int to) {
    std::string text = "<data><agent>";
    for (int i = 0; i < kCategories; ++i) {
        text += "<category><id>category_" + std::to_string(i) + "</id></category>";
    }
    for (int i = from; i < to; ++i) {
        text += "<parameter><id>" + nameOf(i) + "</id>";
        for (int tag = 0; tag < 3; ++tag) {
            text += "<category>category_" + std::to_string((i + tag) % kCategories) + "</category>";
        }
        text += "</parameter>";
    }
    return text + "</agent></data>";
}

std::string messageText(const std::string& content) {
    return R"(<message xmlns:hbx="urn:hbx:message" hbx:v="1">)" + content + "</message>";
}

HBX::HBXMessage* parse(const std::string& content) {
    HBX::HBXMessage* message = HBX::HBXMsgFactory::createNew();
    message->fromText(messageText(content).c_str(), nullptr);
    return message;
}

HBX::HBXVocPrototype& prototype() {
    static HBX::HBXVocPrototype voc(parse(vocabulary(0, kParameters)));
    return voc;
}

HBX::HBXVocMap& map() {
    static HBX::HBXVocMap several = [] {
        std::string text;
        for (int i = 0; i < kVocabularies; ++i) {
            text += "<vocabulary><name>voc_" + std::to_string(i) + "</name><version>1</version>" +
                    vocabulary(i * kParameters / kVocabularies, (i + 1) * kParameters / kVocabularies) +
                    "</vocabulary>";
        }
        return HBX::HBXVocMap(parse(text), {});
    }();
    return several;
}

template <class Vocabulary>
void ask(benchmark::State& state, Vocabulary& voc, int parameter) {
    const std::string name = nameOf(parameter);
    const bool expected = parameter < kParameters;
    for (auto _ : state) {
        if (voc.isFeatureEnabled(name) != expected) {
            state.SkipWithError("wrong answer");
            break;
        }
    }
}

void askPugixml(benchmark::State& state, int parameter) {
    static pugi::xml_document document;
    static const bool loaded = document.load_string(messageText(vocabulary(0, kParameters)).c_str());
    const std::string name = nameOf(parameter);
    const bool expected = loaded && parameter < kParameters;
    for (auto _ : state) {
        bool found = false;
        const pugi::xml_node root = document.child("message").child("data").child("agent");
        for (pugi::xml_node node = root.child("parameter"); node && !found;
             node = node.next_sibling("parameter")) {
            found = name == node.child_value("id");
        }
        if (found != expected) {
            state.SkipWithError("wrong answer");
            break;
        }
    }
}

void walkTags(benchmark::State& state) {
    const std::set<std::string> tags{"category_4", "category_5"};
    for (auto _ : state) {
        const std::unique_ptr<HBX::HBXVocIterator> it(prototype().readCategory(tags));
        int met = 0;
        for (int found = it->firstParameter(); found == 0; found = it->nextParameter()) {
            ++met;
        }
        if (met != 2 * kParameters / kCategories) {
            state.SkipWithError("wrong count");
            break;
        }
    }
}

bool registerAll() {
    const struct {
        const char* name;
        int parameter;
    } rows[] = {
        {"first", 0}, {"middle", kParameters / 2}, {"last", kParameters - 1}, {"absent", kParameters}};
    for (const auto& row : rows) {
        const auto add = [&](const char* side, auto run) {
            return benchmark::RegisterBenchmark(
                (std::string("is_feature_enabled/") + row.name + side).c_str(), run);
        };
        const int parameter = row.parameter;
        add("/hbx", [=](benchmark::State& state) { ask(state, prototype(), parameter); });
        add("/pugixml", [=](benchmark::State& state) { askPugixml(state, parameter); });
    }
    benchmark::RegisterBenchmark("is_feature_enabled/absent/hbx_2_threads", [](benchmark::State& state) {
        ask(state, prototype(), kParameters);
    })->Threads(2);
    benchmark::RegisterBenchmark("is_feature_enabled/absent/hbx_map_of_4",
                                 [](benchmark::State& state) { ask(state, map(), kParameters); });
    benchmark::RegisterBenchmark("tags/hbx", walkTags);
    return true;
}

const bool registered = registerAll();

} // namespace
