// Whether a JPEG stream is whole is read from its markers alone.
#include "tools/support/jpeg_end.h"

#include "tests/tools/picture_files.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

std::string Jpeg() { return Encoded(".jpg", ColourfulPicture(40, 30)); }

TEST(JpegEnd, AWholeStreamReachesItsEnd) { EXPECT_TRUE(JpegReachesItsEnd(Jpeg())); }

TEST(JpegEnd, WhatFollowsTheEndIsIgnored) { EXPECT_TRUE(JpegReachesItsEnd(Jpeg() + "a film, say")); }

TEST(JpegEnd, NoShorterStreamReachesIt) {
    const std::string whole = Jpeg();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        ASSERT_FALSE(JpegReachesItsEnd(whole.substr(0, length))) << length << " of " << whole.size() << " bytes";
    }
}

TEST(JpegEnd, TheEndOfAThumbnailInsideASegmentDoesNotCount) {
    const std::string whole = Jpeg();
    const std::string broken = WithSegment(whole.substr(0, whole.size() - 2), 0xE1, whole);
    EXPECT_FALSE(JpegReachesItsEnd(broken));
    EXPECT_TRUE(JpegReachesItsEnd(broken + "\xFF\xD9"));
}

TEST(JpegEnd, FillBytesStuffedZerosAndRestartsArePassed) {
    const std::string start = "\xFF\xD8\xFF\xDA" + High16(2);
    EXPECT_TRUE(JpegReachesItsEnd(start + "a\xFF\xD0z" + std::string("\xFF\x00", 2) + "\xFF\xFF\xFF\xD9"));
    EXPECT_FALSE(JpegReachesItsEnd(start + std::string("\xFF\x00\xD9", 3)));
}

TEST(JpegEnd, SegmentsThatLieAboutTheirLengthEndTheWalk) {
    for (const std::uint32_t length : {0U, 1U, 0xFFFFU}) {
        EXPECT_FALSE(JpegReachesItsEnd("\xFF\xD8\xFF\xE1" + High16(length) + "\xFF\xD9")) << length;
    }
}

TEST(JpegEnd, OtherFilesAreNoJpeg) {
    for (const std::string data : {"", "\xFF", "\xFF\xD8", "\x89PNG", "BM\xFF"}) {
        EXPECT_FALSE(IsJpeg(data));
        EXPECT_FALSE(JpegReachesItsEnd(data));
    }
}

} // namespace
} // namespace orvane::tools
