#include <HBXFunctionalityCore/security/HBXSID.h>

#include <algorithm>
#include <array>
#include <random>

#include <HBXFunctionalityCore/security/HBXIdentityProvider.h>
#include <HBXFunctionalityCore/security/HBXLocalSID.h>
#include <HBXFunctionalityCore/security/internal/SIDForm.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

/// Reaches the bytes, which compare, show and make samples as the identifier's text.
struct HBXSIDRows {
    using Bytes = std::vector<std::uint8_t>;

    static const Bytes& bytesAt(const void* value) { return *static_cast<const Bytes*>(value); }

    static constexpr HBXValueType kText{
        .kind = HBXKind::Text,
        .print = [](const void* value, std::string& text) { text = internal::sidText(bytesAt(value)); },
        .compare = [](const void* a, const void* b) -> std::strong_ordering {
            return internal::sidText(bytesAt(a)) <=> internal::sidText(bytesAt(b));
        },
        .sample = [](void* value,
                     std::uint64_t random) { *static_cast<Bytes*>(value) = HBXSID::sample(random).bytes_; }};

    static constexpr HBXRow rows[] = {{.where = &internal::probe<HBXSID>.object.bytes_,
                                       .flag = nullptr,
                                       .type = &kText,
                                       .list = nullptr,
                                       .id = 0,
                                       .itemId = 0,
                                       .presence = HBXPresence::ValueOnly,
                                       .kind = HBXKind::Text,
                                       .key = -1,
                                       .plain = false,
                                       .flagged = false,
                                       .head = {},
                                       .name = "bytes"}};
};

constinit const HBXRecordTable HBXSID::table = recordTable<HBXSID>("HBXSID", 0, 0, HBXSIDRows::rows);

namespace {

constexpr const char* kAnonymous = "S-1-5-7";

/// By kind; null: made from an environment's identifier.
constexpr const char* kWellKnown[] = {"S-1-1000-1", "S-1-1000-2",    nullptr,        kAnonymous,
                                      nullptr,      "S-1-1000-0",    "S-1-1000-4",   nullptr,
                                      "S-1-0-0",    "S-1-1000-1001", "S-1-1000-1002"};
static_assert(std::size(kWellKnown) == HBXSID::kWellKnownCount);

const HBXSID& fixedSID(HBXSID::WellKnownSIDs kind) {
    static const auto& sids = *new std::array<HBXSID, HBXSID::kWellKnownCount>([] {
        std::array<HBXSID, HBXSID::kWellKnownCount> made;
        for (std::size_t i = 0; i < made.size(); ++i) {
            if (kWellKnown[i] != nullptr) {
                made[i].fromString(kWellKnown[i]);
            }
        }
        return made;
    }());
    return sids[kind < sids.size() ? kind : HBXSID::ANY_ENVIRONMENT];
}

} // namespace

HBXSID::HBXSID(std::string_view text) {
    if (fromString(text) != 0) {
        *this = fixedSID(ANONYMOUS);
    }
}

int HBXSID::fromBinary(const void* data, std::size_t length) {
    if (data == nullptr) {
        bytes_.clear();
        return 0;
    }
    if (length != 0 && length < internal::kSIDHeader) {
        return -1;
    }
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    if (bytes[0] != internal::kSIDRevision || bytes[1] > internal::kMaxSubAuthorities) {
        return -1;
    }
    const std::size_t size = internal::sidSize(bytes[1]);
    if (length != 0 && length != size) {
        return -1;
    }
    bytes_ = std::vector<std::uint8_t>(bytes, bytes + size); // not assign: they may be our own
    return 0;
}

int HBXSID::fromString(std::string_view text) {
    internal::SIDBuffer parsed;
    return internal::parseSIDText(text, parsed) ? fromBinary(parsed.bytes.data(), parsed.size) : -1;
}

std::string HBXSID::toString() const { return internal::sidText(bytes_); }

HBXSID HBXSID::createWellKnownSID(WellKnownSIDs kind) {
    switch (kind) {
    case LOCAL_ADMINISTRATORS:
        return HBXLocalSID(0, HBXLocalSID::GROUP).getSID();
    case LOCAL_ENVIRONMENT:
        return HBXLocalSID(0, HBXLocalSID::ENVIRONMENT).getSID();
    case MASTER_ENVIRONMENT: {
        const HBXEID master = masterEnvironment();
        return master.isValid() ? HBXLocalSID(0, HBXLocalSID::ENVIRONMENT, master).getSID()
                                : createWellKnownSID(LOCAL_ENVIRONMENT);
    }
    default:
        return fixedSID(kind);
    }
}

bool HBXSID::isWellKnownSID(WellKnownSIDs kind) const {
    return *this == (kind == ANY_ENVIRONMENT
                         ? HBXLocalSID(0, HBXLocalSID::ENVIRONMENT, HBXLocalSID(*this).getEID()).getSID()
                         : createWellKnownSID(kind));
}

HBXSID HBXSID::sample(std::uint64_t random) {
    internal::SIDBuffer made;
    made.begin(random >> (16 + random % 48));
    std::mt19937 numbers(static_cast<std::mt19937::result_type>(random));
    for (auto count = random % (internal::kMaxSubAuthorities + 1); count != 0; --count) {
        made.add(static_cast<std::uint32_t>(numbers()));
    }
    HBXSID sid;
    sid.fromBinary(made.bytes.data(), made.size);
    return sid;
}

int HBXSID::Reader::operator()(const HBXMessageIterator& it, HBXSID& sid) const {
    std::string payload;
    const int result = it.getValueBase64(payload, 0);
    if (result == 0 && (payload.empty() || sid.fromBinary(payload.data(), payload.size()) != 0)) {
        return -1;
    }
    return result;
}

int HBXSID::Writer::operator()(HBXMessageIterator& it, const HBXSID& sid) const {
    if (sid.isEmpty()) {
        return -1;
    }
    return it.putValueBase64(reinterpret_cast<const char*>(sid.bytes_.data()),
                             static_cast<int>(sid.bytes_.size()), 0);
}

bool containsWellKnownSID(const std::set<HBXSID>& sids, HBXSID::WellKnownSIDs kind) {
    return std::any_of(sids.begin(), sids.end(),
                       [kind](const HBXSID& sid) { return sid.isWellKnownSID(kind); });
}

} // namespace HBX
