#include <HBXFunctionalityCore/vocabulary/HBXVocContent.h>

#include <memory>

#include <HBXFunctionalityCore/vocabulary/internal/VocElements.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

constinit const HBXRecordTable HBXVocContent::table = recordTable<HBXVocContent>("HBXVocContent", 0, 0);

HBXVocContent HBXVocContent::sample(std::uint64_t random) {
    auto message = adoptMessage(HBXMsgFactory::createNew());
    const std::unique_ptr<HBXMessageIterator> it(message->newIterator());
    it->newChild(internal::kVocData);
    it->newChild(internal::kVocRoot);
    for (std::uint64_t left = random % 5; left != 0; --left) {
        it->newChild(random >> left & 1 ? internal::kVocParameter : internal::kVocCategory);
        it->putValueLongLong(static_cast<std::int64_t>(random >> left), internal::kVocId);
        it->putValue("sample", internal::kVocCategory);
        it->seekUp();
    }
    return HBXVocContent(std::move(message));
}

} // namespace HBX
