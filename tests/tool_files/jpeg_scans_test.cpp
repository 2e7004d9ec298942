// Damage in the coded data of JPEG files, which decoders pass over without a word.
#include "tools/support/jpeg_scans.h"

#include "tests/tools/picture_files.h"
#include "tests/tools/temp_folder.h"
#include "tools/support/jpeg_end.h"
#include "tools/support/picture_remarks.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

/// A picture whose every block has something to say.
std::string Photo() {
    Picture picture = BlackPicture(160, 120);
    unsigned chance = 1;
    for (int32 y = 0; y < 120; ++y) {
        for (int32 x = 0; x < 160; ++x) {
            chance = chance * 1664525 + 1013904223;
            const int noise = static_cast<int>(chance >> 29);
            SetPixel(picture, x, y,
                     {static_cast<uint8>(60 + x / 2 + noise), static_cast<uint8>(200 - y + noise),
                      static_cast<uint8>(100 + noise)});
        }
    }
    return Encoded(".jpg", picture);
}

/// Where the coded data of the only scan begin.
std::size_t CodedData(const std::string& jpeg) {
    const std::size_t header = jpeg.find("\xFF\xDA");
    return header + 2 + static_cast<unsigned char>(jpeg[header + 3]);
}

std::string FromHex(const std::string& digits) {
    std::string bytes;
    for (std::size_t at = 0; at < digits.size(); at += 2) {
        bytes += static_cast<char>(std::stoi(digits.substr(at, 2), nullptr, 16));
    }
    return bytes;
}

/// 40x32 pixels in ten scans, with half the colour.
const std::string& Progressive() {
    static const std::string bytes =
        FromHex("ffd8ffe000104a46494600010100000100010000ffdb0043000d090a0b0a080d0b0a0b0e0e0d0f13201513121213271c1e17"
                "202e2931302e292d2c333a4a3e333646372c2d405741464c4e525352323e5a615a50604a51524fffdb0043010e0e0e131113"
                "261515264f352d354f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f4f"
                "4f4f4f4f4f4f4f4fffc20011080020002803012200021101031101ffc4001800010101010100000000000000000000000300"
                "020401ffc40017010101010100000000000000000000000002050001ffda000c03010002100310000001e22b4a9e14341b47"
                "365ef3eab4946e542d22bbbfffc4001a100003000301000000000000000000000000011102102120ffda0008010100010502"
                "94ea289ea978d6a8bba5e28994791fffc400191100020301000000000000000000000000000103132112ffda000801030101"
                "3f01ef45232e45c2970b8fffc4001c1100020202030000000000000000000000000103110213213141ffda0008010201013f"
                "01d2e8c627e9a451f14286bb1407ffc400161000030000000000000000000000000000202130ffda0008010100063f02355f"
                "ffc4001c1000020300030100000000000000000000000111213110416191ffda0008010100013f2169ad434c92ef4e9ecad2"
                "7078701568eb83406e0615e8d7c26198e099223fffda000c0301000200030000001004204a2fcfffc4001911000301010100"
                "00000000000000000000000111213141ffda0008010301013f107548b344a5a27f4be192ba7fffc400171101010101000000"
                "00000000000000000001001121ffda0008010201013f104a81d12587a120710a6dffc4001e10010003000203010100000000"
                "0000000001001121314151617181a1ffda0008010100013f10b331d92bfe0ec601e91f7226629c457aaf17700378c0bbe46c"
                "0e5d57885378acfb0047e21da35e2380be0ea3db47f65f06bdc7335ebb06d4e3b2bc86dee2db4d0c2eb5c2006b7ea7ffd9");
    return bytes;
}

/// A grey picture of 24x8 pixels with a restart marker behind every block. Each code has one bit, a zero: no difference
/// to the block before, and nothing else in it.
std::string WithRestarts() {
    return FromHex("ffd8ffdb004300" + std::string(128, '1') +
                   "ffc0000b0800080018010111"
                   "00"                                           // table, frame
                   "ffc40014000100000000000000000000000000000000" // codes
                   "ffc40014100100000000000000000000000000000000"
                   "ffdd00040001ffda0008010100003f00" // interval, scan
                   "3fffd03fffd13fffd9");
}

TEST(JpegScans, WhatAnEncoderWroteIsWhole) {
    EXPECT_TRUE(JpegScansAreWhole(Photo()));
    for (int32 side = 1; side <= 40; side += 3) {
        EXPECT_TRUE(JpegScansAreWhole(Encoded(".jpg", ColourfulPicture(side, 41 - side)))) << side;
    }
}

TEST(JpegScans, SeveralScansOfAProgressiveStreamAreRead) {
    ASSERT_TRUE(JpegReachesItsEnd(Progressive()));
    EXPECT_TRUE(JpegScansAreWhole(Progressive()));
}

TEST(JpegScans, RestartMarkersAreFollowed) {
    const std::string jpeg = WithRestarts();
    const TempFolder folder;
    Picture picture;
    std::string error;
    ASSERT_TRUE(ReadPicture(folder.Put("p.jpg", jpeg), &picture, &error)) << error;
    ASSERT_EQ(picture.width, 24);
    EXPECT_TRUE(JpegScansAreWhole(jpeg));
    std::string swapped = jpeg;
    swapped[swapped.find("\xFF\xD1") + 1] = '\xD3';
    EXPECT_FALSE(JpegScansAreWhole(swapped)) << "a piece is missing";
}

