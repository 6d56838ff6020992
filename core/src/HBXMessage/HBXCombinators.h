#pragma once

#include <utility>

#include <boost/smart_ptr/make_shared_object.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <HBXCommon/HBXLog.h>
#include <HBXMessage/HBXMessageIterator.h>

/// The readers and writers from which records written by hand are composed. A reader is called with a cursor
/// on the record's own element and leaves it there, whatever the result; so does a writer.
namespace HBX {

/// The descriptors of a writer without marks; combinators have these.
struct HBXPlainMarks {
    /// No namespace and no type, neither by number nor by name.
    static int getNSID() { return 0; }
    static const char* getNSName() { return ""; }
    static int getTypeID() { return 0; }
    static const char* getTypeName() { return ""; }
};

/// Reads through the child of one id.
/// @param mandatory  0: an absent child is fine and leaves the value; anything else: it is a failure.
template <class Id, class Inner>
class HBXReaderIDT {
public:
    HBXReaderIDT(Inner inner, Id id, int mandatory)
        : inner_(std::move(inner)), id_(id), optional_(mandatory == 0) {}

    template <class T>
    int operator()(const HBXMessageIterator& it, T& value) const {
        if (id_ == 0) {
            abortBinding(752, "HBX::HBXReaderIDT::operator ()");
        }
        if (it.seek(id_) != 0) {
            return optional_ ? 0 : -1;
        }
        const int result = inner_(it, value);
        it.seekUp();
        return result;
    }

private:
    Inner inner_;
    Id id_;
    bool optional_;
};

/// Writes into a new child of one id. The namespace, when not 0, is set after the content and on the child
/// alone.
template <class Id, class Inner, class NS = int>
class HBXWriterIDT : public HBXPlainMarks {
public:
    HBXWriterIDT(Inner inner, Id id, NS nsid = 0) : inner_(std::move(inner)), id_(id), nsid_(nsid) {}

    template <class T>
    int operator()(HBXMessageIterator& it, const T& value) const {
        if (id_ == 0) {
            abortBinding(671, "HBX::HBXWriterIDT::operator ()");
        }
        if (it.newChild(id_) != 0) {
            return -1; // without the child the writer would fill the parent and climb one level too far
        }
        const int result = it.putObjectInternal(inner_, value);
        if (nsid_ != 0) {
            it.setNamespace(nsid_);
        }
        it.seekUp();
        return result;
    }

private:
    Inner inner_;
    Id id_;
    NS nsid_;
};

/// One value of the current element through one getter, for example
/// `HBXReaderSimple<std::int64_t, &HBXMessageIterator::getValueLongLong>`.
template <class T, int (HBXMessageIterator::*Getter)(T&, int) const>
struct HBXReaderSimple {
    int operator()(const HBXMessageIterator& it, T& value) const { return (it.*Getter)(value, 0); }
};

/// One value of the current element through one putter; `Argument` is how the putter takes it.
template <class Argument, int (HBXMessageIterator::*Putter)(Argument, int)>
struct HBXWriterSimple : HBXPlainMarks {
    int operator()(HBXMessageIterator& it, Argument value) const { return (it.*Putter)(value, 0); }
};

/// Reads every child of the item id through the sink; appends to what the container holds.
/// @param mandatory  0: no item is fine; anything else: it is a failure.
template <class Id, class Sink>
class HBXReaderListT {
public:
    HBXReaderListT(Sink sink, Id itemId, int mandatory)
        : sink_(std::move(sink)), itemId_(itemId), optional_(mandatory == 0) {}

    template <class Container>
    int operator()(const HBXMessageIterator& it, Container& container) const {
        if (it.firstChild(itemId_) != 0) {
            return optional_ ? 0 : -1;
        }
        int result = 0;
        do {
            result = sink_(it, container) == 0 ? 0 : -1;
        } while (result == 0 && it.nextSibling(itemId_) == 0);
        it.seekUp();
        return result;
    }

private:
    Sink sink_;
    Id itemId_;
    bool optional_;
};

/// Sink into an ordered set: items that compare equal collapse into one.
template <class ItemReader>
class HBXReaderSetDataT {
public:
    explicit HBXReaderSetDataT(ItemReader reader = ItemReader()) : reader_(std::move(reader)) {}

    template <class Set>
    int operator()(const HBXMessageIterator& it, Set& set) const {
        typename Set::value_type item{};
        const int result = reader_(it, item);
        if (result == 0) {
            set.insert(std::move(item));
        }
        return result;
    }

private:
    ItemReader reader_;
};

/// Sink at the end of a sequence.
template <class ItemReader>
class HBXReaderListDataT {
public:
    explicit HBXReaderListDataT(ItemReader reader = ItemReader()) : reader_(std::move(reader)) {}

