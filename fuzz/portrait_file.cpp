// Portraits' files with all that can be asked of them: what is written is within its bounds, tells its resolution, has
// the metadata that were to go along and is read again as it was; it is refused only where no file is small enough.
#include "fuzz/support/choices.h"
#include "fuzz/support/written_file.h"
#include "tests/support/temp_folder.h"
#include "tools/support/density.h"
#include "tools/support/file_options.h"
#include "tools/support/kept_metadata.h"
#include "tools/support/picture_io.h"
#include "tools/support/portrait_encoder.h"

#include <cmath>
#include <cstring>

using namespace orvane;
using namespace orvane::tools;
using fuzz::Expect;
using fuzz::ExpectOneLine;

namespace {

Picture AnyPicture(fuzz::Choices& choices) {
    Picture picture;
    picture.width = choices.Int(1, 48);
    picture.height = choices.Int(1, 48);
    picture.step = PictureStep(picture.width);
    picture.pixels = PixelBlock(PictureBytes(picture.width, picture.height));
    const int32 across = choices.Byte(), down = choices.Byte();
    const int32 noise = choices.Flag() ? choices.Byte() : 0;
    uint32 chance = choices.Byte();
    for (int32 y = 0; y < picture.height; ++y) {
        uint8* row = picture.pixels.data() + std::ptrdiff_t{picture.step} * y;
        for (int32 x = 0; x < 3 * picture.width; ++x) {
            chance = chance * 1664525 + 1013904223;
            row[x] = static_cast<uint8>(across * x / 8 + down * y + static_cast<int32>(chance >> 24) * noise / 256);
        }
    }
    return picture;
}

FileSettings AnySettings(fuzz::Choices& choices) {
    FileSettings settings;
    if (choices.Flag()) settings.quality = choices.Int(1, 100);
    if (choices.Flag()) settings.chroma = choices.OneOf({Chroma::full, Chroma::half, Chroma::quarter});
    if (choices.Flag()) settings.dpi = choices.Int(kLeastDpi, kMostDpi);
    if (choices.Flag()) settings.leastBytes = choices.Int(0, 7) == 0 ? choices.Int(1, 200000) : choices.Int(1, 6000);
    if (choices.Flag()) {
        settings.mostBytes = settings.leastBytes.value_or(0) + static_cast<uint64>(choices.Int(1, 8000));
    }
    settings.keepMetadata = choices.Flag();
    return settings;
}

/// The smallest file that the settings leave room for.
std::size_t SmallestSize(PictureFormat format, Picture picture, PortraitFile file) {
    std::string encoded, error;
    if (format == PictureFormat::jpeg) file.settings.quality = 1;
    file.settings.leastBytes.reset();
    file.settings.mostBytes.reset();
    Expect(EncodeFile(format, picture, file, &encoded, &error), "without bounds there is a file");
    return encoded.size();
}

void ExpectReason(PictureFormat format, const Picture& picture, const PortraitFile& file, const std::string& error) {
    ExpectOneLine(error);
    std::string reason;
    if (!CanHaveSettings(format, file.settings, &reason)) return Expect(error == reason, "the option is told");
    constexpr std::size_t kFrames = 24; // what a comment takes that fills a file up
    Expect(file.settings.mostBytes.has_value(), "a file that may have any size is written");
    const std::size_t smallest =
        std::max<std::size_t>(SmallestSize(format, picture, file), file.settings.leastBytes.value_or(0) + kFrames);
    Expect(smallest > *file.settings.mostBytes, "a file that can be small enough is written");
}

void ExpectAsAsked(const PortraitFile& file, const std::string& encoded) {
    const FileSettings& settings = file.settings;
    Expect(encoded.size() >= settings.leastBytes.value_or(0), "a file has its least size");
    Expect(encoded.size() <= settings.mostBytes.value_or(encoded.size()), "a file has no more than its greatest size");
    if (settings.dpi) {
        constexpr double kMost = 0.02; // pixels a metre are whole
        const auto density = DensityOf(encoded);
        Expect(density && std::abs(density->across - *settings.dpi) < kMost &&
                   std::abs(density->down - *settings.dpi) < kMost,
               "a file tells its resolution");
    }
    Expect(KeptMetadata(encoded) == (settings.keepMetadata ? file.metadata : ""),
           "metadata go along where they are to");
}

void ReadAgain(PictureFormat format, const Picture& picture, const std::string& encoded) {
    static const test::TempFolder folder;
    const std::string path = (folder.Path() / "portrait").string();
    std::string error;
    fuzz::WriteFile(path, encoded);
    Picture back;
    PictureNotes notes;
    Expect(ReadPicture(path, &back, &notes, &error) && notes.warning.empty(), "what is written is read");
    Expect(back.width == picture.width && back.height == picture.height, "its size stays");
    Expect(format == PictureFormat::jpeg ||
               std::memcmp(back.pixels.data(), picture.pixels.data(), back.pixels.size()) == 0,
           "its pixels stay");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8* bytes, std::size_t size) {
    fuzz::Choices choices(bytes, size);
    const auto format =
        choices.OneOf({PictureFormat::jpeg, PictureFormat::png, PictureFormat::bmp, PictureFormat::tiff});
    const Picture picture = AnyPicture(choices);
    PortraitFile file{AnySettings(choices), ""};
    file.metadata = KeptMetadata(choices.Rest());

    Picture given(picture);
    std::string encoded, error;
    if (!EncodeFile(format, given, file, &encoded, &error)) {
        ExpectReason(format, picture, file, error);
        return 0;
    }
    ExpectAsAsked(file, encoded);
    ReadAgain(format, picture, encoded);
    return 0;
}
