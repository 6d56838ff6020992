#include <HBXCore/internal/BootId.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <string>

namespace HBX::internal {

namespace {

using BootId = std::array<std::uint8_t, 16>;

/// Changes with every start of the system.
BootId readBootId() {
    BootId id{};
    std::ifstream file("/proc/sys/kernel/random/boot_id");
    std::string text;
    std::getline(file, text);
    text.erase(std::remove(text.begin(), text.end(), '-'), text.end());
    std::memcpy(id.data(), text.data(), std::min(text.size(), id.size()));
    return id;
}

} // namespace

void setThisBoot(SidecarHead& head) { std::memcpy(head.bootId, readBootId().data(), sizeof head.bootId); }

bool isThisBoot(const SidecarHead& head) {
    return std::memcmp(head.bootId, readBootId().data(), sizeof head.bootId) == 0;
}

} // namespace HBX::internal
