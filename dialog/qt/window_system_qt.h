// The window system over the toolkit.
#pragma once

#include "session/window.h"

namespace orvane {

/// Always the same object.
WindowSystem& QtWindowSystem();

} // namespace orvane
