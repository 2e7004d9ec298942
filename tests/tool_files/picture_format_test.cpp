// What is told of a picture file without decoding it: format, end, orientation.
#include "tools/support/picture_format.h"

#include "tests/tools/picture_files.h"
#include "tools/support/orientation.h"
#include "tools/support/png_end.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

TEST(PictureFormat, ContentTellsItsFormat) {
    for (const std::string extension : {".jpg", ".png", ".bmp", ".tif"}) {
        EXPECT_EQ(FormatOfContent(Encoded(extension, ColourfulPicture(5, 4))), FormatOfName("x" + extension));
    }
    EXPECT_EQ(FormatOfContent(std::string("MM\0*", 4)), PictureFormat::tiff);
    for (const std::string content : {"", "B", "II", "II+", "\xFF\xD8", "\x89PN", "GIF89a", "P6 1 1"}) {
        EXPECT_EQ(FormatOfContent(content), std::nullopt) << content;
    }
}

TEST(PictureFormat, APngEndsWithItsEndChunkWhateverFollows) {
    const std::string whole = Encoded(".png", ColourfulPicture(20, 20));
    EXPECT_TRUE(PngReachesItsEnd(whole));
    EXPECT_TRUE(PngReachesItsEnd(whole + "more"));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(PngReachesItsEnd(whole.substr(0, length))) << length;
    }
    // A length that reaches far beyond the file.
    EXPECT_FALSE(PngReachesItsEnd(whole.substr(0, 8) + "\xFF\xFF\xFF\xFFIDAT" + whole.substr(8)));
    EXPECT_FALSE(PngReachesItsEnd(Encoded(".bmp", ColourfulPicture(20, 20))));
}

TEST(HeaderSize, IsToldOfEveryFormat) {
    for (const std::string extension : {".jpg", ".png", ".bmp", ".tif"}) {
        const auto size = SizeInHeader(Encoded(extension, ColourfulPicture(301, 77)));
        ASSERT_TRUE(size.has_value()) << extension;
        EXPECT_EQ(size->width, 301) << extension;
        EXPECT_EQ(size->height, 77) << extension;
    }
    // An EXIF segment with a small picture of its own stands before the size of a JPEG.
    const std::string jpeg = Encoded(".jpg", ColourfulPicture(301, 77));
    const auto size = SizeInHeader(WithSegment(jpeg, 0xE1, Encoded(".jpg", ColourfulPicture(16, 8))));
    ASSERT_TRUE(size.has_value());
    EXPECT_EQ(size->width, 301);
}

TEST(HeaderSize, IsNoneWhereTheHeaderBreaksOff) {
    for (const std::string extension : {".jpg", ".png", ".bmp", ".tif"}) {
        const std::string whole = Encoded(extension, ColourfulPicture(301, 77));
        EXPECT_FALSE(SizeInHeader(whole.substr(0, 17)).has_value()) << extension;
        for (std::size_t length = 0; length < whole.size(); length += length < 2000 ? 1 : 997) {
            const auto size = SizeInHeader(whole.substr(0, length));
            EXPECT_TRUE(!size || (size->width == 301 && size->height == 77)) << extension << " " << length;
        }
    }
    EXPECT_FALSE(SizeInHeader("").has_value());
    EXPECT_FALSE(SizeInHeader("GIF89a and more, much more").has_value());
}

TEST(Orientation, IsReadFromEveryKindOfBlock) {
    const std::string jpeg = Encoded(".jpg", ColourfulPicture(16, 8));
    EXPECT_EQ(NotedOrientation(jpeg), 1);
    for (int orientation = 1; orientation <= 8; ++orientation) {
        for (const bool highFirst : {false, true}) {
            EXPECT_EQ(NotedOrientation(WithExif(jpeg, orientation, highFirst)), orientation);
            EXPECT_EQ(NotedOrientation(OrientationBlock(orientation, highFirst)), orientation) << "as of a TIFF";
        }
    }
    EXPECT_EQ(NotedOrientation(Encoded(".png", ColourfulPicture(16, 8))), 1);
}

TEST(Orientation, ANonsenseValueAndAForeignSegmentAreUpright) {
    const std::string jpeg = Encoded(".jpg", ColourfulPicture(16, 8));
    for (const int orientation : {0, 9, 255, 65535}) EXPECT_EQ(NotedOrientation(WithExif(jpeg, orientation, true)), 1);
    EXPECT_EQ(NotedOrientation(WithSegment(jpeg, 0xE1, "http://ns.adobe.com/xap/1.0/")), 1);
    EXPECT_EQ(NotedOrientation(WithSegment(jpeg, 0xE1, std::string("Exif\0\0", 6))), 1);
    EXPECT_EQ(NotedOrientation(WithSegment(WithExif(jpeg, 6, false), 0xE1, "another one before it")), 6);
    // Of another type than a number.
    std::string block = OrientationBlock(6, false);
    block[12] = 2;
    EXPECT_EQ(NotedOrientation(block), 1);
}

TEST(Orientation, BlocksThatBreakOffOrLieReadNothingOutside) {
    const std::string file = WithExif(Encoded(".jpg", ColourfulPicture(16, 8)), 6, false);
    for (std::size_t length = 0; length <= file.size(); ++length) {
        const int orientation = NotedOrientation(file.substr(0, length));
        EXPECT_TRUE(orientation == 1 || orientation == 6) << length;
    }
    const std::string block = OrientationBlock(6, false);
    EXPECT_EQ(NotedOrientation(block.substr(0, 4) + Low32(0xFFFFFFF0U) + block.substr(8)), 1) << "a list far away";
    EXPECT_EQ(NotedOrientation(block.substr(0, 4) + Low32(0) + block.substr(8)), 1) << "a list over the head";
    EXPECT_EQ(NotedOrientation(block.substr(0, 8) + Low16(65535) + Low16(0x0113) + block.substr(12)), 1);
}

} // namespace
} // namespace orvane::tools
