#pragma once

#include <map>
#include <set>
#include <string>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <HBXFunctionalityCore/vocabulary/HBXVocMap.h>

namespace HBX {

/// Walks the vocabularies of a map, by name, as if they were one: a search that finds nothing in one goes on
/// in the next. Which vocabularies there are is seen when the iterator is made.
class HBX_EXPORT HBXVocMapIterator : public HBXVocIterator {
public:
    /// On the root of the first vocabulary. The message must not be null: that ends the program. Elements
    /// without a readable identifier are passed over.
    HBXVocMapIterator(HBXMessage* message, const HBXVocMap::VocIDSet& restriction);

    /// The present vocabulary; empty behind the last one.
    HBXVocID getVocID() const;

    /// To the root of the present vocabulary; -1 behind the last one.
    int seekRoot() const override;
    /// The first vocabulary that has the item, and admits it, wins; -1 when none does.
    int seekCategory(const std::string& id) override;
    int seekParameter(const std::string& id) override;

    /// -1 behind the last one, where a further `nextVocabulary` stays.
    int firstVocabulary();
    int nextVocabulary();

    using HBXVocIterator::newIterator;
    HBXVocMapIterator* newIterator() const override;

protected:
    int processCategory(const std::set<std::string>& tags, bool first) override;
    int processParameter(const std::set<std::string>& tags, bool first) override;
    /// From the present vocabulary on to the first that the restriction set admits; -1 behind the last one.
    int filterVocByID();

private:
    using Vocabularies = std::map<HBXVocID, HBXBinaryIterator, HBXVocMap::HBXVocIDSortUniqueName>;

    bool admits(const HBXVocID& id) const { return restriction_.empty() || restriction_.contains(id); }
    void collect(Vocabularies& vocabularies) const;
    int enterVocabulary();
    template <class Search>
    int searchOn(const Search& search);
    template <class Search>
    int process(bool first, const Search& search);

    HBXVocMap::VocIDSet restriction_;
    boost::shared_ptr<const Vocabularies> vocabularies_; ///< never changed, hence shared by copies
    Vocabularies::const_iterator current_;
};

} // namespace HBX
