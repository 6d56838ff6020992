#include <HBXFunctionalityCore/environment/HBXEnv.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include <boost/smart_ptr/make_shared_object.hpp>

#include <HBXCommon/HBXAbort.h>
#include <HBXFunctionalityCore/environment/HBXEnvCoreBasicMaintainer.h>
#include <HBXFunctionalityCore/environment/HBXEnvFactory.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

/// What travels in a message, in its order there.
struct HBXEnvMembers {
    HBXEID eid;
    HBXEID parentEid;
    HBXEnvStatus status;
    std::vector<HBXAlertData::AlertType> alertTypes;
    HBXEnvConfig config;
    HBXVEnvConfig virtualConfig;

    HBXEnvMembers() = default;
    explicit HBXEnvMembers(const HBXEnv& env)
        : eid(env.getEID()),
          parentEid(env.getParentEID()),
          status(env.getStatus()),
          alertTypes(std::begin(env.core_->alertTypes), std::end(env.core_->alertTypes)),
          config(*env.getConfig()),
          virtualConfig(*env.getVirtualConfig()) {}

    /// -1, and the environment as it was, when a configuration is too large for a record.
    int storeTo(HBXEnv& env) const {
        HBXEnv fresh(
            boost::shared_ptr<HBXEnvCoreBasic>(HBXEnvCoreBasic::createInstance(nullptr, ENV_CONFIG)));
        HBXEnvCoreBasic& core = *fresh.core_;
        core.eid = eid;
        core.parentEid = parentEid;
        core.status = status;
        core.type = config.getType().empty() ? HBXEnv::type : config.getType();
        std::copy_n(alertTypes.begin(), std::min(alertTypes.size(), std::size(core.alertTypes)),
                    core.alertTypes);
        *fresh.config_ = config;
        *fresh.virtualConfig_ = virtualConfig;
        if (fresh.syncBuffer() != 0) {
            return -1;
        }
        env.core_ = std::move(fresh.core_);
        env.config_ = std::move(fresh.config_);
        env.virtualConfig_ = std::move(fresh.virtualConfig_);
        return 0;
    }

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXEnvMembers>;
    using Writer = HBXTableWriter<HBXEnvMembers>;
};

namespace {

constexpr HBXRow kMembers[] = {
    member<&HBXEnvMembers::eid>(1870),      member<&HBXEnvMembers::parentEid>(1866),
    member<&HBXEnvMembers::status>(1192),   list<&HBXEnvMembers::alertTypes>(0, 1003),
    optional<&HBXEnvMembers::config>(1185), optional<&HBXEnvMembers::virtualConfig>(1872),
};

} // namespace

constinit const HBXRecordTable HBXEnvMembers::table =
    recordTable<HBXEnvMembers>("HBXEnv members", 0, 0, kMembers);

constinit const HBXRecordTable HBXEnv::table =
    viewTable<HBXEnv, HBXEnvMembers>("HBXEnv", 408, 5074, kMembers);

constinit const HBXEnvType HBXEnv::type("generic");

HBXEnv::HBXEnv()
    : HBXEnv(boost::shared_ptr<HBXEnvCoreBasic>(HBXEnvCoreBasic::createInstance(nullptr, ENV_CONFIG))) {}

HBXEnv::HBXEnv(const HBXEID& eid, boost::shared_ptr<HBXEnvConfig> config)
    : HBXEnv(eid, std::move(config), nullptr) {}

HBXEnv::HBXEnv(const HBXEID& eid, boost::shared_ptr<HBXVEnvConfig> virtualConfig)
    : HBXEnv(eid, boost::make_shared<HBXEnvConfig>(), std::move(virtualConfig)) {}

HBXEnv::HBXEnv(const HBXEID& eid, boost::shared_ptr<HBXEnvConfig> config,
               boost::shared_ptr<HBXVEnvConfig> virtualConfig)
    : virtualConfig_(virtualConfig ? std::move(virtualConfig) : boost::make_shared<HBXVEnvConfig>()) {
    const HBXEnvCoreBasicMaintainer maintainer(HBXEID(), std::move(config));
    core_ = maintainer.getCoreBasic();
    config_ = maintainer.getConfig();
    core_->type = config_->getType();
    if (!maintainer.isConfigLost() && syncBuffer() == 0) {
        core_->eid = eid;
    }
}

