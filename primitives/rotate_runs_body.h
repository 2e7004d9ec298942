// The text of the kernel of rows that are turned by a small angle: their samples as runs, of one row or of two at once.
#pragma once

#include "primitives/byte_vectors.h"
#include "primitives/raised_bytes.h"
#include "primitives/row_kernels.h"

namespace orvane::ORVANE_KERNELS {
namespace {

#if ORVANE_WIDE

/// Asks in time for what a later row will read. Nothing is read, so the address may lie anywhere.
inline void Expect(const uint8* pixel, std::ptrdiff_t ahead) {
    const auto address = reinterpret_cast<std::uintptr_t>(pixel) + static_cast<std::uintptr_t>(ahead);
    _mm_prefetch(reinterpret_cast<const char*>(address), _MM_HINT_T1);
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

inline double WholePart(double v) {
    return _mm_cvtsd_f64(_mm_round_sd(_mm_setzero_pd(), _mm_set_sd(v), _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC));
}

/// A sum of 1 or more and `count` steps below 1, each rounded as it is added.
///
/// From one power of two to the next doubles lie equally far apart. So there every sum rounds the step alike, unless
/// that ends in the middle of two: it is a whole multiple of their distance, as the sums are, and all of them that do
/// not reach the power's ends can be added as one product, which is exact.
inline double RoundedSum(double sum, double step, int64 count) {
    for (auto rest = static_cast<double>(count); rest > 0.0;) {
        const double power = PowerBelow(sum), rounded = (sum + step) - sum;
        const double missing = step - rounded, half = power * 0x1p-53;
        const double room = rounded > 0.0 ? 2.0 * power - sum : sum - power, way = rounded > 0.0 ? rounded : -rounded;
        if (missing < half && -missing < half && way > 0.0 && room >= 2.0 * way) {
            // A step less than there is room for, however that is rounded.
            const double leap = rest * way < room ? rest - 1.0 : WholePart(room / way - 2.0);
            sum += leap * rounded;
            rest -= leap;
        }
        sum += step;
        rest -= 1.0;
    }
    return sum;
}

/// Where a sample of a piece of a row lies, as the results go by it: found from the one that was asked for before.
struct PieceWay {
    double u, v;
    int64 sample = 0;

    void GoTo(const TurnedPath& path, int64 next) {
        u = RoundedSum(u, path.uStep, next - sample);
        v = RoundedSum(v, path.vStep, next - sample);
        sample = next;
    }

    void Decide(const TurnedPath& path, int64 next, uint8* to) {
        GoTo(path, next);
        path.exactly(path, u, v, to);
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
template <int32 Channels>
constexpr int64 kRunPixels = kRunVectors * 8 / Channels;

/// How far the pixel of each byte of a run lies from its first, along both axes; as many as the longest run has.
template <int32 Channels>
struct RunWays {
    float x[kRunVectors][8], y[kRunVectors][8];

    explicit RunWays(const TurnedPath& path) {
        const auto xStep = static_cast<float>(path.uStep - 1.0), yStep = static_cast<float>(path.vStep);
        const __m256i part = _mm256_set1_epi32(Channels == 3 ? 21846 : 65536); // a byte's of its pixel, by 2^16
        __m256i bytes = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
        const double slope = path.vStep < 0.0 ? -path.vStep : path.vStep;
        constexpr auto kMost = static_cast<double>(kRunPixels<Channels>);
        const double longest = slope * kMost > 1.0 ? 1.0 / slope + 2.0 : kMost;
        const int32 needed = static_cast<int32>(longest) * Channels / 8 + 1;
        const int32 vectors = needed < kRunVectors ? needed : kRunVectors;
        for (int32 i = 0; i < vectors; ++i, bytes = _mm256_add_epi32(bytes, _mm256_set1_epi32(8))) {
            const __m256 pixels = _mm256_cvtepi32_ps(_mm256_srli_epi32(_mm256_mullo_epi32(bytes, part), 16));
            _mm256_storeu_ps(x[i], _mm256_mul_ps(pixels, _mm256_set1_ps(xStep)));
            _mm256_storeu_ps(y[i], _mm256_mul_ps(pixels, _mm256_set1_ps(yStep)));
        }
    }
};

// The vectors that a run goes by: of eight bytes, and of as many as the widest register holds as floats.

struct Eight {
    static constexpr int32 kVectors = 1; // of eight bytes
    using Floats = __m256;
    using Numbers = __m256i;

    static Floats FromBytes(const uint8* bytes) {
        return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes))));
    }
    static Floats MultiplyAdd(Floats a, Floats b, Floats c) { return _mm256_fmadd_ps(a, b, c); }
    static Floats Load(const float* from) { return _mm256_loadu_ps(from); }
    static Numbers Doubled(Floats raised) { return DoubledNumbers(raised); }
    static Numbers Least(Numbers a, Numbers b) { return _mm256_min_epu16(a, b); }
    static Numbers Most() { return _mm256_set1_epi32(-1); }
    static void Store(Numbers doubled, uint8* to) { StoreEight(doubled, to); }
    static uint32 Doubts(Numbers doubled) { return DoubtsOf<kRunDoubt>(doubled); }

