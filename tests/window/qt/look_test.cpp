// How the window looks in its stages. With ORVANE_SHOTS set to a folder the pictures are kept there.
#include "dialog/qt/about_box.h"
#include "dialog/qt/picture.h"
#include "tests/support/temp_folder.h"
#include "tests/window/qt/window_fixture.h"

#include <QPainter>
#include <QPixmap>

#include <utility>

namespace orvane::test {
namespace {

class Look : public WindowTest {
protected:
    static void Keep(QWidget& widget, const char* name) {
        const QImage shot = widget.grab().toImage();
        EXPECT_EQ(shot.size(), widget.size());
        const QString folder = qEnvironmentVariable("ORVANE_SHOTS");
        if (folder.isEmpty()) return;
        EXPECT_TRUE(shot.save(folder + '/' + name));
    }
};

/// A text must have room: what it needs is no wider than its control.
void ExpectRoom(const QWidget& control, const QString& text) {
    EXPECT_LE(control.fontMetrics().horizontalAdvance(text), control.width())
        << control.objectName().toStdString() << " " << text.toStdString();
    EXPECT_LE(control.fontMetrics().tightBoundingRect(text).height(), control.height())
        << control.objectName().toStdString();
}

TEST_F(Look, TheMarkingStage) {
    SeamPicture picture(400, 300);
    Run([&] {
        window->SetTitle(L"Orvane  -  Kelmont");
        window->SetPreview(picture.View());
        window->ShowControl(kPrompt, true);
        Keep(*Dialog(), "marking.png");
    });
}

TEST_F(Look, InTheAdjustingStageEveryTextHasRoom) {
    SeamPicture picture(300, 400);
    Run([&] {
        window->SetPreview(picture.View());
        window->SetText(kToleranceEdit, L"40");
        window->SetText(kRotationEdit, L"359");
        window->SetSliderPosition(40);
        window->ShowControl(kPlainClear, false);
        for (const int32 id : {1026, 1027, 1003, 1028, 1021, 1005, 1023, 1030, 1031, 1024, 1032, 1042, 1034, 1035, 1043,
                               1036, 1037, 1017, -1}) {
            window->ShowControl(id, true);
        }
        for (const int32 id : {1027, 1028, 1031, 1034, 1035, 1036, 1037, 1021, 1023, 1020, 1017, 1015, 1004, -1}) {
            ExpectRoom(*Control(id), QString::fromStdWString(Text(id)));
        }
        Keep(*Dialog(), "adjusting.png");
    });
}

TEST_F(Look, SkinnedButtonsStandInThePlaceOfThePlainOnes) {
    TempFolder folder;
    const QString file = QString::fromStdString((folder.Path() / "skin.png").string());
    QImage strip(4 * 120, 36, QImage::Format_RGB32);
    strip.fill(Qt::white);
    QPainter painter(&strip);
    for (int face = 0; face < 4; ++face) {
        painter.setBrush(QColor::fromHsv(face * 80, 200, 200));
        painter.drawRoundedRect(face * 120 + 1, 1, 117, 33, 12, 12);
    }
    painter.end();
    ASSERT_TRUE(strip.save(file));
    Run([&] {
        for (const auto& [skinned, plain] : {std::pair(kSkinOk, kPlainOk), std::pair(kSkinClear, kPlainClear)}) {
            ASSERT_TRUE(window->LoadSkin(skinned, file.toLocal8Bit().constData(), 0xFFFFFF));
            window->MoveControl(skinned, plain);
            window->ShowControl(plain, false);
            window->ShowControl(skinned, true);
            EXPECT_EQ(Control(skinned)->pos(), Control(plain)->pos());
            EXPECT_TRUE(Dialog()->rect().contains(Control(skinned)->geometry()));
        }
        Keep(*Dialog(), "skinned.png");
    });
}

TEST_F(Look, TheAboutBoxHasRoomForItsLines) {
    Run([&] {
        AboutBox box(*Dialog());
        box.show();
        for (const QWidget* child : box.findChildren<QWidget*>("-1")) {
            const auto* label = qobject_cast<const QLabel*>(child);
            ASSERT_NE(label, nullptr);
            ExpectRoom(*label, label->text());
            EXPECT_TRUE(box.rect().contains(label->geometry()));
        }
        Keep(box, "about.png");
    });
}

} // namespace
} // namespace orvane::test
