// A button that takes its look from a skin. Without one it shows nothing.
#pragma once

#include "dialog/qt/skin_strip.h"

#include <QAbstractButton>
#include <QCursor>

namespace orvane {

class CHoverBitmapButton : public QAbstractButton {
public:
    explicit CHoverBitmapButton(QWidget& parent) : QAbstractButton(&parent) { setFocusPolicy(Qt::StrongFocus); }

    /// Loads a skin and takes the size of its faces; the upper left corner stays. False, and nothing changed,
    /// for a file without a picture, with one of a single row, or with faces of no width.
    bool LoadSkin(const char* path, ColourRef transparent);
    /// The four states below go back to their start.
    void ResetState();
    /// The face that stands for the present state. A button that only the window disabled keeps face 0.
    int Face() const;

    CKbcBmp m_strip;
    ColourRef m_transparent = 0;
    bool m_disabled = false; // shows face 3 and swallows presses
    bool m_tracking = false; // the mouse's leave will be told
    bool m_hover = false;
    bool m_useCursor = false; // m_cursor over the button
    QCursor m_cursor;

protected:
    void paintEvent(QPaintEvent*) override;
    void enterEvent(QEnterEvent*) override;
    void leaveEvent(QEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
};

} // namespace orvane
