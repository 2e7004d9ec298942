// The kernels' text, compiled once for each instruction set by the files that include it.
#pragma once

#include "detect/stage_kernels_body.h"
#include "primitives/ridge_vectors.h"
#include "primitives/running_sums.h"

namespace orvane::ORVANE_KERNELS {
namespace {

using Ints = int32 __attribute__((vector_size(kBytes)));
using UnsignedInts = uint32 __attribute__((vector_size(kBytes)));
using Words = int16 __attribute__((vector_size(kBytes)));
using WideWords = int16 __attribute__((vector_size(sizeof(WideVector))));

constexpr auto kNumbers = static_cast<int32>(kBytes / 4);
constexpr int32 kWideWords = 2 * kWideNumbers;

void RunSample(const uint8* from, const int32* columns, int32 width, uint8* row) {
    int32 x = 0;
    for (; x + 4 <= width; x += 4) {
        const uint8 four[4] = {from[columns[x]], from[columns[x + 1]], from[columns[x + 2]], from[columns[x + 3]]};
        __builtin_memcpy(row + x, four, 4);
    }
    for (; x < width; ++x) row[x] = from[columns[x]];
}

#if ORVANE_WIDE
/// `Pieces` to a group, or as many as it has.
template <int32 Pieces>
void RunPieces(const uint8* from, const SamplePieces& p, uint8* row) {
    const auto load = [](const uint8* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); };
    const int32 pieces = Pieces > 0 ? Pieces : p.pieces;
    const int32* offset = p.offsets;
    const uint8* places = p.places;
    for (int32 group = 0; group < p.groups; ++group, row += kPiece) {
        __m128i samples = _mm_setzero_si128();
        for (int32 i = 0; i < pieces; ++i, ++offset, places += kPiece)
            samples = _mm_or_si128(samples, _mm_shuffle_epi8(load(from + *offset), load(places)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(row), samples);
    }
}

void RunSamplePieces(const uint8* from, const SamplePieces& pieces, uint8* row) {
    constexpr void (*kFew[])(const uint8*, const SamplePieces&, uint8*) = {
        RunPieces<0>, RunPieces<1>, RunPieces<2>, RunPieces<3>, RunPieces<4>, RunPieces<5>, RunPieces<6>, RunPieces<7>};
    constexpr int32 kFewCount = sizeof kFew / sizeof kFew[0];
    kFew[pieces.pieces < kFewCount ? pieces.pieces : 0](from, pieces, row);
}
#endif

/// The area times the sum of squares less the square of the sum, which is exact in double; 0 where the rounding of
/// large sums made it less.
inline WideDoubles SpreadOf(WideDoubles sum, WideDoubles squares, WideDoubles area) {
    return AtLeastZero(squares * area - sum * sum);
}

/// Sums of the levels and of their squares.
struct WindowSums {
    WideFloats levels;
    WideUnsignedInts squares; // modulo 2^32 on the way; what a window has is less
};

/// The variances times the square of the area. Of a window that is not larger, and of exact sums, they are from 0 to
/// 2^32, so that the products may be modulo that.
constexpr int32 kMostAreaOfNumbers = 513; // 127.5 times that is below 2^16

inline WideFloats SpreadInNumbers(const WindowSums& of, uint32 area) {
    const auto sum = reinterpret_cast<WideUnsignedInts>(__builtin_convertvector(of.levels, WideInts));
    return __builtin_convertvector(of.squares * area - sum * sum, WideFloats);
}

inline WideFloats SpreadInDoubles(const WindowSums& of, WideDoubles area) {
    const auto squares = reinterpret_cast<WideVector>(of.squares);
    return FloatsOf(SpreadOf(LowDoubles(of.levels), LowDoubles(squares), area),
                    SpreadOf(HighDoubles(of.levels), HighDoubles(squares), area));
}

template <typename Spread>
inline void RunNorms(const InnerRectRows& rows, int32 count, float* norms, const Spread& spread) {
    const float inverse = 1.0F / rows.area;
    for (int32 left = 0; left < count; left += kWideNumbers) {
        const std::ptrdiff_t right = left + rows.width;
        const auto levelsAt = [](const float* from) { return Load<WideFloats>(from); };
        const auto squaresAt = [](const uint32* from) { return Load<WideUnsignedInts>(from); };
        const WindowSums of{(levelsAt(rows.sumTop + left) - levelsAt(rows.sumTop + right)) -
                                (levelsAt(rows.sumBottom + left) - levelsAt(rows.sumBottom + right)),
                            (squaresAt(rows.squaresTop + left) - squaresAt(rows.squaresTop + right)) -
                                (squaresAt(rows.squaresBottom + left) - squaresAt(rows.squaresBottom + right))};
        Store(SquareRoots(spread(of)) * inverse, norms + left);
    }
}

void RunNorms(const InnerRectRows& rows, int32 count, float* norms) {
    if (rows.areExact && rows.area <= static_cast<float>(kMostAreaOfNumbers)) {
        const auto area = static_cast<uint32>(rows.area);
        RunNorms(rows, count, norms, [area](const WindowSums& of) { return SpreadInNumbers(of, area); });
    } else {
        const WideDoubles area = rows.area - WideDoubles{};
        RunNorms(rows, count, norms, [area](const WindowSums& of) { return SpreadInDoubles(of, area); });
    }
}

#if ORVANE_WIDE
/// Running sums of a row's levels, sixteen at a time, which their words have room for.
class LevelSums {
public:
    LevelSums() {
        Words middle;
        for (int32 i = 0; i < kWords; ++i) middle[i] = static_cast<int16>(-kMiddleLevel * (i + 1));
        lessMiddle_ = reinterpret_cast<Vector>(middle);
    }

