// The widgets that differ from the toolkit's own: they paint and report as the window's list wants it, whatever
// the desktop's style does with small sizes.
#pragma once

#include <QGroupBox>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>

#include <functional>

namespace orvane {

/// Shows a picture pixel by pixel, from the upper left corner, inside a frame of 2 pixels.
class PictureFrame : public QWidget {
public:
    static constexpr int kFrame = 2;

    explicit PictureFrame(QWidget& parent) : QWidget(&parent) { setContentsMargins(kFrame, kFrame, kFrame, kFrame); }

    /// Takes the picture's size and paints it now.
    void SetPicture(const QImage& picture);
    const QImage& Picture() const { return picture_; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QImage picture_;
};

/// A button whose text uses the whole width: some are not wider than one character.
class DialogButton : public QPushButton {
public:
    explicit DialogButton(QWidget& parent);

protected:
    void paintEvent(QPaintEvent*) override;
};

/// A frame through the middle of its title, as the places inside it expect.
class GroupFrame : public QGroupBox {
public:
    explicit GroupFrame(QWidget& parent) : QGroupBox(&parent) {}

protected:
    void paintEvent(QPaintEvent*) override;
};

/// A line of digits in its middle.
class DigitsEdit : public QLineEdit {
public:
    DigitsEdit(QWidget& parent, bool border);
};

/// A slider that says when it was let go: after the mouse, and after each step by key or wheel.
class ToleranceSlider : public QSlider {
public:
    explicit ToleranceSlider(QWidget& parent);

    std::function<void()> onReleased;

protected:
    void mousePressEvent(QMouseEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
    void wheelEvent(QWheelEvent*) override;

private:
    void Released();

    bool held_ = false; // by the mouse
};

} // namespace orvane
