// Controls as widgets: the lists of session/controls.h become children of a window, in the order of the tab
// key, at the places that the dialog units give them.
#pragma once

#include "session/controls.h"

#include <QRect>
#include <QSize>
#include <QWidget>

#include <span>

namespace orvane {

// As the lists name them.
enum class ControlKind {
    PICTURE,
    ICON,
    LABEL,
    LABEL_CENTRED,
    LABEL_RIGHT,
    BUTTON,
    DEFAULT_BUTTON,
    SKIN_BUTTON,
    GROUP,
    DIGITS,
    DIGITS_BORDERED,
    SLIDER,
    CHECK,
};
enum class ControlStart { SHOWN, HIDDEN };

struct ControlRow {
    ControlKind kind;
    int32 id;
    const wchar_t* text;
    int32 x, y, width, height; // dialog units
    ControlStart start;
};

#define ORV_CONTROL_ROW(kind, id, text, x, y, width, height, start)                                                    \
    {orvane::ControlKind::kind, id, text, x, y, width, height, orvane::ControlStart::start},

/// What dialog units mean in pixels: from a font's average character, but no less than 6 by 13, so that the
/// preview with its 400 pixels keeps its room.
class DialogUnits {
public:
    explicit DialogUnits(const QFont& font);

    QRect Pixels(int32 x, int32 y, int32 width, int32 height) const;
    QSize Pixels(int32 width, int32 height) const { return Pixels(0, 0, width, height).size(); }

private:
    int32 baseX_, baseY_;
};

/// Makes a control a child of `window`, named by its id. A row that starts hidden is hidden.
QWidget* MakeControl(QWidget& window, const ControlRow& row, const DialogUnits& units);

/// The text of a label, button, group or edit; nothing for others.
void SetControlText(QWidget& control, const QString& text);
QString ControlText(const QWidget& control);

/// The library's icon.
QIcon MainIcon();

} // namespace orvane
