// The cascade in the form in which the fused scan decides windows: all stumps in one stream, in single precision, with
// a bound on what single precision may do to them.
#pragma once

#include "detect/stump_parts.h"

#include <vector>

namespace orvane {

struct ClassifierTables;

/// A stump without its rectangles. Its threshold, with its sign turned, and weights are divided by the bound on the
/// error of their comparison, so that a difference of 1 or more is certain.
struct PlannedStump {
    float minusThreshold; // times the norm
    float belowMore;      // by how much more the stump gives where the weighted sum is below that
};

/// What a stump gives where its weighted sum is below the threshold, and where it is not.
struct StumpValues {
    float below;
    float above;

    /// Without a branch, which the processor would foresee as often as a coin.
    float Of(bool isBelow) const {
        const float values[] = {above, below};
        return values[isBelow ? 1 : 0];
    }
};

/// A stage: what it adds to the sum of the stage before. Stumps stand in the order of their kinds.
struct PlannedStage {
    bool continues; // whether it goes on from the sum of the stage before
    int32 stumpCounts[kStumpKinds];
    int32 firstStump; // in the plan's list
    int32 firstRect;
    float allAbove;   // what its stumps give where no weighted sum is below its threshold
    float failsBelow; // sums that are certain whatever was lost in adding them up
    float passesFrom;
};

/// A trained cascade as one stream. Stages that begin with all stumps of the stage before, as the trainer makes them,
/// go on from its sum.
struct CascadePlan {
    /// False where a number leaves the range in which the bounds hold, or where a stage's sum may not be exact in
    /// double, so that the order of its additions could matter.
    bool usable = false;
    std::vector<PlannedStage> stages;
    std::vector<PlannedStump> stumps;
    std::vector<ImageRect> rects; // in window coordinates of memory order
    std::vector<float> weights;   // one a rectangle, divided like the threshold

    bool takesShortSums = true;     // whether sums of 16 bits tell enough of each stump of the first stage
    std::vector<PartWeights> parts; // one each, the unit divided like the threshold

    // The same undivided, for the windows that need more digits.
    std::vector<float> trainedThresholds;
    std::vector<StumpValues> trainedValues;
    std::vector<float> trainedWeights;
};

/// Plans a prepared classifier. Throws std::bad_alloc.
CascadePlan PlanCascade(const ClassifierTables& tables);

} // namespace orvane
