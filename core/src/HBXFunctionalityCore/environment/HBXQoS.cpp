#include <HBXFunctionalityCore/environment/HBXQoS.h>

#include <cstdlib>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {
namespace {

constexpr HBXRow kQoS[] = {
    member<&HBXQoS::id>(1010),
    member<&HBXQoS::limit>(1067),
    member<&HBXQoS::barrier>(1066),
};

/// Takes a number from the front of the text; too large ones become the largest.
bool takeNumber(const char*& text, std::int64_t& number) {
    char* end = nullptr;
    const long long parsed = std::strtoll(text, &end, 10);
    if (end == text) {
        return false;
    }
    number = parsed;
    text = end;
    return true;
}

} // namespace

constinit const HBXRecordTable HBXQoS::table = recordTable<HBXQoS>("HBXQoS", 0, 0, kQoS);

int HBXQoS::fromString(const std::string& text) {
    const char* at = text.c_str();
    std::int64_t first = 0;
    if (!takeNumber(at, first)) {
        return -1;
    }
    barrier = first;
    limit = first;
    if (*at == ':') {
        takeNumber(++at, limit);
    }
    return 0;
}

int HBXQoS::compare(const HBXQoS& other) const {
    if (const int order = id.compare(other.id); order != 0) {
        return order;
    }
    if (limit != other.limit) {
        return limit < other.limit ? -1 : 1;
    }
    if (!barrier.isSet() || !other.barrier.isSet() || barrier.get() == other.barrier.get()) {
        return 0;
    }
    return barrier.get() < other.barrier.get() ? -1 : 1;
}

} // namespace HBX
