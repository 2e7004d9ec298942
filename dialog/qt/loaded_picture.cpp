#include "dialog/qt/loaded_picture.h"

#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QtEndian>

#include <cstdio>
#include <memory>

namespace orvane {
namespace {

/// Whether a file has its end. Where data are missing the toolkit's readers of these three formats hand out
/// what came before.
bool IsComplete(const QByteArray& format, const QByteArray& bytes, const QSize& size) {
    if (format == "jpeg") {
        // Behind the start of a scan neither mark can stand inside the data.
        const qsizetype scan = bytes.lastIndexOf("\xFF\xDA");
        return scan >= 0 && bytes.indexOf("\xFF\xD9", scan) >= 0;
    }
    if (format == "gif") return bytes.lastIndexOf('\x3B') == bytes.size() - 1;
    if (format == "bmp") {
        if (bytes.size() < 34) return false;
        const auto* start = reinterpret_cast<const uchar*>(bytes.constData());
        const auto pixels = static_cast<std::int64_t>(qFromLittleEndian<quint32>(start + 10));
        const bool oldHeader = qFromLittleEndian<quint32>(start + 14) == 12;
        const std::int64_t depth = qFromLittleEndian<quint16>(start + (oldHeader ? 24 : 28));
        const quint32 compression = oldHeader ? 0 : qFromLittleEndian<quint32>(start + 30);
        if (compression == 1 || compression == 2) return bytes.lastIndexOf(QByteArray("\0\1", 2)) >= pixels;
        const std::int64_t row = (size.width() * depth + 31) / 32 * 4;
        return pixels + row * size.height() <= bytes.size();
    }
    return true;
}

} // namespace

bool CLoadedPicture::Load(const char* path) {
    m_picture = {};
    m_pixelWidth = m_pixelHeight = 0;
    m_fileSize = 0;
    // By the system's function: its names are bytes, and need not be text.
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> opened(std::fopen(path, "rb"), &std::fclose);
    QFile file;
    if (opened == nullptr || !file.open(opened.get(), QIODevice::ReadOnly) || file.isSequential() ||
        file.size() > kLargestFile)
        return false;
    const QByteArray bytes = file.read(file.size()); // the buffer is as long as what is asked for
    if (bytes.isEmpty() || !LoadFromMemory(bytes)) return false;
    m_fileSize = bytes.size();
    return true;
}

bool CLoadedPicture::LoadFromMemory(const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    if (!buffer.open(QIODevice::ReadOnly)) return false;
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead()) return false;
    const QSize size = reader.size();
    if (size.isEmpty() || size.width() > kLargestSide || size.height() > kLargestSide ||
        std::int64_t{size.width()} * size.height() > kMostPixels || !IsComplete(reader.format(), bytes, size)) {
        return false;
    }
    QImage picture = reader.read();
    if (picture.isNull()) return false;
    picture.setDevicePixelRatio(1);
    m_picture = picture.convertToFormat(QImage::Format_ARGB32);
    m_pixelWidth = m_picture.width();
    m_pixelHeight = m_picture.height();
    return !m_picture.isNull();
}

bool CLoadedPicture::Render(QPainter& painter, const QRect& rectangle) const {
    if (m_picture.isNull()) return false;
    painter.drawImage(rectangle, m_picture);
    return true;
}

} // namespace orvane
