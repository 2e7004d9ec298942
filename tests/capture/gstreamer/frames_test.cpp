// The frames: rows, colours, sizes.
#include "tests/capture/gstreamer/source_fixture.h"

#include "tests/support/face_scene.h"

#include <cstdlib>

namespace orvane::test {
namespace {

class Frames : public Source {
protected:
    int32 Step() const { return (3 * size_.width + 3) / 4 * 4; }

    /// The pixel of the last frame, y counted from the upper row.
    TestColour Pixel(const std::vector<uint8>& frame, int32 x, int32 y) const {
        const auto at = static_cast<std::size_t>(Step() * (size_.height - 1 - y) + 3 * x);
        return {frame[at], frame[at + 1], frame[at + 2]};
    }

    /// How far the last frame is from the pattern, where it is farthest; every `grid`th pixel, from the middle of
    /// the first grid cell on.
    int Distance(int32 grid) {
        const std::vector<uint8> frame = sink_.Last();
        int farthest = 0;
        for (int32 y = grid / 2; y < size_.height; y += grid) {
            for (int32 x = grid / 2; x < size_.width; x += grid) {
                const TestColour is = Pixel(frame, x, y), shall = TestPattern(size_, x, y);
                farthest = std::max({farthest, std::abs(is.blue - shall.blue), std::abs(is.green - shall.green),
                                     std::abs(is.red - shall.red)});
            }
        }
        return farthest;
    }

    void ExpectSize(int32 width, int32 height) {
        EXPECT_EQ(size_.width, width);
        EXPECT_EQ(size_.height, height);
        EXPECT_EQ(sink_.Last().size(), static_cast<std::size_t>(Step()) * static_cast<std::size_t>(size_.height));
    }
};

TEST_F(Frames, ComeFromTheBottomUpInBlueGreenRedWithPaddedRows) {
    ASSERT_TRUE(Start(kPatternCamera));
    ASSERT_TRUE(sink_.WaitForFrames(2));
    ExpectSize(322, 242);
    EXPECT_EQ(Distance(1), 0);
    const std::vector<uint8> frame = sink_.Last();
    EXPECT_EQ(frame[0], 255) << "the lower left pixel is blue";
    EXPECT_EQ(frame[2], 0);
    for (int32 row = 0; row < size_.height; ++row) {
        for (int32 i = 3 * size_.width; i < Step(); ++i)
            ASSERT_EQ(frame[static_cast<std::size_t>(row * Step() + i)], 0) << "padding of row " << row;
    }
    EXPECT_GE(sink_.Time(), 0);
}

TEST_F(Frames, HaveTheSizeThatWasChosen) {
    ASSERT_TRUE(Start(kManyFormsCamera));
    ASSERT_TRUE(sink_.WaitForFrames(1));
    ExpectSize(1280, 720);
    EXPECT_EQ(Distance(1), 0);
}

TEST_F(Frames, AreScaledWhereTheDeviceToldNothing) {
    ASSERT_TRUE(Start(kSecretiveCamera));
    ASSERT_TRUE(sink_.WaitForFrames(1));
    ExpectSize(640, 480);
    EXPECT_LE(Distance(80), 2);
}

TEST_F(Frames, AreUnpacked) {
    if (!Open(kJpegCamera)) GTEST_SKIP() << "GStreamer's JPEG elements are not installed";
    ASSERT_TRUE(Start(kJpegCamera));
    ASSERT_TRUE(sink_.WaitForFrames(2));
    ExpectSize(400, 300);
    EXPECT_LE(Distance(50), 16);
}

TEST_F(Frames, ComeAlsoFromWhatIsNotLive) {
    ASSERT_TRUE(Start(kRecordedCamera));
    ASSERT_TRUE(sink_.WaitForFrames(2));
    ExpectSize(640, 480);
    EXPECT_EQ(Distance(1), 0);
}

TEST_F(Frames, KeepTheirSizeWhenTheDeviceChangesIts) {
    ASSERT_TRUE(Start(kResizingCamera));
    ASSERT_TRUE(sink_.WaitForFrames(1));
    EXPECT_EQ(Distance(1), 0);
    ASSERT_TRUE(sink_.WaitForFrames(kFramesBefore + 5));
    ExpectSize(640, 480);
    EXPECT_LE(Distance(80), 2);
    EXPECT_GT(Distance(1), 2) << "scaled, the quarters' edges are no longer sharp";
}

TEST_F(Frames, OfThePortraitShowTheFaceInMotion) {
    ASSERT_TRUE(Start(kPortraitCamera));
    ASSERT_TRUE(sink_.WaitForFrames(1));
    ExpectSize(640, 480);
    // A face is dark at its sides and bright in its middle; the ground is bright.
    const std::vector<uint8> frame = sink_.Last();
    const ImageRect face = kPortraitFace;
    const auto level = [&](int32 x, int32 y) { // y from the lowest row
        return Pixel(frame, x, size_.height - 1 - y).green;
    };
    EXPECT_LT(level(face.x + face.width / 8, face.y + face.height / 2), 60);
    EXPECT_GT(level(face.x + face.width / 2, face.y + face.height / 2), 180);
    EXPECT_GT(level(face.x - 20, face.y + face.height / 2), 180);
    EXPECT_GT(level(face.x + face.width / 8, face.y + face.height / 16), level(face.x + face.width / 8, face.y + 150));
    ASSERT_TRUE(sink_.WaitForFrames(2));
    EXPECT_NE(sink_.Last(), frame);
}

} // namespace
} // namespace orvane::test
