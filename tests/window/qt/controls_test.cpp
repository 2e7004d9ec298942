// The controls stand as their list says, and the session's calls reach them.
#include "dialog/qt/controls.h"
#include "tests/window/qt/window_fixture.h"

#include <QGroupBox>
#include <QPushButton>

namespace orvane::test {
namespace {

using Controls = WindowTest;

constexpr ControlRow kRows[] = {ORV_QUICK_VIEW_CONTROLS(ORV_CONTROL_ROW)};

TEST_F(Controls, AllOfTheListStandWithPlaceTextAndVisibility) {
    Run([&] {
        const DialogUnits units(Dialog()->font());
        for (const ControlRow& row : kRows) {
            SCOPED_TRACE(row.id);
            ASSERT_TRUE(window->HasControl(row.id));
            const QWidget* control = Control(row.id);
            EXPECT_EQ(control->geometry(), units.Pixels(row.x, row.y, row.width, row.height));
            EXPECT_EQ(control->isVisible(), row.start == ControlStart::SHOWN);
            EXPECT_EQ(Text(row.id), row.text);
            EXPECT_EQ(control->parentWidget(), Dialog());
        }
        EXPECT_EQ(Dialog()->size(), units.Pixels(ORV_QUICK_VIEW_WIDTH, ORV_QUICK_VIEW_HEIGHT));
        EXPECT_FALSE(window->HasControl(1));
    });
}

TEST_F(Controls, DegreesHaveTheirMark) {
    Run([&] {
        EXPECT_EQ(Control<QLabel>(kRotationDegree)->text(), QString(QChar(0xBA)));
        EXPECT_EQ(Control<QPushButton>(kTurnBack90)->text(), QString("90") + QChar(0xBA));
        EXPECT_EQ(Control<QPushButton>(kTurnOn1)->text(), QString("1") + QChar(0xBA));
    });
}

TEST(Units, AreNeverBelowSixByThirteenSoThatThePreviewKeepsItsRoom) {
    QFont tiny;
    tiny.setPixelSize(4);
    const DialogUnits units(tiny);
    EXPECT_EQ(units.Pixels(6, 6, 264, 243), QRect(9, 10, 396, 395));
    // The frame's inner corner is where the session takes the first pixel to be.
    EXPECT_EQ(units.Pixels(6, 6, 0, 0).x() + PictureFrame::kFrame, kPreviewLeft);
    EXPECT_EQ(units.Pixels(6, 6, 0, 0).y() + PictureFrame::kFrame, kPreviewTop);
    EXPECT_GE(units.Pixels(306, 12, 0, 0).x(), kPreviewLeft + 400 + PictureFrame::kFrame);
}

TEST_F(Controls, CallsReachTheirControlAndOthersArePassedOver) {
    Run([&] {
        window->ShowControl(kToleranceGroup, true);
        EXPECT_TRUE(Control(kToleranceGroup)->isVisible());
        window->EnableControl(kPlainClear, false);
        EXPECT_FALSE(Control(kPlainClear)->isEnabled());
        window->FocusControl(kCancelButton);
        EXPECT_TRUE(Control(kCancelButton)->hasFocus());
        window->SetTitle(L"A title");
        EXPECT_EQ(Dialog()->windowTitle(), "A title");
        window->SetText(kPrompt, L"<b>no markup</b>");
        EXPECT_EQ(Control<QLabel>(kPrompt)->text(), "<b>no markup</b>");
        EXPECT_EQ(Control<QLabel>(kPrompt)->textFormat(), Qt::PlainText);
        window->MoveControl(kSkinOk, kPlainOk);
        EXPECT_EQ(Control(kSkinOk)->pos(), Control(kPlainOk)->pos());
        for (const int32 missing : {0, 1, 4711}) {
            window->ShowControl(missing, true);
            window->EnableControl(missing, true);
            window->FocusControl(missing);
            window->SetDefaultButton(missing);
            window->MoveControl(missing, kPlainOk);
            window->MoveControl(kPlainOk, missing);
            window->UpdateControl(missing);
            window->SetText(missing, L"x");
            window->ResetSkin(missing);
            EXPECT_EQ(Text(missing), L"");
        }
    });
}

TEST_F(Controls, TextIsCutToTheCallersRoom) {
    Run([&] {
        wchar_t room[4] = L"zzz";
        EXPECT_EQ(window->GetText(kPlainColor, room, 4), 3);
        EXPECT_STREQ(room, L"Col");
        EXPECT_EQ(window->GetText(kPlainColor, room, 1), 0);
        EXPECT_STREQ(room, L"");
        EXPECT_EQ(window->GetText(kPlainColor, room, 0), 0);
        EXPECT_EQ(window->GetText(kPlainColor, nullptr, 4), 0);
    });
}

TEST_F(Controls, EveryButtonTellsItsNumber) {
    Run([&] {
        for (const ControlRow& row : kRows) {
            auto* button = Control<QAbstractButton>(row.id);
            if (button == nullptr) continue;
            window->ShowControl(row.id, true);
            button->raise();
            QTest::mouseClick(button, Qt::LeftButton);
            EXPECT_EQ(recorder.Take(), Events{"command " + std::to_string(row.id)});
            window->EnableControl(row.id, false);
            QTest::mouseClick(button, Qt::LeftButton);
            EXPECT_EQ(recorder.Take(), Events{}) << "disabled " << row.id;
        }
    });
}

TEST_F(Controls, EditsTakeDigitsAloneAndTellEachChange) {
    Run([&] {
        window->ShowControl(kToleranceEdit, true);
        auto* edit = Control<QLineEdit>(kToleranceEdit);
        EXPECT_EQ(edit->alignment(), Qt::AlignCenter);
        QTest::keyClicks(edit, "4x-2");
        EXPECT_EQ(Text(kToleranceEdit), L"42");
        EXPECT_EQ(recorder.Take(), (Events{"edit 1003", "edit 1003"}));
        QTest::keyClick(edit, Qt::Key_Backspace);
        EXPECT_EQ(recorder.Take(), Events{"edit 1003"});
        window->SetText(kToleranceEdit, L"99");
        EXPECT_EQ(recorder.Take(), Events{"edit 1003"});
        window->SetText(kRotationEdit, L"270");
        EXPECT_EQ(recorder.Take(), Events{"edit 1024"});
        EXPECT_EQ(Text(kRotationEdit), L"270");
    });
}

TEST_F(Controls, TheTabKeyWalksThemInTheListsOrder) {
    Run([&] {
        window->FocusControl(kPlainOk);
        for (const int32 next : {kPlainClear, kCancelButton, kAboutButton, kPlainOk}) {
            QTest::keyClick(Dialog()->focusWidget(), Qt::Key_Tab);
            EXPECT_EQ(Dialog()->focusWidget()->objectName(), QString::number(next));
        }
    });
}

TEST_F(Controls, EveryCallIsHarmlessBeforeAndAfterTheWindow) {
    SeamPicture picture(4, 3);
    const auto callAll = [&] {
        EXPECT_FALSE(window->HasControl(kPlainOk));
        window->ShowControl(kPlainOk, true);
        window->EnableControl(kPlainOk, true);
        window->FocusControl(kPlainOk);
        window->SetDefaultButton(kPlainOk);
        window->MoveControl(kPlainOk, kCancelButton);
        window->UpdateControl(kPlainOk);
        window->SetTitle(L"x");
        window->SetText(kPlainOk, L"x");
        EXPECT_EQ(Text(kPlainOk), L"");
        window->SetSliderRange(0, 9);
        window->SetSliderPosition(3);
        EXPECT_EQ(window->SliderPosition(), 0);
        window->SetPreview(picture.View());
        window->RepaintPreview();
        EXPECT_FALSE(window->LoadSkin(kSkinOk, "/nowhere", 0));
        window->ResetSkin(kSkinOk);
        window->SetCursor(Cursor::wait);
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        window->ShowAbout();
        window->Rest(1000);
    };
    window.reset(QtWindowSystem().CreateQuickView(recorder, nullptr));
    callAll();
    recorder.onInit = [&] { window->EndDialog(); };
    EXPECT_TRUE(window->DoModal());
    EXPECT_EQ(recorder.Take(), Events{"init"}) << "a window that ends at once is never shown";
    callAll();
    window->Post(WindowMessage::previewBitmap);
    QCoreApplication::processEvents();
    EXPECT_EQ(recorder.Take(), Events{});
    EXPECT_FALSE(window->DoModal()) << "a window opens once";
}

} // namespace
} // namespace orvane::test
