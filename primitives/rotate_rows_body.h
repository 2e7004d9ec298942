// The text of the kernel of turned rows: eight samples at once, in floats, at positions in fixed point. Where that
// leaves no doubt about the whole number it stands, else the doubles of `exactly` decide.
//
// The positions are those of which primitives/rotate_linear.cpp tells the errors: 2^-13.5 and 2^-13 of a sample. The
// four weights err by (1 + 2 + 2 + 4) 2^-25, for bytes 2^-13.8 in all; four products and sums below 256 are rounded
// by 2^-17 each whether multiplied and added in one step or two, the last one's doubt by 2^-16. In all less than
// 2^-11.5.
#pragma once

#include "primitives/byte_vectors.h"
#include "primitives/rotate_runs_body.h"
#include "primitives/row_kernels.h"

namespace orvane::ORVANE_KERNELS {
namespace {

#if ORVANE_WIDE

constexpr int32 kSamples = 8;
constexpr float kSampleDoubt = 1.0F / 2048;

/// Both ends of what a sample may be, rounded.
struct Ends {
    __m256i least, most;
};

inline Ends EndsOf(__m256 raised) {
    return {_mm256_cvttps_epi32(_mm256_sub_ps(raised, _mm256_set1_ps(kSampleDoubt))),
            _mm256_cvttps_epi32(_mm256_add_ps(raised, _mm256_set1_ps(kSampleDoubt)))};
}

struct Weights {
    __m256 w00, w10, w01, w11;
};

inline __m256 Weighted(const Weights& w, __m256i p00, __m256i p10, __m256i p01, __m256i p11) {
    const __m256 half = _mm256_set1_ps(0.5F);
    const __m256 first = _mm256_fmadd_ps(_mm256_cvtepi32_ps(p00), w.w00, half);
    const __m256 second = _mm256_fmadd_ps(_mm256_cvtepi32_ps(p10), w.w10, first);
    const __m256 third = _mm256_fmadd_ps(_mm256_cvtepi32_ps(p01), w.w01, second);
    return _mm256_fmadd_ps(_mm256_cvtepi32_ps(p11), w.w11, third);
}

/// One axis: 32 bits of whole number and as many of fraction, of samples 0, 1, 4, 5 and 2, 3, 6, 7.
struct AxisPositions {
    __m256i a, b, step;

    AxisPositions(int64 at, int64 by)
        : a(_mm256_setr_epi64x(at, at + by, at + 4 * by, at + 5 * by)),
          b(_mm256_setr_epi64x(at + 2 * by, at + 3 * by, at + 6 * by, at + 7 * by)),
          step(_mm256_set1_epi64x(kSamples * by)) {}

    __m256i Whole() const {
        return _mm256_castps_si256(_mm256_shuffle_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b), 0xDD));
    }
    __m256 Fraction() const {
        const __m256i bits =
            _mm256_castps_si256(_mm256_shuffle_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b), 0x88));
        // As the lower 23 bits of a float from 1 to 2.
        const __m256 one = _mm256_set1_ps(1.0F);
        return _mm256_sub_ps(_mm256_or_ps(_mm256_castsi256_ps(_mm256_srli_epi32(bits, 9)), one), one);
    }
    void Advance() {
        a = _mm256_add_epi64(a, step);
        b = _mm256_add_epi64(b, step);
    }
};

/// Where eight samples lie: the byte offsets of their first pixels, and the weights of the four.
struct Places {
    __m256i offsets;
    Weights weights;
};

inline Places PlacesAt(const AxisPositions& u, const AxisPositions& v, int32 channels, int32 step) {
    const __m256i columns = _mm256_mullo_epi32(u.Whole(), _mm256_set1_epi32(channels));
    const __m256i rows = _mm256_mullo_epi32(v.Whole(), _mm256_set1_epi32(step));
    const __m256 x = u.Fraction(), y = v.Fraction();
    const __m256 w11 = _mm256_mul_ps(x, y), w10 = _mm256_sub_ps(x, w11), w01 = _mm256_sub_ps(y, w11);
    const __m256 w00 = _mm256_sub_ps(_mm256_sub_ps(_mm256_set1_ps(1.0F), x), w01);
    return {_mm256_add_epi32(columns, rows), {w00, w10, w01, w11}};
}

inline __m256i EightBytesOfEach(const uint8* a, const uint8* b) {
    return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(a))),
                                   _mm_loadl_epi64(reinterpret_cast<const __m128i*>(b)), 1);
}

inline void Ahead(const TurnedPath& path, std::ptrdiff_t offset) { Expect(path.src, offset + path.ahead); }

/// Samples `Index` and `Index` + 4 of three channels. The fourth lanes count for nothing.
template <int32 Index>
inline Ends SampleTwo(const uint8* src, const int32* offsets, std::ptrdiff_t step, const Weights& w) {
    const __m256i left = TwiceTheSame(_mm_setr_epi8(0, -1, -1, -1, 1, -1, -1, -1, 2, -1, -1, -1, -1, -1, -1, -1));
    const __m256i right = TwiceTheSame(_mm_setr_epi8(3, -1, -1, -1, 4, -1, -1, -1, 5, -1, -1, -1, -1, -1, -1, -1));
    const uint8* a = src + offsets[Index];
    const uint8* b = src + offsets[Index + 4];
    const __m256i upper = EightBytesOfEach(a, b), lower = EightBytesOfEach(a + step, b + step);
    constexpr int32 kAll = Index * 0x55;
    const Weights own = {_mm256_permute_ps(w.w00, kAll), _mm256_permute_ps(w.w10, kAll), _mm256_permute_ps(w.w01, kAll),
                         _mm256_permute_ps(w.w11, kAll)};
    return EndsOf(Weighted(own, _mm256_shuffle_epi8(upper, left), _mm256_shuffle_epi8(upper, right),
                           _mm256_shuffle_epi8(lower, left), _mm256_shuffle_epi8(lower, right)));
}

