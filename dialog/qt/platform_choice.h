// Which of the toolkit's platforms can show a window here. Asked before an application object is made, since
// that one ends the process where it finds no display.
#pragma once

#include <QByteArray>
#include <QString>

namespace orvane {

struct PlatformChoice {
    QByteArray platform; // as for the toolkit's option -platform; empty where nothing can be shown
    QString problem;     // why not
};

/// Takes QT_QPA_PLATFORM where it is set, else Wayland, else X11. A platform counts when its display answers
/// and its plug-in loads.
PlatformChoice ChoosePlatform();

} // namespace orvane
