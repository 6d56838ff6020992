#include <HBXFunctionalityCore/vocabulary/HBXVocMap.h>

#include <memory>

#include <HBXFunctionalityCore/vocabulary/HBXVocMapIterator.h>
#include <HBXFunctionalityCore/vocabulary/internal/VocElements.h>

namespace HBX {

using internal::kVocVocabulary;

namespace {

using Cursor = std::unique_ptr<HBXMessageIterator>;
using MapIterator = std::unique_ptr<HBXVocMapIterator>;

/// From the root of a map down to the first vocabulary with this identifier.
int seekVocabulary(const HBXMessageIterator& it, const HBXVocID& id) {
    it.seekRoot();
    int result = it.seek(kVocVocabulary);
    HBXVocID present;
    while (result == 0 && !(it.getObject(present, 0) == 0 && present == id)) {
        result = it.nextSibling(kVocVocabulary);
    }
    return result;
}

/// Appends a vocabulary that `write` fills, then removes the one that it replaces.
template <class Write>
int append(HBXMessage& map, const HBXVocID& id, const Write& write) {
    const Cursor old(map.newIterator());
    const bool replaces = seekVocabulary(*old, id) == 0;
    const Cursor it(map.newIterator());
    it->newChild(kVocVocabulary);
    if (write(*it) != 0) {
        it->deleteFromChild();
        return -1;
    }
    if (replaces) {
        old->deleteFromChild();
    }
    return 0;
}

} // namespace

HBXVocMap::HBXVocMap(HBXMessage* message, const VocIDSet& restriction)
    : message_(adoptMessage(message)), restriction_(restriction) {}

void HBXVocMap::reset(HBXMessage* message) { message_ = adoptMessage(message); }

int HBXVocMap::insert(HBXMessage* map, const HBXVocID& id,
                      const boost::intrusive_ptr<HBXVocPrototype>& vocabulary) {
    if (map == nullptr || !vocabulary) {
        return -1;
    }
    return append(*map, id, [&](HBXMessageIterator& it) {
        return it.putObject(id, 0) == 0 ? HBXVocPrototype::Writer()(it, *vocabulary) : -1;
    });
}

int HBXVocMap::insert(HBXMessage* map, HBXMessageIterator* vocabulary) {
    HBXVocID id;
    if (map == nullptr || vocabulary == nullptr || vocabulary->getObject(id, 0) != 0) {
        return -1;
    }
    // As a message of its own: its root's children are what the element holds, whatever its name.
    const auto content = adoptMessage(vocabulary->copyMessage());
    return append(*map, id, [&](HBXMessageIterator& it) {
        return it.copyToChild(Cursor(content->newIterator()).get());
    });
}

int HBXVocMap::erase(const HBXVocID& id) {
    if (!message_) {
        return -1;
    }
    const Cursor it(message_->newIterator());
    return seekVocabulary(*it, id) == 0 ? it->deleteFromChild() : -1;
}

int HBXVocMap::setRestrictVocSet(const std::set<std::string>& names) {
    VocIDSet restriction;
    for (const std::string& name : names) {
        HBXVocID id;
        if (id.name.fromString(name) != 0) {
            return -1;
        }
        restriction.insert(id);
    }
    restriction_.swap(restriction);
    return 0;
}

HBXVocMapIterator* HBXVocMap::read() const {
    if (!message_) {
        return nullptr;
    }
    MapIterator it(new HBXVocMapIterator(message_.get(), restriction_));
    return it->seekRoot() == 0 ? it.release() : nullptr;
}

HBXVocMapIterator* HBXVocMap::readParameter(const std::string& id) const {
    if (!message_) {
        return nullptr;
    }
    MapIterator it(new HBXVocMapIterator(message_.get(), restriction_));
    return it->seekParameter(id) == 0 ? it.release() : nullptr;
}

HBXVocMapIterator* HBXVocMap::readCategory(const std::string& tag) const {
    return readCategory(std::set<std::string>{tag});
}

HBXVocMapIterator* HBXVocMap::readCategory(const std::set<std::string>& tags) const {
    HBXVocMapIterator* it = read();
    if (it != nullptr) {
        it->setRestrictSet(tags);
    }
    return it;
}

bool HBXVocMap::isFeatureEnabled(const std::string& id) const {
    return MapIterator(readParameter(id)) != nullptr;
}

} // namespace HBX
