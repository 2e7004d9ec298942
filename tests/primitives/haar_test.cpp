#include "primitives/haar.h"

#include "primitives/primitives.h"
#include "tests/reference/haar.h"
#include "tests/support/heap_limit.h"

#include <limits>
#include <memory>
#include <vector>

namespace orvane::test {
namespace {

using reference::Classifier;
using reference::WeightedRect;

constexpr int32 kMost = std::numeric_limits<int32>::max();

struct FreeStage {
    void operator()(HaarClassifier* state) const { EXPECT_EQ(kOk, primHaarClassifierFree_32f(state)); }
};
using Stage = std::unique_ptr<HaarClassifier, FreeStage>;

/// The set-up's parallel arrays.
struct StageArrays {
    explicit StageArrays(const std::vector<Classifier>& classifiers) {
        for (const Classifier& c : classifiers) {
            for (const WeightedRect& r : c.rects) {
                rects.push_back(r.rect);
                weights.push_back(r.weight);
            }
            thresholds.push_back(c.threshold);
            val1.push_back(c.val1);
            val2.push_back(c.val2);
            counts.push_back(static_cast<int32>(c.rects.size()));
        }
        // Room, so that the pointers are not null for an empty stage either.
        for (auto* values : {&weights, &thresholds, &val1, &val2}) values->reserve(1);
        rects.reserve(1);
        counts.reserve(1);
    }

    int32 Make(HaarClassifier** state) const {
        return primHaarClassifierInitAlloc_32f(state, rects.data(), weights.data(), thresholds.data(), val1.data(),
                                               val2.data(), counts.data(), static_cast<int32>(counts.size()));
    }