    void Next(Vector levels) {
        Vector sums = levels;
        sums = AddWords(sums, _mm256_slli_si256(sums, 2));
        sums = AddWords(sums, _mm256_slli_si256(sums, 4));
        sums = AddWords(sums, _mm256_slli_si256(sums, 8));
        sums = AddWords(sums, LastWord(_mm256_permute2x128_si256(sums, sums, 0x08))); // shifts stay within the halves
        low_ = AddNumbers(_mm256_cvtepu16_epi32(_mm256_castsi256_si128(sums)), before_);
        high_ = AddNumbers(_mm256_cvtepu16_epi32(_mm256_extracti128_si256(sums, 1)), before_);
        short_ = AddWords(sums, lessMiddle_);
        const Vector total = LastWord(_mm256_permute2x128_si256(sums, sums, 0x11));
        before_ = AddNumbers(before_, _mm256_srli_epi32(total, 16));
        constexpr auto kMiddles = static_cast<int32>(kMiddleLevel * kWords);
        lessMiddle_ = AddWords(lessMiddle_, SubtractWords(total, SplatWord(kMiddles)));
    }

    Floats Low() const { return FloatsOf(low_); }
    Floats High() const { return FloatsOf(high_); }
    /// Of levels less kMiddleLevel.
    Vector Short() const { return short_; }

private:
    /// That of each half, in all its places.
    static Vector LastWord(Vector v) { return _mm256_shuffle_epi8(v, _mm256_set1_epi16(0x0F0E)); }

    Vector before_ = Zero(); // the sum of all before, as numbers
    Vector lessMiddle_;      // the same in words, less kMiddleLevel for each up to a place
    Vector low_, high_, short_;
};

/// Running sums of squares: of pairs, which leave out every other one, and of those.
struct SquareSums {
    Vector before = Zero();
    Vector low, high;

    void Next(Vector levels) {
        const Vector seconds = _mm256_srli_epi32(levels, 16);
        const Vector odd = AddNumbers(RunningSums(Squares(levels)), before);
        const Vector even = SubtractNumbers(odd, Squares(seconds));
        before = _mm256_permutevar8x32_epi32(odd, _mm256_set1_epi32(7));
        const Vector a = _mm256_unpacklo_epi32(even, odd), b = _mm256_unpackhi_epi32(even, odd);
        low = _mm256_permute2x128_si256(a, b, 0x20);
        high = _mm256_permute2x128_si256(a, b, 0x31);
    }
};

void RunIntegral(const uint8* pixels, int32 width, const SumRows& rows) {
    const SumRows r = rows;
    LevelSums sums;
    SquareSums squares;
    for (int32 x = 0; x < width; x += kWords) {
        const Vector levels = WordsOf(pixels + x);
        sums.Next(levels);
        squares.Next(levels);
        Store(sums.Low() + Load<Floats>(r.sumAbove + x), r.sum + x);
        Store(sums.High() + Load<Floats>(r.sumAbove + x + kNumbers), r.sum + x + kNumbers);
        Store(AddWords(sums.Short(), LoadBytes(r.shortSumAbove + x)), r.shortSum + x);
        Store(AddNumbers(squares.low, LoadBytes(r.squaresAbove + x)), r.squares + x);
        Store(AddNumbers(squares.high, LoadBytes(r.squaresAbove + x + kNumbers)), r.squares + x + kNumbers);
    }
}
#else
/// Adds the lower halves of whole numbers to those of the row above.
inline void StoreLowHalves(Vector numbers, const uint16* above, uint16* to) {
    const Vector low = _mm_srai_epi32(_mm_slli_epi32(numbers, 16), 16);
    const Vector before = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(above));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), AddWords(PackNumbers(low, low), before));
}

