#include "dialog/qt/controls.h"

#include "dialog/qt/skin_button.h"
#include "dialog/qt/widgets.h"

#include <QCheckBox>
#include <QFontMetrics>
#include <QIcon>
#include <QLabel>

#include <algorithm>

namespace orvane {
namespace {

/// What `units` times `base` are of `parts`, to the nearest.
int32 Rounded(int32 units, int32 base, int32 parts) { return (units * base + parts / 2) / parts; }

QLabel* MakeLabel(QWidget& window, Qt::Alignment alignment) {
    auto* label = new QLabel(&window);
    label->setTextFormat(Qt::PlainText); // a language file writes texts, not markup
    label->setAlignment(alignment | Qt::AlignVCenter);
    return label;
}

QWidget* MakeWidget(QWidget& window, ControlKind kind) {
    switch (kind) {
    case ControlKind::PICTURE:
        return new PictureFrame(window);
    case ControlKind::ICON: {
        QLabel* label = MakeLabel(window, Qt::AlignCenter);
        label->setPixmap(MainIcon().pixmap(32, 32));
        return label;
    }
    case ControlKind::LABEL:
        return MakeLabel(window, Qt::AlignLeft);
    case ControlKind::LABEL_CENTRED:
        return MakeLabel(window, Qt::AlignHCenter);
    case ControlKind::LABEL_RIGHT:
        return MakeLabel(window, Qt::AlignRight);
    case ControlKind::BUTTON:
    case ControlKind::DEFAULT_BUTTON:
        return new DialogButton(window);
    case ControlKind::SKIN_BUTTON:
        return new CHoverBitmapButton(window);
    case ControlKind::GROUP:
        return new GroupFrame(window);
    case ControlKind::DIGITS:
        return new DigitsEdit(window, false);
    case ControlKind::DIGITS_BORDERED:
        return new DigitsEdit(window, true);
    case ControlKind::SLIDER:
        return new ToleranceSlider(window);
    case ControlKind::CHECK:
        return new QCheckBox(&window);
    }
    return new QWidget(&window);
}

/// Whether the mouse works the control; all others leave it to the window.
bool TakesMouse(ControlKind kind) {
    switch (kind) {
    case ControlKind::PICTURE:
    case ControlKind::ICON:
    case ControlKind::LABEL:
    case ControlKind::LABEL_CENTRED:
    case ControlKind::LABEL_RIGHT:
    case ControlKind::GROUP:
        return false;
    default:
        return true;
    }
}

} // namespace

DialogUnits::DialogUnits(const QFont& font) {
    const QFontMetrics metrics(font);
    const int letters = metrics.horizontalAdvance("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    baseX_ = std::max((letters / 26 + 1) / 2, 6);
    baseY_ = std::max(metrics.height(), 13);
}

QRect DialogUnits::Pixels(int32 x, int32 y, int32 width, int32 height) const {
    return {Rounded(x, baseX_, 4), Rounded(y, baseY_, 8), Rounded(width, baseX_, 4), Rounded(height, baseY_, 8)};
}

QWidget* MakeControl(QWidget& window, const ControlRow& row, const DialogUnits& units) {
    QWidget* control = MakeWidget(window, row.kind);
    control->setObjectName(QString::number(row.id));
    control->setGeometry(units.Pixels(row.x, row.y, row.width, row.height));
    if (TakesMouse(row.kind)) {
        // A press on a disabled button is no press on the window below.
        control->setAttribute(Qt::WA_NoMousePropagation);
        if (row.kind != ControlKind::DIGITS && row.kind != ControlKind::DIGITS_BORDERED) {
            control->setCursor(Qt::ArrowCursor);
        }
    } else {
        control->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    SetControlText(*control, QString::fromWCharArray(row.text));
    control->setVisible(row.start == ControlStart::SHOWN);
    return control;
}

void SetControlText(QWidget& control, const QString& text) {
    if (auto* label = qobject_cast<QLabel*>(&control); label != nullptr && !text.isEmpty()) label->setText(text);
    if (auto* button = qobject_cast<QAbstractButton*>(&control)) button->setText(text);
    if (auto* group = qobject_cast<QGroupBox*>(&control)) group->setTitle(text);
    if (auto* edit = qobject_cast<QLineEdit*>(&control)) edit->setText(text);
}

QString ControlText(const QWidget& control) {
    if (const auto* label = qobject_cast<const QLabel*>(&control)) return label->text();
    if (const auto* button = qobject_cast<const QAbstractButton*>(&control)) return button->text();
    if (const auto* group = qobject_cast<const QGroupBox*>(&control)) return group->title();
    if (const auto* edit = qobject_cast<const QLineEdit*>(&control)) return edit->text();
    return {};
}

QIcon MainIcon() { return QIcon(":/orvane/icon.png"); }

} // namespace orvane
