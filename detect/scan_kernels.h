// The inner loops of the fused scan, each in a form for every instruction set that it pays for. All forms give the same
// windows; those that a form is not sure of are told and decided in double precision elsewhere.
#pragma once

#include "detect/cascade_plan.h"
#include "detect/sample_pieces.h"

namespace orvane {

/// A stage with its rectangles resolved for one sum plane.
struct ResolvedStage {
    int32 stumpCounts[kStumpKinds];
    const PlannedStump* stumps;
    const PartWeights* parts; // one for each stump of the first stage
    const int32* corners;     // as FindCorners has them
    const float* weights;     // one for each rectangle
    bool continues;
    float allAbove;
    float failsBelow;
    float passesFrom;
};

/// What is known of a group of neighbouring windows after a stage, a bit for each.
struct GroupVerdict {
    uint32 passes;   // the sum is certain to reach the threshold
    uint32 doubtful; // the sum is too close to the threshold, or the difference of a stump to 0
};

/// Rows of integral images, after their first columns. Short sums are those of levels less kMiddleLevel, and like
/// squares have as many bits as they have.
struct SumRows {
    const float* sumAbove;
    float* sum;
    const uint16* shortSumAbove;
    uint16* shortSum;
    const uint32* squaresAbove;
    uint32* squares;
};

/// Planes of sums that carry one row and column more than the picture.
struct InnerRectRows {
    const float* sumTop; // where the first window's inner rectangle begins
    const float* sumBottom;
    const uint32* squaresTop;
    const uint32* squaresBottom;
    int32 width; // of the inner rectangle
    float area;
    bool areExact; // no sum of levels was rounded
};

/// Three rows of a grey region, each with a pixel more at both ends.
struct EdgeRows {
    const uint8* above;
    const uint8* here;
    const uint8* below;
    int32 width;
};

/// Which of the two axes or diagonals a gradient is nearest to.
inline constexpr int16 kAlongX = 0;
inline constexpr int16 kAlongY = 1;
inline constexpr int16 kRising = 2;  // dx and dy have different signs
inline constexpr int16 kFalling = 3; // dx and dy have the same sign, or one of them is 0

/// Rows of gradients: magnitudes with a 0 at both ends, and directions.
struct GradientRow {
    int16* magnitude;
    int16* direction;
};

inline constexpr int32 kMostLanes = 32;

struct ScanKernels {
    int32 lanes;      // windows of a group
    int32 shortLanes; // and of one whose sums are short
    int32 tileRows;   // of windows that take all their stages before the next ones, so that the sums stay at hand

    /// Takes `width` pixels of a row, those of the `columns`.
    void (*sample)(const uint8* from, const int32* columns, int32 width, uint8* row);

    /// The same by pieces, whole groups of sixteen samples; null where the processor has no way to do it fast.
    void (*samplePieces)(const uint8* from, const SamplePieces& pieces, uint8* row);

    /// Standard deviations for `count` neighbouring windows, to 4 * 2^-24 of themselves or 1e-5; up to a whole vector
    /// of them is worked.
    void (*norms)(const InnerRectRows& rows, int32 count, float* norms);

    /// Runs a stage for groups of windows that begin at `starts`. `sums` holds the sums of the stage before and gets
    /// the new ones.
    void (*stage)(const ResolvedStage& stage, const float* window, const float* norms, float* sums, const int32* starts,
                  int32 count, GroupVerdict* verdicts);

    /// The same for a first stage that takes short sums.
    void (*shortStage)(const ResolvedStage& stage, const uint16* window, const float* norms, float* sums,
                       const int32* starts, int32 count, GroupVerdict* verdicts);

    /// One row of the integral images; float sums are rounded like the primitive's. Pixels and sums of a vector more
    /// than `width` are worked.
    void (*integral)(const uint8* pixels, int32 width, const SumRows& rows);

    /// Gradients of a row by Sobel's operator, magnitudes at or below `low` as 0, and one of 0 after the last. Whole
    /// words of 64 are worked.
    void (*gradients)(const EdgeRows& rows, int32 low, const GradientRow& out);

    /// Marks the pixels of a row that are the largest along their gradients: as bits, all in `ridges`, those above
    /// `high` in `strong` as well. Writes whole words of 64 and reads as many pixels.
    void (*ridges)(const int16* above, const GradientRow& here, const int16* below, int32 width, int32 high,
                   uint64* ridges, uint64* strong);
};

/// For every processor, and for those with AVX2 and FMA.
extern const ScanKernels kScanKernels128;
extern const ScanKernels kScanKernels256;
#if defined(__x86_64__)
/// For those with AVX-512, whose registers a program of 32 bits has too few of.
extern const ScanKernels kScanKernels512;
#endif

/// Those for the instruction set in use.
const ScanKernels& CurrentScanKernels();

} // namespace orvane
