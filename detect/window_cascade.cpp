#include "detect/window_cascade.h"

#include "detect/classifier_file.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace orvane {
namespace {

/// The living windows of a row, word by word: those of a group are read before any that it keeps is written.
class RowBits {
public:
    RowBits(uint64* row, int32 firstWord, int32 endWord) : row_(row), word_(firstWord), end_(endWord) {}

    uint32 At(int32 first) {
        for (; word_ < first / 64; ++word_) Write();
        const int32 shift = first % 64;
        uint64 bits = row_[word_] >> shift;
        if (shift != 0 && word_ + 1 < end_) bits |= row_[word_ + 1] << (64 - shift);
        return static_cast<uint32>(bits);
    }

    /// For the group of the last At.
    void Keep(int32 first, uint32 kept) {
        const int32 shift = first % 64;
        here_ |= uint64{kept} << shift;
        if (shift != 0) next_ |= uint64{kept} >> (64 - shift);
    }

    void Finish() {
        for (; word_ < end_; ++word_) Write();
    }

private:
    void Write() {
        row_[word_] = here_;
        here_ = next_;
        next_ = 0;
    }

    uint64* row_;
    int32 word_;
    int32 end_;
    uint64 here_ = 0;
    uint64 next_ = 0;
};

void SetBit(uint64* row, int32 at) { row[at / 64] |= uint64{1} << at % 64; }

/// The lower `count` bits cleared; all for 64 and more.
uint64 WithoutLowest(uint64 bits, int32 count) { return count < 64 ? bits >> count << count : 0; }

} // namespace

bool WindowCascade::Serves(const ClassifierTables& classifier, int32 scaledHeight) {
    const CascadePlan& plan = classifier.plan;
    if (!plan.usable || plan.stages.empty()) return false;
    // The inner rectangle of the last window must end inside the sums.
    if (classifier.maxFeatureWidth < classifier.windowWidth - 1) return false;
    if (classifier.maxFeatureHeight < classifier.windowHeight - 1) return false;
    // A strip as wide as the window and as high as the scale must be a whole number that a float holds.
    constexpr int64 kExact = 1 << 24;
    return int64{255} * (classifier.windowWidth + 1) * scaledHeight < kExact;
}

int32 WindowCascade::StageCount() const { return static_cast<int32>(classifier_.plan.stages.size()); }

bool WindowCascade::Reserve(int32 stride) {
    constexpr int32 kTileWindows = kTileRows * kTileWords * 64;
    stride_ = stride;
    return norms_.Allocate(kTileRows * stride) && sums_.Allocate(kTileRows * stride) &&
           starts_.Allocate(kTileWindows) && verdicts_.Allocate(kTileWindows) && decided_.Allocate(kTileWindows) &&
           ResolveStages();
}

bool WindowCascade::ResolveStages() {
    const CascadePlan& plan = classifier_.plan;
    if (!stages_.Allocate(StageCount())) return false;
    if (!corners_.Allocate(4 * std::max<int64>(1, static_cast<int64>(plan.rects.size())))) return false;
    int32* corner = corners_.data();
    for (const ImageRect& r : plan.rects) {
        const int32 top = r.y * stride_, bottom = (r.y + r.height) * stride_;
        for (const int32 offset : {bottom + r.x + r.width, bottom + r.x, top + r.x + r.width, top + r.x})
            *corner++ = offset;
    }
    for (int32 i = 0; i < StageCount(); ++i) {
        const PlannedStage& stage = plan.stages[static_cast<std::size_t>(i)];
        ResolvedStage& resolved = stages_[i];
        std::copy(std::begin(stage.stumpCounts), std::end(stage.stumpCounts), resolved.stumpCounts);
        resolved.stumps = plan.stumps.data() + stage.firstStump;
        resolved.corners = corners_.data() + std::ptrdiff_t{4} * stage.firstRect;
        resolved.weights = plan.weights.data() + stage.firstRect;
        resolved.continues = stage.continues;
        resolved.failsBelow = stage.failsBelow;
        resolved.passesFrom = stage.passesFrom;
    }
    return true;
}

