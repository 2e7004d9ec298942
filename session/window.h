// The seam between the session and the operator's window: what the session asks of a window system, and
// what a window tells the session. Only plain values cross it, so that a window system may be linked in
// or stand in a module of its own.
#pragma once

#include "primitives/types.h"

#include <filesystem>

namespace orvane {

/// Version of everything in this file, for window systems that stand in a module.
inline constexpr int32 kWindowSeamVersion = 1;

/// Colours are 0x00BBGGRR.
using ColourRef = uint32;

/// A finished 24-bit picture, good for the call alone: the bottom row first, blue, green, red, rows padded
/// to a multiple of 4 bytes.
struct PictureView {
    const uint8* bits;
    int32 width;
    int32 height;
};

/// A text in Arial, without a background. Positions count from the picture's upper left corner.
struct TextMark {
    const wchar_t* text;
    int32 x; // upper left corner of the first character's cell
    int32 y;
    int32 fontHeight; // of a character's cell, in pixels
    int32 fontWidth;  // average width of the characters, in pixels
    ColourRef colour;
};

enum class Cursor { arrow, wait, cross };

/// The window's messages to itself, by their distance from the first message number that is free for a
/// program's own use.
enum class WindowMessage : int32 {
    previewBitmap = 20, // a bitmap waits to become the preview's picture
    animateMark = 30,   // one step of the opening animation
};

/// What the window tells the session, on the window's thread and only between the start and the end of
/// QuickViewWindow::DoModal. A window decides nothing by itself: keys and clicks arrive here.
class WindowEvents {
public:
    /// All controls stand as their list says, nothing is on the screen yet.
    virtual void OnInitDialog() = 0;
    /// The window comes onto the screen, or leaves it.
    virtual void OnShowWindow() = 0;
    /// A button was clicked, or the key pressed that stands for it.
    virtual void OnCommand(int32 id) = 0;
    /// A command of the system menu. True when it was the session's.
    virtual bool OnSysCommand(int32 id) = 0;
    /// The text of an edit changed, by the operator or by SetText.
    virtual void OnEditChanged(int32 id) = 0;
    /// The slider's thumb was let go.
    virtual void OnToleranceReleased() = 0;
    /// Positions are client coordinates in which the preview's first pixel lies at (11, 12), wherever the
    /// system put it. Presses and moves on buttons and edits are not told.
    virtual void OnMouseMove(int32 x, int32 y) = 0;
    virtual void OnLButtonDown(int32 x, int32 y) = 0;
    virtual void OnLButtonUp(int32 x, int32 y) = 0;
    /// The close box, the Esc key, or the end of the owner.
    virtual void OnCancel() = 0;
    /// A message that QuickViewWindow::Post sent, one call for each.
    virtual void OnMessage(WindowMessage message) = 0;

protected:
    ~WindowEvents() = default;
};

/// One window of the operator. Calls go to the window's thread, Post apart. A control that is not there is
/// passed over, and before and after DoModal every call is harmless.
class QuickViewWindow {
public:
    virtual ~QuickViewWindow() = default;

    /// Opens the window with the controls of session/controls.h and serves it until EndDialog. A window
    /// that is destroyed from outside ends it as well. False when it could not be opened.
    virtual bool DoModal() = 0;
    /// Ends DoModal, after the event that is being served.
    virtual void EndDialog() = 0;

    virtual bool HasControl(int32 id) = 0;
    virtual void ShowControl(int32 id, bool shown) = 0;
    virtual void EnableControl(int32 id, bool enabled) = 0;
    virtual void FocusControl(int32 id) = 0;
    /// The button that the Enter key clicks.
    virtual void SetDefaultButton(int32 id) = 0;
    /// Moves a control's upper left corner to that of another one.
    virtual void MoveControl(int32 id, int32 place) = 0;
    /// Paints a control now.
    virtual void UpdateControl(int32 id) = 0;

    virtual void SetTitle(const wchar_t* title) = 0;
    virtual void SetText(int32 id, const wchar_t* text) = 0;
    /// Up to `capacity` - 1 characters of a control's text and a zero; the number of characters.
    virtual int32 GetText(int32 id, wchar_t* text, int32 capacity) = 0;

    virtual void SetSliderRange(int32 least, int32 greatest) = 0;
    virtual void SetSliderPosition(int32 position) = 0;
    virtual int32 SliderPosition() = 0;

    /// Makes a copy of a picture the preview's and paints it now; the one before is given up.
    virtual void SetPreview(PictureView picture) = 0;
    /// Paints the preview's picture once more.
    virtual void RepaintPreview() = 0;

    /// Gives a skinned button its look from a file: four faces side by side. False for a file that is no
    /// such picture.
    virtual bool LoadSkin(int32 id, const std::filesystem::path::value_type* file, ColourRef transparent) = 0;
    /// Sets a skinned button's state back: not disabled, not hovered over, no cursor of its own.
    virtual void ResetSkin(int32 id) = 0;

    virtual void SetCursor(Cursor cursor) = 0;
    /// Shows the about box until it is closed.
    virtual void ShowAbout() = 0;
    /// Lets the window's thread rest.
    virtual void Rest(int32 milliseconds) = 0;

    /// Sends a message to the window's own thread. From any thread, also while DoModal ends; never waits.
    virtual void Post(WindowMessage message) = 0;
};

/// A window system. There is one in a process; it lives as long as the library.
class WindowSystem {
public:
    /// Whether windows can be opened here and now, by the calling thread. Where they can't, a session that
    /// asked for a window runs as one without, a detection without a face stays at that, and the
    /// confirmation is skipped.
    virtual bool CanOpenWindow() = 0;
    /// A window that is not open yet, or null. The caller deletes it, before `events` goes.
    /// @param owner the host's window, or null; one that is gone by now counts as null
    virtual QuickViewWindow* CreateQuickView(WindowEvents& events, void* owner) = 0;
    /// Shows a thumbnail of the cropped face for half a second.
    virtual void ShowFaceConfirm(PictureView thumbnail) = 0;
    /// Shows a message box with one button.
    virtual void ShowMessage(const char* text) = 0;
    /// Whether a handle of the host names a window that can own ours.
    virtual bool IsWindowHandle(void* handle) = 0;
    /// Writes a text into a picture of the form of PictureView. From any thread.
    virtual void WriteText(uint8* bits, int32 width, int32 height, const TextMark& mark) = 0;

protected:
    ~WindowSystem() = default;
};

} // namespace orvane
