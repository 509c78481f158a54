#include "benchmarks/support/alphareading.h"

#include <algorithm>
#include <emmintrin.h>

int leastAlpha(const QImage &image)
{
    __m128i least = _mm_set1_epi8(-1);
    for (int y = 0; y < image.height(); ++y) {
        const auto *at = reinterpret_cast<const __m128i *>(image.constScanLine(y));
        for (int x = 0; x + 16 <= image.width(); x += 16, at += 4) {
            const __m128i low = _mm_packs_epi32(_mm_srli_epi32(_mm_loadu_si128(at), 24),
                                                _mm_srli_epi32(_mm_loadu_si128(at + 1), 24));
            const __m128i high = _mm_packs_epi32(_mm_srli_epi32(_mm_loadu_si128(at + 2), 24),
                                                 _mm_srli_epi32(_mm_loadu_si128(at + 3), 24));
            least = _mm_min_epu8(least, _mm_packus_epi16(low, high));
        }
    }
    alignas(16) unsigned char bytes[16];
    _mm_store_si128(reinterpret_cast<__m128i *>(bytes), least);
    return *std::min_element(bytes, bytes + sizeof bytes);
}
