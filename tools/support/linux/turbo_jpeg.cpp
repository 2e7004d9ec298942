#include "tools/support/linux/turbo_jpeg.h"

#include "tools/support/jpeg_segments.h"

#include <algorithm>
#include <memory>
#include <turbojpeg.h>
#include <type_traits>

namespace orvane::tools {
namespace {

struct Destroy {
    void operator()(void* handle) const { tjDestroy(handle); }
};
using TurboPtr = std::unique_ptr<std::remove_pointer_t<tjhandle>, Destroy>;

int Sampling(Chroma chroma) {
    switch (chroma) {
    case Chroma::full:
        return TJSAMP_444;
    case Chroma::half:
        return TJSAMP_422;
    case Chroma::quarter:
        break;
    }
    return TJSAMP_420;
}

/// Whether the program that wrote the stream left Adobe's mark: its inks are stored as 255 for none then, as the
/// decoder leaves them.
bool HasAdobeMark(const std::string& jpeg) {
    return std::ranges::any_of(
        JpegSegments(jpeg), [&](const JpegSegment& segment) { return HasName(jpeg, segment, kAdobeSegment, "Adobe"); });
}

} // namespace

bool EncodeJpeg(const Picture& picture, const EncoderSettings& settings, std::string* encoded, std::string* error) {
    *error = "not enough memory";
    const TurboPtr turbo(tjInitCompress());
    if (turbo == nullptr) return false;
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    const int result =
        tjCompress2(turbo.get(), picture.pixels.data(), picture.width, picture.step, picture.height, TJPF_BGR, &bytes,
                    &size, Sampling(settings.chroma), settings.quality, TJFLAG_BOTTOMUP | TJFLAG_ACCURATEDCT);
    const std::unique_ptr<unsigned char, decltype(&tjFree)> owner(bytes, tjFree);
    if (result != 0) {
        *error = std::string("cannot be encoded: ") + tjGetErrorStr2(turbo.get());
        return false;
    }
    encoded->assign(reinterpret_cast<const char*>(bytes), size);
    error->clear();
    return true;
}

bool HasInks(const std::string& jpeg) {
    const std::optional<JpegFrame> frame = FrameOf(jpeg);
    return frame && frame->components == 4;
}

bool DecodeInks(const std::string& jpeg, InkPicture* picture) {
    const TurboPtr turbo(tjInitDecompress());
    if (turbo == nullptr) return false;
    const auto* bytes = reinterpret_cast<const unsigned char*>(jpeg.data());
    int sampling = 0;
    int colours = 0;
    if (tjDecompressHeader3(turbo.get(), bytes, jpeg.size(), &picture->width, &picture->height, &sampling, &colours) !=
            0 ||
        !IsPictureSizeAllowed(picture->width, picture->height)) {
        return false;
    }
    picture->inks.resize(std::size_t{4} * static_cast<std::size_t>(picture->width) *
                         static_cast<std::size_t>(picture->height));
    const int result = tjDecompress2(turbo.get(), bytes, jpeg.size(), picture->inks.data(), picture->width, 0,
                                     picture->height, TJPF_CMYK, TJFLAG_ACCURATEDCT);
    if (result != 0 && tjGetErrorCode(turbo.get()) != TJERR_WARNING) return false;
    if (HasAdobeMark(jpeg)) return true;
    for (uint8& ink : picture->inks) ink = static_cast<uint8>(255 - ink);
    return true;
}

} // namespace orvane::tools
