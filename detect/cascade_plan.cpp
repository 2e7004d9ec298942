// The bounds. A rectangle's sum is a whole number below 2^24 and exact in single precision; so are the differences on
// the way to it. With u = 2^-24, what one rounding may do relative to its result, and M the largest magnitude that a
// comparison of n rectangles can meet: weights and threshold are rounded once and each product once, which is 2 u M in
// all, and each of the n additions is rounded, u M each. Weights as multiples of the smallest are 2 u M off, and after
// them there is one product and one addition. (n + 4) u M leaves room for terms of second order. The scan knows the
// norm to 5 u of itself or 1e-5: its root, its factor and its product are rounded, and so is the trained one.
#include "detect/cascade_plan.h"

#include "detect/stage_range.h"

#include <algorithm>
#include <cmath>

namespace orvane {
namespace {

constexpr double kEpsilon = 1.0 / (1 << 24); // half a unit in the last place of a float, relative
constexpr double kLargestNorm = 128.0;       // the deviation of bytes is at most 127.5
constexpr std::size_t kFewStumps = 12;
constexpr double kLevels = 256.0;
constexpr int32 kMostWindowPixels = 4096; // keeps every sum over a window, and of its squares, exact

class Planner {
public:
    explicit Planner(const ClassifierTables& tables) : t_(tables) {}

    CascadePlan Plan() {
        plan_.usable = t_.windowWidth * t_.windowHeight <= kMostWindowPixels;
        for (std::size_t i = 0; i < t_.stageThreshold.size(); ++i) AddStage(i);
        plan_.usable = plan_.usable && SumsAreExact();
        return std::move(plan_);
    }

private:
    void AddStage(std::size_t index) {
        const StageRange range = RangeOf(t_, index);
        PlannedStage stage{};
        stage.continues = Continues(t_, index);
        stage.firstStump = static_cast<int32>(plan_.stumps.size());
        stage.firstRect = static_cast<int32>(plan_.rects.size());
        const int32 known = stage.continues ? RangeOf(t_, index - 1).classifiers : 0;
        if (!stage.continues) magnitude_ = error_ = 0.0;
        for (int32 kind = 0; kind < kStumpKinds; ++kind) stage.stumpCounts[kind] = AddStumps(range, known, kind);
        int32 added = 0;
        for (const int32 count : stage.stumpCounts) added += count;
        if (added != range.classifiers - known) plan_.usable = false; // one with more rectangles

        // The stage's own sum, which begins with what all stumps give above and goes on by differences, the addition to
        // the one before, and the threshold's narrowing.
        const double own = MagnitudeFrom(stage.firstStump);
        stage.allAbove = static_cast<float>(SumAbove(stage.firstStump));
        magnitude_ += own;
        largestMagnitude_ = std::max(largestMagnitude_, magnitude_);
        error_ += kEpsilon * (own * (added + 4.0) + magnitude_);
        const double threshold = t_.stageThreshold[index];
        const double margin = 2.0 * (error_ + kEpsilon * std::fabs(threshold)) + 1e-12 * (magnitude_ + 1.0);
        stage.failsBelow = static_cast<float>(threshold - margin);
        stage.passesFrom = static_cast<float>(threshold + margin);
        if (!stage.continues && static_cast<std::size_t>(added) <= kFewStumps) CutBetweenSums(stage, threshold, margin);
        if (!std::isfinite(stage.failsBelow) || !std::isfinite(stage.passesFrom)) plan_.usable = false;
        plan_.stages.push_back(stage);
    }

    /// A stage of few stumps has few sums, of which one often equals the threshold, since training sets it so. Where
    /// the nearest ones that pass and fail lie far enough from each other, a cut between them leaves no doubt.
    void CutBetweenSums(PlannedStage& stage, double threshold, double margin) const {
        const auto count = plan_.stumps.size() - static_cast<std::size_t>(stage.firstStump);
        double fails = -1e30, passes = 1e30;
        for (uint32 outcome = 0; outcome < 1U << count; ++outcome) {
            double sum = 0.0;
            for (std::size_t i = 0; i < count; ++i) {
                const StumpValues& values = plan_.trainedValues[static_cast<std::size_t>(stage.firstStump) + i];
                sum += (outcome >> i & 1) != 0 ? values.below : values.above;
            }
            if (sum < threshold) {
                fails = std::max(fails, sum);
            } else {
                passes = std::min(passes, sum);
            }
        }
        if (passes - fails < 4.0 * margin) return;
        const double cut = std::clamp(threshold, fails + margin, passes - margin);
        stage.failsBelow = stage.passesFrom = static_cast<float>(cut);
    }

