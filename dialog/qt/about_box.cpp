#include "dialog/qt/about_box.h"

#include "dialog/qt/controls.h"

#include <QIcon>
#include <QPushButton>

namespace orvane {
namespace {

constexpr ControlRow kControls[] = {ORV_ABOUT_CONTROLS(ORV_CONTROL_ROW)};

} // namespace

AboutBox::AboutBox(QWidget& owner)
    : QDialog(&owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                          Qt::WindowCloseButtonHint) {
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(QString::fromWCharArray(ORV_ABOUT_TITLE));
    setWindowIcon(MainIcon());
    const DialogUnits units(font());
    for (const ControlRow& row : kControls) {
        auto* button = qobject_cast<QPushButton*>(MakeControl(*this, row, units));
        if (button == nullptr) continue;
        button->setDefault(row.kind == ControlKind::DEFAULT_BUTTON);
        connect(button, &QPushButton::clicked, this, [this] { accept(); });
    }
    setFixedSize(units.Pixels(ORV_ABOUT_WIDTH, ORV_ABOUT_HEIGHT));
}

} // namespace orvane
