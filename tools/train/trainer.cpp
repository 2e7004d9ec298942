// The stage loop. Each stage is a function of the seed, the data and the stages before it, which is what
// makes a resumed training end in the same bytes.
#include "tools/train/trainer.h"

#include "tools/train/boosting.h"
#include "tools/train/checkpoint.h"
#include "tools/train/parallel.h"
#include "tools/train/threshold.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace orvane::train {
namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

bool IsLate(const TrainOptions& options, std::size_t stage) {
    return stage >= static_cast<std::size_t>(options.harvest.poolStage);
}

/// Thresholds are set by faces as they are: nothing is drawn over the held ones and their light is their own. Early
/// stages, in which nearly all of the detector's time goes, see faces less turned.
Framing FramingOf(const TrainOptions& options, std::size_t stage, bool held) {
    Framing framing = options.framing;
    if (!IsLate(options, stage)) framing.roll *= 0.8;
    if (held) framing.relit = framing.covered = 0.0;
    return framing;
}

struct Faces {
    std::vector<Window> windows;
    std::vector<std::size_t> sources; // of the crops that they were cut out of
    double reached = 1.0;             // share of the crops' first windows that passed the cascade so far
};

constexpr int kCuts = 6; // windows of a crop, until one passes

/// Draws crops and cuts windows out of each until one passes the cascade so far, so that faces that are hard for the
/// cascade come as often as easy ones. Gives up when hardly any window passes.
Faces CutFaces(const TrainOptions& options, const TrainData& data, const Cascade& cascade, bool held,
               std::size_t wanted) {
    const Framing framing = FramingOf(options, cascade.stages.size(), held);
    const CropLottery lottery(data.crops, held);
    Faces faces;
    if (lottery.Empty()) return faces;
    const Evaluator evaluator(cascade);
    constexpr std::size_t kBlock = 1024;
    std::size_t drawn = 0;
    std::size_t atOnce = 0;
    while (faces.windows.size() < wanted && drawn < 20 * wanted + kBlock) {
        struct Cut {
            Window window;
            std::size_t source = 0;
            int number = 0;
        };
        std::vector<Cut> block(kBlock);
        ForEachIndex(kBlock, options.harvest.threads, [&](std::size_t i) {
            Random random({options.seed, cascade.stages.size(), held ? 11u : 10u, drawn + i});
            const FaceCrop& crop = lottery.Draw(random);
            Cut& cut = block[i];
            cut.source = crop.source;
            for (; cut.number < kCuts; ++cut.number) {
                cut.window = CutWindow(crop, framing, cascade.windowSize, random);
                if (evaluator.Passes(Patch(cut.window.data(), cascade.windowSize))) return;
            }
        });
        for (std::size_t i = 0; i < kBlock && faces.windows.size() < wanted; ++i, ++drawn) {
            if (block[i].number == 0) ++atOnce;
            if (block[i].number == kCuts) continue;
            faces.windows.push_back(std::move(block[i].window));
            faces.sources.push_back(block[i].source);
        }
    }
    faces.reached = static_cast<double>(atOnce) / static_cast<double>(std::max<std::size_t>(drawn, 1));
    return faces;
}

std::vector<Patch> PatchesOf(std::initializer_list<const std::vector<Window>*> parts, ImageSize size) {
    std::vector<Patch> patches;
    for (const std::vector<Window>* windows : parts) {
        for (const Window& window : *windows) patches.emplace_back(window.data(), size);
    }
    return patches;
}

constexpr double kEarlySlack = 0.02;       // of one source of faces, in early stages
constexpr std::size_t kThoroughStages = 5; // nearly all of the detector's time goes into these few stumps

