// A sample is trunc(0.5 + lerp) in doubles, at positions that are sums of doubles. With SSE2 several samples
// at once are first taken in floats, at positions in fixed point: where that leaves no doubt about the whole
// number it stands, else the doubles decide.
//
// How far that may be off. Along a piece of a row a position in fixed point errs by 2^-32 at its start, 2^-25 by
// the step's truncated bits and 2^-23 as a fraction; the sums of doubles err by 2^-27. That is less than 2^-22.5
// an axis, and a lerp of bytes changes by 255 at most along a pixel: 2^-13.5 for both axes. A sum within 1e-7
// below a pixel counts with the pair that begins there, which is another line: at most 510e-7 an axis, for both
// less than 2^-13. In floats the differences of bytes are exact; the other values lie below 256, where rounding
// costs 2^-17 at most, but for one below 512: eight times 2^-17 for three products, four sums and the last one's
// doubt. In all less than 2^-11.6. The doubles' own errors are far smaller.
#include "primitives/rotate_linear.h"

#include "primitives/row_kernels.h"

#include <limits>

#ifdef __SSE2__
#include <algorithm>
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

constexpr float kDoubt = 1.0F / 2048;

/// Pixels of a piece, and the farthest that it may lie: what the errors above go by. A wide kernel takes longer ones.
constexpr int64 kLongestPiece = 128, kLongestWidePiece = 1024;
constexpr double kFarthest = 1 << 16;

/// Whether all positions from `at` on lie so far inside the picture that no rounding leads out, nor eight bytes
/// out of a row.
bool LiesInside(const LinearPath& path, SourcePosition at, int64 count) {
    const double way = static_cast<double>(count - 1);
    const auto inside = [](double p, double last) { return p >= 1.0 && p <= last && p <= kFarthest; };
    const double lastU = path.srcSize.width - 4.0, lastV = path.srcSize.height - 4.0;
    return inside(at.u, lastU) && inside(at.v, lastV) && inside(at.u + way * path.step.u, lastU) &&
           inside(at.v + way * path.step.v, lastV);
}

SourcePosition PositionOf(__m128d at) { return {_mm_cvtsd_f64(at), _mm_cvtsd_f64(_mm_unpackhi_pd(at, at))}; }

/// Both numbers with 32 bits for their fractions.
__m128i InFixedPoint(SourcePosition p) {
    constexpr double kOne = 4294967296.0;
    return _mm_set_epi64x(static_cast<int64>(p.v * kOne), static_cast<int64>(p.u * kOne));
}

/// Where two samples lie.
struct TwoPlaces {
    std::ptrdiff_t offsets[2];
    __m128 fractions; // of the first's u and v, and the second's
};

#ifdef __x86_64__
std::ptrdiff_t LowOffset(__m128i offsets) { return _mm_cvtsi128_si64(offsets); }
#else
std::ptrdiff_t LowOffset(__m128i offsets) { return _mm_cvtsi128_si32(offsets); }
#endif

/// `distances` are the bytes from a pixel to its right neighbour and from a row to the next.
TwoPlaces FindTwo(__m128i first, __m128i second, __m128i distances) {
    const __m128i p = _mm_mul_epu32(_mm_srli_epi64(first, 32), distances);
    const __m128i q = _mm_mul_epu32(_mm_srli_epi64(second, 32), distances);
    const __m128i offsets = _mm_add_epi64(_mm_unpacklo_epi64(p, q), _mm_unpackhi_epi64(p, q));
    const __m128 one = _mm_set1_ps(1.0F);
    const __m128i bits =
        _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(first), _mm_castsi128_ps(second), _MM_SHUFFLE(2, 0, 2, 0)));
    // As the lower 23 bits of a float from 1 to 2.
    const __m128 raised = _mm_or_ps(_mm_castsi128_ps(_mm_srli_epi32(bits, 9)), one);
    return {{LowOffset(offsets), LowOffset(_mm_unpackhi_epi64(offsets, offsets))}, _mm_sub_ps(raised, one)};
}

/// Corners of a sample's square as 2^23 plus the byte: so words become floats without a conversion.
struct Square {
    __m128 p00, p10, p01, p11;
};

constexpr float kRaise = 8388608.0F;

/// Four samples, rounded: from what they are at least, and at most.
struct WholeNumbers {
    __m128i least;
    __m128i most;
};

WholeNumbers Lerp(const Square& s, __m128 x, __m128 y) {
    const __m128 top = _mm_sub_ps(s.p10, s.p00), bottom = _mm_sub_ps(s.p11, s.p01), left = _mm_sub_ps(s.p01, s.p00);
    const __m128 down = _mm_add_ps(left, _mm_mul_ps(_mm_sub_ps(bottom, top), x));
    const __m128 half = _mm_sub_ps(s.p00, _mm_set1_ps(kRaise - 0.5F));
    const __m128 value = _mm_add_ps(_mm_add_ps(half, _mm_mul_ps(top, x)), _mm_mul_ps(down, y));
    return {_mm_cvttps_epi32(_mm_sub_ps(value, _mm_set1_ps(kDoubt))),
            _mm_cvttps_epi32(_mm_add_ps(value, _mm_set1_ps(kDoubt)))};
}