void RunIntegral(const uint8* pixels, int32 width, const SumRows& rows) {
    const SumRows r = rows;
    Prefix sums, squareSums;
    Ints middle; // what is taken off the levels up to each pixel
    for (int32 i = 0; i < kNumbers; ++i) middle[i] = kMiddleLevel * (i + 1);
    for (int32 x = 0; x < width; x += kNumbers, middle += kMiddleLevel * kNumbers) {
        const Vector values = PixelNumbers(pixels + x);
        const Ints rowSums = reinterpret_cast<Ints>(sums.Next(values));
        const Vector rowSquares = squareSums.Next(Squares(values));
        Store(__builtin_convertvector(rowSums, Floats) + Load<Floats>(r.sumAbove + x), r.sum + x);
        StoreLowHalves(reinterpret_cast<Vector>(rowSums - middle), r.shortSumAbove + x, r.shortSum + x);
        Store(reinterpret_cast<UnsignedInts>(rowSquares) + Load<UnsignedInts>(r.squaresAbove + x), r.squares + x);
    }
}
#endif

#if ORVANE_WIDEST
inline WideWords WideWordsOf(const uint8* bytes) {
    return reinterpret_cast<WideWords>(_mm512_maskz_cvtepu8_epi16(~0U, LoadBytes(bytes)));
}
inline WideWords UpperProduct(WideWords v, int16 factor) {
    const auto factors = reinterpret_cast<WideVector>(WideWords{} + factor);
    return reinterpret_cast<WideWords>(_mm512_maskz_mulhi_epu16(~0U, reinterpret_cast<WideVector>(v), factors));
}
#else
inline WideWords WideWordsOf(const uint8* bytes) { return reinterpret_cast<WideWords>(WordsOf(bytes)); }
inline WideWords UpperProduct(WideWords v, int16 factor) {
    return reinterpret_cast<WideWords>(UpperProductOfWords(reinterpret_cast<Vector>(v), SplatWord(factor)));
}
#endif
inline WideWords Absolute(WideWords v) { return v < 0 ? -v : v; }

/// Sums and differences of columns, weighted as the operator has them, with a few more at their end. Those of many
/// pixels, so that none is read while it is on its way to memory.
struct Columns {
    static constexpr int32 kMost = 512;
    int16 sum[kMost + kWideWords];
    int16 difference[kMost + kWideWords];
};

inline void FindColumns(const uint8* above, const uint8* here, const uint8* below, int32 count, Columns& columns) {
    for (int32 x = 0; x < count + kWideWords; x += kWideWords) {
        const WideWords a = WideWordsOf(above + x), b = WideWordsOf(here + x), c = WideWordsOf(below + x);
        Store(a + c + (b + b), columns.sum + x);
        Store(c - a, columns.difference + x);
    }
}

inline WideWords DirectionOf(WideWords dx, WideWords dy, WideWords ax, WideWords ay) {
    const WideWords flat = UpperProduct(ax, kFlat);
    const WideWords steep = flat + (ax + ax);
    static_assert(kAlongX == 0 && kRising == kFalling - 1);
    const WideWords diagonal = kFalling + ((dx ^ dy) >> 15);
    return ay > steep ? WideWords{} + kAlongY : diagonal & (ay > flat);
}

