#include "image/image_buffer.h"

#include "tests/support/heap_limit.h"
#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

namespace orvane::test {
namespace {

constexpr int32 kMax32 = std::numeric_limits<int32>::max();
constexpr DepthCode kAllDepths[] = {kDepth8u, kDepth16u, kDepth16s, kDepth32f, kDepth64f, kDepth32fc};

/// An image with shape and storage; a test that can't have it ends.
ImageBuffer Made(int32 width, int32 height, int32 channels, DepthCode depth) {
    ImageBuffer image;
    EXPECT_TRUE(image.Create(width, height, channels, depth, 0));
    return image;
}

std::size_t Bytes(const ImageBuffer& image) {
    return static_cast<std::size_t>(image.Step()) * static_cast<std::size_t>(image.height);
}

TEST(ImageBuffer, BorrowedRowsAreShownAndNeverFreedOrTakenForStorage) {
    uint8 rows[24];
    std::fill_n(rows, sizeof rows, uint8{5});
    const auto borrowed = [&rows] {
        ImageBuffer image;
        image.Borrow(rows, 2, 3, 3);
        return image;
    };
    ImageBuffer image = borrowed();
    EXPECT_EQ(rows, image.data);
    EXPECT_EQ(8, image.Step());
    ASSERT_TRUE(image.Reshape(1, 1));
    EXPECT_NE(rows, image.data);
    image = borrowed();
    ASSERT_TRUE(image.Remake(2, 3, 3, kDepth8u));
    EXPECT_NE(rows, image.data);
    const ImageBuffer other = Made(2, 3, 3, kDepth8u);
    image = borrowed();
    image.CopyFrom(other);
    EXPECT_NE(rows, image.data);
    image = borrowed();
    image.Retire();
    ASSERT_TRUE(image.Remake(1, 1, 1, kDepth8u));
    EXPECT_NE(rows, image.data);
    image.Borrow(rows, 2, 3, 3); // what it held is freed, as the leak sanitizer would see
    ImageBuffer copy;
    copy.CopyFrom(image);
    image.Reset(); // and this is not
    EXPECT_EQ(5, copy.data[0]);
    for (const uint8 byte : rows) EXPECT_EQ(5, byte) << "nothing was written";
}

bool HasOnly(uint8 value, const ImageBuffer& image) {
    return std::all_of(image.data, image.data + Bytes(image), [&](uint8 byte) { return byte == value; });
}

void ExpectShape(const ImageBuffer& image, int32 width, int32 height, int32 channels, DepthCode depth, int32 planar) {
    EXPECT_EQ(width, image.width);
    EXPECT_EQ(height, image.height);
    EXPECT_EQ(channels, image.channels);
    EXPECT_EQ(depth, image.depth);
    EXPECT_EQ(planar, image.planar);
}

TEST(ImageBuffer, OwnsNothingAtFirst) {
    const ImageBuffer image;
    ExpectShape(image, 0, 0, 0, 0, 0);
    EXPECT_EQ(nullptr, image.data);
    EXPECT_EQ(0, image.Step());
}

TEST(ImageStep, FollowsTheRule) {
    struct {
        int32 width, channels;
        DepthCode depth;
        int32 planar, step;
    } const cases[] = {
        {1, 1, kDepth8u, 0, 4},     {4, 1, kDepth8u, 0, 4},      {5, 1, kDepth8u, 0, 8},    {5, 3, kDepth8u, 0, 16},
        {101, 3, kDepth8u, 0, 304}, {640, 3, kDepth8u, 0, 1920}, {5, 3, kDepth8u, 1, 8},    {5, 3, kDepth8u, -7, 8},
        {3, 1, kDepth16u, 0, 8},    {3, 3, kDepth16u, 0, 20},    {3, 1, kDepth16s, 0, 8},   {3, 3, kDepth16s, 0, 20},
        {3, 3, kDepth16s, 1, 8},    {3, 1, kDepth32f, 0, 12},    {3, 3, kDepth32f, 0, 36},  {3, 3, kDepth32f, 1, 12},
        {3, 0, kDepth64f, 0, 24},   {3, 1, kDepth64f, 0, 24},    {3, 3, kDepth64f, 0, 24},  {3, 3, kDepth64f, 1, 24},
        {3, 1, kDepth32fc, 0, 24},  {3, 1, kDepth32fc, 1, 12},   {3, 3, kDepth32fc, 0, 72}, {3, 2, kDepth8u, 0, 8},
        {100, 0, kDepth8u, 0, 0},   {100, 3, 0, 0, 0},           {0, 3, kDepth8u, 0, 0},
    };
    for (const auto& c : cases) {
        ImageBuffer image;
        image.width = c.width;
        image.height = 1;
        image.channels = c.channels;
        image.depth = c.depth;
        image.planar = c.planar;
        EXPECT_EQ(c.step, image.Step()) << "width " << c.width << ", " << c.channels << " channels, depth 0x"
                                        << std::hex << c.depth << std::dec << ", planar " << c.planar;
    }
}

TEST(ImageStep, IsZeroWhereNoRowIsPossible) {
    const int32 extremes[] = {std::numeric_limits<int32>::min(), -100, kMax32};
    for (const int32 width : extremes) {
        for (const int32 channels : {3, kMax32}) {
            for (const DepthCode depth : {kDepth32f, kDepth64f, kDepth32fc, 0x6F8}) {
                for (const int32 planar : {0, 1}) {
                    ImageBuffer image;
                    image.width = width;
                    image.height = 1;
                    image.channels = channels;
                    image.depth = depth;
                    image.planar = planar;
                    EXPECT_EQ(0, image.Step()) << "width " << width << ", " << channels << " channels, depth 0x"
                                               << std::hex << depth << std::dec << ", planar " << planar;
                }
            }
        }
    }
}

TEST(ImageCreate, GivesZeroedStorageOfTheWholeImageToEveryForm) {
    struct {
        int32 channels;
        DepthCode depth;
        int32 planar;
    } const forms[] = {
        {1, kDepth8u, 0},  {1, kDepth16u, 0}, {1, kDepth16s, 0}, {1, kDepth32f, 0}, {1, kDepth32fc, 0},
        {3, kDepth8u, 0},  {3, kDepth16u, 0}, {3, kDepth16s, 0}, {3, kDepth32f, 0}, {1, kDepth64f, 0},
        {3, kDepth64f, 0}, {3, kDepth64f, 1}, {3, kDepth8u, 1},
    };
    for (const auto& form : forms) {
        for (int32 width = 1; width <= 12; ++width) {
            ImageBuffer image;
            ASSERT_TRUE(image.Create(width, 5, form.channels, form.depth, form.planar));
            ExpectShape(image, width, 5, form.channels, form.depth, form.planar);
            const bool wholePlanes = form.depth == kDepth64f && form.planar != 0;
            const std::size_t bytes = Bytes(image) * (wholePlanes ? static_cast<std::size_t>(form.channels) : 1);
            EXPECT_TRUE(std::all_of(image.data, image.data + bytes, [](uint8 byte) { return byte == 0; }));
            std::memset(image.data, 0xA5, bytes); // the sanitizer judges whether all of it is there
        }
    }
}

TEST(ImageCreate, NeverKeepsOldPixels) {
    ImageBuffer image = Made(7, 3, 3, kDepth8u);
    std::memset(image.data, 9, Bytes(image));
    ASSERT_TRUE(image.Create(7, 3, 3, kDepth8u, 0));
    EXPECT_TRUE(HasOnly(0, image));
}

TEST(ImageCreate, WithoutStorageFormLeavesNoPixelsAndTheShape) {
    struct {
        int32 channels;
        DepthCode depth;
    } const forms[] = {{3, kDepth32fc}, {2, kDepth8u}, {4, kDepth8u}, {0, kDepth8u},
                       {-1, kDepth8u},  {1, 0},        {1, 7},        {3, 0x220 | 1}};
    for (const auto& form : forms) {
        ImageBuffer image = Made(6, 4, 3, kDepth8u); // a good one before: its block may not show through
        EXPECT_FALSE(image.Create(6, 4, form.channels, form.depth, 0));
        EXPECT_EQ(nullptr, image.data) << form.channels << " channels, depth " << form.depth;
        ExpectShape(image, 6, 4, form.channels, form.depth, 0);
        EXPECT_TRUE(image.Create(2, 2, 1, kDepth8u, 0)) << "not usable again";
    }
}

TEST(ImageCreate, RefusesSizesOutOfRange) {
    struct {
        int32 width, height;
    } const sizes[] = {{0, 5},         {5, 0},          {-1, 5},          {5, -1},
                       {kMax32, 1},    {1, kMax32},     {kMax32, kMax32}, {kMaxImageSide + 1, 1},
                       {16371, 16371}, {-32768, -32768}};
    for (const auto& size : sizes) {
        for (const DepthCode depth : kAllDepths) {
            ImageBuffer image = Made(6, 4, 3, kDepth8u);
            EXPECT_FALSE(image.Create(size.width, size.height, 1, depth, 0))
                << size.width << " by " << size.height << ", depth " << depth;
            EXPECT_EQ(nullptr, image.data);
        }
    }
}

TEST(ImageCreate, RefusesPlanesWhoseBytesPassTheRange) {
    for (const int32 channels : {3, kMax32}) {
        ImageBuffer image;
        EXPECT_FALSE(image.Create(16000, 16000, channels, kDepth64f, 1)) << channels << " channels";
        EXPECT_EQ(nullptr, image.data);
    }
}

TEST(ImageCreate, ReplacesA64BitPlaneAsOftenAsWanted) {
    ImageBuffer image;
    for (const DepthCode depth : {kDepth64f, kDepth64f, kDepth8u, kDepth64f, kDepth32f, kDepth64f}) {
        ASSERT_TRUE(image.Create(9, 9, 1, depth, 0)) << "depth " << depth;
        EXPECT_TRUE(HasOnly(0, image));
        std::memset(image.data, 1, Bytes(image));
    }
}

TEST(ImageCreate, FreesByTheDepthOfTheStorageEvenWhenTheFieldWasChanged) {
    ImageBuffer image = Made(9, 9, 1, kDepth64f);
    image.depth = kDepth8u;
    image.Release();
    EXPECT_EQ(nullptr, image.data);
    ASSERT_TRUE(image.Create(9, 9, 1, kDepth8u, 0));
    image.depth = kDepth64f;
    image.Release();
    EXPECT_EQ(nullptr, image.data);
}

TEST(ImageCreate, SaysWhenMemoryIsExhausted) {
    for (const DepthCode depth : kAllDepths) {
        ImageBuffer image = Made(8, 8, 1, kDepth8u);
        {
            const HeapLimit none(0);
            EXPECT_FALSE(image.Create(8, 8, 1, depth, 0)) << "depth " << depth;
        }
        EXPECT_EQ(nullptr, image.data) << "the old block shows through";
        ExpectShape(image, 8, 8, 1, depth, 0);
        EXPECT_EQ(0, image.Fill(1.0));
        EXPECT_TRUE(image.Create(8, 8, 1, depth, 0)) << "not usable again";
    }
}

TEST(ImageRelease, MayBeRepeatedAndKeepsTheShape) {
    for (const DepthCode depth : {kDepth8u, kDepth64f}) {
        ImageBuffer image = Made(5, 4, 1, depth);
        image.Release();
        EXPECT_EQ(nullptr, image.data);
        image.Release();
        ExpectShape(image, 5, 4, 1, depth, 0);
        image.Allocate();
        ASSERT_NE(nullptr, image.data);
        EXPECT_TRUE(HasOnly(0, image));
    }
}

TEST(ImageAllocate, ReplacesTheStorageByOneForThePresentFields) {
    ImageBuffer image = Made(2, 2, 1, kDepth8u);
    image.width = 200;
    image.height = 100;
    image.depth = kDepth64f;
    image.Allocate();
    ASSERT_NE(nullptr, image.data);
    std::memset(image.data, 1, Bytes(image));
    image.channels = 2;
    image.depth = kDepth8u;
    image.Allocate();
    EXPECT_EQ(nullptr, image.data) << "two channels have no storage form";
}

TEST(ImageReset, ForgetsTheShape) {
    ImageBuffer image = Made(5, 4, 3, kDepth8u);
    image.Reset();
    ExpectShape(image, 0, 0, 0, 0, 0);
    EXPECT_EQ(nullptr, image.data);
}

TEST(ImageMove, LeavesAnEmptyImageBehind) {
    ImageBuffer first = Made(5, 4, 3, kDepth8u);
    uint8* pixels = first.data;
    ImageBuffer second(std::move(first));
    EXPECT_EQ(pixels, second.data);
    ExpectShape(second, 5, 4, 3, kDepth8u, 0);
    ExpectShape(first, 0, 0, 0, 0, 0);
    EXPECT_EQ(nullptr, first.data);

    ImageBuffer third = Made(9, 9, 1, kDepth64f);
    third = std::move(second);
    EXPECT_EQ(pixels, third.data);
    ExpectShape(third, 5, 4, 3, kDepth8u, 0);
    ExpectShape(second, 0, 0, 0, 0, 0);
    EXPECT_EQ(nullptr, second.data);
    EXPECT_TRUE(second.Create(3, 3, 1, kDepth64f, 0)) << "a moved-from image may be used again";
}

TEST(ImageSwap, ExchangesEverything) {
    ImageBuffer plane = Made(9, 8, 1, kDepth64f);
    ImageBuffer picture = Made(5, 4, 3, kDepth8u);
    uint8* planeData = plane.data;
    uint8* pictureData = picture.data;
    plane.Swap(picture);
    EXPECT_EQ(pictureData, plane.data);
    EXPECT_EQ(planeData, picture.data);
    ExpectShape(plane, 5, 4, 3, kDepth8u, 0);
    ExpectShape(picture, 9, 8, 1, kDepth64f, 0);
}

/// Random bytes in every row, padding too.
void Scribble(ImageBuffer& image, Random& random) {
    std::generate_n(image.data, Bytes(image), [&] { return static_cast<uint8>(random.Bits() >> 24); });
}

TEST(ImageCopy, TakesShapeAndPixelsOfTheFourWorkingForms) {
    struct {
        int32 channels;
        DepthCode depth;
        int32 pixelBytes;
    } const forms[] = {{1, kDepth8u, 1}, {1, kDepth16s, 2}, {1, kDepth32f, 4}, {3, kDepth8u, 3}};
    Random random;
    for (const auto& form : forms) {
        for (int32 width = 1; width <= 20; ++width) {
            ImageBuffer source = Made(width, 3, form.channels, form.depth);
            Scribble(source, random);
            ImageBuffer fresh, sameShape = Made(width, 3, form.channels, form.depth),
                               otherShape = Made(40, 40, 1, kDepth64f);
            Scribble(sameShape, random);
            for (ImageBuffer* copy : {&fresh, &sameShape, &otherShape}) {
                copy->CopyFrom(source);
                ExpectShape(*copy, width, 3, form.channels, form.depth, 0);
                ASSERT_NE(nullptr, copy->data);
                ASSERT_NE(source.data, copy->data) << "pixels are shared";
                for (int32 y = 0; y < 3; ++y) {
                    EXPECT_EQ(0, std::memcmp(source.data + std::ptrdiff_t{source.Step()} * y,
                                             copy->data + std::ptrdiff_t{copy->Step()} * y,
                                             static_cast<std::size_t>(form.pixelBytes) * width))
                        << "row " << y << " of width " << width << ", depth " << form.depth;
                }
            }
        }
    }
}

TEST(ImageCopy, IntoTheSameShapeNeedsNoMemory) {
    Random random;
    ImageBuffer source = Made(8, 3, 3, kDepth8u);
    Scribble(source, random);
    ImageBuffer copy = Made(8, 3, 3, kDepth8u);
    const uint8* storage = copy.data;
    const HeapLimit none(0);
    copy.CopyFrom(source);
    ASSERT_EQ(storage, copy.data);
    EXPECT_EQ(0, std::memcmp(source.data, copy.data, Bytes(source)));
}

TEST(ImageCopy, OfOtherFormsHasStorageAndNoPixels) {
    struct {
        int32 channels;
        DepthCode depth;
    } const forms[] = {{1, kDepth16u}, {1, kDepth64f}, {1, kDepth32fc}, {3, kDepth16u},
                       {3, kDepth16s}, {3, kDepth32f}, {3, kDepth64f}};
    Random random;
    for (const auto& form : forms) {
        ImageBuffer source = Made(7, 3, form.channels, form.depth);
        Scribble(source, random);
        ImageBuffer copy = Made(7, 3, form.channels, form.depth);
        Scribble(copy, random);
        copy.CopyFrom(source);
        ExpectShape(copy, 7, 3, form.channels, form.depth, 0);
        ASSERT_NE(nullptr, copy.data);
        EXPECT_TRUE(HasOnly(0, copy)) << form.channels << " channels, depth " << form.depth;
    }
}

TEST(ImageCopy, WithoutStorageTakesTheShapeAlone) {
    ImageBuffer shape;
    shape.width = 6;
    shape.height = 5;
    shape.channels = 3;
    shape.depth = kDepth8u;
    shape.planar = 2;
    ImageBuffer copy = Made(6, 5, 3, kDepth8u);
    copy.CopyFrom(shape);
    ExpectShape(copy, 6, 5, 3, kDepth8u, 2);
    EXPECT_EQ(nullptr, copy.data);
}

TEST(ImageCopy, OfItselfChangesNothing) {
    Random random;
    ImageBuffer image = Made(7, 3, 3, kDepth8u);
    Scribble(image, random);
    const std::vector<uint8> before(image.data, image.data + Bytes(image));
    const ImageBuffer& alias = image;
    image.CopyFrom(alias);
    ExpectShape(image, 7, 3, 3, kDepth8u, 0);
    ASSERT_NE(nullptr, image.data);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), image.data));
}

