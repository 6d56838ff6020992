#include <HBXFunctionalityCore/environment/HBXEnvCoreBasicMaintainer.h>

#include <utility>

#include <boost/smart_ptr/make_shared_object.hpp>

#include <HBXCommon/HBXAbort.h>

namespace HBX {
namespace {

void require(bool holds, int line) {
    if (!holds) {
        constexpr const char* kFunction = "HBX::HBXEnvCoreBasicMaintainer::HBXEnvCoreBasicMaintainer";
        abort("HBXFunctionalityCore", "core/src/HBXFunctionalityCore/HBXEnv", line, kFunction, kFunction);
    }
}

} // namespace

HBXEnvCoreBasicMaintainer::HBXEnvCoreBasicMaintainer(const HBXEID& parentEid,
                                                     boost::shared_ptr<HBXEnvConfig> config)
    : config_(std::move(config)) {
    require(config_ != nullptr, 56);
    require(config_->getConfigType() == ENV_CONFIG, 57);
    const auto message = std::as_const(*config_).getMessageIterator();
    const auto blank = HBXEnvCoreBasic::createInstance(nullptr, ENV_CONFIG);
    core_ = HBXEnvCoreBasic::createInstance(message.get(), *blank, ENV_CONFIG);
    core_->parentEid = parentEid;
    if (message && core_->configSize == 0) {
        configLost_ = true;
        config_ = boost::make_shared<HBXEnvConfig>(core_);
    }
}

} // namespace HBX
