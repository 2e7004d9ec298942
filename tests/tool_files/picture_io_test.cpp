// Picture files: what comes in is what the file shows, and what goes out can be read again.
#include "tools/support/picture_io.h"

#include "tests/tools/picture_files.h"
#include "tests/tools/temp_folder.h"
#include "tools/support/jpeg_segments.h"
#include "tools/support/orientation.h"

#include <gtest/gtest.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace orvane::tools {
namespace {

/// Fills what the heap gives out, so that bytes which nobody writes show.
class UsedHeap {
public:
#ifdef __GLIBC__
    UsedHeap() { mallopt(M_PERTURB, 0xA5); }
    ~UsedHeap() { mallopt(M_PERTURB, 0); }
    UsedHeap(const UsedHeap&) = delete;
    UsedHeap& operator=(const UsedHeap&) = delete;
#endif
};

#ifdef _WIN32
constexpr const char* kDevice = "NUL";
#else
constexpr const char* kDevice = "/dev/zero";
#endif

Picture Read(const std::string& path) {
    Picture picture;
    std::string error;
    EXPECT_TRUE(ReadPicture(path, &picture, &error)) << path << ": " << error;
    return picture;
}

/// The reason why a file of this content is refused.
std::string Refusal(const std::string& name, const std::string& content) {
    const TempFolder folder;
    Picture picture = BlackPicture(3, 3);
    std::string error;
    EXPECT_FALSE(ReadPicture(folder.Put(name, content), &picture, &error)) << name << " was read";
    EXPECT_EQ(picture.width, 0) << "a refused file leaves a picture";
    EXPECT_TRUE(picture.pixels.empty());
    EXPECT_EQ(error.find('\n'), std::string::npos) << error;
    return error;
}

TEST(PictureIo, LosslessFormatsGiveBackEveryPixelAtEveryWidth) {
    const TempFolder folder;
    for (const std::string extension : {".png", ".bmp", ".tif", ".tiff", ".PNG"}) {
        for (int32 width = 1; width <= 9; ++width) {
            const Picture picture = ColourfulPicture(width, 5);
            const std::string path = folder / ("p" + extension);
            std::string error;
            ASSERT_TRUE(WritePicture(path, picture, true, &error)) << error;
            const Picture back = Read(path);
            EXPECT_EQ(back.width, width);
            EXPECT_EQ(back.height, 5);
            EXPECT_EQ(back.step, (width * 3 + 3) / 4 * 4);
            EXPECT_EQ(back.pixels, picture.pixels) << extension << ", width " << width;
        }
    }
}

TEST(PictureIo, ABitmapHasZerosBehindItsRows) {
    for (const int32 width : {1, 2, 3, 4, 5, 486}) {
        const std::size_t used = 3 * static_cast<std::size_t>(width), step = (used + 3) / 4 * 4;
        std::string bmp;
        {
            [[maybe_unused]] const UsedHeap heap;
            bmp = Encoded(".bmp", ColourfulPicture(width, 7));
        }
        ASSERT_GE(bmp.size(), 7 * step);
        for (std::size_t row = bmp.size() - 7 * step; row < bmp.size(); row += step) {
            EXPECT_EQ(bmp.substr(row + used, step - used), std::string(step - used, '\0')) << "width " << width;
        }
    }
}

TEST(PictureIo, JpegGivesBackFlatColoursNearly) {
    const TempFolder folder;
    for (const std::string extension : {".jpg", ".jpeg", ".JPG"}) {
        const Picture back = Read(folder.Put("p" + extension, Encoded(extension, QuarteredPicture(64, 32))));
        ASSERT_EQ(back.width, 64);
        ASSERT_EQ(back.height, 32);
        EXPECT_TRUE(IsNear(PixelAt(back, 16, 8), kRed, 4));
        EXPECT_TRUE(IsNear(PixelAt(back, 48, 8), kGreen, 4));
        EXPECT_TRUE(IsNear(PixelAt(back, 16, 24), kBlue, 4));
        EXPECT_TRUE(IsNear(PixelAt(back, 48, 24), kYellow, 4));
    }
}

TEST(PictureIo, TheBottomRowComesFirstAndPaddingIsZero) {
    const TempFolder folder;
    const std::string samples("\1\2\3\4\5\6", 6); // one column: two pixels, red green blue each
    const Picture picture = Read(folder.Put("p.png", PngFile({1, 2, 8, kPngColour}, samples)));
    EXPECT_EQ(AllRowsOf(picture), (std::vector<uint8>{6, 5, 4, 0, 3, 2, 1, 0}));
}

struct OrientationCase {
    int orientation;
    bool turned;
    Colour quarters[4]; // upper left, upper right, lower left, lower right as a person sees them
};

constexpr OrientationCase kOrientations[] = {
    {1, false, {kRed, kGreen, kBlue, kYellow}}, {2, false, {kGreen, kRed, kYellow, kBlue}},
    {3, false, {kYellow, kBlue, kGreen, kRed}}, {4, false, {kBlue, kYellow, kRed, kGreen}},
    {5, true, {kRed, kBlue, kGreen, kYellow}},  {6, true, {kBlue, kRed, kYellow, kGreen}},
    {7, true, {kYellow, kGreen, kBlue, kRed}},  {8, true, {kGreen, kYellow, kRed, kBlue}},
};

TEST(PictureIo, ExifOrientationIsApplied) {
    const TempFolder folder;
    const std::string jpeg = Encoded(".jpg", QuarteredPicture(64, 32));
    for (const OrientationCase& wanted : kOrientations) {
        for (const bool highFirst : {false, true}) {
            SCOPED_TRACE("orientation " + std::to_string(wanted.orientation) + (highFirst ? " MM" : " II"));
            const Picture picture = Read(folder.Put("p.jpg", WithExif(jpeg, wanted.orientation, highFirst)));
            ASSERT_EQ(picture.width, wanted.turned ? 32 : 64);
            ASSERT_EQ(picture.height, wanted.turned ? 64 : 32);
            for (int32 quarter = 0; quarter < 4; ++quarter) {
                const int32 x = picture.width * (quarter % 2 == 0 ? 1 : 3) / 4;
                const int32 y = picture.height * (quarter / 2 == 0 ? 1 : 3) / 4;
                EXPECT_TRUE(IsNear(PixelAt(picture, x, y), wanted.quarters[quarter], 4)) << "quarter " << quarter;
            }
        }
    }
}

TEST(PictureIo, AnOrientationOutsideOneToEightIsUpright) {
    const TempFolder folder;
    const std::string jpeg = Encoded(".jpg", QuarteredPicture(64, 32));
    for (const int orientation : {0, 9, 65535}) {
        const Picture picture = Read(folder.Put("p.jpg", WithExif(jpeg, orientation, false)));
        ASSERT_EQ(picture.width, 64) << orientation;
        EXPECT_TRUE(IsNear(PixelAt(picture, 16, 8), kRed, 4)) << orientation;
    }
}

TEST(PictureIo, AnOrientationBehindBytesThatBelongToNoSegmentIsApplied) {
    const TempFolder folder;
    const std::string jpeg = WithExif(Encoded(".jpg", QuarteredPicture(64, 32)), 6, true);
    const std::string remark = JpegSegmentBytes(kCommentSegment, "remark");
    for (const std::string& between :
         {std::string("junk"), std::string("\xFF\0", 2), std::string("\xFF\xD3"), std::string("\xFF\x01")}) {
        const std::string file = jpeg.substr(0, 2) + remark + between + jpeg.substr(2);
        const Picture picture = Read(folder.Put("p.jpg", file));
        EXPECT_EQ(picture.width, 32) << testing::PrintToString(between);
        EXPECT_EQ(NotedOrientation(file), 6) << testing::PrintToString(between) << ": not as the picture was turned";
    }
}

/// An uncompressed TIFF of `picture` with the orientation tag.
std::string TiffFile(const Picture& picture, int orientation) {
    const auto width = static_cast<std::uint32_t>(picture.width);
    const auto height = static_cast<std::uint32_t>(picture.height);
    const auto entry = [](std::uint32_t tag, std::uint32_t type, std::uint32_t count, std::uint32_t value) {
        return Low16(tag) + Low16(type) + Low32(count) +
               (type == 3 && count == 1 ? Low16(value) + Low16(0) : Low32(value));
    };
    constexpr std::uint32_t kEntries = 10;
    constexpr std::uint32_t kBitsAt = 8 + 2 + kEntries * 12 + 4;
    constexpr std::uint32_t kPixelsAt = kBitsAt + 6;
    std::string file = "II" + Low16(42) + Low32(8) + Low16(kEntries);
    file += entry(256, 4, 1, width) + entry(257, 4, 1, height) + entry(258, 3, 3, kBitsAt) + entry(259, 3, 1, 1);
    file += entry(262, 3, 1, 2) + entry(273, 4, 1, kPixelsAt) +
            entry(274, 3, 1, static_cast<std::uint32_t>(orientation)) + entry(277, 3, 1, 3);
    file += entry(278, 4, 1, height) + entry(279, 4, 1, width * height * 3) + Low32(0);
    file += Low16(8) + Low16(8) + Low16(8);
    for (int32 y = 0; y < picture.height; ++y) {
        for (int32 x = 0; x < picture.width; ++x) {
            const Colour colour = PixelAt(picture, x, y);
            file += {static_cast<char>(colour.red), static_cast<char>(colour.green), static_cast<char>(colour.blue)};
        }
    }
    return file;
}

TEST(PictureIo, TheOrientationOfATiffIsApplied) {
    const TempFolder folder;
    for (const OrientationCase& wanted : kOrientations) {
        SCOPED_TRACE("orientation " + std::to_string(wanted.orientation));
        const Picture picture = Read(folder.Put("p.tif", TiffFile(QuarteredPicture(8, 4), wanted.orientation)));
        ASSERT_EQ(picture.width, wanted.turned ? 4 : 8);
        ASSERT_EQ(picture.height, wanted.turned ? 8 : 4);
        for (int32 quarter = 0; quarter < 4; ++quarter) {
            const int32 x = picture.width * (quarter % 2 == 0 ? 1 : 3) / 4;
            const int32 y = picture.height * (quarter / 2 == 0 ? 1 : 3) / 4;
            EXPECT_TRUE(IsNear(PixelAt(picture, x, y), wanted.quarters[quarter], 0)) << "quarter " << quarter;
        }
    }
}

TEST(PictureIo, TransparencyIsLaidOverWhite) {
    struct {
        std::string pixel; // red, green, blue, alpha
        Colour wanted;
    } const cases[] = {
        {std::string("\x0A\x14\x1E\xFF", 4), {10, 20, 30}},
        {std::string("\x0A\x14\x1E\x00", 4), {255, 255, 255}},
        {std::string("\x00\x64\xFF\x80", 4), {127, 177, 255}}, // v * 128/255 + 255 * 127/255, rounded
        {std::string("\x00\x00\x00\x01", 4), {254, 254, 254}},
    };
    const TempFolder folder;
    for (const auto& c : cases) {
        const Picture picture = Read(folder.Put("p.png", PngFile({1, 1, 8, kPngColourAlpha}, c.pixel)));
        EXPECT_TRUE(IsNear(PixelAt(picture, 0, 0), c.wanted, 0));
    }
    const Picture grey = Read(folder.Put("g.png", PngFile({1, 1, 8, kPngGreyAlpha}, std::string("\x00\x80", 2))));
    EXPECT_TRUE(IsNear(PixelAt(grey, 0, 0), {127, 127, 127}, 0));
}

TEST(PictureIo, WhateverThePixelsAreTheyBecomeEightBitColour) {
    struct {
        const char* what;
        std::string file;
        Colour left;
        Colour right;
    } const cases[] = {
        {"16 bits a channel",
         PngFile({2, 1, 16, kPngColour}, std::string("\x11\x99\x22\x99\x33\x99\x44\x11\x55\x11\x66\x11", 12)),
         {0x11, 0x22, 0x33},
         {0x44, 0x55, 0x66}},
        {"grey", PngFile({2, 1, 8, kPngGrey}, std::string("\x40\xC0", 2)), {64, 64, 64}, {192, 192, 192}},
        {"16-bit grey",
         PngFile({2, 1, 16, kPngGrey}, std::string("\x40\x12\xC0\x12", 4)),
         {64, 64, 64},
         {192, 192, 192}},
        {"one bit", PngFile({2, 1, 1, kPngGrey}, std::string("\x40", 1)), {0, 0, 0}, {255, 255, 255}},
        {"palette",
         PngFile({2, 1, 8, kPngPalette}, std::string("\x01\x00", 2), "\x01\x02\x03\x04\x05\x06"),
         {4, 5, 6},
         {1, 2, 3}},
    };
    const TempFolder folder;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Picture picture = Read(folder.Put("p.any", c.file));
        ASSERT_EQ(picture.width, 2);
        ASSERT_EQ(picture.height, 1);
        EXPECT_TRUE(IsNear(PixelAt(picture, 0, 0), c.left, 1)); // of 16 bits, cut or rounded
        EXPECT_TRUE(IsNear(PixelAt(picture, 1, 0), c.right, 1));
    }
}

