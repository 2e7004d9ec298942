// Building a cascade stage by stage: draw faces, harvest negatives, boost, set the threshold, write down.
#pragma once

#include "tools/train/harvest.h"
#include "tools/train/prune.h"

#include <cstdio>
#include <string>

namespace orvane::train {

struct TrainOptions {
    std::string data; // folder with positives.csv, positives.bin, negatives.csv, negatives/
    std::string out;  // the classifier file
    std::string work; // checkpoints; empty: none are kept
    std::string classes = "ABC";
    std::string without;      // sources of negatives that are left out, comma-separated
    std::size_t drawn = 1000; // pictures drawn out of nothing, beside those of the data
    uint64 seed = 1;
    ImageSize windowSize{24, 24};
    int stages = 36;
    int maxStumps = 220;              // of a stage
    int firstStumps = 6;              // of the first stage, twice as many of the second and so on
    double hitRate = 0.997;           // faces that a stage keeps
    double lateHitRate = 0.992;       // the same from the harvest's pool stage on
    double sourceSlack = 0.04;        // by so much less of any one source
    double lastHitRate = 0.975;       // of the last stage, whose sum knows most; 1: as the others
    PruneOptions prune;               // of the whole cascade in the end
    int pairStages = 2;               // so many first stages have features of two rectangles alone
    double falseAlarms = 0.4;         // negatives that a stage may keep; fewer stumps reach it in early stages
    int features = 8000;              // the pool
    int candidates = 1000;            // features looked at for one stump
    std::size_t faces = 12000;        // windows for a stage, held ones among them
    std::size_t leastNegatives = 200; // training ends when a harvest brings fewer out of pictures
    double balance = 0.2;
    std::string favour; // sources of faces that are drawn more often, "name=times,..."
    std::string most;   // at most so many crops of a source, "name=number,..."
    Framing framing;
    HarvestOptions harvest;
};

struct StageReport {
    int stage = 0;
    int stumps = 0;
    double hitRate = 0.0;     // of held faces that reached the stage
    double falseAlarms = 0.0; // of held negatives that reached the stage
    std::size_t faces = 0;
    double facesReached = 0.0; // share of fresh jittered faces that the stages before let through
    std::size_t negatives = 0;
    std::size_t fromCrops = 0;
    std::size_t pictures = 0;
    double seconds = 0.0;
};

/// What training works on; tests fill it by hand.
struct TrainData {
    std::vector<FaceCrop> crops;
    PictureSet pictures;
};

/// Trains one further stage on top of `cascade`. False when there were too few negatives or faces left.
/// Depends on nothing but the arguments: no state is carried from stage to stage.
bool TrainStage(const TrainOptions& options, const TrainData& data, Harvester& harvester, Cascade& cascade,
                StageReport& report, std::FILE* progress);

/// The cascade with its last stage's threshold set anew, so that it keeps `hitRate` of the held faces that reach it.
/// It never becomes lower.
Cascade WithLastHitRate(const TrainOptions& options, const TrainData& data, const Cascade& cascade, double hitRate);

/// The cascade `Pruned` by held faces.
Cascade WithEarlyStagesPruned(const TrainOptions& options, const TrainData& data, const Cascade& cascade);

/// Trains up to `options.stages` stages and writes the classifier file. With a work folder every stage is
/// written down as it ends, and a training that was stopped goes on behind its last whole stage.
/// 0, or 1 after a line to `progress` that says what failed.
int Train(const TrainOptions& options, const TrainData& data, std::FILE* progress);

/// Everything that the result depends on, in one line: two trainings agree in it or are different.
std::string Fingerprint(const TrainOptions& options, const TrainData& data);

} // namespace orvane::train
