#pragma once

#include <HBXFunctionalityCore/vocabulary/HBXVocPrototype.h>

namespace HBX {

/// The vocabulary in the file "hbagent.voc.windows" of the configuration folder, loaded on first use.
class HBX_EXPORT HBXVocLocalPrototype : public HBXVocPrototype {
protected:
    HBXVocIterator* newIteratorWithInit() override;

private:
    HBXLock loading_; ///< taken before the base's lock: several threads in need of the file load it once
};

} // namespace HBX
