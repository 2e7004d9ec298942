// Where the numbers of a stage lie in the classifier's tables.
#pragma once

#include "detect/classifier_file.h"

#include <numeric>

namespace orvane {

struct StageRange {
    int32 firstClassifier;
    int32 classifiers;
    int32 firstRect;
};

inline StageRange RangeOf(const ClassifierTables& t, std::size_t stage) {
    return {t.stageClassifierStart[stage], t.stageClassifierCount[stage], t.stageFeatureStart[stage]};
}

/// Whether a stage begins with all classifiers of the one before.
inline bool Continues(const ClassifierTables& t, std::size_t stage) {
    if (stage == 0) return false;
    const StageRange here = RangeOf(t, stage), before = RangeOf(t, stage - 1);
    return here.firstClassifier == before.firstClassifier && here.firstRect == before.firstRect &&
           here.classifiers >= before.classifiers;
}

/// Rectangles of some classifiers.
inline int32 RectsOf(const ClassifierTables& t, int32 firstClassifier, int32 classifiers) {
    const auto first = t.classifierFeatureCount.begin() + firstClassifier;
    return std::accumulate(first, first + classifiers, 0);
}

} // namespace orvane