TEST(PictureIo, TheContentTellsTheFormatNotTheName) {
    const TempFolder folder;
    const Picture picture = ColourfulPicture(6, 4);
    EXPECT_EQ(Read(folder.Put("p.jpg", Encoded(".png", picture))).pixels, picture.pixels);
}

TEST(PictureIo, NamesMayHoldAnyLetters) {
    const TempFolder folder;
    const Picture picture = ColourfulPicture(6, 4);
    const std::string name = "J\xC3\xB6rg \xD0\x96 \xE2\x82\xAC \xF0\x9F\x98\x80.png";
    std::string error;
    ASSERT_TRUE(WritePicture(folder / name, picture, false, &error)) << error;
    EXPECT_EQ(folder.Names(), std::vector<std::string>{name});
    EXPECT_EQ(Read(folder / name).pixels, picture.pixels);
}

TEST(PictureIo, ATruncatedFileIsRefusedWhereverItBreaksOff) {
    const Picture picture = ColourfulPicture(40, 30);
    for (const std::string extension : {".jpg", ".png", ".bmp", ".tif"}) {
        const std::string whole = Encoded(extension, picture);
        for (std::size_t tenth = 0; tenth < 10; ++tenth) {
            SCOPED_TRACE(extension + ", " + std::to_string(tenth) + " tenths");
            EXPECT_NE(Refusal("p" + extension, whole.substr(0, whole.size() * tenth / 10)), "");
        }
    }
}

