// Where the controls of the quick view stand, in pixels.
#pragma once

#include <windows.h>

namespace orvane {

/// The dialog font that a window's controls are laid out for, in pixels.
struct BaseUnits {
    int width;  // of an average character
    int height; // of a character's cell
};

/// No font is smaller than this for the layout: the largest preview would reach under the buttons.
inline constexpr BaseUnits kLeastBaseUnits{6, 13};

/// What the system laid a dialog out by.
BaseUnits BaseUnitsOf(HWND dialog);

/// Lays the quick view's controls out anew and gives the dialog its size around the same middle.
void LayOutQuickView(HWND dialog, BaseUnits units);

/// Gives a window the size that leaves it a client area of these pixels.
void SizeAround(HWND window, int width, int height);

} // namespace orvane
