#include "tools/support/portrait_encoder.h"

#include "tools/support/density.h"
#include "tools/support/file_padding.h"
#include "tools/support/kept_metadata.h"
#include "tools/support/picture_codec.h"
#include "tools/support/quality_search.h"

namespace orvane::tools {
namespace {

/// What is written into the file beside its pixels.
void Complete(PictureFormat format, const PortraitFile& file, std::string* encoded) {
    if (file.settings.dpi) SetDensity(format, *file.settings.dpi, encoded);
    if (file.settings.keepMetadata && !file.metadata.empty()) AddMetadata(file.metadata, encoded);
}

/// The last step to the floor, and the ceiling of what no search can make smaller.
bool Fit(PictureFormat format, const SizeBounds& bounds, std::string* encoded, std::string* error) {
    if (encoded->size() <= bounds.most) PadFile(format, static_cast<std::size_t>(bounds.least), encoded);
    if (encoded->size() <= bounds.most) return true;
    *error = TooManyBytesText(encoded->size(), bounds.most) + " and can be made no smaller";
    return false;
}

} // namespace

bool CanHaveSettings(PictureFormat format, const FileSettings& settings, std::string* error) {
    const bool jpeg = format == PictureFormat::jpeg;
    if (settings.quality && !jpeg) {
        *error = "--quality is for .jpg";
    } else if (settings.chroma && !jpeg) {
        *error = "--chroma is for .jpg";
    } else if (settings.leastBytes && !CanBePadded(format)) {
        *error = "--min-kb is for .jpg and .png";
    } else if (settings.keepMetadata && !jpeg && format != PictureFormat::png) {
        *error = "--keep-metadata is for .jpg and .png";
    } else {
        return true;
    }
    return false;
}

bool EncodeFile(PictureFormat format, Picture& picture, const PortraitFile& file, std::string* encoded,
                std::string* error) {
    const FileSettings& wanted = file.settings;
    if (!CanHaveSettings(format, wanted, error)) return false;
    EncoderSettings settings;
    settings.chroma = wanted.chroma.value_or(Chroma::quarter);
    settings.dpi = wanted.dpi;
    SizeBounds bounds;
    bounds.least = wanted.leastBytes.value_or(bounds.least);
    bounds.most = wanted.mostBytes.value_or(bounds.most);
    const auto encode = [&](int32 quality, std::string* bytes, std::string* problem) {
        settings.quality = quality;
        if (!EncodePixels(format, picture, settings, bytes, problem)) return false;
        Complete(format, file, bytes);
        return true;
    };
    const int32 quality = wanted.quality.value_or(kPlainQuality);
    const bool done = format == PictureFormat::jpeg ? EncodeWithin(bounds, quality, encode, encoded, error)
                                                    : encode(quality, encoded, error);
    return done && Fit(format, bounds, encoded, error);
}

} // namespace orvane::tools
