// The toolkit's window behind the quick view: its controls, and its keys and clicks told onwards. It decides
// nothing.
#pragma once

#include "session/window.h"

#include <QDialog>

#include <functional>

class QAbstractButton;

namespace orvane {

class PictureFrame;

class QuickViewDialog : public QDialog {
public:
    /// How an event reaches the session. True while the window goes on.
    using Tell = std::function<bool(const std::function<void(WindowEvents&)>&)>;

    explicit QuickViewDialog(Tell tell);

    /// Null for a control that is not there.
    QWidget* Control(int32 id) const;
    PictureFrame* Preview() const;

    /// The button that the Enter key clicks while no other button has the focus.
    void SetDefaultButton(int32 id);
    /// A control that is about to be hidden or disabled gives up the focus; it goes to no other control, so
    /// that no key hits one that the operator did not choose.
    void GiveUpFocus(QWidget& control);

    void reject() override;

protected:
    void keyPressEvent(QKeyEvent*) override;
    void closeEvent(QCloseEvent*) override;
    void showEvent(QShowEvent*) override;
    void hideEvent(QHideEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;
    void mouseDoubleClickEvent(QMouseEvent*) override;

private:
    void Connect(QWidget& control, int32 id);
    void TellMouse(void (WindowEvents::*handler)(int32, int32), const QMouseEvent& mouse);

    Tell tell_;
    int32 defaultButton_ = 0;
};

} // namespace orvane
