#include "primitives/fill_copy.h"

#include "primitives/primitives.h"
#include "tests/support/plane.h"

#include <cstring>
#include <vector>

namespace orvane::test {
namespace {

/// Fills a region of every width and judges each byte of the block.
template <typename T, typename Fill>
void JudgeFill(int32 channels, const std::vector<T>& value, Fill fill) {
    Random random;
    for (int32 width = 1; width <= 100; ++width) {
        const ImageSize roi{width, random.Int(1, 5)};
        auto result = Plane<T>::Output(channels * width, roi.height, random);
        auto expected = result;
        ASSERT_EQ(kOk, fill(result.Data(), result.Step(), roi));
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 x = 0; x < channels * width; ++x) {
                expected.At(x, y) = value[static_cast<std::size_t>(x % channels)];
            }
        }
        ASSERT_PRED_FORMAT2(Plane<T>::Same, result, expected) << "width " << width;
    }
}

TEST(Fill, SetsEveryPixelOfTheRegionAndNothingElse) {
    JudgeFill<uint8>(1, {200}, [](uint8* p, int32 step, ImageSize roi) { return primSet_8u_C1(200, p, step, roi); });
    JudgeFill<int16>(1, {-1234},
                     [](int16* p, int32 step, ImageSize roi) { return primSet_16s_C1(-1234, p, step, roi); });
    JudgeFill<float>(1, {-0.1f},
                     [](float* p, int32 step, ImageSize roi) { return primSet_32f_C1(-0.1f, p, step, roi); });
}

TEST(Fill, SetsThreeChannelsBySeparateValues) {
    for (const std::vector<uint8>& value : {std::vector<uint8>{1, 2, 3}, {9, 9, 9}, {9, 9, 8}, {9, 8, 9}, {8, 9, 9}}) {
        JudgeFill<uint8>(
            3, value, [&](uint8* p, int32 step, ImageSize roi) { return primSet_8u_C3(value.data(), p, step, roi); });
    }
}

TEST(Fill, AStepBesideTheElementsAlignmentIsTaken) {
    alignas(4) uint8 block[24] = {};
    uint8 row[2];
    const int16 number = 0x1234;
    std::memcpy(row, &number, 2);
    EXPECT_EQ(kOk, primSet_16s_C1(number, reinterpret_cast<int16*>(block), 5, {2, 2}));
    std::vector<uint8> expected(24, 0);
    for (const std::size_t at : {0u, 2u, 5u, 7u}) std::memcpy(&expected[at], row, 2);
    EXPECT_EQ(expected, std::vector<uint8>(block, block + 24));
    EXPECT_EQ(kOk, primSet_32f_C1(1.5f, reinterpret_cast<float*>(block), 7, {1, 3}));
    float last;
    std::memcpy(&last, block + 14, 4);
    EXPECT_EQ(1.5f, last);
}

TEST(Fill, FailuresAreTestedInOrder) {
    const uint8 three[3] = {1, 1, 1};
    uint8 bytes[16] = {7};
    int16 shorts[4] = {7};
    float floats[4] = {7};
    struct Row {
        int32 status;
        bool null;
        int32 step;
        ImageSize roi;
    };
    for (const Row& r : {Row{-8, true, 0, {0, 0}},
                         {-6, false, 0, {0, 1}},
                         {-6, false, 0, {1, -1}},
                         {-14, false, 0, {1, 1}},
                         {-14, false, -16, {1, 1}}}) {
        EXPECT_EQ(r.status, primSet_8u_C1(1, r.null ? nullptr : bytes, r.step, r.roi));
        EXPECT_EQ(r.status, primSet_16s_C1(1, r.null ? nullptr : shorts, r.step, r.roi));
        EXPECT_EQ(r.status, primSet_32f_C1(1, r.null ? nullptr : floats, r.step, r.roi));
        EXPECT_EQ(r.status, primSet_8u_C3(three, r.null ? nullptr : bytes, r.step, r.roi));
    }
    EXPECT_EQ(-8, primSet_8u_C3(nullptr, bytes, 0, {0, 0}));
    EXPECT_EQ(7, bytes[0]);
    EXPECT_EQ(7, shorts[0]);
    EXPECT_EQ(7.0f, floats[0]);
}

