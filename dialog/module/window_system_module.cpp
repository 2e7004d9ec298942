// The window system of liborvane.so: it stands in a module beside the library, which is opened when a session
// first needs a window. Without a usable module a session works as one without windows.
#include "dialog/none/no_windows.h"
#include "dialog/window_system.h"
#include "platform/load_module.h"

#include <cstdio>

namespace orvane {
namespace {

constexpr const char* kModule = "orvane-window.so";
constexpr const char* kEntry = "orvane_window_system";

/// The module's window system; null, and a word to whoever reads the errors, where there is none.
WindowSystem* LoadFace() {
    std::string problem;
    void* entry = FindInModule(kModule, kEntry, problem);
    if (entry != nullptr) {
        void* face = reinterpret_cast<void* (*)(int32)>(entry)(kWindowSeamVersion);
        if (face != nullptr) return static_cast<WindowSystem*>(face);
        problem = std::string(kModule) + " is of another version";
    }
    std::fprintf(stderr, "orvane: working without a window: %s\n", problem.c_str());
    return nullptr;
}

class ModuleWindows final : public WindowSystem {
public:
    bool CanOpenWindow() override { return Face().CanOpenWindow(); }
    QuickViewWindow* CreateQuickView(WindowEvents& events, void* owner) override {
        return Face().CreateQuickView(events, owner);
    }
    void ShowFaceConfirm(PictureView thumbnail) override { Face().ShowFaceConfirm(thumbnail); }
    void ShowMessage(const char* text) override { Face().ShowMessage(text); }
    bool IsWindowHandle(void* handle) override { return Face().IsWindowHandle(handle); }
    void WriteText(uint8* bits, int32 width, int32 height, const TextMark& mark) override {
        Face().WriteText(bits, width, height, mark);
    }

private:
    WindowSystem& Face() {
        static WindowSystem* const loaded = LoadFace(); // once, whatever thread comes first
        if (loaded != nullptr) return *loaded;
        return none_;
    }

    NoWindows none_;
};

} // namespace

WindowSystem& ThisWindowSystem() {
    static ModuleWindows system;
    return system;
}

} // namespace orvane
