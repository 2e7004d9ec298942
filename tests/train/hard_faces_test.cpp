// Faces in hard light and behind glasses, beards, hats and scarves: changed where they ought to be, still there.
#include "tools/train/cover.h"
#include "tools/train/relight.h"

#include "tests/train/samples.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvane::train {
namespace {

CropPlane FacePlane() {
    const FaceCrop crop = MadeUpCrops(1)[0];
    return {crop.pixels.begin(), crop.pixels.end()};
}

using Change = void (*)(CropPlane&, Random&);

class HardFace : public testing::TestWithParam<Change> {
protected:
    static CropPlane Changed(uint64 stream) {
        CropPlane plane = FacePlane();
        Random random({stream});
        GetParam()(plane, random);
        return plane;
    }
};
INSTANTIATE_TEST_SUITE_P(LightAndCovers, HardFace, testing::Values(&Relight, &Cover));

TEST_P(HardFace, IsTheSameForTheSameStreamAndAnotherForAnother) {
    EXPECT_EQ(Changed(3), Changed(3));
    EXPECT_NE(Changed(3), Changed(4));
}

TEST_P(HardFace, IsNeverWithoutContrastNorOutsideTheRangeOfBytes) {
    for (uint64 stream = 0; stream < 300; ++stream) {
        const CropPlane plane = Changed(stream);
        ASSERT_EQ(plane.size(), FacePlane().size());
        const auto [least, most] = std::minmax_element(plane.begin(), plane.end());
        EXPECT_GE(*least, 0.0) << stream;
        EXPECT_LE(*most, 255.0) << stream;
        EXPECT_GT(*most - *least, 20.0) << stream;
    }
}

TEST(Cover, ChangesEyesMouthForeheadAndCheeksEachInManyCases) {
    const struct {
        const char* what;
        int32 x, y; // from the left and from the bottom
    } places[] = {{"rim above an eye", 17, 31}, {"chin", 24, 10}, {"forehead", 24, 38}, {"beside a cheek", 8, 20}};
    const CropPlane before = FacePlane();
    for (const auto& place : places) {
        int changed = 0;
        for (uint64 stream = 0; stream < 400; ++stream) {
            CropPlane plane = before;
            Random random({stream});
            Cover(plane, random);
            const auto at = PixelIndex(place.x, place.y, kCropSide);
            changed += std::fabs(plane[at] - before[at]) > 5.0 ? 1 : 0;
        }
        EXPECT_GT(changed, 30) << place.what;
        EXPECT_LT(changed, 330) << place.what;
    }
}

TEST(Relight, LeavesAFaceThatWouldNotShowAsItWas) {
    CropPlane flat(FacePlane().size(), 100.0);
    for (std::size_t i = 0; i < flat.size(); ++i) flat[i] += static_cast<double>(i % 5); // under the least contrast
    int left = 0;
    for (uint64 stream = 0; stream < 100; ++stream) {
        CropPlane plane = flat;
        Random random({stream});
        Relight(plane, random);
        left += plane == flat ? 1 : 0;
    }
    EXPECT_GT(left, 30);
}

TEST(CutWindow, CoversAndRelightsTheSharesThatAreAskedFor) {
    const FaceCrop crop = MadeUpCrops(1)[0];
    Framing plain;
    plain.relit = plain.covered = 0.0;
    const auto cut = [&](const Framing& framing, uint64 stream) {
        Random random({stream});
        return CutWindow(crop, framing, {24, 24}, random);
    };
    for (double Framing::*share : {&Framing::relit, &Framing::covered}) {
        Framing some = plain;
        Framing all = plain;
        some.*share = 0.25;
        all.*share = 1.0;
        int ofSome = 0;
        int ofAll = 0;
        for (uint64 stream = 0; stream < 400; ++stream) {
            ofSome += cut(some, stream) != cut(plain, stream) ? 1 : 0;
            ofAll += cut(all, stream) != cut(plain, stream) ? 1 : 0;
        }
        EXPECT_NEAR(ofSome, 100, 40);
        EXPECT_GT(ofAll, 350);
    }
}

} // namespace
} // namespace orvane::train
