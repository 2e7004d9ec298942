#include "capture/gstreamer/camera_pipeline.h"

#include <gst/app/gstappsink.h>
#include <gst/video/video.h>

#include <atomic>
#include <cstdio>

namespace orvane {
namespace {

GstFlowReturn OnSample(GstAppSink* sink, gpointer link) {
    const GstOwner<GstSample> sample(gst_app_sink_try_pull_sample(sink, 0));
    if (sample != nullptr) static_cast<CameraLink*>(link)->gate.Take(sample.get());
    return GST_FLOW_OK;
}

/// Nobody reads the bus: an end is noted, and no message stays.
GstBusSyncReply OnMessage(GstBus* /*bus*/, GstMessage* message, gpointer link) {
    const GstMessageType type = GST_MESSAGE_TYPE(message);
    if (type == GST_MESSAGE_ERROR || type == GST_MESSAGE_EOS) static_cast<CameraLink*>(link)->state.Broke();
    gst_message_unref(message);
    return GST_BUS_DROP;
}

GstPadProbeReturn OnEvent(GstPad* /*pad*/, GstPadProbeInfo* info, gpointer link) {
    if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_CAPS)
        static_cast<CameraLink*>(link)->state.FormSettled();
    return GST_PAD_PROBE_OK;
}

/// A device that asks what it may deliver is told the chosen form, as long as that is among what it offers. No
/// filter stands in its way: what it delivers otherwise is scaled.
GstPadProbeReturn OnQuery(GstPad* /*pad*/, GstPadProbeInfo* info, gpointer chosen) {
    GstQuery* query = GST_PAD_PROBE_INFO_QUERY(info);
    if (GST_QUERY_TYPE(query) != GST_QUERY_CAPS) return GST_PAD_PROBE_OK;
    auto* wanted = static_cast<GstCaps*>(chosen);
    GstCaps* offered = nullptr;
    gst_query_parse_caps(query, &offered);
    const CapsOwner answer(offered != nullptr ? gst_caps_intersect(wanted, offered) : gst_caps_ref(wanted));
    if (gst_caps_is_empty(answer.get())) return GST_PAD_PROBE_OK;
    gst_query_set_caps_result(query, answer.get());
    return GST_PAD_PROBE_HANDLED;
}

void OnDecoded(GstElement* /*decoder*/, GstPad* pad, gpointer converter) {
    const GstOwner<GstPad> sink(gst_element_get_static_pad(GST_ELEMENT(converter), "sink"));
    if (gst_pad_is_linked(sink.get()) == FALSE) gst_pad_link(pad, sink.get());
}

void ForgetConverter(gpointer converter, GClosure* /*closure*/) { gst_object_unref(converter); }
void ForgetCaps(gpointer caps) { gst_caps_unref(static_cast<GstCaps*>(caps)); }

/// Adds an element to the pipeline, which owns it; null where it can't be had.
GstElement* Add(GstElement* pipeline, GstElement* element) {
    if (element != nullptr) gst_bin_add(GST_BIN(pipeline), element);
    return element;
}

/// The same with a new element; what is not installed is told once.
GstElement* AddNew(GstElement* pipeline, const char* kind) {
    static std::atomic<bool> told{false};
    GstElement* element = Add(pipeline, gst_element_factory_make(kind, nullptr));
    if (element == nullptr && !told.exchange(true))
        std::fprintf(stderr, "orvane: working without a camera: GStreamer's \"%s\" is not installed\n", kind);
    return element;
}

bool Watch(GstElement* device, const CameraForm& form, CameraLink& link) {
    const GstOwner<GstPad> pad(gst_element_get_static_pad(device, "src"));
    if (pad == nullptr) return false;
    gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, OnEvent, &link, nullptr);
    if (gst_caps_is_any(form.caps.get())) return true;
    constexpr auto kAsked = static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM | GST_PAD_PROBE_TYPE_PUSH);
    gst_pad_add_probe(pad.get(), kAsked, OnQuery, gst_caps_ref(form.caps.get()), ForgetCaps);
    return true;
}

/// Links the device to the converter, through a decoder that finds out by itself what it decodes.
bool LinkPacked(GstElement* pipeline, GstElement* device, GstElement* converter) {
    GstElement* decoder = AddNew(pipeline, "decodebin");
    if (decoder == nullptr) return false;
    // A decoder in hardware may leave its pictures where the processor can't read them.
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(decoder), "force-sw-decoders") != nullptr)
        g_object_set(decoder, "force-sw-decoders", TRUE, nullptr);
    g_signal_connect_data(decoder, "pad-added", G_CALLBACK(OnDecoded), gst_object_ref(converter), ForgetConverter,
                          static_cast<GConnectFlags>(0));
    return gst_element_link(device, decoder) != FALSE;
}

void SetUpSink(GstElement* sink, ImageSize size, CameraLink& link) {
    // Square pixels: what was wider or narrower gets borders, and no face is stretched.
    const CapsOwner caps(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "BGR", "width", G_TYPE_INT,
                                             size.width, "height", G_TYPE_INT, size.height, "pixel-aspect-ratio",
                                             GST_TYPE_FRACTION, 1, 1, nullptr));
    // Nothing waits: not a frame for its time, not a change of state for a frame, not the device for a slow sink.
    g_object_set(sink, "caps", caps.get(), "max-buffers", 1U, "drop", TRUE, "sync", FALSE, "async", FALSE, "qos", FALSE,
                 "enable-last-sample", FALSE, nullptr);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_sample = OnSample;
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, &link, nullptr);
}

void SetUpPipeline(GstElement* pipeline, CameraLink& link) {
    const GstOwner<GstBus> bus(gst_element_get_bus(pipeline));
    gst_bus_set_sync_handler(bus.get(), OnMessage, &link, nullptr);
    // A clock that can't be lost, since nobody would hear of that.
    const GstOwner<GstClock> clock(gst_system_clock_obtain());
    gst_pipeline_use_clock(GST_PIPELINE(pipeline), clock.get());
}

} // namespace

ElementOwner BuildPipeline(GstDevice* device, const CameraForm& form, CameraLink& link) {
    ElementOwner pipeline(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
    GstElement* camera = Add(pipeline.get(), gst_device_create_element(device, nullptr));
    GstElement* converter = camera != nullptr ? AddNew(pipeline.get(), "videoconvert") : nullptr;
    GstElement* scaler = converter != nullptr ? AddNew(pipeline.get(), "videoscale") : nullptr;
    GstElement* sink = scaler != nullptr ? AddNew(pipeline.get(), "appsink") : nullptr;
    if (sink == nullptr) return nullptr;
    SetUpPipeline(pipeline.get(), link);
    SetUpSink(sink, form.size, link);
    if (!Watch(camera, form, link)) return nullptr;
    if (gst_element_link_many(converter, scaler, sink, nullptr) == FALSE) return nullptr;
    const bool linked =
        form.packed ? LinkPacked(pipeline.get(), camera, converter) : gst_element_link(camera, converter) != FALSE;
    return linked ? std::move(pipeline) : nullptr;
}

void EndPipeline(ElementOwner pipeline) {
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    const GstOwner<GstBus> bus(gst_element_get_bus(pipeline.get()));
    gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
}

} // namespace orvane
