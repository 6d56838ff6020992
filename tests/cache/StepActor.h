#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CacheFileAudit.h"
#include "CacheTestUtil.h"

namespace HBX::test {

/// Keys in the order of their numbers, which are below 256.
inline HBXGUIDBase stepKey(std::uint64_t number) {
    return {static_cast<std::int64_t>(number << 56), static_cast<std::int64_t>(number)};
}

/// Does things to a cache and notes in a model what the cache must hold then, if nobody else changes it. The
/// scripts of actors contain nothing that may fail.
class Actor {
public:
    struct OpenList {
        boost::intrusive_ptr<TestCache::ValuesList> list;
        Content content; ///< Of the model when the list was opened.
    };

    const std::string name;
    Content model;
    std::vector<OpenList> lists;

    explicit Actor(std::string cache) : name(std::move(cache)) {}

    void open() {
        replacedLists_ = lists.size();
        cache_ = openCache(name, 1 << 20, 8);
        demand(cache_ != nullptr, "the cache cannot be opened");
    }
    void close() {
        lists.clear();
        replacedLists_ = 0;
        cache_ = nullptr;
    }
    /// Stores a value of `size` bytes.
    void put(std::uint64_t number, std::uint64_t version, std::size_t size) {
        make(number, version, size);
        store();
    }
    /// The same in two parts, so that only the second need be stepped through.
    void make(std::uint64_t number, std::uint64_t version, std::size_t size) {
        made_.emplace(stepKey(number), version, size);
    }
    void store() {
        const TestValue& value = made_->value();
        demand(cache_->put(value.key, value) == 0, "a value cannot be stored");
        model[value.key] = {value.version, value.size};
    }
    void remove(std::uint64_t number) {
        demand(cache_->remove(stepKey(number)) == 0, "a value cannot be removed");
        model.erase(stepKey(number));
    }
    void openList() {
        lists.push_back({cache_->getList(), model});
        demand(lists.back().list->holdsSnapshot(), "a list cannot be opened");
    }
    void closeList() {
        lists.pop_back();
        replacedLists_ = std::min(replacedLists_, lists.size());
    }
    /// Opens the cache anew when the file was given up.
    HBXCacheStatus askStatus() {
        HBXCacheStatus status;
        if (cache_ == nullptr || cache_->getStatus(status) != 0) {
            open();
            demand(cache_->getStatus(status) == 0, "there is no status");
        }
        return status;
    }
    /// Removes the file whatever it holds, or only if it is not in good order.
    void removeFile(bool whatever) {
        std::string error;
        const auto remove = whatever ? removeCacheFile : removeLockedCacheFile;
        demand(remove(name, TestCache::kFormat, error) == 0, "the file cannot be removed");
        model.clear();
    }
    /// Makes the file one that nobody uses any more.
    void abandonFile() {
        writeNumberAt(name, kCacheValidOffset, 0);
        model.clear();
    }
    /// Everything in the cache; opens it anew when the file was given up. Nothing when a value is not whole.
    std::optional<Content> read() {
        boost::intrusive_ptr<TestCache::ValuesList> list = cache_ == nullptr ? nullptr : cache_->getList();
        if (list == nullptr || !list->holdsSnapshot()) {
            open();
            list = cache_->getList();
        }
        return readList(*list);
    }
    /// How many of the lists are over the file that is open now, and not over one that it replaced.
    std::size_t currentLists() const { return lists.size() - replacedLists_; }

private:
    TestCachePointer cache_;
    std::optional<ValueBuffer> made_;
    std::size_t replacedLists_ = 0;
};

} // namespace HBX::test
