#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <HBXCommon/HBXExport.h>
#include <HBXCommon/HBXTypes.h>

namespace HBX {

class HBXMessage;
struct HBXRecordTable;

/// A cursor on a tree message, and the only thing that readers and writers of records see. It stands on one
/// element at a time. Behind it lies a tree (HBXBinaryIterator), encoded bytes that are read where they lie,
/// or bytes that are being encoded (HBXEncoding.h). One thread at a time uses a message with all its cursors.
///
/// Results: 0 done; 1 the child or attribute is absent (getters only); -1 every other failure, for a getter:
/// it is there, but has no value or one that does not convert. A failed getter leaves its output untouched, a
/// failed move leaves the cursor where it was.
///
/// Element id 0 in a value getter or putter names the current element itself.
class HBX_EXPORT HBXMessageIterator {
public:
    virtual ~HBXMessageIterator();

    // --- moving

    /// To the root.
    virtual int seekRoot() const = 0;
    /// To the parent; -1 at the root. Every successful step down is matched by exactly one.
    virtual int seekUp() const = 0;
    /// Down to the first child of this id.
    virtual int seek(int id) const = 0;
    /// Down to the first child of this name; a text that begins with "/" is an absolute path from the root,
    /// walked wholly or not at all ("/" is the root).
    int seek(const std::string& name) const;
    /// Whether such a child is there: 0 or -1; never moves.
    virtual int seekPresence(int id) const = 0;
    int seekPresence(const std::string& name) const;
    /// Down to the first child, of this id or name when one is given.
    virtual int firstChild() const = 0;
    int firstChild(int id) const { return seek(id); }
    int firstChild(const std::string& name) const;
    /// To the next sibling, likewise; -1 at the last one.
    virtual int nextSibling() const = 0;
    virtual int nextSibling(int id) const = 0;
    int nextSibling(const std::string& name) const;
    /// Onto the element of another cursor of the same class on the same tree, or -1. As `newIterator(true)`
    /// of the other one, but without a new cursor.
    virtual int seekTo(const HBXMessageIterator& other) const;

    // --- the current element

    /// Element id; for a name outside the fixed table an id from 0x40000000 on that is good in this message
    /// only.
    virtual int curID() const = 0;
    /// 0 without a namespace.
    virtual int curNamespaceID() const = 0;
    /// "" for an id without a name.
    virtual std::string curName() const = 0;
    /// The complex type as "namespace:type" by names, "" for a plain element.
    virtual std::string curType() const = 0;

    // --- building

    /// Appends a child and steps down onto it.
    virtual int newChild(int id) = 0;
    int newChild(const std::string& name);
    /// Steps down onto the first such child, which is created when absent.
    int putChild(int id);
    int putChild(const std::string& name);
    /// Removes all children of this id; -1 when there is none.
    virtual int deleteChild(int id) = 0;
    /// Removes the current element with all below it and goes to its parent; -1 at the root.
    virtual int deleteFromChild() = 0;
    /// Appends a deep copy of the element under `from` (of all children, when that is a root); does not move.
    virtual int copyToChild(const HBXMessageIterator* from) = 0;
    /// 0 or "" removes.
    virtual int setNamespace(int nsid) = 0;
    int setNamespace(const std::string& name);
    /// The namespace that every element created through this cursor receives from now on; 0 or "" ends that.
    virtual int saveNamespace(int nsid) = 0;
    int saveNamespace(const std::string& name);
    /// Sets the namespace of the present direct children.
    virtual int setNamespaceChild(int nsid) = 0;
    /// Marks the current element with a complex type; (0, 0) or ("", "") removes the mark.
    virtual int setComplexType(int nsid, int typeId) = 0;
    int setComplexType(const std::string& nsName, const std::string& typeName);

    // --- values
    // Values are text; the getter decides the kind. Blanks around a number are ignored.

    /// The value of the first child of this id, as a number or text.
    int getValue(int& value, int id) const;
    int getValue(std::string& value, int id) const;
    int getValue(bool& value, int id) const;
    int getValueLongLong(std::int64_t& value, int id) const;
    int getValueDouble(double& value, int id) const;
    /// Seconds since 1970-01-01 UTC; the zone of a time with zone is dropped.
    int getValueTime(std::int64_t& value, int id) const;
    /// The pair as it was put, never shifted; zone in the form +-HHMM. A plain number gives zone 0.
    int getValueTimeZone(std::int64_t& time, int& zone, int id) const;
    /// Decodes into bytes.
    int getValueBase64(std::string& value, int id) const;
    /// Only values that were put as XML.
    int getValueXML(std::string& value, int id) const;

    /// The same of the first child of this name.
    int getValue(int& value, const std::string& name) const;
    int getValue(std::string& value, const std::string& name) const;
    int getValue(bool& value, const std::string& name) const;
    int getValueLongLong(std::int64_t& value, const std::string& name) const;
    int getValueDouble(double& value, const std::string& name) const;
    int getValueTime(std::int64_t& value, const std::string& name) const;
    int getValueTimeZone(std::int64_t& time, int& zone, const std::string& name) const;
    int getValueBase64(std::string& value, const std::string& name) const;

    /// Every putter appends a new child, also beside one of the same id; with id 0 it replaces the current
    /// element's value. A bool is put as the int 0 or 1.
    int putValue(int value, int id);
    int putValue(const std::string& value, int id);
    int putValue(const char* data, int length, int id);
    int putValueLongLong(std::int64_t value, int id);
    int putValueDouble(double value, int id);
    int putValueTime(std::int64_t value, int id);
    int putValueTimeZone(std::int64_t time, int zone, int id);
    int putValueBase64(const std::string& value, int id);
    int putValueBase64(const char* data, int length, int id);
    /// The fragment is neither parsed nor checked.
    int putValueXML(const std::string& value, int id);

