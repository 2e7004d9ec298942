// The text of the kernels of a scaled row whose pixels are weighted means: sums down some rows of the source, in
// floats and a channel at a time, then sums along those, eight pixels at once. What that leaves in doubt the doubles
// decide, whose sums are rounded to floats where the interpolation says so.
//
// Box average, of r rows and c columns: the doubles' sum is rounded r + c times by 2^-24 of itself, and so is that of
// floats, as the sums along the rows are raised and stay below 512. The weights of a row, which bear the scale, and of
// a column are rounded as much once: together (2 r + 2 c + 2) 2^-24 of a mean of up to 256, or 2^-16 times as many.
//
// Cubic: the absolute values of four weights add up to 1.64 at most, for positions between the outermost of the four
// pixels. Down the rows all sums of bytes stay below 512, where four products and sums are rounded by 2^-16 each; the
// weights' own rounding is 1.64 * 255 * 2^-24: in all 2^-13.5. Between columns below 420 that counts 1.64 times; the
// weights' rounding is 1.64 * 420 * 2^-24; the sums, raised by 256, stay below 1024, where each of four is rounded by
// 2^-15. The doubles round each of four lines by 2^-16, which counts 1.64 times. In all less than 2^-11.5.
#pragma once

#include "primitives/byte_vectors.h"
#include "primitives/raised_bytes.h"
#include "primitives/resize_rows_body.h"
#include "primitives/row_kernels.h"

namespace orvane::ORVANE_KERNELS {
namespace {

#if ORVANE_WIDE

static_assert(kMeanPixels == kBytes && kMeanBlock == 8);

inline __m256 FloatsOfEight(const uint8* bytes) {
    return FloatsOf(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes))));
}

/// Sums of eight pixels, from byte `x` of each row on, each channel to its plane. `Rows` may be 0, for any number.
template <int32 Channels, int32 Rows>
inline void SumEightPixels(const ScaledMeans& m, std::ptrdiff_t x, float* to) {
    __m256 sums[Channels];
    for (__m256& sum : sums) sum = _mm256_setzero_ps();
#pragma GCC unroll 4
    for (int32 k = 0; k < (Rows != 0 ? Rows : m.rowCount); ++k) {
        const uint8* row = m.rows[k].row + x;
        const __m256 weight = _mm256_set1_ps(m.rowWeights[k]);
        for (std::ptrdiff_t i = 0; i < Channels; ++i) {
            sums[i] = _mm256_fmadd_ps(FloatsOfEight(row + 8 * i), weight, sums[i]);
        }
    }
    if constexpr (Channels == 1) {
        _mm256_storeu_ps(to, sums[0]);
    } else {
        // Of 24 elements in turn every third stands, modulo 8, at a place of its own.
        const __m256 a = sums[0], b = sums[1], c = sums[2];
        const __m256 first = _mm256_blend_ps(_mm256_blend_ps(a, b, 0x92), c, 0x24);
        const __m256 second = _mm256_blend_ps(_mm256_blend_ps(a, b, 0x24), c, 0x49);
        const __m256 third = _mm256_blend_ps(_mm256_blend_ps(a, b, 0x49), c, 0x92);
        _mm256_storeu_ps(to, _mm256_permutevar8x32_ps(first, _mm256_setr_epi32(0, 3, 6, 1, 4, 7, 2, 5)));
        _mm256_storeu_ps(to + m.planeStep, _mm256_permutevar8x32_ps(second, _mm256_setr_epi32(1, 4, 7, 2, 5, 0, 3, 6)));
        _mm256_storeu_ps(to + 2 * m.planeStep,
                         _mm256_permutevar8x32_ps(third, _mm256_setr_epi32(2, 5, 0, 3, 6, 1, 4, 7)));
    }
}

template <int32 Channels, int32 Rows>
inline void SumRows(const ScaledMeans& m) {
    int32 x = 0;
    for (; m.columns - x >= 8; x += 8) SumEightPixels<Channels, Rows>(m, std::ptrdiff_t{Channels} * x, m.planes + x);
    if (x < m.columns && m.columns >= 8) {
        x = m.columns - 8; // some once more
        SumEightPixels<Channels, Rows>(m, std::ptrdiff_t{Channels} * x, m.planes + x);
        x = m.columns;
    }
    for (; x < m.columns; ++x) {
        for (int32 c = 0; c < Channels; ++c) {
            float sum = 0.0F;
            for (int32 k = 0; k < m.rowCount; ++k) {
                const float byte = m.rows[k].row[std::ptrdiff_t{Channels} * x + c];
                sum = __builtin_fmaf(byte, m.rowWeights[k], sum);
            }
            m.planes[c * m.planeStep + x] = sum;
        }
    }
    for (int32 end = m.columns + m.beyond; x < end; ++x) {
        for (int32 c = 0; c < Channels; ++c) {
            float* at = m.planes + c * m.planeStep + x;
            *at = at[-1];
        }
    }
}

