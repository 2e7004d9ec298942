#include "image/packed_dib.h"

#define ORV_API // the block functions alone
#include "image/session_images.h"
#include "orvane/orvane.h"
#include "tests/support/heap_limit.h"
#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

constexpr int32 kMax32 = std::numeric_limits<int32>::max();
constexpr int32 kMin32 = std::numeric_limits<int32>::min();

/// A block as a host makes it, freed at the end.
class Block {
public:
    explicit Block(const std::vector<uint8>& bytes) : handle_(orv_BlockAlloc(bytes.size())) {
        void* data = orv_BlockLock(handle_);
        EXPECT_NE(nullptr, data);
        if (data != nullptr && !bytes.empty()) std::memcpy(data, bytes.data(), bytes.size());
        orv_BlockUnlock(handle_);
    }
    /// Takes over a block that the library made.
    explicit Block(void* handle) : handle_(handle) {}
    ~Block() { orv_BlockFree(handle_); }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    void* Handle() const { return handle_; }
    std::size_t Size() const { return orv_BlockSize(handle_); }
    std::vector<uint8> Bytes(std::size_t count) const {
        const auto* data = static_cast<const uint8*>(orv_BlockLock(handle_));
        EXPECT_NE(nullptr, data);
        std::vector<uint8> bytes(data, data + (data != nullptr ? count : 0));
        orv_BlockUnlock(handle_);
        return bytes;
    }

private:
    void* handle_;
};

/// Header and random pixels, padding included.
std::vector<uint8> DibBytes(const BitmapHeader& header, std::size_t pixelBytes, uint32 seed = 1) {
    Random random(seed);
    std::vector<uint8> bytes(kBitmapHeaderBytes + pixelBytes);
    std::memcpy(bytes.data(), &header, kBitmapHeaderBytes);
    std::generate(bytes.begin() + kBitmapHeaderBytes, bytes.end(),
                  [&] { return static_cast<uint8>(random.Int(1, 255)); });
    return bytes;
}

std::vector<uint8> DibBytes(int32 width, int32 height) {
    const BitmapHeader header = OutgoingHeader(width, height);
    return DibBytes(header, header.biSizeImage);
}

/// The pixels of `dib` with zeros between the rows.
std::vector<uint8> WithClearedPadding(std::vector<uint8> dib, int32 width) {
    const std::size_t step = static_cast<std::size_t>(BitmapRowBytes(width));
    for (std::size_t i = 0; i + kBitmapHeaderBytes < dib.size(); ++i) {
        if (i % step >= 3u * static_cast<std::size_t>(width)) dib[i + kBitmapHeaderBytes] = 0;
    }
    return dib;
}

bool SamePixels(const std::vector<uint8>& dib, const uint8* pixels) {
    return std::equal(dib.begin() + kBitmapHeaderBytes, dib.end(), pixels);
}

TEST(BitmapFromPackedDib, TakesEveryByteOfThePixels) {
    for (const ImageSize size : {ImageSize{1, 1}, {4, 3}, {101, 9}, {1, 50}, {32767, 1}, {1, 32767}}) {
        const auto bytes = DibBytes(size.width, size.height);
        const Block block(bytes);
        Bitmap bitmap;
        ASSERT_EQ(0, BitmapFromPackedDib(block.Handle(), bitmap)) << size.width << " by " << size.height;
        EXPECT_EQ(size.width, bitmap.Width());
        EXPECT_EQ(size.height, bitmap.Height());
        EXPECT_TRUE(SamePixels(bytes, bitmap.Bits())) << size.width << " by " << size.height;
        EXPECT_EQ(bytes, block.Bytes(bytes.size())) << "the host's block was changed";
    }
}