void WindowCascade::Decide(ScaleRows& rows, int32 height) {
    for (int32 word = 0; word < rows.Words(); word += kTileWords) {
        for (int32 y = 0; y < height; y += kTileRows) {
            Tile tile{y, std::min(kTileRows, height - y), word, std::min(word + kTileWords, rows.Words()), {}, 0};
            DecideTile(rows, tile);
        }
    }
}

void WindowCascade::DecideTile(ScaleRows& rows, Tile& tile) {
    // Windows whose sums are not to be trusted are decided to the end at once and stand aside meanwhile.
    int32 decided = 0;
    for (int32 stage = 0; stage < StageCount(); ++stage) {
        CollectGroups(rows, tile);
        if (tile.groups == 0) break;
        if (stage == 0) FindNorms(rows, tile);
        kernels_.stage(stages_[stage], rows.SumRow(tile.y), norms_.data(), sums_.data(), starts_.data(), tile.groups,
                       verdicts_.data());
        decided = ClearFailed(rows, tile, stage, decided);
    }
    for (int32 i = 0; i < decided; ++i) SetBit(rows.EdgeRow(decided_[i].y), decided_[i].x);
}

/// Groups of neighbouring windows of a row that hold all living ones; each begins at a living one.
void WindowCascade::CollectGroups(ScaleRows& rows, Tile& tile) {
    int32* start = starts_.data();
    for (int32 row = 0; row < tile.height; ++row) {
        const uint64* alive = rows.EdgeRow(tile.y + row);
        int32 next = 0; // the first window that no group holds
        for (int32 word = tile.firstWord; word < tile.endWord; ++word) {
            const int32 base = 64 * word;
            uint64 rest = WithoutLowest(alive[word], std::max(next - base, 0));
            while (rest != 0) {
                const int32 bit = std::countr_zero(rest);
                *start++ = row * stride_ + base + bit;
                next = base + bit + kernels_.lanes;
                rest = WithoutLowest(rest, bit + kernels_.lanes);
            }
        }
        tile.groupsEnd[row] = static_cast<int32>(start - starts_.data());
    }
    tile.groups = tile.groupsEnd[tile.height - 1];
}

void WindowCascade::FindNorms(const ScaleRows& rows, const Tile& tile) {
    const int32 width = classifier_.windowWidth - 2, height = classifier_.windowHeight - 2;
    const int32 top = tile.y + 1, bottom = top + height;
    kernels_.norms({rows.SumRow(top) + 1, rows.SumRow(bottom) + 1, rows.SquaresRow(top) + 1,
                    rows.SquaresRow(bottom) + 1, width, static_cast<float>(width * height)},
                   starts_.data(), tile.groups, norms_.data());
}

/// Goes by the verdicts of a stage. The number of windows decided to the end, of which `decided` were so before.
int32 WindowCascade::ClearFailed(ScaleRows& rows, const Tile& tile, int32 stage, int32 decided) {
    for (int32 row = 0; row < tile.height; ++row) decided = ClearFailedOfRow(rows, tile, row, stage, decided);
    return decided;
}

