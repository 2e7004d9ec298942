// Operations on single pixels: each row is walked on its own, no neighbour is read.
#include "primitives/pixel.h"

#ifdef __SSE2__
#include <cstring>
#include <emmintrin.h>
#endif

namespace orvane::generic {
namespace {

constexpr int32 kGreyWeight0 = 1225, kGreyWeight1 = 2404, kGreyWeight2 = 467, kGreyShift = 12;

#ifdef __SSE2__

/// The pixel at `p` and the byte after it.
__m128i LoadPixel(const uint8* p) {
    int32 bytes;
    std::memcpy(&bytes, p, sizeof bytes);
    return _mm_cvtsi32_si128(bytes);
}

/// The grey values of four pixels as 32-bit integers. Reads the byte after the fourth, with weight 0.
__m128i GreyOfFour(const uint8* src) {
    const __m128i weights =
        _mm_setr_epi16(kGreyWeight0, kGreyWeight1, kGreyWeight2, 0, kGreyWeight0, kGreyWeight1, kGreyWeight2, 0);
    const __m128i zero = _mm_setzero_si128();
    const __m128i firstTwo = _mm_unpacklo_epi32(LoadPixel(src), LoadPixel(src + 3));
    const __m128i lastTwo = _mm_unpacklo_epi32(LoadPixel(src + 6), LoadPixel(src + 9));
    const __m128 p = _mm_castsi128_ps(_mm_madd_epi16(_mm_unpacklo_epi8(firstTwo, zero), weights));
    const __m128 q = _mm_castsi128_ps(_mm_madd_epi16(_mm_unpacklo_epi8(lastTwo, zero), weights));
    const __m128i channels01 = _mm_castps_si128(_mm_shuffle_ps(p, q, _MM_SHUFFLE(2, 0, 2, 0)));
    const __m128i channel2 = _mm_castps_si128(_mm_shuffle_ps(p, q, _MM_SHUFFLE(3, 1, 3, 1)));
    return _mm_srli_epi32(_mm_add_epi32(channels01, channel2), kGreyShift);
}

/// Converts blocks of sixteen pixels; how many pixels it did. It stops before the row's last pixel,
/// so that the byte after a block still belongs to the row.
int32 GreyBlocks(const uint8* src, uint8* dst, int32 width) {
    int32 x = 0;
    for (; width - x > 16; x += 16, src += 48) {
        const __m128i low = _mm_packs_epi32(GreyOfFour(src), GreyOfFour(src + 12));
        const __m128i high = _mm_packs_epi32(GreyOfFour(src + 24), GreyOfFour(src + 36));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + x), _mm_packus_epi16(low, high));
    }
    return x;
}

#else

int32 GreyBlocks(const uint8*, uint8*, int32) { return 0; }

#endif

void GreyRow(const uint8* src, uint8* dst, int32 width) {
    int32 x = GreyBlocks(src, dst, width);
    for (src += std::ptrdiff_t{3} * x; x < width; ++x, src += 3) {
        dst[x] =
            static_cast<uint8>((kGreyWeight0 * src[0] + kGreyWeight1 * src[1] + kGreyWeight2 * src[2]) >> kGreyShift);
    }
}

} // namespace

int32 primRGBToGray_8u_C3C1(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    for (int32 y = 0; y < roi.height; ++y) GreyRow(RowAt(src, srcStep, y), RowAt(dst, dstStep, y), roi.width);
    return kOk;
}

} // namespace orvane::generic
