#include <HBXMessage/HBXDefaultMap.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include <HBXMessage/internal/NameHash.h>
#include <HBXMessage/internal/NameTables.h>

namespace HBX {
namespace {

using internal::IdName;

/// All names are known, so nobody can choose them.
constexpr std::uint64_t hashName(std::string_view name) { return internal::hashName(name, 0); }

/// Both directions of one table: a dense array by id and an open-addressing hash by name, filled at compile
/// time.
template <std::size_t MaxId, std::size_t Slots>
struct NameIndex {
    static_assert((Slots & (Slots - 1)) == 0);

    template <std::size_t N>
    constexpr explicit NameIndex(const IdName (&rows)[N]) : table(rows) {
        static_assert(N * 2 <= Slots, "a fuller hash table makes unknown names slow");
        for (std::size_t i = 0; i < N; ++i) {
            byId[static_cast<std::size_t>(rows[i].id)] = static_cast<std::uint16_t>(i + 1);
            std::size_t slot = hashName(rows[i].name) & (Slots - 1);
            while (byName[slot] != 0) {
                slot = (slot + 1) & (Slots - 1);
            }
            byName[slot] = static_cast<std::uint16_t>(i + 1);
        }
    }

    std::string_view name(int id) const {
        const auto index = static_cast<std::size_t>(id);
        return id > 0 && index <= MaxId && byId[index] != 0 ? table[byId[index] - 1].name : "";
    }

    int id(std::string_view name) const {
        for (std::size_t slot = hashName(name) & (Slots - 1); byName[slot] != 0;
             slot = (slot + 1) & (Slots - 1)) {
            const IdName& row = table[byName[slot] - 1];
            if (name == row.name) {
                return row.id;
            }
        }
        return 0;
    }

    const IdName* table;
    std::array<std::uint16_t, MaxId + 1> byId{};
    std::array<std::uint16_t, Slots> byName{};
};

constexpr NameIndex<4095, 2048> kElements(internal::kElementNames);
constexpr NameIndex<511, 64> kNamespaces(internal::kNamespaceNames);
constexpr NameIndex<5375, 512> kTypes(internal::kTypeNames);

} // namespace

std::string_view HBXDefaultMap::elementName(int id) { return kElements.name(id); }
std::string_view HBXDefaultMap::namespaceName(int id) { return kNamespaces.name(id); }
std::string_view HBXDefaultMap::typeName(int id) { return kTypes.name(id); }
const char* HBXDefaultMap::findElemID(int id) { return elementName(id).data(); }
const char* HBXDefaultMap::findNSID(int id) { return namespaceName(id).data(); }
const char* HBXDefaultMap::findTypeID(int id) { return typeName(id).data(); }
int HBXDefaultMap::findElemName(std::string_view name) { return kElements.id(name); }
int HBXDefaultMap::findNSName(std::string_view name) { return kNamespaces.id(name); }
int HBXDefaultMap::findTypeName(std::string_view name) { return kTypes.id(name); }

} // namespace HBX
