// An operator's hand on the real window: presses, drags and types through the toolkit, from a thread of its
// own, while the host's thread sits in the detect call.
#pragma once

#include "tests/support/shown_picture.h"
#include "tests/support/window_scenarios.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace orvane::test {

/// Each step waits until the control that it needs is shown and enabled and no confirmation stands before the
/// window, and then until the window has served it. A step that finds no window, or no such control in time, is a
/// failure of the test.
class Hand : public WindowDriver {
public:
    /// Told by the host's thread: nobody serves the window any more.
    void CallHasEnded() { callHasEnded_ = true; }
    bool HasCallEnded() const { return callHasEnded_; }
    /// Whether the call ends within some seconds without a further step.
    bool EndsBySelf() const {
        for (int waited = 0; waited < 10'000 && !callHasEnded_; waited += 5) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return callHasEnded_;
    }

    /// Waits for the operator's window to stand on the screen. False when none came in time.
    virtual bool WaitForWindow() = 0;
    virtual bool IsOpen() = 0;
    virtual bool IsShown(int32 id) = 0;
    virtual bool IsEnabled(int32 id) = 0;

    /// What stands in the preview, pixel by pixel; without pixels where there is none.
    virtual ShownPicture Preview() = 0;
    virtual std::wstring TextOf(int32 id) = 0;

    /// The same without waiting for the end of what it brings about.
    virtual void StartClick(int32 id) = 0;
    /// Hovers over a control.
    virtual void HoverOver(int32 id) = 0;
    /// Presses on a control and holds it; LetGo lets go.
    virtual void Hold(int32 id) = 0;
    virtual void LetGo(int32 id) = 0;
    /// Closes whatever else of ours is open, the about box for one.
    virtual void CloseOthers() = 0;

    /// Calls a function on the window's own thread, from within its loop.
    virtual void OnWindowsThread(const std::function<void()>& function) = 0;

    /// Writes what is on the screen of the window whose title is given to a picture file. False where there
    /// is none.
    virtual bool TakePicture(const std::wstring& title, const std::string& file) = 0;

private:
    std::atomic<bool> callHasEnded_ = false;
};

/// The hand for this system's toolkit.
std::unique_ptr<Hand> MakeHand();

} // namespace orvane::test
