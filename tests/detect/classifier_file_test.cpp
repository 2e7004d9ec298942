#include "detect/classifier_file.h"

#include "tests/detect/allocation_watch.h"
#include "tests/support/face_scene.h"
#include "tests/support/heap_limit.h"
#include "tests/support/module_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <utility>

namespace orvane::test {
namespace {

constexpr int32 kMax32 = std::numeric_limits<int32>::max();
constexpr int32 kMin32 = std::numeric_limits<int32>::min();

/// Two stages, three classifiers, six rectangles; every number is another one.
CascadeFile SmallCascade() {
    const WeakClassifier first{{{{0, 0, 24, 24}, 1.5F}, {{1, 2, 3, 4}, -2.0F}}, 0.25F, -1.0F, 1.0F};
    const WeakClassifier second{{{{5, 0, 6, 24}, 3.0F}}, -0.5F, 2.0F, -2.0F};
    const WeakClassifier third{
        {{{0, 2, 8, 4}, 4.0F}, {{7, 8, 9, 10}, 5.0F}, {{23, 23, 1, 1}, -6.0F}}, 0.75F, 3.0F, -3.0F};
    CascadeFile file = BuildCascade({24, 24}, {{{first, second}, 0.5F}, {{third}, -1.5F}});
    file.stageReserved = {77, -88};
    return file;
}

class ClassifierFile : public ::testing::Test {
protected:
    /// Reads the bytes as they stand, without the changes that follow a load.
    int32 Read(const std::string& bytes, ClassifierTables& tables) {
        EXPECT_TRUE(WriteClassifier(files_.Path(), bytes));
        return ReadClassifierFile(Name(), tables);
    }
    static PathString Name() { return std::filesystem::path("Orvane.dat").native(); }

    /// A refused file leaves nothing behind.
    void ExpectRefused(const std::string& bytes, const std::string& what) {
        EXPECT_EQ(-70, files_.Load(bytes)) << what;
        EXPECT_EQ(0, g_classifier.windowWidth) << what;
        EXPECT_EQ(0, g_classifier.stageCount) << what;
        EXPECT_TRUE(g_classifier.stageThreshold.empty() && g_classifier.stageObject.empty() &&
                    g_classifier.featureRect.empty())
            << what;
    }