/// Writes 28 bytes; a bit for each sample that is in doubt.
inline uint32 SampleBlock3(const TurnedPath& path, const Places& places, uint8* to) {
    alignas(32) int32 offsets[kSamples];
    _mm256_store_si256(reinterpret_cast<__m256i*>(offsets), places.offsets);
    Ahead(path, offsets[0]);
    Ahead(path, offsets[kSamples / 2]);
    const Weights& w = places.weights;
    const Ends e0 = SampleTwo<0>(path.src, offsets, path.srcStep, w);
    const Ends e1 = SampleTwo<1>(path.src, offsets, path.srcStep, w);
    const Ends e2 = SampleTwo<2>(path.src, offsets, path.srcStep, w);
    const Ends e3 = SampleTwo<3>(path.src, offsets, path.srcStep, w);
    const __m256i least = PackWords(_mm256_packs_epi32(e0.least, e1.least), _mm256_packs_epi32(e2.least, e3.least));
    const __m256i most = PackWords(_mm256_packs_epi32(e0.most, e1.most), _mm256_packs_epi32(e2.most, e3.most));
    const __m256i pixels =
        _mm256_shuffle_epi8(least, TwiceTheSame(_mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1)));
    StoreHalves(to, to + 12, pixels);
    // The fourth lanes are 0 in both.
    const __m256 certain = _mm256_castsi256_ps(_mm256_cmpeq_epi32(least, most));
    return ~static_cast<uint32>(_mm256_movemask_ps(certain)) & 0xFF;
}

/// Writes eight bytes.
inline uint32 SampleBlock1(const TurnedPath& path, const Places& places, uint8* to) {
    Ahead(path, _mm_cvtsi128_si32(_mm256_castsi256_si128(places.offsets)));
    const auto* src = reinterpret_cast<const int*>(path.src);
    const auto* below = reinterpret_cast<const int*>(path.src + path.srcStep);
    const __m256i upper = _mm256_i32gather_epi32(src, places.offsets, 1);
    const __m256i lower = _mm256_i32gather_epi32(below, places.offsets, 1);
    const __m256i low = _mm256_set1_epi32(255);
    const auto second = [&](__m256i v) { return _mm256_and_si256(_mm256_srli_epi32(v, 8), low); };
    const Ends e = EndsOf(Weighted(places.weights, _mm256_and_si256(upper, low), second(upper),
                                   _mm256_and_si256(lower, low), second(lower)));
    const __m128i words = _mm_packs_epi32(_mm256_castsi256_si128(e.least), _mm256_extracti128_si256(e.least, 1));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), _mm_packus_epi16(words, words));
    const __m256 certain = _mm256_castsi256_ps(_mm256_cmpeq_epi32(e.least, e.most));
    return ~static_cast<uint32>(_mm256_movemask_ps(certain)) & 0xFF;
}

// --- any other way: samples one by one ---

template <int32 Channels>
inline void SampleBlocks(const TurnedPath& path, PieceWay& way, int64 count, uint8* to) {
    constexpr double kOne = 4294967296.0;
    AxisPositions u(static_cast<int64>(way.u * kOne), static_cast<int64>(path.uStep * kOne));
    AxisPositions v(static_cast<int64>(way.v * kOne), static_cast<int64>(path.vStep * kOne));
    constexpr int64 kBlockBytes = int64{kSamples} * Channels;
    for (int64 done = 0; done < count; done += kSamples, to += kBlockBytes) {
        uint8 apart[32]; // for a last block, whose spill would leave the row
        const bool spills = Channels == 3 && count - done < kSamples + 2; // also where the row goes on
        const Places places = PlacesAt(u, v, Channels, path.srcStep);
        uint8* const pixels = spills ? apart : to;
        uint32 doubts = Channels == 3 ? SampleBlock3(path, places, pixels) : SampleBlock1(path, places, pixels);
        if (spills) __builtin_memcpy(to, apart, kBlockBytes);
        for (int64 i = 0; doubts != 0; doubts >>= 1, ++i) {
            if ((doubts & 1) != 0) way.Decide(path, done + i, to + i * Channels);
        }
        u.Advance();
        v.Advance();
    }
}

template <int32 Channels>
int64 RunTurnedRow(const TurnedPath& turned, double& uAt, double& vAt, int64 count, uint8* to) {
    const TurnedPath path = turned; // which no pixel can change
    const bool runs = GoesByRuns(path);
    const int64 piece = runs ? kRunPiece : 128; // what the errors of fixed point go by
    while (count >= (runs ? 1 : kSamples)) {
        int64 samples = count < piece ? count : piece;
        if (!runs) samples -= samples % kSamples;
        PieceWay way{uAt, vAt};
        if (runs) {
            way = SampleRuns<Channels>(path, {uAt, vAt, to, 0}, samples);
        } else {
            SampleBlocks<Channels>(path, way, samples, to);
            way.GoTo(path, samples);
        }
        uAt = way.u;
        vAt = way.v;
        to += samples * Channels;
        count -= samples;
    }
    return count;
}

template <int32 Channels>
bool RunTurnedRows(const TurnedPath& turned, TurnedStart (&rows)[kTurnedRows], int64 count) {
    if (!GoesByRuns(turned)) return false;
    const TurnedPath path = turned; // which no pixel can change
    SampleRunsOfTwo<Channels>(path, rows[0], rows[1], count);
    return true;
}

#endif

} // namespace
} // namespace orvane::ORVANE_KERNELS
