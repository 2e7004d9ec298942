// The text of the kernel of turned rows: eight samples at once, in floats, at positions in fixed point. Where that
// leaves no doubt about the whole number it stands, else the doubles of `exactly` decide.
//
// The positions are those of which primitives/rotate_linear.cpp tells the errors: 2^-13.5 and 2^-13 of a sample. The
// four weights err by (1 + 2 + 2 + 4) 2^-25, for bytes 2^-13.8 in all; four products and sums below 256 are rounded
// by 2^-17 each whether multiplied and added in one step or two, the last one's doubt by 2^-16. In all less than
// 2^-11.5.
#pragma once

#include "primitives/byte_vectors.h"
#include "primitives/raised_bytes.h"
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

/// Asks in time for what a later row will read. Nothing is read, so the address may lie anywhere.
inline void Ahead(const TurnedPath& path, std::ptrdiff_t offset) {
    const auto address = reinterpret_cast<std::uintptr_t>(path.src) + static_cast<std::uintptr_t>(offset + path.ahead);
    _mm_prefetch(reinterpret_cast<const char*>(address), _MM_HINT_T0);
}

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

/// The distance from a double to that power of two which is the smallest of those that lie as far apart as itself.
inline double PowerBelow(double v) {
    constexpr uint64 kExponent = 0x7FF0000000000000;
    uint64 bits;
    __builtin_memcpy(&bits, &v, sizeof bits);
    bits &= kExponent;
    double power;
    __builtin_memcpy(&power, &bits, sizeof power);
    return power;
}

/// A sum of 1 or more and `count` steps below 1, each rounded as it is added.
///
/// From one power of two to the next doubles lie equally far apart. So there every sum rounds the step alike, unless
/// that ends in the middle of two: it is a whole multiple of their distance, as the sums are, and all of them that do
/// not reach the power's ends can be added as one product, which is exact.
inline double RoundedSum(double sum, double step, int64 count) {
    while (count > 0) {
        const double power = PowerBelow(sum), rounded = (sum + step) - sum;
        const double missing = step - rounded, half = power * 0x1p-53;
        const double room = rounded > 0.0 ? 2.0 * power - sum : sum - power, way = rounded > 0.0 ? rounded : -rounded;
        const double rest = static_cast<double>(count);
        if (missing < half && -missing < half && way > 0.0 && room >= 2.0 * way) {
            // A step less than there is room for, however that is rounded.
            const double leap = rest * way < room ? rest - 1.0 : room / way - 2.0;
            const auto steps = static_cast<int64>(leap);
            sum += static_cast<double>(steps) * rounded;
            count -= steps;
        }
        sum += step;
        --count;
    }
    return sum;
}

/// Where the samples of a piece of a row lie, as the results go by it.
struct PieceStart {
    double u, v;

    void Decide(const TurnedPath& path, int64 sample, uint8* to) const {
        path.exactly(path, RoundedSum(u, path.uStep, sample), RoundedSum(v, path.vStep, sample), to);
    }
};

// --- runs: samples between the same two rows of the source, of which each lies between the next two pixels ---
//
// Their bytes stand side by side in the source as in the result, so no sample is fetched alone.
//
// A position in doubles errs by 2^-26 there, its fraction as a float and the way along a group by 2^-23.5: for both
// axes 2^-14.5 of a sample. Pairs that begin within 1e-7 cost 2^-13.2, as above; rows, their difference and the sample
// are rounded by 2^-17 each, the raised sample by 2^-16: 2^-14.6. In all less than 2^-12.3.

/// Which of a sample's fraction, that has 15 bits once it is raised, is doubt: 2^-12 to either side of a whole number.
constexpr int32 kRunDoubt = 8;
/// Vectors of a run, and its pixels: a longer one is cut.
constexpr int32 kRunVectors = 24;
constexpr int64 kRunPixels = kRunVectors * 8 / 3;

/// How far the pixel of each byte of a run lies from its first, along both axes.
struct RunWays {
    float x[kRunVectors][8], y[kRunVectors][8];

    RunWays(float xStep, float yStep) {
        const __m256i thirds = _mm256_set1_epi32(21846); // of 2^16, and a little more
        __m256i bytes = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
        for (int32 i = 0; i < kRunVectors; ++i, bytes = _mm256_add_epi32(bytes, _mm256_set1_epi32(8))) {
            const __m256 pixels = _mm256_cvtepi32_ps(_mm256_srli_epi32(_mm256_mullo_epi32(bytes, thirds), 16));
            _mm256_storeu_ps(x[i], _mm256_mul_ps(pixels, _mm256_set1_ps(xStep)));
            _mm256_storeu_ps(y[i], _mm256_mul_ps(pixels, _mm256_set1_ps(yStep)));
        }
    }
};

inline __m256 EightFloats(const uint8* bytes) {
    return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes))));
}

