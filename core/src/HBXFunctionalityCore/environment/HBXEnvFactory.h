#pragma once

#include <map>

#include <HBXFunctionalityCore/environment/HBXEnvChildFactory.h>
#include <HBXFunctionalityCore/environment/HBXEnvUpdater.h>

namespace HBX {

/// Makes environments of the right class from core records, and keeps the updater of each type. Modules
/// register their types while the program starts, before there are environments: the maps are not locked.
/// A null pointer where an object is required ends the program.
class HBX_EXPORT HBXEnvFactory {
public:
    /// The one of the process.
    static HBXEnvFactory& getInstance();

    HBXEnvFactory(const HBXEnvFactory&) = delete;
    HBXEnvFactory& operator=(const HBXEnvFactory&) = delete;

    /// What makes environments of this type; replaces what the type had.
    void registerEnv(const HBXEnvType& type, boost::shared_ptr<HBXEnvChildFactory> child);
    void unregisterEnv(const HBXEnvType& type) { children_.erase(type); }
    /// What is asked before the cache changes one of this type, likewise.
    void registerEnvUpdater(const HBXEnvType& type, boost::shared_ptr<HBXEnvUpdater> updater);
    void unregisterEnvUpdater(const HBXEnvType& type) { updaters_.erase(type); }
    /// Forgets all types.
    void clear();

    /// The updater of exactly this type, or null.
    [[nodiscard]] boost::shared_ptr<HBXEnvUpdater> getEnvUpdater(const HBXEnvType& type) const;
    /// A new, empty environment; a plain one when the type is not registered.
    [[nodiscard]] boost::shared_ptr<HBXEnv> createEnv(const HBXEnvType& type) const;
    /// The virtual configuration over the record; a plain one when its type is not registered.
    [[nodiscard]] boost::shared_ptr<HBXVEnvConfig>
    createVEnvConfig(const boost::shared_ptr<HBXEnvCoreBasic>& core) const;

private:
    friend class HBXEnvCache;

    HBXEnvFactory() = default;

    /// The environment over the record.
    [[nodiscard]] boost::shared_ptr<HBXEnv> createEnv(const boost::shared_ptr<HBXEnvCoreBasic>& core) const;
    /// Null when the type is not registered.
    [[nodiscard]] HBXEnvChildFactory* childOf(const HBXEnvType& type) const;

    std::map<HBXEnvType, boost::shared_ptr<HBXEnvChildFactory>> children_;
    std::map<HBXEnvType, boost::shared_ptr<HBXEnvUpdater>> updaters_;
};

} // namespace HBX
