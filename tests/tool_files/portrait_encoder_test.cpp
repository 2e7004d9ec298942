// Files between a floor and a ceiling: the highest quality that fits, and padding that nobody sees.
#include "tools/support/portrait_encoder.h"

#include "tests/tool_files/file_settings.h"
#include "tests/tools/temp_folder.h"
#include "tools/support/jpeg_scans.h"
#include "tools/support/jpeg_segments.h"
#include "tools/support/quality_search.h"

#include <cmath>

namespace orvane::tools {
namespace {

FileSettings Within(std::uint64_t least, std::uint64_t most) {
    FileSettings settings;
    if (least > 0) settings.leastBytes = least;
    if (most > 0) settings.mostBytes = most;
    return settings;
}

std::string AtQuality(const Picture& picture, int32 quality) {
    FileSettings settings;
    settings.quality = quality;
    return EncodedWith(".jpg", picture, {settings, ""});
}

/// An encoder whose files have a size for each quality.
struct PlayedEncoder {
    std::vector<std::size_t> sizes; ///< From quality 1 on.
    int encodings = 0;
    int32 last = 0;

    bool Run(const SizeBounds& bounds, int32 wanted, std::string* encoded, std::string* error) {
        const auto encode = [&](int32 quality, std::string* bytes, std::string*) {
            EXPECT_TRUE(quality >= 1 && quality <= 100) << quality;
            ++encodings;
            *bytes = std::string(sizes[static_cast<std::size_t>(quality) - 1], static_cast<char>(quality));
            return true;
        };
        return EncodeWithin(bounds, wanted, encode, encoded, error);
    }
};

/// Sizes as JPEG files have them, more or less.
std::vector<std::size_t> PlayedSizes(double power) {
    std::vector<std::size_t> sizes;
    for (int q = 1; q <= 100; ++q) {
        const double coarse = q < 50 ? 5000.0 / q : std::max(200.0 - 2 * q, 1.0);
        sizes.push_back(static_cast<std::size_t>(300000 * std::pow(coarse, -power)) + static_cast<std::size_t>(q));
    }
    return sizes;
}

TEST(QualitySearch, FindsTheHighestQualityThatFitsUnderEveryCeiling) {
    for (const double power : {0.3, 0.6, 1.0}) {
        PlayedEncoder encoder{PlayedSizes(power)};
        for (std::size_t most = encoder.sizes[0]; most < encoder.sizes[96]; most += 97) {
            std::string encoded;
            std::string error;
            encoder.encodings = 0;
            ASSERT_TRUE(encoder.Run({0, most}, 95, &encoded, &error)) << error;
            const auto quality = static_cast<std::size_t>(encoded[0]);
            EXPECT_LE(encoded.size(), most);
            if (quality < 95) {
                EXPECT_GT(encoder.sizes[quality], most) << "quality " << quality + 1 << " fits too";
            }
            EXPECT_LE(encoder.encodings, 9) << "power " << power << ", ceiling " << most;
        }
    }
}

TEST(QualitySearch, MostCeilingsTakeFewEncodings) {
    PlayedEncoder encoder{PlayedSizes(0.55)};
    int files = 0;
    for (std::size_t most = encoder.sizes[20]; most < encoder.sizes[98]; most += 101, ++files) {
        std::string encoded;
        std::string error;
        ASSERT_TRUE(encoder.Run({0, most}, 95, &encoded, &error));
    }
    EXPECT_LT(encoder.encodings, files * 5);
}

TEST(QualitySearch, FindsTheLowestQualityAboveTheWishThatReachesAFloor) {
    PlayedEncoder encoder{PlayedSizes(0.6)};
    for (int32 quality = 81; quality <= 100; ++quality) {
        const std::size_t size = encoder.sizes[static_cast<std::size_t>(quality) - 1];
        std::string encoded;
        std::string error;
        ASSERT_TRUE(encoder.Run({size, UINT64_MAX}, 80, &encoded, &error));
        EXPECT_EQ(encoded[0], quality);
        ASSERT_TRUE(encoder.Run({size - 1, size - 1}, 80, &encoded, &error));
        EXPECT_EQ(encoded[0], quality - 1) << "the next quality is above the ceiling";
    }
}

TEST(QualitySearch, TellsWhatNoQualityMeets) {
    PlayedEncoder encoder{PlayedSizes(0.6)};
    std::string encoded;
    std::string error;
    EXPECT_FALSE(encoder.Run({0, encoder.sizes[0] - 1}, 95, &encoded, &error));
    EXPECT_EQ(error, "would have " + std::to_string(encoder.sizes[0]) + " bytes, more than " +
                         std::to_string(encoder.sizes[0] - 1) + ", even at quality 1");
}

TEST(PortraitEncoder, AJpegFileHasTheHighestQualityThatFits) {
    const Picture picture = GrainyPicture(200, 260);
    for (const int32 fitting : {20, 51, 88}) {
        const std::uint64_t most = AtQuality(picture, fitting).size() + 7;
        const std::string file = EncodedWith(".jpg", picture, {Within(0, most), ""});
        EXPECT_LE(file.size(), most);
        int32 best = 0;
        for (int32 quality = 1; quality <= 95; ++quality) {
            if (AtQuality(picture, quality).size() <= most) best = quality;
        }
        EXPECT_EQ(file, AtQuality(picture, best));
    }
    EXPECT_EQ(EncodedWith(".jpg", picture, {Within(0, 10000000), ""}), AtQuality(picture, 95));
}

TEST(PortraitEncoder, AFloorIsReachedByQualityAndThenToTheByteByComments) {
    const Picture picture = GrainyPicture(200, 260);
    const std::size_t best = AtQuality(picture, 100).size();
    const std::string higher = EncodedWith(".jpg", picture, {Within(AtQuality(picture, 97).size(), 0), ""});
    EXPECT_EQ(higher, AtQuality(picture, 97));
    for (const std::size_t more : {4U, 5U, 100U, 65537U, 65538U, 65540U, 200000U}) {
        const std::string file = EncodedWith(".jpg", picture, {Within(best + more, best + more), ""});
        EXPECT_EQ(file.size(), best + more);
        EXPECT_TRUE(JpegScansAreWhole(file));
    }
    EXPECT_EQ(EncodedWith(".jpg", picture, {Within(best + 1, 0), ""}).size(), best + 4) << "a comment's own frame";
}

TEST(PortraitEncoder, PaddingLeavesEveryPixel) {
    const TempFolder folder;
    const Picture picture = GrainyPicture(60, 80);
    for (const std::string extension : {".jpg", ".png"}) {
        FileSettings settings;
        if (extension == ".jpg") settings.quality = 100;
        Picture plain;
        Picture padded;
        std::string error;
        const std::string plainFile = EncodedWith(extension, picture, {settings, ""});
        settings.leastBytes = 150000;
        const std::string paddedFile = EncodedWith(extension, picture, {settings, ""});
        EXPECT_LT(plainFile.size(), 150000U);
        EXPECT_EQ(paddedFile.size(), 150000U) << extension;
        ASSERT_TRUE(ReadPicture(folder.Put("a" + extension, plainFile), &plain, &error)) << error;
        ASSERT_TRUE(ReadPicture(folder.Put("b" + extension, paddedFile), &padded, &error)) << error;
        EXPECT_EQ(plain.pixels, padded.pixels) << extension;
    }
}

TEST(PortraitEncoder, WhatCannotBeMetIsToldInOneLine) {
    const Picture picture = GrainyPicture(200, 260);
    EXPECT_NE(Unencodable(".jpg", picture, Within(0, 1000)).find("bytes, more than 1000, even at quality 1"),
              std::string::npos);
    EXPECT_NE(Unencodable(".png", picture, Within(0, 1000)).find("more than 1000, and can be made no smaller"),
              std::string::npos);
    EXPECT_EQ(Unencodable(".bmp", picture, Within(1000, 0)), "--min-kb is for .jpg and .png");
    FileSettings settings;
    settings.quality = 50;
    EXPECT_EQ(Unencodable(".png", picture, settings), "--quality is for .jpg");
    settings = FileSettings();
    settings.chroma = Chroma::full;
    EXPECT_EQ(Unencodable(".tif", picture, settings), "--chroma is for .jpg");
    settings = FileSettings();
    settings.keepMetadata = true;
    EXPECT_EQ(Unencodable(".bmp", picture, settings), "--keep-metadata is for .jpg and .png");
}

TEST(PortraitEncoder, ChromaIsThatOfTheFrameOrRefused) {
    const std::pair<Chroma, unsigned> kinds[] = {{Chroma::full, 0x11}, {Chroma::half, 0x21}, {Chroma::quarter, 0x22}};
    for (const auto& [chroma, sampling] : kinds) {
        FileSettings settings;
        settings.chroma = chroma;
        std::string file;
        std::string error;
        if (EncodePicture("x.jpg", GrainyPicture(33, 20), {settings, ""}, &file, &error)) {
            EXPECT_EQ(FrameOf(file)->sampling, sampling);
        } else { // some systems' encoders make one kind alone
            EXPECT_EQ(error, "cannot be encoded: the JPEG encoder of this Windows knows only --chroma 420");
            EXPECT_NE(chroma, Chroma::quarter);
        }
    }
}

} // namespace
} // namespace orvane::tools
