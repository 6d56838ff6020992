#include <HBXMessage/HBXDerivedParsers.h>

#include <HBXCommon/HBXAbort.h>
#include <HBXMessage/internal/Tree.h>

namespace HBX {

std::string qualifiedTypeName(const char* nsName, const char* typeName) {
    return internal::qualifiedName(nsName, typeName);
}

std::string qualifiedTypeName(const HBXRecordTable& table) {
    return qualifiedTypeName(HBXDefaultMap::findNSID(table.nsid), HBXDefaultMap::findTypeID(table.typeId));
}

void abortFamily(int line) {
    constexpr const char* kFunction = "HBX::HBXDerivedParserFactoryT::addFactory";
    abort("HBXFunctionalityCore", "core/src/HBXMessage/HBXDerivedParsers", line, kFunction, kFunction);
}

} // namespace HBX
