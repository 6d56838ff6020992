// A tree of about 10,000 elements between its object and its forms.
//
//   SHAPE/hbx_parse, hbx_serialize       binary form
//   SHAPE/hbx_from_text, hbx_to_text     text form, on one line
//   SHAPE/pugixml_parse, pugixml_save    the same text with pugixml
//   SHAPE/libxml2_parse                  and with libxml2, tree and its release
//
// Shapes: records (the records of RecordBench), deep (chains of 200), wide (one element with 10,000
// children), attributes (two on each element).
//
//   crowded/hbx_refuse, libxml2_parse    a text of one element with 10,000 attributes, per attribute
//
// Parsing always ends with the tree of the parse before it released. Times are to be read per element.

#include <array>
#include <cstdlib>
#include <cstring>
#include <functional>

#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <pugixml.hpp>

#include <HBXMessage/HBXMessage.h>

#include "Environment.h"
#include "StringWriter.h"

namespace HBX::bench {
namespace {

using Message = boost::intrusive_ptr<HBXMessage>;

constexpr int kTreeSize = 10'000;

// --- shapes ---

void buildRecords(HBXMessageIterator& it) { it.putObject(sampleList(kTreeSize / (kElements + 1)), 0); }

void buildDeep(HBXMessageIterator& it) {
    constexpr int kDepth = 200;
    for (int chain = 0; chain < kTreeSize / kDepth; ++chain) {
        for (int level = 1; level < kDepth; ++level) {
            it.newChild(kEnvironment);
        }
        it.putValue(chain, kValue);
        it.seekRoot();
    }
}

void buildWide(HBXMessageIterator& it) {
    it.newChild(kQoSes);
    for (int i = 0; i < kTreeSize - 1; ++i) {
        it.putValue("value " + std::to_string(i), kValue);
    }
}

void buildAttributes(HBXMessageIterator& it) {
    it.newChild(kQoSes);
    for (int i = 0; i < kTreeSize - 1; ++i) {
        it.newChild(kEntry);
        it.putAttr(i, kId);
        it.putAttr("name " + std::to_string(i), kName);
        it.seekUp();
    }
}

struct Shape {
    const char* name;
    void (*build)(HBXMessageIterator& it);
};

constexpr Shape kShapes[] = {
    {"records", buildRecords}, {"deep", buildDeep}, {"wide", buildWide}, {"attributes", buildAttributes}};

// --- one tree in all its forms ---

std::size_t countElements(const HBXMessageIterator& it) {
    std::size_t count = 0;
    if (it.firstChild() != 0) {
        return 0;
    }
    do {
        count += 1 + countElements(it);
    } while (it.nextSibling() == 0);
    it.seekUp();
    return count;
}

std::size_t countElements(pugi::xml_node parent) {
    std::size_t count = 0;
    for (const pugi::xml_node child : parent.children()) {
        count += child.type() == pugi::node_element ? 1 + countElements(child) : 0;
    }
    return count;
}

std::size_t countElements(const xmlNode* parent) {
    std::size_t count = 0;
    for (const xmlNode* child = parent->children; child != nullptr; child = child->next) {
        count += child->type == XML_ELEMENT_NODE ? 1 + countElements(child) : 0;
    }
    return count;
}

std::string bytesOf(const HBXMessage& message) {
    char* data = nullptr;
    int length = 0;
    if (message.serialize(&data, &length, nullptr, 0) != 0) {
        return {};
    }
    std::string bytes(data, static_cast<std::size_t>(length));
    std::free(data);
    return bytes;
}

std::string textOf(const HBXMessage& message) {
    char* text = message.toText(nullptr, "");
    std::string copy = text != nullptr ? text : "";
    std::free(text);
    return copy;
}

struct Sample {
    explicit Sample(const Shape& shape) : message(adoptMessage(HBXMsgFactory::createNew())) {
        const std::unique_ptr<HBXMessageIterator> it(message->newIterator());
        shape.build(*it);
        it->seekRoot();
        elements = countElements(*it);
        bytes = bytesOf(*message);
        text = textOf(*message);
    }

    Message message;
    std::size_t elements = 0;
    std::string bytes;
    std::string text;
};

// --- works: what it measures is right; run: one round ---

struct Hbx {
    explicit Hbx(const Sample& from) : sample(from), message(adoptMessage(HBXMsgFactory::createNew())) {}

    bool parse() { return message->init(sample.bytes.data(), static_cast<int>(sample.bytes.size())) == 0; }
    bool fromText() { return message->fromText(sample.text.c_str(), nullptr) == 0; }
    bool serialize() {
        char* data = nullptr;
        int length = 0;
        const int result = sample.message->serialize(&data, &length, nullptr, 0);
        benchmark::DoNotOptimize(data);
        std::free(data);
        return result == 0;
    }
    bool toText() {
        char* text = sample.message->toText(nullptr, "");
        benchmark::DoNotOptimize(text);
        std::free(text);
        return text != nullptr;
    }
    bool works() { return bytesOf(*message) == sample.bytes && textOf(*message) == sample.text; }
    bool writes() { return !sample.bytes.empty() && !sample.text.empty(); }

