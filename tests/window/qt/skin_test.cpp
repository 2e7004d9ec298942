// Skinned buttons: four faces in one picture, and files that are none.
#include "dialog/qt/skin_button.h"
#include "tests/support/temp_folder.h"
#include "tests/window/qt/window_fixture.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <QPainter>

#include <algorithm>
#include <fstream>
#include <new>
#include <sys/resource.h>
#include <unistd.h>

namespace orvane::test {
namespace {

constexpr QRgb kFaces[] = {0xFFC00000, 0xFF00C000, 0xFF0000C0, 0xFF808000};
constexpr ColourRef kWhite = 0xFFFFFF;

/// Four faces, each of one colour with a white pixel at (1, 1).
QImage Strip(int faceWidth, int height) {
    QImage strip(4 * faceWidth, height, QImage::Format_RGB32);
    for (int x = 0; x < strip.width(); ++x) {
        for (int y = 0; y < height; ++y) strip.setPixel(x, y, kFaces[std::min(x / faceWidth, 3)]);
    }
    for (int face = 0; face < 4 && faceWidth > 1 && height > 1; ++face)
        strip.setPixel(face * faceWidth + 1, 1, 0xFFFFFFFF);
    return strip;
}

QByteArray Encoded(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    EXPECT_TRUE(writer.write(image));
    return bytes;
}

#if !defined(__SANITIZE_ADDRESS__)
/// What the system counts against RLIMIT_DATA, or a little more.
rlim_t DataBytes() {
    std::ifstream file("/proc/self/statm");
    rlim_t pages = 0;
    for (int field = 0; field < 6; ++field) file >> pages;
    return pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}
#endif

class Skin : public WindowTest {
protected:
    std::string File(const QByteArray& bytes) {
        const std::string path = (folder_.Path() / ("skin" + std::to_string(++files_))).string();
        QFile file(QString::fromStdString(path));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        return path;
    }
    bool Load(const QByteArray& bytes) { return window->LoadSkin(kSkinOk, File(bytes).c_str(), kWhite); }
    static CHoverBitmapButton& Button() { return *Control<CHoverBitmapButton>(kSkinOk); }
    static QRgb Shown() { return Button().grab().toImage().pixel(4, 4) | 0xFF000000U; }

private:
    TempFolder folder_;
    int files_ = 0;
};

TEST_F(Skin, TheButtonTakesAFacesSizeAndKeepsItsCorner) {
    Run([&] {
        const QPoint corner = Control(kSkinOk)->pos();
        for (const char* format : {"bmp", "png"}) {
            ASSERT_TRUE(Load(Encoded(Strip(30, 20), format))) << format;
            EXPECT_EQ(Button().geometry(), QRect(corner, QSize(30, 20)));
        }
        QImage uneven(123, 20, QImage::Format_RGB32);
        uneven.fill(Qt::red);
        ASSERT_TRUE(Load(Encoded(uneven, "bmp")));
        EXPECT_EQ(Button().size(), QSize(30, 20)) << "a quarter, rounded down";
        ASSERT_TRUE(Load(Encoded(uneven, "jpg")));
    });
}

TEST_F(Skin, ShowsTheFaceOfItsState) {
    Run([&] {
        ASSERT_TRUE(Load(Encoded(Strip(30, 20), "bmp")));
        window->ShowControl(kSkinOk, true);
        Button().raise();
        EXPECT_EQ(Shown(), kFaces[0]);
        QEnterEvent enter(QPointF(3, 3), QPointF(3, 3), QPointF(3, 3));
        QApplication::sendEvent(&Button(), &enter);
        EXPECT_TRUE(Button().m_hover);
        EXPECT_EQ(Shown(), kFaces[1]);
        QTest::mousePress(&Button(), Qt::LeftButton);
        EXPECT_EQ(Shown(), kFaces[2]);
        QTest::mouseRelease(&Button(), Qt::LeftButton);
        EXPECT_EQ(recorder.Take(), Events{"command 1007"});
        EXPECT_EQ(Shown(), kFaces[1]);
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(&Button(), &leave);
        EXPECT_EQ(Shown(), kFaces[0]);
        EXPECT_FALSE(Button().m_hover || Button().m_tracking);
    });
}

TEST_F(Skin, DisabledByTheWindowItKeepsItsNormalFaceAndByItsOwnFlagShowsTheFourth) {
    Run([&] {
        ASSERT_TRUE(Load(Encoded(Strip(30, 20), "bmp")));
        window->ShowControl(kSkinOk, true);
        Button().m_hover = true;
        window->EnableControl(kSkinOk, false);
        EXPECT_EQ(Shown(), kFaces[0]);
        window->EnableControl(kSkinOk, true);
        Button().m_disabled = true;
        EXPECT_EQ(Shown(), kFaces[3]);
        QTest::mouseClick(&Button(), Qt::LeftButton);
        EXPECT_EQ(Shown(), kFaces[3]);
        EXPECT_EQ(recorder.Take(), Events{}) << "presses are swallowed";
        window->ResetSkin(kSkinOk);
        EXPECT_EQ(Shown(), kFaces[0]);
    });
}

TEST_F(Skin, TheTransparentColourShowsTheWindow) {
    Run([&] {
        ASSERT_TRUE(Load(Encoded(Strip(30, 20), "bmp")));
        window->ShowControl(kSkinOk, true);
        Button().raise();
        Control(kPreview)->lower();
        QImage picture(30, 20, QImage::Format_ARGB32);
        picture.fill(0xFF123456);
        QPainter painter(&picture);
        Button().m_strip.DrawFace(painter, 0, 0, 0, kWhite);
        painter.end();
        EXPECT_EQ(picture.pixel(1, 1), 0xFF123456);
        EXPECT_EQ(picture.pixel(0, 0), kFaces[0]);
        EXPECT_EQ(picture.pixel(29, 19), kFaces[0]);
    });
}

TEST_F(Skin, FilesThatAreNoSkinChangeNothing) {
    const QByteArray bmp = Encoded(Strip(30, 20), "bmp"), png = Encoded(Strip(30, 20), "png"),
                     jpeg = Encoded(Strip(30, 20), "jpg");
    QByteArray vast = bmp; // a header that promises 40,000 by 20
    vast[18] = '\x40', vast[19] = '\x9C', vast[20] = 0, vast[21] = 0;
    const struct {
        const char* what;
        QByteArray bytes;
    } kBad[] = {
        {"empty", {}},
        {"no picture", "hello, this is no picture at all"},
        {"one row", Encoded(Strip(30, 1), "bmp")},
        {"three columns", Encoded(Strip(1, 20).copy(0, 0, 3, 20), "bmp")},
        {"a bitmap cut short", bmp.left(bmp.size() - 1)},
        {"a bitmap's header", bmp.left(54)},
        {"a PNG cut short", png.left(png.size() / 2)},
        {"a JPEG cut short", jpeg.left(jpeg.size() - 2)},
        {"half a JPEG", jpeg.left(jpeg.size() / 2)},
        {"a vast bitmap", vast},
    };
    Run([&] {
        const QRect before = Control(kSkinOk)->geometry();
        for (const auto& [what, bytes] : kBad) {
            EXPECT_FALSE(Load(bytes)) << what;
            EXPECT_EQ(Control(kSkinOk)->geometry(), before) << what;
        }
        EXPECT_FALSE(window->LoadSkin(kSkinOk, "/nowhere/at/all", kWhite));
        EXPECT_FALSE(window->LoadSkin(kSkinOk, "/", kWhite));
        EXPECT_FALSE(window->LoadSkin(kSkinOk, "/dev/zero", kWhite));
        EXPECT_FALSE(window->LoadSkin(kSkinOk, nullptr, kWhite));
        EXPECT_FALSE(window->LoadSkin(kPlainOk, File(bmp).c_str(), kWhite)) << "a plain button";
        QFile huge(QString::fromStdString(File(bmp)));
        ASSERT_TRUE(huge.resize(CLoadedPicture::kLargestFile + 1));
        EXPECT_FALSE(window->LoadSkin(kSkinOk, huge.fileName().toLocal8Bit().constData(), kWhite));
    });
}

#if !defined(__SANITIZE_ADDRESS__) // whose own memory counts too
TEST_F(Skin, ASmallFileAsksForLittleMemory) {
    constexpr rlim_t kRoom = rlim_t{16} << 20;
    const std::string path = File(Encoded(Strip(9, 7), "bmp"));
    CLoadedPicture picture;
    ASSERT_TRUE(picture.Load(path.c_str())) << "readers are loaded by now";
    rlimit before;
    ASSERT_EQ(getrlimit(RLIMIT_DATA, &before), 0);
    const rlimit narrow{DataBytes() + kRoom, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_DATA, &narrow), 0);
    bool loaded = false;
    try {
        loaded = picture.Load(path.c_str());
    } catch (const std::bad_alloc&) {
    }
    setrlimit(RLIMIT_DATA, &before);
    EXPECT_TRUE(loaded);
}
#endif

TEST_F(Skin, EveryCutOfAFileIsRefusedOrWhole) {
    for (const char* format : {"bmp", "png", "jpg", "gif"}) {
        if (!QImageWriter::supportedImageFormats().contains(format)) continue;
        const QByteArray bytes = Encoded(Strip(9, 7), format);
        CLoadedPicture picture;
        EXPECT_TRUE(picture.LoadFromMemory(bytes)) << format;
        for (qsizetype length = 0; length < bytes.size() - 12; ++length) {
            EXPECT_FALSE(picture.LoadFromMemory(bytes.left(length))) << format << " cut to " << length;
        }
    }
}

} // namespace
} // namespace orvane::test