/// Eight bytes of samples: the byte in bits 16 to 23 of a number, the fraction below.
inline __m256i SampleEight(const uint8* upper, const uint8* lower, __m256 x, __m256 y) {
    const __m256 p00 = EightFloats(upper), p01 = EightFloats(lower);
    const __m256 top = _mm256_fmadd_ps(_mm256_sub_ps(EightFloats(upper + 3), p00), x, p00);
    const __m256 bottom = _mm256_fmadd_ps(_mm256_sub_ps(EightFloats(lower + 3), p01), x, p01);
    const __m256 sample = _mm256_fmadd_ps(_mm256_sub_ps(bottom, top), y, top);
    return DoubledNumbers(_mm256_add_ps(sample, _mm256_set1_ps(kRaiseBy<kRunDoubt>)));
}

/// Some samples between two rows: the first one's place.
struct Run {
    const uint8* upper;
    const uint8* lower;
    __m256 x, y;

    __m256i Eight(const RunWays& ways, int32 i) const {
        return SampleEight(upper + 8 * i, lower + 8 * i, _mm256_add_ps(x, _mm256_loadu_ps(ways.x[i])),
                           _mm256_add_ps(y, _mm256_loadu_ps(ways.y[i])));
    }
};

/// Whether the way leads right, and down or up by less than a pixel in four.
inline bool GoesByRuns(const TurnedPath& path) {
    return path.uStep > 0.9 && path.uStep < 1.0 && path.vStep < 0.25 && path.vStep > -0.25;
}

/// Samples that are taken as runs at once, and the most lines of pixels that their way crosses, in whole vectors.
constexpr int32 kRunPiece = 1024;
constexpr int32 kMostCrossings = kRunPiece / 4 + 8;

/// Where the way of a piece goes from one row, or column, to the next: found for four at once, since one that waited
/// for the one before would take longer than the samples between them.
struct Crossings {
    int32 ends[kMostCrossings]; // the first sample beyond the line of pixels with this number

    /// @param fraction of the first sample along the axis
    Crossings(double fraction, double step, int64 count) {
        const __m256d inverse = _mm256_set1_pd(1.0 / step), last = _mm256_set1_pd(static_cast<double>(count - 1));
        const __m256d line = _mm256_set1_pd(step > 0.0 ? 4.0 : -4.0);
        __m256d way = _mm256_mul_pd(_mm256_setr_pd(0.0, 0.25, 0.5, 0.75), line);
        way = _mm256_add_pd(way, _mm256_set1_pd(step > 0.0 ? 1.0 - fraction : -fraction));
        __m128i before;
        int32 i = 0;
        do {
            before = _mm256_cvttpd_epi32(_mm256_min_pd(_mm256_mul_pd(way, inverse), last));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(ends + i), _mm_add_epi32(before, _mm_set1_epi32(1)));
            way = _mm256_add_pd(way, line);
            i += 4;
        } while (_mm_extract_epi32(before, 3) < count - 1 && i < kMostCrossings);
    }
};

/// A piece of a row of runs, as it is taken.
struct RunPiece {
    const TurnedPath& path;
    const PieceStart& start;
    const RunWays& ways;
    uint8* to;
    int64 count;
};

/// What a run's samples in doubt come to.
[[gnu::noinline]] void DecideDoubts(const RunPiece& piece, Run run, int64 first, int32 bytes) {
    uint8* to = piece.to + 3 * first;
    for (int32 i = 0; 8 * i < bytes; ++i) {
        for (uint32 doubts = DoubtsOf<kRunDoubt>(run.Eight(piece.ways, i)); doubts != 0; doubts &= doubts - 1) {
            const int32 pixel = (8 * i + __builtin_ctz(doubts)) / 3;
            if (3 * pixel < bytes) piece.start.Decide(piece.path, first + pixel, to + 3 * pixel);
        }
    }
}

/// A run near the end of a piece, which its last vector would leave.
[[gnu::noinline]] void SampleLastRun(const RunPiece& piece, Run run, int64 first, int32 bytes) {
    uint8 apart[kRunVectors * 8];
    __m256i least = _mm256_set1_epi32(-1); // of the fractions
    for (int32 i = 0; 8 * i < bytes; ++i) {
        const __m256i samples = run.Eight(piece.ways, i);
        StoreEight(samples, apart + 8 * i);
        least = _mm256_min_epu16(least, samples);
    }
    __builtin_memcpy(piece.to + 3 * first, apart, static_cast<std::size_t>(bytes));
    if (DoubtsOf<kRunDoubt>(least) != 0) DecideDoubts(piece, run, first, bytes);
}