TEST(ImageCopy, WithMemoryExhaustedHasTheShapeAlone) {
    const ImageBuffer source = Made(7, 3, 3, kDepth8u);
    ImageBuffer copy = Made(9, 9, 1, kDepth8u);
    const HeapLimit none(0);
    copy.CopyFrom(source);
    ExpectShape(copy, 7, 3, 3, kDepth8u, 0);
    EXPECT_EQ(nullptr, copy.data);
}

TEST(ImageRemake, KeepsTheStorageWhileItSufficesAndClearsThePadding) {
    ImageBuffer image = Made(20, 10, 3, kDepth8u);
    const uint8* storage = image.data;
    for (const DepthCode depth : {kDepth8u, kDepth16s, kDepth32f, kDepth16u, kDepth32fc}) {
        std::memset(image.data, 9, 600);
        const HeapLimit none(0);
        ASSERT_TRUE(image.Remake(7, 9, 1, depth));
        ExpectShape(image, 7, 9, 1, depth, 0);
        EXPECT_EQ(storage, image.data) << depth;
        const int32 used = 7 * (depth == kDepth32fc ? 8 : (depth & 0x3F) / 8);
        for (int32 y = 0; y < 9; ++y) {
            for (int32 i = 0; i < image.Step(); ++i) {
                ASSERT_EQ(i < used ? 9 : 0, image.data[image.Step() * y + i]) << "byte " << i << " at " << depth;
            }
        }
    }
}

