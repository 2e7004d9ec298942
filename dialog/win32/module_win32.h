// What every window of the library asks of the system first: the module that its templates lie in, and a
// thread that counts in plain pixels.
#pragma once

#include <windows.h>

namespace orvane {

/// The module that this code was loaded with: the library itself, never the program that uses it.
HINSTANCE ThisModule();

/// While one lives, windows that the thread opens are laid out at 96 dots an inch, and the system scales
/// them; so a picture's pixels and the controls keep their proportions in a host of any awareness. Nothing
/// on a system that knows no such choice.
class PlainPixels {
public:
    PlainPixels();
    ~PlainPixels();
    PlainPixels(const PlainPixels&) = delete;
    PlainPixels& operator=(const PlainPixels&) = delete;

private:
    void* before_ = nullptr; // the thread's context until then
};

} // namespace orvane
