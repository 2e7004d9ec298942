// A host for the tests: host LIBRARY KIND loads the library at run time and asks it for live portraits. What happened
// goes to standard output, a line each. KIND is "plain", or "gst" for a host that uses GStreamer itself.
#include "orvane/orvane.h"
#include "tests/capture/gstreamer/test_cameras.h"

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>

namespace {

void* g_library;

template <typename Function>
Function* Find(const char* name, Function*) {
    return reinterpret_cast<Function*>(dlsym(g_library, name));
}
#define CALL(function) Find(#function, static_cast<decltype(function)*>(nullptr))

/// What the process does when it crashes: its own, the system's or a sanitizer's affair, and not the toolkit's.
void (*CrashHandler())(int) {
    struct sigaction crash {};
    sigaction(SIGSEGV, nullptr, &crash);
    return crash.sa_handler;
}

void Live(int32_t device) {
    const int32_t result = CALL(orv_DetectFaceLive)(device);
    std::printf("live %d: %d\n", static_cast<int>(device), static_cast<int>(result));
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) return 2;
    g_library = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
    if (g_library == nullptr) {
        std::printf("%s\n", dlerror());
        return 2;
    }
    const auto before = CrashHandler();
    const bool cameras = std::strcmp(arguments[2], "gst") == 0;
    if (cameras) {
        orvane::test::RegisterTestCameras();
        orvane::test::PlugTestCameras({orvane::test::kPortraitCamera, orvane::test::kBusyCamera});
    }
    CALL(orv_InitDLL)();
    if (cameras) {
        Live(0);
        Live(1);
        Live(0);
    } else {
        Live(1000); // a developer's machine may have a camera, which stays off
    }
    Live(1000);
    CALL(orv_ReleaseDLL)();
    if (cameras) std::printf("in use %d\n", static_cast<int>(orvane::test::TestCamerasInUse()));
    std::printf("locale %s\n", std::setlocale(LC_ALL, nullptr));
    std::printf("signals %s\n", CrashHandler() == before ? "untouched" : "taken");
    dlclose(g_library);
    return 0;
}