TEST(ImageRemake, GetsOtherStorageWhereItMust) {
    ImageBuffer image = Made(4, 4, 1, kDepth8u);
    std::memset(image.data, 9, 16);
    ASSERT_TRUE(image.Remake(39, 30, 3, kDepth8u));
    for (int32 y = 0; y < 30; ++y) {
        std::memset(image.data + image.Step() * y, 9, 3 * 39);
        for (int32 i = 3 * 39; i < image.Step(); ++i) ASSERT_EQ(0, image.data[image.Step() * y + i]) << i << ", " << y;
    }
    ASSERT_TRUE(image.Remake(5, 5, 1, kDepth64f)) << "of another allocator";
    EXPECT_TRUE(HasOnly(0, image));
    ASSERT_TRUE(image.Remake(2, 2, 1, kDepth16s));
    EXPECT_TRUE(HasOnly(0, image)) << "only that of 8 bits is not zeroed";
    EXPECT_FALSE(image.Remake(0, 5, 3, kDepth8u));
    EXPECT_EQ(nullptr, image.data);
    const HeapLimit none(0);
    EXPECT_FALSE(image.Remake(5, 5, 3, kDepth8u));
    ExpectShape(image, 5, 5, 3, kDepth8u, 0);
}

TEST(ImageRetire, ForgetsTheShapeAndKeepsTheStorageForRemake) {
    ImageBuffer image = Made(20, 10, 3, kDepth8u);
    const uint8* storage = image.data;
    image.Retire();
    ExpectShape(image, 0, 0, 0, 0, 0);
    {
        const HeapLimit none(0);
        ASSERT_TRUE(image.Remake(20, 10, 3, kDepth8u));
    }
    EXPECT_EQ(storage, image.data);
    image.Retire();
    ASSERT_TRUE(image.Create(20, 10, 3, kDepth8u, 0)) << "any other way it is storage to be freed";
    EXPECT_TRUE(HasOnly(0, image));
}

