// Cascade stages. A stage is one block of memory: header, classifier records, rectangle records.
// Records are ordered by rectangle count (two, three, others), which is also the order of summation.
#include "primitives/haar.h"

#include "primitives/heap_array.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>

namespace orvane {
namespace {

struct Corner {
    int32 column;
    int32 row;
};

struct FeatureRecord {
    Corner corners[4]; // (x+w, y+h), (x, y+h), (x+w, y), (x, y)
    float weight;
};

struct ClassifierRecord {
    int32 rectCount;
    const FeatureRecord* features;
    float threshold;
    float val1;
    float val2;
};

} // namespace

struct HaarClassifier {
    int32 classifierCount;
    int32 rectCount;
    int32 twoRectCount;        // classifiers with exactly two rectangles
    int32 twoOrThreeRectCount; // these, and the ones with exactly three
    const ClassifierRecord* classifiers;
};

namespace {

/// A rectangle resolved for one row length: offsets of its corners from a window's origin.
struct ResolvedRect {
    std::ptrdiff_t plusA;
    std::ptrdiff_t minusA;
    std::ptrdiff_t minusB;
    std::ptrdiff_t plusB;
    double weight;
};

/// A classifier, and the sums after it from which the stage's outcome is certain whatever the classifiers
/// behind it give.
struct ResolvedClassifier {
    double threshold;
    double val1;
    double val2;
    double failsBelow;
    double passesFrom;
};

int32 GroupOf(int32 rectCount) { return rectCount == 2 ? 0 : rectCount == 3 ? 1 : 2; }

bool IsUsable(const ImageRect& r) {
    constexpr int32 kMax = std::numeric_limits<int32>::max();
    return r.x >= 0 && r.y >= 0 && r.width >= 1 && r.height >= 1 && r.width <= kMax - r.x && r.height <= kMax - r.y;
}

FeatureRecord MakeFeature(const ImageRect& r, float weight) {
    // Unsigned, because a bad rectangle may overflow; the whole object is refused then.
    const auto right = static_cast<int32>(static_cast<uint32>(r.x) + static_cast<uint32>(r.width));
    const auto bottom = static_cast<int32>(static_cast<uint32>(r.y) + static_cast<uint32>(r.height));
    return {{{right, bottom}, {r.x, bottom}, {right, r.y}, {r.x, r.y}}, weight};
}

inline double WeightedSum(const float* window, const ResolvedRect& r) {
    return (static_cast<double>(window[r.plusA]) - window[r.minusA] - window[r.minusB] + window[r.plusB]) * r.weight;
}

/// The stage's rectangles and classifiers, resolved for one sum plane. Small stages live on the stack.
class ResolvedStage {
public:
    bool Resolve(const HaarClassifier& state, std::ptrdiff_t stride, double threshold) {
        rects_ = smallRects_.data();
        classifiers_ = smallClassifiers_.data();
        if (state.rectCount > kSmallRects || state.classifierCount > kSmallClassifiers) {
            if (!largeRects_.Allocate(state.rectCount) || !largeClassifiers_.Allocate(state.classifierCount)) {
                return false;
            }
            rects_ = largeRects_.data();
            classifiers_ = largeClassifiers_.data();
        }
        ResolvedRect* rect = rects_;
        for (int32 c = 0; c < state.classifierCount; ++c) {
            const ClassifierRecord& record = state.classifiers[c];
            classifiers_[c] = {record.threshold, record.val1, record.val2, 0.0, 0.0};
            for (int32 f = 0; f < record.rectCount; ++f) {
                const FeatureRecord& feature = record.features[f];
                const auto offset = [&](int corner) {
                    return feature.corners[corner].row * stride + feature.corners[corner].column;
                };
                *rect++ = {offset(0), offset(1), offset(2), offset(3), feature.weight};
            }
        }
        FindCertainSums(state.classifierCount, threshold);
        return true;
    }

