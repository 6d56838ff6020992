#pragma once

#include <string_view>

#include <HBXMessage/HBXBinary.h>

/// The elements of a vocabulary message and the one search over them.
namespace HBX::internal {

inline constexpr int kVocId = 1010;         // of a category or parameter
inline constexpr int kVocParameter = 1017;  // below the vocabulary root
inline constexpr int kVocRoot = 1044;       // below kVocData
inline constexpr int kVocVersion = 1223;    // beside the name of a vocabulary in a map
inline constexpr int kVocCategory = 1264;   // below the vocabulary root; below an item a tag
inline constexpr int kVocData = 1307;       // top of a vocabulary; below a parameter its value
inline constexpr int kVocVocabulary = 1871; // each vocabulary of a map

/// The parameter whose value is the version of the vocabulary.
inline constexpr const char* kVocVersionParameter = "vocversion";

/// There is one kind of message object.
inline HBXBinary& binaryOf(HBXMessage& message) { return static_cast<HBXBinary&>(message); }

/// From the vocabulary root down to the first item of a kind with this identifier; stays on the root when
/// there is none (-1).
inline int seekVocItem(const HBXMessageIterator& it, int kind, std::string_view id) {
    if (it.firstChild(kind) != 0) {
        return -1;
    }
    do {
        std::string_view text;
        bool xml = false;
        if (it.rawValue(kVocId, text, xml) == 0 && text == id) {
            return 0;
        }
    } while (it.nextSibling(kind) == 0);
    it.seekUp();
    return -1;
}

} // namespace HBX::internal
