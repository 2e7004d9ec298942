#include "dialog/qt/window_system_qt.h"

#include "dialog/qt/application.h"
#include "dialog/qt/controls.h"
#include "dialog/qt/face_confirm.h"
#include "dialog/qt/owner.h"
#include "dialog/qt/picture.h"
#include "dialog/qt/quick_view_qt.h"

#include <QIcon>
#include <QMessageBox>

namespace orvane {
namespace {

class QtWindows final : public WindowSystem {
public:
    bool CanOpenWindow() override { return HasApplication(); }

    QuickViewWindow* CreateQuickView(WindowEvents& events, void* owner) override {
        return HasApplication() ? new QuickViewQt(events, owner) : nullptr;
    }

    void ShowFaceConfirm(PictureView thumbnail) override {
        const QImage image = ImageOf(thumbnail);
        if (!image.isNull() && HasApplication()) ShowConfirmWindow(image);
    }

    void ShowMessage(const char* text) override {
        if (!HasApplication()) return;
        QMessageBox box(QMessageBox::Critical, QString::fromWCharArray(ORV_CONFIRM_TITLE), QString::fromUtf8(text),
                        QMessageBox::Ok);
        box.setTextFormat(Qt::PlainText);
        box.setAttribute(Qt::WA_QuitOnClose, false);
        box.setWindowIcon(MainIcon());
        box.exec();
    }

    bool IsWindowHandle(void* handle) override {
        // Where nothing can be shown, nothing is there to be asked about the handle.
        return handle != nullptr && (!HasApplication() || OwnerWindow::IsWindow(handle));
    }

    void WriteText(uint8* bits, int32 width, int32 height, const TextMark& mark) override {
        WriteTextInto(bits, width, height, mark);
    }
};

} // namespace

WindowSystem& QtWindowSystem() {
    static QtWindows system;
    return system;
}

} // namespace orvane