template <typename T, typename Copy>
void JudgeCopy(int32 channels, Copy copy) {
    Random random;
    for (int32 width = 1; width <= 100; ++width) {
        const ImageSize roi{width, random.Int(1, 5)};
        const auto src = Plane<T>::Source(channels * width, roi.height, random);
        auto result = Plane<T>::Output(channels * width, roi.height, random);
        auto expected = result;
        ASSERT_EQ(kOk, copy(src.Data(), src.Step(), result.Data(), result.Step(), roi));
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 x = 0; x < channels * width; ++x) expected.At(x, y) = src.At(x, y);
        }
        ASSERT_PRED_FORMAT2(Plane<T>::Same, result, expected) << "width " << width;
    }
}

TEST(Copy, MovesEveryPixelOfTheRegionAndNothingElse) {
    JudgeCopy<uint8>(1, primCopy_8u_C1);
    JudgeCopy<uint8>(3, primCopy_8u_C3);
    JudgeCopy<uint16>(1, primCopy_16u_C1);
    JudgeCopy<float>(1, primCopy_32f_C1);
}

TEST(Copy, ContiguousPlanesAreCopiedWhole) {
    Random random;
    Plane<uint8> src(3 * 13, 9, 0, 0, 0);
    src.FillRandom(random);
    Plane<uint8> dst(3 * 13, 9, 0, 4, 4);
    auto expected = dst;
    std::copy_n(src.Data(), 3 * 13 * 9, expected.Data());
    ASSERT_EQ(kOk, primCopy_8u_C3(src.Data(), 39, dst.Data(), 39, {13, 9}));
    EXPECT_SAME_PLANE(uint8, dst, expected);
}

TEST(Copy, StepsAreNotTestedAndMayRunBackwards) {
    const uint8 src[6] = {1, 2, 3, 4, 5, 6};
    uint8 dst[6] = {};
    ASSERT_EQ(kOk, primCopy_8u_C1(src + 4, -2, dst, 2, {2, 3}));
    EXPECT_EQ((std::vector<uint8>{5, 6, 3, 4, 1, 2}), std::vector<uint8>(dst, dst + 6));
    uint8 row[2] = {};
    ASSERT_EQ(kOk, primCopy_8u_C1(src, 0, row, 0, {2, 3}));
    EXPECT_EQ(1, row[0]);
}

TEST(Copy, FailuresAreTestedInOrder) {
    uint8 bytes[3] = {};
    uint16 shorts[1] = {};
    float floats[1] = {};
    EXPECT_EQ(-8, primCopy_8u_C1(nullptr, 1, bytes, 1, {0, 0}));
    EXPECT_EQ(-8, primCopy_8u_C1(bytes, 1, nullptr, 1, {0, 0}));
    EXPECT_EQ(-8, primCopy_8u_C3(nullptr, 1, bytes, 1, {0, 0}));
    EXPECT_EQ(-8, primCopy_8u_C3(bytes, 1, nullptr, 1, {0, 0}));
    EXPECT_EQ(-8, primCopy_16u_C1(nullptr, 1, shorts, 1, {0, 0}));
    EXPECT_EQ(-8, primCopy_16u_C1(shorts, 1, nullptr, 1, {0, 0}));
    EXPECT_EQ(-8, primCopy_32f_C1(nullptr, 1, floats, 1, {0, 0}));
    EXPECT_EQ(-8, primCopy_32f_C1(floats, 1, nullptr, 1, {0, 0}));
    for (const ImageSize roi : {ImageSize{0, 1}, {1, 0}, {-1, 1}}) {
        EXPECT_EQ(-6, primCopy_8u_C1(bytes, 1, bytes, 1, roi));
        EXPECT_EQ(-6, primCopy_8u_C3(bytes, 1, bytes, 1, roi));
        EXPECT_EQ(-6, primCopy_16u_C1(shorts, 1, shorts, 1, roi));
        EXPECT_EQ(-6, primCopy_32f_C1(floats, 1, floats, 1, roi));
    }
}

} // namespace
} // namespace orvane::test
