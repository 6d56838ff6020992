#include <HBXMessage/HBXAnyRecord.h>

#include <HBXMessage/HBXEncoding.h>

namespace HBX {

int HBXAnyRecord::put(HBXMessageIterator& it) const {
    if (table_->nsid != 0) {
        it.saveNamespace(table_->nsid);
    }
    if (table_->typeId > 100) {
        it.setComplexType(table_->nsid, table_->typeId);
    }
    const int result = it.writeTable(get(), *table_);
    if (table_->nsid != 0) {
        it.saveNamespace(0);
    }
    return result;
}

int HBXAnyRecord::get(const HBXMessageIterator& it) { return it.readTable(get(), *table_); }

int HBXAnyRecord::encode(std::string& bytes) const {
    return encodeMessage({[](HBXMessageIterator& it, const void* record) {
                              return static_cast<const HBXAnyRecord*>(record)->put(it);
                          },
                          this},
                         bytes);
}

int HBXAnyRecord::decode(std::string_view bytes) {
    return decodeMessage(bytes, {[](const HBXMessageIterator& it, void* record) {
                                     return static_cast<HBXAnyRecord*>(record)->get(it);
                                 },
                                 this});
}

} // namespace HBX