TEST(PictureIo, AJpegWithoutItsEndMarkerIsRefused) {
    const std::string whole = Encoded(".jpg", ColourfulPicture(40, 30));
    EXPECT_EQ(Refusal("p.jpg", whole.substr(0, whole.size() - 2)), "damaged picture: it breaks off before its end");
}

TEST(PictureIo, HeadersThatClaimTooMuchAreRefusedBeforeDecoding) {
    struct {
        PngShape shape;
        const char* size;
    } const cases[] = {
        {{32768, 1, 8, kPngColour}, "32768x1 "},
        {{1, 32768, 8, kPngColour}, "1x32768 "},
        {{32767, 32767, 8, kPngColour}, "32767x32767 "},
        {{20000, 13401, 8, kPngColour}, "20000x13401 "},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Refusal("p.png", PngFile(c.shape, "")).find(c.size), 0U) << c.size;
    }
}

TEST(PictureIo, TheLargestSidesAreRead) {
    const TempFolder folder;
    for (const auto& [width, height] : {std::pair{32767, 1}, std::pair{1, 32767}}) {
        const std::string path = folder / "p.png";
        std::string error;
        ASSERT_TRUE(WritePicture(path, ColourfulPicture(width, height), true, &error)) << error;
        EXPECT_EQ(Read(path).width, width);
        EXPECT_EQ(Read(path).height, height);
    }
}

