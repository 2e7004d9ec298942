// The window system that opens nothing.
#pragma once

#include "session/window.h"

namespace orvane {

class NoWindows final : public WindowSystem {
public:
    bool CanOpenWindow() override { return false; }
    QuickViewWindow* CreateQuickView(WindowEvents&, void*) override { return nullptr; }
    void ShowFaceConfirm(PictureView) override {}
    void ShowMessage(const char*) override {}
    bool IsWindowHandle(void* handle) override { return handle != nullptr; }
    void WriteText(uint8*, int32, int32, const TextMark&) override {}
};

} // namespace orvane
