#include "primitives/flood_fill.h"

#include "primitives/primitives.h"
#include "tests/reference/flood_fill.h"
#include "tests/support/bit_planes.h"
#include "tests/support/heap_limit.h"

#include <cstring>
#include <functional>
#include <string>

namespace orvane::test {
namespace {

using Bytes = Plane<uint8>;

/// A work buffer of exactly the size that the query tells, with guard bytes on both sides, at any alignment.
class WorkBuffer {
public:
    WorkBuffer(ImageSize roi, int32 misalignment) : before_(static_cast<std::size_t>(kGuard + misalignment)) {
        EXPECT_EQ(kOk, primFloodFillGetSize(roi, &size_));
        bytes_.assign(before_ + static_cast<std::size_t>(size_) + kGuard, kGuardByte);
    }
    uint8* Data() { return bytes_.data() + before_; }
    bool GuardsStand() const {
        const auto isGuard = [](uint8 byte) { return byte == kGuardByte; };
        const auto first = bytes_.begin() + static_cast<std::ptrdiff_t>(before_);
        return std::all_of(bytes_.begin(), first, isGuard) && std::all_of(first + size_, bytes_.end(), isGuard);
    }

private:
    static constexpr int32 kGuard = 64;
    static constexpr uint8 kGuardByte = 0xA5;
    std::size_t before_;
    int32 size_ = 0;
    std::vector<uint8> bytes_;
};

void ExpectSameRegion(const ConnectedRegion& expected, const ConnectedRegion& result) {
    EXPECT_EQ(expected.area, result.area);
    for (int32 i = 0; i < 3; ++i) EXPECT_EQ(expected.value[i], result.value[i]) << "value " << i;
    EXPECT_EQ(expected.rect.x, result.rect.x);
    EXPECT_EQ(expected.rect.y, result.rect.y);
    EXPECT_EQ(expected.rect.width, result.rect.width);
    EXPECT_EQ(expected.rect.height, result.rect.height);
}

int32 Fill(Bytes& plane, ImageSize roi, ImagePoint seed, uint8 newValue, int32 neighbours, ConnectedRegion& region,
           WorkBuffer& buffer) {
    const auto entry = neighbours == 4 ? primFloodFill4_8u_C1I : primFloodFill8_8u_C1I;
    return entry(plane.Data(), plane.Step(), roi, seed, newValue, &region, buffer.Data());
}

/// Expects the same pixels of a fill of bits, of which those are set that equal the seed, or all others.
void JudgeBits(const Bytes& plane, ImagePoint seed, int32 reach, const Bytes& filledPlane, double area) {
    const ImageSize size{plane.RowElements(), plane.Height()};
    for (const bool marked : {true, false}) {
        BitPlane bits, filled;
        MakeBitPlane(bits, size,
                     [&](int32 x, int32 y) { return (plane.At(x, y) == plane.At(seed.x, seed.y)) == marked; });
        int64 count = -1;
        ASSERT_EQ(kOk, FloodBits(bits, seed, reach, filled, count));
        EXPECT_EQ(static_cast<double>(count), area) << (marked ? "marked" : "not marked");
        EXPECT_TRUE(IsMarkedWhere(filled, [&](int32 x, int32 y) { return plane.At(x, y) != filledPlane.At(x, y); }));
    }
}

/// Fills a copy of the plane, and expects what the reference makes of it.
void Judge(const Bytes& plane, ImagePoint seed, uint8 newValue, int32 neighbours, int32 misalignment) {
    const ImageSize roi{plane.RowElements(), plane.Height()};
    Bytes result = plane, expected = plane;
    WorkBuffer buffer(roi, misalignment);
    ConnectedRegion region{};
    ASSERT_EQ(kOk, Fill(result, roi, seed, newValue, neighbours, region, buffer));
    const ConnectedRegion expectedRegion = reference::FloodFill(expected, roi, seed, newValue, neighbours);
    EXPECT_SAME_PLANE(uint8, result, expected);
    ExpectSameRegion(expectedRegion, region);
    EXPECT_TRUE(buffer.GuardsStand()) << "the work outgrew its buffer";
    JudgeBits(plane, seed, neighbours == 8 ? 1 : 0, expected, expectedRegion.area);
    if (::testing::Test::HasFailure()) {
        FAIL() << roi.width << "x" << roi.height << ", " << neighbours << " neighbours, seed " << seed.x << ","
               << seed.y;
    }
}

/// A plane of two values from a rule, in the middle of other bytes.
Bytes Drawn(ImageSize size, const std::function<bool(int32, int32)>& isOpen) {
    Bytes plane(size.width, size.height, 3, 5, 5);
    for (int32 y = 0; y < size.height; ++y) {
        for (int32 x = 0; x < size.width; ++x) plane.At(x, y) = isOpen(x, y) ? 10 : 20;
    }
    return plane;
}

Bytes Drawn(const std::vector<std::string>& rows) {
    const ImageSize size{static_cast<int32>(rows[0].size()), static_cast<int32>(rows.size())};
    return Drawn(
        size, [&](int32 x, int32 y) { return rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '.'; });
}

TEST(FloodFill, EqualsThePlainFormOverRandomPictures) {
    Random random;
    for (int32 round = 0; round < 600; ++round) {
        const ImageSize roi{random.Int(1, 40), random.Int(1, 40)};
        Bytes plane = Bytes::Output(roi.width, roi.height, random);
        const int32 values = random.Int(1, 4), share = random.Int(1, 6);
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 x = 0; x < roi.width; ++x) {
                plane.At(x, y) = static_cast<uint8>(random.Int(0, 5) < share ? 0 : random.Int(0, values));
            }
        }
        const ImagePoint seed{random.Int(0, roi.width - 1), random.Int(0, roi.height - 1)};
        // Also a new value that stands elsewhere in the picture already.
        auto newValue = static_cast<uint8>(random.Int(0, values + 1));
        if (newValue == plane.At(seed.x, seed.y)) newValue = 200;
        Judge(plane, seed, newValue, random.Int(0, 1) == 0 ? 4 : 8, random.Int(0, 7));
        if (HasFailure()) return;
    }
}

