#pragma once

#include <set>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include <HBXCommon/HBXLock.h>
#include <HBXFunctionalityCore/vocabulary/HBXVocContent.h>
#include <HBXFunctionalityCore/vocabulary/HBXVocIterator.h>

namespace HBX {

/// One vocabulary, held by `boost::intrusive_ptr`; also a record.
///
/// Threads: all operations but comparison and Reader may be called from several threads at once. A vocabulary
/// is replaced as a whole, and an iterator keeps the message that it was made on; so threads may read side by
/// side as long as nobody changes the message through an iterator.
///
/// The non-const readers fetch the vocabulary first where a derived class knows from where; the const ones
/// use what is loaded. Iterators belong to the caller.
class HBX_EXPORT HBXVocPrototype
    : public boost::intrusive_ref_counter<HBXVocPrototype, boost::thread_safe_counter> {
public:
    HBXVocPrototype() = default;
    /// Takes over one reference; null is a vocabulary that is not loaded.
    explicit HBXVocPrototype(HBXMessage* message);
    /// Shares the message.
    HBXVocPrototype(const HBXVocPrototype& other) noexcept;
    HBXVocPrototype& operator=(const HBXVocPrototype& other) noexcept;
    virtual ~HBXVocPrototype() = default;

    /// The vocabulary of this installation, the same one for the whole process. There is always a prototype;
    /// when the file is missing or bad, each `read` tries again. Once loaded it is never loaded again.
    static boost::intrusive_ptr<HBXVocPrototype> getVoc();

    /// Loads a message in text form. -1 keeps what was loaded before.
    int readFromFile(const std::string& path);
    /// Whole or not at all; -1 also when nothing is loaded.
    int saveToFile(const std::string& path) const;

    /// On the vocabulary root; null when there is none.
    HBXVocIterator* read();
    HBXVocIterator* read() const;
    /// On the parameter with this identifier; null when there is none.
    HBXVocIterator* readParameter(const std::string& id);
    HBXVocIterator* readParameter(const std::string& id) const;
    /// On the vocabulary root, restricted to items with these tags; null when there is no root.
    HBXVocIterator* readCategory(const std::string& tag);
    HBXVocIterator* readCategory(const std::string& tag) const;
    HBXVocIterator* readCategory(const std::set<std::string>& tags);
    HBXVocIterator* readCategory(const std::set<std::string>& tags) const;

    /// Whether there is a parameter of this name. (A category is none.)
    bool isFeatureEnabled(const std::string& id);

    /// The value of the parameter "vocversion", kept from the first time that it is there; else empty.
    std::string readVersion();
    std::string getVersion() { return readVersion(); }

    static const HBXRecordTable table;

    /// The element holds the vocabulary's element 1307. -1 and unchanged when it has no child at all.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXVocPrototype& value) const;
    };
    /// Puts 1307 with all below it; -1 when there is none.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXVocPrototype> {
        int operator()(HBXMessageIterator& it, const HBXVocPrototype& value) const;
    };

protected:
    /// Takes over one reference of the new message and gives up the old one.
    void reset(HBXMessage* message);
    /// On the message root; null when nothing is loaded.
    HBXVocIterator* newIterator() const;
    /// The same, after fetching the vocabulary if need be.
    virtual HBXVocIterator* newIteratorWithInit();

private:
    struct Rows;

    static HBXVocIterator* restricted(HBXVocIterator* it, const std::set<std::string>& tags);
    boost::intrusive_ptr<HBXMessage> message() const;

    mutable HBXLock lock_; ///< guards the two below
    HBXVocContent content_;
    std::string version_; ///< of the present message; empty until it was found
};

} // namespace HBX
