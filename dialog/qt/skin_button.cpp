#include "dialog/qt/skin_button.h"

#include <QEnterEvent>
#include <QPainter>

#include <utility>

namespace orvane {

bool CHoverBitmapButton::LoadSkin(const char* path, ColourRef transparent) {
    CKbcBmp strip;
    if (!strip.Load(path) || strip.m_faceWidth < 1 || strip.m_height <= 1) return false;
    m_strip = std::move(strip);
    m_transparent = transparent;
    resize(m_strip.m_faceWidth, m_strip.m_height);
    update();
    return true;
}

void CHoverBitmapButton::ResetState() {
    m_disabled = m_tracking = m_hover = m_useCursor = false;
    setCursor(Qt::ArrowCursor);
    update();
}

int CHoverBitmapButton::Face() const {
    if (m_disabled) return 3;
    if (!isEnabled()) return 0;
    if (isDown()) return 2;
    return m_hover ? 1 : 0;
}

void CHoverBitmapButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    m_strip.DrawFace(painter, Face(), 0, 0, m_transparent);
}

void CHoverBitmapButton::enterEvent(QEnterEvent* event) {
    m_tracking = m_hover = true;
    setCursor(m_useCursor ? m_cursor : QCursor(Qt::ArrowCursor));
    update();
    QAbstractButton::enterEvent(event);
}

void CHoverBitmapButton::leaveEvent(QEvent* event) {
    m_tracking = m_hover = false;
    update();
    QAbstractButton::leaveEvent(event);
}

void CHoverBitmapButton::mousePressEvent(QMouseEvent* event) {
    if (!m_disabled) QAbstractButton::mousePressEvent(event);
}

} // namespace orvane
