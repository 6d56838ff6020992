#include "StepActor.h"

#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace HBX::test {

namespace {

void demand(bool success) {
    if (!success) {
        std::abort();
    }
}

} // namespace

void Actor::open() {
    replacedLists_ = lists_.size();
    cache_ = openCache(name_, 1 << 20, 8);
    demand(cache_ != nullptr);
}

void Actor::close() {
    lists_.clear();
    replacedLists_ = 0;
    cache_ = nullptr;
}

void Actor::put(std::uint64_t number, std::uint64_t version, std::size_t size) {
    make(number, version, size);
    store();
}

void Actor::make(std::uint64_t number, std::uint64_t version, std::size_t size) {
    made_.emplace(stepKey(number), version, size);
}

void Actor::store() {
    const TestValue& value = made_->value();
    demand(cache_->put(value.key, value) == 0);
    model_[value.key] = {value.version, value.size};
}

void Actor::remove(std::uint64_t number) {
    demand(cache_->remove(stepKey(number)) == 0);
    model_.erase(stepKey(number));
}

void Actor::openList() {
    lists_.push_back({cache_->getList(), model_});
    demand(lists_.back().list->holdsSnapshot());
}

void Actor::closeList() {
    lists_.pop_back();
    replacedLists_ = std::min(replacedLists_, lists_.size());
}

HBXCacheStatus Actor::askStatus() {
    HBXCacheStatus status;
    if (!isOpen() || cache_->getStatus(status) != 0) {
        open();
        demand(cache_->getStatus(status) == 0);
    }
    return status;
}

void Actor::removeFile(bool whatever) {
    std::string error;
    const auto remove = whatever ? removeCacheFile : removeLockedCacheFile;
    demand(remove(name_, TestCache::kFormat, error) == 0);
    model_.clear();
}

void Actor::abandonFile() {
    const int file = ::open(name_.c_str(), O_RDWR | O_CLOEXEC);
    constexpr std::uint32_t kInvalid = 0;
    demand(pwrite(file, &kInvalid, sizeof kInvalid, kCacheValidOffset) == sizeof kInvalid);
    ::close(file);
    model_.clear();
}

std::optional<Content> Actor::read() {
    boost::intrusive_ptr<TestCache::ValuesList> list = isOpen() ? cache_->getList() : nullptr;
    if (list == nullptr || !list->holdsSnapshot()) {
        open();
        list = cache_->getList();
    }
    return readList(*list);
}

} // namespace HBX::test
