#pragma once

#include <bit>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace workbench::step {

/// Finds, 64 bytes at a time, the characters that matter to someone who looks for the end of a statement:
/// apostrophe, semicolon, slash and line end. 64 readable bytes must follow the text, the first of them a
/// semicolon, so that the search ends there.
class Specials {
  public:
    explicit Specials(char lineEnd) : lineEnd(lineEnd) {}

    /// Goes on at p.
    void Seek(const char* p) {
        if (block && p > last && p - block < 64) {
            mask &= ~uint64_t{0} << (p - block);
            return;
        }
        block = p;
        mask = Look(p);
    }

    const char* Next() {
        while (mask == 0) {
            block += 64;
            mask = Look(block);
        }
        last = block + std::countr_zero(mask);
        mask &= mask - 1;
        return last;
    }

  private:
    const char* block = nullptr;
    const char* last = nullptr;  // found
    uint64_t mask = 0;
    char lineEnd;

#ifdef __SSE2__
    uint64_t Look(const char* p) const {
        uint64_t bits = 0;
        for (int i = 0; i < 4; ++i) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * i));
            const auto are = [bytes](char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
            const __m128i any =
                _mm_or_si128(_mm_or_si128(are('\''), are(';')), _mm_or_si128(are('/'), are(lineEnd)));
            bits |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(any))) << (16 * i);
        }
        return bits;
    }
#else
    uint64_t Look(const char* p) const {
        uint64_t bits = 0;
        for (int i = 0; i < 64; ++i) {
            bits |= static_cast<uint64_t>(p[i] == '\'' || p[i] == ';' || p[i] == '/' || p[i] == lineEnd) << i;
        }
        return bits;
    }
#endif
};

}  // namespace workbench::step
