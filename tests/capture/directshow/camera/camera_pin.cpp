#include "tests/capture/directshow/camera/camera_pin.h"
#include "tests/capture/directshow/camera/counted.h"

#include <cstring>
#include <cwchar>
#include <iterator>
#include <string_view>

namespace orvane::test {

CameraPin::CameraPin(IBaseFilter& filter, TestCamera camera, PinUse use)
    : filter_(filter), camera_(camera), use_(use), frames_(LoadFrames()) {
    if (use == PinUse::smallPreview) frames_ = {PatternFrame(160, 120)};
    FrameForm form{false, frames_[0].width, frames_[0].height};
    if (camera == TestCamera::topDown) form.height = -form.height;
    if (camera == TestCamera::noSize) form.width = 0;
    if (use == PinUse::interleavedPreview || use == PinUse::interleavedCapture)
        forms_.push_back({true, form.width, form.height});
    forms_.push_back(form);
}

CameraPin::~CameraPin() {
    Stop();
    Disconnect();
}

const wchar_t* CameraPin::Name() const {
    switch (use_) {
    case PinUse::capture:
    case PinUse::interleavedCapture:
        return L"Capture";
    case PinUse::smallPreview:
        return L"Small preview";
    case PinUse::refusedPreview:
        return L"Refused preview";
    case PinUse::videoPort:
        return L"Video port";
    default:
        return L"Preview";
    }
}

HRESULT CameraPin::QueryInterface(REFIID id, void** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    // The properties of pins, which only the system's library of constants names.
    constexpr GUID kProperties{0x31EFAC30, 0x515C, 0x11D0, {0xA9, 0xAA, 0x00, 0xAA, 0x00, 0x61, 0xBE, 0x93}};
    if (id == __uuidof(IUnknown) || id == __uuidof(IPin)) *object = static_cast<IPin*>(this);
    if (id == kProperties) *object = static_cast<PinProperties*>(this);
    if (id == __uuidof(IAMStreamConfig)) *object = static_cast<IAMStreamConfig*>(this);
    // What steers an external device; nobody calls it, so that any object will do.
    constexpr GUID kControl{0xB5730A90, 0x1A2C, 0x11CF, {0x8C, 0x23, 0x00, 0xAA, 0x00, 0x6B, 0x68, 0x14}};
    if (id == kControl && use_ == PinUse::videoPort) {
        *object = static_cast<IPin*>(this);
        ++g_live.controls;
    }
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

HRESULT CameraPin::Connect(IPin* receiver, const AM_MEDIA_TYPE* type) {
    if (receiver == nullptr) return E_POINTER;
    if (receiver_ != nullptr) return VFW_E_ALREADY_CONNECTED;
    // What goes to a video port never passes through the graph.
    const bool refuses = use_ == PinUse::videoPort || use_ == PinUse::refusedPreview;
    if (refuses || camera_ == TestCamera::noConnection) return VFW_E_NO_ACCEPTABLE_TYPES;
    for (const FrameForm& form : forms_) {
        if (!form.interleaved && Fits(type, form) && SUCCEEDED(ConnectAs(*receiver, form))) return S_OK;
    }
    return VFW_E_NO_ACCEPTABLE_TYPES;
}

HRESULT CameraPin::ConnectAs(IPin& receiver, const FrameForm& form) {
    if (!MakeType(form, type_)) return E_OUTOFMEMORY;
    receiver_ = &receiver; // the other side may ask already
    receiver_->AddRef();
    HRESULT result = receiver.ReceiveConnection(this, &type_);
    if (FAILED(result)) {
        Disconnect();
        return result;
    }
    result = receiver.QueryInterface(__uuidof(IMemInputPin), reinterpret_cast<void**>(&input_));
    if (SUCCEEDED(result)) result = AgreeOnMemory(*input_);
    if (FAILED(result)) {
        receiver.Disconnect();
        Disconnect();
    }
    return result;
}

HRESULT CameraPin::AgreeOnMemory(IMemInputPin& input) {
    HRESULT result = input.GetAllocator(&allocator_);
    if (FAILED(result)) {
        result = CoCreateInstance(CLSID_MemoryAllocator, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IMemAllocator),
                                  reinterpret_cast<void**>(&allocator_));
    }
    if (FAILED(result)) return result;
    const LONG row = FrameStep(frames_[0].width);
    ALLOCATOR_PROPERTIES wanted{4, static_cast<LONG>(frames_[0].pixels.size()) + row, 1, 0}, actual{};
    result = allocator_->SetProperties(&wanted, &actual);
    if (SUCCEEDED(result)) result = input.NotifyAllocator(allocator_, FALSE);
    return result;
}

HRESULT CameraPin::ReceiveConnection(IPin*, const AM_MEDIA_TYPE*) { return E_UNEXPECTED; }

HRESULT CameraPin::Disconnect() {
    if (receiver_ == nullptr) return S_FALSE;
    if (allocator_ != nullptr) allocator_->Release();
    if (input_ != nullptr) input_->Release();
    receiver_->Release();
    allocator_ = nullptr;
    input_ = nullptr;
    receiver_ = nullptr;
    EmptyType(type_);
    return S_OK;
}

HRESULT CameraPin::ConnectedTo(IPin** pin) {
    if (pin == nullptr) return E_POINTER;
    *pin = receiver_;
    if (receiver_ == nullptr) return VFW_E_NOT_CONNECTED;
    receiver_->AddRef();
    return S_OK;
}

HRESULT CameraPin::ConnectionMediaType(AM_MEDIA_TYPE* type) {
    if (type == nullptr) return E_POINTER;
    *type = {};
    if (receiver_ == nullptr) return VFW_E_NOT_CONNECTED;
    return CopyType(type_, *type) ? S_OK : E_OUTOFMEMORY;
}

HRESULT CameraPin::QueryPinInfo(PIN_INFO* info) {
    if (info == nullptr) return E_POINTER;
    *info = {};
    info->pFilter = &filter_;
    filter_.AddRef();
    info->dir = PINDIR_OUTPUT;
    std::wstring_view(Name()).copy(info->achName, std::size(info->achName) - 1); // the rest is zero
    return S_OK;
}

HRESULT CameraPin::QueryDirection(PIN_DIRECTION* direction) {
    *direction = PINDIR_OUTPUT;
    return S_OK;
}

HRESULT CameraPin::QueryId(LPWSTR* id) {
    const std::size_t size = (std::wcslen(Name()) + 1) * sizeof(wchar_t);
    *id = static_cast<LPWSTR>(CoTaskMemAlloc(size));
    if (*id == nullptr) return E_OUTOFMEMORY;
    std::memcpy(*id, Name(), size);
    return S_OK;
}

HRESULT CameraPin::QueryAccept(const AM_MEDIA_TYPE* type) {
    for (const FrameForm& form : forms_) {
        if (Fits(type, form)) return S_OK;
    }
    return S_FALSE;
}

HRESULT CameraPin::EnumMediaTypes(IEnumMediaTypes** list) {
    *list = MakeTypeList(forms_);
    return S_OK;
}

HRESULT CameraPin::QueryInternalConnections(IPin**, ULONG*) { return E_NOTIMPL; }

HRESULT CameraPin::Get(REFGUID set, DWORD id, void*, DWORD, void* data, DWORD size, DWORD* returned) {
    if (set != AMPROPSETID_Pin) return E_PROP_SET_UNSUPPORTED;
    if (id != AMPROPERTY_PIN_CATEGORY) return E_PROP_ID_UNSUPPORTED;
    if (returned != nullptr) *returned = sizeof(GUID);
    if (data == nullptr) return S_OK;
    if (size < sizeof(GUID)) return E_UNEXPECTED;
    const bool records = use_ == PinUse::capture || use_ == PinUse::interleavedCapture;
    const GUID category = records                     ? PIN_CATEGORY_CAPTURE
                          : use_ == PinUse::videoPort ? PIN_CATEGORY_VIDEOPORT
                                                      : PIN_CATEGORY_PREVIEW;
    std::memcpy(data, &category, sizeof category);
    return S_OK;
}

HRESULT CameraPin::QuerySupport(REFGUID set, DWORD id, DWORD* support) {
    if (set != AMPROPSETID_Pin) return E_PROP_SET_UNSUPPORTED;
    if (id != AMPROPERTY_PIN_CATEGORY) return E_PROP_ID_UNSUPPORTED;
    constexpr DWORD kGet = 1;
    if (support != nullptr) *support = kGet;
    return S_OK;
}

} // namespace orvane::test
