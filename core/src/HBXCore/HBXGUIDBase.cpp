#include <HBXCore/HBXGUIDBase.h>

#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/uuid.hpp>

namespace HBX {
namespace {

/// Where each byte's two digits stand in the text.
constexpr std::uint8_t kPlaces[HBXGUIDBase::kSize] = {0,  2,  4,  6,  9,  11, 14, 16,
                                                      19, 21, 24, 26, 28, 30, 32, 34};
constexpr std::uint8_t kDashes[] = {8, 13, 18, 23};

constexpr std::uint8_t kNoDigit = 0xFF;

/// The value of each character as a hexadecimal digit.
constexpr auto kDigits = [] {
    std::array<std::uint8_t, 256> digits{};
    digits.fill(kNoDigit);
    for (std::uint8_t i = 0; i < 16; ++i) {
        digits[static_cast<std::uint8_t>("0123456789abcdef"[i])] = i;
        digits[static_cast<std::uint8_t>("0123456789ABCDEF"[i])] = i;
    }
    return digits;
}();

} // namespace

HBXGUIDBase HBXGUIDBase::generate() {
    const boost::uuids::uuid random = boost::uuids::random_generator_pure()();
    return HBXGUIDBase(random.data);
}

void HBXGUIDBase::getData(std::int64_t& hi, std::int64_t& lo) const {
    std::uint64_t halves[2] = {};
    for (std::size_t i = 0; i < kSize; ++i) {
        halves[i / 8] = halves[i / 8] << 8 | bytes_[i];
    }
    hi = static_cast<std::int64_t>(halves[0]);
    lo = static_cast<std::int64_t>(halves[1]);
}

std::string HBXGUIDBase::toString() const {
    std::string text(kTextLength, '-');
    for (std::size_t i = 0; i < kSize; ++i) {
        text[kPlaces[i]] = "0123456789abcdef"[bytes_[i] >> 4];
        text[kPlaces[i] + 1U] = "0123456789abcdef"[bytes_[i] & 0xF];
    }
    return text;
}

int HBXGUIDBase::fromString(std::string_view text) {
    if (text.size() == kTextLength + 2 && text.front() == '{' && text.back() == '}') {
        text = text.substr(1, kTextLength);
    }
    if (text.size() != kTextLength) {
        return -1;
    }
    for (const std::uint8_t place : kDashes) {
        if (text[place] != '-') {
            return -1;
        }
    }
    std::array<std::uint8_t, kSize> bytes{};
    for (std::size_t i = 0; i < kSize; ++i) {
        const std::uint8_t high = kDigits[static_cast<std::uint8_t>(text[kPlaces[i]])];
        const std::uint8_t low = kDigits[static_cast<std::uint8_t>(text[kPlaces[i] + 1U])];
        if (((high | low) & 0xF0) != 0) {
            return -1;
        }
        bytes[i] = static_cast<std::uint8_t>(high << 4 | low);
    }
    bytes_ = bytes;
    return 0;
}

} // namespace HBX
