#include "dialog/qt/widgets.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QWheelEvent>

namespace orvane {

void PictureFrame::SetPicture(const QImage& picture) {
    picture_ = picture;
    resize(picture.width() + 2 * kFrame, picture.height() + 2 * kFrame);
    repaint();
}

void PictureFrame::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Dark));
    for (int inset = 0; inset < kFrame; ++inset) {
        painter.drawRect(inset, inset, width() - 1 - 2 * inset, height() - 1 - 2 * inset);
    }
    painter.drawImage(kFrame, kFrame, picture_);
}

DialogButton::DialogButton(QWidget& parent) : QPushButton(&parent) { setAutoDefault(false); }

void DialogButton::paintEvent(QPaintEvent*) {
    QStyleOptionButton option;
    initStyleOption(&option);
    QStylePainter painter(this);
    painter.drawControl(QStyle::CE_PushButtonBevel, option);
    painter.setFont(font());
    QRect room = rect();
    if ((option.state & QStyle::State_Sunken) != 0) {
        room.translate(style()->pixelMetric(QStyle::PM_ButtonShiftHorizontal, &option, this),
                       style()->pixelMetric(QStyle::PM_ButtonShiftVertical, &option, this));
    }
    painter.drawItemText(room, Qt::AlignCenter | Qt::TextShowMnemonic, option.palette, isEnabled(), option.text,
                         QPalette::ButtonText);
    if ((option.state & QStyle::State_HasFocus) == 0) return;
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.rect = style()->subElementRect(QStyle::SE_PushButtonFocusRect, &option, this);
    focus.backgroundColor = option.palette.color(QPalette::Button);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

void GroupFrame::paintEvent(QPaintEvent*) {
    constexpr int kInset = 7; // of the title, from the frame's left end
    constexpr int kGap = 2;   // between frame and title
    QPainter painter(this);
    const QFontMetrics metrics = fontMetrics();
    const QString text = title().trimmed();
    const QRect room(kInset + kGap, 0, metrics.horizontalAdvance(text), metrics.height());
    painter.drawText(room, Qt::AlignCenter | Qt::TextHideMnemonic, text);
    // Text and frame never touch, so that no background need be known.
    const QRect frame(0, metrics.height() / 2, width() - 1, height() - 1 - metrics.height() / 2);
    QColor line = palette().color(QPalette::WindowText);
    line.setAlpha(80);
    painter.setPen(line);
    painter.drawLine(frame.topLeft(), QPoint(frame.left() + kInset, frame.top()));
    const int after = text.isEmpty() ? frame.left() + kInset : room.right() + kGap;
    if (after < frame.right()) painter.drawLine(QPoint(after, frame.top()), frame.topRight());
    painter.drawLine(frame.topLeft(), frame.bottomLeft());
    painter.drawLine(frame.topRight(), frame.bottomRight());
    painter.drawLine(frame.bottomLeft(), frame.bottomRight());
}

DigitsEdit::DigitsEdit(QWidget& parent, bool border) : QLineEdit(&parent) {
    setAlignment(Qt::AlignCenter);
    setFrame(border);
    setValidator(new QRegularExpressionValidator(QRegularExpression("[0-9]*"), this));
    setContextMenuPolicy(Qt::NoContextMenu);
}

ToleranceSlider::ToleranceSlider(QWidget& parent) : QSlider(Qt::Horizontal, &parent) {
    setFocusPolicy(Qt::StrongFocus);
    setPageStep(20);
}

void ToleranceSlider::Released() {
    if (onReleased) onReleased();
}

void ToleranceSlider::mousePressEvent(QMouseEvent* event) {
    held_ = held_ || event->button() == Qt::LeftButton;
    QSlider::mousePressEvent(event);
}

void ToleranceSlider::mouseReleaseEvent(QMouseEvent* event) {
    QSlider::mouseReleaseEvent(event);
    if (!held_ || event->button() != Qt::LeftButton) return;
    held_ = false;
    Released();
}

void ToleranceSlider::keyPressEvent(QKeyEvent* event) {
    const int before = value();
    QSlider::keyPressEvent(event);
    if (!held_ && value() != before) Released();
}

void ToleranceSlider::wheelEvent(QWheelEvent* event) {
    const int before = value();
    QSlider::wheelEvent(event);
    if (!held_ && value() != before) Released();
}

} // namespace orvane
