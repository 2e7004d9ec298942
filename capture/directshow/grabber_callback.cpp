#include "capture/directshow/grabber_callback.h"

namespace orvane {

HRESULT GrabberCallback::QueryInterface(REFIID id, void** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (id == __uuidof(ISampleGrabberCB) || id == __uuidof(IUnknown)) {
        *object = static_cast<ISampleGrabberCB*>(this);
        return S_OK;
    }
    const std::lock_guard lock(mutex_);
    if (graph_ == nullptr) return E_NOINTERFACE;
    if (id == IID_IVideoWindow) *object = graph_->videoWindow.Get();
    if (id == __uuidof(IMediaControl)) *object = graph_->mediaControl.Get();
    if (id == kDeviceControlId) *object = graph_->deviceControl.Get();
    return *object != nullptr ? S_OK : E_NOINTERFACE;
}

HRESULT GrabberCallback::SampleCB(double /*time*/, IMediaSample* /*sample*/) { return E_NOTIMPL; }

HRESULT GrabberCallback::BufferCB(double time, BYTE* buffer, LONG length) {
    const std::lock_guard lock(mutex_);
    if (sink_ != nullptr) sink_->BufferCB(time, buffer, static_cast<int32>(length));
    return S_OK;
}

void GrabberCallback::Serve(const GraphInterfaces* graph, FrameSink* sink) {
    const std::lock_guard lock(mutex_);
    graph_ = graph;
    sink_ = sink;
}

} // namespace orvane
