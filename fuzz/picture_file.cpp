// Picture files through the tool's decoders: whatever stands in one, it is refused with one line, or it gives a picture
// within the caps whose padding is zero; written without loss, it is read again as it was.
#include "fuzz/support/choices.h"
#include "fuzz/support/expect.h"
#include "tests/support/temp_folder.h"
#include "tools/support/jpeg_scans.h"
#include "tools/support/picture_format.h"
#include "tools/support/picture_io.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

using namespace orvane;
using namespace orvane::tools;
using fuzz::Expect;

namespace {

constexpr int64 kSmall = 1 << 16; // pixels that are written again

void Write(const std::string& path, const std::string& content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    Expect(file.good(), "a file is written");
}

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

void ReadAgain(const Picture& picture, const std::string& path) {
    std::string encoded, error;
    Expect(EncodePicture(path, picture, &encoded, &error), "a picture is encoded");
    Write(path, encoded);
    Picture back;
    Expect(ReadPicture(path, &back, &error), "what was encoded is read");
    Expect(back.width == picture.width && back.height == picture.height, "its size stays");
    const bool lossless = FormatOfName(path) != PictureFormat::jpeg;
    Expect(!lossless || std::memcmp(back.pixels.data(), picture.pixels.data(), back.pixels.size()) == 0,
           "its pixels stay");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8* bytes, std::size_t size) {
    static const test::TempFolder folder;
    const std::string path = (folder.Path() / "picture").string();
    const std::string content = fuzz::Choices(bytes, size).Rest();
    ReachesItsEnd(content);
    if (IsHuge(content)) return -1;
    Write(path, content);
    Picture picture;
    std::string error;
    if (!ReadPicture(path, &picture, &error)) {
        Expect(!error.empty() && error.find('\n') == std::string::npos, "what is refused gets one line");
        Expect(picture.width == 0 && picture.pixels.size() == 0, "nothing is left of what is refused");
        return 0;
    }
    ExpectWhole(picture);
    if (int64{picture.width} * picture.height > kSmall) return 0;
    for (const char* extension : {".png", ".bmp", ".tif", ".jpg"}) ReadAgain(picture, path + extension);
    return 0;
}