/// What a later row of the turned picture will read: the way from a sample to the one below it is the way to the
/// next one, turned by a quarter.
std::ptrdiff_t BytesAhead(const LinearPath& path, int32 channels) {
    constexpr double kRows = 4.0;
    return static_cast<std::ptrdiff_t>(kRows * path.step.u) * path.srcStep -
           static_cast<std::ptrdiff_t>(kRows * path.step.v) * channels;
}

/// Asks for it in time. Nothing is read, so the address may lie anywhere.
void Expect(const uint8* pixel, std::ptrdiff_t ahead) {
    const auto address = reinterpret_cast<std::uintptr_t>(pixel) + static_cast<std::uintptr_t>(ahead);
    _mm_prefetch(reinterpret_cast<const char*>(address), _MM_HINT_T0);
}

/// Three channels: two pixels at once.
struct Pair {
    static constexpr int32 kCount = 2;

    static __m128 Raised(__m128i words) { return _mm_castsi128_ps(_mm_unpacklo_epi16(words, _mm_set1_epi16(0x4B00))); }

    /// The fourth lane counts for nothing.
    static WholeNumbers Sample(const uint8* pixel, std::ptrdiff_t step, __m128 x, __m128 y) {
        const __m128i zero = _mm_setzero_si128();
        const __m128i upper = _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixel)), zero);
        const __m128i lower = _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixel + step)), zero);
        return Lerp({Raised(upper), Raised(_mm_srli_si128(upper, 6)), Raised(lower), Raised(_mm_srli_si128(lower, 6))},
                    x, y);
    }

    /// Writes the pixels and one byte after them. False, with nothing written, where there is doubt.
    static bool Write(const LinearPath& path, std::ptrdiff_t ahead, const __m128i (&at)[kCount], uint8* to) {
        const std::ptrdiff_t step = path.srcStep;
        const TwoPlaces p = FindTwo(at[0], at[1], _mm_set_epi32(0, path.srcStep, 0, 3));
        Expect(path.src + p.offsets[0], ahead);
        const __m128 f = p.fractions;
        const WholeNumbers first =
            Sample(path.src + p.offsets[0], step, _mm_shuffle_ps(f, f, 0x00), _mm_shuffle_ps(f, f, 0x55));
        const WholeNumbers second =
            Sample(path.src + p.offsets[1], step, _mm_shuffle_ps(f, f, 0xAA), _mm_shuffle_ps(f, f, 0xFF));
        const __m128i words = _mm_packs_epi32(first.least, second.least);
        const __m128i certain = _mm_cmpeq_epi16(words, _mm_packs_epi32(first.most, second.most));
        constexpr int32 kThreeLanesEach = 0x3F3F;
        if ((_mm_movemask_epi8(certain) & kThreeLanesEach) != kThreeLanesEach) return false;
        const __m128i bytes = _mm_packus_epi16(words, words);
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
    static int32 Corners(const uint8* pixel, std::ptrdiff_t step) {
        uint16 upper, lower;
        std::memcpy(&upper, pixel, sizeof upper);
        std::memcpy(&lower, pixel + step, sizeof lower);
        return static_cast<int32>(uint32{upper} | uint32{lower} << 16);
    }

    static __m128 Raised(__m128i bytes) { return _mm_or_ps(_mm_castsi128_ps(bytes), _mm_set1_ps(kRaise)); }

    static bool Write(const LinearPath& path, std::ptrdiff_t ahead, const __m128i (&at)[kCount], uint8* to) {
        const std::ptrdiff_t step = path.srcStep;
        const __m128i distances = _mm_set_epi32(0, path.srcStep, 0, 1);
        const TwoPlaces p = FindTwo(at[0], at[1], distances), q = FindTwo(at[2], at[3], distances);
        Expect(path.src + p.offsets[0], ahead);
        const __m128 x = _mm_shuffle_ps(p.fractions, q.fractions, _MM_SHUFFLE(2, 0, 2, 0));
        const __m128 y = _mm_shuffle_ps(p.fractions, q.fractions, _MM_SHUFFLE(3, 1, 3, 1));
        const __m128i corners =
            _mm_setr_epi32(Corners(path.src + p.offsets[0], step), Corners(path.src + p.offsets[1], step),
                           Corners(path.src + q.offsets[0], step), Corners(path.src + q.offsets[1], step));
        const __m128i low = _mm_set1_epi32(255);
        const WholeNumbers whole =
            Lerp({Raised(_mm_and_si128(corners, low)), Raised(_mm_and_si128(_mm_srli_epi32(corners, 8), low)),
                  Raised(_mm_and_si128(_mm_srli_epi32(corners, 16), low)), Raised(_mm_srli_epi32(corners, 24))},
                 x, y);
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

/// Writes pixels of a piece that lies inside, but at least the last one not; how many are left.
template <int32 Channels>
int64 SamplePiece(const LinearPath& path, SourcePosition& at, int64 count, uint8* to) {
    using Block = typename BlockOf<Channels>::Type;
    const __m128d step = _mm_setr_pd(path.step.u, path.step.v);
    const __m128i fixedStep = InFixedPoint(path.step);
    __m128d exact = _mm_setr_pd(at.u, at.v);
    __m128i fixed = InFixedPoint(at);
    const std::ptrdiff_t ahead = BytesAhead(path, Channels);
    for (; count > Block::kCount; count -= Block::kCount, to += Block::kCount * Channels) {
        __m128d exacts[Block::kCount];
        __m128i fixeds[Block::kCount];
        for (int32 i = 0; i < Block::kCount; ++i) {
            exacts[i] = exact;
            fixeds[i] = fixed;
            exact = _mm_add_pd(exact, step);
            fixed = _mm_add_epi64(fixed, fixedStep);
        }
        if (Block::Write(path, ahead, fixeds, to)) continue;
        for (int32 i = 0; i < Block::kCount; ++i) {
            SampleOne<Channels>(path, PositionOf(exacts[i]), to + std::ptrdiff_t{i} * Channels);
        }
    }
    at = PositionOf(exact);
    return count;
}

#endif

template <int32 Channels>
void SampleExactly(const LinearPath& path, SourcePosition& at, int64 count, uint8* to) {
    for (; count > 0; --count, to += Channels) {
        SampleOne<Channels>(path, at, to);
        at.u += path.step.u;
        at.v += path.step.v;
    }
}

/// What a wide kernel leaves to the doubles.
template <int32 Channels>
void SampleFrom(const TurnedPath& path, double u, double v, uint8* to) {
    SampleOne<Channels>({path.src, path.srcSize, path.srcStep, {path.uStep, path.vStep}}, {u, v}, to);
}

template <int32 Channels>
TurnedPath TurnedPathOf(const LinearPath& path) {
    return {path.src,
            path.srcSize,
            path.srcStep,
            path.step.u,
            path.step.v,
            BytesAhead(path, Channels),
            SampleFrom<Channels>};
}

bool Offsets32(const LinearPath& path) {
    return path.srcSize.height <= std::numeric_limits<int32>::max() / path.srcStep;
}

#ifdef __SSE2__
/// Whether both rows lie inside, as a kernel for both wants them.
bool LieInside(const LinearPath& path, const TurnedStart (&rows)[kTurnedRows], int64 count) {
    if (!Offsets32(path) || count > kLongestWidePiece) return false;
    for (const TurnedStart& row : rows) {
        if (!LiesInside(path, {row.u, row.v}, count)) return false;
    }
    return true;
}
#endif

template <int32 Channels>
auto TurnedRow() {
    return Channels == 3 ? CurrentRowKernels().turnedRow3 : CurrentRowKernels().turnedRow1;
}

} // namespace

template <int32 Channels>
void SampleLinearly(const LinearPath& path, SourcePosition& at, int64 count, uint8* to) {
    const LinearPath way = path; // which nothing that is written can change
    const TurnedPath turned = TurnedPathOf<Channels>(path);
    const auto turnedRow = Offsets32(path) ? TurnedRow<Channels>() : nullptr;
#ifdef __SSE2__
    constexpr int64 kShortestPiece = 8;
    const int64 longest = turnedRow != nullptr ? kLongestWidePiece : kLongestPiece;
    int64 piece = longest;
    while (count > kShortestPiece) {
        piece = std::min(piece, count);
        const bool inside = LiesInside(way, at, piece);
        if (!inside && piece > kShortestPiece) { // the edge may be at its end alone
            piece /= 2;
            continue;
        }
        int64 rest = piece;
        if (inside && turnedRow != nullptr) rest = turnedRow(turned, at.u, at.v, rest, to);
        if (inside) rest = SamplePiece<Channels>(way, at, rest, to + (piece - rest) * Channels);
        SampleExactly<Channels>(way, at, rest, to + (piece - rest) * Channels);
        to += piece * Channels;
        count -= piece;
        piece = longest;
    }
#endif
    SampleExactly<Channels>(way, at, count, to);
}

template <int32 Channels>
void SampleRowsLinearly(const LinearPath& path, TurnedStart (&rows)[kTurnedRows], int64 count) {
#ifdef __SSE2__
    const auto together = Channels == 3 ? CurrentRowKernels().turnedRows3 : CurrentRowKernels().turnedRows1;
    if (together != nullptr && LieInside(path, rows, count) && together(TurnedPathOf<Channels>(path), rows, count)) {
        return;
    }
#endif
    for (TurnedStart& row : rows) {
        SourcePosition at{row.u, row.v};
        SampleLinearly<Channels>(path, at, count, row.to);
        row.u = at.u;
        row.v = at.v;
    }
}

template void SampleLinearly<1>(const LinearPath& path, SourcePosition& at, int64 count, uint8* to);
template void SampleLinearly<3>(const LinearPath& path, SourcePosition& at, int64 count, uint8* to);
template void SampleRowsLinearly<1>(const LinearPath& path, TurnedStart (&rows)[kTurnedRows], int64 count);
template void SampleRowsLinearly<3>(const LinearPath& path, TurnedStart (&rows)[kTurnedRows], int64 count);

} // namespace orvane
