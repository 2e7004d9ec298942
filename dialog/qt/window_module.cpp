// The one function of orvane-window.so. The library and its module come from one build; a module of another
// version is none.
#include "dialog/qt/window_system_qt.h"

extern "C" __attribute__((visibility("default"))) void* orvane_window_system(orvane::int32 version) {
    return version == orvane::kWindowSeamVersion ? &orvane::QtWindowSystem() : nullptr;
}