TEST(ImageReshape, KeepsTheStorageWhileItSuffices) {
    for (const DepthCode depth : {kDepth8u, kDepth16s, kDepth32f, kDepth64f}) {
        ImageBuffer image = Made(40, 30, 1, depth);
        const uint8* storage = image.data;
        const HeapLimit none(0);
        for (const ImageSize size : {ImageSize{20, 30}, {40, 30}, {1, 1}, {28, 40}}) {
            EXPECT_TRUE(image.Reshape(size.width, size.height)) << size.width << " by " << size.height;
            EXPECT_EQ(storage, image.data);
            ExpectShape(image, size.width, size.height, 1, depth, 0);
            std::memset(image.data, 1, Bytes(image));
        }
    }
}

TEST(ImageReshape, GetsLargerStorageWhereItMust) {
    for (const DepthCode depth : {kDepth8u, kDepth32f, kDepth64f}) {
        ImageBuffer image;
        image.channels = 1;
        image.depth = depth;
        for (const ImageSize size : {ImageSize{3, 3}, {50, 40}, {10, 10}, {41, 50}}) {
            ASSERT_TRUE(image.Reshape(size.width, size.height));
            ExpectShape(image, size.width, size.height, 1, depth, 0);
            std::memset(image.data, 1, Bytes(image)); // the sanitizer judges whether all of it is there
        }
    }
}

