// The scan against its plain form: scales, surviving windows and face.
#include "detect/cascade_detector.h"

#include "image/session_images.h"
#include "tests/detect/scan_fixture.h"
#include "tests/reference/scan.h"

#include <algorithm>
#include <cmath>

namespace orvane::test {
namespace {

class ScanEquality : public ScanFixture {
protected:
    /// Scans and compares with the plain form.
    void Judge(const Scene& scene, const CascadeFile& file, float scaleFactor, int32 pruneMode,
               const std::string& what) {
        const reference::ScanResult expected = reference::Scan(scene, file, scaleFactor, pruneMode == 4);
        recorder_.Forget();
        EXPECT_EQ(expected.status, Scan(scene, scaleFactor, pruneMode)) << what;
        EXPECT_EQ(expected.face.centreX, g_faceRecord.centreX) << what;
        EXPECT_EQ(expected.face.centreY, g_faceRecord.centreY) << what;
        EXPECT_EQ(expected.face.width, g_faceRecord.faceWidth) << what;
        EXPECT_EQ(expected.face.height, g_faceRecord.faceHeight) << what;
        ASSERT_EQ(expected.scales.size(), recorder_.Scales().size()) << what;
        for (std::size_t i = 0; i < expected.scales.size(); ++i) {
            const auto& e = expected.scales[i];
            const auto& r = recorder_.Scales()[i];
            EXPECT_EQ(e.scaled.width, r.scaled.width) << what << ", scale " << i;
            EXPECT_EQ(e.scaled.height, r.scaled.height) << what << ", scale " << i;
            EXPECT_EQ(e.factor, r.factor) << what << ", scale " << i;
            EXPECT_EQ(e.positions.width, r.positions.width) << what << ", scale " << i;
            EXPECT_EQ(e.positions.height, r.positions.height) << what << ", scale " << i;
            EXPECT_TRUE(e.mask == r.mask) << what << ": other windows survive scale " << i;
            survivors_ += r.mask.size() - static_cast<std::size_t>(std::count(r.mask.begin(), r.mask.end(), 0));
        }
    }

