// Colours of a profile become those of sRGB, as the profiles' own numbers say; without one nothing changes.
#include "tools/support/colour_profile.h"

#include "tests/tool_files/icc_profile.h"
#include "tests/tools/picture_files.h"
#include "tests/tools/temp_folder.h"

namespace orvane::tools {
namespace {

/// From light back to a level of sRGB.
double SrgbLevel(double light) {
    const double clipped = std::clamp(light, 0.0, 1.0);
    return 255 * (clipped <= 0.0031308 ? 12.92 * clipped : 1.055 * std::pow(clipped, 1 / 2.4) - 0.055);
}

/// What Display P3 of the test's curve is in sRGB, by the numbers of both.
Colour FromP3(Colour colour) {
    double light[3];
    const int levels[3] = {colour.red, colour.green, colour.blue};
    for (int i = 0; i < 3; ++i) light[i] = std::pow(levels[i] / 255.0, 563.0 / 256);
    const double toSrgb[3][3] = {{1.2249, -0.2247, 0}, {-0.0420, 1.0419, 0}, {-0.0197, -0.0786, 1.0979}};
    int out[3];
    for (int i = 0; i < 3; ++i) {
        const double sum = toSrgb[i][0] * light[0] + toSrgb[i][1] * light[1] + toSrgb[i][2] * light[2];
        out[i] = static_cast<int>(std::lround(SrgbLevel(sum)));
    }
    return {out[0], out[1], out[2]};
}

Picture ReadNoted(const std::string& name, const std::string& content, std::string* warning) {
    const TempFolder folder;
    Picture picture;
    PictureNotes notes;
    std::string error;
    EXPECT_TRUE(ReadPicture(folder.Put(name, content), &picture, &notes, &error)) << error;
    *warning = notes.warning;
    return picture;
}

Picture FlatPicture(Colour colour) {
    Picture picture = BlackPicture(16, 16);
    for (int32 y = 0; y < 16; ++y) {
        for (int32 x = 0; x < 16; ++x) SetPixel(picture, x, y, colour);
    }
    return picture;
}

std::string PngWithProfile(const std::string& png, const std::string& profile) {
    std::string file = png;
    return file.insert(33, PngChunk("iCCP", std::string("test\0\0", 6) + Stored(profile)));
}

constexpr Colour kSkins[] = {{200, 150, 120}, {120, 80, 60}, {230, 190, 170}, {60, 90, 140}, {128, 128, 128}};

TEST(ColourProfile, ColoursOfAPhonesWideGamutBecomeThoseOfSrgb) {
    for (const Colour colour : kSkins) {
        const Colour wanted = FromP3(colour);
        std::string warning;
        const std::string jpeg = Encoded(".jpg", FlatPicture(colour));
        const Picture fromJpeg = ReadNoted("p.jpg", WithProfile(jpeg, ColourProfile(kDisplayP3)), &warning);
        EXPECT_TRUE(IsNear(PixelAt(fromJpeg, 8, 8), wanted, 3));
        EXPECT_EQ(warning, "");
        const std::string png = Encoded(".png", FlatPicture(colour));
        const Picture fromPng = ReadNoted("p.png", PngWithProfile(png, ColourProfile(kDisplayP3)), &warning);
        EXPECT_TRUE(IsNear(PixelAt(fromPng, 8, 8), wanted, 2));
        EXPECT_EQ(warning, "");
    }
}

TEST(ColourProfile, AProfileInSeveralSegmentsIsOne) {
    std::string warning;
    const std::string jpeg = Encoded(".jpg", FlatPicture(kSkins[0]));
    const Picture one = ReadNoted("p.jpg", WithProfile(jpeg, ColourProfile(kDisplayP3)), &warning);
    const Picture several = ReadNoted("p.jpg", WithProfile(jpeg, ColourProfile(kDisplayP3), 100), &warning);
    EXPECT_EQ(several.pixels, one.pixels);
    EXPECT_EQ(warning, "");
    EXPECT_EQ(JpegProfile(WithProfile(jpeg, ColourProfile(kDisplayP3), 100)), ColourProfile(kDisplayP3));
}

TEST(ColourProfile, AProfileThatSaysWhatSrgbSaysLeavesEveryPixel) {
    const std::string png = Encoded(".png", ColourfulPicture(64, 48));
    std::string warning;
    const Picture plain = ReadNoted("p.png", png, &warning);
    EXPECT_EQ(warning, "");
    // sRGB's own curve as 1024 numbers, a bit too dark, as some makers have it: some pixels would change by a level.
    std::string curve = "curv" + std::string(4, '\0') + High32(1024);
    for (int i = 0; i < 1024; ++i) {
        const double level = i / 1023.0;
        const double light = level <= 0.04045 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
        curve += High16(static_cast<std::uint32_t>(std::lround(std::pow(light, 1.01) * 65535)));
    }
    const auto& p = kSrgbPrimaries.xyz;
    const std::string profile = IccFile("RGB ", {{"desc", TextTags("desc", "test")},
                                                 {"cprt", TextTags("text", "none")},
                                                 {"wtpt", XyzTag(0.9642, 1, 0.8249)},
                                                 {"rXYZ", XyzTag(p[0][0], p[0][1], p[0][2])},
                                                 {"gXYZ", XyzTag(p[1][0], p[1][1], p[1][2])},
                                                 {"bXYZ", XyzTag(p[2][0], p[2][1], p[2][2])},
                                                 {"rTRC", curve},
                                                 {"gTRC", curve},
                                                 {"bTRC", curve}});
    EXPECT_EQ(ReadNoted("p.png", PngWithProfile(png, profile), &warning).pixels, plain.pixels);
    EXPECT_EQ(warning, "");
}

TEST(ColourProfile, TransparencyIsKeptAndLaidOverWhiteAfterwards) {
    const Colour colour = kSkins[0];
    std::string samples;
    for (const int alpha : {255, 128, 0, 255}) {
        samples += std::string{static_cast<char>(colour.red), static_cast<char>(colour.green),
                               static_cast<char>(colour.blue), static_cast<char>(alpha)};
    }
    std::string warning;
    const std::string png = PngFile({4, 1, 8, kPngColourAlpha}, samples);
    const Picture picture = ReadNoted("p.png", PngWithProfile(png, ColourProfile(kDisplayP3)), &warning);
    const Colour wanted = FromP3(colour);
    EXPECT_TRUE(IsNear(PixelAt(picture, 0, 0), wanted, 2));
    EXPECT_TRUE(
        IsNear(PixelAt(picture, 1, 0), {(wanted.red + 255) / 2, (wanted.green + 255) / 2, (wanted.blue + 255) / 2}, 3));
    EXPECT_TRUE(IsNear(PixelAt(picture, 2, 0), {255, 255, 255}, 0));
}

TEST(ColourProfile, GreyHasItsOwnProfiles) {
    const std::string samples("\0\x40\x80\xFF", 4);
    std::string warning;
    const std::string png = PngFile({4, 1, 8, kPngGrey}, samples);
    const Picture picture = ReadNoted("p.png", PngWithProfile(png, GreyProfile(1)), &warning);
#ifdef _WIN32
    EXPECT_EQ(warning, kUnusableProfile);
    EXPECT_TRUE(IsNear(PixelAt(picture, 1, 0), {0x40, 0x40, 0x40}, 0));
#else
    EXPECT_EQ(warning, "");
    for (int32 x = 0; x < 4; ++x) {
        const int level = static_cast<unsigned char>(samples[static_cast<std::size_t>(x)]);
        const int wanted = static_cast<int>(std::lround(SrgbLevel(level / 255.0)));
        EXPECT_TRUE(IsNear(PixelAt(picture, x, 0), {wanted, wanted, wanted}, 2)) << x;
    }
#endif
}

TEST(ColourProfile, WhatIsNoneOrAnotherPicturesIsToldAndTheColoursStay) {
    const std::string profile = ColourProfile(kDisplayP3);
    const std::string jpeg = Encoded(".jpg", FlatPicture(kSkins[0]));
    std::string missing = WithProfile(jpeg, profile, 100);
    missing.erase(2, 2 + 2 + 14 + 100); // its first part
    const std::string kinds[] = {WithProfile(jpeg, "no profile at all"), WithProfile(jpeg, profile.substr(0, 200)),
                                 WithProfile(jpeg, GreyProfile(1)),
                                 WithSegment(jpeg, 0xE2, std::string("ICC_PROFILE\0", 12)), missing};
    for (const std::string& file : kinds) {
        std::string warning;
        const Picture picture = ReadNoted("p.jpg", file, &warning);
        EXPECT_EQ(warning, "its colour profile cannot be used; its colours were taken as sRGB");
        EXPECT_TRUE(IsNear(PixelAt(picture, 8, 8), kSkins[0], 3));
    }
    std::string warning;
    const std::string png = Encoded(".png", FlatPicture(kSkins[0]));
    EXPECT_TRUE(IsNear(PixelAt(ReadNoted("p.png", PngWithProfile(png, "none"), &warning), 8, 8), kSkins[0], 0));
    EXPECT_EQ(warning, kUnusableProfile);
}

TEST(ColourProfile, PartsThatContradictEachOtherAreNone) {
    const std::string name("ICC_PROFILE\0", 12), bytes(168, '\0');
    // The second of two comes first, a segment without a name behind it, and one that tells of a gigabyte.
    std::string file = WithSegment(Encoded(".jpg", FlatPicture(kSkins[0])), 0xE2, name + "\1\x55VWXY" + bytes);
    file = WithSegment(file, 0xE2, std::string(186, 'x'));
    file = WithSegment(file, 0xE2, name + "\2\2" + High32(272) + bytes);
    std::string warning;
    const Picture picture = ReadNoted("p.jpg", file, &warning);
    EXPECT_EQ(warning, kUnusableProfile);
    EXPECT_TRUE(IsNear(PixelAt(picture, 8, 8), kSkins[0], 3));
}

} // namespace
} // namespace orvane::tools