TEST(ImageReshape, WithoutStorageSaysSo) {
    ImageBuffer image = Made(4, 4, 1, kDepth8u);
    EXPECT_FALSE(image.Reshape(0, 4));
    EXPECT_EQ(nullptr, image.data);
    EXPECT_FALSE(image.Reshape(kMax32, kMax32));
    EXPECT_TRUE(image.Reshape(4, 4));
    const HeapLimit none(0);
    EXPECT_FALSE(image.Reshape(400, 400));
    EXPECT_EQ(nullptr, image.data);
}

/// The element `index` of the first row.
template <typename T>
T Element(const ImageBuffer& image, int32 index) {
    T value;
    std::memcpy(&value, image.data + sizeof(T) * static_cast<std::size_t>(index), sizeof(T));
    return value;
}

TEST(ImageFill, TruncatesOneChannelAndRoundsThree) {
    struct {
        double value;
        int32 one, three;
    } const cases[] = {{100.0, 100, 100}, {99.7, 99, 100}, {99.5, 99, 100},   {99.4, 99, 99},   {0.0, 0, 0},
                       {0.4, 0, 0},       {0.5, 0, 1},     {254.7, 254, 255}, {255.0, 255, 255}};
    for (const auto& c : cases) {
        ImageBuffer grey = Made(5, 3, 1, kDepth8u);
        EXPECT_EQ(0, grey.Fill(c.value));
        ImageBuffer colour = Made(5, 3, 3, kDepth8u);
        EXPECT_EQ(0, colour.Fill(c.value));
        for (int32 y = 0; y < 3; ++y) {
            for (int32 i = 0; i < 5; ++i) EXPECT_EQ(c.one, grey.data[grey.Step() * y + i]) << c.value;
            for (int32 i = 0; i < 15; ++i) EXPECT_EQ(c.three, colour.data[colour.Step() * y + i]) << c.value;
            for (int32 i = 5; i < 8; ++i) EXPECT_EQ(0, grey.data[grey.Step() * y + i]) << "padding was written";
        }
    }
}