    /// Whether the stage's sum reaches `threshold`, the one given to Resolve.
    bool Passes(const HaarClassifier& state, const float* window, double norm, double threshold) const {
        double stageSum = 0.0;
        const ResolvedRect* rect = rects_;
        const ResolvedClassifier* classifier = classifiers_;
        const ResolvedClassifier* const endOfTwo = classifier + state.twoRectCount;
        const ResolvedClassifier* const endOfThree = classifier + state.twoOrThreeRectCount;
        const ResolvedClassifier* const end = classifier + state.classifierCount;
        const auto isCertain = [&](double e) {
            stageSum += e < classifier->threshold * norm ? classifier->val1 : classifier->val2;
            return stageSum < classifier->failsBelow || stageSum >= classifier->passesFrom;
        };
        for (; classifier != endOfTwo; ++classifier, rect += 2) {
            if (isCertain(WeightedSum(window, rect[0]) + WeightedSum(window, rect[1])))
                return stageSum >= classifier->passesFrom;
        }
        for (; classifier != endOfThree; ++classifier, rect += 3) {
            if (isCertain(WeightedSum(window, rect[0]) + WeightedSum(window, rect[1]) + WeightedSum(window, rect[2]))) {
                return stageSum >= classifier->passesFrom;
            }
        }
        for (; classifier != end; ++classifier) {
            double e = 0.0;
            for (int32 f = 0; f < state.classifiers[classifier - classifiers_].rectCount; ++f)
                e += WeightedSum(window, *rect++);
            if (isCertain(e)) return stageSum >= classifier->passesFrom;
        }
        // Written so that a sum that is not a number passes.
        return !(stageSum < threshold);
    }

private:
    /// The bounds keep a margin far above the rounding of the sums, so that leaving early never changes an
    /// outcome; values that are not finite make bounds that no sum meets.
    void FindCertainSums(int32 count, double threshold) {
        double most = 0.0, least = 0.0, magnitude = std::fabs(threshold);
        for (int32 c = 0; c < count; ++c)
            magnitude += std::fabs(classifiers_[c].val1) + std::fabs(classifiers_[c].val2);
        const double margin = magnitude * 1e-9;
        for (int32 c = count - 1; c >= 0; --c) {
            ResolvedClassifier& classifier = classifiers_[c];
            classifier.failsBelow = threshold - margin - most;
            classifier.passesFrom = threshold + margin - least;
            most += std::max(classifier.val1, classifier.val2);
            least += std::min(classifier.val1, classifier.val2);
        }
    }