/// Which of sixteen neighbouring sums, or of eight, are a column of a block.
#if ORVANE_WIDEST
template <int32 Windows>
class ColumnOf {
public:
    /// @param places numbers from 0 to 7, less 2^31 where they are those of the second eight
    explicit ColumnOf(__m256i places)
        : places_(_mm256_or_si256(places, _mm256_slli_epi32(_mm256_srli_epi32(places, 31), 3))) {}

    __m256 At(const float* from) const {
        const __m256 first = _mm256_loadu_ps(from);
        if constexpr (Windows == 1) return _mm256_permutevar8x32_ps(first, places_);
        return _mm256_permutex2var_ps(first, places_, _mm256_loadu_ps(from + 8));
    }

private:
    __m256i places_; // the second eight as 8 to 15
};
#else
template <int32 Windows>
class ColumnOf {
public:
    /// @param places numbers from 0 to 7, less 2^31 where they are those of the second eight
    explicit ColumnOf(__m256i places) : places_(places) {}

    __m256 At(const float* from) const {
        const __m256 first = _mm256_permutevar8x32_ps(_mm256_loadu_ps(from), places_);
        if constexpr (Windows == 1) return first;
        const __m256 second = _mm256_permutevar8x32_ps(_mm256_loadu_ps(from + 8), places_);
        return _mm256_blendv_ps(first, second, _mm256_castsi256_ps(places_));
    }

private:
    __m256i places_;
};
#endif

/// The doubled numbers of eight pixels' raised means. `Windows` of eight sums hold all that a column of them reads.
template <int32 Channels, int32 Taps, int32 Windows>
inline void MeansOfBlock(const ScaledMeans& m, std::ptrdiff_t block, __m256i (&doubled)[Channels]) {
    const ColumnOf<Windows> column(LoadBytes(m.places + kMeanBlock * block));
    const float* weights = m.weights + kMeanBlock * block * (Taps != 0 ? Taps : m.taps);
    const float* from[Channels] = {};
    for (int32 c = 0; c < Channels; ++c) from[c] = m.planes + m.bases[block] + c * m.planeStep;
    __m256 sums[Channels];
    for (__m256& sum : sums) sum = _mm256_set1_ps(m.raise);
#pragma GCC unroll 4
    for (std::ptrdiff_t k = 0; k < (Taps != 0 ? Taps : m.taps); ++k) {
        const __m256 weight = _mm256_loadu_ps(weights + kMeanBlock * k);
        for (int32 c = 0; c < Channels; ++c) {
            sums[c] = _mm256_fmadd_ps(column.At(from[c] + k), weight, sums[c]);
        }
    }
    for (int32 c = 0; c < Channels; ++c) doubled[c] = DoubledNumbers(sums[c]);
}

/// Decides what is in doubt of kMeanPixels pixels from a block on.
template <int32 Channels, int32 Taps, int32 Windows, typename Decide>
[[gnu::noinline]] void DecideMeans(const ScaledMeans& m, std::ptrdiff_t block, int32 count, const Decide& decide,
                                   uint8* to) {
    for (int32 first = 0; first < count; first += kMeanBlock, ++block) {
        __m256i doubled[Channels];
        MeansOfBlock<Channels, Taps, Windows>(m, block, doubled);
        for (int32 c = 0; c < Channels; ++c) {
            uint32 doubts = DoubtsOf(doubled[c], m.doubt);
            for (; doubts != 0; doubts &= doubts - 1) {
                const int32 i = first + __builtin_ctz(doubts);
                if (i < count) to[Channels * i + c] = decide(kMeanBlock * block - first + i, c);
            }
        }
    }
}

/// Bytes of kMeanPixels pixels from a block on. True when any is in doubt.
template <int32 Channels, int32 Taps, int32 Windows>
inline bool MeansOfBlocks(const ScaledMeans& m, std::ptrdiff_t block, uint8* to) {
    Vector smallest = _mm256_set1_epi32(-1);
    Vector bytes[Channels], words[Channels];
#pragma GCC unroll 2
    for (std::ptrdiff_t half = 0; half < 2; ++half) {
        __m256i a[Channels], b[Channels];
        MeansOfBlock<Channels, Taps, Windows>(m, block + 2 * half, a);
        MeansOfBlock<Channels, Taps, Windows>(m, block + 2 * half + 1, b);
        for (int32 c = 0; c < Channels; ++c) {
            smallest = SmallestWords(smallest, SmallestWords(a[c], b[c]));
            const Vector both = RaisedWords(a[c], b[c]);
            if (half == 0) {
                words[c] = both;
            } else {
                bytes[c] = InOrder(PackWords(words[c], both));
            }
        }
    }
    if constexpr (Channels == 1) {
        StoreBytes(to, bytes[0]);
    } else {
        StorePixels({bytes[0], bytes[1], bytes[2]}, to);
    }
    return AnyInDoubt(smallest, m.doubt);
}

