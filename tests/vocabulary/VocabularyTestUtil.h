#pragma once

#include <memory>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

#include "support/TextMessage.h"

/// Vocabularies in short words, and where an iterator stands as one word.
namespace HBX::test {

using VocCursor = std::unique_ptr<HBXVocIterator>;
using Tags = std::set<std::string>;

/// "c:" a category, "p:" a parameter; then its tags, then a value: "p:net,ipv4,common=10".
inline std::string vocItem(const std::string& words) {
    std::string text = std::regex_replace(words.substr(2), std::regex("=(.*)"), "<data>$1</data>");
    text = std::regex_replace(text, std::regex(",([^,<]*)"), "<category>$1</category>");
    text = std::regex_replace(text, std::regex("^[^<]*"), "<id>$&</id>");
    const std::string element = words[0] == 'c' ? "category>" : "parameter>";
    return '<' + element + text + "</" + element;
}

using VocWords = std::vector<std::string>;

inline std::string vocText(const VocWords& items) {
    std::string text = "<data><agent>";
    for (const std::string& item : items) {
        text += vocItem(item);
    }
    return text + "</agent></data>";
}

inline boost::intrusive_ptr<HBXVocPrototype> vocOf(const VocWords& items) {
    return new HBXVocPrototype(textMessage(vocText(items)).detach());
}

inline std::string vocEntry(const std::string& head, const VocWords& items) {
    return "<vocabulary>" + head + vocText(items) + "</vocabulary>";
}

/// "null", the item's identifier, or the name of the element ("root" for that of the message).
inline std::string placeOf(const HBXMessageIterator* it) {
    std::string id;
    if (it == nullptr || it->getValue(id, 1010) == 0) {
        return it == nullptr ? "null" : id;
    }
    return it->curID() == 0 ? "root" : it->curName();
}

/// Result and place of a call on the cursor: "0 net", "-1 agent".
template <class Call>
std::string after(HBXVocIterator& it, const Call& call) {
    const int result = call(it);
    return std::to_string(result) + ' ' + placeOf(&it);
}

inline std::string walkParameters(HBXVocIterator& it, const Tags& tags) {
    std::string met;
    for (int found = it.firstParameter(tags); found == 0; found = it.nextParameter(tags)) {
        met += placeOf(&it) + ' ';
    }
    return met;
}

} // namespace HBX::test