int32 WindowCascade::ClearFailedOfRow(ScaleRows& rows, const Tile& tile, int32 row, int32 stage, int32 decided) {
    const int32 y = tile.y + row;
    const int32 firstGroup = row > 0 ? tile.groupsEnd[row - 1] : 0;
    if (firstGroup == tile.groupsEnd[row]) return decided;
    const int32 end = 64 * tile.endWord; // what a group has beyond is not the tile's
    RowBits bits(rows.EdgeRow(y), tile.firstWord, tile.endWord);
    for (int32 i = firstGroup; i < tile.groupsEnd[row]; ++i) {
        const int32 first = starts_[i] - row * stride_;
        const uint32 group = (1U << std::min(kernels_.lanes, end - first)) - 1;
        const GroupVerdict& verdict = verdicts_[i];
        const uint32 living = bits.At(first) & group;
        const uint32 doubtful = living & (verdict.closeSums | verdict.closeStumps);
        uint32 kept = living & verdict.passes & ~doubtful;
        for (uint32 rest = doubtful; rest != 0; rest &= rest - 1) {
            const int32 lane = std::countr_zero(rest);
            const int32 x = first + lane;
            ++doubts_;
            // Where the stumps are certain the sum that goes on is good, and this stage alone is in doubt.
            const bool toTheEnd = (verdict.closeStumps >> lane & 1) != 0;
            const bool passes =
                Passes(stage, toTheEnd ? StageCount() - 1 : stage, rows.SumRow(y) + x, TrainedNorm(rows, x, y));
            if (passes && toTheEnd) decided_[decided++] = {x, y};
            if (passes && !toTheEnd) kept |= 1U << lane;
        }
        bits.Keep(first, kept);
    }
    bits.Finish();
    return decided;
}

/// Whether a window passes some stages, in the trained arithmetic. The sums of a plan are exact in double, so that the
/// order of the additions does not matter.
bool WindowCascade::Passes(int32 from, int32 to, const float* window, double norm) const {
    const auto continues = [&](int32 stage) { return stages_[stage].continues; };
    int32 stage = from;
    while (continues(stage)) --stage;
    double sum = 0.0;
    for (; stage <= to; ++stage) {
        sum = TrainedSum(stage, window, norm) + (continues(stage) ? sum : 0.0);
        if (stage >= from && sum < classifier_.stageThreshold[static_cast<std::size_t>(stage)]) return false;
    }
    return true;
}

/// What a stage adds to the sum.
double WindowCascade::TrainedSum(int32 stage, const float* window, double norm) const {
    const CascadePlan& plan = classifier_.plan;
    const PlannedStage& planned = plan.stages[static_cast<std::size_t>(stage)];
    auto stump = static_cast<std::size_t>(planned.firstStump);
    auto rect = static_cast<std::size_t>(planned.firstRect);
    const int32* corner = stages_[stage].corners;
    double sum = 0.0;
    for (int32 rects = 1; rects <= kMostRects; ++rects) {
        for (int32 n = planned.stumpCounts[rects - 1]; n > 0; --n, ++stump) {
            double e = 0.0;
            for (int32 r = 0; r < rects; ++r, ++rect, corner += 4) {
                // A whole number that a float holds.
                const float within = (window[corner[0]] - window[corner[1]]) - (window[corner[2]] - window[corner[3]]);
                e += static_cast<double>(within) * plan.trainedWeights[rect];
            }
            const bool below = e < static_cast<double>(plan.trainedThresholds[stump]) * norm;
            sum += below ? plan.stumps[stump].below : plan.stumps[stump].above;
        }
    }
    return sum;
}

/// As `primRectStdDev_32f_C1` has it.
float WindowCascade::TrainedNorm(const ScaleRows& rows, int32 x, int32 y) const {
    const int32 width = classifier_.windowWidth - 2, height = classifier_.windowHeight - 2;
    const float *top = rows.SumRow(y + 1) + x + 1, *bottom = rows.SumRow(y + 1 + height) + x + 1;
    const uint32 *squaresTop = rows.SquaresRow(y + 1) + x + 1, *squaresBottom = rows.SquaresRow(y + 1 + height) + x + 1;
    const double area = static_cast<double>(width) * height;
    const double mean = (static_cast<double>(top[0]) - top[width] - bottom[0] + bottom[width]) / area;
    // Modulo 2^32, which is more than the squares of a window.
    const uint32 squares = squaresTop[0] - squaresTop[width] - squaresBottom[0] + squaresBottom[width];
    return static_cast<float>(std::sqrt(std::max(squares / area - mean * mean, 0.0)));
}

} // namespace orvane
