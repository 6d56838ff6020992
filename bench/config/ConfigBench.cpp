// A configuration of 20 sections with 20 settings each, those of samples/agent.xml.
//
//   open/SIDE   open the file, parse it, read one setting, free all
//   read/SIDE   read one setting by its path from the open file, into a string
//
// Sides: hbx; pugixml, libxml2 and property_tree (Boost) over the same XML file; libconfig over a file of its
// own form with the same names and texts. Settings are read in one random order, the same for all. The file
// is in the system's page cache. A side takes part only when it gives the right text for every setting.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>

#include "Side.h"

namespace HBX::bench {
namespace {

constexpr std::size_t kSettings = 400;

struct Setting {
    Name name;
    std::string text;
};

/// The settings directly below the sections of a message.
std::vector<Setting> settingsOf(const HBXConfiguration& configuration) {
    std::vector<Setting> settings;
    const std::unique_ptr<HBXMessageIterator> it(configuration.getMessage()->newIterator());
    it->seek("data");
    for (bool section = it->firstChild() == 0; section; section = it->nextSibling() == 0) {
        const std::string name = it->curName();
        it->seek("configuration");
        for (bool setting = it->firstChild() == 0; setting; setting = it->nextSibling() == 0) {
            if (std::string text; it->getValue(text, 0) == 0) {
                settings.push_back({{name, it->curName()}, text});
            }
        }
        it->seekUp();
        it->seekUp();
    }
    return settings;
}

/// The two files, removed at the end.
class Files {
public:
    Files() {
        HBXConfiguration sample;
        sample.readFromFile(HBX_SOURCE_DIR "/samples/agent.xml");
        settings = settingsOf(sample);
        writeXml();
        writeLibconfig();
        std::shuffle(settings.begin(), settings.end(), std::mt19937(1));
    }
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;
    ~Files() {
        std::filesystem::remove(xml);
        std::filesystem::remove(libconfig);
    }

    const std::string xml =
        std::filesystem::temp_directory_path() / ("hbx-bench-" + std::to_string(getpid()));
    const std::string libconfig = xml + ".cfg";
    std::vector<Setting> settings;

private:
    void writeXml() {
        const auto message = adoptMessage(HBXMsgFactory::createNew());
        message->create("data");
        const HBXConfiguration configuration(message.get());
        const std::unique_ptr<HBXConfigurationIterator> it(configuration.getIterator());
        for (const Setting& setting : settings) {
            it->putValue(setting.text, '/' + setting.name.section + '/' + setting.name.setting);
        }
        configuration.saveToFile(xml);
    }

    void writeLibconfig() {
        std::ofstream file(libconfig);
        std::string section;
        for (const Setting& setting : settings) {
            if (setting.name.section != section) {
                file << (section.empty() ? "" : "};\n") << setting.name.section << " :\n{\n";
                section = setting.name.section;
            }
            file << "  " << setting.name.setting << " = \"" << setting.text << "\";\n";
        }
        file << "};\n";
    }
};

const Files& files() {
    static const Files made;
    return made;
}

struct Maker {
    const char* name;
    std::unique_ptr<Side> (*make)();
    const std::string Files::*file;
};

constexpr Maker kMakers[] = {
    {"hbx", makeHbx, &Files::xml},
    {"pugixml", makePugixml, &Files::xml},
    {"libxml2", makeLibxml2, &Files::xml},
    {"property_tree", makePropertyTree, &Files::xml},
    {"libconfig", makeLibconfig, &Files::libconfig},
};

std::vector<std::string> addressesFor(const Side& side) {
    std::vector<std::string> addresses;
    for (const Setting& setting : files().settings) {
        addresses.push_back(side.address(setting.name));
    }
    return addresses;
}

bool works(const Maker& maker) {
    const std::unique_ptr<Side> side = maker.make();
    if (files().settings.size() != kSettings || !side->open(files().*maker.file)) {
        return false;
    }
    return std::all_of(files().settings.begin(), files().settings.end(), [&](const Setting& setting) {
        std::string text = "none";
        return side->read(side->address(setting.name), text) && text == setting.text;
    });
}

void open(benchmark::State& state, const Maker& maker) {
    const std::string& file = files().*maker.file;
    const std::string address = maker.make()->address(files().settings[0].name);
    for (auto _ : state) {
        const std::unique_ptr<Side> side = maker.make();
        std::string text;
        benchmark::DoNotOptimize(side->open(file) && side->read(address, text));
        benchmark::DoNotOptimize(text);
    }
}

void read(benchmark::State& state, const Maker& maker) {
    const std::unique_ptr<Side> side = maker.make();
    side->open(files().*maker.file);
    const std::vector<std::string> addresses = addressesFor(*side);
    std::string text;
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(side->read(addresses[i], text));
        benchmark::DoNotOptimize(text);
        i = i + 1 < addresses.size() ? i + 1 : 0;
    }
}

bool registerAll() {
    constexpr struct {
        const char* work;
        void (*run)(benchmark::State& state, const Maker& maker);
    } kWorks[] = {{"open/", open}, {"read/", read}};
    for (const auto& work : kWorks) {
        for (const Maker& maker : kMakers) {
            benchmark::RegisterBenchmark((work.work + std::string(maker.name)).c_str(),
                                         [&maker, run = work.run](benchmark::State& state) {
                                             if (works(maker)) {
                                                 run(state, maker);
                                             } else {
                                                 state.SkipWithError("gives a wrong text");
                                             }
                                         });
        }
    }
    return true;
}

const bool registered = registerAll();

} // namespace
} // namespace HBX::bench
