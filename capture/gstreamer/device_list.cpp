#include "capture/gstreamer/device_list.h"

#include "capture/gstreamer/device_formats.h"
#include "capture/gstreamer/wide_text.h"

#include <chrono>
#include <condition_variable>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace orvane {
namespace {

constexpr std::chrono::seconds kPatience(10);

std::optional<std::wstring> Wide(const char* text) {
    if (text == nullptr || *text == '\0') return {};
    return WideText(text);
}

/// The first property that is given, of names that differ from one kind of device to the next.
std::optional<std::wstring> Property(const GstStructure* properties, std::initializer_list<const char*> names) {
    if (properties == nullptr) return {};
    for (const char* name : names) {
        if (auto text = Wide(gst_structure_get_string(properties, name))) return text;
    }
    return {};
}

CameraDevice Described(DeviceOwner device) {
    CameraDevice camera;
    camera.caps.reset(gst_device_get_caps(device.get()));
    camera.friendlyName = Wide(TextOwner(gst_device_get_display_name(device.get())).get());
    const GstOwner<GstStructure> properties(gst_device_get_properties(device.get()));
    camera.description = Property(properties.get(), {"device.product.name", "device.description"});
    camera.devicePath =
        Property(properties.get(), {"api.v4l2.path", "device.path", "object.path", "api.libcamera.path", "node.name"});
    camera.formats = FormatsOf(camera.caps.get());
    camera.device = std::move(device);
    return camera;
}

std::vector<CameraDevice> Look() {
    const GstOwner<GstDeviceMonitor> monitor(gst_device_monitor_new());
    gst_device_monitor_add_filter(monitor.get(), "Video/Source", nullptr);
    // Not started: one look at what is there, and nothing that waits for news. The order is the drivers' own.
    GList* found = gst_device_monitor_get_devices(monitor.get());
    std::vector<DeviceOwner> devices;
    for (GList* at = found; at != nullptr; at = at->next) devices.emplace_back(GST_DEVICE(at->data));
    g_list_free(found);
    std::vector<CameraDevice> cameras;
    cameras.reserve(devices.size());
    for (DeviceOwner& device : devices) cameras.push_back(Described(std::move(device)));
    return cameras;
}

/// A look at the devices that may take longer than anybody waits for it.
struct Search {
    std::mutex mutex; // guards all below
    std::condition_variable changed;
    std::vector<CameraDevice> cameras;
    bool done = false;
};

/// Drivers that listen for news do so in a context of this thread's, and leave the host's own alone.
class OwnContext {
public:
    OwnContext() { g_main_context_push_thread_default(m_context); }
    ~OwnContext() {
        g_main_context_pop_thread_default(m_context);
        g_main_context_unref(m_context);
    }
    OwnContext(const OwnContext&) = delete;
    OwnContext& operator=(const OwnContext&) = delete;

private:
    GMainContext* const m_context = g_main_context_new();
};

} // namespace

std::vector<CameraDevice> FindCameras() {
    const auto search = std::make_shared<Search>();
    std::thread looking([search]() noexcept {
        std::vector<CameraDevice> cameras;
        try {
            const OwnContext context;
            cameras = Look();
        } catch (...) { // exhausted memory: no cameras
        }
        const std::lock_guard lock(search->mutex);
        search->cameras = std::move(cameras);
        search->done = true;
        search->changed.notify_all();
    });
    std::unique_lock lock(search->mutex);
    const bool done = search->changed.wait_for(lock, kPatience, [&] { return search->done; });
    std::vector<CameraDevice> cameras = std::move(search->cameras);
    lock.unlock();
    if (done) {
        looking.join();
    } else {
        looking.detach();
    }
    return cameras;
}

} // namespace orvane
