#include "capture/directshow/stream_formats.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string_view>

namespace orvane {
namespace {

constexpr LONG kLongestSide = 1'000'000;

void PutName(std::string_view name, VideoFormat& format) {
    const std::size_t length = std::min(name.size(), sizeof format.pixels - 1);
    std::fill(std::begin(format.pixels), std::end(format.pixels), '\0');
    name.copy(format.pixels, length);
}

void PutPixelName(const GUID& subtype, VideoFormat& format) {
    const struct {
        const GUID& subtype;
        std::string_view name;
    } plain[] = {{MEDIASUBTYPE_RGB24, "RGB24"},   {MEDIASUBTYPE_RGB32, "RGB32"},   {MEDIASUBTYPE_ARGB32, "ARGB32"},
                 {MEDIASUBTYPE_RGB565, "RGB565"}, {MEDIASUBTYPE_RGB555, "RGB555"}, {MEDIASUBTYPE_RGB8, "RGB8"}};
    for (const auto& known : plain) {
        if (subtype == known.subtype) return PutName(known.name, format);
    }
    // All other types carry four letters in front of a number that is the same for all.
    char letters[4];
    std::memcpy(letters, &subtype.Data1, sizeof letters);
    GUID common = MEDIATYPE_Video;
    common.Data1 = subtype.Data1;
    const auto printable = [](char letter) { return letter >= ' ' && letter <= '~'; };
    const bool named = subtype == common && std::all_of(std::begin(letters), std::end(letters), printable);
    PutName(named ? std::string_view(letters, sizeof letters) : "?", format);
}

/// Of two lengths of a frame the range's, where it is one.
LONG Greatest(LONG own, LONG least, LONG greatest) { return greatest > least ? greatest : own; }

ComPtr<IAMStreamConfig> StreamConfigOf(IMoniker& device) {
    ComPtr<IAMStreamConfig> config;
    ComPtr<IBaseFilter> filter;
    if (FAILED(device.BindToObject(nullptr, nullptr, __uuidof(IBaseFilter), filter.PutVoid()))) return config;
    ComPtr<ICaptureGraphBuilder2> builder;
    if (FAILED(builder.Create(CLSID_CaptureGraphBuilder2, CLSCTX_ALL))) return config;
    for (const GUID* category : {&PIN_CATEGORY_CAPTURE, &PIN_CATEGORY_PREVIEW}) {
        ComPtr<IPin> pin;
        const HRESULT found = builder->FindPin(filter.Get(), PINDIR_OUTPUT, category, nullptr, FALSE, 0, pin.Put());
        if (SUCCEEDED(found) && SUCCEEDED(config.QueryFrom(pin))) return config;
    }
    return config;
}

} // namespace

bool ToVideoFormat(const AM_MEDIA_TYPE& type, const VIDEO_STREAM_CONFIG_CAPS& caps, VideoFormat& format) {
    if (type.majortype != MEDIATYPE_Video) return false;
    // Types with the longer header list the same frames once more.
    const VIDEOINFOHEADER* const video = VideoInfoOf(type);
    if (video == nullptr) return false;
    const BITMAPINFOHEADER& header = video->bmiHeader;
    format = {};
    const LONG height = header.biHeight < -kLongestSide ? 0 : std::abs(header.biHeight);
    const LONG sides[] = {Greatest(header.biWidth, caps.MinOutputSize.cx, caps.MaxOutputSize.cx),
                          Greatest(height, caps.MinOutputSize.cy, caps.MaxOutputSize.cy)};
    if (*std::min_element(sides, sides + 2) < 1 || *std::max_element(sides, sides + 2) > kLongestSide) return false;
    format.width = static_cast<int32>(sides[0]);
    format.height = static_cast<int32>(sides[1]);
    constexpr LONGLONG kThousandSeconds = 10'000'000'000, kLeastInterval = 10; // in steps of 100 ns
    if (caps.MinFrameInterval >= kLeastInterval)
        format.framesIn1000s = static_cast<int32>(kThousandSeconds / caps.MinFrameInterval);
    PutPixelName(type.subtype, format);
    return true;
}

int32 ReadFormats(IMoniker& device, VideoFormat* formats, int32 capacity) {
    constexpr int kMostCaps = 10'000; // more are no list, but a mistake of the device
    alignas(VIDEO_STREAM_CONFIG_CAPS) BYTE block[1024];
    const ComPtr<IAMStreamConfig> config = StreamConfigOf(device);
    int count = 0, size = 0;
    if (!config || FAILED(config->GetNumberOfCapabilities(&count, &size))) return 0;
    // Other sizes belong to what is no video.
    if (size < static_cast<int>(sizeof(VIDEO_STREAM_CONFIG_CAPS)) || size > static_cast<int>(sizeof block)) return 0;
    int32 written = 0;
    for (int i = 0; i < std::min(count, kMostCaps) && written < capacity; ++i) {
        AM_MEDIA_TYPE* given = nullptr;
        std::memset(block, 0, sizeof block);
        if (config->GetStreamCaps(i, &given, block) != S_OK || given == nullptr) continue;
        MediaType type;
        type.Adopt(given);
        VIDEO_STREAM_CONFIG_CAPS caps;
        std::memcpy(&caps, block, sizeof caps);
        if (ToVideoFormat(type.Get(), caps, formats[written])) ++written;
    }
    return written;
}

} // namespace orvane
