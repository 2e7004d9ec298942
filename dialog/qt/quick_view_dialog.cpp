#include "dialog/qt/quick_view_dialog.h"

#include "dialog/qt/controls.h"
#include "dialog/qt/widgets.h"

#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QMouseEvent>

#include <utility>

namespace orvane {
namespace {

constexpr ControlRow kControls[] = {ORV_QUICK_VIEW_CONTROLS(ORV_CONTROL_ROW)};

} // namespace

QuickViewDialog::QuickViewDialog(Tell tell)
    : QDialog(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                           Qt::WindowCloseButtonHint),
      tell_(std::move(tell)) {
    setAttribute(Qt::WA_QuitOnClose, false); // a host's windows decide about its end
    setWindowModality(Qt::ApplicationModal);
    setWindowIcon(MainIcon());
    setMouseTracking(true);
    const DialogUnits units(font());
    for (const ControlRow& row : kControls) {
        QWidget* control = MakeControl(*this, row, units);
        Connect(*control, row.id);
        if (row.kind == ControlKind::DEFAULT_BUTTON) SetDefaultButton(row.id);
    }
    setFixedSize(units.Pixels(ORV_QUICK_VIEW_WIDTH, ORV_QUICK_VIEW_HEIGHT));
}

void QuickViewDialog::Connect(QWidget& control, int32 id) {
    if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
        connect(button, &QAbstractButton::clicked, this,
                [this, id] { tell_([id](WindowEvents& events) { events.OnCommand(id); }); });
    }
    if (auto* edit = qobject_cast<QLineEdit*>(&control)) {
        connect(edit, &QLineEdit::textChanged, this,
                [this, id] { tell_([id](WindowEvents& events) { events.OnEditChanged(id); }); });
    }
    if (auto* slider = dynamic_cast<ToleranceSlider*>(&control)) {
        slider->onReleased = [this] { tell_([](WindowEvents& events) { events.OnToleranceReleased(); }); };
    }
}

QWidget* QuickViewDialog::Control(int32 id) const {
    return findChild<QWidget*>(QString::number(id), Qt::FindDirectChildrenOnly);
}

PictureFrame* QuickViewDialog::Preview() const { return dynamic_cast<PictureFrame*>(Control(kPreview)); }

void QuickViewDialog::SetDefaultButton(int32 id) {
    if (auto* before = qobject_cast<QPushButton*>(Control(defaultButton_))) before->setDefault(false);
    defaultButton_ = id;
    if (auto* button = qobject_cast<QPushButton*>(Control(id))) button->setDefault(true);
}

void QuickViewDialog::GiveUpFocus(QWidget& control) {
    if (focusWidget() == &control) setFocus();
}

void QuickViewDialog::reject() {
    tell_([](WindowEvents& events) { events.OnCancel(); });
}

void QuickViewDialog::keyPressEvent(QKeyEvent* event) {
    // A key that is held down counts once: the window may be in its next stage by now.
    switch (event->key()) {
    case Qt::Key_Escape:
        if (!event->isAutoRepeat()) reject();
        return;
    case Qt::Key_Enter:
    case Qt::Key_Return: {
        if (event->isAutoRepeat()) return;
        auto* button = qobject_cast<QPushButton*>(focusWidget());
        QAbstractButton* clicked = button != nullptr ? button : qobject_cast<QAbstractButton*>(Control(defaultButton_));
        if (clicked != nullptr && clicked->isVisible() && clicked->isEnabled()) clicked->click();
        return;
    }
    default:
        event->ignore();
    }
}

void QuickViewDialog::closeEvent(QCloseEvent* event) {
    // The session ends the window. One that stays keeps an application from its end, one that goes must not.
    const bool stays = tell_([](WindowEvents& events) { events.OnCancel(); });
    event->setAccepted(!stays);
}

void QuickViewDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!event->spontaneous()) tell_([](WindowEvents& events) { events.OnShowWindow(); });
}

void QuickViewDialog::hideEvent(QHideEvent* event) {
    QDialog::hideEvent(event);
    if (!event->spontaneous()) tell_([](WindowEvents& events) { events.OnShowWindow(); });
}

void QuickViewDialog::TellMouse(void (WindowEvents::*handler)(int32, int32), const QMouseEvent& mouse) {
    QPoint place = mouse.position().toPoint() + QPoint(kPreviewLeft, kPreviewTop);
    if (const QWidget* preview = Control(kPreview)) {
        place -= preview->pos() + QPoint(PictureFrame::kFrame, PictureFrame::kFrame);
    }
    tell_([=](WindowEvents& events) { (events.*handler)(place.x(), place.y()); });
}

void QuickViewDialog::mouseMoveEvent(QMouseEvent* event) { TellMouse(&WindowEvents::OnMouseMove, *event); }

void QuickViewDialog::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) TellMouse(&WindowEvents::OnLButtonDown, *event);
}

void QuickViewDialog::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) TellMouse(&WindowEvents::OnLButtonUp, *event);
}

void QuickViewDialog::mouseDoubleClickEvent(QMouseEvent*) {} // a second press at the same place marks nothing

} // namespace orvane
