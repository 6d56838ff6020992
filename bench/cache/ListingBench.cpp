// All environments with what people call them, as a list on a screen shows them.
//
//   listing/hbx/NAMED   titles of 10,000 environments of a cache; time an environment. The title is the name,
//                       or for those without one the host name or the first address, which is looked for
//                       last.

#include <stdexcept>
#include <string>

#include <boost/smart_ptr/make_shared_object.hpp>

#include <HBXFunctionalityCore/environment/HBXEnvCache.h>

#include "ScratchFolder.h"
#include "Store.h"

namespace HBX::bench {
namespace {

constexpr std::uint64_t kEntries = 10'000;

/// Which member the title comes from.
enum class Titled { name, hostname, address };

struct Case {
    const char* name;
    Titled titled;
};

constexpr Case kCases[] = {
    {"name", Titled::name}, {"hostname", Titled::hostname}, {"address", Titled::address}};

using Text = HBXOptionalProperty<std::string>;
using Texts = HBXOptionalProperty<std::vector<std::string>>;
using Addresses = HBXOptionalProperty<std::vector<HBXIPAddress>>;

/// What an agent finds out about a container by itself.
boost::shared_ptr<HBXEnvConfig> foundConfig() {
    auto config = boost::make_shared<HBXEnvConfig>();
    config->setType(HBXEnv::type);
    config->setArchitecture(Text("x86_64"));
    HBXOS system;
    system.platform.set("Linux");
    system.version.set("12");
    system.name = "debian";
    config->setOS(system);
    return config;
}

/// What its owner set.
boost::shared_ptr<HBXVEnvConfig> grantedConfig(std::uint64_t entry, Titled titled) {
    const std::string number = std::to_string(entry);
    auto config = boost::make_shared<HBXVEnvConfig>();
    if (titled == Titled::name) {
        config->setName(Text("container " + number));
    }
    if (titled != Titled::address) {
        config->setHostname(Text("node" + number + ".example.com"));
    }
    config->setDescription(Text("Serves the pages of customer " + number));
    const std::string host = std::to_string(entry / 250) + "." + std::to_string(entry % 250 + 1);
    config->setAddresses(Addresses({HBXIPAddress("10.1." + host, 16), HBXIPAddress("192.168." + host, 16)}));
    config->setNameservers(Texts({"10.1.0.1", "10.1.0.2"}));
    config->setSearchDomains(Texts({"example.com"}));
    return config;
}

boost::intrusive_ptr<HBXEnvCache> filledCache(const std::string& path, Titled titled) {
    auto cache = HBXEnvCache::createInstance(path, boost::make_shared<HBXEnvCache::PreProcess>());
    for (std::uint64_t entry = 0; cache != nullptr && entry < kEntries; ++entry) {
        const HBXEID eid(HBXGUID(keyOf(entry).data()));
        if (cache->insert(HBXEnv(eid, foundConfig(), grantedConfig(entry, titled))) != 0) {
            throw std::runtime_error("an environment was not stored");
        }
    }
    return cache;
}

void list(benchmark::State& state, const Case& listed) {
    const ScratchFolder folder;
    const auto cache = filledCache(folder.file("cache"), listed.titled);
    if (cache == nullptr) {
        state.SkipWithError("the cache cannot be opened");
        return;
    }
    std::uint64_t count = 0;
    for (auto _ : state) {
        count = 0;
        const auto environments = cache->getEnvList();
        for (auto env = environments->begin(); env != environments->end(); ++env) {
            const std::string title = env->getTitle();
            benchmark::DoNotOptimize(title.data());
            ++count;
        }
    }
    if (count != kEntries) {
        state.SkipWithError("environments are missing");
    }
    state.counters["items"] = static_cast<double>(kEntries);
}

bool registerAll() {
    for (const Case& listed : kCases) {
        const std::string name = std::string("listing/hbx/") + listed.name;
        benchmark::RegisterBenchmark(name.c_str(),
                                     [&listed](benchmark::State& state) { list(state, listed); });
    }
    return true;
}

const bool registered = registerAll();

} // namespace
} // namespace HBX::bench
