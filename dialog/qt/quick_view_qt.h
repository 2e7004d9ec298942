// The operator's window for the session: calls go to the dialog while there is one and are harmless else.
#pragma once

#include "dialog/qt/message_queue.h"
#include "dialog/qt/quick_view_dialog.h"
#include "session/window.h"

#include <QPointer>
#include <QTimer>

class QEventLoop;

namespace orvane {

class AboutBox;
class OwnerWindow;

class QuickViewQt final : public QuickViewWindow {
public:
    /// @param owner the native number of the host's window, or null
    QuickViewQt(WindowEvents& events, void* owner);
    ~QuickViewQt() override;
    QuickViewQt(const QuickViewQt&) = delete;
    QuickViewQt& operator=(const QuickViewQt&) = delete;

    bool DoModal() override;
    void EndDialog() override { Stop(); }
    bool HasControl(int32 id) override { return Control(id) != nullptr; }
    void ShowControl(int32 id, bool shown) override;
    void EnableControl(int32 id, bool enabled) override;
    void FocusControl(int32 id) override;
    void SetDefaultButton(int32 id) override;
    void MoveControl(int32 id, int32 place) override;
    void UpdateControl(int32 id) override;
    void SetTitle(const wchar_t* title) override;
    void SetText(int32 id, const wchar_t* text) override;
    int32 GetText(int32 id, wchar_t* text, int32 capacity) override;
    void SetSliderRange(int32 least, int32 greatest) override;
    void SetSliderPosition(int32 position) override;
    int32 SliderPosition() override;
    void SetPreview(PictureView picture) override;
    void RepaintPreview() override { UpdateControl(1000); }
    bool LoadSkin(int32 id, const std::filesystem::path::value_type* file, ColourRef transparent) override;
    void ResetSkin(int32 id) override;
    void SetCursor(Cursor cursor) override;
    void ShowAbout() override;
    void Rest(int32 milliseconds) override;
    void Post(WindowMessage message) override { queue_.Post(message); }

private:
    QWidget* Control(int32 id) const { return dialog_.isNull() ? nullptr : dialog_->Control(id); }
    bool Tell(const std::function<void(WindowEvents&)>& event);
    void Show(OwnerWindow& owner);
    void Serve();
    void Stop();
    void TakeBackWaitCursor();

    WindowEvents& events_;
    void* owner_;
    MessageQueue queue_;
    QPointer<QuickViewDialog> dialog_; // null before and after DoModal, and when it was destroyed from outside
    QPointer<AboutBox> about_;
    QEventLoop* loop_ = nullptr;
    bool started_ = false;
    bool serving_ = false; // from OnInitDialog to the window's end
    QTimer waitCursor_;    // runs while the wait cursor is up
};

} // namespace orvane
