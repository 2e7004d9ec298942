// Operations on single pixels: each row is walked on its own, no neighbour is read.
#include "primitives/pixel.h"

#include <algorithm>
#include <cstring>
#ifdef __SSE2__
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

/// The pixels of a row whose mask bytes are not 0. Most masks have long runs of either kind, so eight bytes are
/// looked at together.
void CopyMaskedRow(const uint8* from, uint8* to, const uint8* mask, int32 width) {
    constexpr uint64 kLowBits = 0x7F7F7F7F7F7F7F7F;
    int32 x = 0;
    for (; width - x >= 8; x += 8, from += 24, to += 24) {
        uint64 bytes;
        std::memcpy(&bytes, mask + x, sizeof bytes);
        // The top bit of each byte says that it is not 0.
        const uint64 set = (((bytes & kLowBits) + kLowBits) | bytes) & ~kLowBits;
        if (set == ~kLowBits) {
            std::memcpy(to, from, 24);
        } else if (set != 0) {
            for (std::ptrdiff_t i = 0; i < 24; ++i) to[i] = mask[x + i / 3] != 0 ? from[i] : to[i];
        }
    }
    for (; x < width; ++x, from += 3, to += 3) {
        if (mask[x] != 0) std::memcpy(to, from, 3);
    }
}

template <typename Holds>
void CompareRow(const uint8* src, uint8* dst, int32 width, Holds holds) {
    for (int32 x = 0; x < width; ++x) dst[x] = holds(src[x]) ? 255 : 0;
}

/// Hue, saturation and value, in this order, of a pixel whose bytes are not all equal.
void ColourToHsv(int32 c0, int32 c1, int32 c2, int32 largest, int32 smallest, uint8* hsv) {
    const double range = largest - smallest;
    const double inverse = 1.0 / range;
    const double r = (largest - c0) * inverse;
    const double g = (largest - c1) * inverse;
    const double b = (largest - c2) * inverse;
    // The later channel wins where two tie for the largest.
    double hue = c2 == largest ? 4.0 + g - r : c1 == largest ? 2.0 + r - b : b - g;
    hue = hue * 255.0 / 6.0;
    if (hue < 0.0) hue += 255.0;
    hsv[0] = static_cast<uint8>(hue + 0.499999);
    hsv[1] = static_cast<uint8>(range / largest * 255.0 + 0.499999);
    hsv[2] = static_cast<uint8>(largest);
}

void HsvRow(const uint8* src, uint8* dst, int32 width) {
    for (int32 x = 0; x < width; ++x, src += 3, dst += 3) {
        const int32 c0 = src[0], c1 = src[1], c2 = src[2];
        const int32 largest = std::max({c0, c1, c2});
        const int32 smallest = std::min({c0, c1, c2});
        if (largest == smallest) {
            dst[0] = dst[1] = 0;
            dst[2] = static_cast<uint8>(largest);
        } else {
            ColourToHsv(c0, c1, c2, largest, smallest, dst);
        }
    }
}

void GreyRow(const uint8* src, uint8* dst, int32 width) {
    int32 x = GreyBlocks(src, dst, width);
    for (src += std::ptrdiff_t{3} * x; x < width; ++x, src += 3) {
        dst[x] =
            static_cast<uint8>((kGreyWeight0 * src[0] + kGreyWeight1 * src[1] + kGreyWeight2 * src[2]) >> kGreyShift);
    }
}

} // namespace

