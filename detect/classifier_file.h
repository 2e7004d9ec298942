// The trained cascade: the tables of "Orvane.dat" and the stage objects made from them. Loaded once a
// session; no detection changes it, but for the stage objects, which the first that wants them makes.
#pragma once

#include "detect/cascade_plan.h"
#include "image/result_codes.h"
#include "platform/module_folder.h"
#include "primitives/primitives.h"

#include <memory>
#include <vector>

namespace orvane {

struct HaarStageFree {
    void operator()(HaarClassifier* stage) const { primHaarClassifierFree_32f(stage); }
};
using HaarStage = std::unique_ptr<HaarClassifier, HaarStageFree>;

/// The file's numbers, in file form until PrepareClassifier has changed them in place.
struct ClassifierTables {
    int32 windowWidth = 0; // detection window in pixels
    int32 windowHeight = 0;
    int32 stageCount = 0;
    int32 classifierCount = 0;
    int32 featureCount = 0;

    std::vector<float> stageThreshold;
    std::vector<int32> stageClassifierCount;
    std::vector<int32> stageReserved; // read and kept, never used
    std::vector<int32> stageClassifierStart;
    std::vector<int32> stageFeatureStart;
    std::vector<int32> classifierFeatureCount;
    std::vector<float> classifierThreshold;
    std::vector<float> classifierVal1;
    std::vector<float> classifierVal2;
    std::vector<ImageRect> featureRect; // window coordinates, y from the window's top in the file
    std::vector<float> featureWeight;

    std::vector<HaarStage> stageObject; // one a stage, null until MakeStages
    int32 maxFeatureWidth = 0;          // largest right and bottom bound over all stages
    int32 maxFeatureHeight = 0;
    CascadePlan plan; // made by PrepareClassifier
};

/// The session's classifier.
extern ClassifierTables g_classifier;

/// Reads "Orvane.dat" and prepares it. 0; -70 when the file is missing or unusable; -50 when memory is
/// exhausted. Except after 0 the tables are empty.
int32 LoadClassifier();

/// Reads a classifier file of the library's folder into `tables`. The layout, little-endian and without
/// padding: five int32 counts (window width and height, stages S, classifiers C, rectangles F), then
/// the arrays in the order of ClassifierTables; 20 + 20S + 16C + 20F bytes, what follows is not read.
/// 0; -5 when the file can't be opened; -70 when its length, its counts, its ranges or a rectangle
/// does not hold together; -50 when memory is exhausted.
int32 ReadClassifierFile(const PathString& name, ClassifierTables& tables);

/// Turns the trained numbers into what the scan wants; must run exactly once after a load. Weights are
/// scaled by the window's inner area (its size less `border` at each side), `thresholdBias` is taken
/// off every stage threshold, rectangles are turned to memory's row order.
/// 0; -6 for a window without an inside; -8 for stages without any classifiers or rectangles; -9 when memory is
/// exhausted.
int32 PrepareClassifier(int32 border, float thresholdBias, ClassifierTables& tables);

/// Makes the stage objects of a prepared classifier that are not made yet. Only the scan step by step wants them; as
/// each stage repeats the ones before, they are many times the file. 0, or the status of the primitive that failed: the
/// next call goes on there.
int32 MakeStages(ClassifierTables& tables);

/// Frees stages and arrays; the counts keep their values. Status of the last stage release.
int32 FreeClassifier(ClassifierTables& tables);

} // namespace orvane
