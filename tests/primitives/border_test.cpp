#include "primitives/border.h"

#include "primitives/primitives.h"
#include "tests/support/plane.h"

#include <vector>

namespace orvane::test {
namespace {

struct Frame {
    ImageSize src, dst;
    int32 top, left;
};

Frame RandomFrame(int32 width, Random& random) {
    Frame f{{width, random.Int(1, 6)}, {}, random.Int(0, 4), random.Int(0, 4)};
    f.dst = {f.left + f.src.width + random.Int(0, 4), f.top + f.src.height + random.Int(0, 4)};
    return f;
}

/// The rule, pixel by pixel: the source where it lies, the value everywhere else.
template <typename T>
void Expect(const Plane<T>& src, Plane<T>& dst, const Frame& f, T value) {
    for (int32 y = 0; y < f.dst.height; ++y) {
        for (int32 x = 0; x < f.dst.width; ++x) {
            const int32 u = x - f.left, v = y - f.top;
            const bool inside = u >= 0 && v >= 0 && u < f.src.width && v < f.src.height;
            dst.At(x, y) = inside ? src.At(u, v) : value;
        }
    }
}

TEST(ConstBorder, FramesAPictureOfBytesAndWritesNothingBeside) {
    Random random;
    for (int32 width = 1; width <= 100; ++width) {
        const Frame f = RandomFrame(width, random);
        const auto src = Plane<uint8>::Source(f.src.width, f.src.height, random);
        auto result = Plane<uint8>::Output(f.dst.width, f.dst.height, random);
        auto expected = result;
        ASSERT_EQ(kOk, primCopyConstBorder_8u_C1(src.Data(), src.Step(), f.src, result.Data(), result.Step(), f.dst,
                                                 f.top, f.left, 201));
        Expect<uint8>(src, expected, f, 201);
        ASSERT_SAME_PLANE(uint8, result, expected) << "width " << width << ", top " << f.top << ", left " << f.left;
    }
}

TEST(ConstBorder, FramesAPictureOf16BitsAndWritesNothingBeside) {
    Random random;
    for (int32 width = 1; width <= 100; ++width) {
        const Frame f = RandomFrame(width, random);
        auto src = Plane<int16>::Source(f.src.width, f.src.height, random);
        src.At(0, 0) = -32768;
        auto result = Plane<int16>::Output(f.dst.width, f.dst.height, random);
        auto expected = result;
        ASSERT_EQ(kOk, primCopyConstBorder_16s_C1(src.Data(), src.Step(), f.src, result.Data(), result.Step(), f.dst,
                                                  f.top, f.left, -300));
        Expect<int16>(src, expected, f, -300);
        ASSERT_SAME_PLANE(int16, result, expected) << "width " << width << ", top " << f.top << ", left " << f.left;
    }
}

TEST(ConstBorder, WithoutABorderIsACopy) {
    const uint8 src[4] = {1, 2, 3, 4};
    uint8 dst[4] = {};
    ASSERT_EQ(kOk, primCopyConstBorder_8u_C1(src, 2, {2, 2}, dst, 2, {2, 2}, 0, 0, 9));
    for (int32 i = 0; i < 4; ++i) EXPECT_EQ(src[i], dst[i]);
}

TEST(ConstBorder, RowsOf16BitsMayStartAtAnyByte) {
    const int16 src[2] = {1000, -1000};
    std::vector<uint8> bytes(2 * 9 + 8);
    ASSERT_EQ(kOk,
              primCopyConstBorder_16s_C1(src, 3, {1, 1}, reinterpret_cast<int16*>(bytes.data()), 9, {4, 3}, 1, 2, -2));
    for (std::size_t i = 0; i < 26; i += 9) {
        int16 row[4];
        std::copy_n(&bytes[i], 8, reinterpret_cast<uint8*>(row));
        for (int32 x = 0; x < 4; ++x) EXPECT_EQ(i == 9 && x == 2 ? 1000 : -2, row[x]) << "row " << i / 9 << ", " << x;
    }
}

template <typename T, typename Entry>
void ExpectOrderOfTests(Entry entry) {
    const T src[4] = {};
    T dst[16];
    std::fill_n(dst, 16, T{7});
    constexpr int32 kFull = 4 * sizeof(T);
    EXPECT_EQ(kNullPointer, entry(nullptr, 0, {0, 0}, dst, 0, {0, 0}, -1, -1, 9));
    EXPECT_EQ(kNullPointer, entry(src, kFull, {2, 2}, nullptr, kFull, {4, 4}, 1, 1, 9));
    EXPECT_EQ(kStepTooSmall, entry(src, 0, {0, 0}, dst, kFull, {0, 0}, -1, -1, 9));
    EXPECT_EQ(kStepTooSmall, entry(src, kFull, {0, 0}, dst, 0, {0, 0}, -1, -1, 9));
    const struct {
        ImageSize src, dst;
        int32 top, left;
    } bad[] = {
        {{0, 2}, {4, 4}, 1, 1},          {{2, 0}, {4, 4}, 1, 1},
        {{-2, 2}, {0, 4}, 1, 1},         {{2, -3}, {4, 0}, 1, 1},
        {{2, 2}, {4, 4}, -1, 1},         {{2, 2}, {4, 4}, 1, -1},
        {{2, 2}, {4, 4}, 3, 1},          {{2, 2}, {4, 4}, 1, 3},
        {{2, 2}, {4, 4}, 2147483647, 1}, {{2147483647, 2}, {4, 4}, 1, 2147483647},
    };
    for (const auto& row : bad) {
        EXPECT_EQ(kBadSize, entry(src, kFull, row.src, dst, kFull, row.dst, row.top, row.left, 9))
            << row.src.width << "x" << row.src.height << " in " << row.dst.width << "x" << row.dst.height << ", top "
            << row.top << ", left " << row.left;
    }
    for (const T element : dst) EXPECT_EQ(7, element) << "a refused call wrote";
}

TEST(ConstBorder, TestsPointersThenStepsThenSizes) {
    ExpectOrderOfTests<uint8>(primCopyConstBorder_8u_C1);
    ExpectOrderOfTests<int16>(primCopyConstBorder_16s_C1);
}

} // namespace
} // namespace orvane::test