TEST(JpegScans, DataThatAreTooFewOrTooManyAreDamage) {
    const std::string jpeg = Photo();
    const std::size_t start = CodedData(jpeg);
    const std::size_t middle = (start + jpeg.size()) / 2;
    std::string shorter = jpeg;
    shorter.erase(middle, 200);
    EXPECT_TRUE(JpegReachesItsEnd(shorter));
    EXPECT_FALSE(JpegScansAreWhole(shorter));
    std::string longer = jpeg;
    longer.insert(middle, jpeg.substr(start, 300));
    EXPECT_FALSE(JpegScansAreWhole(longer));
    std::string ended = jpeg;
    ended.replace(middle, 2, "\xFF\xD9");
    EXPECT_FALSE(JpegScansAreWhole(ended)) << "the end comes in the middle";
}

TEST(JpegScans, MostOverwrittenPiecesAreNoticed) {
    const std::string jpeg = Photo();
    const std::size_t start = CodedData(jpeg);
    int noticed = 0;
    int tried = 0;
    unsigned chance = 7;
    for (std::size_t at = start; at + 40 < jpeg.size(); at += (jpeg.size() - start) / 40 + 1) {
        std::string damaged = jpeg;
        for (std::size_t i = 0; i < 16; ++i) {
            chance = chance * 1664525 + 1013904223;
            damaged[at + i] = static_cast<char>((chance >> 24) % 255); // no marker
        }
        ++tried;
        noticed += JpegScansAreWhole(damaged) ? 0 : 1;
    }
    EXPECT_GE(noticed * 2, tried) << noticed << " of " << tried;
}

TEST(JpegScans, AnyBytesAreReadWithoutHarm) {
    unsigned chance = 3;
    for (const std::string& jpeg : {Photo(), Progressive(), WithRestarts()}) {
        for (int round = 0; round < 400; ++round) {
            std::string bytes = jpeg;
            for (int i = 0; i < 6; ++i) {
                chance = chance * 1664525 + 1013904223;
                const std::size_t at = 2 + (chance >> 8) % (bytes.size() - 2);
                bytes[at] = static_cast<char>(chance);
            }
            JpegScansAreWhole(bytes); // the sanitizers judge
            JpegScansAreWhole(bytes.substr(0, (chance >> 4) % bytes.size()));
        }
    }
    EXPECT_TRUE(JpegScansAreWhole("")) << "what is no JPEG is another's affair";
    EXPECT_TRUE(JpegScansAreWhole("\xFF\xD8\xFF"));
}

TEST(PictureRemarks, AreMadeOfWhatADecoderDoesNotTell) {
    std::string jpeg = Photo();
    EXPECT_EQ(PictureRemark(jpeg), "");
    jpeg.erase((CodedData(jpeg) + jpeg.size()) / 2, 200);
    EXPECT_EQ(PictureRemark(jpeg), "damaged in the middle; what is missing was filled in");

    std::string png = Encoded(".png", ColourfulPicture(8, 8));
    EXPECT_EQ(PictureRemark(png), "");
    png.insert(33, std::string("\0\0\0\x08"
                               "acTL"
                               "\0\0\0\x02\0\0\0\0"
                               "0000",
                               20));
    EXPECT_EQ(PictureRemark(png), "the picture moves; its first frame is taken");

    std::string webp = std::string("RIFF\x20\0\0\0WEBPVP8X\x0A\0\0\0\x02\0\0\0\0\0\0\0\0\0", 30);
    EXPECT_EQ(PictureRemark(webp), "the picture moves; its first frame is taken");
    webp[20] = 0;
    EXPECT_EQ(PictureRemark(webp), "");
}

#ifndef _WIN32
// Windows decodes by a library of its own.

TEST(JpegScans, MoreThanAnyEncoderWritesAreRefused) {
    const TempFolder folder;
    Picture picture;
    std::string error;
    const std::string& jpeg = Progressive();
    const std::size_t last = jpeg.rfind("\xFF\xDA"), end = jpeg.size() - 2;
    std::string many = jpeg.substr(0, end);
    for (int i = 0; i < 100; ++i) many += jpeg.substr(last, end - last);
    EXPECT_TRUE(ReadPicture(folder.Put("p.jpg", many + jpeg.substr(end)), &picture, &error)) << error;
    for (int i = 0; i < 500; ++i) many += jpeg.substr(last, end - last);
    EXPECT_FALSE(ReadPicture(folder.Put("p.jpg", many + jpeg.substr(end)), &picture, &error));
    EXPECT_EQ(error.find("cannot be decoded: "), 0U) << error;
}

TEST(JpegScans, AStreamThatTheDecoderGivesUpBehindAWarningIsRefused) {
    const TempFolder folder;
    Picture picture;
    std::string error;
    const std::string photo = Photo();
    const std::string half = photo.substr(0, (CodedData(photo) + photo.size()) / 2);
    EXPECT_TRUE(ReadPicture(folder.Put("p.jpg", half + "\xFF\xD9"), &picture, &error)) << "no more than warned of";
    const std::string unknown = std::string("\xFF\x35\0\2", 4);
    EXPECT_FALSE(ReadPicture(folder.Put("p.jpg", half + unknown + "\xFF\xD9"), &picture, &error));
    EXPECT_EQ(error.find("cannot be decoded: "), 0U) << error;
}

#endif

} // namespace
} // namespace orvane::tools