TEST(ImageFill, LimitsValuesToTheElement) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct {
        double value;
        int32 one, three, sixteen;
    } const cases[] = {{300.0, 255, 255, 300},   {-1.0, 0, 0, -1},           {-3.9, 0, 0, -3},
                       {1e300, 255, 255, 32767}, {-1e300, 0, 0, -32768},     {kInfinity, 255, 255, 32767},
                       {nan, 0, 0, 0},           {32767.9, 255, 255, 32767}, {-kInfinity, 0, 0, -32768}};
    for (const auto& c : cases) {
        ImageBuffer grey = Made(2, 2, 1, kDepth8u), colour = Made(2, 2, 3, kDepth8u), wide = Made(2, 2, 1, kDepth16s);
        EXPECT_EQ(0, grey.Fill(c.value));
        EXPECT_EQ(0, colour.Fill(c.value));
        EXPECT_EQ(0, wide.Fill(c.value));
        EXPECT_EQ(c.one, grey.data[1]) << c.value;
        EXPECT_EQ(c.three, colour.data[5]) << c.value;
        EXPECT_EQ(c.sixteen, Element<int16>(wide, 1)) << c.value;
    }
}

TEST(ImageFill, NarrowsToFloat) {
    ImageBuffer plane = Made(3, 2, 1, kDepth32f);
    EXPECT_EQ(0, plane.Fill(0.1));
    for (int32 i = 0; i < 6; ++i) EXPECT_EQ(0.1F, Element<float>(plane, i));
}

