#include "tools/support/picture_io.h"

#include "tools/support/bmp_end.h"
#include "tools/support/jpeg_end.h"
#include "tools/support/whole_file.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <memory>
#include <new>

namespace orvane::tools {
namespace {

struct Unref {
    void operator()(GdkPixbuf* pixbuf) const { g_object_unref(pixbuf); }
};
using PixbufPtr = std::unique_ptr<GdkPixbuf, Unref>;

/// The loaders may be many; these are the ones that photographs come in.
bool IsPhotoFormat(GdkPixbufFormat* format) {
    static const char* const kNames[] = {"jpeg", "png", "bmp", "tiff", "pnm", "webp", "heif/avif", "heif", "avif"};
    const std::unique_ptr<char, decltype(&g_free)> name(gdk_pixbuf_format_get_name(format), g_free);
    return std::any_of(std::begin(kNames), std::end(kNames),
                       [&](const char* known) { return std::strcmp(known, name.get()) == 0; });
}

std::string ErrorText(GError* raw) {
    const std::unique_ptr<GError, decltype(&g_error_free)> error(raw, g_error_free);
    if (g_error_matches(raw, GDK_PIXBUF_ERROR, GDK_PIXBUF_ERROR_INSUFFICIENT_MEMORY)) return "not enough memory";
    if (g_error_matches(raw, GDK_PIXBUF_ERROR, GDK_PIXBUF_ERROR_CORRUPT_IMAGE)) return "damaged picture";
    if (raw == nullptr) return "damaged picture";
    std::string text = raw->message;
    // "Failed to load image “path”: reason": the path is told already.
    const std::string quoteEnd = "\xE2\x80\x9D: ";
    const std::size_t at = text.rfind(quoteEnd);
    if (at != std::string::npos) text.erase(0, at + quoteEnd.size());
    std::replace(text.begin(), text.end(), '\n', ' ');
    return "cannot be decoded: " + text;
}

std::string SizeText(int64 width, int64 height) {
    return std::to_string(width) + "x" + std::to_string(height) + " pixels are too many; at most " +
           std::to_string(kMaxPictureSide) + " a side and " + std::to_string(kMaxPicturePixels) + " in all";
}

/// EXIF orientation 1 to 8 that the file carries; 1, upright, where it tells none.
int Orientation(GdkPixbuf* pixbuf) {
    const char* text = gdk_pixbuf_get_option(pixbuf, "orientation");
    if (text == nullptr || text[0] < '1' || text[0] > '8' || text[1] != '\0') return 1;
    return text[0] - '0';
}

/// Where the upright picture finds its pixels in the stored one: the upper left pixel, and the way
/// to the next pixel of a row and to the next row, all in bytes.
struct Walk {
    std::ptrdiff_t origin;
    std::ptrdiff_t right;
    std::ptrdiff_t down;
    bool turned; ///< Width and height change places.
};

Walk WalkFor(int orientation, int width, int height, std::ptrdiff_t pixel, std::ptrdiff_t row) {
    const std::ptrdiff_t lastColumn = (width - 1) * pixel;
    const std::ptrdiff_t lastRow = (height - 1) * row;
    switch (orientation) {
    case 2:
        return {lastColumn, -pixel, row, false};
    case 3:
        return {lastColumn + lastRow, -pixel, -row, false};
    case 4:
        return {lastRow, pixel, -row, false};
    case 5:
        return {0, row, pixel, true};
    case 6:
        return {lastRow, -row, pixel, true};
    case 7:
        return {lastColumn + lastRow, -row, -pixel, true};
    case 8:
        return {lastColumn, row, -pixel, true};
    default:
        return {0, pixel, row, false};
    }
}

uint8 OverWhite(unsigned value, unsigned alpha) {
    return static_cast<uint8>((value * alpha + 255 * (255 - alpha) + 127) / 255);
}

void ConvertRow(const uint8* from, std::ptrdiff_t next, bool hasAlpha, uint8* to, int32 width) {
    for (int32 x = 0; x < width; ++x, from += next, to += 3) {
        const unsigned alpha = hasAlpha ? from[3] : 255;
        to[0] = alpha == 255 ? from[2] : OverWhite(from[2], alpha);
        to[1] = alpha == 255 ? from[1] : OverWhite(from[1], alpha);
        to[2] = alpha == 255 ? from[0] : OverWhite(from[0], alpha);
    }
}

void Convert(GdkPixbuf* pixbuf, Picture* picture) {
    const int width = gdk_pixbuf_get_width(pixbuf);
    const int height = gdk_pixbuf_get_height(pixbuf);
    const Walk walk = WalkFor(Orientation(pixbuf), width, height, gdk_pixbuf_get_n_channels(pixbuf),
                              gdk_pixbuf_get_rowstride(pixbuf));
    Picture result;
    result.width = walk.turned ? height : width;
    result.height = walk.turned ? width : height;
    result.step = PictureStep(result.width);
    result.pixels.resize(static_cast<std::size_t>(result.step) * static_cast<std::size_t>(result.height));
    const uint8* from = gdk_pixbuf_read_pixels(pixbuf) + walk.origin;
    const bool hasAlpha = gdk_pixbuf_get_has_alpha(pixbuf) != FALSE;
    for (int32 y = 0; y < result.height; ++y) {
        uint8* to = RowAt(result.pixels.data(), result.step, result.height - 1 - y);
        ConvertRow(from + walk.down * y, walk.right, hasAlpha, to, result.width);
    }
    *picture = std::move(result);
}

/// The checks that come before decoding: a regular file, of a known format, not too large, whole.
bool CheckFile(const std::string& path, std::string* error) {
    std::string content;
    if (!ReadWholeFile(path, &content, error)) return false;
    if (content.empty()) {
        *error = "is empty";
        return false;
    }
    int width = 0;
    int height = 0;
    GdkPixbufFormat* format = gdk_pixbuf_get_file_info(path.c_str(), &width, &height);
    if (format == nullptr || !IsPhotoFormat(format)) {
        *error = "is not a picture of a known format";
        return false;
    }
    if (width < 1 || height < 1) {
        *error = "damaged picture";
        return false;
    }
    if (!IsPictureSizeAllowed(width, height)) {
        *error = SizeText(width, height);
        return false;
    }
    if ((IsJpeg(content) && !JpegReachesItsEnd(content)) || (IsBmp(content) && !BmpReachesItsEnd(content))) {
        *error = "damaged picture: it breaks off before its end";
        return false;
    }
    return true;
}

/// Name of the encoder that the extension of `path` asks for, or null.
const char* EncoderFor(const std::string& path) {
    const std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || path.find('/', dot) != std::string::npos) return nullptr;
    std::string extension = path.substr(dot + 1);
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    static const char* const kEncoders[][2] = {{"jpg", "jpeg"}, {"jpeg", "jpeg"}, {"png", "png"},
                                               {"bmp", "bmp"},  {"tif", "tiff"},  {"tiff", "tiff"}};
    for (const auto& entry : kEncoders) {
        if (extension == entry[0]) return entry[1];
    }
    return nullptr;
}

PixbufPtr TopDownPixbuf(const Picture& picture) {
    PixbufPtr pixbuf(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, picture.width, picture.height));
    if (pixbuf == nullptr) return pixbuf;
    uint8* pixels = gdk_pixbuf_get_pixels(pixbuf.get());
    const int rowStride = gdk_pixbuf_get_rowstride(pixbuf.get());
    for (int32 y = 0; y < picture.height; ++y) {
        // Swapping red and blue is its own inverse.
        ConvertRow(RowAt(picture.pixels.data(), picture.step, picture.height - 1 - y), 3, false,
                   RowAt(pixels, rowStride, y), picture.width);
    }
    return pixbuf;
}

} // namespace

