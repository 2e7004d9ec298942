#include "detect/window_cascade.h"

#include "detect/classifier_file.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

namespace orvane {
namespace {

/// Of 1 to 32 bits.
uint32 LowestBits(int32 count) { return ~0U >> (32 - count); }

/// The lower `count` bits cleared; all for 64 and more.
uint64 WithoutLowest(uint64 bits, int32 count) { return count < 64 ? bits >> count << count : 0; }

} // namespace

bool WindowCascade::Serves(const ClassifierTables& classifier, ImageSize scaled) {
    const CascadePlan& plan = classifier.plan;
    if (!plan.usable || plan.stages.empty()) return false;
    // The inner rectangle of the last window must end inside the sums.
    if (classifier.maxFeatureWidth < classifier.windowWidth - 1) return false;
    if (classifier.maxFeatureHeight < classifier.windowHeight - 1) return false;
    // Strips as wide as the window and as high as the scale, and the other way, must be numbers that a float holds.
    constexpr int64 kExact = 1 << 24;
    return int64{255} * (classifier.windowWidth + 1) * scaled.height < kExact &&
           int64{255} * (classifier.windowHeight + 1) * scaled.width < kExact;
}

int32 WindowCascade::StageCount() const { return static_cast<int32>(classifier_->plan.stages.size()); }

bool WindowCascade::Reserve(int32 stride, int32 height) {
    stride_ = stride;
    const int64 windows = int64{stride} * height;
    const int64 tile = int64{stride} * kernels_->tileRows;
    const int64 tileWindows = int64{kernels_->tileRows} * kTileWords * 64;
    return norms_.Ensure(windows) && sums_.Ensure(tile) && groups_[0].Ensure(tileWindows) &&
           groups_[1].Ensure(tileWindows) && verdicts_.Ensure(tileWindows) && ResolveStages();
}

bool WindowCascade::ResolveStages() {
    const CascadePlan& plan = classifier_->plan;
    if (!stages_.Ensure(StageCount())) return false;
    if (!corners_.Ensure(4 * std::max<int64>(1, static_cast<int64>(plan.rects.size())))) return false;
    const ImageRect* rect = plan.rects.data();
    int32* corner = corners_.data();
    for (int32 i = 0; i < StageCount(); ++i) {
        const PlannedStage& stage = plan.stages[static_cast<std::size_t>(i)];
        ResolvedStage& resolved = stages_[i];
        std::copy(std::begin(stage.stumpCounts), std::end(stage.stumpCounts), resolved.stumpCounts);
        resolved.stumps = plan.stumps.data() + stage.firstStump;
        if (i == 0) resolved.parts = plan.parts.data();
        resolved.corners = corner;
        for (int32 kind = 0; kind < kStumpKinds; ++kind) {
            for (int32 n = stage.stumpCounts[kind]; n > 0;
                 --n, rect += kRectsOfKind[kind], corner += kCornersOfKind[kind])
                FindCorners(static_cast<StumpKind>(kind), rect, stride_, corner);
        }
        resolved.weights = plan.weights.data() + stage.firstRect;
        resolved.continues = stage.continues;
        resolved.allAbove = stage.allAbove;
        resolved.failsBelow = stage.failsBelow;
        resolved.passesFrom = stage.passesFrom;
    }
    return true;
}

void WindowCascade::Decide(ScaleRows& rows, int32 height) {
    FindNorms(rows, height);
    // More windows to a group pay while many are left, which is in the first stage.
    beginsShort_ = rows.SumsAreExact() && classifier_->plan.takesShortSums;
    for (int32 word = 0; word < rows.Words(); word += kTileWords) {
        for (int32 y = 0; y < height; y += kernels_->tileRows) {
            const int32 tileRows = std::min(kernels_->tileRows, height - y);
            DecideTile(rows, {y, tileRows, word, std::min(word + kTileWords, rows.Words())});
        }
    }
}

void WindowCascade::DecideTile(ScaleRows& rows, const Tile& tile) {
    int32 groups = TakeGroups(rows, tile);
    for (int32 stage = 0; stage < StageCount() && groups > 0; ++stage) {
        RunStage(rows, tile, stage, groups);
        groups = DropFailed(rows, tile, stage, groups);
    }
    for (int32 i = 0; i < groups; ++i) {
        const int32 first = present_->starts[i];
        for (uint32 rest = present_->living[i]; rest != 0; rest &= rest - 1) {
            const int32 x = first % stride_ + std::countr_zero(rest);
            rows.EdgeRow(tile.y + first / stride_)[x / 64] |= uint64{1} << x % 64;
        }
    }
}

void WindowCascade::RunStage(const ScaleRows& rows, const Tile& tile, int32 stage, int32 groups) {
    const float* norms = norms_.data() + std::ptrdiff_t{tile.y} * stride_;
    if (stage == 0 && beginsShort_) {
        kernels_->shortStage(stages_[stage], rows.ShortSumRow(tile.y), norms, sums_.data(), present_->starts.data(),
                             groups, verdicts_.data());
    } else {
        kernels_->stage(stages_[stage], rows.SumRow(tile.y), norms, sums_.data(), present_->starts.data(), groups,
                        verdicts_.data());
    }
}

/// Moves the tile's windows from the edge map to groups, each of which begins at a living one.
int32 WindowCascade::TakeGroups(ScaleRows& rows, const Tile& tile) {
    const int32 lanes = LanesOf(0);
    const uint32 all = LowestBits(lanes);
    int32 count = 0;
    for (int32 row = 0; row < tile.height; ++row) {
        uint64* edges = rows.EdgeRow(tile.y + row);
        int32 next = 0; // the first window that no group holds
        for (int32 word = tile.firstWord; word < tile.endWord; ++word) {
            uint64 rest = edges[word];
            edges[word] = 0;
            const int32 base = 64 * word;
            if (next > base) { // the last group of the word before reaches into this one
                const int32 reach = next - base;
                present_->living[count - 1] |= static_cast<uint32>(rest << (lanes - reach)) & all;
                rest = WithoutLowest(rest, reach);
            }
            while (rest != 0) {
                const int32 bit = std::countr_zero(rest);
                present_->starts[count] = row * stride_ + base + bit;
                present_->living[count] = static_cast<uint32>(rest >> bit) & all;
                ++count;
                next = base + bit + lanes;
                rest = WithoutLowest(rest, bit + lanes);
            }
        }
    }
    return count;
}

/// Of whole words of windows, row by row: what reads memory in its order need not wait for it.
void WindowCascade::FindNorms(ScaleRows& rows, int32 height) {
    const int32 innerWidth = classifier_->windowWidth - 2, innerHeight = classifier_->windowHeight - 2;
    for (int32 y = 0; y < height; ++y) {
        const uint64* edges = rows.EdgeRow(y);
        const int32 top = y + 1, bottom = top + innerHeight;
        for (int32 word = 0; word < rows.Words(); ++word) {
            if (edges[word] == 0) continue;
            const int32 x = 64 * word;
            kernels_->norms({rows.SumRow(top) + x + 1, rows.SumRow(bottom) + x + 1, rows.SquaresRow(top) + x + 1,
                             rows.SquaresRow(bottom) + x + 1, innerWidth, static_cast<float>(innerWidth * innerHeight),
                             rows.SumsAreExact()},
                            64 - std::countl_zero(edges[word]), norms_.data() + std::ptrdiff_t{y} * stride_ + x);
        }
    }
}

/// Goes by the verdict on a group; those of its windows that live on.
uint32 WindowCascade::KeptOf(const ScaleRows& rows, const Tile& tile, int32 stage, int32 group) {
    const uint32 living = present_->living[group];
    const GroupVerdict& verdict = verdicts_[group];
    const uint32 doubtful = living & verdict.doubtful;
    uint32 kept = living & verdict.passes & ~doubtful;
    if (doubtful != 0) [[unlikely]]
        kept |= ResolveDoubts(rows, tile, stage, present_->starts[group], doubtful);
    return kept;
}

/// Gathers what a stage left into new groups. Their number.
int32 WindowCascade::DropFailed(const ScaleRows& rows, const Tile& tile, int32 stage, int32 groups) {
    const int32 lanes = LanesOf(stage + 1); // at most as many as before
    const int32 count =
        lanes < LanesOf(stage) ? MakeNarrower(rows, tile, stage, groups, lanes) : DropEmpty(rows, tile, stage, groups);
    std::swap(present_, next_);
    return count;
}

/// Into groups of fewer windows, each of which begins at a living one. No two have a window in common, since the next
/// stage adds to its sum.
int32 WindowCascade::MakeNarrower(const ScaleRows& rows, const Tile& tile, int32 stage, int32 groups, int32 lanes) {
    const uint32 all = LowestBits(lanes);
    Groups& left = *next_;
    int32 count = 0;
    int32 next = -1; // the first window that no new group holds; rows are further apart than a group reaches
    for (int32 i = 0; i < groups; ++i) {
        const int32 first = present_->starts[i];
        uint32 kept = KeptOf(rows, tile, stage, i);
        if (first < next) {
            const uint32 shared = kept & LowestBits(next - first);
            left.living[count - 1] |= shared << (first - left.starts[count - 1]);
            kept ^= shared;
        }
        while (kept != 0) {
            const int32 bit = std::countr_zero(kept);
            left.starts[count] = first + bit;
            left.living[count] = kept >> bit & all;
            ++count;
            next = first + bit + lanes;
            kept &= ~(all << bit);
        }
    }
    return count;
}

/// Keeps the groups that have living windows, as they are. Neighbours of two that one could hold are too few to be
/// worth a branch on each, or that a group waits for the one before.
int32 WindowCascade::DropEmpty(const ScaleRows& rows, const Tile& tile, int32 stage, int32 groups) {
    int32 count = 0;
    for (int32 i = 0; i < groups; ++i) {
        const uint32 kept = KeptOf(rows, tile, stage, i);
        next_->starts[count] = present_->starts[i];
        next_->living[count] = kept; // the next group takes its place where none is left
        count += kept != 0 ? 1 : 0;
    }
    return count;
}

/// Those of a group's doubtful windows that pass the stage in the trained arithmetic, whose sum goes on in place of the
/// one that was in doubt.
uint32 WindowCascade::ResolveDoubts(const ScaleRows& rows, const Tile& tile, int32 stage, int32 first,
                                    uint32 doubtful) {
    const int32 y = tile.y + first / stride_;
    const double threshold = classifier_->stageThreshold[static_cast<std::size_t>(stage)];
    uint32 passes = 0;
    for (uint32 rest = doubtful; rest != 0; rest &= rest - 1) {
        const int32 lane = std::countr_zero(rest);
        const int32 x = first % stride_ + lane;
        ++doubts_;
        const double sum = TrainedSum(stage, rows.SumRow(y) + x, TrainedNorm(rows, x, y));
        if (sum < threshold) continue;
        sums_[first + lane] = static_cast<float>(sum);
        passes |= 1U << lane;
    }
    return passes;
}

/// The sum of a stage and of those that it goes on from. It is exact in double, so that the order of the additions does
/// not matter.
double WindowCascade::TrainedSum(int32 stage, const float* window, double norm) const {
    double sum = TrainedPart(stage, window, norm);
    while (stages_[stage].continues) sum += TrainedPart(--stage, window, norm);
    return sum;
}

/// What a stage adds to the sum.
double WindowCascade::TrainedPart(int32 stage, const float* window, double norm) const {
    const CascadePlan& plan = classifier_->plan;
    const PlannedStage& planned = plan.stages[static_cast<std::size_t>(stage)];
    auto stump = static_cast<std::size_t>(planned.firstStump);
    auto rect = static_cast<std::size_t>(planned.firstRect);
    const int32* corners = stages_[stage].corners;
    double sum = 0.0;
    for (int32 kind = 0; kind < kStumpKinds; ++kind) {
        for (int32 n = planned.stumpCounts[kind]; n > 0; --n, ++stump, corners += kCornersOfKind[kind]) {
            double e = 0.0;
            for (int32 r = 0; r < kRectsOfKind[kind]; ++r, ++rect) {
                const int32* plus = corners + std::ptrdiff_t{4} * r;
                const int32* minus = kind == kRectsAlongASide ? corners + 2 : plus + 2;
                // A whole number that a float holds.
                const float within = (window[plus[0]] - window[plus[1]]) - (window[minus[0]] - window[minus[1]]);
                e += static_cast<double>(within) * plan.trainedWeights[rect];
            }
            const bool below = e < static_cast<double>(plan.trainedThresholds[stump]) * norm;
            sum += plan.trainedValues[stump].Of(below);
        }
    }
    return sum;
}

/// As `primRectStdDev_32f_C1` has it.
float WindowCascade::TrainedNorm(const ScaleRows& rows, int32 x, int32 y) const {
    const int32 width = classifier_->windowWidth - 2, height = classifier_->windowHeight - 2;
    const float *top = rows.SumRow(y + 1) + x + 1, *bottom = rows.SumRow(y + 1 + height) + x + 1;
    const uint32 *squaresTop = rows.SquaresRow(y + 1) + x + 1, *squaresBottom = rows.SquaresRow(y + 1 + height) + x + 1;
    const double area = static_cast<double>(width) * height;
    const double mean = (static_cast<double>(top[0]) - top[width] - bottom[0] + bottom[width]) / area;
    // Modulo 2^32, which is more than the squares of a window.
    const uint32 squares = squaresTop[0] - squaresTop[width] - squaresBottom[0] + squaresBottom[width];
    return static_cast<float>(std::sqrt(std::max(squares / area - mean * mean, 0.0)));
}

} // namespace orvane
