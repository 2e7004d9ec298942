#include "capture/directshow/capture_graph.h"
#include "capture/directshow/graph_classes.h"

#include <new>

namespace orvane {
namespace {

constexpr LONG kLongestSide = 32767;

/// Leads the stream through the grabber to the sink, or to the system's own renderer without one: by the preview
/// where there is one, else by what the device records.
bool RenderStream(ICaptureGraphBuilder2& builder, IBaseFilter* device, IBaseFilter* grabber, IBaseFilter* sink) {
    const struct {
        const GUID& category;
        const GUID& type;
    } ways[] = {{PIN_CATEGORY_PREVIEW, MEDIATYPE_Interleaved},
                {PIN_CATEGORY_PREVIEW, MEDIATYPE_Video},
                {PIN_CATEGORY_CAPTURE, MEDIATYPE_Video}};
    for (const auto& way : ways) {
        if (SUCCEEDED(builder.RenderStream(&way.category, &way.type, device, grabber, sink))) return true;
    }
    return false;
}

/// The size of the frames that the grabber gets. False for rows from the top, which no part of this system takes,
/// and for sizes that no picture has.
bool ReadSize(ISampleGrabber& grabber, ImageSize& size) {
    MediaType type;
    if (FAILED(grabber.GetConnectedMediaType(type.Put()))) return false;
    const VIDEOINFOHEADER* const video = VideoInfoOf(type.Get());
    if (video == nullptr) return false;
    const LONG width = video->bmiHeader.biWidth, height = video->bmiHeader.biHeight;
    if (width < 1 || height < 1 || width > kLongestSide || height > kLongestSide) return false;
    size = {static_cast<int32>(width), static_cast<int32>(height)};
    return true;
}

} // namespace

bool CaptureGraph::Open(IMoniker& device, ImageSize& size) {
    if (Build(device, size)) return true;
    Close();
    return false;
}

// What is declared first goes last: the graph after all that stands in it.
bool CaptureGraph::Build(IMoniker& device, ImageSize& size) {
    ComPtr<IGraphBuilder> graph;
    if (FAILED(graph.Create(CLSID_FilterGraph, CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER))) return false;
    ComPtr<IBaseFilter> source;
    if (FAILED(device.BindToObject(nullptr, nullptr, __uuidof(IBaseFilter), source.PutVoid()))) return false;
    if (FAILED(graph->AddFilter(source.Get(), L"Cap"))) return false;

    ComPtr<IBaseFilter> grabber;
    if (FAILED(grabber.Create(kSampleGrabberClass, CLSCTX_ALL))) return false;
    if (FAILED(interfaces_.grabber.QueryFrom(grabber))) return false;
    AM_MEDIA_TYPE wanted{};
    wanted.majortype = MEDIATYPE_Video;
    wanted.subtype = MEDIASUBTYPE_RGB24; // whatever the screen shows
    if (FAILED(interfaces_.grabber->SetMediaType(&wanted))) return false;
    if (FAILED(graph->AddFilter(grabber.Get(), L"Grabber"))) return false;

    ComPtr<ICaptureGraphBuilder2> builder;
    if (FAILED(builder.Create(CLSID_CaptureGraphBuilder2, CLSCTX_ALL))) return false;
    if (FAILED(builder->SetFiltergraph(graph.Get()))) return false;

    // What a device sends to a video port passes by the graph, whose own stream has nothing to show then.
    ComPtr<IPin> videoPort;
    ComPtr<IBaseFilter> sink;
    if (SUCCEEDED(builder->FindPin(source.Get(), PINDIR_OUTPUT, &PIN_CATEGORY_VIDEOPORT, nullptr, FALSE, 0,
                                   videoPort.Put()))) {
        if (FAILED(sink.Create(kNullRendererClass, CLSCTX_ALL))) return false;
        if (FAILED(graph->AddFilter(sink.Get(), L"NULL renderer"))) return false;
    }
    if (!RenderStream(*builder.Get(), source.Get(), grabber.Get(), sink.Get())) return false;
    if (!ReadSize(*interfaces_.grabber.Get(), size)) return false;

    // Frames pass on to the callback, and the filter keeps none.
    if (FAILED(interfaces_.grabber->SetBufferSamples(FALSE))) return false;
    if (FAILED(interfaces_.grabber->SetOneShot(FALSE))) return false;

    if (FAILED(interfaces_.mediaControl.QueryFrom(graph))) return false;
    if (FAILED(interfaces_.videoWindow.QueryFrom(graph, IID_IVideoWindow))) return false;
    interfaces_.videoWindow->put_AutoShow(OAFALSE); // fails where no renderer has a window, which is as well
    builder->FindInterface(&PIN_CATEGORY_VIDEOPORT, &MEDIATYPE_Video, source.Get(), kDeviceControlId,
                           interfaces_.deviceControl.PutVoid());
    return true;
}

bool CaptureGraph::ConfigureWindow(OAHWND owner, FrameSink& sink) {
    if (!IsOpen()) return false;
    IVideoWindow& window = *interfaces_.videoWindow.Get();
    if (FAILED(window.put_Owner(owner))) return false;
    window.put_Left(0);
    window.put_Top(0);
    window.put_WindowStyle(WS_CHILD | WS_CLIPSIBLINGS);
    window.put_Visible(OAFALSE);
    if (callback_ == nullptr) callback_.reset(new (std::nothrow) GrabberCallback);
    if (callback_ == nullptr) return false;
    callback_->Serve(&interfaces_, &sink);
    constexpr LONG kBufferCB = 1;
    return SUCCEEDED(interfaces_.grabber->SetCallback(callback_.get(), kBufferCB));
}

bool CaptureGraph::Runs(HRESULT (STDMETHODCALLTYPE IMediaControl::*change)()) {
    return IsOpen() && SUCCEEDED((interfaces_.mediaControl.Get()->*change)());
}

void CaptureGraph::Close() {
    if (callback_ != nullptr) callback_->Serve(nullptr, nullptr);
    interfaces_.deviceControl.Release();
    interfaces_.videoWindow.Release();
    interfaces_.mediaControl.Release();
    // The stream has ended with the graph. Should another program's part hold the grabber still, it may call
    // once more: then the callback, which leads nowhere now, stays for it.
    if (interfaces_.grabber.Release() != 0) static_cast<void>(callback_.release());
    callback_.reset();
}

} // namespace orvane
