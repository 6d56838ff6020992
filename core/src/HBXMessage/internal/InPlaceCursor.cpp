#include <HBXMessage/internal/InPlaceCursor.h>

#include <algorithm>
#include <memory>

#include <HBXMessage/HBXDefaultMap.h>
#include <HBXMessage/internal/TableReader.h>

namespace HBX::internal {
namespace {

constexpr std::uint32_t kRootPlace = 1;

} // namespace

InPlaceCursor::InPlaceCursor(std::string_view bytes) : bytes_(bytes) {
    const auto* at = reinterpret_cast<const std::uint8_t*>(bytes.data());
    const std::uint8_t* end = at + bytes.size();
    slots_[0].view = {};
    slots_[0].view.end = end;
    slots_[kRootPlace].view = {};
    if (bytes.size() < kHeaderSize ||
        bytes.substr(0, sizeof kMagic) != std::string_view(kMagic, sizeof kMagic) ||
        at[4] != kMessageBinaryVersion) {
        return;
    }
    const bool wholeMessage = at[5] == static_cast<std::uint8_t>(Wrapping::Message);
    at += kHeaderSize;
    if (!readNames(at, end) || (wholeMessage && !skipEnvelope(at, end))) {
        return;
    }
    if (!wholeMessage) { // an element alone is the only child of a root that has nothing else
        Slot& root = slots_[kRootPlace];
        root.view.flags = kHasChildren;
        root.view.children = at;
        root.view.end = end;
        root.resume = at;
        root.passed = 0;
        good_ = true;
        return;
    }
    good_ = load(kRootPlace, at) != 0;
}

bool InPlaceCursor::readNames(const std::uint8_t*& at, const std::uint8_t* end) {
    std::uint64_t count = 0;
    at = readVarint(at, end, count);
    if (at == nullptr || count > kMaxNames) {
        return false;
    }
    for (std::uint64_t i = 0; i < count; ++i) {
        std::uint32_t length = 0;
        at = readLength(at, end, length);
        if (at == nullptr) {
            return false;
        }
        const std::string_view text(reinterpret_cast<const char*>(at), length);
        const int known = HBXDefaultMap::findElemName(text);
        names_.push_back({text, known != 0 ? static_cast<Ref>(known) : kDynamicRef + static_cast<Ref>(i)});
        at += length;
    }
    return true;
}

bool InPlaceCursor::skipEnvelope(const std::uint8_t*& at, const std::uint8_t* end) const {
    std::uint64_t count = 0;
    at = readVarint(at, end, count);
    for (std::uint64_t i = 0; i < count && at != nullptr; ++i) {
        std::uint32_t length = 0;
        at = at == end ? nullptr : readLength(at + 1, end, length);
        at = at == nullptr ? nullptr : at + length;
    }
    return at != nullptr;
}

// --- moving ---

int InPlaceCursor::seekRoot() const {
    depth_ = kRootPlace;
    return 0;
}

int InPlaceCursor::seekUp() const {
    if (depth_ == kRootPlace) {
        return -1;
    }
    --depth_;
    return 0;
}

/// Opens the first child of this id one level down; 0 when there is none. The slot below is lost in any case.
InPlaceCursor::Place InPlaceCursor::find(int wanted) const {
    Slot& parent = slots_[depth_];
    if (!parent.view.hasChildren() || wanted <= 0 || depth_ > kMaxDepth) {
        return 0;
    }
    if ((parent.passed & bitOf(static_cast<Ref>(wanted))) != 0) {
        parent.resume = parent.view.children;
        parent.passed = 0;
    }
    const Place below = depth_ + 1;
    std::uint64_t passed = parent.passed;
    for (Place child = load(below, parent.resume); child != 0; child = next(child)) {
        const Ref found = id(child);
        passed |= bitOf(found);
        if (found == static_cast<Ref>(wanted)) {
            parent.resume = slots_[child].view.end;
            parent.passed = passed;
            return child;
        }
    }
    return 0;
}

int InPlaceCursor::seek(int id) const {
    const Place child = find(id);
    if (child == 0) {
        return -1;
    }
    depth_ = child;
    return 0;
}

int InPlaceCursor::seekPresence(int id) const { return find(id) != 0 ? 0 : -1; }

int InPlaceCursor::firstChild() const {
    Walk children = walk(depth_);
    const Place child = next(children);
    if (child == 0) {
        return -1;
    }
    depth_ = child;
    return 0;
}

int InPlaceCursor::nextSibling() const { return moveOn(0); }

int InPlaceCursor::nextSibling(int id) const { return id > 0 ? moveOn(id) : -1; }

/// To the next sibling of this id, or of any for 0; the present element stays open when there is none.
int InPlaceCursor::moveOn(int wanted) const {
    if (depth_ == kRootPlace) {
        return -1;
    }
    const Slot here = slots_[depth_];
    for (Place at = next(depth_); at != 0; at = next(at)) {
        if (wanted == 0 || id(at) == static_cast<Ref>(wanted)) {
            return 0;
        }
    }
    slots_[depth_] = here;
    return -1;
}

int InPlaceCursor::seekPath(std::string_view path) const {
    const Place back = depth_;
    const std::vector<Slot> saved(slots_.begin(), slots_.begin() + depth_ + 1);
    depth_ = kRootPlace;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        const int id = idOfName(path.substr(0, end));
        if (id == 0 || seek(id) != 0) {
            std::copy(saved.begin(), saved.end(), slots_.begin());
            depth_ = back;
            return -1;
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return 0;
}

// --- the current element ---

std::string_view InPlaceCursor::refName(std::uint64_t written, std::string_view (*lookUp)(int)) const {
    const std::uint64_t index = written >> 1;
    if ((written & 1) != 0) {
        return index < names_.size() ? names_[index].text : std::string_view();
    }
    return index < kDynamicRef ? lookUp(static_cast<int>(index)) : std::string_view();
}

int InPlaceCursor::curNamespaceID() const {
    const ElementView& view = slots_[depth_].view;
    if ((view.flags & kHasNamespace) == 0) {
        return 0;
    }
    if ((view.ns & 1) == 0) {
        return static_cast<int>(view.ns >> 1);
    }
    const int known = HBXDefaultMap::findNSName(refName(view.ns, &HBXDefaultMap::namespaceName));
    return known != 0 ? known : static_cast<int>(kDynamicRef + (view.ns >> 1));
}

std::string InPlaceCursor::curName() const {
    const Ref current = id(depth_);
    return current < kDynamicRef ? HBXDefaultMap::findElemID(static_cast<int>(current))
                                 : std::string(names_[current - kDynamicRef].text);
}

std::string InPlaceCursor::curType() const {
    const ElementView& view = slots_[depth_].view;
    if ((view.flags & kHasType) == 0) {
        return {};
    }
    return qualifiedName(refName(view.typeNs, &HBXDefaultMap::namespaceName),
                         refName(view.type, &HBXDefaultMap::typeName));
}

int InPlaceCursor::idOfName(std::string_view name) const {
    if (const int known = HBXDefaultMap::findElemName(name); known != 0) {
        return known;
    }
    for (const Name& own : names_) {
        if (own.text == name) {
            return static_cast<int>(own.element);
        }
    }
    return 0;
}

int InPlaceCursor::rawValue(int id, std::string_view& value, bool& xml) const {
    const Place at = id == 0 ? depth_ : find(id);
    if (at == 0) {
        return 1;
    }
    return text(at, value, xml) ? 0 : -1;
}

int InPlaceCursor::rawAttr(int id, std::string_view& value) const {
    const ElementView& view = slots_[depth_].view;
    if ((view.flags & kHasAttributes) == 0) {
        return 1;
    }
    // Nothing can fail here: the attributes were walked when the element was opened.
    std::uint64_t written = 0;
    const std::uint8_t* at = readVarint(view.attributes(), view.end, written);
    for (std::uint32_t i = 0; i < view.attributeCount; ++i) {
        std::uint32_t length = 0;
        at = readVarint(at, view.end, written);
        at = readLength(at, view.end, length);
        const std::uint64_t index = written >> 1;
        const Ref ref = (written & 1) == 0      ? static_cast<Ref>(index)
                        : index < names_.size() ? names_[index].element
                                                : 0;
        if (id > 0 && ref == static_cast<Ref>(id)) {
            value = {reinterpret_cast<const char*>(at), length};
            return 0;
        }
        at += length;
    }
    return 1;
}

std::size_t InPlaceCursor::count(Place at, Ref wanted) const {
    std::size_t count = 0;
    const Walk children = walk(at);
    ElementView child;
    for (const std::uint8_t* from = children.at; from != children.end && child.parse(from, children.end);
         from = child.end) {
        count += elementOf(child.id) == wanted ? 1 : 0;
    }
    return count;
}

int InPlaceCursor::readTable(void* record, const HBXRecordTable& table) const {
    return good_ ? TableReader(*this).read(depth_, record, table) : -1;
}

// --- by way of a tree ---

HBXMessage* InPlaceCursor::message() const {
    if (!message_) {
        message_ = adoptMessage(HBXMsgFactory::createNew());
        damaged_ = message_->init(bytes_.data(), static_cast<int>(bytes_.size())) != 0; // it then stays empty
    }
    return message_.get();
}

/// A cursor of the tree on the same element, or null when the bytes are damaged.
HBXMessageIterator* InPlaceCursor::treeCursor() const {
    std::unique_ptr<HBXMessageIterator> cursor(message()->newIterator());
    for (Place level = kRootPlace + 1; level <= depth_; ++level) {
        const std::uint8_t* target = slots_[level].view.end;
        ElementView sibling{};
        const std::uint8_t* at = slots_[level - 1].view.children;
        int result = cursor->firstChild();
        while (result == 0 && sibling.parse(at, slots_[level - 1].view.end) && sibling.end != target) {
            at = sibling.end;
            result = cursor->nextSibling();
        }
        if (result != 0) {
            return nullptr;
        }
    }
    return cursor.release();
}

int InPlaceCursor::serialize(char** out, int* length, int flags) const {
    HBXMessage* whole = message();
    return damaged_ ? -1 : whole->serialize(out, length, nullptr, flags);
}

int InPlaceCursor::serializeFromChild(char** out, int* length) const {
    const std::unique_ptr<HBXMessageIterator> cursor(treeCursor());
    return cursor ? cursor->serializeFromChild(out, length) : -1;
}

char* InPlaceCursor::toText() const {
    HBXMessage* whole = message();
    return damaged_ ? nullptr : whole->toText(nullptr, "");
}

char* InPlaceCursor::toTextFromChild() const {
    const std::unique_ptr<HBXMessageIterator> cursor(treeCursor());
    return cursor ? cursor->toTextFromChild() : nullptr;
}

HBXMessageIterator* InPlaceCursor::newIterator(bool same) const {
    auto* cursor = new InPlaceCursor(bytes_);
    if (same) {
        std::copy(slots_.begin(), slots_.begin() + depth_ + 1, cursor->slots_.begin());
        cursor->depth_ = depth_;
    }
    return cursor;
}

/// Value, attributes and children of an element as they are written: they lie side by side.
std::string_view InPlaceCursor::content(const ElementView& view) {
    const std::uint8_t* start = view.end;
    if (view.hasValue()) {
        start = view.value - varintSize(view.valueLength);
    } else if ((view.flags & kHasAttributes) != 0) {
        start = view.attributes();
    } else if (view.hasChildren()) {
        start = view.children - varintSize(static_cast<std::uint64_t>(view.end - view.children));
    }
    return {reinterpret_cast<const char*>(start), static_cast<std::size_t>(view.end - start)};
}

/// If it can be, without a tree of the whole message, in which each copy would have to look for its element
/// again. (A message lists the names that it uses and no others; which these are here, only a tree tells.)
HBXMessage* InPlaceCursor::copyMessage() const {
    if (depth_ == kRootPlace || !names_.empty()) {
        const std::unique_ptr<HBXMessageIterator> cursor(treeCursor());
        return cursor ? cursor->copyMessage() : nullptr;
    }
    const ElementView& view = slots_[depth_].view;
    const unsigned flags = view.flags & (kHasValue | kIsXml | kHasAttributes | kHasChildren);
    ByteBuffer bytes;
    putHeader(bytes, Wrapping::Message);
    bytes.append('\0'); // no names
    bytes.append('\0'); // no envelope fields
    if (hasShorterForm(flags)) {
        const Form form = flags == kHasValue ? kFormText : flags == kHasChildren ? kFormChildren : kFormEmpty;
        bytes.append(static_cast<char>(form << 1));
    } else {
        bytes.append(static_cast<char>(kFormFlags << 1));
        bytes.append(static_cast<char>(flags));
    }
    bytes.append(content(view));
    finishHeader(bytes);
    return HBXMsgFactory::createNew(bytes.data(), static_cast<int>(bytes.size()));
}

int InPlaceCursor::getOrigin(std::string& origin) const { return message()->getOrigin(origin); }

} // namespace HBX::internal
