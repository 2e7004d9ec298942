// A picture file of any format that the system's picture object reads.
#pragma once

#include "primitives/types.h"

#include <windows.h>

#include <ocidl.h>

namespace orvane {

/// Owns the system's picture object. Before a load, and after one that failed, it is empty and its sizes
/// are 0.
class CLoadedPicture {
public:
    CLoadedPicture() = default;
    virtual ~CLoadedPicture();
    CLoadedPicture(const CLoadedPicture&) = delete;
    CLoadedPicture& operator=(const CLoadedPicture&) = delete;

    /// Reads a file of at most 64 MB. False when it can't be read, when it is no picture or not a whole
    /// one, or when a side has more than 32,767 pixels; no message then.
    bool Load(const wchar_t* path);
    /// Makes the picture from memory. False, with a message box, when there is no memory or when the
    /// system can't give the interface. A picture that can't be read leaves m_picture null.
    bool LoadFromMemory(const void* bytes, DWORD length);
    /// Draws the whole picture scaled into a rectangle. A drawing that fails says so in a message box, once
    /// for each picture: a box uncovers what is to be drawn again.
    bool Render(HDC dc, const RECT& rectangle);

    IPicture* m_picture = nullptr;
    int32 m_pixelHeight = 0; // at 96 dots an inch, whatever the screen has
    int32 m_fileSize = 0;
    int32 m_pixelWidth = 0;

private:
    void Release();

    bool complained_ = false;
};

} // namespace orvane
