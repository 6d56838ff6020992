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

/// Other bits of the hash than those that choose a slot.
constexpr std::uint16_t tagOf(std::uint64_t hash) { return static_cast<std::uint16_t>(hash >> 48); }

/// Both directions of one table: a dense array by id and an open-addressing hash by name, filled at compile
/// time.
template <std::size_t MaxId, std::size_t Slots>
struct NameIndex {
    struct Slot {
        std::uint16_t tag;   ///< of the name's hash: most other names are told apart without a look at them
        std::uint16_t index; ///< of the row + 1, 0 = free
    };

    static_assert((Slots & (Slots - 1)) == 0);

    template <std::size_t N>
    constexpr explicit NameIndex(const IdName (&rows)[N]) : table(rows) {
        static_assert(N * 2 <= Slots, "a fuller hash table makes unknown names slow");
        for (std::size_t i = 0; i < N; ++i) {
            byId[static_cast<std::size_t>(rows[i].id)] = static_cast<std::uint16_t>(i + 1);
            const std::uint64_t hash = hashName(rows[i].name);
            std::size_t slot = hash & (Slots - 1);
            while (byName[slot].index != 0) {
                slot = (slot + 1) & (Slots - 1);
            }
            byName[slot] = {tagOf(hash), static_cast<std::uint16_t>(i + 1)};
        }
    }

    std::string_view name(int id) const {
        const auto index = static_cast<std::size_t>(id);
        return id > 0 && index <= MaxId && byId[index] != 0 ? table[byId[index] - 1].name : "";
    }

    int id(std::string_view name) const {
        const std::uint64_t hash = hashName(name);
        for (std::size_t slot = hash & (Slots - 1); byName[slot].index != 0;
             slot = (slot + 1) & (Slots - 1)) {
            if (byName[slot].tag == tagOf(hash) && table[byName[slot].index - 1].name == name) {
                return table[byName[slot].index - 1].id;
            }
        }
        return 0;
    }

    const IdName* table;
    std::array<std::uint16_t, MaxId + 1> byId{};
    std::array<Slot, Slots> byName{};
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
