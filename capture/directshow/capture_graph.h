// The graph of one open camera: device, grabber, and whatever ends the stream.
#pragma once

#include "capture/directshow/grabber_callback.h"

#include <memory>

namespace orvane {

/// Held by the interfaces that are in use; with the last of them the graph goes, and with it the stream.
class CaptureGraph {
public:
    CaptureGraph() = default;
    ~CaptureGraph() { Close(); }
    CaptureGraph(const CaptureGraph&) = delete;
    CaptureGraph& operator=(const CaptureGraph&) = delete;

    /// Builds the graph of a device; there must be none. False, and there is none, where a step fails or where the
    /// frames have no usable size.
    bool Open(IMoniker& device, ImageSize& size);
    /// Puts the renderer's window out of sight and lets frames go to `sink`. False without a graph, and without a
    /// window to be put away.
    bool ConfigureWindow(OAHWND owner, FrameSink& sink);
    bool Run() { return Runs(&IMediaControl::Run); }
    bool Pause() { return Runs(&IMediaControl::Pause); }
    /// Takes the graph down. Nobody calls the sink once this has returned.
    void Close();

    bool IsOpen() const { return interfaces_.mediaControl.Get() != nullptr; }

private:
    bool Build(IMoniker& device, ImageSize& size);
    bool Runs(HRESULT (STDMETHODCALLTYPE IMediaControl::*change)());

    GraphInterfaces interfaces_;
    std::unique_ptr<GrabberCallback> callback_;
};

} // namespace orvane
