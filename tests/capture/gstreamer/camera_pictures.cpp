#include "tests/capture/gstreamer/camera_pictures.h"

#include "tests/support/face_scene.h"

#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>

#include <map>
#include <mutex>
#include <utility>

namespace orvane::test {
namespace {

constexpr int32 kScenes = 2 * kFaceMotion; // the face goes to and fro

Scene MakePortrait(ImageSize size, int32 phase) {
    const int32 moved = phase <= kFaceMotion ? phase : kScenes - phase;
    const auto scaled = [&](int32 pixels) { return pixels * size.height / 480; };
    return FaceScene(size.width, size.height, scaled(kPortraitFace.x) + moved, scaled(kPortraitFace.y),
                     scaled(kPortraitFace.width), static_cast<std::uint32_t>(phase + 1));
}

/// Drawn once, since noise takes longer than a frame may; kept to the end, since a camera may outlive the test.
const Scene& Portrait(ImageSize size, int32 number) {
    using Scenes = std::map<std::pair<std::pair<int32, int32>, int32>, Scene>;
    static std::mutex mutex;
    static Scenes& drawn = *new Scenes;
    const int32 phase = number % kScenes;
    const std::lock_guard lock(mutex);
    const auto key = std::pair(std::pair(size.width, size.height), phase);
    auto found = drawn.find(key);
    if (found == drawn.end()) found = drawn.emplace(key, MakePortrait(size, phase)).first;
    return found->second;
}

} // namespace

TestColour TestPattern(ImageSize size, int32 x, int32 y) {
    const bool right = 2 * x >= size.width, low = 2 * y >= size.height;
    if (6 * x < size.width && 6 * y < size.height) return {0, 0, 0};
    if (!low) return right ? TestColour{0, 255, 0} : TestColour{0, 0, 255};
    return right ? TestColour{255, 255, 255} : TestColour{255, 0, 0};
}

bool DrawFrame(GstBuffer* buffer, const GstVideoInfo& info, bool portrait, int32 number) {
    GstVideoFrame frame;
    GstVideoInfo own = info;
    if (gst_video_frame_map(&frame, &own, buffer, GST_MAP_WRITE) == FALSE) return false;
    const ImageSize size{info.width, info.height};
    const auto put = [&](int32 x, int32 y, TestColour colour) {
        const auto level = [&](int component) -> uint8& {
            auto* data = static_cast<uint8*>(GST_VIDEO_FRAME_COMP_DATA(&frame, component));
            return data[std::ptrdiff_t{GST_VIDEO_FRAME_COMP_STRIDE(&frame, component)} * y +
                        std::ptrdiff_t{GST_VIDEO_FRAME_COMP_PSTRIDE(&frame, component)} * x];
        };
        level(0) = colour.red;
        level(1) = colour.green;
        level(2) = colour.blue;
    };
    const Scene* scene = portrait ? &Portrait(size, number) : nullptr;
    for (int32 y = 0; y < size.height; ++y) {
        for (int32 x = 0; x < size.width; ++x) {
            if (scene == nullptr) {
                put(x, y, TestPattern(size, x, y));
                continue;
            }
            const uint8* pixel =
                scene->rows.data() + std::ptrdiff_t{scene->Step()} * (size.height - 1 - y) + std::ptrdiff_t{3} * x;
            put(x, y, {pixel[0], pixel[1], pixel[2]});
        }
    }
    gst_video_frame_unmap(&frame);
    return true;
}

GstBuffer* PackedPattern(ImageSize size) {
    GstElement* encoder = gst_element_factory_make("jpegenc", nullptr);
    if (encoder == nullptr) return nullptr;
    GstElement *source = gst_element_factory_make("appsrc", nullptr),
               *sink = gst_element_factory_make("appsink", nullptr);
    GstElement* pipeline = gst_pipeline_new(nullptr);
    gst_bin_add_many(GST_BIN(pipeline), source, encoder, sink, nullptr);
    gst_element_link_many(source, encoder, sink, nullptr);
    GstVideoInfo info;
    gst_video_info_set_format(&info, GST_VIDEO_FORMAT_BGRx, static_cast<guint>(size.width),
                              static_cast<guint>(size.height));
    GstCaps* caps = gst_video_info_to_caps(&info);
    g_object_set(source, "caps", caps, "format", GST_FORMAT_TIME, nullptr);
    gst_caps_unref(caps);
    GstBuffer* picture = gst_buffer_new_allocate(nullptr, info.size, nullptr);
    DrawFrame(picture, info, false, 0);
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    gst_app_src_push_buffer(GST_APP_SRC(source), picture);
    GstSample* sample = gst_app_sink_pull_sample(GST_APP_SINK(sink));
    GstBuffer* packed = sample != nullptr ? gst_buffer_copy_deep(gst_sample_get_buffer(sample)) : nullptr;
    if (sample != nullptr) gst_sample_unref(sample);
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(pipeline);
    return packed;
}

} // namespace orvane::test
