#include <HBXFunctionalityCore/identity/HBXGUID.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

constinit const HBXRecordTable HBXGUID::table = recordTable<HBXGUID>("HBXGUID", 0, 0);

HBXGUID HBXGUID::sample(std::uint64_t random) {
    return {static_cast<std::int64_t>(random), static_cast<std::int64_t>(random * 0x9E3779B97F4A7C15U)};
}

} // namespace HBX