/// Samples `first` to before `end` of a piece, which make up a run.
inline void SampleRun(const RunPiece& piece, const Run& run, int32 first, int32 end) {
    const int32 bytes = 3 * (end - first);
    const auto written = static_cast<std::ptrdiff_t>((static_cast<uint32>(bytes) + 7) / 8 * 8);
    if (written > 3 * (piece.count - first)) {
        SampleLastRun(piece, run, first, bytes);
        return;
    }
    uint8* to = piece.to + 3 * first;
    __m256i least = _mm256_set1_epi32(-1); // of the fractions
    for (int32 i = 0; 8 * i < written; ++i) {
        const __m256i samples = run.Eight(piece.ways, i);
        StoreEight(samples, to + 8 * i);
        least = _mm256_min_epu16(least, samples);
    }
    if (DoubtsOf<kRunDoubt>(least) != 0) DecideDoubts(piece, run, first, bytes);
}

void SampleRuns(const TurnedPath& path, const PieceStart& start, int64 count, uint8* to) {
    const double xStep = path.uStep - 1.0, yStep = path.vStep;
    const RunWays ways(static_cast<float>(xStep), static_cast<float>(yStep));
    const RunPiece piece{path, start, ways, to, count};
    const auto column0 = static_cast<int32>(start.u), row0 = static_cast<int32>(start.v);
    double x = start.u - column0, y = start.v - row0; // of the first sample, from the pixel at hand
    const Crossings rows(y, yStep, count), columns(x, xStep, count);
    const std::ptrdiff_t nextRow = yStep > 0.0 ? path.srcStep : -path.srcStep;
    const double oneRow = yStep > 0.0 ? 1.0 : -1.0;
    const uint8* upper = path.src + static_cast<std::ptrdiff_t>(row0) * path.srcStep + 3 * std::ptrdiff_t{column0};
    const int32* rowEnd = rows.ends;
    const int32* columnEnd = columns.ends;
    for (int32 done = 0; done < count;) {
        int32 end = *rowEnd < *columnEnd ? *rowEnd : *columnEnd;
        if (end - done > kRunPixels) end = done + static_cast<int32>(kRunPixels);
        const uint8* from = upper + 3 * done;
        Ahead(path, from - path.src);
        for (int32 i = 64; i < 3 * (end - done); i += 64) Ahead(path, from + i - path.src);
        const auto at = static_cast<double>(done);
        SampleRun(piece,
                  {from, from + path.srcStep, _mm256_set1_ps(static_cast<float>(x + at * xStep)),
                   _mm256_set1_ps(static_cast<float>(y + at * yStep))},
                  done, end);
        done = end;
        if (done == *rowEnd) {
            ++rowEnd;
            y -= oneRow;
            upper += nextRow;
        }
        if (done == *columnEnd) {
            ++columnEnd;
            x += 1.0;
            upper -= 3;
        }
    }
}

// --- any other way: samples one by one ---

template <int32 Channels>
inline void SampleBlocks(const TurnedPath& path, const PieceStart& start, int64 count, uint8* to) {
    constexpr double kOne = 4294967296.0;
    AxisPositions u(static_cast<int64>(start.u * kOne), static_cast<int64>(path.uStep * kOne));
    AxisPositions v(static_cast<int64>(start.v * kOne), static_cast<int64>(path.vStep * kOne));
    constexpr int64 kBlockBytes = kSamples * Channels;
    for (int64 done = 0; done < count; done += kSamples, to += kBlockBytes) {
        uint8 apart[32]; // for a last block, whose spill would leave the row
        const bool spills = Channels == 3 && count - done < kSamples + 2; // also where the row goes on
        const Places places = PlacesAt(u, v, Channels, path.srcStep);
        uint8* const pixels = spills ? apart : to;
        uint32 doubts = Channels == 3 ? SampleBlock3(path, places, pixels) : SampleBlock1(path, places, pixels);
        if (spills) __builtin_memcpy(to, apart, kBlockBytes);
        for (int64 i = 0; doubts != 0; doubts >>= 1, ++i) {
            if ((doubts & 1) != 0) start.Decide(path, done + i, to + i * Channels);
        }
        u.Advance();
        v.Advance();
    }
}

template <int32 Channels>
int64 RunTurnedRow(const TurnedPath& turned, double& uAt, double& vAt, int64 count, uint8* to) {
    const TurnedPath path = turned; // which no pixel can change
    const auto advance = [&](int64 samples) {
        uAt = RoundedSum(uAt, path.uStep, samples);
        vAt = RoundedSum(vAt, path.vStep, samples);
    };
    const bool runs = Channels == 3 && GoesByRuns(path);
    const int64 piece = runs ? kRunPiece : 128; // what the errors of fixed point go by
    while (count >= (runs ? 1 : kSamples)) {
        int64 samples = count < piece ? count : piece;
        if (!runs) samples -= samples % kSamples;
        if (runs) {
            SampleRuns(path, {uAt, vAt}, samples, to);
        } else {
            SampleBlocks<Channels>(path, {uAt, vAt}, samples, to);
        }
        advance(samples);
        to += samples * Channels;
        count -= samples;
    }
    return count;
}

#endif

} // namespace
} // namespace orvane::ORVANE_KERNELS
