#pragma once

#include <string>
#include <string_view>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <HBXCommon/HBXExport.h>
#include <HBXMessage/HBXMessage.h>

namespace HBX {

class HBXConfiguration;

/// Walks a configuration by paths and reads and writes single values.
///
/// A path is element names separated by "/", taken exactly as written. One that begins with "/" starts at the
/// top element ("/" alone is that element), any other at the current position. The level counts the steps
/// from the top element. Between level 1 (a section) and level 2 (its settings) lies the wrapper
/// "configuration", which paths do not name: "/system/log_level" is data/system/configuration/log_level in
/// the message.
///
/// Results: 0 done, -1 failed. Copies share the cursor on the message, not the level, until one of them reads
/// or writes a value or fails, which gives it a cursor of its own. One thread at a time uses a configuration
/// with all its iterators.
class HBX_EXPORT HBXConfigurationIterator {
public:
    HBXConfigurationIterator(const HBXConfigurationIterator&) = default;
    HBXConfigurationIterator& operator=(const HBXConfigurationIterator&) = default;
    virtual ~HBXConfigurationIterator() = default;

    /// Goes along the path; does not move on failure.
    int seek(const std::string& path);
    /// Whether the path exists; never moves.
    int seekPresence(const std::string& path);
    /// One level up, from level 2 over the wrapper; -1 at level 0.
    int seekUp();
    /// Creates a child and goes onto it. At level 1 the wrapper must be there: -1 and unmoved without it.
    /// When the wrapper is there but the child fails, the iterator is left inside the wrapper, at level 1; so
    /// it is for `firstChild`.
    int newChild(const std::string& name);
    /// Onto the first child, of this name when one is given; see `newChild`.
    int firstChild();
    int firstChild(const std::string& name);

    /// Onto the next sibling in the message; the level does not follow.
    int nextSibling();
    int nextSibling(const std::string& name);
    /// Removes the current element; the cursor goes to its parent in the message, which may be the wrapper.
    int deleteFromChild();
    /// The name of the current element.
    [[nodiscard]] std::string curName() const;

    /// The value at the end of a path, untouched on failure; the iterator does not move.
    int getValue(std::string& value, const std::string& path);
    int getValue(int& value, const std::string& path);
    int getValueBase64(std::string& value, const std::string& path);
    /// Replaces it, and creates every element that is missing on the way, the wrapper too; what a failed call
    /// has created stays.
    int putValue(const std::string& value, const std::string& path);
    int putValue(int value, const std::string& path);
    int putValueBase64(const std::string& value, const std::string& path);

    /// A new configuration over the same message, owned by the caller.
    [[nodiscard]] HBXConfiguration* getConfig() const;
    /// The message; this object keeps its handle.
    [[nodiscard]] HBXMessage* getMessage() const { return message_.get(); }
    /// A new iterator on the top element of the same message, owned by the caller.
    [[nodiscard]] HBXConfigurationIterator* getIterator() const;

protected:
    friend class HBXConfiguration;

    /// On the top element (on the message's root when there is none), with a handle of its own of the
    /// message, which is not null.
    explicit HBXConfigurationIterator(HBXMessage* message);

    /// To the top element, level 0.
    int seekRoot();
    /// One element of a path, through the wrapper where it lies; `createSubPath` creates what is missing.
    int seekSubPath(const std::string& name);
    int createSubPath(const std::string& name);
    /// Remembers the position, then goes along the path. On failure the iterator stays where it got to:
    /// `restorePath` takes it back.
    int followPath(std::string_view path, bool create);
    /// Gets ready to go onto a child: at level 1 into the wrapper, then remembers the position there.
    int adjustLevel();
    /// Remembers the position, in place of an earlier one.
    void savePath();
    /// Goes back to the remembered position, which is then forgotten. Ends the program when there is none.
    void restorePath();

private:
    template <class Step>
    int stepToChild(const Step& step);
    template <class Access>
    int access(std::string_view path, bool create, const Access& access);

    int level_ = 0;
    // Shared, so that copies may hold one cursor and the last of them frees it.
    boost::shared_ptr<HBXMessageIterator> iterator_;
    int savedLevel_ = 0;
    boost::shared_ptr<HBXMessageIterator> savedIterator_;
    boost::shared_ptr<HBXMessageIterator> spareIterator_; ///< spares the next saved one its allocation
    boost::intrusive_ptr<HBXMessage> message_;
};

} // namespace HBX
