#pragma once

#include <cstddef>

// Base64 in steps of 16 characters for processors with SSSE3 (known at run time). Each function moves its
// pointers over what it did and leaves the rest, and whatever is not plain, to the tables of HBXBase64.cpp.

#ifdef __x86_64__

#include <tmmintrin.h>

namespace HBX {

inline bool hasBase64Vector() { return __builtin_cpu_supports("ssse3") != 0; }

/// Twelve bytes become sixteen characters; sixteen bytes are read.
__attribute__((target("ssse3"))) inline void base64EncodeVector(const char*& bytes, std::size_t& n,
                                                                char*& out) {
    const __m128i spread = _mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10);
    // What to add to a digit to get its character, by range: a-z, the ten digits, '+', '/', A-Z.
    const __m128i offsets =
        _mm_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                      '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0);
    for (; n >= 16; n -= 12, bytes += 12, out += 16) {
        const __m128i input = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
        const __m128i triples = _mm_shuffle_epi8(input, spread);
        const __m128i even =
            _mm_mulhi_epu16(_mm_and_si128(triples, _mm_set1_epi32(0x0FC0FC00)), _mm_set1_epi32(0x04000040));
        const __m128i odd =
            _mm_mullo_epi16(_mm_and_si128(triples, _mm_set1_epi32(0x003F03F0)), _mm_set1_epi32(0x01000010));
        const __m128i digits = _mm_or_si128(even, odd);
        const __m128i isUpper = _mm_cmpgt_epi8(_mm_set1_epi8(26), digits);
        const __m128i range =
            _mm_or_si128(_mm_subs_epu8(digits, _mm_set1_epi8(51)), _mm_and_si128(isUpper, _mm_set1_epi8(13)));
        const __m128i text = _mm_add_epi8(digits, _mm_shuffle_epi8(offsets, range));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), text);
    }
}

/// Sixteen characters become twelve bytes, but sixteen are written: `out` needs four spare ones behind.
/// Stops before the first sixteen that hold anything but digits.
__attribute__((target("ssse3"))) inline void base64DecodeVector(const char*& text, const char* end,
                                                                char*& out) {
    // A character is foreign when the entries for its two halves share a bit.
    const __m128i byLowHalf = _mm_setr_epi8(0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13,
                                            0x1A, 0x1B, 0x1B, 0x1B, 0x1A);
    const __m128i byHighHalf = _mm_setr_epi8(0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10, 0x10,
                                             0x10, 0x10, 0x10, 0x10, 0x10);
    // What to add to a character to get its digit, by high half; '/' shares its half with '+' and is moved.
    const __m128i offsets = _mm_setr_epi8(0, 16, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0);
    const __m128i join = _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    const __m128i slash = _mm_set1_epi8('/'); // 0x2F, at once a mask: shuffles look at bits 0 to 3 and 7 only
    for (; end - text >= 16; text += 16, out += 12) {
        const __m128i input = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
        const __m128i high = _mm_and_si128(_mm_srli_epi32(input, 4), slash);
        const __m128i low = _mm_and_si128(input, slash);
        const __m128i foreign =
            _mm_and_si128(_mm_shuffle_epi8(byLowHalf, low), _mm_shuffle_epi8(byHighHalf, high));
        if (_mm_movemask_epi8(_mm_cmpgt_epi8(foreign, _mm_setzero_si128())) != 0)
            return;
        const __m128i half = _mm_add_epi8(_mm_cmpeq_epi8(input, slash), high);
        const __m128i digits = _mm_add_epi8(input, _mm_shuffle_epi8(offsets, half));
        const __m128i pairs = _mm_maddubs_epi16(digits, _mm_set1_epi32(0x01400140));
        const __m128i groups = _mm_madd_epi16(pairs, _mm_set1_epi32(0x00011000));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_shuffle_epi8(groups, join));
    }
}

} // namespace HBX

#else

namespace HBX {

inline bool hasBase64Vector() { return false; }
inline void base64EncodeVector(const char*&, std::size_t&, char*&) {}
inline void base64DecodeVector(const char*&, const char*, char*&) {}

} // namespace HBX

#endif
