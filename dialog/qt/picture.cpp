#include "dialog/qt/picture.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>

#include <cstddef>

namespace orvane {
namespace {

std::ptrdiff_t RowBytes(int32 width) { return (static_cast<std::ptrdiff_t>(width) * 3 + 3) / 4 * 4; }

/// A text's outline with its cell's upper left corner at (0, 0), the cell `height` high and an average character
/// `width` wide.
QPainterPath Outline(const QString& text, int32 height, int32 width) {
    constexpr int kDrawnAt = 100; // pixels; the outline is then scaled
    QFont font("Arial");
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(kDrawnAt);
    font.setHintingPreference(QFont::PreferNoHinting);
    const QFontMetricsF metrics(font);
    const qreal cell = metrics.ascent() + metrics.descent();
    const qreal average = metrics.averageCharWidth();
    if (cell <= 0 || average <= 0) return {};
    QPainterPath path;
    path.addText(0, metrics.ascent(), font, text);
    return QTransform::fromScale(width / average, height / cell).map(path);
}

} // namespace

QImage ImageOf(PictureView picture) {
    if (picture.bits == nullptr || picture.width < 1 || picture.height < 1) return {};
    const QImage rows(picture.bits, picture.width, picture.height, RowBytes(picture.width), QImage::Format_BGR888);
    return rows.convertToFormat(QImage::Format_RGB32).mirrored(false, true);
}

void WriteTextInto(uint8* bits, int32 width, int32 height, const TextMark& mark) {
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr) return;
    QImage image = ImageOf({bits, width, height});
    if (image.isNull() || mark.text == nullptr || mark.fontHeight < 1 || mark.fontWidth < 1) return;
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(mark.x, mark.y);
        const QColor colour(static_cast<int>(mark.colour & 0xFF), static_cast<int>(mark.colour >> 8 & 0xFF),
                            static_cast<int>(mark.colour >> 16 & 0xFF));
        painter.fillPath(Outline(QString::fromWCharArray(mark.text), mark.fontHeight, mark.fontWidth), colour);
    }
    for (int32 y = 0; y < height; ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(image.constScanLine(height - 1 - y));
        uint8* to = bits + y * RowBytes(width);
        for (int32 x = 0; x < width; ++x, to += 3) {
            to[0] = static_cast<uint8>(qBlue(from[x]));
            to[1] = static_cast<uint8>(qGreen(from[x]));
            to[2] = static_cast<uint8>(qRed(from[x]));
        }
    }
}

} // namespace orvane
