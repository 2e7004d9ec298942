// Decides windows by the cascade: whole groups of neighbours in single precision with a proven margin, and what lies
// within the margin in the trained arithmetic. The sums that a tile of windows reads stay in the first-level cache.
#pragma once

#include "detect/cascade_plan.h"
#include "detect/scale_rows.h"
#include "primitives/heap_array.h"

namespace orvane {

struct ClassifierTables;

class WindowCascade {
public:
    /// Whether windows of a scale of this size can be decided this way.
    static bool Serves(const ClassifierTables& classifier, ImageSize scaled);

    WindowCascade(const ScanKernels& kernels, const ClassifierTables& classifier)
        : kernels_(&kernels), classifier_(&classifier) {}

    /// Goes over to others.
    void Use(const ScanKernels& kernels, const ClassifierTables& classifier) {
        kernels_ = &kernels;
        classifier_ = &classifier;
    }

    /// Makes room for sums of this stride, in the storage that it has where that fits. False when memory is exhausted.
    /// @param height rows of windows at most
    [[nodiscard]] bool Reserve(int32 stride, int32 height);

    /// Clears the edge bits of those windows that do not pass all stages.
    /// @param height rows of windows
    void Decide(ScaleRows& rows, int32 height);

    /// How often single precision could not decide a window's stage.
    int64 Doubts() const { return doubts_; }

private:
    static constexpr int32 kTileWords = 3;

    /// Some rows of windows between two words.
    struct Tile {
        int32 y;
        int32 height;
        int32 firstWord;
        int32 endWord;
    };

    bool ResolveStages();
    void DecideTile(ScaleRows& rows, const Tile& tile);
    int32 TakeGroups(ScaleRows& rows, const Tile& tile);
    void FindNorms(ScaleRows& rows, int32 height);
    void RunStage(const ScaleRows& rows, const Tile& tile, int32 stage, int32 groups);
    uint32 KeptOf(const ScaleRows& rows, const Tile& tile, int32 stage, int32 group);
    int32 DropFailed(const ScaleRows& rows, const Tile& tile, int32 stage, int32 groups);
    int32 MakeNarrower(const ScaleRows& rows, const Tile& tile, int32 stage, int32 groups, int32 lanes);
    int32 DropEmpty(const ScaleRows& rows, const Tile& tile, int32 stage, int32 groups);
    uint32 ResolveDoubts(const ScaleRows& rows, const Tile& tile, int32 stage, int32 first, uint32 doubtful);
    double TrainedSum(int32 stage, const float* window, double norm) const;
    double TrainedPart(int32 stage, const float* window, double norm) const;
    float TrainedNorm(const ScaleRows& rows, int32 x, int32 y) const;
    int32 StageCount() const;
    int32 LanesOf(int32 stage) const { return stage == 0 && beginsShort_ ? kernels_->shortLanes : kernels_->lanes; }

    const ScanKernels* kernels_;
    const ClassifierTables* classifier_;
    HeapArray<ResolvedStage> stages_;
    HeapArray<int32> corners_;
    bool beginsShort_ = false; // whether the first stage takes short sums at the present scale

    int32 stride_ = 0;
    HeapArray<float> norms_; // by window, with the stride of the sums

    // Of a tile. Sums by window, with the same stride. Groups of neighbouring windows of a row that
    // hold all living ones: where they begin, by the same stride, and which of their windows live.
    HeapArray<float> sums_;
    struct Groups {
        HeapArray<int32> starts;
        HeapArray<uint32> living;

        [[nodiscard]] bool Ensure(int64 count) { return starts.Ensure(count) && living.Ensure(count); }
    };
    Groups groups_[2];
    Groups* present_ = &groups_[0];
    Groups* next_ = &groups_[1]; // what is left of them, before it takes their place
    HeapArray<GroupVerdict> verdicts_;
    int64 doubts_ = 0;
};

} // namespace orvane
