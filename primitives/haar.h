// One stage of the face cascade: a list of boosted rectangle classifiers, built once and evaluated
// over a mask of window positions.
#pragma once

#include "primitives/types.h"

namespace orvane {

/// One cascade stage. Opaque: made by `primHaarClassifierInitAlloc_32f`, given back with
/// `primHaarClassifierFree_32f`, read-only in between, so that one object serves several threads.
struct HaarClassifier;

namespace generic {

/// Builds a stage. The inputs are copied.
/// @param state   out: the object, owned by the caller; null after a bad rectangle
/// @param rects   all rectangles, classifier after classifier, in window coordinates of memory order
/// @param weights one for each rectangle
/// @param counts  rectangles of each classifier
/// Status, in order of test: null pointer -8; classifierCount below 0 or a count below 1 -6; no
/// memory -9; a rectangle with x or y below 0 or a size below 1 -5.
int32 primHaarClassifierInitAlloc_32f(HaarClassifier** state, const ImageRect* rects, const float* weights,
                                      const float* thresholds, const float* val1, const float* val2,
                                      const int32* counts, int32 classifierCount);

/// Evaluates a stage at every position of `roi` whose mask byte is not 0, and clears the byte where the
/// stage's sum stays below `threshold`. A classifier gives `val1` where its weighted sum is below its
/// threshold times the norm, else `val2`; all arithmetic in double.
/// @param src  integral image; the caller guarantees `primGetHaarClassifierSize_32f` rows and columns
///             beyond the last position (the sum plane is one larger than the picture)
/// @param norm standard deviation for each position
/// @param mask changed in place
/// @param positive out: mask bytes kept; the value on entry plays no part in the result
/// Status, in order of test: null pointer -8; a roi size below 1 -6; srcStep or normStep below 4*width,
/// maskStep below width -14; srcStep or normStep not a multiple of 4 -108; no memory, only for a stage of
/// many hundred rectangles, -9.
int32 primApplyHaarClassifier_32f_C1(const float* src, int32 srcStep, const float* norm, int32 normStep, uint8* mask,
                                     int32 maskStep, ImageSize roi, int32* positive, float threshold,
                                     const HaarClassifier* state);

/// Largest right and bottom bound over all rectangles of a stage. Null pointer -8.
int32 primGetHaarClassifierSize_32f(const HaarClassifier* state, ImageSize* size);

/// Gives a stage back. Null pointer -8.
int32 primHaarClassifierFree_32f(HaarClassifier* state);

} // namespace generic
} // namespace orvane
