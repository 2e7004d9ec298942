// A window and a window system that show nothing, for benchmarks to build on.
#pragma once

#include "session/window.h"

namespace orvane::bench {

class QuietWindow : public QuickViewWindow {
public:
    void EndDialog() override {}
    bool HasControl(int32) override { return true; }
    void ShowControl(int32, bool) override {}
    void EnableControl(int32, bool) override {}
    void FocusControl(int32) override {}
    void SetDefaultButton(int32) override {}
    void MoveControl(int32, int32) override {}
    void UpdateControl(int32) override {}
    void SetTitle(const wchar_t*) override {}
    void SetText(int32, const wchar_t*) override {}
    int32 GetText(int32, wchar_t* text, int32) override { return text[0] = 0; }
    void SetSliderRange(int32, int32) override {}
    void SetSliderPosition(int32 position) override { slider_ = position; }
    int32 SliderPosition() override { return slider_; }
    void RepaintPreview() override {}
    bool LoadSkin(int32, const std::filesystem::path::value_type*, ColourRef) override { return false; }
    void ResetSkin(int32) override {}
    void SetCursor(Cursor) override {}
    void ShowAbout() override {}
    void Rest(int32) override {}

private:
    int32 slider_ = 0;
};

class QuietWindows : public WindowSystem {
public:
    bool CanOpenWindow() override { return true; }
    void ShowFaceConfirm(PictureView) override {}
    void ShowMessage(const char*) override {}
    bool IsWindowHandle(void*) override { return false; }
    void WriteText(uint8*, int32, int32, const TextMark&) override {}
};

} // namespace orvane::bench
