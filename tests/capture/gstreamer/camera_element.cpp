// The element of a camera for tests: a push source that draws, and fails as it is told.
#include "tests/capture/gstreamer/camera_habits.h"
#include "tests/capture/gstreamer/camera_pictures.h"

#include <gst/base/gstpushsrc.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace orvane::test {
namespace {

std::atomic<int32> g_inUse{0};

/// Where cameras are stuck.
class Trap {
public:
    void Enter() {
        constexpr std::chrono::seconds kNoTestTakesLonger(60);
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, kNoTestTakesLonger, [this] { return m_open; });
    }
    void Set(bool open) {
        const std::lock_guard lock(m_mutex);
        m_open = open;
        m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_open = false;
};

Trap& TheTrap() {
    static auto* trap = new Trap; // what is stuck when the process ends still looks at it
    return *trap;
}

/// What an element knows. Its threads come one after the other.
struct Knowledge {
    std::mutex mutex; // guards all below
    std::condition_variable changed;
    const CameraHabits* habits = nullptr;
    GstVideoInfo form{};
    int32 frames = 0;
    bool unlocked = false;
    GstBuffer* packed = nullptr; // what a camera with JPEG pictures delivers
};

constexpr ImageSize kPackedSize{400, 300};

} // namespace
} // namespace orvane::test

using namespace orvane;
using namespace orvane::test;

struct OrvaneTestCamera {
    GstPushSrc parent;
    std::atomic<Knowledge*> knowledge; // set when the element is made
};
struct OrvaneTestCameraClass {
    GstPushSrcClass parent;
};
static GType orvane_test_camera_get_type();
G_DEFINE_TYPE(OrvaneTestCamera, orvane_test_camera, GST_TYPE_PUSH_SRC)

namespace {

Knowledge& Of(gpointer element) { return *reinterpret_cast<OrvaneTestCamera*>(element)->knowledge.load(); }

const CameraHabits& HabitsOf(gpointer element) {
    const std::lock_guard lock(Of(element).mutex);
    return *Of(element).habits;
}

/// The class that the camera's own stands on.
gpointer ParentClass() { return g_type_class_peek(GST_TYPE_PUSH_SRC); }

void Finalise(GObject* object) {
    {
        const std::lock_guard lock(Of(object).mutex); // whoever had it last is through
        gst_clear_buffer(&Of(object).packed);
    }
    delete reinterpret_cast<OrvaneTestCamera*>(object)->knowledge.load();
    --g_inUse;
    G_OBJECT_CLASS(ParentClass())->finalize(object);
}

GstStateChangeReturn ChangeState(GstElement* element, GstStateChange change) {
    if (change == GST_STATE_CHANGE_NULL_TO_READY) {
        const Habit habit = HabitsOf(element).habit;
        if (habit == Habit::sticksInOpening) TheTrap().Enter();
        if (habit == Habit::isBusy) {
            GST_ELEMENT_ERROR(element, RESOURCE, BUSY, ("another program has the camera"), (nullptr));
            return GST_STATE_CHANGE_FAILURE;
        }
    }
    return GST_ELEMENT_CLASS(ParentClass())->change_state(element, change);
}

/// The device's own forms.
GstCaps* GetCaps(GstBaseSrc* source, GstCaps* filter) {
    const CameraHabits& habits = HabitsOf(source);
    GstCaps* caps = nullptr;
    if (habits.caps == nullptr) {
        caps = gst_caps_from_string("video/x-raw, format=BGRx, width=400, height=300, framerate=30/1");
    } else {
        caps = gst_caps_from_string(habits.caps);
    }
    if (habits.habit == Habit::changesSize) {
        GstCaps* other = gst_caps_copy(caps);
        gst_caps_set_simple(other, "width", G_TYPE_INT, 320, "height", G_TYPE_INT, 240, nullptr);
        gst_caps_append(caps, other);
    }
    if (filter == nullptr) return caps;
    GstCaps* both = gst_caps_intersect_full(filter, caps, GST_CAPS_INTERSECT_FIRST);
    gst_caps_unref(caps);
    return both;
}

gboolean SetCaps(GstBaseSrc* source, GstCaps* caps) {
    if (HabitsOf(source).habit == Habit::isBusyLater) {
        GST_ELEMENT_ERROR(source, RESOURCE, BUSY, ("another program has the camera"), (nullptr));
        return FALSE;
    }
    const std::lock_guard lock(Of(source).mutex);
    if (Of(source).packed != nullptr) return TRUE;
    return gst_video_info_from_caps(&Of(source).form, caps);
}

gboolean Unlock(GstBaseSrc* source) {
    const std::lock_guard lock(Of(source).mutex);
    Of(source).unlocked = true;
    Of(source).changed.notify_all();
    return TRUE;
}

gboolean UnlockStop(GstBaseSrc* source) {
    const std::lock_guard lock(Of(source).mutex);
    Of(source).unlocked = false;
    return TRUE;
}

/// Waits for the next frame's time, or for as long as nobody calls. False when the wait was broken off.
bool WaitForFrame(Knowledge& knowledge, bool forEver) {
    std::unique_lock lock(knowledge.mutex);
    const auto unlocked = [&] { return knowledge.unlocked; };
    if (!forEver) return !knowledge.changed.wait_for(lock, std::chrono::milliseconds(33), unlocked);
    knowledge.changed.wait(lock, unlocked);
    return false;
}

bool ChangeSize(GstBaseSrc* source) {
    GstCaps* caps = gst_pad_get_current_caps(GST_BASE_SRC_PAD(source));
    GstCaps* changed = gst_caps_copy(caps);
    gst_caps_unref(caps);
    gst_caps_set_simple(changed, "width", G_TYPE_INT, 320, "height", G_TYPE_INT, 240, nullptr);
    const bool done = gst_base_src_set_caps(source, changed) != FALSE;
    gst_caps_unref(changed);
    return done;
}

GstFlowReturn Create(GstPushSrc* source, GstBuffer** buffer) {
    *buffer = nullptr;
    Knowledge& knowledge = Of(source);
    const CameraHabits& habits = HabitsOf(source);
    if (habits.habit == Habit::sticksInRunning) TheTrap().Enter();
    if (!WaitForFrame(knowledge, habits.habit == Habit::staysSilent)) return GST_FLOW_FLUSHING;
    int32 number = 0;
    {
        const std::lock_guard lock(knowledge.mutex);
        number = knowledge.frames++;
    }
    if (number >= kFramesBefore && habits.habit == Habit::ends) return GST_FLOW_EOS;
    if (number >= kFramesBefore && habits.habit == Habit::dies) {
        GST_ELEMENT_ERROR(source, RESOURCE, READ, ("the camera was unplugged"), (nullptr));
        return GST_FLOW_ERROR;
    }
    if (number == kFramesBefore && habits.habit == Habit::changesSize && !ChangeSize(GST_BASE_SRC(source)))
        return GST_FLOW_NOT_NEGOTIATED;
    GstVideoInfo form;
    {
        const std::lock_guard lock(knowledge.mutex);
        form = knowledge.form;
        if (knowledge.packed != nullptr) *buffer = gst_buffer_copy(knowledge.packed);
    }
    if (*buffer != nullptr) return GST_FLOW_OK;
    *buffer = gst_buffer_new_allocate(nullptr, form.size, nullptr);
    return DrawFrame(*buffer, form, habits.portrait, number) ? GST_FLOW_OK : GST_FLOW_ERROR;
}

} // namespace

