#include <HBXFunctionalityCore/vocabulary/HBXVocMapIterator.h>

#include <utility>

#include <boost/smart_ptr/make_shared_object.hpp>

#include <HBXCommon/HBXAbort.h>
#include <HBXFunctionalityCore/vocabulary/internal/VocElements.h>

namespace HBX {

namespace {

HBXBinary& demandMessage(HBXMessage* message) {
    constexpr const char* kFunction = "HBX::HBXVocMapIterator::HBXVocMapIterator";
    if (message != nullptr) {
        return internal::binaryOf(*message);
    }
    abort("HBXFunctionalityCore", "core/src/HBXFunctionalityCore/HBXVoc", __LINE__, kFunction, kFunction);
}

} // namespace

HBXVocMapIterator::HBXVocMapIterator(HBXMessage* message, const HBXVocMap::VocIDSet& restriction)
    : HBXVocIterator(demandMessage(message)), restriction_(restriction) {
    const auto vocabularies = boost::make_shared<Vocabularies>();
    collect(*vocabularies);
    vocabularies_ = vocabularies;
    firstVocabulary();
}

void HBXVocMapIterator::collect(Vocabularies& vocabularies) const {
    HBXBinaryIterator it(binary());
    HBXVocID id;
    for (int found = it.seek(internal::kVocVocabulary); found == 0;
         found = it.nextSibling(internal::kVocVocabulary)) {
        if (it.getObject(id, 0) == 0 && admits(id)) {
            vocabularies.emplace(id, it);
        }
    }
}

HBXVocID HBXVocMapIterator::getVocID() const {
    return current_ != vocabularies_->end() ? current_->first : HBXVocID();
}

int HBXVocMapIterator::seekRoot() const {
    return current_ != vocabularies_->end() ? HBXVocIterator::seekRoot() : -1;
}

int HBXVocMapIterator::filterVocByID() {
    while (current_ != vocabularies_->end() && !admits(current_->first)) {
        ++current_;
    }
    return current_ != vocabularies_->end() ? 0 : -1;
}

int HBXVocMapIterator::enterVocabulary() {
    if (filterVocByID() != 0) {
        return -1;
    }
    enter(current_->second);
    HBXVocIterator::seekRoot(); // a vocabulary without root is met all the same
    return 0;
}

int HBXVocMapIterator::firstVocabulary() {
    current_ = vocabularies_->begin();
    return enterVocabulary();
}

int HBXVocMapIterator::nextVocabulary() {
    if (current_ != vocabularies_->end()) {
        ++current_;
    }
    return enterVocabulary();
}

HBXVocMapIterator* HBXVocMapIterator::newIterator() const { return new HBXVocMapIterator(*this); }

/// Searches the present vocabulary, then those behind it.
template <class Search>
int HBXVocMapIterator::searchOn(const Search& search) {
    while (search() != 0) {
        if (nextVocabulary() != 0) {
            return -1;
        }
    }
    return 0;
}

/// A next search begins where the iterator stands, in every further vocabulary it is a first search.
template <class Search>
int HBXVocMapIterator::process(bool first, const Search& search) {
    if (first ? firstVocabulary() != 0 : current_ == vocabularies_->end()) {
        return -1;
    }
    bool begins = first;
    return searchOn([&] { return search(std::exchange(begins, true)); });
}

int HBXVocMapIterator::seekCategory(const std::string& id) {
    return firstVocabulary() == 0 ? searchOn([&] { return HBXVocIterator::seekCategory(id); }) : -1;
}

int HBXVocMapIterator::seekParameter(const std::string& id) {
    return firstVocabulary() == 0 ? searchOn([&] { return HBXVocIterator::seekParameter(id); }) : -1;
}

int HBXVocMapIterator::processCategory(const std::set<std::string>& tags, bool first) {
    return process(first, [&](bool begins) { return HBXVocIterator::processCategory(tags, begins); });
}

int HBXVocMapIterator::processParameter(const std::set<std::string>& tags, bool first) {
    return process(first, [&](bool begins) { return HBXVocIterator::processParameter(tags, begins); });
}

} // namespace HBX