/// The features that the search for stump `number` looks at: a random part of the pool, and all of it in early stages,
/// but pairs alone in the first `pairStages`. The first stump of all must reach the window's last column and row, since
/// the detector sizes its planes by the rectangles.
std::vector<std::uint32_t> Candidates(const TrainOptions& options, const std::vector<Feature>& pool, std::size_t stage,
                                      std::size_t number) {
    const bool isOfPairs = stage < static_cast<std::size_t>(options.pairStages);
    const auto isAllowed = [&](std::uint32_t f) { return !isOfPairs || pool[f].rectCount == 2; };
    std::vector<std::uint32_t> chosen;
    if (stage == 0 && number == 0) {
        for (std::uint32_t f = 0; f < pool.size(); ++f) {
            if (!isAllowed(f)) continue;
            int32 right = 0;
            int32 top = 0;
            for (const ImageRect& r : pool[f].rects) {
                right = std::max(right, r.x + r.width);
                top = std::max(top, r.y + r.height);
            }
            if (right == options.windowSize.width && top == options.windowSize.height) chosen.push_back(f);
        }
        if (!chosen.empty()) return chosen;
    }
    const auto n = static_cast<std::uint32_t>(pool.size());
    if (stage < kThoroughStages || isOfPairs) {
        for (std::uint32_t f = 0; f < n; ++f) {
            if (isAllowed(f)) chosen.push_back(f);
        }
        return chosen;
    }
    Random random({options.seed, stage, 20, number});
    for (int i = 0; i < options.candidates; ++i) chosen.push_back(random.Below(n));
    std::sort(chosen.begin(), chosen.end());
    chosen.erase(std::unique(chosen.begin(), chosen.end()), chosen.end());
    return chosen;
}

/// The held samples' sums, kept up to date stump by stump.
class HeldScores {
public:
    /// @param sources of the faces, which stand before the negatives
    HeldScores(std::vector<Patch> patches, std::vector<std::size_t> sources, float norm)
        : patches_(std::move(patches)), sources_(std::move(sources)), norm_(norm), scores_(patches_.size(), 0.0) {}

    /// Sets the scores to the detector's own sums of a stage.
    void Compute(const Evaluator& evaluator, std::size_t stage) {
        for (std::size_t i = 0; i < patches_.size(); ++i) scores_[i] = evaluator.StageSum(stage, patches_[i]);
    }

    void Add(const Stump& stump, int threads) {
        ForEachIndex((patches_.size() + kChunk - 1) / kChunk, threads, [&](std::size_t chunk) {
            const std::size_t end = std::min(patches_.size(), (chunk + 1) * kChunk);
            for (std::size_t i = chunk * kChunk; i < end; ++i) {
                const double bound = static_cast<double>(stump.threshold) * patches_[i].Deviation();
                scores_[i] += patches_[i].Measure(stump.feature, norm_) < bound ? stump.below : stump.above;
            }
        });
    }

    /// The largest sum that still lets `hitRate` of the faces pass, and of each source no more than `slack` less.
    double ThresholdFor(double hitRate, double slack) const {
        return LeastSumForAll({scores_.begin(), scores_.begin() + Faces()}, sources_, hitRate, slack);
    }

    double FacesKept(double least) const { return ShareAtLeast(scores_, 0, sources_.size(), least); }
    double NegativesKept(double least) const { return ShareAtLeast(scores_, sources_.size(), scores_.size(), least); }

private:
    static constexpr std::size_t kChunk = 1024;

    std::ptrdiff_t Faces() const { return static_cast<std::ptrdiff_t>(sources_.size()); }

    std::vector<Patch> patches_;
    std::vector<std::size_t> sources_;
    float norm_;
    std::vector<double> scores_;
};

void SayStump(std::FILE* progress, int stage, std::size_t stumps, double hits, double alarms) {
    std::fprintf(progress, "stage %2d  %3zu stumps  hit rate %.4f  false alarms %.4f\n", stage, stumps, hits, alarms);
    std::fflush(progress);
}

} // namespace

