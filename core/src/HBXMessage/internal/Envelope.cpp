#include <HBXMessage/internal/Envelope.h>

#include <charconv>

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

bool acceptField(Envelope& envelope, const EnvelopeRow& row, std::string_view text) {
    switch (row.kind) {
    case EnvelopeKind::Texts:
        envelope.targets.emplace_back(text);
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
    envelope[row.field] = std::string(text);
    return true;
}

} // namespace HBX::internal
