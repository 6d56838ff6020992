#pragma once

#include <string>

#include <HBXFunctionalityCore/vocabulary/HBXVocName.h>

namespace HBX {

/// Which vocabulary, and which version of it. Ordered by name, then version, byte by byte.
struct HBX_EXPORT HBXVocID {
    HBXVocID() = default;
    /// Null is the empty name; a name of more than 255 characters ends the program.
    HBXVocID(const char* vocName, const std::string& vocVersion) : name(vocName), version(vocVersion) {}

    HBXVocName name;
    std::string version;

    static const HBXRecordTable table;

    /// -1 without a name, or with one that is too long. A version that does not stand beside the name is that
    /// of the vocabulary below the element (its parameter "vocversion"); with neither it is empty.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXVocID& value) const;
    };
    /// Writes both.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXVocID> {
        int operator()(HBXMessageIterator& it, const HBXVocID& value) const;
    };
};

} // namespace HBX