template <int32 Channels, int32 Taps, int32 Windows, typename Decide>
inline void MeansAlong(const ScaledMeans& m, const Decide& decide, uint8* to) {
    std::ptrdiff_t block = 0;
    for (int32 left = m.count; left > 0; left -= kMeanPixels, block += kMeanPixels / kMeanBlock) {
        uint8 apart[Channels * kMeanPixels]; // of a row's last pixels, with what lies behind
        const int32 count = left < kMeanPixels ? left : kMeanPixels;
        const bool doubts = MeansOfBlocks<Channels, Taps, Windows>(m, block, left < kMeanPixels ? apart : to);
        if (left < kMeanPixels)
            __builtin_memcpy(to, apart, static_cast<std::size_t>(Channels) * static_cast<std::size_t>(left));
        if (doubts) DecideMeans<Channels, Taps, Windows>(m, block, count, decide, to);
        to += std::ptrdiff_t{Channels} * kMeanPixels;
    }
}

/// The doubles' byte of a box average.
template <int32 Channels>
uint8 DecideBox(const ScaledMeans& m, const BoxSpan& span, double scale, int32 channel) {
    float total = 0.0F;
    const auto add = [&](int64 column, double weight) {
        const int64 last = m.columns - 1; // which goes on beyond the region
        float down = 0.0F;
        for (int32 k = 0; k < m.rowCount; ++k) {
            const uint8 byte = m.rows[k].row[Channels * (column < last ? column : last) + channel];
            down = static_cast<float>(down + m.rows[k].weight * byte);
        }
        total = static_cast<float>(total + weight * down);
    };
    if (span.head > 0.0) add(span.first, span.head);
    for (int64 x = span.FirstWhole(); x < span.Tail(); ++x) add(x, 1.0);
    if (span.tail > 0.0) add(span.Tail(), span.tail);
    const auto mean = static_cast<int32>(total * scale + 0.5);
    return static_cast<uint8>(mean < 255 ? mean : 255);
}

template <int32 Channels>
void RunNearBoxMeans(const ScaledMeans& means, const BoxSpan* spans, double scale, uint8* to) {
    const ScaledMeans m = means;
    const auto decide = [&](std::ptrdiff_t pixel, int32 channel) {
        return DecideBox<Channels>(m, spans[pixel], scale, channel);
    };
    if (m.rowCount == 2) {
        SumRows<Channels, 2>(m);
    } else if (m.rowCount == 3) {
        SumRows<Channels, 3>(m);
    } else {
        SumRows<Channels, 0>(m);
    }
    if (Channels == 3 && m.taps == 2) {
        MeansAlong<Channels, 2, 2>(m, decide, to);
    } else if (Channels == 3 && m.taps == 3) {
        MeansAlong<Channels, 3, 2>(m, decide, to);
    } else {
        MeansAlong<Channels, 0, 2>(m, decide, to);
    }
}

/// The doubles' byte of cubic interpolation.
template <int32 Channels>
uint8 DecideCubic(const ScaledMeans& m, const CubicPoint& along, const CubicPoint& down, int32 channel) {
    float lines[4] = {};
    for (int32 k = 0; k < 4; ++k) {
        const uint8* p = m.rows[k].row + std::ptrdiff_t{Channels} * (along.first - m.firstColumn) + channel;
        lines[k] = static_cast<float>(
            Polynomial(p[0], p[Channels], p[std::ptrdiff_t{2} * Channels], p[std::ptrdiff_t{3} * Channels], along));
    }
    return CubicByte(Polynomial(lines[0], lines[1], lines[2], lines[3], down));
}

template <int32 Channels>
void RunCubicMeans(const ScaledMeans& means, const CubicPoint* along, const CubicPoint& down, uint8* to) {
    const ScaledMeans m = means;
    const auto decide = [&](std::ptrdiff_t pixel, int32 channel) {
        return DecideCubic<Channels>(m, along[pixel], down, channel);
    };
    SumRows<Channels, 4>(m);
    if (m.isFar) {
        MeansAlong<Channels, 4, 2>(m, decide, to);
    } else {
        MeansAlong<Channels, 4, 1>(m, decide, to);
    }
}

#endif

} // namespace
} // namespace orvane::ORVANE_KERNELS