static void orvane_test_camera_init(OrvaneTestCamera* camera) {
    camera->knowledge = new Knowledge;
    ++g_inUse;
    gst_base_src_set_format(GST_BASE_SRC(camera), GST_FORMAT_TIME);
    gst_base_src_set_do_timestamp(GST_BASE_SRC(camera), TRUE);
}

static void orvane_test_camera_class_init(OrvaneTestCameraClass* made) {
    G_OBJECT_CLASS(made)->finalize = Finalise;
    GST_ELEMENT_CLASS(made)->change_state = ChangeState;
    GST_BASE_SRC_CLASS(made)->get_caps = GetCaps;
    GST_BASE_SRC_CLASS(made)->set_caps = SetCaps;
    GST_BASE_SRC_CLASS(made)->unlock = Unlock;
    GST_BASE_SRC_CLASS(made)->unlock_stop = UnlockStop;
    GST_PUSH_SRC_CLASS(made)->create = Create;
    gst_element_class_set_static_metadata(GST_ELEMENT_CLASS(made), "Test camera", "Source/Video",
                                          "Draws, and fails as it is told", "Orvane");
    GstCaps* caps = gst_caps_from_string("video/x-raw, format={ BGRx, RGB, BGR, RGBx }; image/jpeg");
    gst_element_class_add_pad_template(GST_ELEMENT_CLASS(made),
                                       gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, caps));
    gst_caps_unref(caps);
}

namespace orvane::test {

GstElement* NewCameraElement(const CameraHabits& habits) {
    if (habits.habit == Habit::refuses) return nullptr;
    GstBuffer* packed = habits.jpeg ? PackedPattern(kPackedSize) : nullptr;
    if (habits.jpeg && packed == nullptr) return nullptr;
    auto* camera = static_cast<GstElement*>(g_object_new(orvane_test_camera_get_type(), nullptr));
    gst_base_src_set_live(GST_BASE_SRC(camera), habits.live);
    const std::lock_guard lock(Of(camera).mutex);
    Of(camera).habits = &habits;
    Of(camera).packed = packed;
    return camera;
}

int32 TestCamerasInUse() { return g_inUse; }
void ReleaseStuckCameras() { TheTrap().Set(true); }
void HoldStuckCameras() { TheTrap().Set(false); }

} // namespace orvane::test
