#include <HBXFunctionalityCore/environment/HBXEnvFactory.h>

#include <utility>

#include <boost/smart_ptr/make_shared_object.hpp>

#include <HBXCommon/HBXAbort.h>

namespace HBX {
namespace {

void require(bool holds, int line, const char* function) {
    if (!holds) {
        abort("HBXFunctionalityCore", "core/src/HBXFunctionalityCore/HBXEnv", line, function, function);
    }
}

} // namespace

HBXEnvFactory& HBXEnvFactory::getInstance() {
    static auto& instance = *new HBXEnvFactory(); // stays: modules unregister as late as they like
    return instance;
}

void HBXEnvFactory::registerEnv(const HBXEnvType& type, boost::shared_ptr<HBXEnvChildFactory> child) {
    require(child != nullptr, 315, "HBX::HBXEnvFactory::registerEnv");
    children_[type] = std::move(child);
}

void HBXEnvFactory::registerEnvUpdater(const HBXEnvType& type, boost::shared_ptr<HBXEnvUpdater> updater) {
    require(updater != nullptr, 333, "HBX::HBXEnvFactory::registerEnvUpdater");
    updaters_[type] = std::move(updater);
}

void HBXEnvFactory::clear() {
    children_.clear();
    updaters_.clear();
}

boost::shared_ptr<HBXEnvUpdater> HBXEnvFactory::getEnvUpdater(const HBXEnvType& type) const {
    const auto found = updaters_.find(type);
    return found == updaters_.end() ? nullptr : found->second;
}

HBXEnvChildFactory* HBXEnvFactory::childOf(const HBXEnvType& type) const {
    const auto found = children_.find(type);
    return found == children_.end() ? nullptr : found->second.get();
}

boost::shared_ptr<HBXEnv> HBXEnvFactory::createEnv(const boost::shared_ptr<HBXEnvCoreBasic>& core) const {
    require(core != nullptr, 502, "HBX::HBXEnvFactory::createEnv");
    HBXEnvChildFactory* child = childOf(core->type);
    return child == nullptr ? boost::shared_ptr<HBXEnv>(new HBXEnv(core)) : child->createEnv(core);
}

boost::shared_ptr<HBXEnv> HBXEnvFactory::createEnv(const HBXEnvType& type) const {
    const boost::shared_ptr<HBXEnvCoreBasic> core = HBXEnvCoreBasic::createInstance(nullptr, ENV_CONFIG);
    core->type = type;
    return createEnv(core);
}

boost::shared_ptr<HBXVEnvConfig>
HBXEnvFactory::createVEnvConfig(const boost::shared_ptr<HBXEnvCoreBasic>& core) const {
    require(core != nullptr, 513, "HBX::HBXEnvFactory::createVEnvConfig");
    HBXEnvChildFactory* child = childOf(core->type);
    return child == nullptr ? boost::make_shared<HBXVEnvConfig>(core) : child->createVEnvConfig(core);
}

} // namespace HBX
