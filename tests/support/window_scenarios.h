// Whole sessions of an operator as data: the picture, the steps, and what the host must get. Each window
// system is driven through them by a driver of its own, and all must end alike, to the last byte.
//
// They presume the classifier of FaceCascade(), a tolerance of 40 at the start, a preview of up to 400
// pixels a side, the crop ratio 0.75, and no other session before: settings that a session leaves stay.
#pragma once

#include "session/controls.h"
#include "tests/support/face_scene.h"
#include "tests/support/portrait_scene.h"

#include <array>
#include <string>
#include <vector>

namespace orvane::test {

/// One action of the operator. Positions are pixels of the preview.
struct WindowStep {
    enum class Kind { click, press, move, release, type, dragSlider, enter, escape, closeBox } kind;
    int32 first = 0;  // control, column or slider position
    int32 second = 0; // row
    const wchar_t* text = L"";
};

/// Plays steps on a window. A step returns when the window has dealt with it and with what it brought about.
class WindowDriver {
public:
    virtual ~WindowDriver() = default;
    virtual void Click(int32 id) = 0;
    virtual void Press(int32 x, int32 y) = 0;
    virtual void Move(int32 x, int32 y) = 0;
    virtual void Release(int32 x, int32 y) = 0;
    /// Replaces the text of an edit.
    virtual void Type(int32 id, const wchar_t* text) = 0;
    /// Drags the slider's thumb to a position and lets it go.
    virtual void DragSlider(int32 position) = 0;
    virtual void Enter() = 0;
    virtual void Escape() = 0;
    virtual void CloseBox() = 0;
};

inline void Play(WindowDriver& driver, const WindowStep& step) {
    switch (step.kind) {
    case WindowStep::Kind::click:
        return driver.Click(step.first);
    case WindowStep::Kind::press:
        return driver.Press(step.first, step.second);
    case WindowStep::Kind::move:
        return driver.Move(step.first, step.second);
    case WindowStep::Kind::release:
        return driver.Release(step.first, step.second);
    case WindowStep::Kind::type:
        return driver.Type(step.first, step.text);
    case WindowStep::Kind::dragSlider:
        return driver.DragSlider(step.first);
    case WindowStep::Kind::enter:
        return driver.Enter();
    case WindowStep::Kind::escape:
        return driver.Escape();
    case WindowStep::Kind::closeBox:
        return driver.CloseBox();
    }
}

enum class ScenePicture { face, blank };

/// 160 by 120 pixels: the preview shows 400 by 300 of them, which are 640 by 480 of the work picture.
inline Scene PictureOf(ScenePicture picture) {
    return PortraitScene(160, 120, picture == ScenePicture::face ? 40 : 0, Backdrop::graded, 1);
}

struct WindowScenario {
    const char* name;
    std::array<bool, 4> actions; // crop, background, colour, rotation
    ImageSize output;
    ScenePicture picture;
    bool visible;
    std::vector<WindowStep> steps;
    int32 result;
    const char* sum; // SHA-256 of the packed output; empty where there is none
};

namespace steps {

inline WindowStep Click(int32 id) { return {WindowStep::Kind::click, id}; }
inline WindowStep Press(int32 x, int32 y) { return {WindowStep::Kind::press, x, y}; }
inline WindowStep Move(int32 x, int32 y) { return {WindowStep::Kind::move, x, y}; }
inline WindowStep Release(int32 x, int32 y) { return {WindowStep::Kind::release, x, y}; }
inline WindowStep Type(int32 id, const wchar_t* text) { return {WindowStep::Kind::type, id, 0, text}; }
inline WindowStep DragSlider(int32 position) { return {WindowStep::Kind::dragSlider, position}; }
inline WindowStep Enter() { return {WindowStep::Kind::enter}; }
inline WindowStep Escape() { return {WindowStep::Kind::escape}; }
inline WindowStep CloseBox() { return {WindowStep::Kind::closeBox}; }

} // namespace steps

inline std::vector<WindowScenario> WindowScenarios() {
    using namespace steps;
    constexpr std::array<bool, 4> crop{true, false, false, false}, all{true, true, true, true},
        background{true, true, false, false}, colour{true, false, true, false}, rotation{true, false, false, true},
        colourUncropped{false, false, true, false}, none{false, false, false, false};
    constexpr ImageSize size{120, 160};
    constexpr auto face = ScenePicture::face, blank = ScenePicture::blank;
    const WindowStep ok = Click(kPlainOk), cancel = Click(kCancelButton);
    constexpr int32 kDone = 0, kNoFaceFound = 10, kGivenUp = 20;
    return {
        {"Ok", crop, size, face, true, {ok}, kDone, "fac1094542aefe97b4e849f7f3ff93895812ebe7364c79cd87588d0ef12cd632"},
        {"OkWithAllActions",
         all,
         size,
         face,
         true,
         {ok, ok},
         kDone,
         "6dcb3ca7865325d600e1cebeb29495d4af78bec9eee1522615018f03f896b3e3"},
        {"OkByTheEnterKey",
         all,
         size,
         face,
         true,
         {Enter(), Enter()},
         kDone,
         "6dcb3ca7865325d600e1cebeb29495d4af78bec9eee1522615018f03f896b3e3"},
        {"OkWithoutAnyAction",
         none,
         size,
         face,
         true,
         {ok},
         kDone,
         "82ab96bc70bd87d3b11359905cc9cb759aaef69994a1dbcb6954a5945bb62992"},
        {"CancelWhileMarking", all, size, face, true, {cancel}, kGivenUp, ""},
        {"CancelWhileAdjusting",
         all,
         size,
         face,
         true,
         {ok, Click(kTurnOn90), cancel},
         kDone,
         "fac1094542aefe97b4e849f7f3ff93895812ebe7364c79cd87588d0ef12cd632"},
        {"CloseBoxWhileMarking", all, size, face, true, {CloseBox()}, kGivenUp, ""},
        {"CloseBoxWhileAdjusting", all, size, face, true, {ok, CloseBox()}, kGivenUp, ""},
        {"EscapeWhileMarking", all, size, face, true, {Escape()}, kGivenUp, ""},
        {"EscapeWhileAdjusting", all, size, face, true, {ok, Escape()}, kGivenUp, ""},
        {"MarkByTwoClicks",
         crop,
         size,
         blank,
         true,
         {Press(120, 70), Release(120, 70), Move(180, 130), Press(230, 180), Release(230, 180), ok},
         kDone,
         "39fa0e458d2eabece6c1c4e786b857e9eb8c33e867748e409f6f9089dad53101"},
        {"MarkByOneDrag",
         crop,
         size,
         blank,
         true,
         {Press(120, 70), Move(180, 130), Move(230, 180), Release(230, 180), ok},
         kDone,
         "39fa0e458d2eabece6c1c4e786b857e9eb8c33e867748e409f6f9089dad53101"},
        {"MarkUpAndLeft",
         crop,
         size,
         blank,
         true,
         {Press(230, 180), Move(180, 130), Move(120, 70), Release(120, 70), ok},
         kDone,
         "39fa0e458d2eabece6c1c4e786b857e9eb8c33e867748e409f6f9089dad53101"},
        {"HiddenWithoutAFaceAsksTheOperator",
         crop,
         size,
         blank,
         false,
         {Press(120, 70), Move(200, 150), Release(230, 180), ok},
         kNoFaceFound,
         "39fa0e458d2eabece6c1c4e786b857e9eb8c33e867748e409f6f9089dad53101"},
        {"HiddenWithoutAFaceCancelled", crop, size, blank, false, {cancel}, kNoFaceFound, ""},
        {"HiddenWithAFace",
         crop,
         size,
         face,
         false,
         {},
         kDone,
         "fac1094542aefe97b4e849f7f3ff93895812ebe7364c79cd87588d0ef12cd632"},
        {"ClearAndMarkAnew",
         crop,
         size,
         face,
         true,
         {Click(kPlainClear), Press(60, 40), Move(120, 100), Release(140, 120), ok},
         kDone,
         "3d39d1d0d632d60569956922ee70c4453862c1c48c059bd9dbd6b0e8dc510a7f"},
        {"MarkOverTheDetectorsFace",
         crop,
         size,
         face,
         true,
         {Press(60, 40), Release(60, 40), Move(100, 100), Press(140, 120), Release(140, 120), ok},
         kDone,
         "3d39d1d0d632d60569956922ee70c4453862c1c48c059bd9dbd6b0e8dc510a7f"},
        {"ToleranceByItsEdit",
         background,
         size,
         face,
         true,
         {ok, Type(kToleranceEdit, L"12"), ok},
         kDone,
         "a1cc1f0c724e47c17c3552d158fa98164c2d650d2f57a3ade42fb89709ffd496"},
        {"ToleranceByTheSlider",
         background,
         size,
         face,
         true,
         {ok, DragSlider(80), ok},
         kDone,
         "8f502b7f650dba7c1bd9cdb356a1e7eb7a9b945d357c5ccf2f9c9af799f708df"},
        {"ToleranceByButtons",
         background,
         size,
         face,
         true,
         {ok, DragSlider(79), Click(kToleranceUp), Click(kToleranceUp), Click(kToleranceDown), ok},
         kDone,
         "8f502b7f650dba7c1bd9cdb356a1e7eb7a9b945d357c5ccf2f9c9af799f708df"},
        {"ToleranceEmptied",
         background,
         size,
         face,
         true,
         {ok, Type(kToleranceEdit, L""), ok},
         kDone,
         "fac1094542aefe97b4e849f7f3ff93895812ebe7364c79cd87588d0ef12cd632"},
        {"RotationByItsEdit",
         rotation,
         size,
         face,
         true,
         {ok, Type(kRotationEdit, L"20"), ok},
         kDone,
         "e71039e6cc6a5b44c642e639e2e9a067bf370a7ba3c46eb869dcaa55b1f46805"},
        {"RotationOf400Is359",
         rotation,
         size,
         face,
         true,
         {ok, Type(kRotationEdit, L"400"), ok},
         kDone,
         "0b38aee4b219432cdf98d1b0ad76f972533183f27f5f1754a1e488b110b41a60"},
        {"RotationBackByOne",
         rotation,
         size,
         face,
         true,
         {ok, Click(kTurnBack1), ok},
         kDone,
         "0b38aee4b219432cdf98d1b0ad76f972533183f27f5f1754a1e488b110b41a60"},
        {"RotationOnBy90",
         rotation,
         size,
         face,
         true,
         {ok, Click(kTurnOn90), ok},
         kDone,
         "e661a0ddfad896e1718b069664364f428572e32db42e6bf427e6b33b6d1877bf"},
        {"Rotation359And1",
         rotation,
         size,
         face,
         true,
         {ok, Type(kRotationEdit, L"359"), Click(kTurnOn1), ok},
         kDone,
         "fac1094542aefe97b4e849f7f3ff93895812ebe7364c79cd87588d0ef12cd632"},
        {"RotationNotTouched",
         rotation,
         size,
         face,
         true,
         {ok, ok},
         kDone,
         "fac1094542aefe97b4e849f7f3ff93895812ebe7364c79cd87588d0ef12cd632"},
        {"ColourOff",
         colour,
         size,
         face,
         true,
         {ok, Click(kPlainColor), ok},
         kDone,
         "fac1094542aefe97b4e849f7f3ff93895812ebe7364c79cd87588d0ef12cd632"},
        {"ColourOffAndOn",
         colour,
         size,
         face,
         true,
         {ok, Click(kPlainColor), Click(kPlainColor), ok},
         kDone,
         "c0123d6d18ee975e7c3d22314cdf24afad9a0c6c4c652738dc7c0ae444d1b444"},
        {"ColourKept",
         colour,
         size,
         face,
         true,
         {ok, ok},
         kDone,
         "c0123d6d18ee975e7c3d22314cdf24afad9a0c6c4c652738dc7c0ae444d1b444"},
        {"WithoutACropTheSourcesSize",
         colourUncropped,
         size,
         face,
         true,
         {ok, ok},
         kDone,
         "c4b1b8cbc2d7bf9917d8ad9bd93ab0a7d7a6d9b4c711d7e50937aa23124c8b36"},
        {"EverythingAdjusted",
         all,
         {150, 200},
         face,
         true,
         {ok, DragSlider(25), Click(kPlainColor), Type(kRotationEdit, L"7"), Click(kTurnBack1), Click(kPlainColor), ok},
         kDone,
         "d1784cbeda38990573bb00a1761f00b2fade6affc8db37bb9ec118956869bd3c"},
    };
}

} // namespace orvane::test