    static constexpr int32 kSmallRects = 768;
    static constexpr int32 kSmallClassifiers = 320;
    std::array<ResolvedRect, kSmallRects> smallRects_;
    std::array<ResolvedClassifier, kSmallClassifiers> smallClassifiers_;
    HeapArray<ResolvedRect> largeRects_;
    HeapArray<ResolvedClassifier> largeClassifiers_;
    ResolvedRect* rects_ = nullptr;
    ResolvedClassifier* classifiers_ = nullptr;
};

/// First index at or after `x` whose byte is not 0, or `width`. Eight bytes a step: most of a mask is 0.
inline int32 NextAlive(const uint8* mask, int32 x, int32 width) {
    while (x + 8 <= width) {
        uint64 eight;
        std::memcpy(&eight, mask + x, 8);
        if (eight != 0) break;
        x += 8;
    }
    while (x < width && mask[x] == 0) ++x;
    return x;
}

} // namespace

namespace generic {

int32 primHaarClassifierInitAlloc_32f(HaarClassifier** state, const ImageRect* rects, const float* weights,
                                      const float* thresholds, const float* val1, const float* val2,
                                      const int32* counts, int32 classifierCount) {
    if (state == nullptr || rects == nullptr || weights == nullptr || thresholds == nullptr || val1 == nullptr ||
        val2 == nullptr || counts == nullptr) {
        return kNullPointer;
    }
    if (classifierCount < 0) return kBadSize;
    int64 rectCount = 0;
    int32 inGroup[3] = {0, 0, 0};
    for (int32 c = 0; c < classifierCount; ++c) {
        if (counts[c] < 1) return kBadSize;
        rectCount += counts[c];
        ++inGroup[GroupOf(counts[c])];
    }

    constexpr int64 kMost = std::numeric_limits<int32>::max();
    if (rectCount > kMost) return kNoMemory;

    const int64 recordsAt = sizeof(HaarClassifier);
    const int64 featuresAt = recordsAt + static_cast<int64>(sizeof(ClassifierRecord)) * classifierCount;
    const int64 bytes = featuresAt + static_cast<int64>(sizeof(FeatureRecord)) * rectCount;
    if (bytes > kMost) return kNoMemory;
    auto* block = static_cast<unsigned char*>(primMalloc(static_cast<int32>(bytes)));
    if (block == nullptr) return kNoMemory;

    auto* records = reinterpret_cast<ClassifierRecord*>(block + recordsAt);
    auto* feature = reinterpret_cast<FeatureRecord*>(block + featuresAt);
    auto* object = new (block)
        HaarClassifier{classifierCount, static_cast<int32>(rectCount), inGroup[0], inGroup[0] + inGroup[1], records};
    bool usable = true;
    ClassifierRecord* record = records;
    for (int32 group = 0; group < 3; ++group) {
        std::ptrdiff_t input = 0;
        for (int32 c = 0; c < classifierCount; input += counts[c], ++c) {
            if (GroupOf(counts[c]) != group) continue;
            new (record++) ClassifierRecord{counts[c], feature, thresholds[c], val1[c], val2[c]};
            for (int32 f = 0; f < counts[c]; ++f) {
                const ImageRect& rect = rects[input + f];
                usable = usable && IsUsable(rect);
                new (feature++) FeatureRecord(MakeFeature(rect, weights[input + f]));
            }
        }
    }
    if (!usable) {
        primFree(object);
        *state = nullptr;
        return kBadArgument;
    }
    *state = object;
    return kOk;
}

int32 primApplyHaarClassifier_32f_C1(const float* src, int32 srcStep, const float* norm, int32 normStep, uint8* mask,
                                     int32 maskStep, ImageSize roi, int32* positive, float threshold,
                                     const HaarClassifier* state) {
    if (src == nullptr || norm == nullptr || mask == nullptr || positive == nullptr || state == nullptr) {
        return kNullPointer;
    }
    if (!HasPixels(roi)) return kBadSize;
    const int64 rowBytes = int64{4} * roi.width;
    if (srcStep < rowBytes || normStep < rowBytes || maskStep < roi.width) return kStepTooSmall;
    if (srcStep % 4 != 0 || normStep % 4 != 0) return kStepNotMultiple;

    ResolvedStage stage;
    if (!stage.Resolve(*state, srcStep / 4, threshold)) return kNoMemory;
    int32 passed = 0;
    for (int32 y = 0; y < roi.height; ++y) {
        const float* sumRow = RowAt(src, srcStep, y);
        const float* normRow = RowAt(norm, normStep, y);
        uint8* maskRow = RowAt(mask, maskStep, y);
        for (int32 x = NextAlive(maskRow, 0, roi.width); x < roi.width; x = NextAlive(maskRow, x + 1, roi.width)) {
            if (stage.Passes(*state, sumRow + x, normRow[x], threshold)) {
                ++passed;
            } else {
                maskRow[x] = 0;
            }
        }
    }
    *positive = passed;
    return kOk;
}

int32 primGetHaarClassifierSize_32f(const HaarClassifier* state, ImageSize* size) {
    if (state == nullptr || size == nullptr) return kNullPointer;
    *size = {0, 0};
    for (int32 c = 0; c < state->classifierCount; ++c) {
        const ClassifierRecord& record = state->classifiers[c];
        for (int32 f = 0; f < record.rectCount; ++f) {
            size->width = std::max(size->width, record.features[f].corners[0].column);
            size->height = std::max(size->height, record.features[f].corners[0].row);
        }
    }
    return kOk;
}

int32 primHaarClassifierFree_32f(HaarClassifier* state) {
    if (state == nullptr) return kNullPointer;
    primFree(state);
    return kOk;
}

} // namespace generic
} // namespace orvane
