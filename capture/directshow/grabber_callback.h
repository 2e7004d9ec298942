// What the graph calls with each frame: it hands the frame on to the sink, as long as there is one.
#pragma once

#include "capture/directshow/com_holders.h"
#include "capture/video_source.h"

#include <qedit.h>

#include <mutex>

namespace orvane {

/// The interfaces that a graph is held by, in the order in which they go.
struct GraphInterfaces {
    ComPtr<IUnknown> deviceControl; // of a device that can be steered; held and not used
    ComPtr<IVideoWindow> videoWindow;
    ComPtr<IMediaControl> mediaControl;
    ComPtr<ISampleGrabber> grabber;
};

/// The system's number for interfaces that steer an external device.
inline constexpr GUID kDeviceControlId{0xB5730A90, 0x1A2C, 0x11CF, {0x8C, 0x23, 0x00, 0xAA, 0x00, 0x6B, 0x68, 0x14}};

/// Its life is its owner's and takes no notice of references. The slots come in the interface's own order.
class GrabberCallback final : public ISampleGrabberCB {
public:
    GrabberCallback() = default;
    GrabberCallback(const GrabberCallback&) = delete;
    GrabberCallback& operator=(const GrabberCallback&) = delete;

    /// The object itself, and the interfaces of the graph that are there. No reference is taken for any of them.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE SampleCB(double time, IMediaSample* sample) override;
    /// A frame, on the thread that streams.
    HRESULT STDMETHODCALLTYPE BufferCB(double time, BYTE* buffer, LONG length) override;
    virtual ~GrabberCallback() = default;

    /// @param graph whose interfaces QueryInterface answers with; null for none
    /// @param sink where frames go; null for nowhere. Nobody calls the one before once this has returned.
    void Serve(const GraphInterfaces* graph, FrameSink* sink);

private:
    std::mutex mutex_; // held while the sink takes a frame
    const GraphInterfaces* graph_ = nullptr;
    FrameSink* sink_ = nullptr;
};

} // namespace orvane