    /// The same with a name.
    int putValue(int value, const std::string& name);
    int putValue(const std::string& value, const std::string& name);
    int putValueLongLong(std::int64_t value, const std::string& name);
    int putValueDouble(double value, const std::string& name);
    int putValueTime(std::int64_t value, const std::string& name);
    int putValueTimeZone(std::int64_t time, int zone, const std::string& name);
    int putValueBase64(const std::string& value, const std::string& name);

    // A 64-bit number would narrow silently, a bool pointer would be written as a bool.
    int putValue(long, int) = delete;
    int putValue(long long, int) = delete;
    int putValue(unsigned long, int) = delete;
    int putValue(unsigned long long, int) = delete;
    int putValue(const bool*, int) = delete;
    int putValue(long, const std::string&) = delete;
    int putValue(long long, const std::string&) = delete;
    int putValue(unsigned long, const std::string&) = delete;
    int putValue(unsigned long long, const std::string&) = delete;
    int putValue(const bool*, const std::string&) = delete;

    // --- attributes of the current element

    /// The value of an attribute; results as for values.
    int getAttr(int& value, int attrId) const;
    int getAttr(std::string& value, int attrId) const;
    int getAttrTime(std::int64_t& value, int attrId) const;
    /// Replaces an attribute of the same id.
    int putAttr(int value, int attrId);
    int putAttr(const std::string& value, int attrId);
    int putAttrTime(std::int64_t value, int attrId);

    // --- whole trees
    // Results in `char**` come from malloc and are the caller's to free; they are untouched on failure.
    // `flags` has no effect on the content.

    /// The whole message in binary form.
    virtual int serialize(char** out, int* length, int flags) const = 0;
    /// The current element in binary form.
    virtual int serializeFromChild(char** out, int* length) const = 0;
    /// Appends what the bytes hold: one element, or all children of a whole message's root.
    virtual int deserializeToChild(const char* data, int length) = 0;
    /// Zero-terminated text from malloc, null on failure: of the whole message, of the current element.
    virtual char* toText() const = 0;
    virtual char* toTextFromChild() const = 0;
    /// Appends what the text holds, as `deserializeToChild`.
    virtual int fromTextToChild(const char* text) = 0;

    /// The owning message; valid as long as this cursor.
    virtual HBXMessage* getMessage() const = 0;
    /// A second cursor on the same tree, owned by the caller: at the same element, or at the root.
    virtual HBXMessageIterator* newIterator(bool same) const = 0;
    /// A new message whose root has the current element's content. The caller owns one reference.
    virtual HBXMessage* copyMessage() const = 0;
    /// Origin of the owning message; 1 when unset.
    virtual int getOrigin(std::string& origin) const = 0;

    // --- records

    /// Reads a record from the child of this id, which must be there (-1 and `value` untouched otherwise);
    /// id 0: from the current element.
    template <class T>
    int getObject(T& value, int id) const;
    /// Writes a record as the child of this id, in place of the first one there is; id 0: into the current
    /// element.
    template <class T>
    int putObject(const T& value, int id);
    /// Runs a writer on the current element, with the namespace and complex type that it carries.
    template <class W, class T>
    int putObjectInternal(const W& writer, const T& value);

    /// Reads the members of a record from the current element, or writes them into it, as its table says;
    /// type marks are not written. This is what the readers and writers of most records consist of.
    virtual int readTable(void* record, const HBXRecordTable& table) const = 0;
    virtual int writeTable(const void* record, const HBXRecordTable& table) = 0;

    // --- what a cursor supplies

    /// The text of a value as it lies in the message: 0, 1 or -1 as for getters. The view is good until the
    /// message changes.
    virtual int rawValue(int id, std::string_view& text, bool& xml) const = 0;
    /// Puts a value, and reads or puts an attribute, in that same form.
    virtual int putRawValue(int id, std::string_view text, bool xml) = 0;
    virtual int rawAttr(int id, std::string_view& text) const = 0;
    virtual int putRawAttr(int id, std::string_view text) = 0;
    /// The id that this message uses for an element name, 0 when it knows none.
    virtual int idOfName(std::string_view name) const = 0;

protected:
    HBXMessageIterator() = default;
    HBXMessageIterator(const HBXMessageIterator&) = default;
    HBXMessageIterator& operator=(const HBXMessageIterator&) = default;

    /// Walks an absolute path, wholly or not at all.
    virtual int seekPath(std::string_view path) const = 0;
    /// The id for a name, given to it when it is new; 0 when it is empty or too long.
    virtual int internName(std::string_view name) = 0;
    /// The forms with names of `setNamespace`, `saveNamespace` and `setComplexType`.
    virtual int setNamespaceName(const std::string& name) = 0;
    virtual int saveNamespaceName(const std::string& name) = 0;
    virtual int setComplexTypeNames(const std::string& nsName, const std::string& typeName) = 0;
};

/// Ends the program: a binding was misused. `line` is the place that the behaviour fixes.
[[noreturn]] HBX_EXPORT void abortBinding(int line, const char* function);

/// Logs "Calling [...]" for a record's reader or writer; call only when `debug_level` is at least 4.
HBX_EXPORT void traceRecord(const HBXRecordTable& table, const char* functor);

} // namespace HBX

#include <HBXMessage/HBXCombinators.h>
