#include "Peers.h"

#include <stdexcept>

#include <HBXFunctionalityCore/environment/HBXEnvCache.h>

namespace HBX::bench {
namespace {

using Cache = HBXCacheLogic<HBXEID, HBXEnvCoreBasic, HBXMappedMemoryManager>;

HBXEID identifierOf(const Key& key) { return HBXEID(HBXGUID(key.data())); }

Bytes contentOf(const HBXEnvCoreBasic& record) {
    return std::as_bytes(std::span<const char>(record.configBytes()));
}

/// The last 8 bytes of the content.
std::uint64_t versionOf(const HBXEnvCoreBasic& record) {
    const Bytes content = contentOf(record);
    return wordAt(content.data() + content.size() - sizeof(std::uint64_t));
}

/// A record that takes as many bytes as a Value.
class Record {
public:
    Record() {
        const HBXEnvCoreBasic::pointer empty = HBXEnvCoreBasic::createInstance(nullptr, ENV_CONFIG);
        std::memcpy(bytes.data(), empty.get(), HBXEnvCoreBasic::kFixedSize);
        record().configSize = bytes.size() - HBXEnvCoreBasic::kFixedSize;
    }

    const HBXEnvCoreBasic& with(const Key& key, std::uint64_t version) {
        record().eid = identifierOf(key);
        const std::size_t end = HBXEnvCoreBasic::kDataOffset + record().configSize;
        std::memcpy(bytes.data() + end - sizeof version, &version, sizeof version);
        return record();
    }

private:
    HBXEnvCoreBasic& record() { return *reinterpret_cast<HBXEnvCoreBasic*>(bytes.data()); }

    alignas(HBXEnvCoreBasic) std::array<std::byte, sizeof(Value)> bytes{};
};

void check(int code) {
    if (code != 0) {
        throw std::runtime_error("code " + std::to_string(code) + " from the cache");
    }
}

class HbxStore : public Store {
public:
    explicit HbxStore(const char* path)
        : cache(Cache::createInstance(path, false, true, 0, HBXEnvCache::kMaximumLists,
                                      HBXEnvCache::kMaximumFileSize)) {
        if (cache == nullptr) {
            throw std::runtime_error("the cache cannot be opened");
        }
    }

    std::uint64_t get(const Key& key) override {
        const HBXEID eid = identifierOf(key);
        const HBXEnvCoreBasic::pointer copy = cache->getCopy(eid);
        return copy != nullptr && copy->eid == eid ? versionOf(*copy) : 0;
    }

    void put(const Key& key, std::uint64_t version) override {
        check(cache->put(identifierOf(key), record.with(key, version)));
    }

    bool remove(const Key& key) override {
        const HBXEID eid = identifierOf(key);
        const bool known = cache->getList()->find(eid) != nullptr;
        check(cache->remove(eid));
        return known;
    }

    std::uint64_t walk() override {
        const auto list = cache->getList();
        std::uint64_t sum = 0;
        for (const HBXEnvCoreBasic& value : *list) {
            sum += wordAt(reinterpret_cast<const std::byte*>(value.eid.data())) + versionOf(value);
        }
        return sum;
    }

    void openAndCloseView() override {
        if (!cache->getList()->holdsSnapshot()) {
            throw std::runtime_error("a list could not be opened");
        }
    }

private:
    boost::intrusive_ptr<Cache> cache;
    Record record;
};

} // namespace

std::unique_ptr<Store> openHbx(const char* path, Open) { return std::make_unique<HbxStore>(path); }

} // namespace HBX::bench
