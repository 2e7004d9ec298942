// The video of liborvane.so: it stands in a module beside the library, which is opened when a session first
// asks for a camera. Without a usable module no camera is found.
#include "capture/video_system.h"
#include "platform/load_module.h"

#include <cstdio>

namespace orvane {
namespace {

constexpr const char* kModule = "orvane-camera.so";
constexpr const char* kEntry = "orvane_video_system";

/// The module's video; null, and a word to whoever reads the errors, where there is none.
VideoSystem* LoadVideo() {
    std::string problem;
    void* entry = FindInModule(kModule, kEntry, problem);
    if (entry != nullptr) {
        void* video = reinterpret_cast<void* (*)(int32)>(entry)(kVideoSeamVersion);
        if (video != nullptr) return static_cast<VideoSystem*>(video);
        problem = std::string(kModule) + " is of another version";
    }
    std::fprintf(stderr, "orvane: working without a camera: %s\n", problem.c_str());
    return nullptr;
}

class ModuleVideo final : public VideoSystem {
public:
    VideoSource* CreateVideoSource() override {
        static VideoSystem* const loaded = LoadVideo(); // once, whatever thread comes first
        return loaded == nullptr ? nullptr : loaded->CreateVideoSource();
    }
};

} // namespace

VideoSystem& ThisVideoSystem() {
    static ModuleVideo system;
    return system;
}

} // namespace orvane
