#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <HBXCommon/HBXExport.h>
#include <HBXMessage/HBXMessageIterator.h>

namespace HBX {

class HBXMsgFactory;

/// The session that a message belongs to; a text.
class HBXSessionID {
public:
    HBXSessionID() = default;
    HBXSessionID(std::string text) : text_(std::move(text)) {}
    operator const std::string&() const { return text_; }
    friend bool operator==(const HBXSessionID&, const HBXSessionID&) = default;

private:
    std::string text_;
};

/// A tree message: a tree of elements under one root, and an envelope of fields that travels beside it.
/// Counted: a new message has one reference, `destroy` drops one; cursors hold references of their own.
/// Messages are never deleted directly.
///
/// Results are those of HBXMessageIterator; envelope getters give 1 for a field that is not set. When a parse
/// fails, the message is as it was and the thread's error message says where the input is wrong.
class HBX_EXPORT HBXMessage { // NOLINT(cppcoreguidelines-virtual-class-destructor): only the count deletes
public:
    HBXMessage(const HBXMessage&) = delete;
    HBXMessage& operator=(const HBXMessage&) = delete;

    /// The factory that all share.
    static boost::intrusive_ptr<HBXMsgFactory> getFactory();

    /// true: an independent copy. false: this message with one more reference.
    virtual HBXMessage* copy(bool deep) = 0;
    /// Drops one reference; the last one ends the message.
    void destroy();

    /// A cursor on the root, owned by the caller.
    virtual HBXMessageIterator* newIterator() = 0;
    /// For reading only.
    virtual const HBXMessageIterator* newIterator() const = 0;

    /// Empties tree and envelope and sets the message type.
    virtual int create(int type) = 0;
    /// The same, with one child of this name (null or "": none).
    virtual int create(const char* name) = 0;
    /// Replaces all by what the bytes hold (binary form).
    virtual int init(const char* data, int length) = 0;

    // A `from` below is a cursor over the tree of a message.

    /// The binary form, from malloc: `from` null or at the root gives the whole message, else a message
    /// without envelope whose root has the content of that element. `flags` has no effect on the content.
    virtual int serialize(char** out, int* length, const HBXMessageIterator* from, int flags) const = 0;
    /// Into a buffer of `*length` bytes; sets the size used. -2: the buffer is null or too short; nothing is
    /// written and `*length` is the size needed.
    virtual int serialize(char* buffer, std::size_t* length, const HBXMessageIterator* from) const = 0;

    /// `into` null: replaces tree and envelope. Else appends below that element: one element, or all children
    /// of a whole message's root.
    virtual int deserialize(const char* data, int length, HBXMessageIterator* into) = 0;
    virtual int deserialize(const HBXMessageIterator* from, HBXMessageIterator* into) = 0;
    virtual int fromText(const char* text, HBXMessageIterator* into) = 0;
    /// Zero-terminated text from malloc, null on failure. `indent` is the unit of indentation, "" = one line.
    virtual char* toText(const HBXMessageIterator* from, const std::string& indent, int flags = 0) const = 0;
    /// Regular files only.
    virtual int fromTextFile(const std::string& path) = 0;
    /// After a failure or a crash the file holds what it held before.
    virtual int toTextFile(const std::string& path) const = 0;

    /// The kind of message object; 0 for the one kind there is.
    virtual int messageType() const { return 0; }

    /// Envelope: who sent it.
    virtual int getOrigin(std::string& value) const = 0;
    virtual int setOrigin(const std::string& value) = 0;
    /// To whom it goes.
    virtual int getTarget(std::vector<std::string>& value) const = 0;
    /// Replaces all targets.
    virtual int setTarget(const std::vector<std::string>& value) = 0;
    /// Makes this the only target, or adds it.
    int setTarget(const std::string& value) { return setTarget(std::vector<std::string>{value}); }
    virtual int addTarget(const std::string& value) = 0;
    /// By which sender and receiver know it.
    virtual int getID(std::string& value) const = 0;
    /// overwrite false: an id that is set stays.
    virtual int setID(const std::string& value, bool overwrite) = 0;
    /// Numbers that travel with the message.
    virtual int getLog(int& value) const = 0;
    virtual int setLog(int value) = 0;
    virtual int getPriority(int& value) const = 0;
    virtual int setPriority(int value) = 0;
    virtual int getProgress(int& value) const = 0;
    virtual int setProgress(int value) = 0;
    /// The session it belongs to, by name and by identifier.
    virtual int getSession(std::string& value) const = 0;
    virtual int setSession(const std::string& value) = 0;
    virtual int getSessionID(std::string& value) const = 0;
    virtual int setSessionID(const std::string& value) = 0;
    int getSessionID(HBXSessionID& value) const;
    int setSessionID(const HBXSessionID& value) {
        return setSessionID(static_cast<const std::string&>(value));
    }
    int setSessionID(const char* value) { return setSessionID(std::string(value)); }
    /// Seconds since 1970-01-01 UTC.
    virtual int getTime(std::int64_t& value) const = 0;
    virtual int setTime(std::int64_t value) = 0;
    /// How long an answer may take, and the limit for that.
    virtual int getTimeout(int& value) const = 0;
    virtual int setTimeout(int value) = 0;
    virtual int getTimeoutLimit(int& value) const = 0;
    virtual int setTimeoutLimit(int value) = 0;
    /// What kind of message it is, for whom it was sent, and by which version: as the sender says.
    virtual int getType(int& value) const = 0;
    virtual int setType(int value) = 0;
    virtual int getUid(std::string& value) const = 0;
    virtual int setUid(const std::string& value) = 0;
    virtual int getVersion(int& value) const = 0;
    virtual int setVersion(int value) = 0;

    friend void intrusive_ptr_add_ref(const HBXMessage* message) {
        message->references_.fetch_add(1, std::memory_order_relaxed);
    }
    friend void intrusive_ptr_release(const HBXMessage* message) { release(message); }

protected:
    HBXMessage() = default;
    virtual ~HBXMessage() = default;

private:
    static void release(const HBXMessage* message) {
        if (message->references_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            delete message;
        }
    }

    /// Owners may be on several threads although only one uses the message at a time.
    mutable std::atomic<int> references_{1};
};

/// Makes messages. The caller owns one reference of what it gets.
class HBX_EXPORT HBXMsgFactory {
public:
    /// Empty.
    static HBXMessage* createNew();
    /// From the binary form; null when the bytes are no message.
    static HBXMessage* createNew(const char* data, int length);

    // The one factory lives as long as the program.
    friend void intrusive_ptr_add_ref(const HBXMsgFactory*) {}
    friend void intrusive_ptr_release(const HBXMsgFactory*) {}
};

/// Takes over the reference that the creators and copies above give.
inline boost::intrusive_ptr<HBXMessage> adoptMessage(HBXMessage* message) { return {message, false}; }

} // namespace HBX