    std::size_t survivors_ = 0;
};

/// A cascade that passes much: one, two, three and four rectangles a classifier, a window that is not
/// square, two stages with votes of both signs.
CascadeFile RoughCascade() {
    const WeakClassifier one{{{{2, 3, 9, 11}, 1.0F}}, 0.4F, -0.3F, 0.8F};
    const WeakClassifier two{{{{0, 0, 20, 26}, -1.0F}, {{5, 6, 10, 13}, 4.0F}}, 0.1F, -0.5F, 0.7F};
    const WeakClassifier three{
        {{{0, 0, 6, 26}, 1.0F}, {{6, 0, 8, 26}, -1.5F}, {{14, 0, 6, 26}, 1.0F}}, -0.1F, 0.6F, -0.2F};
    const WeakClassifier four{
        {{{0, 0, 10, 13}, 1.0F}, {{10, 0, 10, 13}, -1.0F}, {{0, 13, 10, 13}, -1.0F}, {{10, 13, 10, 13}, 1.0F}},
        0.05F,
        0.5F,
        -0.1F};
    return BuildCascade({20, 26}, {{{four, two, one}, 0.2F}, {{three, two, four}, 0.3F}});
}

TEST_F(ScanEquality, HoldsForDrawnFaces) {
    const CascadeFile file = FaceCascade();
    ASSERT_EQ(0, files_.Load(file));
    Judge(FaceScene(160, 120, 50, 30, 48), file, 1.05F, 4, "small");
    Judge(FaceScene(101, 140, 20, 10, 60), file, 1.09F, 4, "upright");
    Judge(FaceScene(150, 90, 60, 20, 40), file, 1.02F, 4, "fine steps");
    Judge(FaceScene(399, 120, 300, 10, 90), file, 1.09F, 4, "from scale 2.25");
    Judge(FaceScene(520, 200, 100, 60, 120), file, 1.09F, 4, "from the smallest face");
    Judge(UpsideDown(FaceScene(160, 120, 50, 30, 48)), file, 1.05F, 4, "upside down");
    EXPECT_GT(survivors_, 50u) << "the pictures say nothing";
}

TEST_F(ScanEquality, HoldsForRandomPicturesAndARoughCascade) {
    const CascadeFile file = RoughCascade();
    ASSERT_EQ(0, files_.Load(file));
    Random random;
    for (int run = 0; run < 12; ++run) {
        Scene scene = BlankScene(random.Int(20, 130), random.Int(1, 100), static_cast<uint8>(random.Int(60, 230)));
        for (int faces = random.Int(0, 4); faces > 0; --faces) {
            DrawFace(scene, random.Int(-20, scene.width), random.Int(-20, scene.height), random.Int(4, 90));
        }
        AddTexture(scene, random.Int(0, 40), random);
        Judge(scene, file, static_cast<float>(random.Real(1.02, 1.3)), run % 3 == 0 ? 0 : 4,
              "run " + std::to_string(run));
    }
    EXPECT_GT(survivors_, 1000u) << "the pictures say nothing";
}

TEST_F(ScanEquality, HoldsForRectanglesBeyondTheWindow) {
    CascadeFile file = RoughCascade();
    file.featureRect[0].x = 15; // ten wide
    file.featureRect[1].y -= 3;
    ASSERT_EQ(0, files_.Load(file));
    ASSERT_EQ(25, g_classifier.maxFeatureWidth) << "the window has 20";
    ASSERT_EQ(29, g_classifier.maxFeatureHeight) << "and 26";
    Random random(3);
    for (int run = 0; run < 4; ++run) {
        Scene scene = BlankScene(random.Int(60, 130), random.Int(60, 100));
        DrawFace(scene, 10, 5, random.Int(30, 60));
        AddTexture(scene, 40, random);
        Judge(scene, file, 1.1F, run % 2 == 0 ? 0 : 4, "run " + std::to_string(run));
    }
    EXPECT_GT(survivors_, 100u) << "the pictures say nothing";
}

TEST_F(ScanEquality, HoldsWhereAScaledSizeRoundsUpToAWholeNumber) {
    // The resize leaves the last column or row of such a plane unwritten.
    const CascadeFile file = FaceCascade();
    ASSERT_EQ(0, files_.Load(file));
    Random random;
    for (const int32 width : {378, 551, 667, 841}) {
        Scene scene = BlankScene(width, 100);
        AddTexture(scene, 30, random);
        Judge(scene, file, 1.05F, 4, "width " + std::to_string(width));
        const auto roundsUp = [&](const RecordedScale& s) {
            return s.scaled.width > std::trunc(width * s.factor + 1e-7);
        };
        EXPECT_TRUE(std::any_of(recorder_.Scales().begin(), recorder_.Scales().end(), roundsUp)) << width;
    }
}

TEST_F(ScanEquality, HoldsAfterAnyOtherPicture) {
    const CascadeFile file = FaceCascade();
    ASSERT_EQ(0, files_.Load(file));
    const Scene first = FaceScene(160, 120, 50, 30, 48), second = FaceScene(90, 150, 20, 60, 50, 7);
    Judge(second, file, 1.09F, 4, "alone");
    Judge(first, file, 1.09F, 4, "another");
    Judge(second, file, 1.09F, 4, "after another");
    Judge(BlankScene(90, 150), file, 1.09F, 4, "blank after a face");
    Judge(second, file, 1.09F, 4, "after a blank one");
}

TEST_F(ScanEquality, OfAOneChannelPictureIsThatOfItsThreeChannelForm) {
    const CascadeFile file = FaceCascade();
    ASSERT_EQ(0, files_.Load(file));
    Scene scene = FaceScene(120, 90, 20, 10, 60);
    for (int32 y = 0; y < scene.height; ++y) {
        for (int32 x = 0; x < scene.width; ++x) {
            uint8* p = scene.Pixel(x, y);
            p[1] = p[2] = p[0];
        }
    }
    Judge(scene, file, 1.09F, 4, "three equal channels");
    const FaceRecord face = g_faceRecord;
    const auto scales = recorder_.Scales();
    ASSERT_GT(face.faceWidth, 0);

    recorder_.Forget();
    ASSERT_TRUE(g_sourceImage.Create(scene.width, scene.height, 1, kDepth8u, 0));
    for (int32 y = 0; y < scene.height; ++y) {
        for (int32 x = 0; x < scene.width; ++x)
            RowAt(g_sourceImage.data, g_sourceImage.Step(), y)[x] = *scene.Pixel(x, y);
    }
    g_workImage.Reset();
    DetectorParams params = Params(1.09F, 4);
    EXPECT_EQ(0, ScanScales(g_workImage, params, g_sourceImage));
    EXPECT_EQ(face.centreX, g_faceRecord.centreX);
    EXPECT_EQ(face.centreY, g_faceRecord.centreY);
    EXPECT_EQ(face.faceWidth, g_faceRecord.faceWidth);
    ASSERT_EQ(scales.size(), recorder_.Scales().size());
    for (std::size_t i = 0; i < scales.size(); ++i) EXPECT_TRUE(scales[i].mask == recorder_.Scales()[i].mask) << i;
    ASSERT_EQ(3, g_workImage.channels);
    for (int32 y = 0; y < scene.height; ++y) {
        EXPECT_TRUE(std::equal(scene.Pixel(0, y), scene.Pixel(0, y) + 3 * scene.width,
                               RowAt(g_workImage.data, g_workImage.Step(), y)))
            << "row " << y << " of the work picture";
    }
}

TEST_F(ScanFixture, FindsADrawnFaceWhereItIs) {
    ASSERT_EQ(0, files_.Load(FaceCascade()));
    struct {
        int32 width, height, left, bottom, side;
    } const cases[] = {{160, 120, 50, 30, 48},    {300, 200, 100, 60, 80},  {400, 300, 120, 90, 120},
                       {640, 480, 200, 150, 150}, {640, 480, 300, 100, 60}, {120, 90, 20, 10, 60}};
    for (const auto& c : cases) {
        for (const bool quick : {false, true}) {
            const Scene scene = FaceScene(c.width, c.height, c.left, c.bottom, c.side);
            EXPECT_EQ(0, Run(scene, quick)) << c.width << " by " << c.height;
            EXPECT_NEAR(c.left + c.side / 2, g_faceRecord.centreX, 0.08 * c.side);
            EXPECT_NEAR(c.bottom + c.side / 2, g_faceRecord.centreY, 0.08 * c.side);
            EXPECT_NEAR(c.side, g_faceRecord.faceWidth, 0.2 * c.side);
            EXPECT_EQ(g_faceRecord.faceWidth, g_faceRecord.faceHeight);
            EXPECT_EQ(10, Run(UpsideDown(scene), quick)) << "a face on its head, " << c.width << " by " << c.height;
            EXPECT_EQ(0, g_faceRecord.centreX);
            EXPECT_EQ(0, g_faceRecord.centreY);
            EXPECT_EQ(0, g_faceRecord.faceWidth);
            EXPECT_EQ(0, g_faceRecord.faceHeight);
        }
    }
}

} // namespace
} // namespace orvane::test
