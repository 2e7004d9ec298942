// Picture files through the tool's decoders: whatever stands in one, it is refused with one line, or it gives a picture
// within the caps whose padding is zero; written without loss, it is read again as it was, and it goes on paper as it
// is. Beside its pixels its resolution, its metadata and its colours are read.
#include "fuzz/support/choices.h"
#include "fuzz/support/written_file.h"
#include "tests/support/temp_folder.h"
#include "tools/print/sheet_pdf.h"
#include "tools/support/colour_profile.h"
#include "tools/support/density.h"
#include "tools/support/jpeg_segments.h"
#include "tools/support/kept_metadata.h"
#include "tools/support/picture_format.h"
#include "tools/support/picture_io.h"
#include "tools/support/picture_remarks.h"

#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>

using namespace orvane;
using namespace orvane::tools;
using fuzz::Expect;
using fuzz::ExpectOneLine;
using fuzz::WriteFile;

namespace {

constexpr int64 kSmall = 1 << 16; // pixels that are written again

/// Of a header that tells a picture which would take the fuzzer's time and memory.
bool IsHuge(const std::string& content) {
    const auto told = SizeInHeader(content);
    return told && told->width > 0 && told->height > 0 && told->width <= kMaxPictureSide &&
           told->height <= kMaxPictureSide && told->width * told->height > (1 << 22);
}

void ExpectWhole(const Picture& picture) {
    Expect(IsPictureSizeAllowed(picture.width, picture.height), "a picture is within the caps");
    Expect(picture.step == PictureStep(picture.width), "rows lie as they should");
    Expect(picture.pixels.size() == PictureBytes(picture.width, picture.height), "all rows are there");
    for (int32 y = 0; y < picture.height; ++y) {
        const uint8* row = RowAt(picture.pixels.data(), picture.step, y);
        for (int32 x = 3 * picture.width; x < picture.step; ++x) Expect(row[x] == 0, "padding is zero");
    }
}

/// As the portrait of such a photograph is written.
void ReadAgain(const Picture& picture, const std::string& metadata, const std::string& path) {
    const bool lossless = FormatOfName(path) != PictureFormat::jpeg;
    PortraitFile file{{}, metadata};
    file.settings.dpi = 300;
    file.settings.keepMetadata = !lossless || FormatOfName(path) == PictureFormat::png;
    std::string encoded, error;
    Expect(EncodePicture(path, Picture(picture), file, &encoded, &error), "a picture is encoded");
    Expect(!file.settings.keepMetadata || KeptMetadata(encoded) == metadata, "metadata go along");
    Expect(DensityOf(encoded) && std::abs(DensityOf(encoded)->down - 300) < 1, "a resolution is written");
    WriteFile(path, encoded);
    Picture back;
    Expect(ReadPicture(path, &back, &error), "what was encoded is read");
    Expect(back.width == picture.width && back.height == picture.height, "its size stays");
    Expect(!lossless || std::memcmp(back.pixels.data(), picture.pixels.data(), back.pixels.size()) == 0,
           "its pixels stay");
}

/// A profile leaves transparency as it is, and all where it can't be used.
void ConvertBy(const std::string& profile, int32 samples) {
    constexpr int32 kWidth = 7;
    std::array<uint8, 4 * kWidth * 2> pixels{};
    for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<uint8>(i / 3 * 41);
    const std::array<uint8, 4 * kWidth* 2> before = pixels;
    const ColourRows rows{pixels.data(), kWidth, 2, samples, std::ptrdiff_t{4} * kWidth, samples == 3};
    const bool done = ConvertToSrgb(profile, rows);
    Expect(done || pixels == before, "a profile that can't be used changes nothing");
    if (samples != 4) return;
    for (std::size_t i = 3; i < pixels.size(); i += 4) Expect(pixels[i] == before[i], "transparency stays");
}

/// What is read of a file's bytes without decoding its picture.
void ReadBeside(const std::string& content) {
    ReachesItsEnd(content);
    if (const auto density = DensityOf(content)) {
        Expect(std::isfinite(density->across) && std::isfinite(density->down), "a resolution is a number");
        Expect(density->across > 0 && density->down > 0, "a resolution is one of pixels");
    }
    const std::string kept = KeptMetadata(content);
    Expect(KeptMetadata(kept) == kept, "what was kept is kept again");
    Expect(kept.size() < kMostInJpegSegment - 6, "what is kept goes into a segment");
    const std::string remark = PictureRemark(content);
    if (!remark.empty()) ExpectOneLine(remark);
    // A file may be a profile, too.
    for (const std::string& profile : {content, JpegProfile(content)}) {
        if (profile.size() < 128 || profile.compare(36, 4, "acsp") != 0) continue;
        for (const int32 samples : {3, 4}) ConvertBy(profile, samples);
    }
}

std::string Entry(const std::string& name, int32 value) { return "/" + name + " " + std::to_string(value) + " "; }

/// A file that is a JPEG picture as it shows, or any other, comes into a sheet with the size that the picture has.
void PutOnPaper(const std::string& path, const Picture& picture, const std::string& content) {
    const double scale = 10.0 / std::min(picture.width, picture.height); // millimetres a pixel
    std::string error;
    for (const bool own : {true, false}) {
        std::vector<PrintedPortrait> portraits(1);
        const PaperSize size{picture.width * scale, picture.height * scale};
        const std::optional<PaperSize> given = own ? std::nullopt : std::optional(size);
        if (!ReadPortrait(path, given, &portraits[0], &error)) {
            ExpectOneLine(error);
            Expect(own, "a portrait in its own proportions is printed");
            continue;
        }
        std::size_t tooLarge = 1;
        const auto plan = PlanSheets({portraits[0].size}, {{210, 297}, 3, 2, 1}, &tooLarge);
        Expect(plan.has_value() || tooLarge == 0, "a portrait has its place on paper, or is too large");
        if (!plan) continue;
        std::string pdf;
        Expect(MakePdf(*plan, portraits, true, &pdf, &error), "a portrait is printed");
        Expect(pdf.find(Entry("Width", picture.width) + Entry("Height", picture.height)) != std::string::npos,
               "a picture on paper has its own size");
        const std::size_t mark = pdf.rfind("startxref\n");
        Expect(mark != std::string::npos && pdf.compare(std::stoul(pdf.substr(mark + 10)), 5, "xref\n") == 0,
               "a sheet tells where its parts lie");
        const bool isAsItWas = pdf.find("/DCTDecode") != std::string::npos;
        Expect(isAsItWas == (pdf.find(content) != std::string::npos), "a JPEG stream goes on paper as it is");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8* bytes, std::size_t size) {
    static const test::TempFolder folder;
    const std::string path = (folder.Path() / "picture").string();
    const std::string content = fuzz::Choices(bytes, size).Rest();
    ReadBeside(content);
    if (IsHuge(content)) return -1;
    WriteFile(path, content);
    Picture picture;
    std::string error;
    PictureNotes notes;
    if (!ReadPicture(path, &picture, &notes, &error)) {
        ExpectOneLine(error);
        Expect(picture.width == 0 && picture.pixels.size() == 0, "nothing is left of what is refused");
        return 0;
    }
    ExpectWhole(picture);
    if (!notes.warning.empty()) ExpectOneLine(notes.warning);
    Expect(notes.metadata == KeptMetadata(content), "metadata are those of the file");
    if (int64{picture.width} * picture.height > kSmall) return 0;
    for (const char* extension : {".png", ".bmp", ".tif", ".jpg"}) ReadAgain(picture, notes.metadata, path + extension);
    PutOnPaper(path, picture, content);
    return 0;
}
