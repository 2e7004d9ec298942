// The provider of the cameras for tests, and the list of them.
#include "tests/capture/gstreamer/test_cameras.h"

#include "tests/capture/gstreamer/camera_habits.h"

#include <algorithm>
#include <mutex>
#include <set>

namespace orvane::test {
namespace {

constexpr const char* kPattern640 = "video/x-raw, format=BGRx, width=640, height=480, framerate=30/1";

const CameraHabits kCameras[] = {
    {kPortraitCamera, "Drawn portrait", "/test/portrait", kPattern640, Habit::delivers, true},
    {kPatternCamera, nullptr, nullptr, "video/x-raw, format=RGB, width=322, height=242, framerate=30/1"},
    {kManyFormsCamera, "Many forms", "/test/forms",
     "video/x-raw, format=BGRx, width=1920, height=1080, framerate=30/1;"
     "video/x-raw, format={ BGRx, RGB }, width=640, height=480, framerate={ 15/1, 30/1 };"
     "video/x-raw, format=BGRx, width=1280, height=960, framerate=10/1;"
     "video/x-raw, format=BGRx, width=1280, height=720, framerate=[ 5/1, 30/1 ];"
     "video/x-raw, format=BGRx, width=640, height=480, framerate=60/1"},
    {kSecretiveCamera, nullptr, "/test/secret", nullptr},
    {kJpegCamera, "JPEG", "/test/jpeg", "image/jpeg, width=400, height=300, framerate=30/1", Habit::delivers, false,
     true, true},
    {kRecordedCamera, nullptr, nullptr, kPattern640, Habit::delivers, false, false},
    {kRefusingCamera, nullptr, nullptr, kPattern640, Habit::refuses},
    {kBusyCamera, nullptr, nullptr, kPattern640, Habit::isBusy},
    {kBusyLaterCamera, nullptr, nullptr, kPattern640, Habit::isBusyLater},
    {kSilentCamera, nullptr, nullptr, kPattern640, Habit::staysSilent},
    {kDyingCamera, nullptr, nullptr, kPattern640, Habit::dies},
    {kEndingCamera, nullptr, nullptr, kPattern640, Habit::ends},
    {kResizingCamera, nullptr, nullptr, kPattern640, Habit::changesSize},
    {kHugeCamera, nullptr, nullptr, "video/x-raw, format=BGRx, width=40000, height=40000, framerate=30/1"},
    {kStuckOpeningCamera, nullptr, nullptr, kPattern640, Habit::sticksInOpening},
    {kStuckRunningCamera, nullptr, nullptr, kPattern640, Habit::sticksInRunning},
};

/// The cameras that are plugged in.
struct Plugged {
    std::mutex mutex;
    std::set<std::string> names;
};

Plugged& ThePlugged() {
    static auto* plugged = new Plugged; // a search may be under way when the process ends
    return *plugged;
}

bool IsPlugged(const char* name) {
    const std::lock_guard lock(ThePlugged().mutex);
    return ThePlugged().names.count(name) != 0;
}

GstStructure* PropertiesOf(const CameraHabits& habits) {
    GstStructure* properties = gst_structure_new_empty("test-camera");
    if (habits.product != nullptr)
        gst_structure_set(properties, "device.product.name", G_TYPE_STRING, habits.product, nullptr);
    if (habits.path != nullptr) gst_structure_set(properties, "device.path", G_TYPE_STRING, habits.path, nullptr);
    return properties;
}

} // namespace
} // namespace orvane::test

using namespace orvane::test;

struct OrvaneTestDevice {
    GstDevice parent;
    const CameraHabits* habits;
};
struct OrvaneTestDeviceClass {
    GstDeviceClass parent;
};
static GType orvane_test_device_get_type();
G_DEFINE_TYPE(OrvaneTestDevice, orvane_test_device, GST_TYPE_DEVICE)

static void orvane_test_device_init(OrvaneTestDevice* device) { device->habits = nullptr; }

static void orvane_test_device_class_init(OrvaneTestDeviceClass* made) {
    GST_DEVICE_CLASS(made)->create_element = [](GstDevice* device, const gchar*) {
        return NewCameraElement(*reinterpret_cast<OrvaneTestDevice*>(device)->habits);
    };
}

struct OrvaneTestProvider {
    GstDeviceProvider parent;
};
struct OrvaneTestProviderClass {
    GstDeviceProviderClass parent;
};
static GType orvane_test_provider_get_type();
G_DEFINE_TYPE(OrvaneTestProvider, orvane_test_provider, GST_TYPE_DEVICE_PROVIDER)

static void orvane_test_provider_init(OrvaneTestProvider* /*provider*/) {}

static GList* Probe(GstDeviceProvider* /*provider*/) {
    GList* devices = nullptr;
    for (const CameraHabits& habits : kCameras) {
        if (!IsPlugged(habits.name)) continue;
        GstCaps* caps = habits.caps != nullptr ? gst_caps_from_string(habits.caps) : gst_caps_new_any();
        GstStructure* properties = PropertiesOf(habits);
        gpointer device = g_object_new(orvane_test_device_get_type(), "display-name", habits.name, "device-class",
                                       "Video/Source", "caps", caps, "properties", properties, nullptr);
        static_cast<OrvaneTestDevice*>(device)->habits = &habits;
        gst_structure_free(properties);
        gst_caps_unref(caps);
        devices = g_list_append(devices, device);
    }
    return devices;
}

static void orvane_test_provider_class_init(OrvaneTestProviderClass* made) {
    GST_DEVICE_PROVIDER_CLASS(made)->probe = Probe;
    gst_device_provider_class_set_static_metadata(GST_DEVICE_PROVIDER_CLASS(made), "Test cameras", "Source/Video",
                                                  "Cameras for tests", "Orvane");
}

namespace orvane::test {

void RegisterTestCameras() {
    static const bool registered = [] {
        PlugAllTestCameras();
        gst_init(nullptr, nullptr);
        // Before all others, so that the first camera of all is one of these.
        return gst_device_provider_register(nullptr, "orvanetestcameras", GST_RANK_PRIMARY + 1000,
                                            orvane_test_provider_get_type()) != FALSE;
    }();
    if (!registered) std::abort(); // without cameras no test can say anything
}

void PlugTestCameras(const std::vector<std::string>& names) {
    const std::lock_guard lock(ThePlugged().mutex);
    ThePlugged().names = {names.begin(), names.end()};
}

void PlugAllTestCameras() {
    std::vector<std::string> names;
    for (const CameraHabits& habits : kCameras) names.emplace_back(habits.name);
    PlugTestCameras(names);
}

int32 TestCameraIndex(const std::string& name) {
    GstDeviceMonitor* monitor = gst_device_monitor_new();
    gst_device_monitor_add_filter(monitor, "Video/Source", nullptr);
    GList* devices = gst_device_monitor_get_devices(monitor);
    int32 index = -1, position = 0;
    for (GList* at = devices; at != nullptr; at = at->next, ++position) {
        gchar* found = gst_device_get_display_name(GST_DEVICE(at->data));
        if (index == -1 && name == found) index = position;
        g_free(found);
    }
    g_list_free_full(devices, gst_object_unref);
    gst_object_unref(monitor);
    return index;
}

} // namespace orvane::test