TEST(BitmapOverBlock, ShowsThePixelsWhereTheyAre) {
    const Block block(DibBytes(101, 9));
    const LockedBlock locked(block.Handle());
    Bitmap bitmap;
    ASSERT_EQ(0, BitmapOverBlock(locked, bitmap));
    EXPECT_EQ(101, bitmap.Width());
    EXPECT_EQ(9, bitmap.Height());
    EXPECT_EQ(static_cast<const uint8*>(locked.Data()) + kBitmapHeaderBytes, bitmap.Bits());
}

TEST(BitmapOverBlock, MakesAPictureOfItsOwnOfPixelsThatEndEarly) {
    BitmapHeader header = OutgoingHeader(4, 3);
    header.biSizeImage = 20;
    const Block block(DibBytes(header, 20));
    const LockedBlock locked(block.Handle());
    Bitmap bitmap;
    ASSERT_EQ(0, BitmapOverBlock(locked, bitmap));
    EXPECT_EQ(0, std::memcmp(static_cast<const uint8*>(locked.Data()) + kBitmapHeaderBytes, bitmap.Bits(), 20));
    for (int32 i = 20; i < 36; ++i) EXPECT_EQ(0, bitmap.Bits()[i]) << i;
}

TEST(BitmapFromPackedDib, Width101HasRowsOf304Bytes) {
    const auto bytes = DibBytes(101, 2);
    ASSERT_EQ(40u + 2 * 304, bytes.size());
    const Block block(bytes);
    Bitmap bitmap;
    ASSERT_EQ(0, BitmapFromPackedDib(block.Handle(), bitmap));
    ASSERT_TRUE(LoadBitmapIntoSource(bitmap));
    EXPECT_EQ(304, g_sourceImage.Step());
    EXPECT_TRUE(SamePixels(bytes, g_sourceImage.data)) << "padding is carried along";
}

TEST(BitmapFromPackedDib, SizeImageZeroGivesABlackPicture) {
    BitmapHeader header = OutgoingHeader(5, 4);
    header.biSizeImage = 0;
    for (const std::size_t pixelBytes : {std::size_t{0}, std::size_t{64}}) {
        const Block block(DibBytes(header, pixelBytes));
        Bitmap bitmap;
        ASSERT_EQ(0, BitmapFromPackedDib(block.Handle(), bitmap));
        EXPECT_EQ(5, bitmap.Width());
        EXPECT_EQ(4, bitmap.Height());
        EXPECT_TRUE(std::all_of(bitmap.Bits(), bitmap.Bits() + 64, [](uint8 byte) { return byte == 0; }));
        EXPECT_EQ(64u, bitmap.Header().biSizeImage) << "the bitmap's own header tells the true size";
    }
}

TEST(BitmapFromPackedDib, ASmallerSizeImageLeavesTheRestBlack) {
    BitmapHeader header = OutgoingHeader(5, 4);
    header.biSizeImage = 17;
    const auto bytes = DibBytes(header, 17);
    const Block block(bytes);
    Bitmap bitmap;
    ASSERT_EQ(0, BitmapFromPackedDib(block.Handle(), bitmap));
    EXPECT_TRUE(SamePixels(bytes, bitmap.Bits()));
    EXPECT_TRUE(std::all_of(bitmap.Bits() + 17, bitmap.Bits() + 64, [](uint8 byte) { return byte == 0; }));
}

TEST(BitmapFromPackedDib, DoesNotLookAtFieldsThatSayNothingAboutThePixels) {
    BitmapHeader header = OutgoingHeader(5, 4);
    header.biXPelsPerMeter = 2835;
    header.biYPelsPerMeter = -1;
    const Block block(DibBytes(header, 64));
    Bitmap bitmap;
    EXPECT_EQ(0, BitmapFromPackedDib(block.Handle(), bitmap));
    EXPECT_EQ(0, bitmap.Header().biXPelsPerMeter) << "a bitmap has the header that leaves the library";
}