int32 primSetMasked_8u_C1(uint8 value, uint8* dst, int32 dstStep, ImageSize roi, const uint8* mask, int32 maskStep) {
    if (dst == nullptr || mask == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (dstStep < 1 || maskStep < 1) return kStepTooSmall;
    for (int32 y = 0; y < roi.height; ++y) {
        uint8* to = RowAt(dst, dstStep, y);
        const uint8* under = RowAt(mask, maskStep, y);
        for (int32 x = 0; x < roi.width; ++x) to[x] = under[x] != 0 ? value : to[x];
    }
    return kOk;
}

int32 primCopyMasked_8u_C3(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi, const uint8* mask,
                           int32 maskStep) {
    if (src == nullptr || dst == nullptr || mask == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    for (int32 y = 0; y < roi.height; ++y) {
        CopyMaskedRow(RowAt(src, srcStep, y), RowAt(dst, dstStep, y), RowAt(mask, maskStep, y), roi.width);
    }
    return kOk;
}

int32 primCopy_8u_C3P3(const uint8* src, int32 srcStep, uint8* const dst[3], int32 dstStep, ImageSize roi) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (dst[0] == nullptr || dst[1] == nullptr || dst[2] == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    for (int32 y = 0; y < roi.height; ++y) {
        const uint8* from = RowAt(src, srcStep, y);
        uint8* plane0 = RowAt(dst[0], dstStep, y);
        uint8* plane1 = RowAt(dst[1], dstStep, y);
        uint8* plane2 = RowAt(dst[2], dstStep, y);
        for (int32 x = 0; x < roi.width; ++x, from += 3) {
            plane0[x] = from[0];
            plane1[x] = from[1];
            plane2[x] = from[2];
        }
    }
    return kOk;
}

int32 primSwapChannels_8u_C3(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi,
                             const int32 order[3]) {
    if (src == nullptr || dst == nullptr || order == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (srcStep < 1 || dstStep < 1) return kStepTooSmall;
    for (int32 i = 0; i < 3; ++i) {
        if (order[i] < 0 || order[i] > 2) return kBadChannelOrder;
    }
    const int32 first = order[0], second = order[1], third = order[2];
    for (int32 y = 0; y < roi.height; ++y) {
        const uint8* from = RowAt(src, srcStep, y);
        uint8* to = RowAt(dst, dstStep, y);
        for (int32 x = 0; x < roi.width; ++x, from += 3, to += 3) {
            to[0] = from[first];
            to[1] = from[second];
            to[2] = from[third];
        }
    }
    return kOk;
}

int32 primAnd_8u_C1I(const uint8* src, int32 srcStep, uint8* srcDst, int32 srcDstStep, ImageSize roi) {
    if (src == nullptr || srcDst == nullptr) return kNullPointer;
    if (srcStep < 1 || srcDstStep < 1) return kStepTooSmall;
    if (!HasPixels(roi)) return kBadSize;
    for (int32 y = 0; y < roi.height; ++y) {
        const uint8* from = RowAt(src, srcStep, y);
        uint8* to = RowAt(srcDst, srcDstStep, y);
        for (int32 x = 0; x < roi.width; ++x) to[x] = static_cast<uint8>(to[x] & from[x]);
    }
    return kOk;
}

int32 primThresholdLTValGTVal_8u_C1(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi,
                                    uint8 thresholdLT, uint8 valueLT, uint8 thresholdGT, uint8 valueGT) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (srcStep < 1 || dstStep < 1) return kStepTooSmall;
    if (thresholdGT < thresholdLT) return kThresholdOrder;
    for (int32 y = 0; y < roi.height; ++y) {
        const uint8* from = RowAt(src, srcStep, y);
        uint8* to = RowAt(dst, dstStep, y);
        for (int32 x = 0; x < roi.width; ++x) {
            const uint8 v = from[x];
            to[x] = v > thresholdGT ? valueGT : v < thresholdLT ? valueLT : v;
        }
    }
    return kOk;
}

int32 primThresholdVal_8u_C1I(uint8* srcDst, int32 step, ImageSize roi, uint8 threshold, uint8 value, int32 compareOp) {
    if (compareOp != kLess && compareOp != kGreater) return kUnknownCode;
    if (srcDst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (step < 1) return kStepTooSmall;
    for (int32 y = 0; y < roi.height; ++y) {
        uint8* row = RowAt(srcDst, step, y);
        if (compareOp == kLess) {
            for (int32 x = 0; x < roi.width; ++x) row[x] = row[x] < threshold ? value : row[x];
        } else {
            for (int32 x = 0; x < roi.width; ++x) row[x] = row[x] > threshold ? value : row[x];
        }
    }
    return kOk;
}

int32 primCompareC_8u_C1(const uint8* src, int32 srcStep, uint8 value, uint8* dst, int32 dstStep, ImageSize roi,
                         int32 compareOp) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (srcStep < 1 || dstStep < 1) return kStepTooSmall;
    if (!HasPixels(roi)) return kBadSize;
    for (int32 y = 0; y < roi.height; ++y) {
        const uint8* from = RowAt(src, srcStep, y);
        uint8* to = RowAt(dst, dstStep, y);
        switch (compareOp) {
        case kLess:
            CompareRow(from, to, roi.width, [value](uint8 v) { return v < value; });
            break;
        case kLessOrEqual:
            CompareRow(from, to, roi.width, [value](uint8 v) { return v <= value; });
            break;
        case kEqual:
            CompareRow(from, to, roi.width, [value](uint8 v) { return v == value; });
            break;
        case kGreaterOrEqual:
            CompareRow(from, to, roi.width, [value](uint8 v) { return v >= value; });
            break;
        case kGreater:
            CompareRow(from, to, roi.width, [value](uint8 v) { return v > value; });
            break;
        default:
            return kOk;
        }
    }
    return kOk;
}

int32 primRGBToGray_8u_C3C1(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    for (int32 y = 0; y < roi.height; ++y) GreyRow(RowAt(src, srcStep, y), RowAt(dst, dstStep, y), roi.width);
    return kOk;
}

int32 primRGBToHSV_8u_C3(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    for (int32 y = 0; y < roi.height; ++y) HsvRow(RowAt(src, srcStep, y), RowAt(dst, dstStep, y), roi.width);
    return kOk;
}

} // namespace orvane::generic
