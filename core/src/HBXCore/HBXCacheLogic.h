#pragma once

#include <cstddef>
#include <cstring>
#include <iterator>
#include <string>

#include <boost/shared_ptr.hpp>

#include <HBXCore/HBXCacheList.h>
#include <HBXCore/HBXCacheLogicBase.h>
#include <HBXCore/HBXCacheRemoval.h>
#include <HBXCore/HBXCachedItem.h>

namespace HBX {

/// A shared cache of one kind of keys and values; see HBXCacheLogicBase for what it does and answers.
/// @tparam Key            16 plain bytes in the order of which the entries come.
/// @tparam Value          a plain record of any length that begins with HBXCachedItem and repeats its key:
///                        `kFixedSize`, `kKeyOffset`, `length()`, `checkedLength(bytes, available)`.
/// @tparam MemoryManager  HBXMappedMemoryManager, or what derives from it.
template <class Key, class Value, class MemoryManager>
class HBXCacheLogic : public HBXCacheLogicBase {
public:
    static constexpr HBXCacheFormat kFormat = {sizeof(Key), Value::kFixedSize, Value::kKeyOffset,
                                               Value::checkedLength};
    static_assert(sizeof(Key) == sizeof(HBXCacheEntry::key));

    /// The values of one snapshot, in the order of their keys, where they lie. See HBXCacheList.
    class ValuesList : public HBXCacheList {
    public:
        using HBXCacheList::HBXCacheList;

        /// Goes over what is there; the same rules as for the list. Good as long as the list.
        class const_iterator {
        public:
            using iterator_category = std::bidirectional_iterator_tag;
            using value_type = Value;
            using difference_type = std::ptrdiff_t;
            using pointer = const Value*;
            using reference = const Value&;

            const_iterator() = default;
            const_iterator(const ValuesList* list, const HBXCacheEntry* entry) : list_(list), entry_(entry) {
                skipForward();
            }
            const Value& operator*() const { return *value_; }
            const Value* operator->() const { return value_; }
            const_iterator& operator++() {
                ++entry_;
                skipForward();
                return *this;
            }
            const_iterator operator++(int) {
                const_iterator before = *this;
                ++*this;
                return before;
            }
            const_iterator& operator--() {
                do {
                    --entry_;
                } while (!isShown());
                return *this;
            }
            const_iterator operator--(int) {
                const_iterator before = *this;
                --*this;
                return before;
            }
            friend bool operator==(const const_iterator& a, const const_iterator& b) {
                return a.entry_ == b.entry_;
            }

        private:
            /// Not what was removed, nor what damage made unreadable.
            bool isShown() {
                value_ = list_->valueOf(*entry_);
                return value_ != nullptr;
            }
            void skipForward() {
                while (entry_ != list_->entriesEnd() && !isShown()) {
                    ++entry_;
                }
            }

            const ValuesList* list_ = nullptr;
            const HBXCacheEntry* entry_ = nullptr;
            const Value* value_ = nullptr;
        };

        /// First value, and end.
        const_iterator begin() const { return {this, entriesBegin()}; }
        const_iterator end() const { return {this, entriesEnd()}; }
        /// The value of a key; null when absent.
        const Value* find(const Key& key) const {
            const HBXCacheEntry* entry = findEntry(&key);
            return entry == nullptr ? nullptr : valueOf(*entry);
        }
        /// The value of an entry; null when it was removed, or the file is damaged there.
        const Value* valueOf(const HBXCacheEntry& entry) const {
            std::size_t available = 0;
            const char* record = recordAt(entry.value, Value::kFixedSize, available);
            return record != nullptr && Value::checkedLength(record, available) != 0
                       ? reinterpret_cast<const Value*>(record)
                       : nullptr;
        }
    };

    /// Opens the cache of this name, and unless `openOnly` repairs what cannot be opened: removes the file
    /// and builds it anew.
    /// @param keepWritable  see initialize.
    /// @param a,b,c         unused; most open lists; largest file, bytes.
    /// @return null when it cannot be opened.
    static boost::intrusive_ptr<HBXCacheLogic> createInstance(const std::string& name, bool openOnly,
                                                              bool keepWritable, std::size_t a, std::size_t b,
                                                              std::size_t c) {
        boost::intrusive_ptr<HBXCacheLogic> cache(new HBXCacheLogic(name, a, b, c));
        if (cache->initialize(keepWritable, !openOnly) == 0) {
            return cache;
        }
        std::string error;
        if (openOnly) {
            return nullptr;
        }
        removeLockedCacheFile(name, kFormat, error);
        return cache->initialize(keepWritable, false) == 0 ? cache : nullptr;
    }

    /// Never null; empty when it holds no snapshot.
    boost::intrusive_ptr<ValuesList> getList() {
        HBXCacheList* known = takeUpList();
        return {known != nullptr ? static_cast<ValuesList*>(known) : new ValuesList(*this), false};
    }
    /// A private copy, null when absent.
    boost::shared_ptr<Value> getCopy(const Key& key) {
        return boost::shared_ptr<Value>(static_cast<Value*>(copyBytes(&key)), HBXCachedItem::deleter_free());
    }
    /// Stores a copy of the value, in place of the key's present one.
    int put(const Key& key, const Value& value) { return putBytes(&key, &value, value.length()); }
    /// 0 also when there is none.
    int remove(const Key& key) { return removeKey(&key); }

protected:
    /// See createInstance.
    HBXCacheLogic(const std::string& name, std::size_t a, std::size_t b, std::size_t c)
        : HBXCacheLogicBase(name, kFormat, {a, b, c}) {}

    /// A mapping of the cache's own kind.
    boost::intrusive_ptr<HBXMappedMemoryManager> newManager() const override {
        return new MemoryManager(getID(), maximumFileSize());
    }
};

} // namespace HBX