TEST(PictureIo, LyingAndForeignFilesAreRefused) {
    EXPECT_EQ(Refusal("empty.jpg", ""), "is empty");
    EXPECT_EQ(Refusal("text.jpg", "certainly not a picture"), "is not a picture of a known format");
    EXPECT_EQ(Refusal("drawing.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'></svg>"),
              "is not a picture of a known format");
    // Headers in order, but fewer rows than they promise.
    EXPECT_NE(Refusal("short.png", PngFile({100, 100, 8, kPngColour}, std::string(300, 'x'))), "");
    EXPECT_NE(Refusal("zero.png", PngFile({0, 1, 8, kPngColour}, "")), "");
    std::string bmp = Encoded(".bmp", ColourfulPicture(8, 8));
    bmp.replace(18, 4, Low32(20000));
    bmp.replace(22, 4, Low32(13000));
    EXPECT_NE(Refusal("wide.bmp", bmp), "");
}

TEST(PictureIo, ABmpWhosePixelsAreSaidToBeginGigabytesAwayIsRefusedUnread) {
    std::string bmp = Encoded(".bmp", ColourfulPicture(8, 8));
    bmp.replace(10, 4, Low32(0xFF000000));
    EXPECT_EQ(Refusal("far.bmp", bmp), "damaged picture: it breaks off before its end");
    bmp = Encoded(".bmp", ColourfulPicture(8, 8));
    bmp.replace(28, 2, std::string("\x08\0", 2));
    bmp.replace(46, 4, Low32(0xBCBCBCBC));
    EXPECT_EQ(Refusal("colours.bmp", bmp), "damaged picture: it breaks off before its end");
}