    static Floats Splat(float v) { return _mm256_set1_ps(v); }
    static Floats FourTimes(__m128 v) { return _mm256_set_m128(v, v); }
    template <int Of>
    static Floats EachOfFour(Floats v) {
        return _mm256_permute_ps(v, Of);
    }
    static __m256 FirstEight(Floats v) { return v; }
};

#if ORVANE_WIDEST

// The forms with a mask, of all places, since the compiler takes those without one for uses of a vector that was never
// set.
struct Sixteen {
    static constexpr int32 kVectors = 2;
    using Floats = __m512;
    using Numbers = __m512i;

    static Floats FromBytes(const uint8* bytes) {
        const __m128i sixteen = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
        return _mm512_maskz_cvtepi32_ps(0xFFFF, _mm512_maskz_cvtepu8_epi32(0xFFFF, sixteen));
    }
    static Floats MultiplyAdd(Floats a, Floats b, Floats c) { return _mm512_fmadd_ps(a, b, c); }
    static Floats Load(const float* from) { return _mm512_loadu_ps(from); }
    static Numbers Doubled(Floats raised) {
        const Numbers numbers = _mm512_castps_si512(raised);
        return _mm512_add_epi32(numbers, numbers);
    }
    static Numbers Least(Numbers a, Numbers b) { return _mm512_min_epu16(a, b); }
    static Numbers Most() { return _mm512_set1_epi32(-1); }
    static void Store(Numbers doubled, uint8* to) {
        const Numbers thirds = _mm512_shuffle_epi8(doubled, _mm512_set1_epi32(0x0E0A0602));
        const Numbers places = _mm512_maskz_broadcast_i32x4(0xFFFF, _mm_setr_epi32(0, 4, 8, 12));
        const Numbers inOrder = _mm512_maskz_permutexvar_epi32(0xFFFF, places, thirds);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to), __builtin_shufflevector(inOrder, inOrder, 0, 1));
    }
    static uint32 Doubts(Numbers doubled) {
        return _mm512_testn_epi32_mask(doubled, _mm512_set1_epi32(0xFFFF & ~(4 * kRunDoubt - 1)));
    }

    static Floats Splat(float v) { return _mm512_set1_ps(v); }
    static Floats FourTimes(__m128 v) { return _mm512_maskz_broadcast_f32x4(0xFFFF, v); }
    template <int Of>
    static Floats EachOfFour(Floats v) {
        return _mm512_maskz_permute_ps(0xFFFF, v, Of);
    }
    static __m256 FirstEight(Floats v) { return __builtin_shufflevector(v, v, 0, 1, 2, 3, 4, 5, 6, 7); }
    static Numbers Joined(Numbers least, __m256i eight) {
        return _mm512_min_epu16(least, _mm512_maskz_inserti64x4(0xFF, Most(), eight, 0));
    }
};
using Widest = Sixteen;

