// How many pixels an inch has: what is written is read again, and what files of other programs tell.
#include "tools/support/density.h"

#include "tests/tool_files/file_settings.h"
#include "tests/tools/temp_folder.h"

namespace orvane::tools {
namespace {

PortraitFile WithDpi(int32 dpi) {
    PortraitFile file;
    file.settings.dpi = dpi;
    return file;
}

TEST(Density, EveryFormatTellsWhatWasWritten) {
    for (const std::string extension : {".jpg", ".png", ".bmp", ".tif"}) {
        for (const int32 dpi : {36, 72, 96, 300, 301, 600, 2400}) {
            const std::optional<Density> told = DensityOf(EncodedWith(extension, ColourfulPicture(7, 5), WithDpi(dpi)));
            ASSERT_TRUE(told) << extension;
            EXPECT_NEAR(told->across, dpi, 0.02) << extension;
            EXPECT_NEAR(told->down, dpi, 0.02) << extension;
        }
    }
}

TEST(Density, PixelsStayAsTheyAre) {
    const TempFolder folder;
    for (const std::string extension : {".png", ".bmp", ".tif"}) {
        const Picture picture = ColourfulPicture(9, 6);
        Picture back;
        std::string error;
        const std::string path = folder.Put("p" + extension, EncodedWith(extension, picture, WithDpi(300)));
        ASSERT_TRUE(ReadPicture(path, &back, &error)) << error;
        EXPECT_EQ(back.pixels, picture.pixels) << extension;
    }
}

/// A JPEG stream that ends behind its head, which is all that is looked at.
std::string JpegHead(const std::string& unit, int across, int down) {
    return WithSegment("\xFF\xD8\xFF\xD9", 0xE0,
                       std::string("JFIF\0\1\1", 7) + unit + High16(static_cast<std::uint32_t>(across)) +
                           High16(static_cast<std::uint32_t>(down)) + std::string(2, '\0'));
}

TEST(Density, JpegFilesTellItInInchesOrCentimetres) {
    EXPECT_NEAR(DensityOf(JpegHead("\1", 300, 200))->down, 200, 1e-9);
    EXPECT_NEAR(DensityOf(JpegHead("\2", 100, 118))->across, 254, 1e-9);
    EXPECT_FALSE(DensityOf(JpegHead(std::string(1, '\0'), 1, 1))) << "the proportions of a pixel alone";
    EXPECT_FALSE(DensityOf(JpegHead("\1", 0, 300)));
}

/// A TIFF block with resolutions as fractions over 2.
std::string BlockWithDensity(bool highFirst, std::uint32_t twice, std::uint32_t unit, std::uint32_t below = 2) {
    const auto n16 = [&](std::uint32_t value) { return Number(value, 2, highFirst); };
    const auto n32 = [&](std::uint32_t value) { return Number(value, 4, highFirst); };
    const std::uint32_t behind = 8 + 2 + 3 * 12 + 4;
    return (highFirst ? "MM" : "II") + n16(42) + n32(8) + n16(3) + n16(282) + n16(5) + n32(1) + n32(behind) + n16(283) +
           n16(5) + n32(1) + n32(behind) + n16(296) + n16(3) + n32(1) + n16(unit) + n16(0) + n32(0) + n32(twice) +
           n32(below);
}

TEST(Density, TiffAndExifBlocksTellItAsFractions) {
    for (const bool highFirst : {false, true}) {
        EXPECT_NEAR(DensityOf(BlockWithDensity(highFirst, 601, 2))->across, 300.5, 1e-9);
        EXPECT_NEAR(DensityOf(BlockWithDensity(highFirst, 200, 3))->across, 254, 1e-9);
        EXPECT_FALSE(DensityOf(BlockWithDensity(highFirst, 600, 1))) << "no unit";
        EXPECT_FALSE(DensityOf(BlockWithDensity(highFirst, 600, 2, 0))) << "divided by zero";
        const std::string exif = std::string("Exif\0\0", 6) + BlockWithDensity(highFirst, 1200, 2);
        EXPECT_NEAR(DensityOf(WithSegment("\xFF\xD8\xFF\xD9", 0xE1, exif))->down, 600, 1e-9);
    }
}

TEST(Density, FilesThatBreakOffTellNothing) {
    for (const std::string& file :
         {EncodedWith(".jpg", ColourfulPicture(9, 9), WithDpi(300)),
          EncodedWith(".png", ColourfulPicture(9, 9), WithDpi(300)),
          EncodedWith(".bmp", ColourfulPicture(9, 9), WithDpi(300)), BlockWithDensity(false, 600, 2)}) {
        for (std::size_t size = 0; size < 20; ++size) EXPECT_FALSE(DensityOf(file.substr(0, size))) << size;
    }
}

} // namespace
} // namespace orvane::tools