TEST(FloodFill, EqualsThePlainFormOverWidePictures) {
    Random random(3);
    for (int32 round = 0; round < 300; ++round) {
        const ImageSize roi{random.Int(60, 330), random.Int(1, 40)};
        Bytes plane = Bytes::Output(roi.width, roi.height, random);
        const int32 walls = random.Int(0, 6); // of ten pixels
        for (int32 y = 0; y < roi.height; ++y) {
            for (int32 x = 0; x < roi.width; ++x) plane.At(x, y) = random.Int(0, 9) < walls ? 20 : 10;
        }
        Judge(plane, {random.Int(0, roi.width - 1), random.Int(0, roi.height - 1)}, 77, round % 2 == 0 ? 4 : 8,
              random.Int(0, 7));
        if (HasFailure()) return;
    }
}

/// Ways that come back to the same rows and words again and again.
TEST(FloodFill, EqualsThePlainFormOverWidePaths) {
    constexpr int32 kSide = 191;
    const auto spiral = [](int32 x, int32 y) {
        const int32 ring = std::min(std::min(x, y), std::min(kSide - 1 - x, kSide - 1 - y));
        if (ring % 2 == 0) return !(ring > 0 && x == ring && y == ring + 1); // a wall that lets no ring close
        return x == ring && y == ring + 1;                                   // the way to the next ring
    };
    const auto upAndDown = [](int32 x, int32 y) { return x % 2 == 0 || y == (x % 4 == 1 ? 0 : kSide - 1); };
    const auto backAndForth = [](int32 x, int32 y) { return y % 2 == 0 || x == (y % 4 == 1 ? 0 : kSide - 1); };
    const auto steps = [](int32 x, int32 y) { return (x + y) % 3 == 0; };
    const auto shortWays = [](int32 x, int32 y) { // up and down in bands of three rows, which meet at their ends
        if (y % 4 == 3) return x == (y % 8 == 3 ? kSide - 1 : 0);
        return x % 2 == 0 || y % 4 == (x % 4 == 1 ? 2 : 0);
    };
    for (const std::function<bool(int32, int32)>& isOpen :
         {std::function<bool(int32, int32)>(spiral), std::function<bool(int32, int32)>(upAndDown),
          std::function<bool(int32, int32)>(backAndForth), std::function<bool(int32, int32)>(steps),
          std::function<bool(int32, int32)>(shortWays)}) {
        const Bytes plane = Drawn({kSide, kSide}, isOpen);
        for (const int32 neighbours : {4, 8}) {
            for (const ImagePoint seed : {ImagePoint{0, 0}, ImagePoint{kSide / 2, kSide / 2}, ImagePoint{96, 0}}) {
                Judge(plane, seed, 77, neighbours, 1);
                if (HasFailure()) return;
            }
        }
    }
}

TEST(FloodFill, EqualsThePlainFormOverLongRuns) {
    Random random;
    for (int32 width = 1; width <= 100; ++width) {
        for (const int32 neighbours : {4, 8}) {
            const ImageSize roi{width, random.Int(1, 8)};
            Bytes plane = Bytes::Output(roi.width, roi.height, random);
            plane.FillRegion(7);
            for (int32 walls = random.Int(0, 2 * roi.height); walls > 0; --walls) {
                plane.At(random.Int(0, width - 1), random.Int(0, roi.height - 1)) = 8;
            }
            Judge(plane, {random.Int(0, width - 1), random.Int(0, roi.height - 1)}, 200, neighbours, 0);
            if (HasFailure()) return;
        }
    }
}

