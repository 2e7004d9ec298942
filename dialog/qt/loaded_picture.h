// Picture files of the skins. What is loaded is a whole picture: a file that ends early is none.
#pragma once

#include <QImage>
#include <QString>

#include <cstdint>

class QByteArray;
class QPainter;
class QRect;

namespace orvane {

/// A picture out of a file.
class CLoadedPicture {
public:
    static constexpr std::int64_t kLargestFile = std::int64_t{64} << 20;
    static constexpr int kLargestSide = 32767;
    static constexpr std::int64_t kMostPixels = std::int64_t{1} << 24;

    /// Reads a file whole. False, and no picture, where it can't be read, has no picture or too large a one.
    bool Load(const char* path);
    bool LoadFromMemory(const QByteArray& bytes);
    /// Draws the whole picture, scaled into a rectangle. False without a picture.
    bool Render(QPainter& painter, const QRect& rectangle) const;

    QImage m_picture;
    int m_pixelHeight = 0;
    std::int64_t m_fileSize = 0;
    int m_pixelWidth = 0;
};

} // namespace orvane
