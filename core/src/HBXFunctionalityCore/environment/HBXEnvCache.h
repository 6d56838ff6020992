#pragma once

#include <iterator>
#include <set>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <HBXCore/HBXCacheLogic.h>
#include <HBXFunctionalityCore/environment/HBXEnv.h>

namespace HBX {

extern template class HBX_EXPORT HBXCacheLogic<HBXEID, HBXEnvCoreBasic, HBXMappedMemoryManager>;

/// The environments that all processes of an agent on one machine share, in one mapped file. Reached by
/// `envCache()`. Codes are those of HBXCacheLogicBase, and those of the hooks.
class HBX_EXPORT HBXEnvCache : public HBXCacheLogic<HBXEID, HBXEnvCoreBasic, HBXMappedMemoryManager> {
    using Logic = HBXCacheLogic<HBXEID, HBXEnvCoreBasic, HBXMappedMemoryManager>;

public:
    static constexpr std::size_t kMaximumLists = 256;
    /// Bytes; also the address space that is set aside for the file.
    static constexpr std::size_t kMaximumFileSize = std::size_t{1} << 30;

    /// Acts before every change, without a lock: it may use the cache. 0: go on. This one asks the updater of
    /// the environment's type; where there is none, everything is allowed.
    class HBX_EXPORT PreProcess {
    public:
        PreProcess() = default;
        PreProcess(const PreProcess&) = delete;
        PreProcess& operator=(const PreProcess&) = delete;

        /// Before an environment is stored or removed; what is not 0 is the result of the change, which is
        /// not made.
        virtual int insert(const HBXEnv& env);
        virtual int update(const HBXEnv& env);
        virtual int remove(const HBXEnv& env);
        virtual ~PreProcess();
    };

    /// The environments of one moment, sorted by identifier. They are views into the file: const, and each
    /// keeps the list. Closing a list is cheap, keeping one makes the next change of the cache a copy.
    class HBX_EXPORT EnvValuesList : public ValuesList {
    public:
        using ValuesList::ValuesList;

        /// Goes over the list, in the order of identifiers.
        class HBX_EXPORT const_iterator {
        public:
            using iterator_category = std::bidirectional_iterator_tag;
            using value_type = boost::shared_ptr<const HBXEnv>;
            using difference_type = std::ptrdiff_t;
            using pointer = const value_type*;
            using reference = const value_type&;

            const_iterator() = default;
            const_iterator(boost::shared_ptr<const void> owner, ValuesList::const_iterator at)
                : owner_(std::move(owner)), at_(at) {}

            /// Never null; the same until the iterator is moved.
            const value_type& operator*() const;
            const HBXEnv* operator->() const { return operator*().get(); }
            const_iterator& operator++() {
                env_.reset();
                ++at_;
                return *this;
            }
            const_iterator& operator--() {
                env_.reset();
                --at_;
                return *this;
            }
            friend bool operator==(const const_iterator& a, const const_iterator& b) {
                return a.at_ == b.at_;
            }

        private:
            boost::shared_ptr<const void> owner_; ///< Of the list; environments share it.
            ValuesList::const_iterator at_;
            mutable value_type env_;
        };

        /// The first environment, and the end.
        const_iterator begin() const { return {owner(), values().begin()}; }
        const_iterator end() const { return {nullptr, values().end()}; }
        /// Null when absent.
        boost::shared_ptr<const HBXEnv> getEnv(const HBXEID& eid) const;
        /// The records themselves.
        const ValuesList& values() const { return *this; }

    private:
        boost::shared_ptr<const void> owner() const;
    };

    /// Opens a cache file, at the second attempt a fresh one. Null when that fails too.
    static boost::intrusive_ptr<HBXEnvCache> createInstance(const std::string& name,
                                                            boost::shared_ptr<PreProcess> preProcess);

    /// Stores an environment, in place of the present one with its identifier. `update` differs in the hook
    /// that is asked. -1 for a null identifier; else the first code that is not 0, of the hook or of the
    /// cache.
    int insert(const HBXEnv& env);
    int update(const HBXEnv& env);
    /// 0 also when there is none.
    int remove(const HBXEID& eid);
    /// A private copy; null when absent.
    boost::shared_ptr<HBXEnv> getEnvCopy(const HBXEID& eid);
    /// Never null. One that does not hold a snapshot is a failure to list.
    boost::intrusive_ptr<EnvValuesList> getEnvList();

    /// Lets the updater of the generic type bring the children of an environment up to date. 0; -1 when there
    /// is none, or no list.
    int syncEnvListOf(const HBXEID& parent);
    /// The same for the environments named.
    int syncSlaveList(const std::set<HBXEID, HBXEnvIDComparator>& eids);

private:
    using Hook = int (PreProcess::*)(const HBXEnv&);

    static boost::shared_ptr<HBXEnv> envOver(const boost::shared_ptr<HBXEnvCoreBasic>& record);
    HBXEnvCache(const std::string& name, boost::shared_ptr<PreProcess> preProcess);
    int store(const HBXEnv& env, Hook hook, const char* function, const char* what);

    boost::shared_ptr<PreProcess> preProcess_;
};

// To be called from the main flow of the process; they guard nothing against threads.

/// Names the file of the process's cache. @param removeExisting  what stands there is removed first. @return
/// 0.
HBX_EXPORT int initEnvCache(const std::string& fileName, bool removeExisting);
/// The cache of the process, opened when it is not, or no longer, usable. Null when that fails; to be tried
/// again.
HBX_EXPORT boost::intrusive_ptr<HBXEnvCache> envCache();
/// The same as it is at present: null when it is not open.
HBX_EXPORT boost::intrusive_ptr<HBXEnvCache> presentEnvCache();
/// Drops the cache of the process. Lists that are open keep it.
HBX_EXPORT void finiEnvCache();

} // namespace HBX
