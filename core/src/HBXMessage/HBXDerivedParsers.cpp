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

HBXFamilyEntry::~HBXFamilyEntry() = default;

void HBXFamilyRegistry::add(HBXFamilyEntry& entry, const std::string& typeName, const char* className,
                            bool isDefault) {
    if (!byType_.emplace(typeName, &entry).second) {
        abortFamily(269);
    }
    if (!byClass_.emplace(className, &entry).second) {
        abortFamily(271);
    }
    if (isDefault) {
        if (fallback_ != nullptr) {
            abortFamily(274);
        }
        fallback_ = &entry;
    }
}

HBXFamilyEntry* HBXFamilyRegistry::find(const Entries& entries, std::string_view name) {
    const auto found = entries.find(name);
    return found == entries.end() ? nullptr : found->second;
}

} // namespace HBX
