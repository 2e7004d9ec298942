// Picture files where names are bytes and the system has more loaders.
#include "tools/support/picture_io.h"

#include "tests/support/heap_limit.h"
#include "tests/tools/picture_files.h"
#include "tests/tools/temp_folder.h"

#include <gtest/gtest.h>
#include <utility>

namespace orvane::tools {
namespace {

Picture Read(const std::string& path) {
    Picture picture;
    std::string error;
    EXPECT_TRUE(ReadPicture(path, &picture, &error)) << path << ": " << error;
    return picture;
}

TEST(LinuxPictureIo, NamesMayHoldAnyBytes) {
    const TempFolder folder;
    const Picture picture = ColourfulPicture(6, 4);
    const std::string path = folder / "\xFF\xC3 a\n\"b.png";
    std::string error;
    ASSERT_TRUE(WritePicture(path, picture, false, &error)) << error;
    EXPECT_EQ(Read(path).pixels, picture.pixels);
}

// A picture has memory of its own only where the decoder's can't be handed over, or is given by its reader; and more
// only to be turned.
TEST(LinuxPictureIo, RowsAreCopiedNowhereButWhereTheyMustBe) {
    struct Case {
        const char* what;
        std::string content;
        int blocks; // of a picture's memory
    };
    const std::string jpeg = Encoded(".jpg", ColourfulPicture(8, 5));
    const Case kCases[] = {
        {"rows without padding", Encoded(".png", ColourfulPicture(8, 5)), 0},
        {"rows with padding", Encoded(".png", ColourfulPicture(7, 5)), 1},
        {"an upright photograph", WithExif(jpeg, 1, true), 1},
        {"a turned photograph", WithExif(jpeg, 6, true), 2},
        {"a mirrored photograph", WithExif(jpeg, 2, true), 2},
        {"transparency", PngFile({4, 1, 8, kPngColourAlpha}, std::string(16, '\x80')), 1},
    };
    const TempFolder folder;
    for (const Case& c : kCases) {
        const std::string path = folder.Put("p.any", c.content);
        const Picture wanted = Read(path);
        for (int blocks = 0; blocks <= c.blocks; ++blocks) {
            const test::HeapLimit limit(blocks);
            Picture picture;
            std::string error;
            const bool isEnough = blocks == c.blocks;
            EXPECT_EQ(ReadPicture(path, &picture, &error), isEnough) << c.what << ", " << blocks << " blocks";
            EXPECT_EQ(error, isEnough ? "" : "not enough memory") << c.what;
            EXPECT_TRUE(isEnough ? picture.pixels == wanted.pixels : picture.pixels.empty()) << c.what;
        }
    }
}

TEST(LinuxPictureIo, APictureThatIsGivenAwayIsEncodedWhereItLies) {
    for (const std::string name : {"x.jpg", "x.png", "x.bmp", "x.tif"}) {
        const Picture kept = ColourfulPicture(7, 5);
        Picture givenAway = kept;
        std::string wanted, encoded, error;
        ASSERT_TRUE(EncodePicture(name, kept, &wanted, &error)) << error;
        EXPECT_EQ(kept.pixels, givenAway.pixels) << "a picture that is kept stays as it is";
        const test::HeapLimit none(0);
        EXPECT_TRUE(EncodePicture(name, std::move(givenAway), &encoded, &error)) << error;
        EXPECT_EQ(encoded, wanted) << name;
        EXPECT_FALSE(EncodePicture(name, kept, &encoded, &error)) << "without memory for a copy";
        EXPECT_EQ(error, "not enough memory");
    }
}

TEST(LinuxPictureIo, WhatBeginsLikeAJpegAndIsNoneIsDamaged) {
    const TempFolder folder;
    for (const std::string& content : {std::string("\xFF\xD8"), std::string("\xFF\xD8 and no marker"),
                                       std::string("\xFF\xD8\xFF\xFE\0\2\xFF\xD9", 8)}) {
        Picture picture;
        std::string error;
        EXPECT_FALSE(ReadPicture(folder.Put("p.jpg", content), &picture, &error));
        EXPECT_EQ(error, "damaged picture") << testing::PrintToString(content);
    }
}

TEST(LinuxPictureIo, APnmIsRead) {
    const TempFolder folder;
    const Picture picture = Read(folder.Put("p.any", std::string("P5 2 1 255\n\x40\xC0", 13)));
    ASSERT_EQ(picture.width, 2);
    ASSERT_EQ(picture.height, 1);
    EXPECT_TRUE(IsNear(PixelAt(picture, 0, 0), {64, 64, 64}, 0));
    EXPECT_TRUE(IsNear(PixelAt(picture, 1, 0), {192, 192, 192}, 0));
}

TEST(LinuxPictureIo, ATruncatedPnmIsRefused) {
    const std::string whole = "P6 4 4 255\n" + std::string(48, 'x');
    const TempFolder folder;
    EXPECT_EQ(Read(folder.Put("p.ppm", whole)).width, 4);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        Picture picture;
        std::string error;
        EXPECT_FALSE(ReadPicture(folder.Put("p.ppm", whole.substr(0, length)), &picture, &error)) << length;
        EXPECT_NE(error, "");
        EXPECT_TRUE(picture.pixels.empty());
    }
}

} // namespace
} // namespace orvane::tools
