#pragma once

#include <optional>
#include <set>
#include <string>

#include <HBXMessage/HBXBinaryIterator.h>

namespace HBX {

/// A cursor that walks the categories and parameters of a vocabulary. It carries a restriction set: names of
/// categories that an item must all be filed under (its tags) to be met; empty, as at first, it admits all.
/// The forms of first and next with an argument use that set in place of the iterator's own.
class HBX_EXPORT HBXVocIterator : public HBXBinaryIterator {
public:
    /// On the root of the message.
    explicit HBXVocIterator(HBXBinary& message);

    /// To the root of the vocabulary; -1, on the last element of the way that is there, when it has none.
    int seekRoot() const override;

    /// To the first category or parameter with this identifier. -1 on the root when there is none; -1 on the
    /// found item when the restriction set does not admit it (a later one of that name is not looked for).
    virtual int seekCategory(const std::string& id);
    virtual int seekParameter(const std::string& id);

    /// To the first (next) category or parameter that carries the tags. When there is none, a first search
    /// ends on the root and a next search on the last sibling.
    int firstCategory() { return firstCategory(restriction_); }
    int firstCategory(const std::string& tag) { return firstCategory(std::set<std::string>{tag}); }
    int firstCategory(const std::set<std::string>& tags) { return processCategory(tags, true); }
    int nextCategory() { return nextCategory(restriction_); }
    int nextCategory(const std::string& tag) { return nextCategory(std::set<std::string>{tag}); }
    int nextCategory(const std::set<std::string>& tags) { return processCategory(tags, false); }
    int firstParameter() { return firstParameter(restriction_); }
    int firstParameter(const std::string& tag) { return firstParameter(std::set<std::string>{tag}); }
    int firstParameter(const std::set<std::string>& tags) { return processParameter(tags, true); }
    int nextParameter() { return nextParameter(restriction_); }
    int nextParameter(const std::string& tag) { return nextParameter(std::set<std::string>{tag}); }
    int nextParameter(const std::set<std::string>& tags) { return processParameter(tags, false); }

    /// Whether the item carries the tag, or all of the tags (none: true).
    bool belongsTo(const std::string& tag) const { return belongsTo(std::set<std::string>{tag}); }
    bool belongsTo(const std::set<std::string>& tags) const;

    /// The item's identifier; results of a getter.
    int getID(std::string& id) const;

    using HBXBinaryIterator::newIterator;
    /// A copy, owned by the caller.
    virtual HBXVocIterator* newIterator() const;

protected:
    friend class HBXVocPrototype;
    friend class HBXVocMap;

    /// Replaces the restriction set.
    void setRestrictSet(const std::set<std::string>& tags) { restriction_ = tags; }
    /// To the first or next item with these tags; what the forms of first and next do.
    virtual int processCategory(const std::set<std::string>& tags, bool first);
    virtual int processParameter(const std::set<std::string>& tags, bool first);

    /// Makes the iterator one over the vocabulary in this element, a child 1871 of the message root.
    void enter(const HBXBinaryIterator& vocabulary);

private:
    int seekItem(int kind, const std::string& id);
    int processItem(int kind, const std::set<std::string>& tags, bool first);
    int seekBase() const;
    int seekBaseFromRoot() const;
    bool atBase() const { return alive() && node() == base_->node(); }

    std::set<std::string> restriction_;
    /// The element that holds the vocabulary; none: the message root does.
    std::optional<HBXBinaryIterator> base_;
};

} // namespace HBX
