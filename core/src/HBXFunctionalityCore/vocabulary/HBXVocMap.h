#pragma once

#include <set>
#include <string>

#include <HBXFunctionalityCore/vocabulary/HBXVocID.h>
#include <HBXFunctionalityCore/vocabulary/HBXVocPrototype.h>

namespace HBX {

class HBXVocMapIterator;

/// Several vocabularies in one message, each in an element 1871 with its identifier beside its content. One
/// thread at a time.
class HBX_EXPORT HBXVocMap {
public:
    /// By the bytes of the name alone: of several versions under one name a map shows the first.
    struct HBXVocIDSortUniqueName {
        bool operator()(const HBXVocID& a, const HBXVocID& b) const { return a.name < b.name; }
    };
    using VocIDSet = std::set<HBXVocID, HBXVocIDSortUniqueName>;

    /// Takes over one reference of the message, which may be null. Vocabularies whose names are not in the
    /// restriction set are not seen; an empty set admits all. Copies share the message.
    HBXVocMap(HBXMessage* message, const VocIDSet& restriction);

    /// Takes over one reference of another message.
    void reset(HBXMessage* message);

    /// Adds a vocabulary to a map message in place of one with the same name and version; it then stands at
    /// the end. -1 and no change when there is no vocabulary, or the message under the iterator carries no
    /// identifier of its own.
    static int insert(HBXMessage* map, const HBXVocID& id,
                      const boost::intrusive_ptr<HBXVocPrototype>& vocabulary);
    static int insert(HBXMessage* map, HBXMessageIterator* vocabulary);

    /// Removes the first vocabulary of this name and version; -1 when there is none.
    int erase(const HBXVocID& id);
    /// Replaces the restriction set by these names; -1 and no change when one is too long to be a name.
    int setRestrictVocSet(const std::set<std::string>& names);

    /// As those of the prototype, over all admitted vocabularies by name; null without a message, too.
    HBXVocMapIterator* read() const;
    HBXVocMapIterator* readParameter(const std::string& id) const;
    HBXVocMapIterator* readCategory(const std::string& tag) const;
    HBXVocMapIterator* readCategory(const std::set<std::string>& tags) const;
    bool isFeatureEnabled(const std::string& id) const;

private:
    boost::intrusive_ptr<HBXMessage> message_;
    VocIDSet restriction_;
};

} // namespace HBX
