// The four faces of a skinned button, side by side in one picture.
#pragma once

#include "dialog/win32/loaded_picture.h"

namespace orvane {

/// Holds a strip as it was loaded; each draw renders it anew. Sizes are 0 until one is loaded.
class CKbcBmp {
public:
    /// False for a file that CLoadedPicture refuses or whose faces have no width.
    bool Load(const wchar_t* path);
    /// Draws the face `index` (0 normal, 1 hover, 2 pressed, 3 disabled) with its upper left corner at
    /// (x, y) and leaves out the pixels of the transparent colour. Nothing without a strip.
    void DrawFace(HDC dc, int32 index, int32 x, int32 y, COLORREF transparent);

    CLoadedPicture m_image;
    int32 m_width = 0; // of the whole strip
    int32 m_height = 0;
    int32 m_faceWidth = 0;
};

} // namespace orvane
