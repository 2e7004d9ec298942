// A sample is trunc(0.5 + lerp) in doubles. With SSE2 the lerp is first taken in floats, several samples at
// once: where that leaves no doubt about the whole number it stands, else the doubles decide.
//
// How far the floats may be off: the fractions that come here lie between -1e-7 and 1, pixels are at most 255;
// so every value lies below 256, where rounding to a float costs at most 2^-17. A fraction's own rounding is
// 2^-25 at most, which 255 times is less than 2^-17. The lerp along a row has the errors of its fraction,
// product and sum: 3 * 2^-17. The lerp between two rows lies between theirs and adds those of difference,
// fraction, product and sum, and the half that is added last one more: 8 * 2^-17 = 2^-14 in all. The doubles'
// own errors are far smaller. kDoubt is four times as much.
#include "primitives/rotate_linear.h"

#ifdef __SSE2__
#include <cstring>
#include <emmintrin.h>
#endif

namespace orvane {
namespace {

constexpr double kNudge = 0.0000001;

/// A pair of neighbours along an axis, and the way from the first to the second.
struct Between {
    int32 index;
    double fraction;
};

Between LinearPosition(double p, int32 length) {
    if (!(p > -0.000001)) return {0, 0.0}; // farther out than rounding leads on any real picture
    if (p + kNudge >= length - 1) return {length - 2, 1.0};
    const auto index = static_cast<int32>(p + kNudge);
    return {index, p - index};
}

template <int32 Channels>
const uint8* PixelAt(const LinearPath& path, int32 x, int32 y) {
    return RowAt(path.src, path.srcStep, y) + static_cast<std::ptrdiff_t>(x) * Channels;
}

template <int32 Channels>
void SampleOne(const LinearPath& path, SourcePosition at, uint8* to) {
    const Between x = LinearPosition(at.u, path.srcSize.width), y = LinearPosition(at.v, path.srcSize.height);
    const uint8* p0 = PixelAt<Channels>(path, x.index, y.index);
    const uint8* p1 = p0 + path.srcStep;
    for (int32 c = 0; c < Channels; ++c) {
        const double top = p0[c] + (p0[c + Channels] - p0[c]) * x.fraction;
        const double bottom = p1[c] + (p1[c + Channels] - p1[c]) * x.fraction;
        // Fractions lie within 1e-6 of 0 to 1, so this stays above 0 and below 256.
        to[c] = static_cast<uint8>(0.5 + top + (bottom - top) * y.fraction);
    }
}

#ifdef __SSE2__

constexpr float kDoubt = 1.0F / 4096;

/// Four lerps in floats, and the whole numbers below them: from what they are at least, and at most.
struct WholeNumbers {
    __m128i least;
    __m128i most;
};

__m128 Lerp(__m128 a, __m128 b, __m128 fraction) { return _mm_add_ps(a, _mm_mul_ps(_mm_sub_ps(b, a), fraction)); }

WholeNumbers Round(__m128 value) {
    return {_mm_cvttps_epi32(_mm_add_ps(value, _mm_set1_ps(0.5F - kDoubt))),
            _mm_cvttps_epi32(_mm_add_ps(value, _mm_set1_ps(0.5F + kDoubt)))};
}

SourcePosition PositionOf(__m128d at) { return {_mm_cvtsd_f64(at), _mm_cvtsd_f64(_mm_unpackhi_pd(at, at))}; }

/// Where a sample lies: `fractions` are those of u and v.
struct Place {
    const uint8* pixel;
    __m128 fractions;
};

/// Finds the place of the sample at (u, v). False where the edge is near: there plain code clamps.
template <int32 Channels>
bool Find(const LinearPath& path, __m128d at, Place& place) {
    constexpr int32 kReadAhead = Channels == 3 ? 3 : 2; // pixels of a row that eight bytes, or two, may touch
    const __m128d nudged = _mm_add_pd(at, _mm_set1_pd(kNudge));
    const __m128i index = _mm_cvttpd_epi32(nudged); // below 0 also for what is no 32-bit number
    const int32 x = _mm_cvtsi128_si32(index), y = _mm_cvtsi128_si32(_mm_srli_si128(index, 4));
    if (_mm_movemask_pd(nudged) != 0) return false;
    if (x < 0 || y < 0 || x > path.srcSize.width - kReadAhead || y > path.srcSize.height - 2) return false;
    place = {PixelAt<Channels>(path, x, y), _mm_cvtpd_ps(_mm_sub_pd(at, _mm_cvtepi32_pd(index)))};
    return true;
}

/// Three channels: two pixels at once.
struct Pair {
    static constexpr int32 kCount = 2;

    static __m128 Floats(__m128i words) { return _mm_cvtepi32_ps(_mm_unpacklo_epi16(words, _mm_setzero_si128())); }

    /// The lerp along a row; the fourth lane counts for nothing.
    static __m128 AlongRow(const uint8* pixel, __m128 fraction) {
        const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixel));
        const __m128i words = _mm_unpacklo_epi8(bytes, _mm_setzero_si128());
        return Lerp(Floats(words), Floats(_mm_srli_si128(words, 6)), fraction);
    }

