// Skin pictures through the loader of the window on Linux: whatever stands in one, it is refused, or its faces are
// drawn. The loader of the window on Windows is the system's own, which no fuzzer here can drive.
#include "dialog/qt/skin_strip.h"
#include "fuzz/support/choices.h"
#include "fuzz/support/library_folder.h"

#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QRect>

using namespace orvane;
using fuzz::Expect;

extern "C" int LLVMFuzzerTestOneInput(const uint8* bytes, std::size_t size) {
    // As in a window: without an application the toolkit looks for its readers anew each time.
    static int count = 1;
    static char name[] = "skin";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(count, arguments);
    static const fuzz::LibraryFolder folder;
    static const std::string path = (folder.Path() / "Ok.bmp").string();
    fuzz::Choices choices(bytes, size);
    const ColourRef transparent = choices.Bits() & 0xFFFFFFU;
    folder.Write("Ok.bmp", choices.Rest());

    CKbcBmp strip;
    const bool loaded = strip.Load(path.c_str());
    const CLoadedPicture& picture = strip.m_image;
    Expect(loaded == !picture.m_picture.isNull(), "what is loaded is a picture");
    Expect(strip.m_width == picture.m_picture.width() && strip.m_height == picture.m_picture.height(),
           "a strip has the size of its picture, and none without one");
    Expect(strip.m_faceWidth == strip.m_width / 4, "a face is a quarter of the strip");
    QImage canvas(64, 32, QImage::Format_ARGB32);
    canvas.fill(0xFF112233U);
    QPainter painter(&canvas);
    Expect(picture.Render(painter, QRect(0, 0, 64, 32)) == loaded, "what is loaded is drawn");
    if (!loaded) return 0;
    for (int face = -1; face < 5; ++face) strip.DrawFace(painter, face, 8 * face, 0, transparent);
    return 0;
}
