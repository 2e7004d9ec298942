#include "dialog/qt/skin_strip.h"

#include <QPainter>

namespace orvane {

bool CKbcBmp::Load(const char* path) {
    const bool loaded = m_image.Load(path);
    m_width = m_image.m_pixelWidth;
    m_height = m_image.m_pixelHeight;
    m_faceWidth = m_width / 4;
    return loaded;
}

void CKbcBmp::DrawFace(QPainter& painter, int face, int x, int y, ColourRef transparent) const {
    QImage picture = m_image.m_picture.copy(m_faceWidth * face, 0, m_faceWidth, m_height);
    const QRgb left = qRgb(static_cast<int>(transparent & 0xFF), static_cast<int>(transparent >> 8 & 0xFF),
                           static_cast<int>(transparent >> 16 & 0xFF));
    for (int row = 0; row < picture.height(); ++row) {
        auto* pixels = reinterpret_cast<QRgb*>(picture.scanLine(row));
        for (int column = 0; column < picture.width(); ++column) {
            if ((pixels[column] | 0xFF000000U) == left) pixels[column] = 0;
        }
    }
    painter.drawImage(x, y, picture);
}

} // namespace orvane