TEST(FloodFill, TheWorkFitsItsBufferOnEveryShape) {
    const struct {
        const char* name;
        std::function<bool(int32, int32)> isOpen;
    } shapes[] = {
        {"full", [](int32, int32) { return true; }},
        {"comb downwards", [](int32 x, int32 y) { return y == 0 || x % 2 == 0; }},
        {"comb with its back inside", [](int32 x, int32 y) { return y == 1 || x % 2 == 0; }},
        {"combs upon combs", [](int32 x, int32 y) { return y % 2 == 0 || x % 2 == 0; }},
        {"every third row", [](int32 x, int32 y) { return y % 3 == 0 || x % 2 == 0; }},
        {"chessboard", [](int32 x, int32 y) { return (x + y) % 2 == 0; }},
        {"diagonals", [](int32 x, int32 y) { return (x + y) % 3 != 0; }},
        {"dots joined by corners", [](int32 x, int32 y) { return y % 2 == 0 ? x % 2 == 0 : x % 4 == 1; }},
        {"columns", [](int32 x, int32) { return x % 2 == 0; }},
        {"snake", [](int32 x, int32 y) { return y % 2 == 0 || x == (y % 4 == 1 ? 0 : 8); }},
    };
    const ImageSize sizes[] = {{9, 3},  {1, 1},   {1, 60},  {2, 60}, {3, 60}, {5, 41}, {60, 1},  {61, 2},
                               {61, 3}, {33, 33}, {64, 31}, {63, 9}, {64, 1}, {65, 9}, {128, 3}, {129, 40}};
    for (const auto& shape : shapes) {
        for (const ImageSize size : sizes) {
            const Bytes plane = Drawn(size, shape.isOpen);
            for (const int32 neighbours : {4, 8}) {
                for (const ImagePoint seed : {ImagePoint{0, 0}, ImagePoint{size.width / 2, size.height / 2},
                                              ImagePoint{size.width - 1, size.height - 1}}) {
                    SCOPED_TRACE(shape.name);
                    Judge(plane, seed, 77, neighbours, 1);
                    if (HasFailure()) return;
                }
            }
        }
    }
}

TEST(FloodFill, ASeedOfTheNewValueChangesNothingNotEvenTheRegion) {
    const ImageSize roi{4, 3};
    for (const int32 neighbours : {4, 8}) {
        Bytes plane = Drawn(roi, [](int32, int32) { return true; });
        const Bytes before = plane;
        WorkBuffer buffer(roi, 0);
        ConnectedRegion region{-5, {-6, -7, -8}, {1, 2, 3, 4}};
        const ConnectedRegion untouched = region;
        EXPECT_EQ(kOk, Fill(plane, roi, {1, 1}, 10, neighbours, region, buffer));
        EXPECT_SAME_PLANE(uint8, plane, before);
        ExpectSameRegion(untouched, region);
    }
}

TEST(FloodFill, OneRowFillsARunOfHeightOne) {
    Bytes plane = Drawn({"..#....#."});
    WorkBuffer buffer({9, 1}, 3);
    ConnectedRegion region{};
    ASSERT_EQ(kOk, Fill(plane, {9, 1}, {5, 0}, 99, 4, region, buffer));
    ExpectSameRegion({4, {99, 0, 0}, {3, 0, 4, 1}}, region);
    const uint8 expected[9] = {10, 10, 20, 99, 99, 99, 99, 20, 10};
    EXPECT_EQ(0, std::memcmp(expected, plane.Data(), 9));
}

TEST(FloodFill, AreasJoinedAtACornerAreOneForEightNeighboursAndTwoForFour) {
    const std::vector<std::string> picture = {"..###", //
                                              "..###", //
                                              "##...", //
                                              "##..."};
    for (const auto& [neighbours, area] : {std::pair{4, 4}, std::pair{8, 10}}) {
        Bytes plane = Drawn(picture);
        WorkBuffer buffer({5, 4}, 0);
        ConnectedRegion region{};
        ASSERT_EQ(kOk, Fill(plane, {5, 4}, {0, 0}, 0, neighbours, region, buffer));
        EXPECT_EQ(area, region.area) << neighbours << " neighbours";
        EXPECT_EQ(neighbours == 4 ? 10 : 0, plane.At(4, 3)) << neighbours << " neighbours";
    }
}

