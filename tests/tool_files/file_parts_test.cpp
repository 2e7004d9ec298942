// Segments of JPEG streams and chunks of PNG files, whole and cut off.
#include "tools/support/jpeg_segments.h"
#include "tools/support/png_chunks.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvane::tools {
namespace {

std::vector<std::string> ContentsOf(const std::string& file, const auto& parts) {
    std::vector<std::string> contents;
    for (const auto& part : parts) contents.push_back(file.substr(part.content, part.size));
    return contents;
}

using Contents = std::vector<std::string>;

TEST(JpegSegments, ComeInTheirOrderUpToTheFirstScan) {
    const std::string fill("\xFF\xFF", 2);
    const std::string jpeg = "\xFF\xD8" + JpegSegmentBytes(kExifSegment, "one") + fill +
                             JpegSegmentBytes(kCommentSegment, "") + JpegSegmentBytes(kCommentSegment, "three") +
                             JpegSegmentBytes(0xDA, "scan") + JpegSegmentBytes(kCommentSegment, "behind");
    EXPECT_EQ(ContentsOf(jpeg, JpegSegments(jpeg)), (Contents{"one", "", "three"}));
    auto second = JpegSegments(jpeg).begin();
    ++second;
    EXPECT_EQ(second->marker, kCommentSegment);
    EXPECT_EQ(second->at, 2U + 7U + fill.size()) << "fill bytes belong to none";
}

TEST(JpegSegments, AreFoundBehindBytesThatBelongToNone) {
    const std::string one = JpegSegmentBytes(kExifSegment, "one"), two = JpegSegmentBytes(kCommentSegment, "two");
    for (const std::string& between : {std::string("junk"), std::string("\xFF\0", 2), std::string("\xFF\xD3"),
                                       std::string("\xFF\x01"), std::string("\0\xFF\xFF\0\xFF", 5)}) {
        const std::string jpeg = "\xFF\xD8" + one + between + two;
        EXPECT_EQ(ContentsOf(jpeg, JpegSegments(jpeg)), (Contents{"one", "two"})) << testing::PrintToString(between);
    }
    for (const char* end : {"\xFF\xD8", "\xFF\xD9"}) {
        const std::string jpeg = "\xFF\xD8" + one + end + two;
        EXPECT_EQ(ContentsOf(jpeg, JpegSegments(jpeg)), (Contents{"one"})) << "another start, or the end";
    }
}

TEST(JpegSegments, EndWhereOneIsNotThereWholly) {
    const std::string jpeg =
        "\xFF\xD8" + JpegSegmentBytes(kExifSegment, "one") + JpegSegmentBytes(kCommentSegment, "two");
    for (std::size_t size = 0; size <= jpeg.size(); ++size) {
        const std::string cut = jpeg.substr(0, size);
        const Contents contents = ContentsOf(cut, JpegSegments(cut));
        EXPECT_EQ(contents.size(), size >= jpeg.size() ? 2U : size >= 9 ? 1U : 0U) << size << " bytes";
    }
    const std::string other = "no" + jpeg;
    EXPECT_TRUE(ContentsOf(other, JpegSegments(other)).empty());
    const std::string endless = "\xFF\xD8" + std::string(1000, '\xFF');
    EXPECT_TRUE(ContentsOf(endless, JpegSegments(endless)).empty());
}

TEST(PngChunks, ComeInTheirOrderUpToTheOneThatIsNotThereWholly) {
    const auto chunk = [](const std::string& type, const std::string& content) {
        return std::string(3, '\0') + static_cast<char>(content.size()) + type + content + "sum!";
    };
    const std::string png = "\x89PNG\r\n\x1A\n" + chunk("IHDR", "head") + chunk("tEXt", "") + chunk("IDAT", "pixels");
    EXPECT_EQ(ContentsOf(png, PngChunks(png)), (Contents{"head", "", "pixels"}));
    for (std::size_t size = 0; size < png.size(); ++size) {
        const std::string cut = png.substr(0, size);
        const Contents contents = ContentsOf(cut, PngChunks(cut));
        EXPECT_EQ(contents.size(), size >= 36 ? 2U : size >= 24 ? 1U : 0U) << size << " bytes";
    }
}

} // namespace
} // namespace orvane::tools
