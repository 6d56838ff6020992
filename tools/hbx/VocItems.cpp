#include "VocItems.h"

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/vocabulary/HBXVocMapIterator.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX::tool {

namespace {

constexpr int kId = 1010;
constexpr int kValue = 1018;
constexpr int kTag = 1264;
constexpr int kItemValue = 1307;
constexpr int kVocabulary = 1871;

constexpr HBXRow kVocItem[] = {
    member<&VocItem::id>(kId),
    member<&VocItem::value>(kValue),
    list<&VocItem::tags>(3463, 3464),
    member<&VocItem::vocabulary>(kVocabulary),
};

std::vector<std::string> tagsOf(const HBXMessageIterator& item) {
    std::vector<std::string> tags;
    if (item.firstChild(kTag) != 0) {
        return tags;
    }
    do {
        item.getValue(tags.emplace_back(), 0);
    } while (item.nextSibling(kTag) == 0);
    item.seekUp();
    return tags;
}

std::vector<VocItem> walk(HBXVocIterator& it, int (HBXVocIterator::*first)(), int (HBXVocIterator::*next)()) {
    std::vector<VocItem> items;
    for (int found = (it.*first)(); found == 0; found = (it.*next)()) {
        items.push_back(itemAt(it));
    }
    return items;
}

} // namespace

constinit const HBXRecordTable VocItem::table = recordTable<VocItem>("VocItem", 0, 0, kVocItem);

VocCursor openVocabulary(const MessagePointer& message, const VocTags& tags) {
    if (cursorOn(message)->seekPresence(kVocabulary) == 0) {
        return VocCursor(HBXVocMap(message->copy(false), {}).readCategory(tags));
    }
    return VocCursor(HBXVocPrototype(message->copy(false)).readCategory(tags));
}

VocCursor openLocalVocabulary(const VocTags& tags) {
    setErrorMessage("the agent's vocabulary holds nothing");
    return VocCursor(HBXVocPrototype::getVoc()->readCategory(tags));
}

VocItem itemAt(const HBXVocIterator& it) {
    VocItem item;
    it.getID(item.id);
    std::string value;
    if (it.getValue(value, kItemValue) == 0) {
        item.value = value;
    }
    item.tags = tagsOf(it);
    if (const auto* ofMap = dynamic_cast<const HBXVocMapIterator*>(&it)) {
        item.vocabulary = ofMap->getVocID().name.toString();
    }
    return item;
}

std::vector<VocItem> categoriesOf(HBXVocIterator& it) {
    return walk(it, &HBXVocIterator::firstCategory, &HBXVocIterator::nextCategory);
}

std::vector<VocItem> featuresOf(HBXVocIterator& it) {
    return walk(it, &HBXVocIterator::firstParameter, &HBXVocIterator::nextParameter);
}

} // namespace HBX::tool