    template <class Sequence>
    int operator()(const HBXMessageIterator& it, Sequence& sequence) const {
        typename Sequence::value_type item{};
        const int result = reader_(it, item);
        if (result == 0) {
            sequence.push_back(std::move(item));
        }
        return result;
    }

private:
    ItemReader reader_;
};

/// Reads into a new object; as a member reader it replaces the pointer, as an item sink it appends one.
/// Nothing changes when the read fails.
template <class Reader>
class HBXReaderPointerT {
public:
    explicit HBXReaderPointerT(Reader reader = Reader()) : reader_(std::move(reader)) {}

    template <class T>
    int operator()(const HBXMessageIterator& it, boost::shared_ptr<T>& pointer) const {
        auto object = boost::make_shared<T>();
        const int result = reader_(it, *object);
        if (result == 0) {
            pointer = std::move(object);
        }
        return result;
    }

    template <class Sequence>
    int operator()(const HBXMessageIterator& it, Sequence& sequence) const {
        return HBXReaderListDataT<HBXReaderPointerT>(*this)(it, sequence);
    }

private:
    Reader reader_;
};

/// Writes every item in order; stops with -1 at the first that fails, those before it stay.
template <class ItemWriter>
class HBXWriterListT : public HBXPlainMarks {
public:
    explicit HBXWriterListT(ItemWriter writer) : writer_(std::move(writer)) {}

    template <class Container>
    int operator()(HBXMessageIterator& it, const Container& container) const {
        for (const auto& item : container) {
            if (writer_(it, item) != 0) {
                return -1;
            }
        }
        return 0;
    }

private:
    ItemWriter writer_;
};

/// Writes the object behind a pointer, with the marks of its own writer; a null pointer is -1.
template <class T, class Writer>
class HBXWriterPointerDataT {
public:
    explicit HBXWriterPointerDataT(Writer writer = Writer()) : writer_(std::move(writer)) {}

    /// The marks are those of the writer behind.
    static int getNSID() { return Writer::getNSID(); }
    static const char* getNSName() { return Writer::getNSName(); }
    static int getTypeID() { return Writer::getTypeID(); }
    static const char* getTypeName() { return Writer::getTypeName(); }

    int operator()(HBXMessageIterator& it, const T* pointer) const {
        return pointer == nullptr ? -1 : writer_(it, *pointer);
    }
    int operator()(HBXMessageIterator& it, const boost::shared_ptr<T>& pointer) const {
        return (*this)(it, pointer.get());
    }

private:
    Writer writer_;
};

template <class T, class Writer>
using HBXWriterPointerT = HBXWriterPointerDataT<T, Writer>;

namespace internal {

/// The entry of a reader or writer written by hand; those that follow from a table are traced with the table.
template <class Functor, class T>
void traceEntry(const char* name) {
    if constexpr (
        requires { T::table; } && !requires { Functor::kFollowsTable; }) {
        if (debug_level.load(std::memory_order_relaxed) >= 4) [[unlikely]] {
            traceRecord(T::table, name);
        }
    }
}

} // namespace internal

template <class T>
int HBXMessageIterator::getObject(T& value, int id) const {
    typename T::Reader reader;
    internal::traceEntry<typename T::Reader, T>("Reader");
    if (id == 0) {
        return reader(*this, value);
    }
    return HBXReaderIDT<int, typename T::Reader>(reader, id, 1)(*this, value);
}

template <class T>
int HBXMessageIterator::putObject(const T& value, int id) {
    typename T::Writer writer;
    if (id == 0) {
        return putObjectInternal(writer, value);
    }
    if (seek(id) == 0) {
        deleteFromChild();
    }
    return HBXWriterIDT<int, typename T::Writer>(writer, id)(*this, value);
}

template <class W, class T>
int HBXMessageIterator::putObjectInternal(const W& writer, const T& value) {
    const char* nsName = W::getNSName();
    const char* typeName = W::getTypeName();
    if (nsName == nullptr) {
        abortBinding(853, "HBX::HBXMessageIterator::putObjectInternal");
    }
    if (typeName == nullptr) {
        abortBinding(854, "HBX::HBXMessageIterator::putObjectInternal");
    }
    const int nsid = W::getNSID();
    if (nsid != 0) {
        saveNamespace(nsid);
    } else if (*nsName != '\0') {
        saveNamespace(nsName);
    }
    if (W::getTypeID() > 100) {
        setComplexType(nsid, W::getTypeID());
    } else if (*typeName != '\0') {
        setComplexType(nsName, typeName);
    }
    internal::traceEntry<W, T>("Writer");
    const int result = writer(*this, value);
    if (nsid != 0 || *nsName != '\0') {
        saveNamespace(0);
    }
    return result;
}

} // namespace HBX
