// With SSE2 sixteen pixels at once, in floats, which give the saturation of the doubles. That is the whole part of
// range / largest * 255 + 0.499999. The quotient is a multiple of 1 / largest: either its fraction is a half at
// most, and nothing near 0.5 added to it makes up 1, or it exceeds the half by 1/510 at least. Floats err by
// 2^-16, so that with 0.499 added they stay on the same side: 0.999 at most, 1.0009 at least.
#include "primitives/saturation.h"

#include <algorithm>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace orvane {
namespace {

void SplitPixel(const uint8* pixel, uint8& value, uint8& saturation) {
    const int32 largest = std::max({pixel[0], pixel[1], pixel[2]});
    const int32 smallest = std::min({pixel[0], pixel[1], pixel[2]});
    const double range = largest - smallest;
    value = static_cast<uint8>(largest);
    saturation = largest == smallest ? 0 : static_cast<uint8>(range / largest * 255.0 + 0.499999);
}

#ifdef __SSE2__

struct ThreeVectors {
    __m128i a, b, c;
};

/// Takes 48 bytes apart and puts their halves together again, byte by byte in turn: byte p goes to 2 p modulo 47.
ThreeVectors Riffle(const ThreeVectors& v) {
    return {_mm_unpacklo_epi8(v.a, _mm_srli_si128(v.b, 8)), _mm_unpacklo_epi8(_mm_srli_si128(v.a, 8), v.c),
            _mm_unpacklo_epi8(v.b, _mm_srli_si128(v.c, 8))};
}

/// The channels of sixteen pixels. Four riffles take byte p to 16 p modulo 47, that is channel c of pixel i, which
/// is byte 3 i + c, to 16 c + i.
ThreeVectors Channels(const uint8* pixels) {
    const auto* from = reinterpret_cast<const __m128i*>(pixels);
    const ThreeVectors bytes{_mm_loadu_si128(from), _mm_loadu_si128(from + 1), _mm_loadu_si128(from + 2)};
    return Riffle(Riffle(Riffle(Riffle(bytes))));
}

__m128 Floats(__m128i numbers) { return _mm_cvtepi32_ps(numbers); }

/// Of four pixels. Where the largest byte is 0 the quotient is no number, and its conversion far below 0.
__m128i SaturationOfFour(__m128i range, __m128i largest) {
    const __m128 quotient = _mm_div_ps(_mm_mul_ps(Floats(range), _mm_set1_ps(255.0F)), Floats(largest));
    return _mm_cvttps_epi32(_mm_add_ps(quotient, _mm_set1_ps(0.499F)));
}

/// Of eight, as words; below 0 where the largest byte is 0.
__m128i SaturationOfEight(__m128i range, __m128i largest) {
    const __m128i zero = _mm_setzero_si128();
    return _mm_packs_epi32(SaturationOfFour(_mm_unpacklo_epi16(range, zero), _mm_unpacklo_epi16(largest, zero)),
                           SaturationOfFour(_mm_unpackhi_epi16(range, zero), _mm_unpackhi_epi16(largest, zero)));
}

/// How many pixels of a row were split.
int32 SplitBlocks(const uint8* src, uint8* values, uint8* saturations, int32 width) {
    const __m128i zero = _mm_setzero_si128();
    int32 x = 0;
    for (; width - x >= 16; x += 16, src += 48) {
        const ThreeVectors pixel = Channels(src);
        const __m128i largest = _mm_max_epu8(_mm_max_epu8(pixel.a, pixel.b), pixel.c);
        const __m128i range = _mm_sub_epi8(largest, _mm_min_epu8(_mm_min_epu8(pixel.a, pixel.b), pixel.c));
        const __m128i low = SaturationOfEight(_mm_unpacklo_epi8(range, zero), _mm_unpacklo_epi8(largest, zero));
        const __m128i high = SaturationOfEight(_mm_unpackhi_epi8(range, zero), _mm_unpackhi_epi8(largest, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(values + x), largest);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(saturations + x), _mm_packus_epi16(low, high));
    }
    return x;
}

#else

int32 SplitBlocks(const uint8*, uint8*, uint8*, int32) { return 0; }

#endif

} // namespace

void SplitValueAndSaturation(const uint8* src, int32 srcStep, uint8* values, uint8* saturations, int32 planeStep,
                             ImageSize roi) {
    for (int32 y = 0; y < roi.height; ++y) {
        const uint8* from = RowAt(src, srcStep, y);
        uint8* value = RowAt(values, planeStep, y);
        uint8* saturation = RowAt(saturations, planeStep, y);
        for (int32 x = SplitBlocks(from, value, saturation, roi.width); x < roi.width; ++x) {
            SplitPixel(from + std::ptrdiff_t{3} * x, value[x], saturation[x]);
        }
    }
}

} // namespace orvane
