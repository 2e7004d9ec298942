// What of a photograph's metadata goes along, and what never does.
#include "tools/support/kept_metadata.h"

#include "tests/tool_files/file_settings.h"
#include "tools/support/exif_block.h"
#include "tools/support/orientation.h"
#include "tools/support/tiff_block.h"

namespace orvane::tools {
namespace {

struct Tag {
    std::uint32_t tag;
    std::uint32_t type; ///< 2 a text, 3 and 4 a number, 5 a fraction.
    std::string text;
    std::uint32_t number = 0;
};

/// A list of tags at a place of its block, with what does not fit into them behind it.
std::string List(const std::vector<Tag>& tags, std::size_t at, bool highFirst) {
    const auto n = [&](std::uint64_t value, int count) {
        return Number(static_cast<std::uint32_t>(value), count, highFirst);
    };
    std::string list = n(tags.size(), 2);
    std::string behind;
    const std::size_t end = at + 2 + 12 * tags.size() + 4;
    for (const Tag& tag : tags) {
        std::string value = tag.type == 2   ? tag.text + '\0'
                            : tag.type == 3 ? n(tag.number, 2)
                            : tag.type == 4 ? n(tag.number, 4)
                                            : n(tag.number, 4) + n(10, 4);
        list += n(tag.tag, 2) + n(tag.type, 2) + n(tag.type == 2 ? value.size() : 1, 4);
        if (value.size() > 4) {
            behind += value;
            value = n(end + behind.size() - value.size(), 4);
        }
        list += value + std::string(4 - value.size(), '\0');
    }
    return list + n(0, 4) + behind;
}

/// A photograph's block: camera, turned, a serial number, a place, a maker's note.
std::string CameraBlock(bool highFirst) {
    std::vector<Tag> picture = {
        {0x010E, 2, "a secret description"}, {0x010F, 2, "Maker"},   {0x0110, 2, "Model 7"}, {0x0112, 3, "", 6},
        {0x0132, 2, "2026:11:22 10:11:12"},  {0x8298, 2, "(c) Ann"}, {0x8769, 4, "", 0},     {0x8825, 4, "", 0}};
    const std::vector<Tag> exif = {
        {0x829A, 5, "", 1},     {0x9003, 2, "2026:11:22 10:11:13"}, {0x927C, 2, "a maker's note"},
        {0xA001, 3, "", 65535}, {0xA431, 2, "serial 4711"},         {0xA434, 2, "35mm f/2"}};
    const std::vector<Tag> place = {{0x0001, 2, "N"}, {0x0012, 2, "WGS-84 somewhere"}};
    const std::size_t second = 8 + List(picture, 8, highFirst).size();
    const std::size_t third = second + List(exif, second, highFirst).size();
    picture[6].number = static_cast<std::uint32_t>(second);
    picture[7].number = static_cast<std::uint32_t>(third);
    return (highFirst ? "MM" : "II") + Number(42, 2, highFirst) + Number(8, 4, highFirst) +
           List(picture, 8, highFirst) + List(exif, second, highFirst) + List(place, third, highFirst);
}

std::string JpegWith(const std::string& block) {
    return WithSegment(Encoded(".jpg", ColourfulPicture(8, 8)), 0xE1, std::string("Exif\0\0", 6) + block);
}

TEST(KeptMetadata, CameraDatesAndRightsGoAlongInEveryByteOrder) {
    for (const bool highFirst : {false, true}) {
        const std::string block = KeptMetadata(JpegWith(CameraBlock(highFirst)));
        for (const char* kept :
             {"Maker", "Model 7", "2026:11:22 10:11:12", "2026:11:22 10:11:13", "(c) Ann", "35mm f/2"}) {
            EXPECT_NE(block.find(kept), std::string::npos) << kept;
        }
        for (const char* dropped : {"secret", "note", "serial", "WGS-84"}) {
            EXPECT_EQ(block.find(dropped), std::string::npos) << dropped;
        }
        const TiffBlock tiff(block);
        EXPECT_EQ(tiff.IsHighFirst(), highFirst);
        EXPECT_EQ(tiff.Value(0x0112), 1U) << "the portrait is upright";
        bool srgb = false;
        for (const TiffBlock::Entry& entry : tiff.Entries(tiff.Value(0x8769).value_or(0))) {
            if (entry.tag == 0xA001) srgb = tiff.Number(entry.at, 2) == 1;
            if (entry.tag == 0x829A) {
                EXPECT_EQ(tiff.Number(entry.at + 4, 4), 10U);
            }
        }
        EXPECT_TRUE(srgb) << "its colours are those of sRGB";
    }
}

TEST(KeptMetadata, JpegAndPngFilesCarryIt) {
    const std::string block = KeptMetadata(JpegWith(CameraBlock(true)));
    PortraitFile file;
    file.settings.keepMetadata = true;
    file.metadata = block;
    for (const std::string extension : {".jpg", ".png"}) {
        const std::string kept = EncodedWith(extension, ColourfulPicture(8, 8), file);
        EXPECT_EQ(ExifBlock(kept), block) << extension;
        EXPECT_EQ(NotedOrientation(kept), 1);
        PortraitFile unasked = file;
        unasked.settings.keepMetadata = false;
        EXPECT_EQ(EncodedWith(extension, ColourfulPicture(8, 8), unasked), Encoded(extension, ColourfulPicture(8, 8)));
    }
}

TEST(KeptMetadata, BlocksThatAreDamagedAnywhereAreReadWithinTheirBytes) {
    const std::string block = CameraBlock(false);
    for (std::size_t size = 0; size < block.size(); ++size) KeptMetadata(JpegWith(block.substr(0, size)));
    for (std::size_t at = 0; at < block.size(); ++at) {
        std::string damaged = block;
        damaged[at] = '\xFF';
        KeptMetadata(JpegWith(damaged));
    }
    EXPECT_EQ(KeptMetadata(JpegWith(block.substr(0, 7))), "");
    EXPECT_EQ(KeptMetadata(Encoded(".jpg", ColourfulPicture(8, 8))), "");
}

} // namespace
} // namespace orvane::tools