    const Sample& sample;
    Message message;
};

struct Pugixml {
    explicit Pugixml(const Sample& from) : sample(from) {}

    bool parse() { return document.load_buffer(sample.text.data(), sample.text.size()); }
    bool save() {
        writer.clear();
        document.save(writer, "", pugi::format_raw | pugi::format_no_declaration);
        return true;
    }
    bool works() { return countElements(document.first_child()) == sample.elements; }
    /// Whether the text is ours, but for the declaration and a blank in empty elements.
    bool writes() {
        std::string text(writer.view());
        for (std::size_t at = 0; (at = text.find(" />", at)) != std::string::npos;) {
            text.erase(at, 1);
        }
        return sample.text.ends_with(text) && text.starts_with("<message");
    }

    const Sample& sample;
    pugi::xml_document document;
    StringWriter writer;
};

bool parseLibxml2(const Sample& sample, bool check) {
    xmlDoc* document =
        xmlReadMemory(sample.text.data(), static_cast<int>(sample.text.size()), nullptr, nullptr, 0);
    const bool good =
        document != nullptr && (!check || countElements(xmlDocGetRootElement(document)) == sample.elements);
    xmlFreeDoc(document);
    return good;
}

void measure(benchmark::State& state, const Sample& sample, bool works, const std::function<bool()>& round) {
    if (!works) {
        state.SkipWithError("gives a wrong result");
        return;
    }
    for (auto _ : state) {
        if (!round()) {
            state.SkipWithError("failed");
            break;
        }
    }
    state.counters["items"] = static_cast<double>(sample.elements);
}

using Run = void (*)(benchmark::State&, const Sample&);

struct Side {
    const char* name;
    Run run;
};

constexpr Side kSides[] = {
    {"hbx_parse",
     [](benchmark::State& state, const Sample& sample) {
         Hbx hbx(sample);
         const bool works = hbx.parse() && hbx.works();
         measure(state, sample, works, [&] { return hbx.parse(); });
     }},
    {"hbx_serialize",
     [](benchmark::State& state, const Sample& sample) {
         Hbx hbx(sample);
         measure(state, sample, hbx.writes(), [&] { return hbx.serialize(); });
     }},
    {"hbx_from_text",
     [](benchmark::State& state, const Sample& sample) {
         Hbx hbx(sample);
         const bool works = hbx.fromText() && hbx.works();
         measure(state, sample, works, [&] { return hbx.fromText(); });
     }},
    {"hbx_to_text",
     [](benchmark::State& state, const Sample& sample) {
         Hbx hbx(sample);
         measure(state, sample, hbx.writes(), [&] { return hbx.toText(); });
     }},
    {"pugixml_parse",
     [](benchmark::State& state, const Sample& sample) {
         Pugixml pugixml(sample);
         const bool works = pugixml.parse() && pugixml.works();
         measure(state, sample, works, [&] { return pugixml.parse(); });
     }},
    {"pugixml_save",
     [](benchmark::State& state, const Sample& sample) {
         Pugixml pugixml(sample);
         const bool works = pugixml.parse() && pugixml.save() && pugixml.writes();
         measure(state, sample, works, [&] { return pugixml.save(); });
     }},
    {"libxml2_parse",
     [](benchmark::State& state, const Sample& sample) {
         measure(state, sample, parseLibxml2(sample, true), [&] { return parseLibxml2(sample, false); });
     }},
};

// --- a text that nobody means well ---

std::string crowdedText() {
    std::string text = "<list";
    for (int i = 0; i < kTreeSize; ++i) {
        text += " a" + std::to_string(i) + "=''";
    }
    return text + "/>";
}

void refuseCrowded(benchmark::State& state) {
    const std::string text = crowdedText();
    const Message message = adoptMessage(HBXMsgFactory::createNew());
    for (auto _ : state) {
        if (message->fromText(text.c_str(), nullptr) == 0) {
            state.SkipWithError("was taken");
        }
    }
    state.counters["items"] = kTreeSize;
}

void parseCrowded(benchmark::State& state) {
    const std::string text = crowdedText();
    for (auto _ : state) {
        xmlFreeDoc(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, 0));
    }
    state.counters["items"] = kTreeSize;
}

bool registerAll() {
    benchmark::RegisterBenchmark("crowded/hbx_refuse", refuseCrowded);
    benchmark::RegisterBenchmark("crowded/libxml2_parse", parseCrowded);
    for (const Shape& shape : kShapes) {
        const auto sample = std::make_shared<Sample>(shape);
        for (const Side& side : kSides) {
            benchmark::RegisterBenchmark(
                (std::string(shape.name) + "/" + side.name).c_str(),
                [sample, run = side.run](benchmark::State& state) { run(state, *sample); });
        }
    }
    return true;
}

const bool registered = registerAll();

} // namespace
} // namespace HBX::bench
