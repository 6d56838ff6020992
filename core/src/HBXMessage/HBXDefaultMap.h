#pragma once

#include <string_view>

#include <HBXCommon/HBXExport.h>

namespace HBX {

/// The fixed table between the ids of elements, namespaces and complex types and their names. It is constant
/// data, so it may be asked while static objects are being built, and from any thread.
class HBX_EXPORT HBXDefaultMap {
public:
    /// The name of an id, or "" when the id has none. The text lives as long as the program.
    static const char* findElemID(int id);
    static const char* findNSID(int id);
    static const char* findTypeID(int id);

    /// The same with the length known.
    static std::string_view elementName(int id);
    static std::string_view namespaceName(int id);
    static std::string_view typeName(int id);

    /// The id of a name, or 0 when the name is not in the table.
    static int findElemName(std::string_view name);
    static int findNSName(std::string_view name);
    static int findTypeName(std::string_view name);
};

} // namespace HBX
