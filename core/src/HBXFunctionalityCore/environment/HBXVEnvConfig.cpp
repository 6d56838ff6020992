#include <HBXFunctionalityCore/environment/HBXVEnvConfig.h>

#include <utility>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {
namespace {

constexpr int kDisabled = 1705;
constexpr int kQoS = 1476;

/// The members as plain values, for everything that looks at records without knowing them.
struct Members {
    HBXOptionalProperty<bool> disabled;
    std::set<HBXQoS> qoses;

    Members() = default;
    explicit Members(const HBXVEnvConfig& config) {
        if (const auto it = config.getMessageIterator()) {
            it->getObject(*this, 0);
        }
    }
    void storeTo(HBXVEnvConfig& config) const {
        config.initMsg();
        config.getMessageIterator()->putObject(*this, 0);
    }

    static const HBXRecordTable table;
    using Reader = HBXTableReader<Members>;
    using Writer = HBXTableWriter<Members>;
};

constexpr HBXRow kMembers[] = {
    member<&Members::disabled>(kDisabled),
    list<&Members::qoses>(0, kQoS),
};

constinit const HBXRecordTable Members::table = recordTable<Members>("HBXVEnvConfig members", 0, 0, kMembers);

} // namespace

constinit const HBXRecordTable HBXVEnvConfig::table =
    viewTable<HBXVEnvConfig, Members, HBXEnvConfig>("HBXVEnvConfig", 408, 5076, kMembers);

int HBXVEnvConfig::getDisabled(bool& value) const {
    return read([&](const HBXMessageIterator& it) {
        if (it.getValue(value, kDisabled) != 0) {
            value = false;
        }
        return 0;
    });
}

int HBXVEnvConfig::setDisabled(bool value) {
    return replace(kDisabled, [&](HBXMessageIterator& it) { return it.putValue(value, kDisabled); });
}

int HBXVEnvConfig::getQoS(HBXOptionalProperty<HBXQoS>& value) const {
    HBXQoS qos;
    const int result = read([&](const HBXMessageIterator& it) { return it.getObject(qos, kQoS); });
    if (result == 0) {
        value = std::move(qos);
    }
    return result;
}

int HBXVEnvConfig::setQoS(const HBXOptionalProperty<HBXQoS>& value) {
    return replace(
        kQoS, [&](HBXMessageIterator& it) { return value.isSet() ? it.putObject(value.get(), kQoS) : 0; });
}

int HBXVEnvConfig::getQoSes(HBXOptionalProperty<std::set<HBXQoS>>& value) const {
    std::set<HBXQoS> qoses;
    const int result = read([&](const HBXMessageIterator& it) {
        return HBXReaderListT(HBXReaderSetDataT<HBXQoS::Reader>(), kQoS, 1)(it, qoses);
    });
    if (result == 0) {
        value = std::move(qoses);
    }
    return result;
}

int HBXVEnvConfig::setQoSes(const HBXOptionalProperty<std::set<HBXQoS>>& value) {
    return replace(kQoS, [&](HBXMessageIterator& it) {
        const HBXWriterListT list{HBXWriterIDT(HBXQoS::Writer(), kQoS)};
        return list(it, value.get()); // empty while unset
    });
}

int HBXVEnvConfig::Reader::operator()(const HBXMessageIterator& it, HBXVEnvConfig& config) const {
    return HBXEnvConfig::Reader()(it, config);
}

int HBXVEnvConfig::Writer::operator()(HBXMessageIterator& it, const HBXVEnvConfig& config) const {
    return HBXEnvConfig::Writer()(it, config);
}

} // namespace HBX
