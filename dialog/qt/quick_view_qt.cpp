#include "dialog/qt/quick_view_qt.h"

#include "dialog/qt/about_box.h"
#include "dialog/qt/application.h"
#include "dialog/qt/controls.h"
#include "dialog/qt/owner.h"
#include "dialog/qt/picture.h"
#include "dialog/qt/skin_button.h"
#include "dialog/qt/widgets.h"

#include <QApplication>
#include <QEventLoop>
#include <QScreen>
#include <QThread>
#include <QTimer>

#include <algorithm>

namespace orvane {

QuickViewQt::QuickViewQt(WindowEvents& events, void* owner)
    : events_(events), owner_(owner),
      queue_([this](WindowMessage message) { Tell([message](WindowEvents& to) { to.OnMessage(message); }); }) {
    QObject::connect(&waitCursor_, &QTimer::timeout, &queue_, [this] { TakeBackWaitCursor(); });
}

QuickViewQt::~QuickViewQt() {
    Stop();
    TakeBackWaitCursor();
    delete dialog_;
}

bool QuickViewQt::Tell(const std::function<void(WindowEvents&)>& event) {
    // The confirmation is shown in the middle of an event; what comes meanwhile is dropped.
    if (serving_ && !MessagePause::IsOn()) event(events_);
    return serving_;
}

bool QuickViewQt::DoModal() {
    if (started_ || !HasApplication()) return false;
    started_ = true;
    OwnerWindow owner(owner_);
    dialog_ = new QuickViewDialog([this](const auto& event) { return Tell(event); });
    QObject::connect(dialog_, &QObject::destroyed, &queue_, [this] { Stop(); });
    serving_ = true;
    events_.OnInitDialog();
    if (serving_ && !dialog_.isNull()) {
        Show(owner);
        queue_.Run(true);
        Serve();
    }
    Stop();
    TakeBackWaitCursor();
    delete dialog_;
    // A host without a loop of its own would leave the closed window on the screen.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return true;
}

void QuickViewQt::Show(OwnerWindow& owner) {
    if (dialog_->focusWidget() == nullptr) dialog_->setFocus();
    dialog_->winId(); // the toolkit's window behind the dialog
    const QScreen* screen = dialog_->screen();
    if (QWindow* window = owner.Window()) {
        dialog_->windowHandle()->setTransientParent(window);
        if (window->screen() != nullptr) screen = window->screen();
        QObject::connect(window, &QObject::destroyed, &queue_, [this] { Stop(); });
        if (owner.IsForeign()) {
            auto* look = new QTimer(dialog_);
            QObject::connect(look, &QTimer::timeout, &queue_, [this] {
                if (!OwnerWindow::IsWindow(owner_)) Stop();
            });
            look->start(500);
        }
    }
    dialog_->move(screen->availableGeometry().center() - dialog_->rect().center());
    dialog_->show();
    if (dialog_.isNull()) return;
    dialog_->raise();
    dialog_->activateWindow();
}

void QuickViewQt::Serve() {
    if (!serving_) return;
    QEventLoop loop;
    loop_ = &loop;
    bool ran = false;
    QObject here;
    QMetaObject::invokeMethod(
        &here, [&ran] { ran = true; }, Qt::QueuedConnection);
    loop.exec();
    // An application that was once told to exit outside its own loop lets no other loop run.
    while (!ran && serving_ && QThread::currentThread()->loopLevel() == 0) {
        loop.processEvents(QEventLoop::WaitForMoreEvents);
        ran = false;
    }
    loop_ = nullptr;
}

void QuickViewQt::Stop() {
    serving_ = false;
    queue_.Run(false);
    if (!about_.isNull()) about_->reject();
    if (loop_ != nullptr) loop_->quit();
}

void QuickViewQt::ShowControl(int32 id, bool shown) {
    QWidget* control = Control(id);
    if (control == nullptr) return;
    if (!shown) dialog_->GiveUpFocus(*control);
    control->setVisible(shown);
}

void QuickViewQt::EnableControl(int32 id, bool enabled) {
    QWidget* control = Control(id);
    if (control == nullptr) return;
    if (!enabled) dialog_->GiveUpFocus(*control);
    control->setEnabled(enabled);
}

void QuickViewQt::FocusControl(int32 id) {
    if (QWidget* control = Control(id)) control->setFocus();
}

void QuickViewQt::SetDefaultButton(int32 id) {
    if (!dialog_.isNull()) dialog_->SetDefaultButton(id);
}

void QuickViewQt::MoveControl(int32 id, int32 place) {
    QWidget* control = Control(id);
    const QWidget* there = Control(place);
    if (control != nullptr && there != nullptr) control->move(there->pos());
}

void QuickViewQt::UpdateControl(int32 id) {
    if (QWidget* control = Control(id)) control->repaint();
}

void QuickViewQt::SetTitle(const wchar_t* title) {
    if (!dialog_.isNull()) dialog_->setWindowTitle(QString::fromWCharArray(title));
}

void QuickViewQt::SetText(int32 id, const wchar_t* text) {
    if (QWidget* control = Control(id)) SetControlText(*control, QString::fromWCharArray(text));
}

int32 QuickViewQt::GetText(int32 id, wchar_t* text, int32 capacity) {
    if (text == nullptr || capacity < 1) return 0;
    const QWidget* control = Control(id);
    const std::wstring present = control == nullptr ? std::wstring() : ControlText(*control).toStdWString();
    const std::size_t length = present.copy(text, static_cast<std::size_t>(capacity) - 1);
    text[length] = 0;
    return static_cast<int32>(length);
}

void QuickViewQt::SetSliderRange(int32 least, int32 greatest) {
    if (auto* slider = qobject_cast<QSlider*>(Control(kToleranceSlider))) slider->setRange(least, greatest);
}

void QuickViewQt::SetSliderPosition(int32 position) {
    if (auto* slider = qobject_cast<QSlider*>(Control(kToleranceSlider))) slider->setValue(position);
}

int32 QuickViewQt::SliderPosition() {
    const auto* slider = qobject_cast<QSlider*>(Control(kToleranceSlider));
    return slider != nullptr ? slider->value() : 0;
}

void QuickViewQt::SetPreview(PictureView picture) {
    PictureFrame* preview = dialog_.isNull() ? nullptr : dialog_->Preview();
    const QImage image = ImageOf(picture);
    if (preview != nullptr && !image.isNull()) preview->SetPicture(image);
}

bool QuickViewQt::LoadSkin(int32 id, const std::filesystem::path::value_type* file, ColourRef transparent) {
    auto* button = dynamic_cast<CHoverBitmapButton*>(Control(id));
    return button != nullptr && file != nullptr && button->LoadSkin(file, transparent);
}

void QuickViewQt::ResetSkin(int32 id) {
    if (auto* button = dynamic_cast<CHoverBitmapButton*>(Control(id))) button->ResetState();
}

void QuickViewQt::SetCursor(Cursor cursor) {
    if (dialog_.isNull()) return;
    if (cursor != Cursor::wait) {
        TakeBackWaitCursor();
        dialog_->setCursor(cursor == Cursor::cross ? Qt::CrossCursor : Qt::ArrowCursor);
        return;
    }
    if (waitCursor_.isActive()) return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    waitCursor_.start(0); // it stands until the event loop has its turn again
}

void QuickViewQt::TakeBackWaitCursor() {
    if (!waitCursor_.isActive()) return;
    if (serving_ && MessagePause::IsOn()) return waitCursor_.start(20); // the confirmation's loop is not ours
    waitCursor_.stop();
    QApplication::restoreOverrideCursor();
}

void QuickViewQt::ShowAbout() {
    if (dialog_.isNull() || !about_.isNull()) return;
    about_ = new AboutBox(*dialog_);
    about_->exec();
    delete about_;
}

void QuickViewQt::Rest(int32 milliseconds) {
    if (!dialog_.isNull()) QThread::msleep(static_cast<unsigned long>(std::max(milliseconds, 0)));
}

} // namespace orvane
