#include <HBXFunctionalityCore/vocabulary/HBXVocLocalPrototype.h>

#include <HBXCommon/HBXInstanceFolders.h>

namespace HBX {

HBXVocIterator* HBXVocLocalPrototype::newIteratorWithInit() {
    if (HBXVocIterator* it = newIterator()) {
        return it;
    }
    const HBXLockGuard guard(loading_);
    if (HBXVocIterator* it = newIterator()) { // loaded while this thread waited
        return it;
    }
    return readFromFile(HBXInstanceFolders::etc() + "/hbagent.voc.windows") == 0 ? newIterator() : nullptr;
}

} // namespace HBX
