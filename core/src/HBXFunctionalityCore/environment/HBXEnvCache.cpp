#include <HBXFunctionalityCore/environment/HBXEnvCache.h>

#include <utility>

#include <boost/smart_ptr/make_shared_object.hpp>

#include <HBXCommon/HBXFileUtil.h>
#include <HBXCommon/HBXLog.h>
#include <HBXFunctionalityCore/environment/HBXEnvFactory.h>

namespace HBX {

template class HBXCacheLogic<HBXEID, HBXEnvCoreBasic, HBXMappedMemoryManager>;

namespace {

Log2 logOf(int line, const char* function) {
    return {"HBXFunctionalityCore", "core/src/HBXFunctionalityCore/HBXEnvCache", line, function, function};
}

void logMissingUpdater(int line, const char* function, const HBXEnvType& type) {
    if (debug_level >= 4) {
        logOf(line, function).put(4, "EnvUpdater is not found for '%s'.", type.str().c_str());
    }
}

/// Failures at level 2, the rest at level 4; an identifier is put into words only for a line that is written.
void logResult(int line, const char* function, const char* what, const HBXEID& eid, int result) {
    const int level = result != 0 ? 2 : 4;
    if (debug_level >= level) {
        logOf(line, function)
            .put(level, "EnvCache::%s called for %s, returning %d.", what, eid.toString().c_str(), result);
    }
}

/// The updater of the generic type, or null with a line in the log.
boost::shared_ptr<HBXEnvUpdater> genericUpdater(int line, const char* function) {
    auto updater = HBXEnvFactory::getInstance().getEnvUpdater(HBXEnv::type);
    if (updater == nullptr) {
        logOf(line, function)
            .put(4, "[%s] EnvUpdater is not found for '%s'.", function, HBXEnv::type.str().c_str());
    }
    return updater;
}

/// Asks the updater's check first; an environment that it does not want is cached without it.
int askUpdater(const HBXEnv& env, int (HBXEnvUpdater::*work)(const HBXEnv&), int line, const char* function) {
    const auto updater = HBXEnvFactory::getInstance().getEnvUpdater(env.getType());
    if (updater == nullptr) {
        logMissingUpdater(line, function, env.getType());
        return 0;
    }
    return updater->check(env) == 0 ? ((*updater).*work)(env) : 0;
}

} // namespace

// --- the hook ---

HBXEnvCache::PreProcess::~PreProcess() = default;

int HBXEnvCache::PreProcess::insert(const HBXEnv& env) {
    return askUpdater(env, &HBXEnvUpdater::insert, __LINE__, "HBX::HBXEnvCache::PreProcess::insert");
}

int HBXEnvCache::PreProcess::update(const HBXEnv& env) {
    return askUpdater(env, &HBXEnvUpdater::update, __LINE__, "HBX::HBXEnvCache::PreProcess::update");
}

int HBXEnvCache::PreProcess::remove(const HBXEnv& env) {
    const auto updater = HBXEnvFactory::getInstance().getEnvUpdater(env.getType());
    if (updater == nullptr) {
        logMissingUpdater(__LINE__, "HBX::HBXEnvCache::PreProcess::remove", env.getType());
        return 0;
    }
    return updater->remove(env);
}

// --- lists ---

namespace {

/// An environment over a record in the file, which nobody may write to.
boost::shared_ptr<HBXEnvCoreBasic> viewOf(const boost::shared_ptr<const void>& owner,
                                          const HBXEnvCoreBasic& record) {
    return {boost::const_pointer_cast<void>(owner), const_cast<HBXEnvCoreBasic*>(&record)};
}

} // namespace

boost::shared_ptr<const void> HBXEnvCache::EnvValuesList::owner() const {
    const boost::intrusive_ptr<const EnvValuesList> self(this);
    return {static_cast<const void*>(this), [self](const void*) {}};
}

const boost::shared_ptr<const HBXEnv>& HBXEnvCache::EnvValuesList::const_iterator::operator*() const {
    if (env_ == nullptr) {
        env_ = HBXEnvCache::envOver(viewOf(owner_, *at_));
    }
    return env_;
}

boost::shared_ptr<const HBXEnv> HBXEnvCache::EnvValuesList::getEnv(const HBXEID& eid) const {
    if (!holdsSnapshot()) {
        logOf(__LINE__, "HBX::HBXEnvCache::EnvValuesList::getEnv")
            .put("Environment cache: failed to acquire snapshot. Running out of memory.");
    }
    const HBXEnvCoreBasic* record = find(eid);
    return record == nullptr ? nullptr : HBXEnvCache::envOver(viewOf(owner(), *record));
}

// --- the cache ---

HBXEnvCache::HBXEnvCache(const std::string& name, boost::shared_ptr<PreProcess> preProcess)
    : Logic(name, 0, kMaximumLists, kMaximumFileSize), preProcess_(std::move(preProcess)) {}

boost::shared_ptr<HBXEnv> HBXEnvCache::envOver(const boost::shared_ptr<HBXEnvCoreBasic>& record) {
    return HBXEnvFactory::getInstance().createEnv(record);
}

boost::intrusive_ptr<HBXEnvCache> HBXEnvCache::createInstance(const std::string& name,
                                                              boost::shared_ptr<PreProcess> preProcess) {
    boost::intrusive_ptr<HBXEnvCache> cache(new HBXEnvCache(name, std::move(preProcess)));
    const int code = cache->initialize(true, true);
    if (code == 0) {
        return cache;
    }
    logOf(__LINE__, "HBX::HBXEnvCache::createInstance")
        .put("Environment cache unavailable for process %s, code is %d.", getproctitle().c_str(), code);
    std::string error;
    removeLockedCacheFile(name, kFormat, error);
    return cache->initialize(true, false) == 0 ? cache : nullptr;
}

int HBXEnvCache::insert(const HBXEnv& env) {
    return store(env, &PreProcess::insert, "HBX::HBXEnvCache::insert", "insert");
}

int HBXEnvCache::update(const HBXEnv& env) {
    return store(env, &PreProcess::update, "HBX::HBXEnvCache::update", "update");
}

int HBXEnvCache::store(const HBXEnv& env, Hook hook, const char* function, const char* what) {
    if (!env.getEID().isValid()) {
        return -1;
    }
    int result = ((*preProcess_).*hook)(env);
    if (result == 0) {
        HBXEnv current(env); // the caller's own stays as it is
        result = current.syncBuffer() == 0 ? put(env.getEID(), *current.getCoreBasic()) : -1;
        if (result != 0) {
            preProcess_->remove(env);
        }
    }
    logResult(__LINE__, function, what, env.getEID(), result);
    return result;
}

int HBXEnvCache::remove(const HBXEID& eid) {
    const boost::shared_ptr<HBXEnv> env = getEnvCopy(eid);
    if (env == nullptr) {
        return 0;
    }
    int result = preProcess_->remove(*env);
    if (result == 0) {
        result = Logic::remove(eid);
    }
    logResult(__LINE__, "HBX::HBXEnvCache::remove", "remove", eid, result);
    return result;
}

boost::shared_ptr<HBXEnv> HBXEnvCache::getEnvCopy(const HBXEID& eid) {
    const boost::shared_ptr<HBXEnvCoreBasic> copy = getCopy(eid);
    return copy == nullptr ? nullptr : envOver(copy);
}

boost::intrusive_ptr<HBXEnvCache::EnvValuesList> HBXEnvCache::getEnvList() {
    return {new EnvValuesList(*this), false};
}

int HBXEnvCache::syncEnvListOf(const HBXEID& parent) {
    constexpr const char* kFunction = "HBX::HBXEnvCache::syncEnvListOf";
    const auto updater = genericUpdater(__LINE__, kFunction);
    if (updater == nullptr) {
        return -1;
    }
    std::set<HBXEID, HBXEnvIDComparator> children;
    {
        const auto list = getEnvList();
        if (!list->holdsSnapshot()) {
            logOf(__LINE__, kFunction).put(1, "[%s]: failed to acquire environments list.", kFunction);
            return -1;
        }
        for (const HBXEnvCoreBasic& record : list->values()) {
            if (record.parentEid == parent) {
                children.insert(children.end(), record.eid);
            }
        }
    }
    return updater->sync(children);
}

int HBXEnvCache::syncSlaveList(const std::set<HBXEID, HBXEnvIDComparator>& eids) {
    const auto updater = genericUpdater(__LINE__, "HBX::HBXEnvCache::syncSlaveList");
    return updater == nullptr ? -1 : updater->sync(eids);
}

// --- the cache of the process ---

namespace {

struct ProcessCache {
    std::string fileName;
    boost::intrusive_ptr<HBXEnvCache> cache;
};

ProcessCache& processCache() {
    static ProcessCache cache;
    return cache;
}

} // namespace

int initEnvCache(const std::string& fileName, bool removeExisting) {
    if (removeExisting) {
        std::string error;
        removeCacheFile(fileName, HBXEnvCache::kFormat, error);
    }
    processCache().fileName = fileName;
    return 0;
}

boost::intrusive_ptr<HBXEnvCache> envCache() {
    ProcessCache& process = processCache();
    if (process.cache == nullptr || !process.cache->isAccessible() || !process.cache->isLinked()) {
        process.cache =
            HBXEnvCache::createInstance(process.fileName, boost::make_shared<HBXEnvCache::PreProcess>());
    }
    return process.cache;
}

boost::intrusive_ptr<HBXEnvCache> presentEnvCache() { return processCache().cache; }

void finiEnvCache() { processCache().cache.reset(); }

} // namespace HBX
