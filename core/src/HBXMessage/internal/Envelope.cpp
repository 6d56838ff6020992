#include <HBXMessage/internal/Envelope.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

namespace HBX::internal {
namespace {

template <class Number>
bool isCanonical(std::string_view text) {
    Number number{};
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    char printed[24];
    const auto [last, ignored] = std::to_chars(printed, printed + sizeof printed, number);
    return error == std::errc() && stopped == end && text == std::string_view(printed, last);
}

} // namespace

const std::string* Envelope::find(EnvelopeField field) const {
    for (const Field& set : fields) {
        if (set.field == field) {
            return &set.text;
        }
    }
    return nullptr;
}

void Envelope::add(EnvelopeField field, std::string text) {
    auto behind = fields.end(); // from there it is near, however many targets there are
    while (behind != fields.begin() && std::prev(behind)->field > field) {
        --behind;
    }
    fields.insert(behind, Field{field, std::move(text)});
}

void Envelope::remove(EnvelopeField field) {
    std::erase_if(fields, [&](const Field& set) { return set.field == field; });
}

void Envelope::set(EnvelopeField field, std::string text) {
    remove(field);
    add(field, std::move(text));
}

bool acceptField(Envelope& envelope, const EnvelopeRow& row, std::string_view text) {
    switch (row.kind) {
    case EnvelopeKind::Texts:
        envelope.add(row.field, std::string(text));
        return true;
    case EnvelopeKind::Int:
        if (!isCanonical<std::int32_t>(text)) {
            return false;
        }
        break;
    case EnvelopeKind::Int64:
        if (!isCanonical<std::int64_t>(text)) {
            return false;
        }
        break;
    case EnvelopeKind::Text:
        break;
    }
    envelope.set(row.field, std::string(text));
    return true;
}

} // namespace HBX::internal