#else

using Widest = Eight;

#endif

/// Bytes of a row and their right neighbours, as floats.
template <typename Width, int32 Channels>
struct CornerPair {
    typename Width::Floats left, difference;

    explicit CornerPair(const uint8* bytes)
        : left(Width::FromBytes(bytes)), difference(Width::FromBytes(bytes + Channels) - left) {}
    typename Width::Floats At(typename Width::Floats x) const { return Width::MultiplyAdd(difference, x, left); }
};

/// Bytes of samples: the byte in bits 16 to 23 of a number, the fraction below.
template <typename Width, int32 Channels>
inline typename Width::Numbers SampleBetween(const CornerPair<Width, Channels>& upper,
                                             const CornerPair<Width, Channels>& lower, typename Width::Floats x,
                                             typename Width::Floats y) {
    const auto top = upper.At(x);
    const auto sample = Width::MultiplyAdd(lower.At(x) - top, y, top);
    return Width::Doubled(sample + Width::Splat(kRaiseBy<kRunDoubt>));
}

/// Some samples between two rows: the first one's place.
template <int32 Channels>
struct Run {
    const uint8* upper;
    const uint8* lower;
    Widest::Floats x, y;

    /// Of the vector `i` of eight.
    template <typename Width>
    typename Width::Numbers Samples(const RunWays<Channels>& ways, std::ptrdiff_t i) const {
        return SampleBetween(CornerPair<Width, Channels>(upper + 8 * i), CornerPair<Width, Channels>(lower + 8 * i),
                             X<Width>(ways, i), Y<Width>(ways, i));
    }

    template <typename Width>
    typename Width::Floats X(const RunWays<Channels>& ways, std::ptrdiff_t i) const {
        return Own<Width>(x) + Width::Load(ways.x[i]);
    }
    template <typename Width>
    typename Width::Floats Y(const RunWays<Channels>& ways, std::ptrdiff_t i) const {
        return Own<Width>(y) + Width::Load(ways.y[i]);
    }

private:
    template <typename Width>
    static typename Width::Floats Own(Widest::Floats v) {
        if constexpr (Width::kVectors == Widest::kVectors) {
            return v;
        } else {
            return Widest::FirstEight(v);
        }
    }
};

/// The least of samples, by words.
struct LeastSample {
    Widest::Numbers least = Widest::Most();

    void Take(Widest::Numbers samples) { least = Widest::Least(least, samples); }
#if ORVANE_WIDEST
    void Take(__m256i samples) { least = Widest::Joined(least, samples); }
#endif
    bool IsInDoubt() const { return Widest::Doubts(least) != 0; }
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

inline int32 Lesser(int32 a, int32 b) { return a < b ? a : b; }

/// Where the runs of a piece of a row end.
struct RowCrossings {
    Crossings rows, columns;

    RowCrossings(const TurnedPath& path, const TurnedStart& start, int64 count)
        : rows(start.v - static_cast<int32>(start.v), path.vStep, count),
          columns(start.u - static_cast<int32>(start.u), path.uStep - 1.0, count) {}
};

/// A row of runs: the lines of pixels that end its run at hand, and where its samples lie from them.
template <int32 Channels>
struct RunRow {
    const uint8* upper;
    double x, y; // of the first sample
    const int32* rowEnd;
    const int32* columnEnd;

    RunRow(const TurnedPath& path, const TurnedStart& start, const RowCrossings& ends)
        : rowEnd(ends.rows.ends), columnEnd(ends.columns.ends) {
        const auto column0 = static_cast<int32>(start.u), row0 = static_cast<int32>(start.v);
        upper = path.src + static_cast<std::ptrdiff_t>(row0) * path.srcStep + Channels * std::ptrdiff_t{column0};
        x = start.u - column0;
        y = start.v - row0;
    }

