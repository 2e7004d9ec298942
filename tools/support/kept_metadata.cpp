#include "tools/support/kept_metadata.h"

#include "tools/support/exif_block.h"
#include "tools/support/jpeg_end.h"
#include "tools/support/jpeg_segments.h"
#include "tools/support/png_chunks.h"
#include "tools/support/tiff_block.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace orvane::tools {
namespace {

constexpr unsigned kOrientation = 0x0112;
constexpr unsigned kExifList = 0x8769;
constexpr unsigned kColourSpace = 0xA001;

/// Maker, model, date of change, author, rights.
constexpr unsigned kPictureTags[] = {0x010F, 0x0110, 0x0132, 0x013B, 0x8298};
/// Exposure, aperture, sensitivity, version, dates with zones and fractions, correction, flash, focal lengths, lens.
constexpr unsigned kExifTags[] = {0x829A, 0x829D, 0x8827, 0x9000, 0x9003, 0x9004, 0x9010, 0x9011, 0x9012,
                                  0x9204, 0x9209, 0x920A, 0x9290, 0x9291, 0x9292, 0xA405, 0xA433, 0xA434};

constexpr unsigned kShortNumber = 3;
constexpr unsigned kLongNumber = 4;
constexpr std::size_t kMostOfATag = 2000;

struct Field {
    unsigned tag;
    unsigned type;
    std::uint32_t count;
    std::string value;
};

/// Writes lists in the byte order of the photograph's, so that values are copied as they are.
class BlockWriter {
public:
    explicit BlockWriter(bool highFirst) : highFirst_(highFirst) {}

    std::string Number(std::uint32_t value, int count) const {
        std::string bytes;
        for (int i = 0; i < count; ++i) {
            const int shift = 8 * (highFirst_ ? count - 1 - i : i);
            bytes += static_cast<char>(value >> shift & 0xFF);
        }
        return bytes;
    }

    Field ShortField(unsigned tag, std::uint32_t value) const { return {tag, kShortNumber, 1, Number(value, 2)}; }

    /// A list that begins at `at` of the block, with what does not fit into its entries behind it.
    std::string List(std::vector<Field> fields, std::size_t at) const {
        std::sort(fields.begin(), fields.end(), [](const Field& a, const Field& b) { return a.tag < b.tag; });
        std::string list = Number(static_cast<std::uint32_t>(fields.size()), 2);
        std::string behind;
        const std::size_t end = at + 2 + 12 * fields.size() + 4;
        for (const Field& field : fields) {
            list += Number(field.tag, 2) + Number(field.type, 2) + Number(field.count, 4);
            std::string value = field.value;
            if (value.size() > 4) {
                value = Number(static_cast<std::uint32_t>(end + behind.size()), 4);
                behind += field.value + std::string(field.value.size() % 2, '\0');
            }
            list += value + std::string(4 - value.size(), '\0');
        }
        return list + Number(0, 4) + behind;
    }

private:
    bool highFirst_;
};

template <std::size_t count>
std::vector<Field> Kept(const std::string& block, const TiffBlock& tiff, std::size_t list,
                        const unsigned (&tags)[count]) {
    std::vector<Field> fields;
    for (const TiffBlock::Entry& entry : tiff.Entries(list)) {
        if (std::find(std::begin(tags), std::end(tags), entry.tag) == std::end(tags)) continue;
        const bool again =
            std::any_of(fields.begin(), fields.end(), [&](const Field& f) { return f.tag == entry.tag; });
        if (again || entry.bytes == 0 || entry.bytes > kMostOfATag) continue;
        fields.push_back({entry.tag, entry.type, entry.count, block.substr(entry.at, entry.bytes)});
    }
    return fields;
}

} // namespace

std::string KeptMetadata(const std::string& content) {
    const std::string block = ExifBlock(content);
    const TiffBlock tiff(block);
    const std::optional<std::size_t> list = tiff.FirstList();
    if (!list) return "";
    std::vector<Field> picture = Kept(block, tiff, *list, kPictureTags);
    std::vector<Field> exif;
    if (const auto at = tiff.Value(kExifList)) exif = Kept(block, tiff, *at, kExifTags);
    if (picture.empty() && exif.empty()) return "";

    const BlockWriter writer(tiff.IsHighFirst());
    const std::string head = (tiff.IsHighFirst() ? "MM" : "II") + writer.Number(42, 2) + writer.Number(8, 4);
    picture.push_back(writer.ShortField(kOrientation, 1));
    exif.push_back(writer.ShortField(kColourSpace, 1));
    // The second list lies behind the first, whose length does not depend on where that is.
    picture.push_back({kExifList, kLongNumber, 1, writer.Number(0, 4)});
    const std::size_t second = head.size() + writer.List(picture, head.size()).size();
    picture.back().value = writer.Number(static_cast<std::uint32_t>(second), 4);
    return head + writer.List(picture, head.size()) + writer.List(exif, second);
}

void AddMetadata(const std::string& block, std::string* file) {
    if (IsJpeg(*file)) {
        AddJpegSegments(JpegSegmentBytes(kExifSegment, std::string("Exif\0\0", 6) + block), file);
    } else {
        SetPngChunk("eXIf", block, file);
    }
}

} // namespace orvane::tools
