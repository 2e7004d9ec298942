#include "tools/support/picture_codec.h"

#include "tools/support/colour_profile.h"
#include "tools/support/jpeg_end.h"
#include "tools/support/jpeg_segments.h"
#include "tools/support/orientation.h"
#include "tools/support/upright.h"
#include "tools/support/windows/com.h"

#include <wincodec.h>

#include <limits>
#include <string>
#include <vector>

namespace orvane::tools {
namespace {

const GUID& ContainerOf(PictureFormat format) {
    switch (format) {
    case PictureFormat::jpeg:
        return GUID_ContainerFormatJpeg;
    case PictureFormat::png:
        return GUID_ContainerFormatPng;
    case PictureFormat::bmp:
        return GUID_ContainerFormatBmp;
    case PictureFormat::tiff:
        break;
    }
    return GUID_ContainerFormatTiff;
}

std::string HexText(HRESULT result) {
    static const char* const kDigits = "0123456789ABCDEF";
    std::string text;
    for (int shift = 28; shift >= 0; shift -= 4) {
        text += kDigits[static_cast<unsigned long>(result) >> shift & 15];
    }
    return text;
}

bool Fail(HRESULT result, const char* otherwise, std::string* error) {
    *error = result == E_OUTOFMEMORY ? "not enough memory" : otherwise;
    return false;
}

bool CreateFactory(ComPtr<IWICImagingFactory>& factory, std::string* error) {
    const HRESULT result = CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                            IID_IWICImagingFactory, factory.ReceiveVoid());
    if (SUCCEEDED(result)) return true;
    return Fail(result, ("Windows has no picture codecs (" + HexText(result) + ")").c_str(), error);
}

/// What is known before a decoder is asked; some decode at once.
bool CheckHeader(const std::string& content, std::string* error) {
    const std::optional<HeaderSize> size = SizeInHeader(content);
    if (!size || size->width < 1 || size->height < 1) {
        *error = kDamaged;
    } else if (!IsPictureSizeAllowed(size->width, size->height)) {
        *error = TooLargeText(size->width, size->height);
    } else if (!ReachesItsEnd(content) || content.size() > std::numeric_limits<DWORD>::max()) {
        *error = kBreaksOff;
    } else {
        return true;
    }
    return false;
}

/// The first picture of the file. The file is whole as far as its format lets anybody tell, so whatever
/// a decoder minds is damage.
HRESULT OpenFrame(IWICImagingFactory& factory, PictureFormat format, const std::string& content,
                  ComPtr<IWICStream>& stream, ComPtr<IWICBitmapFrameDecode>& frame) {
    ComPtr<IWICBitmapDecoder> decoder;
    auto* bytes = reinterpret_cast<BYTE*>(const_cast<char*>(content.data()));
    HRESULT result = factory.CreateStream(stream.Receive());
    if (SUCCEEDED(result)) result = stream->InitializeFromMemory(bytes, static_cast<DWORD>(content.size()));
    // Windows' own decoder of this format and no other, which the machine may have been given.
    if (SUCCEEDED(result)) {
        result = factory.CreateDecoder(ContainerOf(format), &GUID_VendorMicrosoftBuiltIn, decoder.Receive());
    }
    if (SUCCEEDED(result)) result = decoder->Initialize(stream.Get(), WICDecodeMetadataCacheOnDemand);
    if (SUCCEEDED(result)) result = decoder->GetFrame(0, frame.Receive());
    return result;
}

/// All pixels as blue, green, red, alpha.
HRESULT CopyPixels(IWICImagingFactory& factory, IWICBitmapFrameDecode& frame, StoredRows* rows,
                   std::vector<uint8>* pixels) {
    ComPtr<IWICFormatConverter> converter;
    HRESULT result = factory.CreateFormatConverter(converter.Receive());
    if (SUCCEEDED(result)) {
        result = converter->Initialize(&frame, GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone, nullptr, 0.0,
                                       WICBitmapPaletteTypeCustom);
    }
    if (FAILED(result)) return result;
    rows->pixel = 4;
    rows->hasAlpha = true;
    rows->row = std::ptrdiff_t{4} * rows->width;
    // Within the caps this is below 2^31.
    pixels->resize(static_cast<std::size_t>(rows->row) * static_cast<std::size_t>(rows->height));
    rows->pixels = pixels->data();
    return converter->CopyPixels(nullptr, static_cast<UINT>(rows->row), static_cast<UINT>(pixels->size()),
                                 pixels->data());
}

/// The first profile among what the frame tells of its colours; empty for none.
HRESULT ReadProfile(IWICImagingFactory& factory, IWICBitmapFrameDecode& frame, std::string* profile) {
    UINT count = 0;
    if (FAILED(frame.GetColorContexts(0, nullptr, &count)) || count == 0) return S_OK;
    std::vector<ComPtr<IWICColorContext>> owners(count);
    std::vector<IWICColorContext*> contexts;
    for (ComPtr<IWICColorContext>& owner : owners) {
        const HRESULT result = factory.CreateColorContext(owner.Receive());
        if (FAILED(result)) return result;
        contexts.push_back(owner.Get());
    }
    HRESULT result = frame.GetColorContexts(count, contexts.data(), &count);
    for (UINT i = 0; SUCCEEDED(result) && i < count && profile->empty(); ++i) {
        WICColorContextType type = WICColorContextUninitialized;
        UINT size = 0;
        if (FAILED(contexts[i]->GetType(&type)) || type != WICColorContextProfile) continue;
        if (FAILED(contexts[i]->GetProfileBytes(0, nullptr, &size))) continue;
        std::string bytes(size, '\0');
        result = contexts[i]->GetProfileBytes(size, reinterpret_cast<BYTE*>(bytes.data()), &size);
        if (SUCCEEDED(result)) profile->swap(bytes);
    }
    return result;
}

/// Whatever colours the file has become those of a portrait.
void ConvertColours(IWICImagingFactory& factory, IWICBitmapFrameDecode& frame, const std::string& content,
                    const StoredRows& stored, std::vector<uint8>& pixels, std::string* warning) {
    if (!NamesProfile(content)) return;
    std::string profile;
    if (IsJpeg(content)) {
        profile = JpegProfile(content);
    } else if (FAILED(ReadProfile(factory, frame, &profile))) {
        profile.clear();
    }
    ColourRows rows;
    rows.pixels = pixels.data();
    rows.width = stored.width;
    rows.height = stored.height;
    rows.pixel = stored.pixel;
    rows.row = stored.row;
    rows.redFirst = stored.redFirst;
    if (profile.empty() || !ConvertToSrgb(profile, rows)) *warning = kUnusableProfile;
}

HRESULT SetOption(IPropertyBag2& options, const wchar_t* name, const VARIANT& value) {
    std::wstring text = name;
    PROPBAG2 property{};
    property.pstrName = text.data();
    VARIANT copy = value;
    return options.Write(1, &property, &copy);
}

HRESULT SetJpegOptions(IPropertyBag2& options, const EncoderSettings& settings) {
    VARIANT value;
    VariantInit(&value);
    value.vt = VT_R4;
    value.fltVal = static_cast<float>(settings.quality) / 100;
    const HRESULT result = SetOption(options, L"ImageQuality", value);
    if (FAILED(result) || settings.chroma == Chroma::quarter) return result;
    VariantInit(&value);
    value.vt = VT_UI1;
    value.bVal =
        static_cast<BYTE>(settings.chroma == Chroma::full ? WICJpegYCrCbSubsampling444 : WICJpegYCrCbSubsampling422);
    return SetOption(options, L"JpegYCrCbSubsampling", value);
}

/// Whether an encoder that was asked for more colour gave it; some take the wish and pass it over.
bool HasChroma(const std::string& jpeg, Chroma chroma) {
    if (chroma == Chroma::quarter) return true;
    const std::optional<JpegFrame> frame = FrameOf(jpeg);
    return frame && frame->sampling == (chroma == Chroma::full ? 0x11U : 0x21U);
}

/// Rows go to the encoder one by one, since the last one is the picture's first.
HRESULT WriteRows(Picture& picture, IWICBitmapFrameEncode& frame) {
    HRESULT result = S_OK;
    for (int32 y = picture.height - 1; y >= 0 && SUCCEEDED(result); --y) {
        result = frame.WritePixels(1, static_cast<UINT>(picture.step), static_cast<UINT>(picture.step),
                                   RowAt(picture.pixels.data(), picture.step, y));
    }
    return result;
}

HRESULT Encode(PictureFormat format, Picture& picture, const EncoderSettings& settings, IWICImagingFactory& factory,
               IStream& stream) {
    ComPtr<IWICBitmapEncoder> encoder;
    ComPtr<IWICBitmapFrameEncode> frame;
    ComPtr<IPropertyBag2> options;
    WICPixelFormatGUID pixelFormat = GUID_WICPixelFormat24bppBGR;
    HRESULT result = factory.CreateEncoder(ContainerOf(format), nullptr, encoder.Receive());
    if (SUCCEEDED(result)) result = encoder->Initialize(&stream, WICBitmapEncoderNoCache);
    if (SUCCEEDED(result)) result = encoder->CreateNewFrame(frame.Receive(), options.Receive());
    if (SUCCEEDED(result) && format == PictureFormat::jpeg) result = SetJpegOptions(*options.Get(), settings);
    if (SUCCEEDED(result)) result = frame->Initialize(options.Get());
    if (SUCCEEDED(result)) {
        result = frame->SetSize(static_cast<UINT>(picture.width), static_cast<UINT>(picture.height));
    }
    if (SUCCEEDED(result)) result = frame->SetPixelFormat(&pixelFormat);
    if (SUCCEEDED(result) && pixelFormat != GUID_WICPixelFormat24bppBGR) result = WINCODEC_ERR_UNSUPPORTEDPIXELFORMAT;
    if (SUCCEEDED(result) && settings.dpi && format == PictureFormat::tiff) {
        result = frame->SetResolution(*settings.dpi, *settings.dpi);
    }
    if (SUCCEEDED(result)) result = WriteRows(picture, *frame.Get());
    if (SUCCEEDED(result)) result = frame->Commit();
    if (SUCCEEDED(result)) result = encoder->Commit();
    return result;
}

/// What has been written to a stream in memory.
HRESULT ReadBack(IStream& stream, std::string* bytes) {
    STATSTG about{};
    HRESULT result = stream.Stat(&about, STATFLAG_NONAME);
    if (SUCCEEDED(result)) result = stream.Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr);
    if (FAILED(result)) return result;
    bytes->resize(static_cast<std::size_t>(about.cbSize.QuadPart));
    ULONG read = 0;
    result = stream.Read(bytes->data(), static_cast<ULONG>(bytes->size()), &read);
    return SUCCEEDED(result) && read != bytes->size() ? E_FAIL : result;
}

} // namespace

