// The text of the kernels that look at single pixels. A block of kBytes pixels at a time; what is left of a row goes
// pixel by pixel.
//
// Hue and saturation are taken in floats, which give what the doubles of a single pixel give: the whole part of
// q + 0.499999. Both quotients q are multiples of 1 / (2 d), d at most 255: either their fraction is a half at most,
// and nothing near 0.5 added to it makes up 1, or it exceeds the half by 1/510 at least. A quotient by an inverse of
// 12 bits that one step of Newton's has improved errs by 4e-7 of itself, at most 255: 1e-4. So with 0.499 added it
// stays on the same side: 0.9991 at most, 1.0008 at least.
#pragma once

#include "primitives/byte_vectors.h"
#include "primitives/row_kernels.h"

namespace orvane::ORVANE_KERNELS {
namespace {

// --- hue, saturation and value ---

inline int32 Larger(int32 a, int32 b) { return a > b ? a : b; }
inline int32 Smaller(int32 a, int32 b) { return a < b ? a : b; }

inline uint8 SaturationOf(int32 range, int32 largest) {
    return static_cast<uint8>(static_cast<double>(range) / largest * 255.0 + 0.499999);
}

/// Hue, saturation and value, in this order, of a pixel.
inline void PixelToHsv(const uint8* pixel, uint8* hsv) {
    const int32 c0 = pixel[0], c1 = pixel[1], c2 = pixel[2];
    const int32 largest = Larger(Larger(c0, c1), c2), smallest = Smaller(Smaller(c0, c1), c2);
    hsv[0] = hsv[1] = 0;
    hsv[2] = static_cast<uint8>(largest);
    if (largest == smallest) return;
    const double inverse = 1.0 / (largest - smallest);
    const double r = (largest - c0) * inverse;
    const double g = (largest - c1) * inverse;
    const double b = (largest - c2) * inverse;
    // The later channel wins where two tie for the largest.
    double hue = c2 == largest ? 4.0 + g - r : c1 == largest ? 2.0 + r - b : b - g;
    hue = hue * 255.0 / 6.0;
    if (hue < 0.0) hue += 255.0;
    hsv[0] = static_cast<uint8>(hue + 0.499999);
    hsv[1] = SaturationOf(largest - smallest, largest);
}

/// The inverse of what is 1 at least; of 0, that of 1.
inline Floats InverseOf(Vector numbers) {
    const Floats v = LargestFloat(FloatsOf(numbers), SplatFloat(1.0F));
    const Floats rough = RoughInverse(v);
    return Product(rough, Difference(SplatFloat(2.0F), Product(v, rough)));
}

inline Vector Rounded(Floats quotient) { return Truncated(Sum(quotient, SplatFloat(0.499F))); }

/// 255 * range / largest of the pixels of half the words that a vector has; 0 where the largest is 0.
inline Vector SaturationOfNumbers(Vector range, Vector largest) {
    return Rounded(Product(Product(FloatsOf(range), SplatFloat(255.0F)), InverseOf(largest)));
}

inline Vector SaturationOfWords(Vector range, Vector largest) {
    return PackNumbers(SaturationOfNumbers(LowNumbers(range), LowNumbers(largest)),
                       SaturationOfNumbers(HighNumbers(range), HighNumbers(largest)));
}

inline Vector SaturationOfBytes(Vector range, Vector largest) {
    return PackWords(SaturationOfWords(LowWords(range), LowWords(largest)),
                     SaturationOfWords(HighWords(range), HighWords(largest)));
}

/// 42.5 * sixths / range; 0 where the range is 0, where the sixths are 0 too.
inline Vector HueOfNumbers(Vector sixths, Vector range) {
    return Rounded(Product(Product(FloatsOf(sixths), SplatFloat(42.5F)), InverseOf(range)));
}

/// From the words of the two channels of which the hue is the difference, of the range, and of the range where a
/// third and where two thirds of the circle come before.
inline Vector HueOfWords(Vector more, Vector less, Vector range, Vector oneThird, Vector twoThirds) {
    const Vector before = AddWords(ShiftWords<1>(oneThird), ShiftWords<2>(twoThirds));
    const Vector place = AddWords(SubtractWords(more, less), before);
    const Vector wholeCircle = AddWords(ShiftWords<1>(range), ShiftWords<2>(range));
    const Vector sixths = AddWords(place, Both(NegativeWords(place), wholeCircle));
    return PackNumbers(HueOfNumbers(LowNumbers(sixths), LowNumbers(range)),
                       HueOfNumbers(HighNumbers(sixths), HighNumbers(range)));
}

inline ThreeVectors HsvOf(const ThreeVectors& pixels) {
    const Vector largest = Largest(Largest(pixels.a, pixels.b), pixels.c);
    const Vector range = Less(largest, Smallest(Smallest(pixels.a, pixels.b), pixels.c));
    const Vector isC = Equal(pixels.c, largest);
    const Vector isB = ButNot(Equal(pixels.b, largest), isC);
    const Vector more = Choose(isC, pixels.a, Choose(isB, pixels.c, pixels.b));
    const Vector less = Choose(isC, pixels.b, Choose(isB, pixels.a, pixels.c));
    const Vector oneThird = Both(range, isB), twoThirds = Both(range, isC);
    const Vector hue = PackWords(
        HueOfWords(LowWords(more), LowWords(less), LowWords(range), LowWords(oneThird), LowWords(twoThirds)),
        HueOfWords(HighWords(more), HighWords(less), HighWords(range), HighWords(oneThird), HighWords(twoThirds)));
    return {hue, SaturationOfBytes(range, largest), largest};
}

void RunHsv(const uint8* src, uint8* dst, int32 width) {
    int32 x = 0;
    for (; width - x >= kBytes; x += kBytes, src += 3 * kBytes, dst += 3 * kBytes)
        StorePixels(HsvOf(Channels(src)), dst);
    for (; x < width; ++x, src += 3, dst += 3) PixelToHsv(src, dst);
}

/// The largest channel, and how far the smallest lies below.
struct LevelsOfPixels {
    Vector largest, range;
};

inline LevelsOfPixels LevelsOf(const ThreeVectors& pixels) {
    const Vector largest = Largest(Largest(pixels.a, pixels.b), pixels.c);
    return {largest, Less(largest, Smallest(Smallest(pixels.a, pixels.b), pixels.c))};
}

void RunValueAndSaturation(const uint8* src, uint8* values, uint8* saturations, int32 width) {
    int32 x = 0;
    for (; width - x >= kBytes; x += kBytes, src += 3 * kBytes) {
        const LevelsOfPixels of = LevelsOf(Channels(src));
        StoreBytes(values + x, of.largest);
        StoreBytes(saturations + x, SaturationOfBytes(of.range, of.largest));
    }
    for (; x < width; ++x, src += 3) {
        const int32 largest = Larger(Larger(src[0], src[1]), src[2]);
        const int32 smallest = Smaller(Smaller(src[0], src[1]), src[2]);
        values[x] = static_cast<uint8>(largest);
        saturations[x] = largest == smallest ? uint8{0} : SaturationOf(largest - smallest, largest);
    }
}

/// Pairs of bytes, in the order of the pixels.
inline void StorePairs(Vector low, Vector high, uint16* to) {
#if ORVANE_WIDE
    low = _mm256_permute4x64_epi64(low, 0xD8);
    high = _mm256_permute4x64_epi64(high, 0xD8);
    StoreBytes(to, _mm256_unpacklo_epi8(low, high));
    StoreBytes(to + kBytes / 2, _mm256_unpackhi_epi8(low, high));
#else
    StoreBytes(to, _mm_unpacklo_epi8(low, high));
    StoreBytes(to + kBytes / 2, _mm_unpackhi_epi8(low, high));
#endif
}

/// What a table of noughts and ones has at 64 places, in four parts side by side.
inline uint64 BitsAt(const uint8* table, const uint16* places) {
    uint64 a = 0, b = 0, c = 0, d = 0;
    for (int32 i = 15; i >= 0; --i) {
        a = 2 * a + table[places[i]];
        b = 2 * b + table[places[i + 16]];
        c = 2 * c + table[places[i + 32]];
        d = 2 * d + table[places[i + 48]];
    }
    return a | b << 16 | c << 32 | d << 48;
}

void RunMarkColours(const uint8* src, const uint8* table, uint64* to, int32 width) {
    constexpr int32 kPixels = 64;
    uint16 pairs[kPixels];
    int32 x = 0;
    for (; width - x >= kPixels; x += kPixels) {
        for (int32 i = 0; i < kPixels; i += kBytes, src += 3 * kBytes) {
            const LevelsOfPixels of = LevelsOf(Channels(src));
            StorePairs(of.range, of.largest, pairs + i);
        }
        *to++ = BitsAt(table, pairs);
    }
    for (int32 i = 0; i < width - x; ++i, src += 3) {
        const int32 largest = Larger(Larger(src[0], src[1]), src[2]);
        const int32 smallest = Smaller(Smaller(src[0], src[1]), src[2]);
        *to = (i == 0 ? 0 : *to) | uint64{table[256 * largest + (largest - smallest)]} << i;
    }
}

// --- grey ---

constexpr int32 kGreyWeight0 = 1225, kGreyWeight1 = 2404, kGreyWeight2 = 467, kGreyShift = 12;

#if ORVANE_WIDE

/// The grey values of eight pixels as numbers, four in each half of the vector. Reads 28 bytes.
inline Vector GreyOfEight(const uint8* src) {
    const Vector pixels = LoadHalves(src, src + 12);
    const Vector firstTwo = _mm256_shuffle_epi8(
        pixels, TwiceTheSame(_mm_setr_epi8(0, -1, 1, -1, 3, -1, 4, -1, 6, -1, 7, -1, 9, -1, 10, -1)));
    const Vector third = _mm256_shuffle_epi8(
        pixels, TwiceTheSame(_mm_setr_epi8(2, -1, -1, -1, 5, -1, -1, -1, 8, -1, -1, -1, 11, -1, -1, -1)));
    const Vector sum =
        _mm256_add_epi32(_mm256_madd_epi16(firstTwo, _mm256_set1_epi32(kGreyWeight0 | kGreyWeight1 << 16)),
                         _mm256_madd_epi16(third, _mm256_set1_epi32(kGreyWeight2)));
    return _mm256_srli_epi32(sum, kGreyShift);
}

/// How many pixels it did. It stops so far before the row's end that a block's last reads stay inside.
inline int32 GreyBlocks(const uint8* src, uint8* dst, int32 width) {
    int32 x = 0;
    for (; width - x > kBytes + 1; x += kBytes, src += 3 * kBytes) {
        const Vector words0 = PackNumbers(GreyOfEight(src), GreyOfEight(src + 24));
        const Vector words1 = PackNumbers(GreyOfEight(src + 48), GreyOfEight(src + 72));
        StoreBytes(dst + x, InOrder(PackWords(words0, words1)));
    }
    return x;
}

#else

/// The pixel at `p` and the byte after it.
inline Vector LoadPixel(const uint8* p) {
    int32 bytes;
    __builtin_memcpy(&bytes, p, sizeof bytes);
    return _mm_cvtsi32_si128(bytes);
}

/// The grey values of four pixels as numbers. Reads the byte after the fourth, with weight 0.
inline Vector GreyOfFour(const uint8* src) {
    const Vector weights =
        _mm_setr_epi16(kGreyWeight0, kGreyWeight1, kGreyWeight2, 0, kGreyWeight0, kGreyWeight1, kGreyWeight2, 0);
    const Vector firstTwo = _mm_unpacklo_epi32(LoadPixel(src), LoadPixel(src + 3));
    const Vector lastTwo = _mm_unpacklo_epi32(LoadPixel(src + 6), LoadPixel(src + 9));
    const __m128 p = _mm_castsi128_ps(_mm_madd_epi16(LowWords(firstTwo), weights));
    const __m128 q = _mm_castsi128_ps(_mm_madd_epi16(LowWords(lastTwo), weights));
    const Vector channels01 = _mm_castps_si128(_mm_shuffle_ps(p, q, _MM_SHUFFLE(2, 0, 2, 0)));
    const Vector channel2 = _mm_castps_si128(_mm_shuffle_ps(p, q, _MM_SHUFFLE(3, 1, 3, 1)));
    return _mm_srli_epi32(_mm_add_epi32(channels01, channel2), kGreyShift);
}

/// How many pixels it did. It stops before the row's last pixel, so that the byte after a block still belongs to it.
inline int32 GreyBlocks(const uint8* src, uint8* dst, int32 width) {
    int32 x = 0;
    for (; width - x > kBytes; x += kBytes, src += 3 * kBytes) {
        const Vector low = PackNumbers(GreyOfFour(src), GreyOfFour(src + 12));
        const Vector high = PackNumbers(GreyOfFour(src + 24), GreyOfFour(src + 36));
        StoreBytes(dst + x, PackWords(low, high));
    }
    return x;
}

#endif

void RunGrey(const uint8* src, uint8* dst, int32 width) {
    int32 x = GreyBlocks(src, dst, width);
    for (src += std::ptrdiff_t{3} * x; x < width; ++x, src += 3) {
        dst[x] =
            static_cast<uint8>((kGreyWeight0 * src[0] + kGreyWeight1 * src[1] + kGreyWeight2 * src[2]) >> kGreyShift);
    }
}

// --- moves of channels ---

void RunSplit(const uint8* src, uint8* const (&planes)[3], int32 width) {
    int32 x = 0;
    for (; width - x >= kBytes; x += kBytes, src += 3 * kBytes) {
        const ThreeVectors pixels = Channels(src);
        StoreBytes(planes[0] + x, pixels.a);
        StoreBytes(planes[1] + x, pixels.b);
        StoreBytes(planes[2] + x, pixels.c);
    }
    for (; x < width; ++x, src += 3) {
        for (int32 c = 0; c < 3; ++c) planes[c][x] = src[c];
    }
}

void RunReverse(const uint8* from, uint8* to, int64 count) {
    int64 x = 0;
#if ORVANE_WIDE
    const Vector last = TwiceTheSame(_mm_setr_epi8(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0));
    const auto reversed = [&](Vector v) { return _mm256_permute4x64_epi64(_mm256_shuffle_epi8(v, last), 0x4E); };
    for (; count - x >= kBytes; x += kBytes, from -= 3 * kBytes, to += 3 * kBytes) {
        const ThreeVectors pixels = Channels(from - 3 * (kBytes - 1));
        StorePixels({reversed(pixels.a), reversed(pixels.b), reversed(pixels.c)}, to);
    }
#endif
    for (; x < count; ++x, from -= 3, to += 3) {
        to[0] = from[0];
        to[1] = from[1];
        to[2] = from[2];
    }
}

void RunSwap(const uint8* src, uint8* dst, const int32* order, int32 width) {
    const int32 first = order[0], second = order[1], third = order[2];
    int32 x = 0;
    for (; width - x >= kBytes; x += kBytes, src += 3 * kBytes, dst += 3 * kBytes) {
        const ThreeVectors pixels = Channels(src);
        const auto channel = [&](int32 c) { return c == 0 ? pixels.a : c == 1 ? pixels.b : pixels.c; };
        StorePixels({channel(first), channel(second), channel(third)}, dst);
    }
    for (; x < width; ++x, src += 3, dst += 3) {
        dst[0] = src[first];
        dst[1] = src[second];
        dst[2] = src[third];
    }
}

/// A block's bytes, each three times.
#if ORVANE_WIDE

template <int32 Part>
inline Vector Thirds() {
    constexpr auto at = [](int32 i) { return static_cast<char>((16 * Part + i) / 3); };
    return TwiceTheSame(_mm_setr_epi8(at(0), at(1), at(2), at(3), at(4), at(5), at(6), at(7), at(8), at(9), at(10),
                                      at(11), at(12), at(13), at(14), at(15)));
}

inline ThreeVectors Tripled(Vector v) {
    const Vector a = _mm256_shuffle_epi8(v, Thirds<0>());
    const Vector b = _mm256_shuffle_epi8(v, Thirds<1>());
    const Vector c = _mm256_shuffle_epi8(v, Thirds<2>());
    return {_mm256_permute2x128_si256(a, b, 0x20), _mm256_permute2x128_si256(c, a, 0x30),
            _mm256_permute2x128_si256(b, c, 0x31)};
}

constexpr uint32 kAllBits = 0xFFFFFFFF;

#else

inline ThreeVectors Tripled(Vector v) { return Unriffle(Unriffle(Unriffle(Unriffle({v, v, v})))); }

constexpr uint32 kAllBits = 0xFFFF;

#endif

/// Most masks have long runs of either kind, which need no look at single pixels.
void RunCopyMasked(const uint8* from, uint8* to, const uint8* mask, int32 width) {
    int32 x = 0;
    for (; width - x >= kBytes; x += kBytes, from += 3 * kBytes, to += 3 * kBytes) {
        const Vector unset = Equal(LoadBytes(mask + x), Zero());
        const uint32 bits = SetBits(unset);
        if (bits == kAllBits) continue;
        if (bits == 0) {
            __builtin_memcpy(to, from, 3 * kBytes);
            continue;
        }
        const ThreeVectors stay = Tripled(unset);
        StoreBytes(to, Choose(stay.a, LoadBytes(to), LoadBytes(from)));
        StoreBytes(to + kBytes, Choose(stay.b, LoadBytes(to + kBytes), LoadBytes(from + kBytes)));
        StoreBytes(to + 2 * kBytes, Choose(stay.c, LoadBytes(to + 2 * kBytes), LoadBytes(from + 2 * kBytes)));
    }
    for (; x < width; ++x, from += 3, to += 3) {
        if (mask[x] != 0) __builtin_memcpy(to, from, 3);
    }
}

void RunCutOut(const uint8* from, uint8* to, const uint8* mask, uint8 level, int32 width) {
    const Vector flat = Splat(level);
    int32 x = 0;
    for (; width - x >= kBytes; x += kBytes, from += 3 * kBytes, to += 3 * kBytes) {
        const Vector unset = Equal(LoadBytes(mask + x), Zero());
        const uint32 bits = SetBits(unset);
        ThreeVectors pixels{flat, flat, flat};
        if (bits != kAllBits) {
            pixels = {LoadBytes(from), LoadBytes(from + kBytes), LoadBytes(from + 2 * kBytes)};
            if (bits != 0) {
                const ThreeVectors cut = Tripled(unset);
                pixels = {Choose(cut.a, flat, pixels.a), Choose(cut.b, flat, pixels.b), Choose(cut.c, flat, pixels.c)};
            }
        }
        StoreBytes(to, pixels.a);
        StoreBytes(to + kBytes, pixels.b);
        StoreBytes(to + 2 * kBytes, pixels.c);
    }
    for (; x < width; ++x, from += 3, to += 3) {
        for (int32 c = 0; c < 3; ++c) to[c] = mask[x] != 0 ? from[c] : level;
    }
}

// --- bytes ---

void RunSetMasked(uint8 value, uint8* to, const uint8* mask, int32 width) {
    int32 x = 0;
    for (; width - x >= kBytes; x += kBytes) {
        const Vector unset = Equal(LoadBytes(mask + x), Zero());
        StoreBytes(to + x, Choose(unset, LoadBytes(to + x), Splat(value)));
    }
    for (; x < width; ++x) to[x] = mask[x] != 0 ? value : to[x];
}

void RunBitAnd(const uint8* from, uint8* to, int32 width) {
    int32 x = 0;
    for (; width - x >= kBytes; x += kBytes) StoreBytes(to + x, Both(LoadBytes(to + x), LoadBytes(from + x)));
    for (; x < width; ++x) to[x] = static_cast<uint8>(to[x] & from[x]);
}

void RunLimit(const uint8* from, uint8* to, const ByteLimits& limits, int32 width) {
    const ByteLimits l = limits; // which nothing that is written can change
    int32 x = 0;
    for (; width - x >= kBytes; x += kBytes) {
        const Vector v = LoadBytes(from + x);
        const Vector enough = Equal(Largest(v, Splat(l.least)), v);
        const Vector notTooMuch = Equal(Smallest(v, Splat(l.most)), v);
        StoreBytes(to + x, Choose(notTooMuch, Choose(enough, v, Splat(l.belowLeast)), Splat(l.aboveMost)));
    }
    for (; x < width; ++x) {
        const uint8 v = from[x];
        to[x] = v > l.most ? l.aboveMost : v < l.least ? l.belowLeast : v;
    }
}

// --- arithmetic on channels ---

/// Three values in turn.
inline ThreeVectors InTurn(const uint8* value) {
    uint8 bytes[3 * kBytes];
    for (int32 i = 0; i < 3 * kBytes; ++i) bytes[i] = value[i % 3];
    return {LoadBytes(bytes), LoadBytes(bytes + kBytes), LoadBytes(bytes + 2 * kBytes)};
}

void RunSubtract(const uint8 (&value)[3], uint8* row, int32 width) {
    const ThreeVectors values = InTurn(value);
    int32 x = 0;
    for (; width - x >= kBytes; x += kBytes, row += 3 * kBytes) {
        StoreBytes(row, LessAtLeastZero(LoadBytes(row), values.a));
        StoreBytes(row + kBytes, LessAtLeastZero(LoadBytes(row + kBytes), values.b));
        StoreBytes(row + 2 * kBytes, LessAtLeastZero(LoadBytes(row + 2 * kBytes), values.c));
    }
    for (; x < width; ++x, row += 3) {
        for (int32 c = 0; c < 3; ++c) row[c] = static_cast<uint8>(Larger(row[c] - value[c], 0));
    }
}

/// A mask of what is neither below nor above.
inline Vector IsWithin(Vector v, Vector lower, Vector upper) { return Equal(Smallest(Largest(v, lower), upper), v); }

void RunCountInRange(const uint8* row, int32 width, const uint8* lower, const uint8* upper, uint32 (&found)[3]) {
    const ThreeVectors from = InTurn(lower), to = InTurn(upper);
    int32 x = 0;
    while (width - x >= kBytes) {
        constexpr int32 kMost = 255; // that a byte counts
        ThreeVectors counts{Zero(), Zero(), Zero()};
        for (int32 i = 0; i < kMost && width - x >= kBytes; ++i, x += kBytes, row += 3 * kBytes) {
            counts.a = Less(counts.a, IsWithin(LoadBytes(row), from.a, to.a));
            counts.b = Less(counts.b, IsWithin(LoadBytes(row + kBytes), from.b, to.b));
            counts.c = Less(counts.c, IsWithin(LoadBytes(row + 2 * kBytes), from.c, to.c));
        }
        uint8 bytes[3 * kBytes];
        StoreBytes(bytes, counts.a);
        StoreBytes(bytes + kBytes, counts.b);
        StoreBytes(bytes + 2 * kBytes, counts.c);
        for (int32 i = 0; i < 3 * kBytes; ++i) found[i % 3] += bytes[i];
    }
    for (; x < width; ++x, row += 3) {
        for (int32 c = 0; c < 3; ++c) found[c] += row[c] >= lower[c] && row[c] <= upper[c] ? 1u : 0u;
    }
}

/// Masks of every third byte, from one on.
inline Vector EveryThirdByte(int32 first) {
    uint8 bytes[kBytes];
    for (int32 i = 0; i < kBytes; ++i) bytes[i] = i % 3 == first ? 255 : 0;
    return LoadBytes(bytes);
}

/// Bytes that each of a vector's places counts before it is full.
constexpr int32 kFullCount = 255;

/// Counts, in every third vector of some pixels, the bytes above each level: place by place.
inline void CountPlaces(const uint8* bytes, int32 blocks, const Vector (&below)[kCountedLevels],
                        Vector (&counts)[kCountedLevels]) {
    Vector sums[kCountedLevels];
    for (Vector& sum : sums) sum = Zero();
    for (int32 i = 0; i < blocks; ++i, bytes += 3 * kBytes) {
        const Vector v = OtherSign(LoadBytes(bytes));
        for (int32 k = 0; k < kCountedLevels; ++k) sums[k] = Less(sums[k], IsMore(v, below[k]));
    }
    for (int32 k = 0; k < kCountedLevels; ++k) counts[k] = sums[k];
}

/// A channel's part of what three vectors have counted at the places of as many pixels as one has bytes.
inline uint32 CountOfChannel(Vector a, Vector b, Vector c, const Vector (&thirds)[3], int32 channel) {
    const auto part = [&](Vector v, int32 bytesBefore) {
        return SumOfEight(Both(v, thirds[(channel + 2 * bytesBefore) % 3])); // 2 is -1 modulo 3
    };
    uint64 sums[kBytes / 8];
    StoreBytes(sums, AddWords(AddWords(part(a, 0), part(b, kBytes)), part(c, 2 * kBytes)));
    uint64 sum = 0;
    for (const uint64 s : sums) sum += s;
    return static_cast<uint32>(sum);
}

void RunCountFrom(const uint8* row, int32 width, const uint8 (&levels)[kCountedLevels],
                  uint32 (&found)[kCountedLevels][3]) {
    Vector below[kCountedLevels];
    for (int32 k = 0; k < kCountedLevels; ++k) below[k] = OtherSign(Splat(static_cast<uint8>(levels[k] - 1)));
    const Vector thirds[3] = {EveryThirdByte(0), EveryThirdByte(1), EveryThirdByte(2)};
    int32 x = 0;
    while (width - x >= kBytes) {
        const int32 blocks = Smaller((width - x) / kBytes, kFullCount);
        Vector counts[3][kCountedLevels];
        for (int32 part = 0; part < 3; ++part) CountPlaces(row + part * kBytes, blocks, below, counts[part]);
        for (int32 k = 0; k < kCountedLevels; ++k) {
            for (int32 c = 0; c < 3; ++c) {
                found[k][c] += CountOfChannel(counts[0][k], counts[1][k], counts[2][k], thirds, c);
            }
        }
        x += blocks * kBytes;
        row += std::ptrdiff_t{3} * blocks * kBytes;
    }
    for (; x < width; ++x, row += 3) {
        for (int32 k = 0; k < kCountedLevels; ++k) {
            for (int32 c = 0; c < 3; ++c) found[k][c] += row[c] >= levels[k] ? 1U : 0U;
        }
    }
}

/// Limits first, in an order that makes 0 of what is no number; what the fraction says then is exact.
inline Vector NearestNumbers(const uint8* floats) {
    const Floats v = SmallestFloat(LargestFloat(LoadFloats(floats), SplatFloat(0.0F)), SplatFloat(255.0F));
    const Vector whole = Truncated(v);
    const Floats fraction = Difference(v, FloatsOf(whole));
    const Floats half = SplatFloat(0.5F);
    const Vector up = Either(IsAbove(fraction, half), Both(IsEqual(fraction, half), OddNumbers(whole)));
    return SubtractNumbers(whole, up);
}

inline uint8 NearestByte(const uint8* at) {
    float v;
    __builtin_memcpy(&v, at, sizeof v);
    v = v > 0.0F ? v : 0.0F;
    v = v < 255.0F ? v : 255.0F;
    const auto whole = static_cast<int32>(v);
    const float fraction = v - static_cast<float>(whole);
    return static_cast<uint8>(whole + (fraction > 0.5F || (fraction == 0.5F && whole % 2 == 1) ? 1 : 0));
}

void RunRoundToBytes(const uint8* floats, uint8* to, int64 count) {
    int64 i = 0;
    for (; count - i >= kBytes; i += kBytes, floats += 4 * kBytes) {
        const Vector low = PackNumbers(NearestNumbers(floats), NearestNumbers(floats + kBytes));
        const Vector high = PackNumbers(NearestNumbers(floats + 2 * kBytes), NearestNumbers(floats + 3 * kBytes));
        StoreBytes(to + i, InOrder(PackWords(low, high)));
    }
    for (; i < count; ++i, floats += 4) to[i] = NearestByte(floats);
}

/// Bytes, once more as words times 256, times a factor. The fraction's product is cut to 8 bits below the whole number,
/// which rounding half up does not see.
inline Vector StretchedWords(Vector bytes, Vector upperBytes, ByteFactor factor) {
    const Vector part = AddWords(UpperProductOfWords(upperBytes, SplatWord(factor.fraction)), SplatWord(128));
    return AddWords(ProductOfWords(bytes, SplatWord(factor.whole)), UpperBytes(part));
}

void RunStretch(const uint8* from, uint8* to, int64 count, uint8 low, ByteFactor factor) {
    int64 i = 0;
    for (; count - i >= kBytes; i += kBytes) {
        const Vector above = LessAtLeastZero(LoadBytes(from + i), Splat(low));
        StoreBytes(to + i, PackWords(StretchedWords(LowWords(above), LowUpperBytes(above), factor),
                                     StretchedWords(HighWords(above), HighUpperBytes(above), factor)));
    }
    for (; i < count; ++i) {
        const int32 above = Larger(from[i] - low, 0);
        const int32 part = (above * factor.fraction >> 8) + 128;
        to[i] = static_cast<uint8>(Smaller(above * factor.whole + (part >> 8), 255));
    }
}

} // namespace
} // namespace orvane::ORVANE_KERNELS
