// Picture files where names are bytes and the system has more loaders.
#include "tools/support/picture_io.h"

#include "tests/tools/picture_files.h"
#include "tests/tools/temp_folder.h"

#include <gtest/gtest.h>

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