bool TrainStage(const TrainOptions& options, const TrainData& data, Harvester& harvester, Cascade& cascade,
                StageReport& report, std::FILE* progress) {
    const Clock::time_point start = Clock::now();
    const std::size_t index = cascade.stages.size();
    const int threads = options.harvest.threads;
    const ImageSize size = cascade.windowSize;
    const float norm = AreaNorm(size);
    report = {};
    report.stage = static_cast<int>(index);

    const Negatives negatives = harvester.Harvest(cascade, [&](std::size_t found, std::size_t pictures) {
        std::fprintf(progress, "stage %2zu  %zu negatives out of %zu pictures\n", index, found, pictures);
        std::fflush(progress);
    });
    report.negatives = negatives.Count();
    report.fromCrops = negatives.fromCrops;
    report.pictures = negatives.pictures;
    if (report.negatives - report.fromCrops < options.leastNegatives || negatives.held.empty()) return false;

    const Faces faces = CutFaces(options, data, cascade, false, options.faces * 4 / 5);
    const Faces held = CutFaces(options, data, cascade, true, options.faces / 5);
    if (faces.windows.empty() || held.windows.empty()) return false;
    report.faces = faces.windows.size() + held.windows.size();
    report.facesReached = held.reached;

    const std::vector<Feature> pool = MakeFeaturePool(size, options.features, options.seed * 1000 + index);
    const std::vector<Patch> patches = PatchesOf({&faces.windows, &negatives.windows, &negatives.refused}, size);
    const QuantisedValues values(pool, patches, norm, threads);
    HeldScores scores(PatchesOf({&held.windows, &negatives.held}, size), held.sources, norm);
    std::vector<double> earlier;
    if (index > 0) {
        const Evaluator evaluator(cascade);
        for (const Patch& patch : patches) earlier.push_back(evaluator.StageSum(index - 1, patch));
        scores.Compute(evaluator, index - 1);
    }
    Booster booster(pool, values, faces.windows.size(), threads, std::move(earlier));

    cascade.stages.push_back({0.0f, index > 0, {}});
    Stage& stage = cascade.stages.back();
    const bool late = IsLate(options, index);
    const int most =
        late ? options.maxStumps : std::min(options.maxStumps, options.firstStumps * static_cast<int>(index + 1));
    const double slack = late ? options.sourceSlack : kEarlySlack;
    const double hitRate = late ? options.lateHitRate : options.hitRate;
    while (static_cast<int>(stage.stumps.size()) < most) {
        stage.stumps.push_back(booster.AddStump(Candidates(options, pool, index, stage.stumps.size())));
        scores.Add(stage.stumps.back(), threads);
        const double threshold = scores.ThresholdFor(hitRate, slack);
        const double alarms = scores.NegativesKept(threshold);
        if (stage.stumps.size() % 20 == 0) {
            SayStump(progress, report.stage, stage.stumps.size(), scores.FacesKept(threshold), alarms);
        }
        if (alarms <= options.falseAlarms) break;
    }
    scores.Compute(Evaluator(cascade), index);
    stage.threshold = FileThreshold(scores.ThresholdFor(hitRate, slack));
    const double passing = stage.threshold - kThresholdBias;
    report.hitRate = scores.FacesKept(passing);
    report.falseAlarms = scores.NegativesKept(passing);
    report.stumps = static_cast<int>(stage.stumps.size());
    report.seconds = SecondsSince(start);
    return true;
}

Cascade WithLastHitRate(const TrainOptions& options, const TrainData& data, const Cascade& cascade, double hitRate) {
    Cascade before = cascade;
    before.stages.pop_back();
    const Faces held = CutFaces(options, data, before, true, options.faces / 5);
    if (held.windows.empty()) return cascade;
    const Evaluator evaluator(cascade);
    std::vector<double> sums;
    for (const Window& window : held.windows)
        sums.push_back(evaluator.StageSum(cascade.stages.size() - 1, Patch(window.data(), cascade.windowSize)));
    Cascade stricter = cascade;
    float& threshold = stricter.stages.back().threshold;
    threshold = std::max(threshold, FileThreshold(LeastSumFor(std::move(sums), hitRate)));
    return stricter;
}

Cascade WithEarlyStagesPruned(const TrainOptions& options, const TrainData& data, const Cascade& cascade) {
    constexpr std::size_t kWindows = 20; // of a face
    const Framing framing = FramingOf(options, cascade.stages.size(), true);
    const CropLottery lottery(data.crops, true);
    if (lottery.Empty()) return cascade;
    std::vector<FaceWindows> faces(options.faces / 5);
    ForEachIndex(faces.size(), options.harvest.threads, [&](std::size_t i) {
        Random random({options.seed, cascade.stages.size(), 12, i});
        const FaceCrop& crop = lottery.Draw(random);
        faces[i].source = crop.source;
        for (std::size_t w = 0; w < kWindows; ++w) {
            const Window window = CutWindow(crop, framing, cascade.windowSize, random);
            faces[i].windows.emplace_back(window.data(), cascade.windowSize);
        }
    });
    return Pruned(cascade, faces, options.prune, options.harvest.threads);
}