HBXEnv::HBXEnv(boost::shared_ptr<HBXEnvCoreBasic> core)
    : core_(std::move(core)),
      config_(boost::make_shared<HBXEnvConfig>(core_)),
      virtualConfig_(boost::make_shared<HBXVEnvConfig>(core_)) {}

HBXEnv::~HBXEnv() = default;

const boost::shared_ptr<HBXEnvCoreBasic>& HBXEnv::getCoreBasic() const {
    if (!core_) {
        constexpr const char* kFunction = "HBX::HBXEnv::getCoreBasic";
        abort("HBXFunctionalityCore", "core/src/HBXFunctionalityCore/HBXEnv", 284, kFunction, kFunction);
    }
    return core_;
}

/// What lies in a shared file is not written to: the environment gets a record of its own, which its copies
/// do not share.
HBXEnvCoreBasic& HBXEnv::writableCore() {
    if (getCoreBasic()->item.isPrivate == 0) {
        core_ = HBXEnvCoreBasic::createInstance(*core_);
    }
    return *core_;
}

int HBXEnv::setParentEID(const HBXEID& eid) {
    writableCore().parentEid = eid;
    return 0;
}

int HBXEnv::setStatus(const HBXEnvStatus& status) {
    writableCore().status = status;
    return 0;
}

HBXAlertData::AlertType HBXEnv::getAlertType(HBXAlertData::AlertReason reason) const {
    const HBXEnvCoreBasic& core = *getCoreBasic();
    return reason >= 0 && reason < HBXAlertData::kReasons ? core.alertTypes[reason] : HBXAlertData::GREEN;
}

int HBXEnv::setAlertType(HBXAlertData::AlertReason reason, HBXAlertData::AlertType alertType) {
    HBXEnvCoreBasic& core = writableCore();
    if (reason < 0 || reason >= HBXAlertData::kReasons) {
        return -1;
    }
    core.alertTypes[reason] = alertType;
    return 0;
}

HBXAlertData::AlertType HBXEnv::getMaxAlertType() const {
    const auto& all = getCoreBasic()->alertTypes;
    return std::max(HBXAlertData::GREEN, *std::max_element(std::begin(all), std::end(all)));
}

int HBXEnv::syncBuffer() {
    const HBXEnvCoreBasic& core = *getCoreBasic();
    std::string config;
    std::string virtualConfig;
    if (config_->getBytes(config) != 0 || virtualConfig_->getBytes(virtualConfig) != 0) {
        return -1;
    }
    if (config != core.configBytes() || virtualConfig != core.virtualConfigBytes()) {
        core_ = HBXEnvCoreBasic::make(core, config, virtualConfig);
    }
    return 0;
}

std::string HBXEnv::getTitle() const {
    const boost::shared_ptr<const HBXEnvConfig> configs[] = {getVirtualConfig(), getConfig()};
    HBXOptionalProperty<std::string> text;
    for (const auto getter : {&HBXEnvConfig::getName, &HBXEnvConfig::getHostname}) {
        for (const auto& config : configs) {
            if (((*config).*getter)(text) == 0 && !text.get().empty()) {
                return text.get();
            }
        }
    }
    for (const auto& config : configs) {
        HBXOptionalProperty<std::vector<HBXIPAddress>> addresses;
        config->getAddresses(addresses);
        if (!addresses.get().empty() && !addresses.get().front().address.empty()) {
            return addresses.get().front().address;
        }
    }
    return getEID().toString();
}

int HBXEnv::compare(const HBXEnv& other) const {
    const auto order = HBXEnvMembers(*this) <=> HBXEnvMembers(other);
    return std::is_eq(order) ? 0 : std::is_lt(order) ? -1 : 1;
}

int HBXEnv::Reader::operator()(const HBXMessageIterator& it, HBXEnv& env) const {
    HBXEnvMembers members;
    return it.getObject(members, 0) != 0 || members.alertTypes.size() < HBXAlertData::kReasons
               ? -1
               : members.storeTo(env);
}

int HBXEnv::Writer::operator()(HBXMessageIterator& it, const HBXEnv& env) const {
    return it.putObject(HBXEnvMembers(env), 0);
}

int HBXEnv::EnvSPReader::operator()(const HBXMessageIterator& it, boost::shared_ptr<HBXEnv>& env) const {
    const boost::shared_ptr<HBXEnv> made = HBXEnvFactory::getInstance().createEnv(HBXEnv::type);
    const int result = Reader()(it, *made);
    if (result == 0) {
        env = made;
    }
    return result;
}

} // namespace HBX
