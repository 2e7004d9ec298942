// The four faces of a skinned button, side by side in one picture.
#pragma once

#include "dialog/qt/loaded_picture.h"
#include "session/window.h"

namespace orvane {

class CKbcBmp {
public:
    /// Reads a file; the sizes are then the picture's, or 0.
    bool Load(const char* path);
    /// Draws a face (0 normal, 1 hover, 2 pressed, 3 disabled) with its upper left corner at a place; pixels
    /// of the transparent colour are left out.
    void DrawFace(QPainter& painter, int face, int x, int y, ColourRef transparent) const;

    CLoadedPicture m_image;
    int m_width = 0;
    int m_height = 0;
    int m_faceWidth = 0; // a quarter of the width, rounded down
};

} // namespace orvane
