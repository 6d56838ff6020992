#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/vocabulary/HBXVocIterator.h>
#include <HBXMessage/HBXOptionalProperty.h>
#include <HBXMessage/HBXRecord.h>

#include "MessageFile.h"

namespace HBX::tool {

/// A category or parameter of a vocabulary.
struct VocItem {
    std::string id;
    HBXOptionalProperty<std::string> value;
    std::vector<std::string> tags;
    HBXOptionalProperty<std::string> vocabulary; ///< name, when there may be several

    static const HBXRecordTable table;
    using Reader = HBXTableReader<VocItem>;
    using Writer = HBXTableWriter<VocItem>;
};

using VocTags = std::set<std::string>;
using VocCursor = std::unique_ptr<HBXVocIterator>;

/// A cursor over the vocabulary in a message, or over all vocabularies of a map, restricted to items with
/// these tags; null when there is none in it.
VocCursor openVocabulary(const MessagePointer& message, const VocTags& tags);

/// Over the vocabulary of this installation; null, with the thread's error message, when there is none.
VocCursor openLocalVocabulary(const VocTags& tags);

/// All that the cursor meets.
std::vector<VocItem> categoriesOf(HBXVocIterator& it);
std::vector<VocItem> featuresOf(HBXVocIterator& it);

/// The item under the cursor.
VocItem itemAt(const HBXVocIterator& it);

} // namespace HBX::tool