    /// Of the run that begins at sample `done`.
    int32 End(int32 done) const {
        int32 end = done + static_cast<int32>(kRunPixels<Channels>);
        end = Lesser(*rowEnd, end);
        return Lesser(*columnEnd, end);
    }

    Run<Channels> From(const TurnedPath& path, int32 first) const {
        const uint8* from = upper + Channels * std::ptrdiff_t{first};
        const auto at = static_cast<double>(first);
        return {from, from + path.srcStep, Widest::Splat(static_cast<float>(x + at * (path.uStep - 1.0))),
                Widest::Splat(static_cast<float>(y + at * path.vStep))};
    }

    /// To the run that begins at sample `first`.
    void Advance(const TurnedPath& path, int32 first) {
        if (first == *rowEnd) {
            ++rowEnd;
            y -= path.vStep > 0.0 ? 1.0 : -1.0;
            upper += path.vStep > 0.0 ? path.srcStep : -path.srcStep;
        }
        if (first == *columnEnd) {
            ++columnEnd;
            x += 1.0;
            upper -= Channels;
        }
    }
};

/// Calls one body for each of the widest vectors, and another one for what is left.
template <typename Body>
[[gnu::always_inline]] inline void ForEachVector(int32 vectors, const Body& body) {
    std::ptrdiff_t i = 0;
    for (; i + Widest::kVectors <= vectors; i += Widest::kVectors) body(Widest{}, i);
    if constexpr (Widest::kVectors > 1) {
        if (i < vectors) body(Eight{}, i);
    }
}

/// What the samples in doubt of a run come to, which begins at sample `first` of its piece.
template <int32 Channels>
[[gnu::noinline]] void DecideDoubts(const TurnedPath& path, const RunWays<Channels>& ways, PieceWay& way,
                                    Run<Channels> run, int32 first, int32 bytes, uint8* to) {
    ForEachVector((bytes + 7) / 8, [&](auto width, std::ptrdiff_t i) {
        using Width = decltype(width);
        const auto samples = run.template Samples<Width>(ways, i);
        for (uint32 doubts = Width::Doubts(samples); doubts != 0; doubts &= doubts - 1) {
            const std::ptrdiff_t pixel = (8 * i + __builtin_ctz(doubts)) / Channels;
            if (Channels * pixel < bytes) way.Decide(path, first + pixel, to + Channels * pixel);
        }
    });
}

/// A run near the end of a piece, which its last vector would leave.
template <int32 Channels>
[[gnu::noinline]] void SampleLastRun(const TurnedPath& path, const RunWays<Channels>& ways, PieceWay& way,
                                     Run<Channels> run, int32 first, int32 bytes, uint8* to) {
    uint8 apart[kRunVectors * 8];
    LeastSample least;
    for (std::ptrdiff_t i = 0; 8 * i < bytes; ++i) {
        const auto samples = run.template Samples<Eight>(ways, i);
        Eight::Store(samples, apart + 8 * i);
        least.Take(samples);
    }
    __builtin_memcpy(to, apart, static_cast<std::size_t>(bytes));
    if (least.IsInDoubt()) DecideDoubts(path, ways, way, run, first, bytes, to);
}

/// Whole vectors of a run.
template <int32 Channels>
inline LeastSample SampleOneRun(const RunWays<Channels>& ways, const Run<Channels>& run, int32 vectors, uint8* to) {
    LeastSample least;
    ForEachVector(vectors, [&](auto width, std::ptrdiff_t i) {
        using Width = decltype(width);
        const auto samples = run.template Samples<Width>(ways, i);
        Width::Store(samples, to + 8 * i);
        least.Take(samples);
    });
    return least;
}

/// Of two runs.
struct LeastOfTwo {
    LeastSample a, b;