TEST(PictureIo, WhatIsNoRegularFileIsRefusedAtOnce) {
    const TempFolder folder;
    Picture picture;
    std::string error;
    EXPECT_FALSE(ReadPicture(folder.Path(), &picture, &error));
    EXPECT_EQ(error, "is a folder");
    EXPECT_FALSE(ReadPicture(kDevice, &picture, &error));
    EXPECT_EQ(error, "is not a regular file");
    EXPECT_FALSE(ReadPicture(folder / "absent.jpg", &picture, &error));
    EXPECT_EQ(error, "cannot open: No such file or directory");
}

TEST(PictureIo, OnlyKnownExtensionsAreWritten) {
    for (const char* name : {"a.jpg", "a.JPEG", "a.png", "x/a.Bmp", "a.tif", "a.TIFF"})
        EXPECT_TRUE(IsWritablePictureName(name)) << name;
    for (const char* name : {"a", "png", "a.gif", "a.png/b", "a.", "", "a.pngx"})
        EXPECT_FALSE(IsWritablePictureName(name)) << name;
    const TempFolder folder;
    std::string error;
    EXPECT_FALSE(WritePicture(folder / "a.xyz", ColourfulPicture(4, 4), false, &error));
    EXPECT_NE(error, "");
    EXPECT_FALSE(WritePicture(folder / "a.png", Picture(), false, &error));
    EXPECT_EQ(error, "there is no picture to write");
    EXPECT_TRUE(folder.Names().empty());
}

} // namespace
} // namespace orvane::tools