    std::vector<ImageRect> rects;
    std::vector<float> weights, thresholds, val1, val2;
    std::vector<int32> counts;
};

Stage MakeStage(const std::vector<Classifier>& classifiers) {
    HaarClassifier* state = nullptr;
    EXPECT_EQ(kOk, StageArrays(classifiers).Make(&state));
    return Stage(state);
}

/// Random classifiers of one to five rectangles inside a window of `side` pixels; the first rectangle is
/// the whole window, so that windows reach the last row and column of their plane.
std::vector<Classifier> RandomClassifiers(int32 count, int32 side, Random& random) {
    std::vector<Classifier> classifiers;
    for (int32 c = 0; c < count; ++c) {
        const int32 rectCounts[] = {2, 3, 2, 3, 1, 4, 5};
        Classifier classifier;
        for (int32 r = rectCounts[random.Int(0, 6)]; r > 0; --r) {
            WeightedRect rect;
            rect.rect.x = random.Int(0, side - 1);
            rect.rect.y = random.Int(0, side - 1);
            rect.rect.width = random.Int(1, side - rect.rect.x);
            rect.rect.height = random.Int(1, side - rect.rect.y);
            rect.weight = static_cast<float>(random.Real(-3, 3));
            classifier.rects.push_back(rect);
        }
        if (c == 0) classifier.rects[0].rect = {0, 0, side, side};
        classifier.threshold = static_cast<float>(random.Real(-60, 60));
        classifier.val1 = static_cast<float>(random.Real(-1, 1));
        classifier.val2 = static_cast<float>(random.Real(-1, 1));
        classifiers.push_back(classifier);
    }
    return classifiers;
}

int32 Apply(const Plane<float>& sum, const Plane<float>& norm, Plane<uint8>& mask, ImageSize roi, int32* positive,
            float threshold, const HaarClassifier* state) {
    return primApplyHaarClassifier_32f_C1(sum.Data(), sum.Step(), norm.Data(), norm.Step(), mask.Data(), mask.Step(),
                                          roi, positive, threshold, state);
}

/// Judges one stage over a random picture. How many windows it kept and removed is added up.
void Judge(const std::vector<Classifier>& classifiers, int32 side, ImageSize roi, Random& random, int32* kept,
           int32* removed) {
    const ImageSize size{roi.width + side - 1, roi.height + side - 1};
    const auto picture = Plane<uint8>::Source(size.width, size.height, random);
    auto sum = Plane<float>::Source(size.width + 1, size.height + 1, random);
    Plane<double> squares(size.width + 1, size.height + 1, 0, 0, 0);
    ASSERT_EQ(kOk, primSqrIntegral_8u32f64f_C1(picture.Data(), picture.Step(), sum.Data(), sum.Step(), squares.Data(),
                                               squares.Step(), size, -16777216.0f, 0.0));
    auto norm = Plane<float>::Source(roi.width, roi.height, random);
    auto mask = Plane<uint8>::Output(roi.width, roi.height, random);
    const auto threshold = static_cast<float>(random.Real(-1, 1));
    for (int32 y = 0; y < roi.height; ++y) {
        for (int32 x = 0; x < roi.width; ++x) {
            if (random.Int(0, 1) == 0) mask.At(x, y) = 0;
        }
    }
    auto expected = mask;
    int32 expectedPositive = 0;
    for (int32 y = 0; y < roi.height; ++y) {
        for (int32 x = 0; x < roi.width; ++x) {
            if (mask.At(x, y) == 0) continue;
            if (reference::PassesStage(sum, classifiers, norm.At(x, y), threshold, x, y)) {
                ++expectedPositive;
            } else {
                expected.At(x, y) = 0;
                ++*removed;
            }
        }
    }
    *kept += expectedPositive;
    const Stage stage = MakeStage(classifiers);
    int32 positive = random.Int(1, 1000); // on entry it means nothing
    ASSERT_EQ(kOk, Apply(sum, norm, mask, roi, &positive, threshold, stage.get()));
    ASSERT_PRED_FORMAT2(Plane<uint8>::Same, mask, expected) << classifiers.size() << " classifiers";
    ASSERT_EQ(expectedPositive, positive);
}

TEST(Haar, KeepsAndRemovesTheSameWindowsAsThePlainForm) {
    Random random;
    int32 kept = 0;
    int32 removed = 0;
    for (int32 width = 1; width <= 100; ++width) {
        const int32 side = random.Int(1, 20);
        Judge(RandomClassifiers(random.Int(1, 30), side, random), side, {width, random.Int(1, 6)}, random, &kept,
              &removed);
        if (HasFatalFailure()) return;
    }
    EXPECT_GT(kept, 1000) << "the stages must decide both ways";
    EXPECT_GT(removed, 1000);
}

TEST(Haar, AValueThatIsNoNumberLetsNoStageBeDecidedEarly) {
    Random random;
    int32 kept = 0;
    int32 removed = 0;
    const float odd[] = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                         -std::numeric_limits<float>::infinity()};
    for (int32 round = 0; round < 120; ++round) {
        auto classifiers = RandomClassifiers(12, 8, random);
        Classifier& chosen = classifiers[static_cast<std::size_t>(random.Int(0, 11))];
        (round % 2 == 0 ? chosen.val2 : chosen.val1) = odd[round / 2 % 3];
        Judge(classifiers, 8, {20, 5}, random, &kept, &removed);
        if (HasFatalFailure()) return;
    }
    EXPECT_GT(kept, 1000) << "the stages must decide both ways";
    EXPECT_GT(removed, 1000);
}

TEST(Haar, AStageOfManyHundredRectanglesWorksTheSame) {
    Random random;
    int32 kept = 0;
    int32 removed = 0;
    for (const int32 count : {319, 320, 321, 700}) {
        Judge(RandomClassifiers(count, 12, random), 12, {20, 5}, random, &kept, &removed);
    }
}

TEST(Haar, ClassifiersOfTwoRectanglesAreSummedFirstThenThoseOfThreeThenTheOthers) {
    // In this order the huge values cancel before the small one comes; in any other the small one is lost.
    const WeightedRect rect = {{0, 0, 1, 1}, 0.0f};
    const Classifier one = {{rect}, 1.0f, 1.0f, 0.0f};
    const Classifier two = {{rect, rect}, 1.0f, 1e30f, 0.0f};
    const Classifier three = {{rect, rect, rect}, 1.0f, -1e30f, 0.0f};
    const Classifier four = {{rect, rect, rect, rect}, 1.0f, 1.0f, 0.0f};
    const Plane<float> sum(2, 2, 0, 0, 0);
    Plane<float> norm(1, 1, 0, 0, 0);
    norm.At(0, 0) = 1.0f;
    for (const auto& order : {std::vector<Classifier>{one, two, three, four},
                              {three, one, four, two},
                              {one, four, three, two},
                              {two, three, one, four}}) {
        Plane<uint8> mask(1, 1, 0, 0, 0);
        mask.At(0, 0) = 1;
        int32 positive = 1;
        ASSERT_EQ(kOk, Apply(sum, norm, mask, {1, 1}, &positive, 2.0f, MakeStage(order).get()));
        EXPECT_EQ(1, positive);
    }
}

/// One window, one classifier over the whole pixel: kept or not.
bool Passes(float pixel, float weight, float norm, float threshold, float stageThreshold) {
    Plane<float> sum(2, 2, 0, 0, 0);
    sum.At(1, 1) = pixel;
    Plane<float> norms(1, 1, 0, 0, 0);
    norms.At(0, 0) = norm;
    Plane<uint8> mask(1, 1, 0, 0, 0);
    mask.At(0, 0) = 200;
    int32 positive = 1;
    const Stage stage = MakeStage({{{{{0, 0, 1, 1}, weight}}, threshold, 1.0f, 2.0f}});
    EXPECT_EQ(kOk, Apply(sum, norms, mask, {1, 1}, &positive, stageThreshold, stage.get()));
    EXPECT_EQ(positive, mask.At(0, 0) == 200 ? 1 : 0) << "a kept byte keeps its value";
    return positive == 1;
}

TEST(Haar, ATieOfAClassifierTakesTheSecondValueAndATieOfTheStagePasses) {
    EXPECT_TRUE(Passes(10, 1, 5, 2, 2.0f)) << "10 is not below 2*5: value 2, which ties";
    EXPECT_FALSE(Passes(9, 1, 5, 2, 2.0f)) << "9 is below: value 1";
    EXPECT_TRUE(Passes(9, 1, 5, 2, 1.0f));
    EXPECT_FALSE(Passes(10, 1, 5, 2, 2.0000002f));
}

TEST(Haar, ANormOfZeroMakesEveryBoundZero) {
    EXPECT_FALSE(Passes(1, -1, 0, 100, 2.0f)) << "a negative sum is below: value 1";
    EXPECT_TRUE(Passes(1, 1, 0, 100, 2.0f));
    EXPECT_TRUE(Passes(0, 1, 0, 100, 2.0f));
}

TEST(Haar, SumsAreWiderThanAFloat) {
    // 2^24 + 1 has no float: a narrower sum would tie with the bound.
    Plane<float> sum(2, 2, 0, 0, 0);
    sum.At(1, 1) = 16777216.0f;
    sum.At(0, 1) = -1.0f;
    Plane<float> norms(1, 1, 0, 0, 0);
    norms.At(0, 0) = 1.0f;
    Plane<uint8> mask(1, 1, 0, 0, 0);
    mask.At(0, 0) = 1;
    int32 positive = 1;
    const Stage stage = MakeStage({{{{{0, 0, 1, 1}, -1.0f}}, -16777216.0f, 1.0f, 2.0f}});
    ASSERT_EQ(kOk, Apply(sum, norms, mask, {1, 1}, &positive, 1.5f, stage.get()));
    EXPECT_EQ(0, positive);
}

TEST(Haar, AMaskOfZerosReadsNoImage) {
    const Stage stage = MakeStage({{{{{5, 5, 10, 10}, 1.0f}}, 1.0f, 1.0f, 2.0f}});
    const auto image = std::make_unique<float>(0.0f); // whatever is read lies outside
    std::vector<uint8> mask(64 * 3, 0);
    int32 positive = 55;
    ASSERT_EQ(kOk, primApplyHaarClassifier_32f_C1(image.get(), 256, image.get(), 256, mask.data(), 64, {64, 3},
                                                  &positive, 0.0f, stage.get()));
    EXPECT_EQ(0, positive);
}

TEST(Haar, AStageWithoutClassifiersSumsToZero) {
    const Stage stage = MakeStage({});
    ImageSize size{9, 9};
    EXPECT_EQ(kOk, primGetHaarClassifierSize_32f(stage.get(), &size));
    EXPECT_EQ(0, size.width);
    EXPECT_EQ(0, size.height);
    const Plane<float> plane(1, 1, 0, 0, 0);
    Plane<uint8> mask(1, 1, 0, 0, 0);
    mask.At(0, 0) = 9;
    int32 positive = 1;
    ASSERT_EQ(kOk, Apply(plane, plane, mask, {1, 1}, &positive, 0.0f, stage.get()));
    EXPECT_EQ(1, positive);
    ASSERT_EQ(kOk, Apply(plane, plane, mask, {1, 1}, &positive, 0.1f, stage.get()));
    EXPECT_EQ(0, positive);
}

TEST(Haar, SizeIsTheLargestRightAndBottomBoundOfAllRectangles) {
    const Stage stage = MakeStage({{{{{3, 1, 4, 2}, 1}, {{0, 0, 2, 20}, 1}}, 0, 0, 0},
                                   {{{{9, 0, 10, 3}, 1}, {{1, 1, 1, 1}, 1}, {{0, 0, 5, 5}, 1}}, 0, 0, 0}});
    ImageSize size{0, 0};
    ASSERT_EQ(kOk, primGetHaarClassifierSize_32f(stage.get(), &size));
    EXPECT_EQ(19, size.width);
    EXPECT_EQ(20, size.height);
}

TEST(HaarSetUp, TheInputsAreCopied) {
    StageArrays arrays({{{{{0, 0, 3, 4}, 1}}, 0, 0, 0}});
    HaarClassifier* state = nullptr;
    ASSERT_EQ(kOk, arrays.Make(&state));
    const Stage stage(state);
    arrays.rects[0] = {50, 50, 50, 50};
    ImageSize size{0, 0};
    ASSERT_EQ(kOk, primGetHaarClassifierSize_32f(stage.get(), &size));
    EXPECT_EQ(3, size.width);
    EXPECT_EQ(4, size.height);
}

TEST(HaarSetUp, FailuresAreTestedInOrder) {
    const ImageRect bad[2] = {{0, 0, 1, 1}, {-1, 0, 1, 1}};
    const float f[2] = {};
    const int32 none[2] = {1, 0};
    const int32 ones[2] = {1, 1};
    const Stage other = MakeStage({});
    HaarClassifier* const untouched = other.get();
    HaarClassifier* state = untouched;
    EXPECT_EQ(-8, primHaarClassifierInitAlloc_32f(nullptr, bad, f, f, f, f, none, -1));
    EXPECT_EQ(-8, primHaarClassifierInitAlloc_32f(&state, nullptr, f, f, f, f, none, -1));
    EXPECT_EQ(-8, primHaarClassifierInitAlloc_32f(&state, bad, nullptr, f, f, f, none, -1));
    EXPECT_EQ(-8, primHaarClassifierInitAlloc_32f(&state, bad, f, nullptr, f, f, none, -1));
    EXPECT_EQ(-8, primHaarClassifierInitAlloc_32f(&state, bad, f, f, nullptr, f, none, -1));
    EXPECT_EQ(-8, primHaarClassifierInitAlloc_32f(&state, bad, f, f, f, nullptr, none, -1));
    EXPECT_EQ(-8, primHaarClassifierInitAlloc_32f(&state, bad, f, f, f, f, nullptr, -1));
    EXPECT_EQ(-6, primHaarClassifierInitAlloc_32f(&state, bad, f, f, f, f, none, -1));
    {
        const HeapLimit limit(0);
        EXPECT_EQ(-6, primHaarClassifierInitAlloc_32f(&state, bad, f, f, f, f, none, 2));
        EXPECT_EQ(-9, primHaarClassifierInitAlloc_32f(&state, bad, f, f, f, f, ones, 2));
    }
    EXPECT_EQ(untouched, state) << "only a bad rectangle clears the result";
    EXPECT_EQ(-5, primHaarClassifierInitAlloc_32f(&state, bad, f, f, f, f, ones, 2));
    EXPECT_EQ(nullptr, state);
}

TEST(HaarSetUp, ARectangleWithoutPlaceOrSizeIsRefusedWhereverItStands) {
    for (const ImageRect& rect : {ImageRect{-1, 0, 1, 1},
                                  {0, -1, 1, 1},
                                  {0, 0, 0, 1},
                                  {0, 0, 1, 0},
                                  {0, 0, -5, 1},
                                  {kMost, 0, 1, 1},
                                  {0, 1, 1, kMost}}) {
        for (std::size_t at = 0; at < 6; ++at) {
            StageArrays arrays({{{{{0, 0, 1, 1}, 1}}, 0, 0, 0},
                                {{{{0, 0, 1, 1}, 1}, {{0, 0, 1, 1}, 1}}, 0, 0, 0},
                                {{{{0, 0, 1, 1}, 1}, {{0, 0, 1, 1}, 1}, {{0, 0, 1, 1}, 1}}, 0, 0, 0}});
            arrays.rects[at] = rect;
            HaarClassifier* state = nullptr;
            EXPECT_EQ(-5, arrays.Make(&state)) << "rectangle " << at;
            EXPECT_EQ(nullptr, state);
        }
    }
}

TEST(HaarSetUp, MoreRectanglesThanABlockHoldsAreNoMemory) {
    const ImageRect rect = {0, 0, 1, 1};
    const float f = 0;
    const int32 counts[3] = {kMost, kMost, kMost};
    HaarClassifier* state = nullptr;
    EXPECT_EQ(-9, primHaarClassifierInitAlloc_32f(&state, &rect, &f, &f, &f, &f, counts, 1));
    EXPECT_EQ(-9, primHaarClassifierInitAlloc_32f(&state, &rect, &f, &f, &f, &f, counts, 3));
}

TEST(Haar, ApplyTestsItsFailuresInOrder) {
    const Stage stage = MakeStage({{{{{0, 0, 1, 1}, 1}}, 0, 0, 0}});
    const float src[16] = {};
    const float norm[16] = {};
    uint8 mask[16] = {7};
    int32 positive = 3;
    const auto run = [&](const float* s, int32 sStep, const float* n, int32 nStep, uint8* m, int32 mStep, ImageSize roi,
                         int32* p, const HaarClassifier* state) {
        return primApplyHaarClassifier_32f_C1(s, sStep, n, nStep, m, mStep, roi, p, 9.0f, state);
    };
    EXPECT_EQ(-8, run(nullptr, 1, norm, 1, mask, 1, {0, 0}, &positive, stage.get()));
    EXPECT_EQ(-8, run(src, 1, nullptr, 1, mask, 1, {0, 0}, &positive, stage.get()));
    EXPECT_EQ(-8, run(src, 1, norm, 1, nullptr, 1, {0, 0}, &positive, stage.get()));
    EXPECT_EQ(-8, run(src, 1, norm, 1, mask, 1, {0, 0}, nullptr, stage.get()));
    EXPECT_EQ(-8, run(src, 1, norm, 1, mask, 1, {0, 0}, &positive, nullptr));
    EXPECT_EQ(-6, run(src, 1, norm, 1, mask, 1, {0, 2}, &positive, stage.get()));
    EXPECT_EQ(-6, run(src, 1, norm, 1, mask, 1, {2, 0}, &positive, stage.get()));
    EXPECT_EQ(-14, run(src, 7, norm, 9, mask, 2, {2, 2}, &positive, stage.get()));
    EXPECT_EQ(-14, run(src, 9, norm, 7, mask, 2, {2, 2}, &positive, stage.get()));
    EXPECT_EQ(-14, run(src, 9, norm, 9, mask, 1, {2, 2}, &positive, stage.get()));
    EXPECT_EQ(-14, run(src, kMost, norm, kMost, mask, kMost, {kMost, 1}, &positive, stage.get()));
    EXPECT_EQ(-108, run(src, 9, norm, 8, mask, 2, {2, 2}, &positive, stage.get()));
    EXPECT_EQ(-108, run(src, 8, norm, 9, mask, 2, {2, 2}, &positive, stage.get()));
    EXPECT_EQ(7, mask[0]);
    EXPECT_EQ(3, positive);
}

TEST(Haar, ALargeStageWithoutMemoryChangesNothing) {
    Random random;
    const Stage stage = MakeStage(RandomClassifiers(400, 2, random));
    const Plane<float> plane(4, 4, 0, 0, 0);
    Plane<uint8> mask(2, 2, 0, 0, 0);
    mask.FillRegion(7);
    int32 positive = 3;
    for (const int32 allowed : {0, 1}) {
        const HeapLimit limit(allowed);
        EXPECT_EQ(-9, Apply(plane, plane, mask, {2, 2}, &positive, 1e9f, stage.get())) << allowed << " allowed";
    }
    EXPECT_EQ(7, mask.At(0, 0));
    EXPECT_EQ(3, positive);
}

TEST(Haar, SizeAndFreeRefuseNull) {
    const Stage stage = MakeStage({});
    ImageSize size{5, 5};
    EXPECT_EQ(-8, primGetHaarClassifierSize_32f(nullptr, &size));
    EXPECT_EQ(-8, primGetHaarClassifierSize_32f(stage.get(), nullptr));
    EXPECT_EQ(5, size.width);
    EXPECT_EQ(-8, primHaarClassifierFree_32f(nullptr));
}

} // namespace
} // namespace orvane::test
