// The window system of this build. Each face under dialog/ defines the function once; CMake picks one.
#pragma once

#include "session/window.h"

namespace orvane {

/// The window system that sessions of this process use. Always the same object.
WindowSystem& ThisWindowSystem();

} // namespace orvane
