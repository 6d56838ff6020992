#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace HBX::internal {

/// The fields that travel beside the tree; the numbers are those of the binary form.
enum class EnvelopeField : std::uint8_t {
    Origin = 1,
    Target,
    Id,
    Log,
    Priority,
    Progress,
    Session,
    SessionId,
    Time,
    Timeout,
    TimeoutLimit,
    Type,
    Uid,
    Version,
};

enum class EnvelopeKind : std::uint8_t { Text, Int, Int64, Texts };

struct EnvelopeRow {
    EnvelopeField field;
    const char* name; ///< attribute of the text form
    EnvelopeKind kind;
};

/// Ascending by field.
inline constexpr EnvelopeRow kEnvelopeRows[] = {
    {EnvelopeField::Origin, "origin", EnvelopeKind::Text},
    {EnvelopeField::Target, "target", EnvelopeKind::Texts},
    {EnvelopeField::Id, "id", EnvelopeKind::Text},
    {EnvelopeField::Log, "log", EnvelopeKind::Int},
    {EnvelopeField::Priority, "priority", EnvelopeKind::Int},
    {EnvelopeField::Progress, "progress", EnvelopeKind::Int},
    {EnvelopeField::Session, "session", EnvelopeKind::Text},
    {EnvelopeField::SessionId, "session_id", EnvelopeKind::Text},
    {EnvelopeField::Time, "time", EnvelopeKind::Int64},
    {EnvelopeField::Timeout, "timeout", EnvelopeKind::Int},
    {EnvelopeField::TimeoutLimit, "timeout_limit", EnvelopeKind::Int},
    {EnvelopeField::Type, "type", EnvelopeKind::Int},
    {EnvelopeField::Uid, "uid", EnvelopeKind::Text},
    {EnvelopeField::Version, "version", EnvelopeKind::Int},
};

/// What is set of the fields; numbers as their canonical decimal text.
struct Envelope {
    std::array<std::optional<std::string>, std::size(kEnvelopeRows) + 1> fields;
    std::vector<std::string> targets;

    std::optional<std::string>& operator[](EnvelopeField field) {
        return fields[static_cast<std::size_t>(field)];
    }
    const std::optional<std::string>& operator[](EnvelopeField field) const {
        return fields[static_cast<std::size_t>(field)];
    }
    [[nodiscard]] bool empty() const {
        for (const auto& field : fields) {
            if (field) {
                return false;
            }
        }
        return targets.empty();
    }
    friend bool operator==(const Envelope&, const Envelope&) = default;
};

/// Stores a field as it came in; false when a number is not in canonical decimal form or out of range.
/// A target is added to those before it, any other field replaces.
bool acceptField(Envelope& envelope, const EnvelopeRow& row, std::string_view text);

} // namespace HBX::internal
