// An output pin of a played camera: connects, and delivers frames on a thread of its own.
#pragma once

#include "tests/capture/directshow/camera/camera_kinds.h"
#include "tests/capture/directshow/camera/frames.h"
#include "tests/capture/directshow/camera/media_types.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace orvane::test {

/// Properties of a pin, in the order that capture graphs call them in.
struct PinProperties : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, void* instance, DWORD instanceSize, void* data,
                                          DWORD size) = 0;
    virtual HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, void* instance, DWORD instanceSize, void* data,
                                          DWORD size, DWORD* returned) = 0;
    virtual HRESULT STDMETHODCALLTYPE QuerySupport(REFGUID set, DWORD id, DWORD* support) = 0;
};

/// The filter holds its pins, and their references are the filter's.
class CameraPin final : public IPin, public PinProperties, public IAMStreamConfig {
public:
    CameraPin(IBaseFilter& filter, TestCamera camera, PinUse use);
    virtual ~CameraPin();
    CameraPin(const CameraPin&) = delete;
    CameraPin& operator=(const CameraPin&) = delete;

    /// Starts the thread where the pin is connected; it delivers nothing yet.
    HRESULT Start();
    /// Ends it.
    void Stop();
    /// Lets frames go or holds them back.
    void Deliver(bool running, IReferenceClock* clock, REFERENCE_TIME start);

    const wchar_t* Name() const;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return filter_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return filter_.Release(); }

    HRESULT STDMETHODCALLTYPE Connect(IPin* receiver, const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE ReceiveConnection(IPin* connector, const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE Disconnect() override;
    HRESULT STDMETHODCALLTYPE ConnectedTo(IPin** pin) override;
    HRESULT STDMETHODCALLTYPE ConnectionMediaType(AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE QueryPinInfo(PIN_INFO* info) override;
    HRESULT STDMETHODCALLTYPE QueryDirection(PIN_DIRECTION* direction) override;
    HRESULT STDMETHODCALLTYPE QueryId(LPWSTR* id) override;
    HRESULT STDMETHODCALLTYPE QueryAccept(const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE EnumMediaTypes(IEnumMediaTypes** list) override;
    HRESULT STDMETHODCALLTYPE QueryInternalConnections(IPin** pins, ULONG* count) override;
    HRESULT STDMETHODCALLTYPE EndOfStream() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE BeginFlush() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE EndFlush() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE NewSegment(REFERENCE_TIME, REFERENCE_TIME, double) override { return S_OK; }

    HRESULT STDMETHODCALLTYPE Set(REFGUID, DWORD, void*, DWORD, void*, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, void* instance, DWORD instanceSize, void* data, DWORD size,
                                  DWORD* returned) override;
    HRESULT STDMETHODCALLTYPE QuerySupport(REFGUID set, DWORD id, DWORD* support) override;

    HRESULT STDMETHODCALLTYPE SetFormat(AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE GetFormat(AM_MEDIA_TYPE** type) override;
    HRESULT STDMETHODCALLTYPE GetNumberOfCapabilities(int* count, int* size) override;
    HRESULT STDMETHODCALLTYPE GetStreamCaps(int index, AM_MEDIA_TYPE** type, BYTE* caps) override;

private:
    HRESULT ConnectAs(IPin& receiver, const FrameForm& form);
    HRESULT AgreeOnMemory(IMemInputPin& input);
    void DeliverFrames();
    bool DeliverOne(const Frame& frame);

    IBaseFilter& filter_;
    const TestCamera camera_;
    const PinUse use_;
    std::vector<Frame> frames_;
    std::vector<FrameForm> forms_;

    IPin* receiver_ = nullptr;
    IMemInputPin* input_ = nullptr;
    IMemAllocator* allocator_ = nullptr;
    AM_MEDIA_TYPE type_{};

    std::mutex mutex_; // guards what follows
    std::condition_variable changed_;
    bool stopping_ = false;
    bool running_ = false;
    IReferenceClock* clock_ = nullptr;
    REFERENCE_TIME start_ = 0;
    std::thread thread_;
};

} // namespace orvane::test
