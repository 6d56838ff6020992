#include <HBXFunctionalityCore/vocabulary/HBXVocIterator.h>

#include <HBXFunctionalityCore/vocabulary/internal/VocElements.h>

namespace HBX {

using internal::kVocCategory;
using internal::kVocParameter;

HBXVocIterator::HBXVocIterator(HBXBinary& message) : HBXBinaryIterator(message) {}

int HBXVocIterator::seekRoot() const {
    return seekBase() == 0 && seek(internal::kVocData) == 0 && seek(internal::kVocRoot) == 0 ? 0 : -1;
}

int HBXVocIterator::seekBase() const {
    if (!base_) {
        return HBXBinaryIterator::seekRoot();
    }
    if (!base_->alive()) {
        return -1;
    }
    while (!atBase()) {
        if (seekUp() != 0) {
            return seekBaseFromRoot();
        }
    }
    return 0;
}

/// The way back for a cursor that has left its vocabulary or whose element is gone.
int HBXVocIterator::seekBaseFromRoot() const {
    HBXBinaryIterator::seekRoot();
    int result = seek(internal::kVocVocabulary);
    while (result == 0 && !atBase()) {
        result = nextSibling(internal::kVocVocabulary);
    }
    return result;
}

void HBXVocIterator::enter(const HBXBinaryIterator& vocabulary) {
    HBXBinaryIterator::operator=(vocabulary);
    base_ = vocabulary;
}

int HBXVocIterator::seekItem(int kind, const std::string& id) {
    return seekRoot() == 0 && internal::seekVocItem(*this, kind, id) == 0 && belongsTo(restriction_) ? 0 : -1;
}

int HBXVocIterator::seekCategory(const std::string& id) { return seekItem(kVocCategory, id); }

int HBXVocIterator::seekParameter(const std::string& id) { return seekItem(kVocParameter, id); }

bool HBXVocIterator::belongsTo(const std::set<std::string>& tags) const {
    if (tags.empty()) {
        return true;
    }
    if (firstChild(kVocCategory) != 0) {
        return false;
    }
    std::set<std::string> missing = tags;
    std::string tag;
    do {
        if (getValue(tag, 0) == 0) {
            missing.erase(tag);
        }
    } while (!missing.empty() && nextSibling(kVocCategory) == 0);
    seekUp();
    return missing.empty();
}

int HBXVocIterator::getID(std::string& id) const { return getValue(id, internal::kVocId); }

HBXVocIterator* HBXVocIterator::newIterator() const { return new HBXVocIterator(*this); }

int HBXVocIterator::processItem(int kind, const std::set<std::string>& tags, bool first) {
    if (first ? seekRoot() != 0 || firstChild(kind) != 0 : nextSibling(kind) != 0) {
        return -1;
    }
    while (!belongsTo(tags)) {
        if (nextSibling(kind) != 0) {
            if (first) {
                seekUp(); // only a first search: one that goes on stays on the last item it has reached
            }
            return -1;
        }
    }
    return 0;
}

int HBXVocIterator::processCategory(const std::set<std::string>& tags, bool first) {
    return processItem(kVocCategory, tags, first);
}

int HBXVocIterator::processParameter(const std::set<std::string>& tags, bool first) {
    return processItem(kVocParameter, tags, first);
}

} // namespace HBX
