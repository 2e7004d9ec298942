#include "dialog/qt/face_confirm.h"

#include "dialog/qt/controls.h"
#include "dialog/qt/message_queue.h"
#include "dialog/qt/widgets.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QIcon>
#include <QScreen>
#include <QTimer>
#include <QWidget>

namespace orvane {
namespace {

constexpr ControlRow kControls[] = {ORV_CONFIRM_CONTROLS(ORV_CONTROL_ROW)};
constexpr int kMilliseconds = 500;

class ConfirmWindow : public QWidget {
public:
    explicit ConfirmWindow(const QImage& thumbnail)
        : QWidget(nullptr, Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowStaysOnTopHint) {
        setAttribute(Qt::WA_QuitOnClose, false);
        setWindowModality(Qt::ApplicationModal); // what is clicked or typed meanwhile goes nowhere
        setWindowTitle(QString::fromWCharArray(ORV_CONFIRM_TITLE));
        setWindowIcon(MainIcon());
        const DialogUnits units(font());
        for (const ControlRow& row : kControls) {
            auto* picture = dynamic_cast<PictureFrame*>(MakeControl(*this, row, units));
            if (picture == nullptr) continue;
            picture->SetPicture(thumbnail);
            setFixedSize(2 * picture->x() + picture->width(), 2 * picture->y() + picture->height());
        }
        move(screen()->availableGeometry().center() - rect().center());
    }

    bool IsPainted() const { return painted_; }

protected:
    void paintEvent(QPaintEvent*) override { painted_ = true; }

private:
    bool painted_ = false;
};

} // namespace

void ShowConfirmWindow(const QImage& thumbnail) {
    const MessagePause pause;
    ConfirmWindow window(thumbnail);
    window.show();
    QTimer rounds; // so that waiting for events ends in time
    rounds.start(10);
    QDeadlineTimer end(kMilliseconds);
    bool seen = false;
    while (!end.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (!seen && window.IsPainted()) { // the half second begins with the first look at it
            seen = true;
            end.setRemainingTime(kMilliseconds);
        }
    }
}

} // namespace orvane