void RunGradients(const EdgeRows& rows, int32 low, const GradientRow& out) {
    const WideWords limit = WideWords{} + static_cast<int16>(low);
    Columns columns;
    for (int32 first = 0; first < rows.width; first += Columns::kMost) {
        const int32 left = (rows.width - first + 63) & ~63, count = left < Columns::kMost ? left : Columns::kMost;
        FindColumns(rows.above + first, rows.here + first, rows.below + first, count, columns);
        for (int32 x = 0; x < count; x += kWideWords) {
            const int16 *sum = columns.sum + x, *difference = columns.difference + x;
            const WideWords middle = Load<WideWords>(difference + 1);
            const WideWords dx = Load<WideWords>(sum + 2) - Load<WideWords>(sum);
            const WideWords dy = Load<WideWords>(difference) + Load<WideWords>(difference + 2) + (middle + middle);
            const WideWords ax = Absolute(dx), ay = Absolute(dy), m = ax + ay;
            Store(m & (m > limit), out.magnitude + first + x);
            Store(DirectionOf(dx, dy, ax, ay), out.direction + first + x);
        }
    }
    out.magnitude[rows.width] = 0;
}

/// Ridges among 64 pixels, and those of them above a limit, a bit each.
struct Ridges {
    uint64 all, strong;
};

#if ORVANE_WIDEST
/// As AreRidges has it.
inline Ridges RidgesAt(const int16* above, const GradientRow& row, const int16* below, int32 x, int16 limit) {
    Ridges ridges{0, 0};
    for (int32 i = 0; i < 64; i += kWideWords, x += kWideWords) {
        const int16 *up = above + x, *here = row.magnitude + x, *down = below + x;
        const auto all = [](int16 v) { return reinterpret_cast<WideVector>(WideWords{} + v); };
        const auto direction = Load<WideVector>(row.direction + x);
        const __mmask32 rising = _mm512_cmpeq_epi16_mask(direction, all(kRising));
        const __mmask32 axial = _mm512_cmplt_epi16_mask(direction, all(kRising));
        const __mmask32 alongX = _mm512_cmpeq_epi16_mask(direction, all(kAlongX));
        const auto choose = [&](const int16* falling, const int16* rise, const int16* alongY, const int16* level) {
            auto v = Load<WideVector>(falling);
            v = _mm512_mask_loadu_epi16(v, rising, rise);
            v = _mm512_mask_loadu_epi16(v, axial, alongY);
            return _mm512_mask_loadu_epi16(v, alongX, level);
        };
        const WideVector first = choose(up - 1, up + 1, up, here - 1);
        const WideVector second = choose(down + 1, down - 1, down, here + 1);
        const auto m = Load<WideVector>(here);
        const __mmask32 isLargest = _mm512_cmpgt_epi16_mask(m, first) &
                                    (_mm512_cmpgt_epi16_mask(m, second) | (axial & _mm512_cmpeq_epi16_mask(m, second)));
        ridges.all |= uint64{isLargest} << i;
        ridges.strong |= uint64{isLargest & _mm512_cmpgt_epi16_mask(m, all(limit))} << i;
    }
    return ridges;
}
#else
inline Ridges RidgesAt(const int16* above, const GradientRow& here, const int16* below, int32 x, int16 limit) {
    Ridges ridges{0, 0};
    for (int32 i = 0; i < 64; i += kBytes) {
        Vector all[2], strong[2];
        for (int32 half = 0; half < 2; ++half, x += kWords) {
            const Vector direction = LoadBytes(here.direction + x), rising = SplatWord(kRising);
            const DirectionMasks masks = {AreAbove(rising, direction), EqualWords(direction, SplatWord(kAlongX)),
                                          EqualWords(direction, rising)};
            all[half] = AreRidges(above + x, here.magnitude + x, below + x, masks);
            strong[half] = Both(all[half], AreAbove(LoadBytes(here.magnitude + x), SplatWord(limit)));
        }
        ridges.all |= uint64{SetBits(PackMasks(all[0], all[1]))} << i;
        ridges.strong |= uint64{SetBits(PackMasks(strong[0], strong[1]))} << i;
    }
    return ridges;
}
#endif

void RunRidges(const int16* above, const GradientRow& here, const int16* below, int32 width, int32 high, uint64* ridges,
               uint64* strong) {
    for (int32 x = 0; x < width; x += 64) {
        const Ridges found = RidgesAt(above, here, below, x, static_cast<int16>(high));
        const uint64 inside = width - x < 64 ? (uint64{1} << (width - x)) - 1 : ~uint64{0};
        *ridges++ = found.all & inside;
        *strong++ = found.strong & inside;
    }
}

} // namespace
} // namespace orvane::ORVANE_KERNELS
