#pragma once

#include <cstdint>
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

inline const EnvelopeRow& envelopeRow(EnvelopeField field) {
    return kEnvelopeRows[static_cast<std::size_t>(field) - 1];
}

/// What is set of the fields, ascending; only targets repeat. Numbers are kept as their canonical decimal
/// text.
struct Envelope {
    struct Field {
        EnvelopeField field;
        std::string text;
    };

    /// The text of a field, null when it is not set.
    [[nodiscard]] const std::string* find(EnvelopeField field) const;
    /// Replaces.
    void set(EnvelopeField field, std::string text);
    /// Adds behind those of the same field.
    void add(EnvelopeField field, std::string text);
    void remove(EnvelopeField field);

    std::vector<Field> fields;
};

/// Stores a field as it came in; false when a number is not in canonical decimal form or out of range.
/// A target is added to those before it, any other field replaces.
bool acceptField(Envelope& envelope, const EnvelopeRow& row, std::string_view text);

} // namespace HBX::internal