TEST(BitmapFromPackedDib, RefusesHeadersThatDoNotFit) {
    struct {
        const char* what;
        std::function<void(BitmapHeader&)> change;
    } const cases[] = {
        {"biSize 0", [](BitmapHeader& h) { h.biSize = 0; }},
        {"biSize 12", [](BitmapHeader& h) { h.biSize = 12; }},
        {"biSize 124", [](BitmapHeader& h) { h.biSize = 124; }},
        {"biSize huge", [](BitmapHeader& h) { h.biSize = 0xFFFFFFFF; }},
        {"1 bit", [](BitmapHeader& h) { h.biBitCount = 1; }},
        {"8 bits", [](BitmapHeader& h) { h.biBitCount = 8; }},
        {"32 bits", [](BitmapHeader& h) { h.biBitCount = 32; }},
        {"0 bits", [](BitmapHeader& h) { h.biBitCount = 0; }},
        {"65535 bits", [](BitmapHeader& h) { h.biBitCount = 65535; }},
        {"run lengths", [](BitmapHeader& h) { h.biCompression = 1; }},
        {"bit fields", [](BitmapHeader& h) { h.biCompression = 3; }},
        {"compression unknown", [](BitmapHeader& h) { h.biCompression = 0xFFFFFFFF; }},
        {"width 0", [](BitmapHeader& h) { h.biWidth = 0; }},
        {"height 0", [](BitmapHeader& h) { h.biHeight = 0; }},
        {"width negative", [](BitmapHeader& h) { h.biWidth = -5; }},
        {"height negative", [](BitmapHeader& h) { h.biHeight = -4; }},
        {"width least", [](BitmapHeader& h) { h.biWidth = kMin32; }},
        {"height least", [](BitmapHeader& h) { h.biHeight = kMin32; }},
        {"width 32768", [](BitmapHeader& h) { h.biWidth = 32768; }},
        {"height 32768", [](BitmapHeader& h) { h.biHeight = 32768; }},
        {"width most", [](BitmapHeader& h) { h.biWidth = kMax32; }},
        {"height most", [](BitmapHeader& h) { h.biHeight = kMax32; }},
        {"268 million pixels and more", [](BitmapHeader& h) { h.biWidth = h.biHeight = 16371; }},
        {"sides whose product wraps to a small number", [](BitmapHeader& h) { h.biWidth = h.biHeight = 65536; }},
        {"one byte more than the picture has", [](BitmapHeader& h) { ++h.biSizeImage; }},
        {"biSizeImage huge", [](BitmapHeader& h) { h.biSizeImage = 0xFFFFFFFF; }},
        {"biSizeImage negative", [](BitmapHeader& h) { h.biSizeImage = 0x80000000; }},
        {"biSizeImage that wraps with the header", [](BitmapHeader& h) { h.biSizeImage = 0xFFFFFFFF - 39; }},
    };
    for (const auto& c : cases) {
        BitmapHeader header = OutgoingHeader(5, 4);
        c.change(header);
        // The lie comes with `biSizeImage` as it stands and, where it leaves that alone, with 0.
        for (const bool noSize : {false, true}) {
            if (noSize) {
                if (header.biSizeImage != 64) continue;
                header.biSizeImage = 0;
            }
            const Block block(DibBytes(header, 65));
            Bitmap bitmap;
            ASSERT_TRUE(bitmap.Create(2, 2));
            EXPECT_EQ(-60, BitmapFromPackedDib(block.Handle(), bitmap)) << c.what;
            EXPECT_TRUE(bitmap.IsEmpty()) << c.what;
        }
    }
}

