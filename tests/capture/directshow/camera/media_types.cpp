#include "tests/capture/directshow/camera/media_types.h"
#include "tests/capture/directshow/camera/counted.h"
#include "tests/capture/directshow/camera/frames.h"

#include <cstdlib>
#include <cstring>

namespace orvane::test {
namespace {

constexpr REFERENCE_TIME kFrameTime = 333333;

class TypeList final : public Counted<IEnumMediaTypes> {
public:
    TypeList(std::vector<FrameForm> forms, std::size_t next) : forms_(std::move(forms)), next_(next) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (id != __uuidof(IUnknown) && id != __uuidof(IEnumMediaTypes)) return E_NOINTERFACE;
        AddRef();
        *object = static_cast<IEnumMediaTypes*>(this);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Next(ULONG count, AM_MEDIA_TYPE** types, ULONG* fetched) override {
        ULONG given = 0;
        for (; given < count && next_ < forms_.size(); ++given, ++next_) types[given] = NewType(forms_[next_]);
        if (fetched != nullptr) *fetched = given;
        return given == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const std::size_t left = forms_.size() - next_;
        next_ += count < left ? count : left;
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        next_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumMediaTypes** copy) override {
        *copy = new TypeList(forms_, next_);
        return S_OK;
    }

private:
    std::vector<FrameForm> forms_;
    std::size_t next_;
};

} // namespace

bool MakeType(const FrameForm& form, AM_MEDIA_TYPE& type) {
    type = {};
    auto* const video = static_cast<VIDEOINFOHEADER*>(CoTaskMemAlloc(sizeof(VIDEOINFOHEADER)));
    if (video == nullptr) return false;
    *video = {};
    video->AvgTimePerFrame = kFrameTime;
    BITMAPINFOHEADER& header = video->bmiHeader;
    header.biSize = sizeof header;
    header.biWidth = form.width;
    header.biHeight = form.height;
    header.biPlanes = 1;
    header.biBitCount = 24;
    header.biSizeImage = static_cast<DWORD>(FrameStep(form.width) * std::abs(form.height));
    type.majortype = form.interleaved ? MEDIATYPE_Interleaved : MEDIATYPE_Video;
    type.subtype = form.interleaved ? MEDIASUBTYPE_dvsd : MEDIASUBTYPE_RGB24;
    type.bFixedSizeSamples = TRUE;
    type.lSampleSize = header.biSizeImage;
    type.formattype = FORMAT_VideoInfo;
    type.cbFormat = sizeof *video;
    type.pbFormat = reinterpret_cast<BYTE*>(video);
    return true;
}

bool CopyType(const AM_MEDIA_TYPE& from, AM_MEDIA_TYPE& to) {
    to = from;
    to.pbFormat = nullptr;
    if (from.cbFormat > 0) {
        to.pbFormat = static_cast<BYTE*>(CoTaskMemAlloc(from.cbFormat));
        if (to.pbFormat == nullptr) return false;
        std::memcpy(to.pbFormat, from.pbFormat, from.cbFormat);
    }
    if (to.pUnk != nullptr) to.pUnk->AddRef();
    return true;
}

void EmptyType(AM_MEDIA_TYPE& type) {
    if (type.cbFormat > 0) CoTaskMemFree(type.pbFormat);
    if (type.pUnk != nullptr) type.pUnk->Release();
    type = {};
}

AM_MEDIA_TYPE* NewType(const FrameForm& form) {
    auto* const type = static_cast<AM_MEDIA_TYPE*>(CoTaskMemAlloc(sizeof(AM_MEDIA_TYPE)));
    if (type == nullptr || MakeType(form, *type)) return type;
    CoTaskMemFree(type);
    return nullptr;
}

bool Fits(const AM_MEDIA_TYPE* type, const FrameForm& form) {
    if (type == nullptr) return true;
    AM_MEDIA_TYPE own;
    if (!MakeType(form, own)) return false;
    bool fits = type->majortype == GUID_NULL || type->majortype == own.majortype;
    fits = fits && (type->subtype == GUID_NULL || type->subtype == own.subtype);
    if (fits && type->formattype != GUID_NULL && type->formattype != own.formattype) fits = false;
    if (fits && type->formattype == FORMAT_VideoInfo && type->cbFormat >= sizeof(VIDEOINFOHEADER)) {
        const auto& theirs = reinterpret_cast<const VIDEOINFOHEADER*>(type->pbFormat)->bmiHeader;
        fits = theirs.biWidth == form.width && theirs.biHeight == form.height;
    }
    EmptyType(own);
    return fits;
}

IEnumMediaTypes* MakeTypeList(std::vector<FrameForm> forms) { return new TypeList(std::move(forms), 0); }

} // namespace orvane::test
