#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

#include "support/MessageTestUtil.h"

/// Vocabularies in short words, and where an iterator stands as one word.
namespace HBX::test {

using VocCursor = std::unique_ptr<HBXVocIterator>;
using Tags = std::set<std::string>;

/// "c:" a category, "p:" a parameter; then its tags, then a value: "p:net,ipv4,common=10".
inline std::string vocItem(const std::string& words) {
    const std::size_t equals = words.find('=');
    std::string rest = words.substr(2, equals == std::string::npos ? equals : equals - 2) + ',';
    std::string text;
    for (std::size_t comma = rest.find(','); comma != std::string::npos; comma = rest.find(',')) {
        const char* element = text.empty() ? "id" : "category";
        text += std::string("<") + element + '>' + rest.substr(0, comma) + "</" + element + '>';
        rest.erase(0, comma + 1);
    }
    if (equals != std::string::npos) {
        text += "<data>" + words.substr(equals + 1) + "</data>";
    }
    const char* element = words[0] == 'c' ? "category" : "parameter";
    return std::string("<") + element + '>' + text + "</" + element + '>';
}

using VocWords = std::vector<std::string>;

inline std::string vocText(const VocWords& items) {
    std::string text = "<data><agent>";
    for (const std::string& item : items) {
        text += vocItem(item);
    }
    return text + "</agent></data>";
}

inline Message messageOf(const std::string& content) {
    Message message = newMessage();
    const std::string text = R"(<message xmlns:hbx="urn:hbx:message" hbx:v="1">)" + content + "</message>";
    EXPECT_EQ(message->fromText(text.c_str(), nullptr), 0) << text;
    return message;
}

inline boost::intrusive_ptr<HBXVocPrototype> vocOf(const VocWords& items) {
    return new HBXVocPrototype(messageOf(vocText(items)).detach());
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

/// A folder that goes away.
class ScratchFolder {
public:
    ScratchFolder() {
        std::string pattern = testing::TempDir() + "hbx-voc-XXXXXX";
        folder_ = mkdtemp(pattern.data());
    }
    ~ScratchFolder() { std::filesystem::remove_all(folder_); }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string path(const std::string& name = "") const { return name.empty() ? folder_ : folder_ / name; }
    std::string write(const std::string& name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return path(name);
    }

private:
    std::filesystem::path folder_;
};

} // namespace HBX::test