    bool AnyInDoubt() const { return Widest::Doubts(Widest::Least(a.least, b.least)) != 0; }
};

/// Whole vectors of two runs.
/// @tparam Shared whether one ends at the row where the other begins
template <bool Shared, int32 Channels>
inline LeastOfTwo SampleTwoRuns(const RunWays<Channels>& ways, const Run<Channels>& a, const Run<Channels>& b,
                                int32 vectors, uint8* toA, uint8* toB) {
    LeastOfTwo least;
    ForEachVector(vectors, [&](auto width, std::ptrdiff_t i) {
        using Width = decltype(width);
        using Pair = CornerPair<Width, Channels>;
        const Pair lowerA(a.lower + 8 * i);
        const auto samplesA =
            SampleBetween(Pair(a.upper + 8 * i), lowerA, a.template X<Width>(ways, i), a.template Y<Width>(ways, i));
        const Pair upperB = Shared ? lowerA : Pair(b.upper + 8 * i);
        const auto samplesB =
            SampleBetween(upperB, Pair(b.lower + 8 * i), b.template X<Width>(ways, i), b.template Y<Width>(ways, i));
        Width::Store(samplesA, toA + 8 * i);
        Width::Store(samplesB, toB + 8 * i);
        least.a.Take(samplesA);
        least.b.Take(samplesB);
    });
    return least;
}

inline void ExpectRun(const uint8* from, int32 bytes, std::ptrdiff_t ahead) {
    Expect(from, ahead);
    for (int32 i = 64; i < bytes; i += 64) Expect(from + i, ahead); // few runs are so long
}

template <int32 Channels>
PieceWay SampleRuns(const TurnedPath& path, const TurnedStart& start, int64 count) {
    PieceWay way{start.u, start.v};
    const RunWays<Channels> ways(path);
    const RowCrossings ends(path, start, count);
    RunRow<Channels> row(path, start, ends);
    for (int32 done = 0; done < count;) {
        const int32 end = row.End(done);
        const Run<Channels> run = row.From(path, done);
        const int32 bytes = Channels * (end - done);
        ExpectRun(run.upper, bytes, path.ahead);
        const auto vectors = static_cast<int32>((static_cast<uint32>(bytes) + 7) / 8);
        uint8* const to = start.to + Channels * std::ptrdiff_t{done};
        if (int64{8} * vectors > Channels * (count - done)) {
            SampleLastRun(path, ways, way, run, done, bytes, to);
        } else if (SampleOneRun(ways, run, vectors, to).IsInDoubt()) {
            DecideDoubts(path, ways, way, run, done, bytes, to);
        }
        done = end;
        row.Advance(path, done);
    }
    way.GoTo(path, count);
    return way;
}

/// Two neighbouring rows of runs. These end at the same samples in most places, where one row's lower pixels are the
/// other one's upper ones. All is local, since what a structure keeps takes a tenth longer here.
template <int32 Channels>
void SampleRunsOfTwo(const TurnedPath& path, TurnedStart& startA, TurnedStart& startB, int64 count) {
    PieceWay wayA{startA.u, startA.v}, wayB{startB.u, startB.v};
    const RunWays<Channels> ways(path);
    const RowCrossings endsA(path, startA, count), endsB(path, startB, count);
    const int64 room = count + (startA.behind < startB.behind ? startA.behind : startB.behind);
    const std::ptrdiff_t srcStep = path.srcStep, ahead = path.ahead;
    const std::ptrdiff_t nextRow = path.vStep > 0.0 ? srcStep : -srcStep;
    const double oneRow = path.vStep > 0.0 ? -1.0 : 1.0;
    const uint8* upperA =
        path.src + static_cast<int32>(startA.v) * srcStep + Channels * std::ptrdiff_t{static_cast<int32>(startA.u)};
    const uint8* upperB =
        path.src + static_cast<int32>(startB.v) * srcStep + Channels * std::ptrdiff_t{static_cast<int32>(startB.u)};
    const int32* rowEndA = endsA.rows.ends;
    const int32* rowEndB = endsB.rows.ends;
    const int32* columnEndA = endsA.columns.ends;
    const int32* columnEndB = endsB.columns.ends;
    // Of both rows, from the pixels at hand.
    __m256d first = _mm256_setr_pd(startA.u - static_cast<int32>(startA.u), startA.v - static_cast<int32>(startA.v),
                                   startB.u - static_cast<int32>(startB.u), startB.v - static_cast<int32>(startB.v));
    const __m256d steps = _mm256_setr_pd(path.uStep - 1.0, path.vStep, path.uStep - 1.0, path.vStep);
    for (int32 done = 0; done < count;) {
        int32 end = done + static_cast<int32>(kRunPixels<Channels>);
        end = *rowEndA < end ? *rowEndA : end;
        end = *rowEndB < end ? *rowEndB : end;
        end = *columnEndA < end ? *columnEndA : end;
        end = *columnEndB < end ? *columnEndB : end;
        const __m128 at = _mm256_cvtpd_ps(_mm256_fmadd_pd(_mm256_set1_pd(static_cast<double>(done)), steps, first));
        const Widest::Floats both = Widest::FourTimes(at);
        const uint8* fromA = upperA + Channels * std::ptrdiff_t{done};
        const uint8* fromB = upperB + Channels * std::ptrdiff_t{done};
        const Run<Channels> a = {fromA, fromA + srcStep, Widest::EachOfFour<0x00>(both),
                                 Widest::EachOfFour<0x55>(both)};
        const Run<Channels> b = {fromB, fromB + srcStep, Widest::EachOfFour<0xAA>(both),
                                 Widest::EachOfFour<0xFF>(both)};
        const int32 bytes = Channels * (end - done);
        ExpectRun(fromA, bytes, ahead);
        ExpectRun(fromB, bytes, ahead);
        const int32 vectors = static_cast<int32>((static_cast<uint32>(bytes) + 7) / 8);
        uint8* const toA = startA.to + Channels * std::ptrdiff_t{done};
        uint8* const toB = startB.to + Channels * std::ptrdiff_t{done};
        if (int64{8} * vectors > Channels * (room - done)) {
            SampleLastRun(path, ways, wayA, a, done, bytes, toA);
            SampleLastRun(path, ways, wayB, b, done, bytes, toB);
        } else {
            const LeastOfTwo least = b.upper == a.lower ? SampleTwoRuns<true>(ways, a, b, vectors, toA, toB)
                                                        : SampleTwoRuns<false>(ways, a, b, vectors, toA, toB);
            if (least.AnyInDoubt()) {
                if (least.a.IsInDoubt()) DecideDoubts(path, ways, wayA, a, done, bytes, toA);
                if (least.b.IsInDoubt()) DecideDoubts(path, ways, wayB, b, done, bytes, toB);
            }
        }
        done = end;
        if (done == *rowEndA) {
            ++rowEndA;
            first = _mm256_add_pd(first, _mm256_setr_pd(0.0, oneRow, 0.0, 0.0));
            upperA += nextRow;
        }
        if (done == *rowEndB) {
            ++rowEndB;
            first = _mm256_add_pd(first, _mm256_setr_pd(0.0, 0.0, 0.0, oneRow));
            upperB += nextRow;
        }
        if (done == *columnEndA) {
            ++columnEndA;
            first = _mm256_add_pd(first, _mm256_setr_pd(1.0, 0.0, 0.0, 0.0));
            upperA -= Channels;
        }
        if (done == *columnEndB) {
            ++columnEndB;
            first = _mm256_add_pd(first, _mm256_setr_pd(0.0, 0.0, 1.0, 0.0));
            upperB -= Channels;
        }
    }
    const auto end = [&](TurnedStart& start, PieceWay& way) {
        if (start.behind == 0) return;
        way.GoTo(path, count);
        start.u = way.u;
        start.v = way.v;
    };
    end(startA, wayA);
    end(startB, wayB);
}

#endif

} // namespace
} // namespace orvane::ORVANE_KERNELS