    /// Whether all partial sums are multiples of the finest step of a value, and small enough for a double.
    bool SumsAreExact() const {
        constexpr double kFinest = 1LL << 40;
        double steps = 1.0; // to a whole
        const auto refine = [&steps](double value) {
            while (steps <= kFinest && value * steps != std::trunc(value * steps)) steps *= 2.0;
        };
        for (const StumpValues& values : plan_.trainedValues) {
            refine(values.below);
            refine(values.above);
        }
        return steps <= kFinest && largestMagnitude_ * steps < 1LL << 53;
    }

    /// Else its sum may be none that a float holds.
    bool LiesInWindow(const ImageRect& rect) const {
        return rect.x + rect.width <= t_.windowWidth && rect.y + rect.height <= t_.windowHeight;
    }

    double MagnitudeFrom(int32 firstStump) const {
        double sum = 0.0;
        for (std::size_t i = static_cast<std::size_t>(firstStump); i < plan_.trainedValues.size(); ++i)
            sum += std::max(std::fabs(plan_.trainedValues[i].below), std::fabs(plan_.trainedValues[i].above));
        return sum;
    }

    double SumAbove(int32 firstStump) const {
        double sum = 0.0;
        for (std::size_t i = static_cast<std::size_t>(firstStump); i < plan_.trainedValues.size(); ++i)
            sum += plan_.trainedValues[i].above;
        return sum;
    }

    /// Adds those of a kind of the range, less the first `known`.
    int32 AddStumps(const StageRange& range, int32 known, int32 kind) {
        int32 added = 0;
        int32 rect = range.firstRect + RectsOf(t_, range.firstClassifier, known);
        for (int32 c = range.firstClassifier + known; c < range.firstClassifier + range.classifiers; ++c) {
            const int32 count = t_.classifierFeatureCount[static_cast<std::size_t>(c)];
            if (KindOf(t_.featureRect.data() + rect, count) == kind) {
                AddStump(static_cast<std::size_t>(c), static_cast<std::size_t>(rect), static_cast<std::size_t>(count));
                ++added;
            }
            rect += count;
        }
        return added;
    }

    void AddStump(std::size_t classifier, std::size_t rect, std::size_t rects) {
        double largest = 0.0;
        for (std::size_t r = rect; r < rect + rects; ++r) {
            plan_.usable = plan_.usable && LiesInWindow(t_.featureRect[r]);
            const double area = static_cast<double>(t_.featureRect[r].width) * t_.featureRect[r].height;
            largest += std::fabs(t_.featureWeight[r]) * (kLevels * area + 16.0);
        }
        const double threshold = t_.classifierThreshold[classifier];
        const double most = largest + std::fabs(threshold) * kLargestNorm;
        const double bound = (static_cast<double>(rects) + 4.0) * kEpsilon * most +
                             std::fabs(threshold) * (5.0 * kEpsilon * kLargestNorm + 1e-5);
        // A stump of zeros has no scale and is never certain.
        const double scale = bound > 0.0 ? 1.0 / bound : 0.0;
        if (bound > 0.0 && !(bound > 1e-30 && bound < 1e30)) plan_.usable = false;
        const StumpValues values{t_.classifierVal1[classifier], t_.classifierVal2[classifier]};
        plan_.stumps.push_back({static_cast<float>(-threshold * scale), values.below - values.above});
        plan_.trainedValues.push_back(values);
        plan_.trainedThresholds.push_back(t_.classifierThreshold[classifier]);
        if (plan_.stages.empty()) AddParts(rect, rects, scale);
        for (std::size_t r = rect; r < rect + rects; ++r) {
            plan_.trainedWeights.push_back(t_.featureWeight[r]);
            plan_.rects.push_back(t_.featureRect[r]);
            plan_.weights.push_back(static_cast<float>(t_.featureWeight[r] * scale));
        }
    }

    void AddParts(std::size_t rect, std::size_t rects, double scale) {
        PartWeights parts{};
        const bool fit =
            FindPartWeights(&t_.featureRect[rect], &t_.featureWeight[rect], static_cast<int32>(rects), parts);
        plan_.takesShortSums = plan_.takesShortSums && fit;
        parts.unit = static_cast<float>(parts.unit * scale);
        plan_.parts.push_back(parts);
    }

    const ClassifierTables& t_;
    CascadePlan plan_;
    double magnitude_ = 0.0; // of the sum so far, at the most
    double largestMagnitude_ = 0.0;
    double error_ = 0.0; // of the sum so far, at the most
};

} // namespace

CascadePlan PlanCascade(const ClassifierTables& tables) { return Planner(tables).Plan(); }

} // namespace orvane
