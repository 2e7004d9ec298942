#include "tools/support/linux/turbo_jpeg.h"

#include "primitives/types.h"
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

ImageSize SizeOf(const std::string& jpeg) {
    const std::optional<JpegFrame> frame = FrameOf(jpeg);
    return frame ? ImageSize{static_cast<int32>(frame->width), static_cast<int32>(frame->height)} : ImageSize{0, 0};
}

Picture EmptyPicture(ImageSize size) {
    Picture picture;
    picture.width = size.width;
    picture.height = size.height;
    picture.step = PictureStep(size.width);
    picture.pixels = PixelBlock(PictureBytes(size.width, size.height));
    return picture;
}

/// Where decoded samples go.
struct Samples {
    uint8* first;
    ImageSize size;
    int32 step;
    int format;
    int flags;
};

/// More is not written than the size has, whatever the decoder takes for the stream's.
bool RunDecoder(const TurboPtr& turbo, const std::string& jpeg, const Samples& to, int flags) {
    return tjDecompress2(turbo.get(), reinterpret_cast<const unsigned char*>(jpeg.data()), jpeg.size(), to.first,
                         to.size.width, to.step, to.size.height, to.format,
                         to.flags | flags | TJFLAG_ACCURATEDCT | TJFLAG_LIMITSCANS) == 0;
}

/// Whether a run that failed did no more than warn. After a warning the decoder calls each failure one; but its text is
/// that of the first warning unless it gave up.
bool OnlyWarned(const TurboPtr& turbo, const std::string& jpeg, const Samples& to) {
    if (tjGetErrorCode(turbo.get()) != TJERR_WARNING) return false;
    const std::string text = tjGetErrorStr2(turbo.get());
    const TurboPtr second(tjInitDecompress());
    std::vector<uint8> rows(static_cast<std::size_t>(to.step) * static_cast<std::size_t>(to.size.height));
    Samples elsewhere = to;
    elsewhere.first = rows.data();
    return second != nullptr && !RunDecoder(second, jpeg, elsewhere, TJFLAG_STOPONWARNING) &&
           text == tjGetErrorStr2(second.get());
}

/// What a decoder only warns of is passed over: whoever wants to know of damage asks jpeg_scans.h.
bool Decode(const std::string& jpeg, const Samples& to, std::string* error) {
    if (!HasPixels(to.size)) {
        *error = kDamaged;
        return false;
    }
    const TurboPtr turbo(tjInitDecompress());
    if (turbo == nullptr) {
        *error = "not enough memory";
        return false;
    }
    if (RunDecoder(turbo, jpeg, to, 0)) return true;
    const std::string text = tjGetErrorStr2(turbo.get());
    if (OnlyWarned(turbo, jpeg, to)) return true;
    *error = "cannot be decoded: " + text;
    return false;
}

/// To colours, of inks that are 255 for none.
void MixInks(const uint8* inks, uint8* to, int32 width) {
    for (int32 x = 0; x < width; ++x, inks += 4, to += 3) {
        for (int i = 0; i < 3; ++i) to[2 - i] = static_cast<uint8>(inks[i] * inks[3] / 255);
    }
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

bool DecodeJpeg(const std::string& jpeg, Picture* picture, std::string* error) {
    if (HasInks(jpeg)) {
        InkPicture inks;
        if (!DecodeInks(jpeg, &inks, error)) return false;
        *picture = EmptyPicture({inks.width, inks.height});
        for (int32 y = 0; y < inks.height; ++y) {
            const auto first = std::size_t{4} * static_cast<std::size_t>(inks.width) * static_cast<std::size_t>(y);
            MixInks(inks.inks.data() + first, RowAt(picture->pixels.data(), picture->step, inks.height - 1 - y),
                    inks.width);
        }
        return true;
    }
    const ImageSize size = SizeOf(jpeg);
    *picture = EmptyPicture(size);
    return Decode(jpeg, {picture->pixels.data(), size, picture->step, TJPF_BGR, TJFLAG_BOTTOMUP}, error);
}

bool DecodeInks(const std::string& jpeg, InkPicture* picture, std::string* error) {
    const ImageSize size = SizeOf(jpeg);
    picture->width = size.width;
    picture->height = size.height;
    picture->inks.resize(std::size_t{4} * static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
    if (!Decode(jpeg, {picture->inks.data(), size, 4 * size.width, TJPF_CMYK, 0}, error)) return false;
    if (HasAdobeMark(jpeg)) return true;
    for (uint8& ink : picture->inks) ink = static_cast<uint8>(255 - ink);
    return true;
}

} // namespace orvane::tools