bool ReadPicture(const std::string& path, Picture* picture, std::string* error) try {
    *picture = Picture();
    if (!CheckFile(path, error)) return false;
    GError* problem = nullptr;
    const PixbufPtr pixbuf(gdk_pixbuf_new_from_file(path.c_str(), &problem));
    if (pixbuf == nullptr) {
        *error = ErrorText(problem);
        return false;
    }
    // The file may have changed since its header was looked at.
    const int64 width = gdk_pixbuf_get_width(pixbuf.get());
    const int64 height = gdk_pixbuf_get_height(pixbuf.get());
    if (!IsPictureSizeAllowed(width, height)) {
        *error = SizeText(width, height);
        return false;
    }
    Convert(pixbuf.get(), picture);
    return true;
} catch (const std::bad_alloc&) {
    *error = "not enough memory";
    return false;
}

bool IsWritablePictureName(const std::string& path) { return EncoderFor(path) != nullptr; }

bool EncodePicture(const std::string& path, const Picture& picture, std::string* encoded, std::string* error) {
    const char* encoder = EncoderFor(path);
    if (encoder == nullptr) {
        *error = "has no extension of a format that can be written (.jpg, .png, .bmp, .tif)";
        return false;
    }
    if (!IsPictureSizeAllowed(picture.width, picture.height)) {
        *error = "there is no picture to write";
        return false;
    }
    const PixbufPtr pixbuf = TopDownPixbuf(picture);
    if (pixbuf == nullptr) {
        *error = "not enough memory";
        return false;
    }
    // JPEG near to lossless; PNG at a third of the usual time for a twentieth more bytes.
    const bool jpeg = std::strcmp(encoder, "jpeg") == 0;
    const bool png = std::strcmp(encoder, "png") == 0;
    char quality[] = "quality", qualityValue[] = "95", compression[] = "compression", compressionValue[] = "4";
    char* keys[] = {jpeg ? quality : png ? compression : nullptr, nullptr};
    char* values[] = {jpeg ? qualityValue : png ? compressionValue : nullptr, nullptr};
    gchar* buffer = nullptr;
    gsize length = 0;
    GError* problem = nullptr;
    const gboolean saved = gdk_pixbuf_save_to_bufferv(pixbuf.get(), &buffer, &length, encoder, keys, values, &problem);
    const std::unique_ptr<char, decltype(&g_free)> owner(buffer, g_free);
    if (saved == FALSE) {
        *error = ErrorText(problem);
        return false;
    }
    encoded->assign(buffer, length);
    return true;
}

bool WritePicture(const std::string& path, const Picture& picture, bool force, std::string* error) {
    std::string encoded;
    return EncodePicture(path, picture, &encoded, error) && WriteWholeFile(path, encoded, force, error);
}

} // namespace orvane::tools
