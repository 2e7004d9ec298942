// The about box, from its list of controls.
#pragma once

#include <QDialog>

namespace orvane {

class AboutBox : public QDialog {
public:
    explicit AboutBox(QWidget& owner);
};

} // namespace orvane
