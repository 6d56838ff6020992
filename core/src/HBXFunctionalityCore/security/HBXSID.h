#pragma once

#include <compare>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// A security identifier: names a user, group, role or another principal. It is empty or holds one identifier
/// in binary form (layout: docs/security.md). Equal are equal bytes; the order is that of the texts.
class HBX_EXPORT HBXSID {
public:
    /// Identifiers with a fixed meaning. Every other number stands for "S-1-1000-0".
    enum WellKnownSIDs : unsigned {
        EVERYONE = 0,
        AUTHENTICATED = 1,
        LOCAL_ADMINISTRATORS = 2, ///< group 0 of the local environment
        ANONYMOUS = 3,
        LOCAL_ENVIRONMENT = 4, ///< the local environment itself
        ANY_ENVIRONMENT = 5,   ///< see isWellKnownSID
        AGENT = 6,
        MASTER_ENVIRONMENT = 7, ///< the master of the server group; without one the local environment
        NOBODY = 8,
        CREATOR = 9,
        SELF = 10,
    };
    static constexpr unsigned kWellKnownCount = 11;

    HBXSID() = default;
    /// As fromString; a text that is no identifier gives the anonymous one, never an empty one.
    explicit HBXSID(std::string_view text);

    /// Takes a copy of an identifier in binary form.
    /// @param data    null: the identifier becomes empty.
    /// @param length  in bytes; 0: as many as its own header says.
    /// @return 0; -1 and unchanged when it is no identifier or `length` is not its own.
    int fromBinary(const void* data, std::size_t length);
    /// "S-1-5-7". 0; -1 and unchanged when the text is no identifier.
    int fromString(std::string_view text);
    /// "" when empty.
    [[nodiscard]] std::string toString() const;
    /// The binary form, as it travels; empty when the identifier is.
    [[nodiscard]] const std::vector<std::uint8_t>& toBinary() const { return bytes_; }
    /// Whether it is no identifier at all.
    [[nodiscard]] bool isEmpty() const { return bytes_.empty(); }

    /// Those of the local and the master environment follow the configuration; they are empty while the local
    /// environment has no identifier.
    static HBXSID createWellKnownSID(WellKnownSIDs kind);
    /// Whether it equals createWellKnownSID(kind); an ANY_ENVIRONMENT is each environment itself instead.
    [[nodiscard]] bool isWellKnownSID(WellKnownSIDs kind) const;

    /// A random valid one, for tests.
    static HBXSID sample(std::uint64_t random);

    friend bool operator==(const HBXSID& a, const HBXSID& b) { return a.bytes_ == b.bytes_; }
    friend std::strong_ordering operator<=>(const HBXSID& a, const HBXSID& b) {
        return a.toString() <=> b.toString();
    }

    static const HBXRecordTable table;

    /// The binary form is the element's base64 value. -1 when it is no identifier.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXSID& sid) const;
    };
    /// -1 when empty: nothing is written.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXSID> {
        int operator()(HBXMessageIterator& it, const HBXSID& sid) const;
    };

private:
    friend struct HBXSIDRows;

    std::vector<std::uint8_t> bytes_; ///< always valid, or none
};

/// Whether any of them is a well-known one of this kind.
HBX_EXPORT bool containsWellKnownSID(const std::set<HBXSID>& sids, HBXSID::WellKnownSIDs kind);

} // namespace HBX
