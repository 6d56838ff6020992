#include <HBXMessage/HBXMessageIterator.h>

#include <limits>

#include <HBXCommon/HBXAbort.h>
#include <HBXCommon/HBXBase64.h>
#include <HBXCommon/HBXLog.h>
#include <HBXCommon/HBXStringUtil.h>
#include <HBXMessage/HBXRecordTable.h>
#include <HBXMessage/internal/ValueText.h>

namespace HBX {
namespace {

constexpr const char* kSource = "core/src/HBXMessage/HBXMessageIterator";

/// Fetches a text with `fetch` and converts it: the getter's result, with the output touched only on 0.
template <class Convert>
int converted(int fetched, std::string_view text, const Convert& convert) {
    return fetched != 0 ? fetched : convert(text) ? 0 : -1;
}

/// Runs a getter on the child of a name; a name that the message does not know has no child, as -1 has none.
template <class Get>
int byName(const HBXMessageIterator& it, const std::string& name, const Get& get) {
    const int id = it.idOfName(name);
    return get(id == 0 ? -1 : id);
}

bool isNoView(const char* data, int length) { return length < 0 || (data == nullptr && length > 0); }

std::string_view viewOf(const char* data, int length) {
    return data == nullptr || length <= 0 ? std::string_view()
                                          : std::string_view(data, static_cast<std::size_t>(length));
}

} // namespace

HBXMessageIterator::~HBXMessageIterator() = default;

void abortBinding(int line, const char* function) {
    abort("HBXFunctionalityCore", kSource, line, function, function);
}

void traceRecord(const HBXRecordTable& table, const char* functor) {
    const std::string function = "HBX::" + std::string(table.name) + "::" + functor + "::operator ()";
    Log2("HBXFunctionalityCore", kSource, __LINE__, function.c_str(), function.c_str())
        .put(4, "Calling [%s]", function.c_str());
}

// --- by name ---

int HBXMessageIterator::seek(const std::string& name) const {
    if (!name.empty() && name.front() == '/') {
        return seekPath(std::string_view(name).substr(1));
    }
    const int id = idOfName(name);
    return id == 0 ? -1 : seek(id);
}

int HBXMessageIterator::seekPresence(const std::string& name) const {
    const int id = idOfName(name);
    return id == 0 ? -1 : seekPresence(id);
}

int HBXMessageIterator::firstChild(const std::string& name) const {
    const int id = idOfName(name);
    return id == 0 ? -1 : seek(id);
}

int HBXMessageIterator::seekTo(const HBXMessageIterator&) const { return -1; }

int HBXMessageIterator::nextSibling(const std::string& name) const {
    const int id = idOfName(name);
    return id == 0 ? -1 : nextSibling(id);
}

int HBXMessageIterator::newChild(const std::string& name) {
    const int id = internName(name);
    return id == 0 ? -1 : newChild(id);
}

int HBXMessageIterator::putChild(int id) { return seek(id) == 0 ? 0 : newChild(id); }

int HBXMessageIterator::putChild(const std::string& name) {
    const int id = internName(name);
    return id == 0 ? -1 : putChild(id);
}

int HBXMessageIterator::setNamespace(const std::string& name) { return setNamespaceName(name); }
int HBXMessageIterator::saveNamespace(const std::string& name) { return saveNamespaceName(name); }

int HBXMessageIterator::setComplexType(const std::string& nsName, const std::string& typeName) {
    return setComplexTypeNames(nsName, typeName);
}

// --- getters ---

int HBXMessageIterator::getValue(int& value, int id) const {
    std::string_view text;
    bool xml = false;
    return converted(rawValue(id, text, xml), text, [&](auto raw) { return internal::toInt(raw, value); });
}

int HBXMessageIterator::getValue(std::string& value, int id) const {
    std::string_view text;
    bool xml = false;
    return converted(rawValue(id, text, xml), text, [&](auto raw) {
        value.assign(raw);
        return true;
    });
}

int HBXMessageIterator::getValue(bool& value, int id) const {
    std::string_view text;
    bool xml = false;
    return converted(rawValue(id, text, xml), text, [&](auto raw) { return internal::toBool(raw, value); });
}

int HBXMessageIterator::getValueLongLong(std::int64_t& value, int id) const {
    std::string_view text;
    bool xml = false;
    return converted(rawValue(id, text, xml), text, [&](auto raw) { return internal::toInt64(raw, value); });
}

int HBXMessageIterator::getValueDouble(double& value, int id) const {
    std::string_view text;
    bool xml = false;
    return converted(rawValue(id, text, xml), text, [&](auto raw) { return parseDouble(raw, value); });
}

int HBXMessageIterator::getValueTime(std::int64_t& value, int id) const {
    std::string_view text;
    bool xml = false;
    return converted(rawValue(id, text, xml), text, [&](auto raw) { return internal::toTime(raw, value); });
}

int HBXMessageIterator::getValueTimeZone(std::int64_t& time, int& zone, int id) const {
    std::string_view text;
    bool xml = false;
    return converted(rawValue(id, text, xml), text,
                     [&](auto raw) { return internal::toTimeZone(raw, time, zone); });
}

int HBXMessageIterator::getValueBase64(std::string& value, int id) const {
    std::string_view text;
    bool xml = false;
    return converted(rawValue(id, text, xml), text, [&](auto raw) { return base64Decode(raw, value); });
}

int HBXMessageIterator::getValueXML(std::string& value, int id) const {
    std::string_view text;
    bool xml = false;
    return converted(rawValue(id, text, xml), text, [&](auto raw) {
        if (xml) {
            value.assign(raw);
        }
        return xml;
    });
}

int HBXMessageIterator::getValue(int& value, const std::string& name) const {
    return byName(*this, name, [&](int id) { return getValue(value, id); });
}
int HBXMessageIterator::getValue(std::string& value, const std::string& name) const {
    return byName(*this, name, [&](int id) { return getValue(value, id); });
}
int HBXMessageIterator::getValue(bool& value, const std::string& name) const {
    return byName(*this, name, [&](int id) { return getValue(value, id); });
}
int HBXMessageIterator::getValueLongLong(std::int64_t& value, const std::string& name) const {
    return byName(*this, name, [&](int id) { return getValueLongLong(value, id); });
}
int HBXMessageIterator::getValueDouble(double& value, const std::string& name) const {
    return byName(*this, name, [&](int id) { return getValueDouble(value, id); });
}
int HBXMessageIterator::getValueTime(std::int64_t& value, const std::string& name) const {
    return byName(*this, name, [&](int id) { return getValueTime(value, id); });
}
int HBXMessageIterator::getValueTimeZone(std::int64_t& time, int& zone, const std::string& name) const {
    return byName(*this, name, [&](int id) { return getValueTimeZone(time, zone, id); });
}
int HBXMessageIterator::getValueBase64(std::string& value, const std::string& name) const {
    return byName(*this, name, [&](int id) { return getValueBase64(value, id); });
}

// --- putters ---

int HBXMessageIterator::putValue(int value, int id) {
    return putRawValue(id, internal::NumberText(std::int64_t{value}).view(), false);
}

int HBXMessageIterator::putValue(const std::string& value, int id) { return putRawValue(id, value, false); }

int HBXMessageIterator::putValue(const char* data, int length, int id) {
    return isNoView(data, length) ? -1 : putRawValue(id, viewOf(data, length), false);
}

int HBXMessageIterator::putValueLongLong(std::int64_t value, int id) {
    return putRawValue(id, internal::NumberText(value).view(), false);
}

int HBXMessageIterator::putValueDouble(double value, int id) {
    return putRawValue(id, internal::NumberText(value).view(), false);
}

int HBXMessageIterator::putValueTime(std::int64_t value, int id) { return putValueLongLong(value, id); }

int HBXMessageIterator::putValueTimeZone(std::int64_t time, int zone, int id) {
    return putRawValue(id, internal::NumberText(time, zone).view(), false);
}

int HBXMessageIterator::putValueBase64(const std::string& value, int id) {
    std::string text(base64EncodedSize(value.size()), '\0');
    base64Encode(value.data(), value.size(), text.data());
    return putRawValue(id, text, false);
}

int HBXMessageIterator::putValueBase64(const char* data, int length, int id) {
    return isNoView(data, length) ? -1 : putValueBase64(std::string(viewOf(data, length)), id);
}

int HBXMessageIterator::putValueXML(const std::string& value, int id) { return putRawValue(id, value, true); }

namespace {

/// Runs a putter on a new child of a name; the empty name is none.
template <class Put>
int putByName(int id, const Put& put) {
    return id == 0 ? -1 : put(id);
}

} // namespace

int HBXMessageIterator::putValue(int value, const std::string& name) {
    return putByName(internName(name), [&](int id) { return putValue(value, id); });
}
int HBXMessageIterator::putValue(const std::string& value, const std::string& name) {
    return putByName(internName(name), [&](int id) { return putValue(value, id); });
}
int HBXMessageIterator::putValueLongLong(std::int64_t value, const std::string& name) {
    return putByName(internName(name), [&](int id) { return putValueLongLong(value, id); });
}
int HBXMessageIterator::putValueDouble(double value, const std::string& name) {
    return putByName(internName(name), [&](int id) { return putValueDouble(value, id); });
}
int HBXMessageIterator::putValueTime(std::int64_t value, const std::string& name) {
    return putByName(internName(name), [&](int id) { return putValueTime(value, id); });
}
int HBXMessageIterator::putValueTimeZone(std::int64_t time, int zone, const std::string& name) {
    return putByName(internName(name), [&](int id) { return putValueTimeZone(time, zone, id); });
}
int HBXMessageIterator::putValueBase64(const std::string& value, const std::string& name) {
    return putByName(internName(name), [&](int id) { return putValueBase64(value, id); });
}

// --- attributes ---

int HBXMessageIterator::getAttr(int& value, int attrId) const {
    std::string_view text;
    return converted(rawAttr(attrId, text), text, [&](auto raw) { return internal::toInt(raw, value); });
}

int HBXMessageIterator::getAttr(std::string& value, int attrId) const {
    std::string_view text;
    return converted(rawAttr(attrId, text), text, [&](auto raw) {
        value.assign(raw);
        return true;
    });
}

int HBXMessageIterator::getAttrTime(std::int64_t& value, int attrId) const {
    std::string_view text;
    return converted(rawAttr(attrId, text), text, [&](auto raw) { return internal::toTime(raw, value); });
}

int HBXMessageIterator::putAttr(int value, int attrId) {
    return putRawAttr(attrId, internal::NumberText(std::int64_t{value}).view());
}

int HBXMessageIterator::putAttr(const std::string& value, int attrId) { return putRawAttr(attrId, value); }

int HBXMessageIterator::putAttrTime(std::int64_t value, int attrId) {
    return putRawAttr(attrId, internal::NumberText(value).view());
}

} // namespace HBX