    ModuleFiles files_;
};

TEST_F(ClassifierFile, HasEveryFieldAtItsOffset) {
    // S 2, C 3, F 6: 20 + 20 * 2 + 16 * 3 + 20 * 6 bytes
    std::string bytes(228, '\0');
    const auto putInt = [&](std::size_t offset, int32 value) { std::memcpy(&bytes[offset], &value, 4); };
    const auto putFloat = [&](std::size_t offset, float value) { std::memcpy(&bytes[offset], &value, 4); };
    constexpr std::size_t kStages = 20, kClassifiers = 20 + 20 * 2, kRects = kClassifiers + 16 * 3,
                          kWeights = kRects + 16 * 6;
    const int32 header[] = {30, 28, 2, 3, 6};
    for (std::size_t i = 0; i < 5; ++i) putInt(4 * i, header[i]);
    const int32 classifierCounts[] = {2, 1}, reserved[] = {5, -6}, classifierStarts[] = {0, 2},
                featureStarts[] = {0, 3};
    for (std::size_t i = 0; i < 2; ++i) {
        putFloat(kStages + 4 * i, 0.5F + static_cast<float>(i));
        putInt(kStages + 8 + 4 * i, classifierCounts[i]);
        putInt(kStages + 16 + 4 * i, reserved[i]);
        putInt(kStages + 24 + 4 * i, classifierStarts[i]);
        putInt(kStages + 32 + 4 * i, featureStarts[i]);
    }
    const int32 featureCounts[] = {1, 2, 3};
    for (std::size_t i = 0; i < 3; ++i) {
        putInt(kClassifiers + 4 * i, featureCounts[i]);
        putFloat(kClassifiers + 12 + 4 * i, 10.0F + static_cast<float>(i));
        putFloat(kClassifiers + 24 + 4 * i, 20.0F + static_cast<float>(i));
        putFloat(kClassifiers + 36 + 4 * i, 30.0F + static_cast<float>(i));
    }
    for (std::size_t i = 0; i < 6; ++i) {
        const int32 k = static_cast<int32>(i);
        const int32 rect[] = {k, k + 1, k + 2, k + 3};
        for (std::size_t j = 0; j < 4; ++j) putInt(kRects + 16 * i + 4 * j, rect[j]);
        putFloat(kWeights + 4 * i, -1.0F - static_cast<float>(i));
    }

    ClassifierTables t;
    ASSERT_EQ(0, Read(bytes, t));
    EXPECT_EQ(30, t.windowWidth);
    EXPECT_EQ(28, t.windowHeight);
    EXPECT_EQ(2, t.stageCount);
    EXPECT_EQ(3, t.classifierCount);
    EXPECT_EQ(6, t.featureCount);
    EXPECT_EQ((std::vector<float>{0.5F, 1.5F}), t.stageThreshold);
    EXPECT_EQ((std::vector<int32>{2, 1}), t.stageClassifierCount);
    EXPECT_EQ((std::vector<int32>{5, -6}), t.stageReserved);
    EXPECT_EQ((std::vector<int32>{0, 2}), t.stageClassifierStart);
    EXPECT_EQ((std::vector<int32>{0, 3}), t.stageFeatureStart);
    EXPECT_EQ((std::vector<int32>{1, 2, 3}), t.classifierFeatureCount);
    EXPECT_EQ((std::vector<float>{10.0F, 11.0F, 12.0F}), t.classifierThreshold);
    EXPECT_EQ((std::vector<float>{20.0F, 21.0F, 22.0F}), t.classifierVal1);
    EXPECT_EQ((std::vector<float>{30.0F, 31.0F, 32.0F}), t.classifierVal2);
    ASSERT_EQ(6u, t.featureRect.size());
    EXPECT_EQ(5, t.featureRect[5].x);
    EXPECT_EQ(6, t.featureRect[5].y);
    EXPECT_EQ(7, t.featureRect[5].width);
    EXPECT_EQ(8, t.featureRect[5].height);
    EXPECT_EQ((std::vector<float>{-1.0F, -2.0F, -3.0F, -4.0F, -5.0F, -6.0F}), t.featureWeight);
    ASSERT_EQ(2u, t.stageObject.size());
    EXPECT_EQ(nullptr, t.stageObject[0]);
    EXPECT_EQ(nullptr, t.stageObject[1]);
}

TEST_F(ClassifierFile, IsWrittenByTheBuilderAsItIsRead) {
    const CascadeFile file = SmallCascade();
    ClassifierTables t;
    ASSERT_EQ(0, Read(file.Bytes(), t));
    EXPECT_EQ(file.stageThreshold, t.stageThreshold);
    EXPECT_EQ(file.stageFeatureStart, t.stageFeatureStart);
    EXPECT_EQ(file.classifierFeatureCount, t.classifierFeatureCount);
    EXPECT_EQ(file.classifierVal2, t.classifierVal2);
    EXPECT_EQ(file.featureWeight, t.featureWeight);
}

TEST_F(ClassifierFile, LoadsWithEverythingPrepared) {
    const CascadeFile file = SmallCascade();
    ASSERT_EQ(0, files_.Load(file));
    const ClassifierTables& t = g_classifier;
    const float norm = 1.0F / 484.0F;
    for (std::size_t i = 0; i < file.featureWeight.size(); ++i) {
        EXPECT_EQ(file.featureWeight[i] * norm, t.featureWeight[i]) << "weight " << i;
        const ImageRect& rect = file.featureRect[i];
        EXPECT_EQ(rect.x, t.featureRect[i].x);
        EXPECT_EQ(24 - rect.height - rect.y, t.featureRect[i].y) << "rectangle " << i;
        EXPECT_EQ(rect.width, t.featureRect[i].width);
        EXPECT_EQ(rect.height, t.featureRect[i].height);
    }
    for (std::size_t i = 0; i < 2; ++i) {
        // The bias comes off the file's threshold, which no norm has touched.
        EXPECT_EQ(file.stageThreshold[i] - 0.0001F, t.stageThreshold[i]) << "stage " << i;
        EXPECT_EQ(nullptr, t.stageObject[i]) << "made before any scan wants it";
    }
    EXPECT_EQ(file.classifierThreshold, t.classifierThreshold) << "classifier thresholds have no norm and no bias";
    EXPECT_EQ(24, t.maxFeatureWidth);
    EXPECT_EQ(24, t.maxFeatureHeight);
}

TEST_F(ClassifierFile, TurnsRectanglesUpsideDown) {
    struct {
        int32 y, height, turned;
    } const cases[] = {{0, 24, 0}, {2, 4, 18}, {0, 1, 23}, {23, 1, 0}, {20, 4, 0}};
    for (const auto& c : cases) {
        const WeakClassifier classifier{{{{0, c.y, 24, c.height}, 1.0F}}, 0.0F};
        ASSERT_EQ(0, files_.Load(BuildCascade({24, 24}, {{{classifier}}})));
        EXPECT_EQ(c.turned, g_classifier.featureRect[0].y) << "y " << c.y << ", height " << c.height;
        EXPECT_EQ(c.turned + c.height, g_classifier.maxFeatureHeight);
    }
}

TEST_F(ClassifierFile, NormGoesByTheInnerArea) {
    struct {
        ImageSize window;
        int32 border;
        double norm;
    } const cases[] = {{{24, 24}, 1, 1.0 / 484},
                       {{24, 24}, 0, 1.0 / 576},
                       {{24, 24}, 2, 1.0 / 400},
                       {{20, 30}, 1, 1.0 / 504},
                       {{3, 3}, 1, 1.0}};
    for (const auto& c : cases) {
        ClassifierTables t;
        const WeakClassifier classifier{{{{0, 0, c.window.width, c.window.height}, 1.0F}}, 0.0F};
        ASSERT_EQ(0, Read(BuildCascade(c.window, {{{classifier}, 2.0F}}).Bytes(), t));
        ASSERT_EQ(0, PrepareClassifier(c.border, 0.5F, t));
        EXPECT_EQ(static_cast<float>(c.norm), t.featureWeight[0]) << c.window.width << " by " << c.window.height;
        EXPECT_EQ(1.5F, t.stageThreshold[0]);
        EXPECT_EQ(0, FreeClassifier(t));
    }
}

TEST_F(ClassifierFile, ReachesAsFarAsTheFarthestRectangleOfAnyStage) {
    const WeakClassifier wide{{{{0, 20, 23, 4}, 1.0F}}, 0.0F};
    const WeakClassifier high{{{{2, 1, 3, 22}, 1.0F}}, 0.0F}; // after the turn rows 1 to 22
    ASSERT_EQ(0, files_.Load(BuildCascade({24, 24}, {{{wide}}, {{high}}})));
    EXPECT_EQ(23, g_classifier.maxFeatureWidth);
    EXPECT_EQ(23, g_classifier.maxFeatureHeight);
}

TEST_F(ClassifierFile, MayReachBeyondTheWindowsRightAndItsTop) {
    const WeakClassifier right{{{{20, 20, 9, 4}, 1.0F}}, 0.0F};
    const WeakClassifier above{{{{2, -3, 3, 22}, 1.0F}}, 0.0F}; // after the turn rows 5 to 26
    ASSERT_EQ(0, files_.Load(BuildCascade({24, 24}, {{{right}}, {{above}}})));
    EXPECT_EQ(29, g_classifier.maxFeatureWidth);
    EXPECT_EQ(27, g_classifier.maxFeatureHeight);
    EXPECT_EQ(5, g_classifier.featureRect[1].y);
    EXPECT_FALSE(g_classifier.plan.usable) << "its bounds are those of sums over the window";
}

TEST_F(ClassifierFile, WithoutStagesLoads) {
    ASSERT_EQ(0, files_.Load(BuildCascade({24, 24}, {})));
    EXPECT_EQ(24, g_classifier.windowWidth);
    EXPECT_EQ(0, g_classifier.stageCount);
    EXPECT_EQ(0, g_classifier.maxFeatureWidth);
    EXPECT_EQ(0, g_classifier.maxFeatureHeight);
    EXPECT_TRUE(g_classifier.stageObject.empty());
}

TEST_F(ClassifierFile, StagesMayShareClassifiersAndRectangles) {
    CascadeFile file = SmallCascade();
    file.stageClassifierStart = {0, 0};
    file.stageClassifierCount = {2, 2};
    file.stageFeatureStart = {0, 0};
    ASSERT_EQ(0, files_.Load(file));
    ASSERT_EQ(0, MakeStages(g_classifier));
    ImageSize sizes[2];
    for (std::size_t i = 0; i < 2; ++i)
        ASSERT_EQ(0, primGetHaarClassifierSize_32f(g_classifier.stageObject[i].get(), &sizes[i]));
    EXPECT_EQ(sizes[0].width, sizes[1].width);
    EXPECT_NE(g_classifier.stageObject[0], g_classifier.stageObject[1]);
}

TEST_F(ClassifierFile, AStageMayHaveNoClassifiers) {
    CascadeFile file = SmallCascade();
    file.stageClassifierCount[1] = 0;
    EXPECT_EQ(0, files_.Load(file));
}

TEST_F(ClassifierFile, ReservedNumbersAndTrailingBytesHaveNoEffect) {
    CascadeFile file = SmallCascade();
    ASSERT_EQ(0, files_.Load(file));
    const ClassifierTables plain = std::move(g_classifier);
    file.stageReserved = {kMin32, kMax32};
    ClassifierTables t;
    ASSERT_EQ(0, Read(file.Bytes() + std::string(1000, '\x7F'), t));
    EXPECT_EQ((std::vector<int32>{kMin32, kMax32}), t.stageReserved);
    ASSERT_EQ(0, files_.Load(file.Bytes() + "x"));
    EXPECT_EQ(plain.stageThreshold, g_classifier.stageThreshold);
    EXPECT_EQ(plain.featureWeight, g_classifier.featureWeight);
    EXPECT_EQ(plain.maxFeatureWidth, g_classifier.maxFeatureWidth);
}

TEST_F(ClassifierFile, IsReadAnewAndReplacesTheOneBefore) {
    ASSERT_EQ(0, files_.Load(SmallCascade()));
    const WeakClassifier classifier{{{{0, 0, 20, 20}, 1.0F}}, 0.0F};
    ASSERT_EQ(0, files_.Load(BuildCascade({20, 20}, {{{classifier}}})));
    EXPECT_EQ(20, g_classifier.windowWidth);
    EXPECT_EQ(1, g_classifier.stageCount);
    EXPECT_EQ(20, g_classifier.maxFeatureWidth) << "the bound of the classifier before stands";
}

TEST_F(ClassifierFile, FreesOnceAndKeepsTheCounts) {
    ASSERT_EQ(0, files_.Load(SmallCascade()));
    EXPECT_EQ(0, FreeClassifier(g_classifier));
    EXPECT_TRUE(g_classifier.stageObject.empty());
    EXPECT_TRUE(g_classifier.featureRect.empty());
    EXPECT_EQ(2, g_classifier.stageCount);
    EXPECT_EQ(24, g_classifier.windowWidth);
    EXPECT_EQ(0, FreeClassifier(g_classifier));
}

TEST_F(ClassifierFile, ThatIsAbsentCannotBeOpened) {
    ClassifierTables t;
    t.windowWidth = 5;
    EXPECT_EQ(-5, ReadClassifierFile(Name(), t));
    EXPECT_EQ(5, t.windowWidth) << "a failed read changed the tables";
    EXPECT_EQ(-70, LoadClassifier());
}

TEST_F(ClassifierFile, WhosePlaceIsTakenByAFolderIsUnusable) {
    ASSERT_TRUE(std::filesystem::create_directory(files_.Path() / "Orvane.dat"));
    EXPECT_EQ(-70, LoadClassifier());
}

TEST_F(ClassifierFile, ThatEndsEarlyIsUnusable) {
    const std::string whole = SmallCascade().Bytes();
    ASSERT_EQ(228u, whole.size());
    ASSERT_EQ(0, files_.Load(SmallCascade()));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        ExpectRefused(whole.substr(0, length), std::to_string(length) + " bytes");
    }
}

TEST_F(ClassifierFile, WithLyingNumbersIsUnusable) {
    struct {
        const char* what;
        std::function<void(CascadeFile&)> change;
    } const cases[] = {
        {"window width 0", [](CascadeFile& f) { f.header[0] = 0; }},
        {"window height 0", [](CascadeFile& f) { f.header[1] = 0; }},
        {"window width negative", [](CascadeFile& f) { f.header[0] = -24; }},
        {"window height least", [](CascadeFile& f) { f.header[1] = kMin32; }},
        {"window width most", [](CascadeFile& f) { f.header[0] = kMax32; }},
        {"window height most", [](CascadeFile& f) { f.header[1] = kMax32; }},
        {"stages negative", [](CascadeFile& f) { f.header[2] = -1; }},
        {"stages least", [](CascadeFile& f) { f.header[2] = kMin32; }},
        {"one stage too many", [](CascadeFile& f) { f.header[2] = 3; }},
        {"stages most", [](CascadeFile& f) { f.header[2] = kMax32; }},
        {"classifiers negative", [](CascadeFile& f) { f.header[3] = -1; }},
        {"one classifier too many", [](CascadeFile& f) { f.header[3] = 4; }},
        {"classifiers most", [](CascadeFile& f) { f.header[3] = kMax32; }},
        {"rectangles negative", [](CascadeFile& f) { f.header[4] = -1; }},
        {"one rectangle too many", [](CascadeFile& f) { f.header[4] = 7; }},
        {"rectangles most", [](CascadeFile& f) { f.header[4] = kMax32; }},
        {"counts whose bytes wrap to the file's length in 32 bits",
         [](CascadeFile& f) { f.header[2] = 0x33333335, f.header[3] = 0x10000003; }},
        {"all counts most", [](CascadeFile& f) { f.header[2] = f.header[3] = f.header[4] = kMax32; }},
        {"negative and positive counts that add up",
         [](CascadeFile& f) { f.header[2] = -2, f.header[3] = 3 + 5, f.header[4] = 6; }},
        {"stage's classifiers negative", [](CascadeFile& f) { f.stageClassifierCount[0] = -1; }},
        {"stage's classifiers past the end", [](CascadeFile& f) { f.stageClassifierCount[0] = 4; }},
        {"stage's classifiers most", [](CascadeFile& f) { f.stageClassifierCount[1] = kMax32; }},
        {"stage's first classifier negative", [](CascadeFile& f) { f.stageClassifierStart[0] = -1; }},
        {"stage's first classifier past the end", [](CascadeFile& f) { f.stageClassifierStart[1] = 3; }},
        {"stage's first classifier most", [](CascadeFile& f) { f.stageClassifierStart[1] = kMax32; }},
        {"stage's first rectangle negative", [](CascadeFile& f) { f.stageFeatureStart[0] = -1; }},
        {"stage's first rectangle so that the last lies past the end",
         [](CascadeFile& f) { f.stageFeatureStart[1] = 4; }},
        {"stage's first rectangle most", [](CascadeFile& f) { f.stageFeatureStart[1] = kMax32; }},
        {"empty stage's first rectangle past the end",
         [](CascadeFile& f) { f.stageClassifierCount[1] = 0, f.stageFeatureStart[1] = 7; }},
        {"classifier without rectangles", [](CascadeFile& f) { f.classifierFeatureCount[1] = 0; }},
        {"classifier's rectangles negative", [](CascadeFile& f) { f.classifierFeatureCount[0] = -1; }},
        {"classifier's rectangles past the end", [](CascadeFile& f) { f.classifierFeatureCount[2] = 4; }},
        {"classifier's rectangles most", [](CascadeFile& f) { f.classifierFeatureCount[2] = kMax32; }},
        {"rectangles of two classifiers that wrap",
         [](CascadeFile& f) { f.classifierFeatureCount[0] = f.classifierFeatureCount[1] = kMax32; }},
        {"x negative", [](CascadeFile& f) { f.featureRect[1].x = -1; }},
        {"y so negative that it reaches beyond all windows", [](CascadeFile& f) { f.featureRect[1].y = -4073; }},
        {"y least", [](CascadeFile& f) { f.featureRect[1].y = kMin32; }},
        {"width 0", [](CascadeFile& f) { f.featureRect[1].width = 0; }},
        {"height 0", [](CascadeFile& f) { f.featureRect[1].height = 0; }},
        {"width negative", [](CascadeFile& f) { f.featureRect[1].width = -3; }},
        {"right of all windows", [](CascadeFile& f) { f.featureRect[1].x = 4096; }},
        {"x most", [](CascadeFile& f) { f.featureRect[1].x = kMax32; }},
        {"one row out below", [](CascadeFile& f) { f.featureRect[1].height = 23; }},
        {"width most", [](CascadeFile& f) { f.featureRect[1].width = kMax32; }},
        {"bounds that wrap",
         [](CascadeFile& f) {
             f.featureRect[1] = {kMax32, kMax32, kMax32, kMax32};
         }},
        {"x least", [](CascadeFile& f) { f.featureRect[5].x = kMin32; }},
    };
    ASSERT_EQ(0, files_.Load(SmallCascade()));
    for (const auto& c : cases) {
        CascadeFile file = SmallCascade();
        c.change(file);
        ExpectRefused(file.Bytes(), c.what);
    }
}

TEST_F(ClassifierFile, WithCountsThatItsLengthDeniesAllocatesNothingForThem) {
    for (std::size_t count = 2; count < 5; ++count) {
        CascadeFile lying = SmallCascade();
        lying.header[count] = 100'000'000; // 1.6 GB and more are said to follow
        const std::string bytes = lying.Bytes();
        LargestRequest() = 0;
        ExpectRefused(bytes, "count " + std::to_string(count));
        EXPECT_LT(LargestRequest(), 100'000u) << "count " << count;
    }
}

TEST_F(ClassifierFile, WhoseStagesShareTooMuchIsUnusable) {
    // Every one of 20,000 stages claims all of 20,000 rectangles: 400 million in a file of 1 MB.
    constexpr int32 kMany = 20000;
    CascadeFile file;
    file.header = {24, 24, kMany, kMany, kMany};
    file.stageThreshold.assign(kMany, 0.5F);
    file.stageClassifierCount.assign(kMany, kMany);
    file.stageReserved = file.stageClassifierStart = file.stageFeatureStart = std::vector<int32>(kMany, 0);
    file.classifierFeatureCount.assign(kMany, 1);
    file.classifierThreshold = file.classifierVal1 = file.classifierVal2 = std::vector<float>(kMany, 0.0F);
    file.featureRect.assign(kMany, {0, 0, 24, 24});
    file.featureWeight.assign(kMany, 1.0F);
    const std::string bytes = file.Bytes();
    LargestRequest() = 0;
    ExpectRefused(bytes, "stages that share too much");
    EXPECT_LT(LargestRequest(), 2 * bytes.size());
}

TEST_F(ClassifierFile, WithNumbersThatAreNoneIsUnusable) {
    const float bad[] = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                         -std::numeric_limits<float>::infinity()};
    std::vector<float> CascadeFile::*const arrays[] = {&CascadeFile::stageThreshold, &CascadeFile::classifierThreshold,
                                                       &CascadeFile::classifierVal1, &CascadeFile::classifierVal2,
                                                       &CascadeFile::featureWeight};
    for (const float value : bad) {
        for (std::size_t i = 0; i < std::size(arrays); ++i) {
            CascadeFile file = SmallCascade();
            (file.*arrays[i]).back() = value;
            ExpectRefused(file.Bytes(), "array " + std::to_string(i) + ": " + std::to_string(value));
        }
    }
}

TEST_F(ClassifierFile, WhoseWindowHasNoInsideIsUnusable) {
    for (const ImageSize window : {ImageSize{1, 1}, {2, 2}, {2, 24}, {24, 2}}) {
        const WeakClassifier classifier{{{{0, 0, window.width, window.height}, 1.0F}}, 0.0F};
        ExpectRefused(BuildCascade(window, {{{classifier}}}).Bytes(),
                      std::to_string(window.width) + " by " + std::to_string(window.height));
    }
}

TEST_F(ClassifierFile, WithStagesButNothingInThemIsUnusable) {
    CascadeFile file = SmallCascade();
    file.header[3] = file.header[4] = 0;
    file.stageClassifierCount = file.stageClassifierStart = file.stageFeatureStart = {0, 0};
    file.classifierFeatureCount.clear();
    file.classifierThreshold = file.classifierVal1 = file.classifierVal2 = file.featureWeight = {};
    file.featureRect.clear();
    ExpectRefused(file.Bytes(), "nothing");
    const CascadeFile whole = SmallCascade();
    file.header[4] = whole.header[4];
    file.featureRect = whole.featureRect;
    file.featureWeight = whole.featureWeight;
    ExpectRefused(file.Bytes(), "rectangles alone");
}

TEST_F(ClassifierFile, StagesAreMadeOnceAndGoOnWhereMemoryEnded) {
    ASSERT_EQ(0, files_.Load(SmallCascade()));
    {
        const HeapLimit limit(1);
        EXPECT_EQ(-9, MakeStages(g_classifier));
    }
    const HaarClassifier* first = g_classifier.stageObject[0].get();
    EXPECT_NE(nullptr, first);
    EXPECT_EQ(nullptr, g_classifier.stageObject[1]);
    ASSERT_EQ(0, MakeStages(g_classifier));
    EXPECT_EQ(first, g_classifier.stageObject[0].get());
    EXPECT_NE(nullptr, g_classifier.stageObject[1]);
    const HeapLimit limit(0);
    EXPECT_EQ(0, MakeStages(g_classifier)) << "made again";
}

TEST_F(ClassifierFile, OfRandomBytesNeverHarms) {
    Random random;
    for (int i = 0; i < 300; ++i) {
        std::string bytes = SmallCascade().Bytes();
        for (int32 change = random.Int(1, 4); change > 0; --change) {
            bytes[static_cast<std::size_t>(random.Int(0, static_cast<int32>(bytes.size()) - 1))] =
                static_cast<char>(random.Bits() >> 24);
        }
        const int32 status = files_.Load(bytes);
        EXPECT_TRUE(status == 0 || status == -70) << status;
        EXPECT_EQ(status == 0, g_classifier.windowWidth > 0) << "after change " << i;
    }
}

} // namespace
} // namespace orvane::test
