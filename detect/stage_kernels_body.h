// The stages' text, for neighbouring windows in groups.
#pragma once

#include "detect/scan_kernels.h"
#include "detect/wide_vectors.h"

#include <utility>

namespace orvane::ORVANE_KERNELS {
namespace {

constexpr auto kLanes = static_cast<int32>(sizeof(Floats) / sizeof(float));
constexpr int32 kShortLanes = 2 * kWideNumbers;
// Few groups are left over where four go together, and the first-level cache is larger where the widest vectors are.
#if ORVANE_WIDEST
constexpr int32 kTileRows = 16;
#else
constexpr int32 kTileRows = 8;
#endif

template <typename Body, int32... Numbers>
[[gnu::always_inline]] inline void ForEachOf(std::integer_sequence<int32, Numbers...>, const Body& body) {
    (body(std::integral_constant<int32, Numbers>{}), ...);
}

/// Calls the body with each number from 0 on as a constant. What a loop indexes would go through memory from one kind
/// of stumps to the next.
template <int32 Count, typename Body>
[[gnu::always_inline]] inline void ForEach(const Body& body) {
    ForEachOf(std::make_integer_sequence<int32, Count>{}, body);
}

inline uint32 BitsAtLeast(const FloatPair& v, float least) {
    return BitsAtLeast(v.low, least) | BitsAtLeast(v.high, least) << kWideNumbers;
}

inline uint32 BitsBelow(const FloatPair& v, float limit) {
    return BitsBelow(v.low, limit) | BitsBelow(v.high, limit) << kWideNumbers;
}

/// Some groups that share the reading of the stumps.
template <int32 Groups>
struct Running {
    const float* window[Groups];
    Floats norm[Groups];
    Floats sum[Groups];
    Floats nearest[Groups]; // the smallest difference that decided a stump
};

inline Floats Between(const float* window, std::ptrdiff_t plus, std::ptrdiff_t minus) {
    return Load<Floats>(window + plus) - Load<Floats>(window + minus);
}

template <StumpKind Kind, int32 Groups>
inline void RunStumps(int32 count, const PlannedStump*& stump, const int32*& corners, const float*& weights,
                      Running<Groups>& r) {
    constexpr int32 kRects = kRectsOfKind[Kind];
    for (int32 i = 0; i < count; ++i, ++stump, corners += kCornersOfKind[Kind], weights += kRects) {
        Floats difference[Groups];
        ForEach<Groups>([&](auto g) { difference[g] = r.norm[g] * stump->minusThreshold; });
        if constexpr (Kind == kRectsAlongASide) {
            const std::ptrdiff_t a = corners[0], b = corners[1], d = corners[2], e = corners[3], m = corners[4],
                                 n = corners[5];
            const Floats first = Splat<Floats>(weights[0]), second = Splat<Floats>(weights[1]);
            ForEach<Groups>([&](auto g) {
                const Floats side = Between(r.window[g], d, e);
                difference[g] = MultiplyAdd(Between(r.window[g], a, b) - side, first, difference[g]);
                difference[g] = MultiplyAdd(Between(r.window[g], m, n) - side, second, difference[g]);
            });
        } else {
            for (int32 rect = 0; rect < kRects; ++rect) {
                const int32* c = corners + std::ptrdiff_t{4} * rect;
                const std::ptrdiff_t a = c[0], b = c[1], d = c[2], e = c[3];
                const Floats weight = Splat<Floats>(weights[rect]);
                ForEach<Groups>([&](auto g) {
                    const Floats sum = Between(r.window[g], a, b) - Between(r.window[g], d, e);
                    difference[g] = MultiplyAdd(sum, weight, difference[g]);
                });
            }
        }
        const Floats more = Splat<Floats>(stump->belowMore);
        ForEach<Groups>([&](auto g) {
            r.sum[g] = AddBelow(r.sum[g], difference[g], more);
            r.nearest[g] = Nearer(r.nearest[g], difference[g]);
        });
    }
}

/// Sums that are no numbers neither pass nor fail.
template <typename Sums>
inline GroupVerdict VerdictOf(const Sums& sums, const ResolvedStage& stage) {
    const uint32 passes = BitsAtLeast(sums, stage.passesFrom);
    return {passes, ~(passes | BitsBelow(sums, stage.failsBelow))};
}

template <int32 Groups>
inline void RunGroups(const ResolvedStage& stage, const float* window, const float* norms, float* sums,
                      const int32* starts, GroupVerdict* verdicts) {
    Running<Groups> r;
    ForEach<Groups>([&](auto g) {
        r.window[g] = window + starts[g];
        r.norm[g] = Load<Floats>(norms + starts[g]);
        r.sum[g] = Splat<Floats>(stage.allAbove);
        r.nearest[g] = Splat<Floats>(3e38F);
    });
    const PlannedStump* stump = stage.stumps;
    const int32* corners = stage.corners;
    const float* weights = stage.weights;
    const int32* counts = stage.stumpCounts;
    RunStumps<kOneRect>(counts[kOneRect], stump, corners, weights, r);
    RunStumps<kRectsAlongASide>(counts[kRectsAlongASide], stump, corners, weights, r);
    RunStumps<kTwoRects>(counts[kNestedRects] + counts[kTwoRects], stump, corners, weights, r); // here they are alike
    RunStumps<kThreeRects>(counts[kThreeRects], stump, corners, weights, r);
    RunStumps<kFourRects>(counts[kFourRects], stump, corners, weights, r);
    ForEach<Groups>([&](auto g) {
        Floats sum = UnlessDoubtful(r.sum[g], r.nearest[g]);
        if (stage.continues) sum += Load<Floats>(sums + starts[g]);
        Store(sum, sums + starts[g]);
        verdicts[g] = VerdictOf(sum, stage);
    });
}

void RunStage(const ResolvedStage& stage, const float* window, const float* norms, float* sums, const int32* starts,
              int32 count, GroupVerdict* verdicts) {
    int32 i = 0;
#if ORVANE_WIDEST
    for (; i + 4 <= count && i + 5 != count; i += 4) RunGroups<4>(stage, window, norms, sums, starts + i, verdicts + i);
#endif
    for (; i + 3 <= count && i + 4 != count; i += 3) RunGroups<3>(stage, window, norms, sums, starts + i, verdicts + i);
    for (; i + 2 <= count; i += 2) RunGroups<2>(stage, window, norms, sums, starts + i, verdicts + i);
    if (i < count) RunGroups<1>(stage, window, norms, sums, starts + i, verdicts + i);
}

// --- a first stage that takes short sums ---

inline FloatPair LoadPair(const float* from) {
    return Parted({Load<WideFloats>(from), Load<WideFloats>(from + kWideNumbers)});
}

inline void StorePair(const FloatPair& v, float* to) {
    Store(v.low, to);
    Store(v.high, to + kWideNumbers);
}

template <int32 Groups>
struct ShortRunning {
    const uint16* window[Groups];
    FloatPair norm[Groups], sum[Groups], nearest[Groups]; // in the order in which words become numbers
};

inline WideVector Between(const uint16* window, std::ptrdiff_t plus, std::ptrdiff_t minus) {
    return SubtractWords(Load<WideVector>(window + plus), Load<WideVector>(window + minus));
}

inline WideVector SumWithin(const uint16* window, const int32* c) {
    return SubtractWords(Between(window, c[0], c[1]), Between(window, c[2], c[3]));
}

/// Sums of two parts, times multiples of the unit.
struct PartNumbers {
    WideVector low, high;
};

inline PartNumbers SumsOfParts(WideVector first, WideVector second, const int16* multiples) {
    int32 two;
    __builtin_memcpy(&two, multiples, sizeof two);
    const WideVector both = reinterpret_cast<WideVector>(WideInts{} + two);
    return {SumsOfProducts(LowPairs(first, second), both), SumsOfProducts(HighPairs(first, second), both)};
}

/// What a stump compares with 0, before the norm's part comes to it.
template <StumpKind Kind>
inline PartNumbers SumsOfParts(const uint16* window, const int32* corners, const PartWeights& weights) {
    const int32* c = corners;
    const int16* multiples = weights.multiples;
    if constexpr (Kind == kRectsAlongASide) {
        const WideVector first = Between(window, c[0], c[1]), side = Between(window, c[2], c[3]),
                         second = Between(window, c[4], c[5]);
        return SumsOfParts(SubtractWords(first, second), SubtractWords(second, side), multiples);
    }
    const WideVector a = SumWithin(window, c), b = SumWithin(window, c + 4);
    if constexpr (Kind == kNestedRects) return SumsOfParts(SubtractWords(a, b), b, multiples);
    if constexpr (Kind == kTwoRects) return SumsOfParts(a, b, multiples);
    const PartNumbers two = SumsOfParts(a, b, multiples);
    const WideVector third = SumWithin(window, c + 8);
    const WideVector fourth = Kind == kFourRects ? SumWithin(window, c + 12) : WideVector{};
    const PartNumbers more = SumsOfParts(third, fourth, multiples + 2);
    return {AddNumbers(two.low, more.low), AddNumbers(two.high, more.high)};
}

template <StumpKind Kind, int32 Groups>
inline void RunShortStumps(int32 count, const PlannedStump*& stump, const PartWeights*& weights, const int32*& corners,
                           ShortRunning<Groups>& r) {
    for (int32 i = 0; i < count; ++i, ++stump, ++weights, corners += kCornersOfKind[Kind]) {
        const WideFloats threshold = Splat<WideFloats>(stump->minusThreshold), unit = Splat<WideFloats>(weights->unit);
        const WideFloats more = Splat<WideFloats>(stump->belowMore);
        ForEach<Groups>([&](auto g) {
            const PartNumbers sums = SumsOfParts<Kind>(r.window[g], corners, *weights);
            const WideFloats low = MultiplyAdd(FloatsOf(sums.low), unit, r.norm[g].low * threshold);
            const WideFloats high = MultiplyAdd(FloatsOf(sums.high), unit, r.norm[g].high * threshold);
            r.sum[g] = {AddBelow(r.sum[g].low, low, more), AddBelow(r.sum[g].high, high, more)};
            r.nearest[g] = {Nearer(r.nearest[g].low, low), Nearer(r.nearest[g].high, high)};
        });
    }
}

template <int32 Groups>
inline void RunShortGroups(const ResolvedStage& stage, const uint16* window, const float* norms, float* sums,
                           const int32* starts, GroupVerdict* verdicts) {
    const WideFloats far = Splat<WideFloats>(3e38F), all = Splat<WideFloats>(stage.allAbove);
    ShortRunning<Groups> r;
    ForEach<Groups>([&](auto g) {
        r.window[g] = window + starts[g];
        r.norm[g] = LoadPair(norms + starts[g]);
        r.sum[g] = {all, all};
        r.nearest[g] = {far, far};
    });
    const PlannedStump* stump = stage.stumps;
    const PartWeights* weights = stage.parts;
    const int32* corners = stage.corners;
    const int32* counts = stage.stumpCounts;
    RunShortStumps<kRectsAlongASide>(counts[kRectsAlongASide], stump, weights, corners, r);
    RunShortStumps<kNestedRects>(counts[kNestedRects], stump, weights, corners, r);
    RunShortStumps<kTwoRects>(counts[kTwoRects], stump, weights, corners, r);
    RunShortStumps<kThreeRects>(counts[kThreeRects], stump, weights, corners, r);
    RunShortStumps<kFourRects>(counts[kFourRects], stump, weights, corners, r);
    ForEach<Groups>([&](auto g) {
        const FloatPair sum =
            Ordered({UnlessDoubtful(r.sum[g].low, r.nearest[g].low), UnlessDoubtful(r.sum[g].high, r.nearest[g].high)});
        StorePair(sum, sums + starts[g]);
        verdicts[g] = VerdictOf(sum, stage);
    });
}

/// With fewer registers two groups, which could share the reading of the stumps, take no less.
void RunShortStage(const ResolvedStage& stage, const uint16* window, const float* norms, float* sums,
                   const int32* starts, int32 count, GroupVerdict* verdicts) {
    int32 i = 0;
#if ORVANE_WIDEST
    for (; i + 2 <= count; i += 2) RunShortGroups<2>(stage, window, norms, sums, starts + i, verdicts + i);
#endif
    for (; i < count; ++i) RunShortGroups<1>(stage, window, norms, sums, starts + i, verdicts + i);
}

} // namespace
} // namespace orvane::ORVANE_KERNELS