    static WholeNumbers Sample(const LinearPath& path, const Place& place) {
        const __m128 x = _mm_shuffle_ps(place.fractions, place.fractions, _MM_SHUFFLE(0, 0, 0, 0));
        const __m128 y = _mm_shuffle_ps(place.fractions, place.fractions, _MM_SHUFFLE(1, 1, 1, 1));
        return Round(Lerp(AlongRow(place.pixel, x), AlongRow(place.pixel + path.srcStep, x), y));
    }

    /// Writes the pixels and one byte after them.
    static bool Write(const LinearPath& path, const __m128d (&at)[kCount], uint8* to) {
        Place places[kCount];
        if (!Find<3>(path, at[0], places[0]) || !Find<3>(path, at[1], places[1])) return false;
        const WholeNumbers first = Sample(path, places[0]), second = Sample(path, places[1]);
        const __m128i least = _mm_packs_epi32(first.least, second.least);
        const __m128i doubts = _mm_cmpeq_epi16(least, _mm_packs_epi32(first.most, second.most));
        constexpr int32 kThreeLanesEach = 0x3F3F;
        if ((_mm_movemask_epi8(doubts) & kThreeLanesEach) != kThreeLanesEach) return false;
        const __m128i bytes = _mm_packus_epi16(least, least);
        const int32 pixels[kCount] = {_mm_cvtsi128_si32(bytes), _mm_cvtsi128_si32(_mm_srli_si128(bytes, 4))};
        std::memcpy(to, &pixels[0], 4);
        std::memcpy(to + 3, &pixels[1], 4);
        return true;
    }
};

/// One channel: four pixels at once.
struct Four {
    static constexpr int32 kCount = 4;

    /// The pixel, its right neighbour and the two of the next row.
    static int32 Corners(const LinearPath& path, const uint8* pixel) {
        uint16 top, bottom;
        std::memcpy(&top, pixel, sizeof top);
        std::memcpy(&bottom, pixel + path.srcStep, sizeof bottom);
        return static_cast<int32>(uint32{top} | uint32{bottom} << 16);
    }

    static bool Write(const LinearPath& path, const __m128d (&at)[kCount], uint8* to) {
        Place p[kCount];
        for (int32 i = 0; i < kCount; ++i) {
            if (!Find<1>(path, at[i], p[i])) return false;
        }
        const __m128 firstTwo = _mm_movelh_ps(p[0].fractions, p[1].fractions);
        const __m128 lastTwo = _mm_movelh_ps(p[2].fractions, p[3].fractions);
        const __m128 x = _mm_shuffle_ps(firstTwo, lastTwo, _MM_SHUFFLE(2, 0, 2, 0));
        const __m128 y = _mm_shuffle_ps(firstTwo, lastTwo, _MM_SHUFFLE(3, 1, 3, 1));
        const __m128i corners = _mm_setr_epi32(Corners(path, p[0].pixel), Corners(path, p[1].pixel),
                                               Corners(path, p[2].pixel), Corners(path, p[3].pixel));
        const __m128i low = _mm_set1_epi32(255);
        const __m128 p00 = _mm_cvtepi32_ps(_mm_and_si128(corners, low));
        const __m128 p10 = _mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(corners, 8), low));
        const __m128 p01 = _mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(corners, 16), low));
        const __m128 p11 = _mm_cvtepi32_ps(_mm_srli_epi32(corners, 24));
        const WholeNumbers whole = Round(Lerp(Lerp(p00, p10, x), Lerp(p01, p11, x), y));
        if (_mm_movemask_epi8(_mm_cmpeq_epi32(whole.least, whole.most)) != 0xFFFF) return false;
        const __m128i words = _mm_packs_epi32(whole.least, whole.least);
        const int32 pixels = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
        std::memcpy(to, &pixels, 4);
        return true;
    }
};

template <int32 Channels>
struct BlockOf {
    using Type = Pair;
};
template <>
struct BlockOf<1> {
    using Type = Four;
};

#endif

} // namespace

template <int32 Channels>
void SampleLinearly(const LinearPath& path, SourcePosition& at, int64 count, uint8* to) {
    const LinearPath way = path; // which nothing that is written can change
#ifdef __SSE2__
    using Block = typename BlockOf<Channels>::Type;
    const __m128d step = _mm_setr_pd(way.step.u, way.step.v);
    __m128d next = _mm_setr_pd(at.u, at.v);
    for (; count > Block::kCount; count -= Block::kCount, to += Block::kCount * Channels) {
        __m128d positions[Block::kCount];
        for (__m128d& position : positions) {
            position = next;
            next = _mm_add_pd(next, step);
        }
        if (Block::Write(way, positions, to)) continue;
        for (int32 i = 0; i < Block::kCount; ++i) {
            SampleOne<Channels>(way, PositionOf(positions[i]), to + i * Channels);
        }
    }
    at = PositionOf(next);
#endif
    for (; count > 0; --count, to += Channels) {
        SampleOne<Channels>(way, at, to);
        at.u += way.step.u;
        at.v += way.step.v;
    }
}

template void SampleLinearly<1>(const LinearPath& path, SourcePosition& at, int64 count, uint8* to);
template void SampleLinearly<3>(const LinearPath& path, SourcePosition& at, int64 count, uint8* to);

} // namespace orvane