int Train(const TrainOptions& options, const TrainData& data, std::FILE* progress) {
    Cascade cascade;
    cascade.windowSize = options.windowSize;
    HarvestOptions harvest = options.harvest;
    if (!options.work.empty()) harvest.poolFile = options.work + "/pool.bin";
    Harvester harvester(data.pictures, data.crops, options.framing, harvest, options.seed);
    std::vector<StageReport> reports;
    const std::string fingerprint = Fingerprint(options, data);
    if (!options.work.empty()) {
        const std::string fault = LoadCheckpoint(options.work, fingerprint, cascade, reports);
        if (!fault.empty()) {
            std::fprintf(progress, "%s\n", fault.c_str());
            return 1;
        }
        if (reports.empty()) std::remove((options.work + "/pool.bin").c_str()); // of a training that was given up
        if (!reports.empty()) std::fprintf(progress, "going on behind stage %d\n", reports.back().stage);
    }
    std::fprintf(progress, "%s\n", fingerprint.c_str());
    while (static_cast<int>(cascade.stages.size()) < options.stages) {
        StageReport report;
        if (!TrainStage(options, data, harvester, cascade, report, progress)) {
            std::fprintf(progress, "stage %2d  %zu negatives are left: the training ends here\n", report.stage,
                         report.negatives);
            break;
        }
        SayStump(progress, report.stage, static_cast<std::size_t>(report.stumps), report.hitRate, report.falseAlarms);
        reports.push_back(report);
        const int left = options.stages - static_cast<int>(cascade.stages.size());
        std::fprintf(
            progress, "stage %2d  done in %.0f s, %zu negatives out of %zu pictures; about %.0f min for %d more\n",
            report.stage, report.seconds, report.negatives, report.pictures, report.seconds * left / 60.0, left);
        if (!options.work.empty() && !SaveCheckpoint(options.work, fingerprint, cascade, reports)) {
            std::fprintf(progress, "cannot write the checkpoint in %s\n", options.work.c_str());
            return 1;
        }
    }
    if (const std::string fault = FindFault(cascade); !fault.empty()) {
        std::fprintf(progress, "the cascade is of no use: %s\n", fault.c_str());
        return 1;
    }
    if (options.prune.stages > 0) cascade = WithEarlyStagesPruned(options, data, cascade);
    if (options.lastHitRate < 1.0) cascade = WithLastHitRate(options, data, cascade, options.lastHitRate);
    if (!WriteFile(options.out, ToFile(cascade))) {
        std::fprintf(progress, "cannot write %s\n", options.out.c_str());
        return 1;
    }
    return 0;
}

std::string Fingerprint(const TrainOptions& o, const TrainData& data) {
    uint64 sum = 1469598103934665603ull;
    const auto mix = [&](const std::vector<uint8>& bytes) {
        for (const uint8 b : bytes) sum = (sum ^ b) * 1099511628211ull;
    };
    for (const FaceCrop& crop : data.crops) mix(crop.pixels);
    for (const GreyPicture& picture : data.pictures.pictures) mix(picture.pixels);
    char numbers[1024]; // the texts, which may be of any length, stand beside them
    std::snprintf(numbers, sizeof numbers,
                  " drawn %zu seed %llu window %dx%d stumps %d first %d hit %g late %g slack %g alarms %g "
                  "features %d of %d faces %zu balance %g "
                  "framing %g %g %g %g %g %g %g negatives %zu least %zu crops %g passes %d each %d pool %d refused %zu "
                  "pairs %d data %zu %zu "
                  "%016llx",
                  o.drawn, static_cast<unsigned long long>(o.seed), o.windowSize.width, o.windowSize.height,
                  o.maxStumps, o.firstStumps, o.hitRate, o.lateHitRate, o.sourceSlack, o.falseAlarms, o.candidates,
                  o.features, o.faces, o.balance, o.framing.windowToBox, o.framing.shift, o.framing.scale,
                  o.framing.roll, o.framing.yaw, o.framing.relit, o.framing.covered, o.harvest.wanted, o.leastNegatives,
                  o.harvest.cropShare, o.harvest.passes, o.harvest.perPicture, o.harvest.poolStage, o.harvest.refused,
                  o.pairStages, data.crops.size(), data.pictures.pictures.size(), static_cast<unsigned long long>(sum));
    return "classes " + o.classes + " without " + o.without + numbers +
           (o.favour.empty() ? "" : " favour " + o.favour) + (o.most.empty() ? "" : " most " + o.most);
}

} // namespace orvane::train
