// The host's window that owns ours, by its native number: a window of this process's toolkit, or any window
// that the X server knows.
#pragma once

#include <QWindow>

#include <memory>

namespace orvane {

class OwnerWindow {
public:
    /// @param handle the native number; null for no owner. One that names no window counts as null
    explicit OwnerWindow(void* handle);

    /// Whether a number names a window. Needs an application object.
    static bool IsWindow(void* handle);

    /// The toolkit's object for the owner; null without one.
    QWindow* Window() const { return own_ != nullptr ? own_ : foreign_.get(); }
    /// Whether the owner is none of this process's toolkit: then nobody tells when it goes.
    bool IsForeign() const { return foreign_ != nullptr; }

private:
    QWindow* own_ = nullptr;
    std::unique_ptr<QWindow> foreign_;
};

} // namespace orvane
