#include "tools/train/work.h"

#include "detect/classifier_file.h"

#include <algorithm>

namespace orvane::train {
namespace {

/// The rectangles of a stage, those of the stages that it is chained to among them.
int64 RectsOfStage(std::size_t stage) {
    const auto first = g_classifier.classifierFeatureCount.begin() + g_classifier.stageClassifierStart[stage];
    int64 rects = 0;
    for (int32 i = 0; i < g_classifier.stageClassifierCount[stage]; ++i) rects += first[i];
    return rects;
}

bool IsChained(std::size_t stage) {
    return stage > 0 && g_classifier.stageClassifierStart[stage] == g_classifier.stageClassifierStart[stage - 1];
}

} // namespace

int64 WorkCounter::CountIn(const ImageBuffer& mask) {
    int64 count = 0;
    for (int32 y = 0; y < mask.height; ++y) {
        const uint8* row = RowAt(mask.data, mask.Step(), y);
        count += mask.width - std::count(row, row + mask.width, uint8{0});
    }
    return count;
}

void WorkCounter::OnPruned(const ImageBuffer& mask, ImageSize /*positions*/) {
    alive_ = CountIn(mask);
    windows_ += alive_;
}

void WorkCounter::OnStage(std::size_t stage, const ImageBuffer& mask) {
    if (reached_.size() <= stage) reached_.resize(stage + 1);
    reached_[stage] += alive_;
    alive_ = CountIn(mask);
}

double WorkCounter::RectsByStages() const {
    double rects = 0.0;
    for (std::size_t s = 0; s < reached_.size(); ++s)
        rects += static_cast<double>(reached_[s]) * static_cast<double>(RectsOfStage(s));
    return windows_ == 0 ? 0.0 : rects / static_cast<double>(windows_);
}

double WorkCounter::RectsInOneGo() const {
    double rects = 0.0;
    for (std::size_t s = 0; s < reached_.size(); ++s) {
        const int64 own = RectsOfStage(s) - (IsChained(s) ? RectsOfStage(s - 1) : 0);
        rects += static_cast<double>(reached_[s]) * static_cast<double>(own);
    }
    return windows_ == 0 ? 0.0 : rects / static_cast<double>(windows_);
}

void WorkCounter::Print(std::FILE* out) const {
    std::fprintf(out, "rectangles for a window on an edge: %.1f stage by stage, %.1f in one go\n", RectsByStages(),
                 RectsInOneGo());
}

} // namespace orvane::train
