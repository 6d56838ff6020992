#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CacheTestUtil.h"

namespace HBX::test {

/// Keys in the order of their numbers, which are below 256.
inline HBXGUIDBase stepKey(std::uint64_t number) {
    return {static_cast<std::int64_t>(number << 56), static_cast<std::int64_t>(number)};
}

/// Does things to a cache and notes in a model what the cache must hold then, if nobody else changes it. What
/// fails ends the process: the scripts of actors contain nothing that may fail.
class Actor {
public:
    struct OpenList {
        boost::intrusive_ptr<TestCache::ValuesList> list;
        Content content; ///< Of the model when the list was opened.
    };

    explicit Actor(std::string name) : name_(std::move(name)) {}

    void open();
    void close();
    /// Stores a value of `size` bytes.
    void put(std::uint64_t number, std::uint64_t version, std::size_t size);
    /// The same in two parts, so that only the second need be stepped through.
    void make(std::uint64_t number, std::uint64_t version, std::size_t size);
    void store();
    void remove(std::uint64_t number);
    void openList();
    void closeList();
    /// Opens the cache anew when the file was given up.
    HBXCacheStatus askStatus();
    /// Removes the file whatever it holds, or only if it is not in good order.
    void removeFile(bool whatever);
    /// Makes the file one that nobody uses any more.
    void abandonFile();

    /// Everything in the cache; opens it anew when the file was given up. Nothing when a value is not whole.
    std::optional<Content> read();

    const std::string& name() const { return name_; }
    const Content& model() const { return model_; }
    bool isOpen() const { return cache_ != nullptr; }
    const std::vector<OpenList>& lists() const { return lists_; }
    /// How many of the lists are over the file that is open now, and not over one that it replaced.
    std::size_t currentLists() const { return lists_.size() - replacedLists_; }

private:
    std::string name_;
    Content model_;
    TestCachePointer cache_;
    std::optional<ValueBuffer> made_;
    std::vector<OpenList> lists_;
    std::size_t replacedLists_ = 0;
};

} // namespace HBX::test
