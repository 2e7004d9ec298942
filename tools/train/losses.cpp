#include "tools/train/losses.h"

#include "detect/classifier_file.h"

#include <algorithm>
#include <numeric>

namespace orvane::train {
namespace {

constexpr std::array<const char*, kLossCount> kNames = {"scales",        "pruning",      "stages", "too few hits",
                                                        "group's place", "merged place", "choice", "report"};

double PerCent(int part, int whole) { return whole == 0 ? 0.0 : 100.0 * part / whole; }

/// A candidate's row is counted from the bottom.
FaceSquare SquareOf(const Candidate& candidate, int32 pictureHeight) {
    const double half = candidate.size / 2.0;
    return {candidate.x - half, pictureHeight - candidate.y - half, static_cast<double>(candidate.size)};
}

} // namespace

Loss PassTrace::FirstLoss() const {
    if (scanned == 0) return Loss::kScale;
    if (pruned == 0) return Loss::kPruning;
    if (!stages.empty() && stages.back() == 0) return Loss::kStages;
    if (!hasMembers) return Loss::kMembers;
    if (!hasGroup) return Loss::kGroupPlace;
    if (!hasMerged) return Loss::kMergedPlace;
    return isChosen ? Loss::kReport : Loss::kChoice;
}

std::size_t PassTrace::LastStage() const {
    return static_cast<std::size_t>(std::find(stages.begin(), stages.end(), 0) - stages.begin());
}

std::string PassTrace::LossName() const {
    const Loss loss = FirstLoss();
    if (loss == Loss::kStages) return "stage " + std::to_string(LastStage());
    return kNames[static_cast<std::size_t>(loss)];
}

bool FaceTracer::IsNear(const Candidate& candidate) const {
    return IsRight(SquareOf(candidate, pictureHeight_), truth_, mapping_);
}

int64 FaceTracer::CountNear(const ImageBuffer& mask) const {
    return std::count_if(near_.begin(), near_.end(),
                         [&](const ImagePoint& at) { return RowAt(mask.data, mask.Step(), at.y)[at.x] != 0; });
}

void FaceTracer::OnPass() {
    passes_.emplace_back();
    passes_.back().stages.assign(g_classifier.stageObject.size(), 0);
}

void FaceTracer::OnScale(float scale) { scale_ = scale; }

void FaceTracer::OnPruned(const ImageBuffer& mask, ImageSize positions) {
    near_.clear();
    const double side = CandidateOfWindow(0, 0, g_classifier.windowWidth, scale_).size;
    const FaceSquare centred{-side / 2, -side / 2, side};
    const FaceSquare centredTruth{-truth_.side / 2, -truth_.side / 2, truth_.side};
    // Most scales are too small or too large for the face at any place.
    if (IsRight(centred, centredTruth, {mapping_.boxToWindow, 0.0})) {
        for (int32 y = 0; y < positions.height; ++y) {
            for (int32 x = 0; x < positions.width; ++x) {
                if (IsNear(CandidateOfWindow(x, y, g_classifier.windowWidth, scale_))) near_.push_back({x, y});
            }
        }
    }
    passes_.back().scanned += static_cast<int64>(near_.size());
    passes_.back().pruned += CountNear(mask);
}

void FaceTracer::OnStage(std::size_t stage, const ImageBuffer& mask) {
    passes_.back().stages[stage] += CountNear(mask);
}

void FaceTracer::OnHits(const CandidateList& hits) {
    PassTrace& trace = passes_.back();
    const auto isNear = [&](const Candidate& candidate) { return IsNear(candidate); };
    for (const CandidateGroup& group : hits.groups) {
        if (static_cast<int64>(group.members.size()) < g_minGroupMembers) continue;
        trace.hasMembers |= std::any_of(group.members.begin(), group.members.end(), isNear);
        trace.hasGroup |= IsNear(MeanOf(group.members));
    }
    const CandidateList merged = MergeGroups(hits);
    for (const CandidateGroup& group : merged.groups) {
        trace.isChosen = IsNear(MeanOf(group.members)); // the last one stays
        if (trace.isChosen)
            trace.hasMerged = true;
        else
            ++trace.groupsElsewhere;
    }
}

void LossTable::Lose(const PassTrace& trace, Pass& pass) {
    ++pass.lost[static_cast<std::size_t>(trace.FirstLoss())];
    if (trace.FirstLoss() != Loss::kStages) return;
    pass.lostAtStage.resize(std::max(pass.lostAtStage.size(), trace.stages.size()));
    ++pass.lostAtStage[trace.LastStage()];
}

void LossTable::Add(const std::vector<PassTrace>& passes, bool right) {
    if (passes.empty()) return;
    const bool repeated = passes.size() > 1; // the first pass reported nothing
    ++first_.portraits;
    traces_.push_back(passes.front());
    if (repeated || !right) Lose(passes.front(), first_);
    if (repeated) {
        ++finer_.portraits;
        if (!right) Lose(passes.back(), finer_);
    }
    if (!right) ++inTheEnd_[static_cast<std::size_t>(passes.back().FirstLoss())];
}

int LossTable::Total() const { return std::accumulate(inTheEnd_.begin(), inTheEnd_.end(), 0); }

void LossTable::Print(std::FILE* out, const char* title) const {
    const auto line = [&](const char* name, int first, int finer, int both) {
        std::fprintf(out, "%-26s %8d %6.2f %9d %6.2f %9d %6.2f\n", name, first, PerCent(first, first_.portraits), finer,
                     PerCent(finer, first_.portraits), both, PerCent(both, first_.portraits));
    };
    std::fprintf(out, "%-26s %15s %16s %16s\n", title, "first pass", "finer pass", "in the end");
    std::fprintf(out, "%-26s %8s %6s %9s %6s %9s %6s\n", "", "number", "%", "number", "%", "number", "%");
    line("portraits", first_.portraits, finer_.portraits, first_.portraits);
    for (std::size_t i = 0; i < kLossCount; ++i) {
        line((std::string("lost at: ") + kNames[i]).c_str(), first_.lost[i], finer_.lost[i], inTheEnd_[i]);
    }
    const auto sum = [](const Counts& counts) { return std::accumulate(counts.begin(), counts.end(), 0); };
    line("lost in all", sum(first_.lost), sum(finer_.lost), Total());
    line("at the right place", first_.portraits - sum(first_.lost), finer_.portraits - sum(finer_.lost),
         first_.portraits - Total());
    const auto elsewhere =
        std::count_if(traces_.begin(), traces_.end(), [](const PassTrace& trace) { return trace.groupsElsewhere > 0; });
    std::fprintf(out, "a group of hits elsewhere, first pass: %d portraits\n", static_cast<int>(elsewhere));
    PrintWindows(out);
}

void LossTable::PrintWindows(std::FILE* out) const {
    std::fprintf(out, "\n%-26s %19s %12s %6s %20s\n", "near windows, first pass", "windows a portrait", "portraits", "",
                 "last one lost here");
    std::fprintf(out, "%-26s %9s %9s %12s %6s %10s %9s\n", "left after", "median", "5th", "under three", "none",
                 "first", "finer");
    const auto line = [&](const std::string& name, auto windowsOf, int first, int finer) {
        std::vector<int64> windows;
        for (const PassTrace& trace : traces_) windows.push_back(windowsOf(trace));
        std::sort(windows.begin(), windows.end());
        const auto below = [&](int64 limit) {
            return static_cast<int>(std::lower_bound(windows.begin(), windows.end(), limit) - windows.begin());
        };
        std::fprintf(out, "%-26s %9lld %9lld %12d %6d %10d %9d\n", name.c_str(),
                     static_cast<long long>(windows[windows.size() / 2]),
                     static_cast<long long>(windows[windows.size() / 20]), below(3), below(1), first, finer);
    };
    if (traces_.empty()) return;
    const auto lost = [](const Pass& pass, Loss loss) { return pass.lost[static_cast<std::size_t>(loss)]; };
    line(
        "the choice of scales", [](const PassTrace& t) { return t.scanned; }, lost(first_, Loss::kScale),
        lost(finer_, Loss::kScale));
    line(
        "pruning", [](const PassTrace& t) { return t.pruned; }, lost(first_, Loss::kPruning),
        lost(finer_, Loss::kPruning));
    const auto atStage = [](const Pass& pass, std::size_t stage) {
        return stage < pass.lostAtStage.size() ? pass.lostAtStage[stage] : 0;
    };
    for (std::size_t stage = 0; stage < traces_.front().stages.size(); ++stage) {
        line(
            "stage " + std::to_string(stage), [stage](const PassTrace& t) { return t.stages[stage]; },
            atStage(first_, stage), atStage(finer_, stage));
    }
}

} // namespace orvane::train