TEST(BitmapFromPackedDib, RefusesBlocksThatEndEarly) {
    const auto whole = DibBytes(5, 4);
    for (std::size_t length = 1; length < whole.size(); ++length) {
        const Block block(std::vector<uint8>(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
        // A system may round a block up; then it holds what was asked for and more.
        if (block.Size() >= whole.size()) continue;
        Bitmap bitmap;
        EXPECT_EQ(-60, BitmapFromPackedDib(block.Handle(), bitmap)) << length << " bytes";
        EXPECT_TRUE(bitmap.IsEmpty());
    }
}

TEST(BitmapFromPackedDib, RefusesAPictureThatTheBlockIsFarTooSmallFor) {
    const Block block(DibBytes(OutgoingHeader(16000, 16000), 64));
    const HeapLimit none(0); // refused before anything is allocated
    Bitmap bitmap;
    EXPECT_EQ(-60, BitmapFromPackedDib(block.Handle(), bitmap));
}

TEST(BitmapFromPackedDib, CannotLockANullHandle) {
    Bitmap bitmap;
    ASSERT_TRUE(bitmap.Create(2, 2));
    EXPECT_EQ(-1, BitmapFromPackedDib(nullptr, bitmap));
    EXPECT_TRUE(bitmap.IsEmpty());
}

#ifndef _WIN32
TEST(BitmapFromPackedDib, CannotLockABlockThatIsNone) {
    std::vector<uint8> memory(400, 0);
    Bitmap bitmap;
    EXPECT_EQ(-1, BitmapFromPackedDib(memory.data() + 100, bitmap));
    EXPECT_TRUE(bitmap.IsEmpty());
}
#endif

TEST(BitmapFromPackedDib, SaysWhenMemoryIsExhausted) {
    const Block block(DibBytes(5, 4));
    Bitmap bitmap;
    {
        const HeapLimit none(0);
        EXPECT_EQ(-50, BitmapFromPackedDib(block.Handle(), bitmap));
    }
    EXPECT_TRUE(bitmap.IsEmpty());
    EXPECT_EQ(0, BitmapFromPackedDib(block.Handle(), bitmap)) << "not usable again";
}

TEST(PackedDibFromBitmap, GivesHeaderAndPixelsWithCleanPadding) {
    for (int32 width = 1; width <= 9; ++width) {
        const auto bytes = DibBytes(width, 3);
        const Block in(bytes);
        Bitmap bitmap;
        ASSERT_EQ(0, BitmapFromPackedDib(in.Handle(), bitmap));
        void* handle = nullptr;
        ASSERT_EQ(0, PackedDibFromBitmap(bitmap, &handle));
        const Block out(handle);
        ASSERT_GE(out.Size(), bytes.size());
        EXPECT_EQ(WithClearedPadding(bytes, width), out.Bytes(bytes.size())) << "width " << width;
        EXPECT_TRUE(SamePixels(bytes, bitmap.Bits())) << "the bitmap itself was changed";
    }
}

TEST(PackedDibFromBitmap, TwiceGivesTwoBlocksOfEqualContent) {
    const auto bytes = DibBytes(101, 7);
    const Block in(bytes);
    Bitmap bitmap;
    ASSERT_EQ(0, BitmapFromPackedDib(in.Handle(), bitmap));
    void* handles[2] = {nullptr, nullptr};
    ASSERT_EQ(0, PackedDibFromBitmap(bitmap, &handles[0]));
    ASSERT_EQ(0, PackedDibFromBitmap(bitmap, &handles[1]));
    const Block first(handles[0]);
    const Block second(handles[1]);
    EXPECT_NE(handles[0], handles[1]);
    EXPECT_EQ(first.Bytes(bytes.size()), second.Bytes(bytes.size()));
}

TEST(PackedDibFromBitmap, OfAnEmptyBitmapIsMinus80AndLeavesTheHandle) {
    int mark = 0;
    void* handle = &mark;
    EXPECT_EQ(-80, PackedDibFromBitmap(Bitmap(), &handle));
    EXPECT_EQ(&mark, handle);
}

/// Pictures may keep their storage; a test of an exhausted heap wants none to be there.
void ForgetPictures() {
    g_sourceImage.Reset();
    g_workImage.Reset();
}

TEST(InitPicture, SetsUpBothPicturesAndTheRecord) {
    ASSERT_EQ(0, InitPicture(1, 101, 7, 3, 24));
    for (const ImageBuffer* image : {&g_sourceImage, &g_workImage}) {
        EXPECT_EQ(101, image->width);
        EXPECT_EQ(7, image->height);
        EXPECT_EQ(3, image->channels);
        EXPECT_EQ(kDepth8u, image->depth);
        EXPECT_EQ(0, image->planar);
        EXPECT_NE(nullptr, image->data);
    }
    EXPECT_EQ(101, g_pictureWidth);
    EXPECT_EQ(7, g_pictureHeight);
    EXPECT_EQ(3, g_pictureChannels);
    EXPECT_EQ(24, g_pictureBits);
}

TEST(InitPicture, GivesTheWorkPictureThreeChannelsWhateverTheSourceHas) {
    ASSERT_EQ(0, InitPicture(1, 6, 5, 1, 8));
    EXPECT_EQ(1, g_sourceImage.channels);
    EXPECT_EQ(3, g_workImage.channels);
}

TEST(InitPicture, OfAnotherModeStoresTheRecordAlone) {
    ASSERT_EQ(0, InitPicture(1, 6, 5, 3, 24));
    const uint8* source = g_sourceImage.data;
    for (const int32 mode : {0, 2, -1, kMax32}) {
        EXPECT_EQ(-40, InitPicture(mode, 8, 9, 1, 16)) << "mode " << mode;
        EXPECT_EQ(8, g_pictureWidth);
        EXPECT_EQ(9, g_pictureHeight);
        EXPECT_EQ(1, g_pictureChannels);
        EXPECT_EQ(16, g_pictureBits);
        EXPECT_EQ(6, g_sourceImage.width);
        EXPECT_EQ(source, g_sourceImage.data);
    }
}

TEST(InitPicture, HasRoomForEveryPictureWhateverCameBefore) {
    for (const ImageSize size : {ImageSize{40, 30}, {10, 10}, {30, 40}, {1, 1200}, {101, 90}}) {
        for (const int32 channels : {3, 1, 3}) {
            ASSERT_EQ(0, InitPicture(1, size.width, size.height, channels, 24));
            for (ImageBuffer* image : {&g_sourceImage, &g_workImage}) {
                // The sanitizer judges whether all of it is there.
                std::memset(image->data, 1, static_cast<std::size_t>(image->Step() * image->height));
            }
        }
    }
}

TEST(InitPicture, WithoutStorageIsMinus50) {
    EXPECT_EQ(-50, InitPicture(1, 0, 5, 3, 24));
    EXPECT_EQ(-50, InitPicture(1, 5, -1, 3, 24));
    EXPECT_EQ(-50, InitPicture(1, 5, 5, 2, 24));
    EXPECT_EQ(-50, InitPicture(1, kMax32, kMax32, 3, 24));
    for (const int allowed : {0, 1}) { // the source picture, then the work picture
        ForgetPictures();
        const HeapLimit limit(allowed);
        EXPECT_EQ(-50, InitPicture(1, 6, 5, 3, 24)) << allowed << " allocations succeed";
        EXPECT_EQ(nullptr, (allowed == 0 ? g_sourceImage : g_workImage).data);
    }
}

/// A bitmap of random pixels, padding included.
Bitmap RandomBitmap(int32 width, int32 height) {
    const Block block(DibBytes(width, height));
    Bitmap bitmap;
    EXPECT_EQ(0, BitmapFromPackedDib(block.Handle(), bitmap));
    return bitmap;
}

TEST(LoadBitmapIntoSource, CopiesRowsWithTheirPadding) {
    for (int32 width = 1; width <= 9; ++width) {
        const Bitmap bitmap = RandomBitmap(width, 3);
        ASSERT_TRUE(LoadBitmapIntoSource(bitmap));
        ASSERT_EQ(width, g_sourceImage.width);
        ASSERT_EQ(3, g_sourceImage.height);
        EXPECT_EQ(0, std::memcmp(bitmap.Bits(), g_sourceImage.data, bitmap.Header().biSizeImage)) << width;
        EXPECT_EQ(width, g_pictureWidth);
        EXPECT_EQ(24, g_pictureBits);
    }
}

TEST(LoadBitmapIntoSource, RefusesAnEmptyBitmapAnotherModeAndAnExhaustedHeap) {
    EXPECT_FALSE(LoadBitmapIntoSource(Bitmap()));
    const Bitmap bitmap = RandomBitmap(5, 4);
    EXPECT_FALSE(LoadBitmapIntoSource(bitmap, 2));
    for (const int allowed : {0, 1}) {
        ForgetPictures();
        const HeapLimit limit(allowed);
        EXPECT_FALSE(LoadBitmapIntoSource(bitmap)) << allowed << " allocations succeed";
    }
    EXPECT_TRUE(LoadBitmapIntoSource(bitmap)) << "not usable again";
}

TEST(StoreWorkIntoBitmap, ReplacesTheBitmapByTheWorkPictureWithCleanPadding) {
    for (int32 width = 1; width <= 9; ++width) {
        ASSERT_EQ(0, InitPicture(1, width, 3, 3, 24));
        Random random;
        const auto bytes = static_cast<std::size_t>(g_workImage.Step()) * 3;
        std::generate_n(g_workImage.data, bytes, [&] { return static_cast<uint8>(random.Int(1, 255)); });
        Bitmap bitmap = RandomBitmap(20, 20);
        ASSERT_EQ(0, StoreWorkIntoBitmap(bitmap));
        EXPECT_EQ(width, bitmap.Width());
        EXPECT_EQ(3, bitmap.Height());
        for (std::size_t i = 0; i < bytes; ++i) {
            const bool padding =
                i % static_cast<std::size_t>(g_workImage.Step()) >= static_cast<std::size_t>(3 * width);
            ASSERT_EQ(padding ? 0 : g_workImage.data[i], bitmap.Bits()[i]) << "byte " << i << " at width " << width;
        }
    }
}

TEST(StoreWorkIntoBitmap, OfTheSameSizeAsksForNoMemory) {
    ASSERT_EQ(0, InitPicture(1, 5, 4, 3, 24));
    std::fill_n(g_workImage.data, g_workImage.Step() * 4, uint8{9});
    Bitmap bitmap = RandomBitmap(5, 4);
    const HeapLimit none(0);
    ASSERT_EQ(0, StoreWorkIntoBitmap(bitmap));
    for (int32 i = 0; i < 16 * 4; ++i) ASSERT_EQ(i % 16 < 15 ? 9 : 0, bitmap.Bits()[i]) << "byte " << i;
}

TEST(StoreWorkIntoBitmap, OfAWorkPictureWithoutSizeIsEmpty) {
    g_workImage.Reset();
    Bitmap bitmap = RandomBitmap(5, 4);
    EXPECT_EQ(0, StoreWorkIntoBitmap(bitmap));
    EXPECT_TRUE(bitmap.IsEmpty());
}

TEST(StoreWorkIntoBitmap, WithoutStorageIsMinus50AndEmpty) {
    ASSERT_EQ(0, InitPicture(1, 5, 4, 3, 24));
    Bitmap bitmap = RandomBitmap(5, 5);
    {
        const HeapLimit none(0);
        EXPECT_EQ(-50, StoreWorkIntoBitmap(bitmap));
    }
    EXPECT_TRUE(bitmap.IsEmpty());
    bitmap = RandomBitmap(5, 4);
    g_workImage.Release();
    EXPECT_EQ(-50, StoreWorkIntoBitmap(bitmap)) << "a work picture that has a size but no pixels";
    EXPECT_TRUE(bitmap.IsEmpty());
    ASSERT_TRUE(g_workImage.Create(5, 4, 1, kDepth8u, 0));
    EXPECT_EQ(-50, StoreWorkIntoBitmap(bitmap)) << "one channel has no bitmap rows";
    EXPECT_TRUE(bitmap.IsEmpty());
}

} // namespace
} // namespace orvane::test
