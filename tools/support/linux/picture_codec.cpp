#include "tools/support/picture_codec.h"

#include "tools/support/colour_profile.h"
#include "tools/support/jpeg_end.h"
#include "tools/support/linux/colour_transform.h"
#include "tools/support/linux/turbo_jpeg.h"
#include "tools/support/orientation.h"
#include "tools/support/upright.h"

#include <algorithm>
#include <cstring>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <memory>
#include <utility>
#include <vector>

namespace orvane::tools {
namespace {

struct Unref {
    void operator()(GdkPixbuf* pixbuf) const { g_object_unref(pixbuf); }
};
using PixbufPtr = std::unique_ptr<GdkPixbuf, Unref>;

/// The loaders may be many; these are the ones that photographs come in.
bool IsPhotoFormat(GdkPixbufFormat* format) {
    static const char* const kNames[] = {"png", "bmp", "tiff", "pnm", "webp", "heif/avif", "heif", "avif"};
    const std::unique_ptr<char, decltype(&g_free)> name(gdk_pixbuf_format_get_name(format), g_free);
    return std::any_of(std::begin(kNames), std::end(kNames),
                       [&](const char* known) { return std::strcmp(known, name.get()) == 0; });
}

std::string ErrorText(GError* raw) {
    const std::unique_ptr<GError, decltype(&g_error_free)> error(raw, g_error_free);
    if (g_error_matches(raw, GDK_PIXBUF_ERROR, GDK_PIXBUF_ERROR_INSUFFICIENT_MEMORY)) return "not enough memory";
    if (g_error_matches(raw, GDK_PIXBUF_ERROR, GDK_PIXBUF_ERROR_CORRUPT_IMAGE)) return kDamaged;
    if (raw == nullptr) return kDamaged;
    std::string text = raw->message;
    // "Failed to load image “path”: reason": the path is told already.
    const std::string quoteEnd = "\xE2\x80\x9D: ";
    const std::size_t at = text.rfind(quoteEnd);
    if (at != std::string::npos) text.erase(0, at + quoteEnd.size());
    std::replace(text.begin(), text.end(), '\n', ' ');
    return "cannot be decoded: " + text;
}

/// EXIF orientation 1 to 8 that the file carries; 1, upright, where it tells none.
int Orientation(GdkPixbuf* pixbuf) {
    const char* text = gdk_pixbuf_get_option(pixbuf, "orientation");
    if (text == nullptr || text[0] < '1' || text[0] > '8' || text[1] != '\0') return 1;
    return text[0] - '0';
}

StoredRows RowsOf(GdkPixbuf* pixbuf) {
    StoredRows rows;
    rows.pixels = gdk_pixbuf_read_pixels(pixbuf);
    rows.width = gdk_pixbuf_get_width(pixbuf);
    rows.height = gdk_pixbuf_get_height(pixbuf);
    rows.pixel = gdk_pixbuf_get_n_channels(pixbuf);
    rows.row = gdk_pixbuf_get_rowstride(pixbuf);
    rows.redFirst = true;
    rows.hasAlpha = gdk_pixbuf_get_has_alpha(pixbuf) != FALSE;
    return rows;
}

/// Whether the decoder's rows need no more than turning over. Rows with padding stay the decoder's: the last one may
/// end without.
bool CanHandOver(const StoredRows& rows, int orientation) {
    return orientation == 1 && rows.pixel == 3 && rows.row == std::ptrdiff_t{3} * rows.width &&
           rows.row == PictureStep(rows.width);
}

/// The picture in the decoder's own memory.
Picture HandOver(PixbufPtr pixbuf) {
    Picture picture;
    picture.width = gdk_pixbuf_get_width(pixbuf.get());
    picture.height = gdk_pixbuf_get_height(pixbuf.get());
    picture.step = PictureStep(picture.width);
    uint8* rows = gdk_pixbuf_get_pixels(pixbuf.get());
    TurnOver(rows, picture.step, {picture.width, picture.height}, true);
    const std::shared_ptr<GdkPixbuf> owner(std::move(pixbuf));
    picture.pixels = PixelBlock({owner, rows}, PictureBytes(picture.width, picture.height));
    return picture;
}

/// Of a file whose size and end can be told without a decoder.
bool CheckHeader(const std::string& content, std::string* error) {
    const std::optional<HeaderSize> told = SizeInHeader(content);
    if (told && told->width > 0 && told->height > 0 && !IsPictureSizeAllowed(told->width, told->height)) {
        *error = TooLargeText(told->width, told->height);
        return false;
    }
    if (ReachesItsEnd(content)) return true;
    *error = kBreaksOff;
    return false;
}

/// The checks that come before decoding: of a known format, not too large, whole.
bool CheckFile(const std::string& path, const std::string& content, std::string* error) {
    if (content.starts_with("\xFF\xD8")) { // of no JPEG file, but the library would take it for one
        *error = kDamaged;
        return false;
    }
    // The decoder for BMP asks for all bytes that the header tells before the pixels, up to four gigabytes, when it is
    // only asked for the size.
    if (FormatOfContent(content) == PictureFormat::bmp && !CheckHeader(content, error)) return false;
    int width = 0;
    int height = 0;
    GdkPixbufFormat* format = gdk_pixbuf_get_file_info(path.c_str(), &width, &height);
    if (format == nullptr || !IsPhotoFormat(format)) {
        *error = kUnknownFormat;
    } else if (width < 1 || height < 1) {
        *error = kDamaged;
    } else if (!IsPictureSizeAllowed(width, height)) {
        *error = TooLargeText(width, height);
    } else if (!ReachesItsEnd(content)) {
        *error = kBreaksOff;
    } else {
        return true;
    }
    return false;
}

/// The file's profile; empty for none.
std::string ProfileOf(GdkPixbuf* pixbuf) {
    const char* text = gdk_pixbuf_get_option(pixbuf, "icc-profile");
    if (text == nullptr) return "";
    gsize size = 0;
    const std::unique_ptr<guchar, decltype(&g_free)> bytes(g_base64_decode(text, &size), g_free);
    return {reinterpret_cast<const char*>(bytes.get()), size};
}

/// Whatever colours the file has become those of a portrait.
void ConvertColours(const std::string& content, const std::string& profile, const ColourRows& rows,
                    std::string* warning) {
    if (profile.empty()) {
        if (NamesProfile(content)) *warning = kUnusableProfile;
        return;
    }
    // Inks whose profile told their colours do not come here.
    if (HasInks(content) || !ConvertToSrgb(profile, rows)) *warning = kUnusableProfile;
}

/// A picture in inks whose profile says what they look like. False leaves it to DecodeJpeg, which knows no profiles.
bool DecodeWithInkProfile(const std::string& content, Picture* picture) {
    if (!HasInks(content) || !NamesProfile(content)) return false;
    const ProfilePtr profile = OpenProfile(JpegProfile(content));
    if (profile == nullptr) return false;
    const TransformPtr transform = IntoSrgb(profile, TYPE_CMYK_8_REV, TYPE_RGB_8);
    InkPicture inks;
    std::string ignored;
    if (transform == nullptr || !DecodeInks(content, &inks, &ignored)) return false;
    std::vector<uint8> colours(inks.inks.size() / 4 * 3);
    StoredRows rows;
    rows.pixels = colours.data();
    rows.width = inks.width;
    rows.height = inks.height;
    rows.row = std::ptrdiff_t{3} * inks.width;
    rows.redFirst = true;
    for (int32 y = 0; y < inks.height; ++y) {
        cmsDoTransform(transform.get(), inks.inks.data() + std::ptrdiff_t{4} * inks.width * y,
                       colours.data() + rows.row * y, static_cast<cmsUInt32Number>(inks.width));
    }
    *picture = UprightPicture(rows, NotedOrientation(content));
    return true;
}

/// By the library that also writes them: the other one takes what a profile's segments say of themselves for true.
bool DecodeJpegPicture(const std::string& content, Picture* picture, std::string* warning, std::string* error) {
    if (!CheckHeader(content, error)) return false;
    if (DecodeWithInkProfile(content, picture)) return true;
    Picture stored;
    if (!DecodeJpeg(content, &stored, error)) return false;
    const int32 width = stored.width, height = stored.height, step = stored.step;
    uint8* pixels = stored.pixels.data();
    ConvertColours(content, JpegProfile(content), {pixels, width, height, 3, step, false}, warning);
    const int orientation = NotedOrientation(content);
    const StoredRows rows{RowAt(pixels, step, height - 1), width, height, 3, -std::ptrdiff_t{step}, false, false};
    *picture = orientation == 1 ? std::move(stored) : UprightPicture(rows, orientation);
    return true;
}

/// The encoder's name and its one option: PNG at a third of the usual time for a twentieth more bytes.
struct Encoder {
    std::string name;
    std::string option;
    std::string value;
};

Encoder EncoderFor(PictureFormat format) {
    if (format == PictureFormat::png) return {"png", "compression", "4"};
    return {format == PictureFormat::bmp ? "bmp" : "tiff", "", ""};
}

/// Takes what an encoder has ready; nothing may be thrown through it.
gboolean AppendTo(const gchar* bytes, gsize count, GError** error, gpointer encoded) try {
    static_cast<std::string*>(encoded)->append(bytes, count);
    return TRUE;
} catch (const std::exception&) {
    g_set_error_literal(error, GDK_PIXBUF_ERROR, GDK_PIXBUF_ERROR_INSUFFICIENT_MEMORY, "");
    return FALSE;
}

/// The encoder leaves behind each row what lay in memory there. The rows are the file's end.
void ClearPadding(const Picture& picture, std::string* bmp) {
    const auto used = static_cast<std::size_t>(picture.width) * 3;
    const std::size_t step = (used + 3) / 4 * 4;
    const std::size_t rows = step * static_cast<std::size_t>(picture.height);
    if (bmp->size() < rows) return;
    for (std::size_t at = bmp->size() - rows; at < bmp->size(); at += step) {
        std::fill_n(bmp->begin() + static_cast<std::ptrdiff_t>(at + used), step - used, '\0');
    }
}

} // namespace

bool DecodePicture(const std::string& path, const std::string& content, Picture* picture, std::string* warning,
                   std::string* error) {
    if (IsJpeg(content)) return DecodeJpegPicture(content, picture, warning, error);
    if (!CheckFile(path, content, error)) return false;
    GError* problem = nullptr;
    PixbufPtr pixbuf(gdk_pixbuf_new_from_file(path.c_str(), &problem));
    if (pixbuf == nullptr) {
        *error = ErrorText(problem);
        return false;
    }
    // The file may have changed since its header was looked at.
    const StoredRows rows = RowsOf(pixbuf.get());
    if (!IsPictureSizeAllowed(rows.width, rows.height)) {
        *error = TooLargeText(rows.width, rows.height);
        return false;
    }
    ConvertColours(content, ProfileOf(pixbuf.get()),
                   {gdk_pixbuf_get_pixels(pixbuf.get()), rows.width, rows.height, rows.pixel, rows.row, true}, warning);
    const int orientation = Orientation(pixbuf.get());
    *picture = CanHandOver(rows, orientation) ? HandOver(std::move(pixbuf)) : UprightPicture(rows, orientation);
    return true;
}

bool EncodePixels(PictureFormat format, Picture& picture, const EncoderSettings& settings, std::string* encoded,
                  std::string* error) {
    if (format == PictureFormat::jpeg) return EncodeJpeg(picture, settings, encoded, error);
    TurnOver(picture.pixels.data(), picture.step, {picture.width, picture.height}, true);
    const PixbufPtr pixbuf(gdk_pixbuf_new_from_data(picture.pixels.data(), GDK_COLORSPACE_RGB, FALSE, 8, picture.width,
                                                    picture.height, picture.step, nullptr, nullptr));
    Encoder encoder = EncoderFor(format);
    std::vector<char*> keys;
    std::vector<char*> values;
    if (!encoder.option.empty()) {
        keys.push_back(encoder.option.data());
        values.push_back(encoder.value.data());
    }
    std::string across = "x-dpi";
    std::string down = "y-dpi";
    std::string dpi = std::to_string(settings.dpi.value_or(0));
    if (settings.dpi && format == PictureFormat::tiff) {
        keys.insert(keys.end(), {across.data(), down.data()});
        values.insert(values.end(), {dpi.data(), dpi.data()});
    }
    keys.push_back(nullptr);
    values.push_back(nullptr);
    encoded->clear();
    GError* problem = nullptr;
    if (gdk_pixbuf_save_to_callbackv(pixbuf.get(), AppendTo, encoded, encoder.name.c_str(), keys.data(), values.data(),
                                     &problem)) {
        if (format == PictureFormat::bmp) ClearPadding(picture, encoded);
        return true;
    }
    *error = ErrorText(problem);
    return false;
}

} // namespace orvane::tools