TEST(FloodFill, StopsAtTheRegionsEdge) {
    Bytes plane(6, 6, 0, 0, 0);
    WorkBuffer buffer({4, 3}, 0);
    ConnectedRegion region{};
    // The region is the part from (1, 2) on; the whole plane has the seed's value.
    ASSERT_EQ(kOk, primFloodFill8_8u_C1I(&plane.At(1, 2), plane.Step(), {4, 3}, {3, 2}, 8, &region, buffer.Data()));
    ExpectSameRegion({12, {8, 0, 0}, {0, 0, 4, 3}}, region);
    for (int32 y = 0; y < 6; ++y) {
        for (int32 x = 0; x < 6; ++x) {
            const bool inside = x >= 1 && x <= 4 && y >= 2 && y <= 4;
            ASSERT_EQ(inside ? 8 : 0, plane.At(x, y)) << x << "," << y;
        }
    }
}

TEST(FloodFill, TestsPointersSizeStepSeedThenWhetherABufferCanExist) {
    uint8 image[4] = {7, 7, 7, 7}, buffer[64] = {};
    ConnectedRegion region{-1, {-1, -1, -1}, {-1, -1, -1, -1}};
    for (const auto entry : {primFloodFill4_8u_C1I, primFloodFill8_8u_C1I}) {
        EXPECT_EQ(kNullPointer, entry(nullptr, 0, {0, 0}, {-1, 0}, 1, &region, buffer));
        EXPECT_EQ(kNullPointer, entry(image, 2, {2, 2}, {0, 0}, 1, nullptr, buffer));
        EXPECT_EQ(kNullPointer, entry(image, 2, {2, 2}, {0, 0}, 1, &region, nullptr));
        EXPECT_EQ(kBadSize, entry(image, 1, {0, 2}, {-1, 0}, 1, &region, buffer));
        EXPECT_EQ(kBadSize, entry(image, 1, {2, 0}, {-1, 0}, 1, &region, buffer));
        EXPECT_EQ(kStepTooSmall, entry(image, 1, {2, 2}, {-1, 0}, 1, &region, buffer));
        for (const ImagePoint outside : {ImagePoint{-1, 0}, ImagePoint{0, -1}, ImagePoint{2, 0}, ImagePoint{0, 2}}) {
            EXPECT_EQ(kSeedOutside, entry(image, 2, {2, 2}, outside, 1, &region, buffer))
                << outside.x << "," << outside.y;
        }
        EXPECT_EQ(kNoMemory, entry(image, 32767, {32767, 32767}, {0, 0}, 1, &region, buffer));
    }
    EXPECT_EQ(-1, region.area) << "a refused call wrote";
    EXPECT_EQ(7, image[0]) << "a refused call wrote";
}

TEST(FloodFill, OfBitsTestsMemoryThenTheSeed) {
    BitPlane plane, none;
    MakeBitPlane(plane, {70, 2}, [](int32 x, int32) { return x < 65; });
    int64 area = -1;
    for (const int32 allowed : {0, 1}) {
        BitPlane filled;
        const HeapLimit limit(allowed);
        EXPECT_EQ(kNoMemory, FloodBits(plane, {70, 0}, 0, filled, area)) << allowed;
        EXPECT_TRUE(filled.IsEmpty());
        EXPECT_EQ(0, area);
    }
    for (const ImagePoint outside : {ImagePoint{-1, 0}, ImagePoint{0, -1}, ImagePoint{70, 0}, ImagePoint{0, 2}}) {
        BitPlane filled;
        EXPECT_EQ(kSeedOutside, FloodBits(plane, outside, 0, filled, area)) << outside.x << "," << outside.y;
        EXPECT_TRUE(IsMarkedWhere(filled, [](int32, int32) { return false; }));
        EXPECT_EQ(0, area);
    }
    BitPlane filled;
    EXPECT_EQ(kNoMemory, FloodBits(none, {0, 0}, 0, filled, area)) << "a plane without pixels";
}

TEST(FloodFillSize, IsSixBytesAPixelAnd32CutTo32Bits) {
    int32 size = 0;
    const struct {
        ImageSize roi;
        int32 bytes;
    } table[] = {
        {{1, 1}, 38},
        {{9, 3}, 194},
        {{640, 480}, 1843232},
        {{32767, 10922}, 2147287076},
        {{32767, 10923}, -2147483618}, // 2147483678, of which the low 32 bits remain
        {{32768, 32768}, -2147483616}, // 6442450976
        {{2147483647, 2147483647}, 38},
    };
    for (const auto& row : table) {
        ASSERT_EQ(kOk, primFloodFillGetSize(row.roi, &size));
        EXPECT_EQ(row.bytes, size) << row.roi.width << "x" << row.roi.height;
    }
}

TEST(FloodFillSize, TestsPointerThenSize) {
    int32 size = -7;
    EXPECT_EQ(kNullPointer, primFloodFillGetSize({0, 0}, nullptr));
    EXPECT_EQ(kBadSize, primFloodFillGetSize({0, 1}, &size));
    EXPECT_EQ(kBadSize, primFloodFillGetSize({1, -1}, &size));
    EXPECT_EQ(-7, size) << "a refused call wrote";
}

} // namespace
} // namespace orvane::test
