#include "Shared/Cross/RenderAnim/Image/ExpandTriples.h"

#include <cstring>

#if defined(__x86_64__)
#include <cpuid.h>
#include <immintrin.h>
#endif

namespace {

#if defined(__x86_64__)

// Eight pixels; four bytes of the input behind them are read as well.
[[gnu::target("avx2")]] void ExpandEight(const uint8_t* pIn, uint8_t* pOut) {
    const __m256i places = _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1, //
                                            0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
    const __m256i opaque = _mm256_set1_epi32(static_cast<int>(0xFF000000u));
    const __m256i triples = _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(pIn + 12), //
                                                reinterpret_cast<const __m128i*>(pIn));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(pOut),
                        _mm256_or_si256(_mm256_shuffle_epi8(triples, places), opaque));
}

// Sixteen pixels at a time, where the processor can. The pixels done.
[[gnu::target("avx2")]] size_t ExpandBySixteens(const uint8_t* pIn, uint8_t* pOut, size_t count) {
    // The processor by itself doesn't ask for the output's memory beyond a page; this far ahead it comes in time.
    constexpr size_t ahead = 1024;
    constexpr size_t readBehind = 2; // pixels
    size_t done = 0;
    for (; done + 16 + readBehind <= count; done += 16, pIn += 48, pOut += 64) {
        __builtin_prefetch(pOut + ahead, 1);
        ExpandEight(pIn, pOut);
        ExpandEight(pIn + 24, pOut + 32);
    }
    return done;
}

// Asked by hand: the compiler's own question is put at every start of a program, and a virtual machine is slow to
// answer. The system has to save the wide registers, too.
bool HasAvx2() {
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
    constexpr unsigned asked = bit_OSXSAVE | bit_AVX;
    if (!__get_cpuid(1, &a, &b, &c, &d) || (c & asked) != asked)
        return false;
    constexpr unsigned wideRegisters = 6;
    __asm__("xgetbv" : "=a"(a), "=d"(d) : "c"(0));
    return (a & wideRegisters) == wideRegisters && __get_cpuid_count(7, 0, &a, &b, &c, &d) && (b & bit_AVX2) != 0;
}

size_t ExpandMost(const uint8_t* pIn, uint8_t* pOut, size_t count) {
    static const bool s_HasAvx2 = HasAvx2();
    return s_HasAvx2 ? ExpandBySixteens(pIn, pOut, count) : 0;
}

#else

size_t ExpandMost(const uint8_t*, uint8_t*, size_t) { return 0; }

#endif

} // namespace

void ExpandTriples(const uint8_t* pIn, uint8_t* pOut, size_t count) {
    for (size_t i = ExpandMost(pIn, pOut, count); i < count; ++i) {
        const uint8_t pixel[4] = {pIn[i * 3], pIn[i * 3 + 1], pIn[i * 3 + 2], 255};
        std::memcpy(pOut + i * 4, pixel, sizeof(pixel));
    }
}