TEST(ImageFill, DoesNothingForThreeChannelsOfSignedOrFloat) {
    for (const DepthCode depth : {kDepth16s, kDepth32f}) {
        ImageBuffer image = Made(3, 2, 3, depth);
        EXPECT_EQ(0, image.Fill(77.0));
        EXPECT_TRUE(HasOnly(0, image)) << "depth " << depth;
    }
}

TEST(ImageFill, RefusesOtherDepthsAndChangesNothing) {
    struct {
        int32 channels;
        DepthCode depth;
    } const forms[] = {{1, kDepth16u}, {1, kDepth64f}, {1, kDepth32fc}, {3, kDepth16u}, {3, kDepth64f}};
    for (const auto& form : forms) {
        ImageBuffer image = Made(3, 2, form.channels, form.depth);
        EXPECT_EQ(-9999, image.Fill(77.0)) << form.channels << " channels, depth " << form.depth;
        EXPECT_TRUE(HasOnly(0, image));
    }
}

TEST(ImageFill, IsHarmlessWithoutPixelsOrWithOtherChannels) {
    ImageBuffer image;
    EXPECT_EQ(0, image.Fill(5.0));
    image.channels = 1;
    image.depth = kDepth16u;
    EXPECT_EQ(0, image.Fill(5.0)) << "no pixels come before an unknown depth";
    ImageBuffer plane = Made(3, 2, 2, kDepth64f);
    EXPECT_EQ(0, plane.Fill(5.0));
    EXPECT_TRUE(HasOnly(0, plane));
}

} // namespace
} // namespace orvane::test