bool DecodePicture(const std::string&, const std::string& content, Picture* picture, std::string* warning,
                   std::string* error) {
    const std::optional<PictureFormat> format = FormatOfContent(content);
    if (!format || !CheckHeader(content, error)) {
        if (!format) *error = kUnknownFormat;
        return false;
    }
    const ComApartment apartment;
    ComPtr<IWICImagingFactory> factory;
    if (!CreateFactory(factory, error)) return false;
    ComPtr<IWICStream> stream;
    ComPtr<IWICBitmapFrameDecode> frame;
    UINT width = 0;
    UINT height = 0;
    HRESULT result = OpenFrame(*factory.Get(), *format, content, stream, frame);
    if (SUCCEEDED(result)) result = frame->GetSize(&width, &height);
    if (FAILED(result) || width == 0 || height == 0) return Fail(result, kDamaged, error);
    if (!IsPictureSizeAllowed(width, height)) {
        *error = TooLargeText(width, height);
        return false;
    }
    StoredRows rows;
    rows.width = static_cast<int32>(width);
    rows.height = static_cast<int32>(height);
    std::vector<uint8> pixels;
    result = CopyPixels(*factory.Get(), *frame.Get(), &rows, &pixels);
    if (FAILED(result)) return Fail(result, kDamaged, error);
    ConvertColours(*factory.Get(), *frame.Get(), content, rows, pixels, warning);
    *picture = UprightPicture(rows, NotedOrientation(content));
    return true;
}

bool EncodePixels(PictureFormat format, Picture& picture, const EncoderSettings& settings, std::string* encoded,
                  std::string* error) {
    const ComApartment apartment;
    ComPtr<IWICImagingFactory> factory;
    if (!CreateFactory(factory, error)) return false;
    ComPtr<IStream> stream;
    HRESULT result = CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive());
    if (SUCCEEDED(result)) result = Encode(format, picture, settings, *factory.Get(), *stream.Get());
    if (SUCCEEDED(result)) result = ReadBack(*stream.Get(), encoded);
    if (FAILED(result)) return Fail(result, ("cannot be encoded (" + HexText(result) + ")").c_str(), error);
    if (format != PictureFormat::jpeg || HasChroma(*encoded, settings.chroma)) return true;
    *error = "cannot be encoded: the JPEG encoder of this Windows knows only --chroma 420";
    return false;
}

} // namespace orvane::tools
