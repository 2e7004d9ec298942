// What the operator's buttons and fields do.
#include "actions/rotation.h"
#include "image/packed_dib.h"
#include "image/session_images.h"
#include "session/session_state.h"

#include <algorithm>
#include <array>
#include <climits>
#include <string>

namespace orvane {
namespace {

/// The work picture as windows take bitmaps, whose rows it has. Without bits where there is none to show.
PictureView ViewOfWorkPicture() {
    const ImageBuffer& picture = g_workImage;
    if (picture.width < 1 || picture.height < 1 || picture.data == nullptr || picture.channels != 3) return {};
    return {picture.data, picture.width, picture.height};
}

/// What "%d" reads from a text; 0 where no number stands, the range's end beyond it.
int32 NumberIn(const wchar_t* text) {
    while (*text == L' ' || (*text >= L'\t' && *text <= L'\r')) ++text;
    const bool negative = *text == L'-';
    if (*text == L'-' || *text == L'+') ++text;
    int64 number = 0;
    for (; *text >= L'0' && *text <= L'9'; ++text) number = std::min<int64>(number * 10 + (*text - L'0'), INT_MAX);
    return static_cast<int32>(negative ? -number : number);
}

} // namespace

int32 COrvQuickViewDlg::ReadNumber(int32 id, int32 characters) const {
    std::array<wchar_t, 16> text{};
    m_window->GetText(id, text.data(), std::min<int32>(characters + 1, static_cast<int32>(text.size())));
    return NumberIn(text.data());
}

void COrvQuickViewDlg::WriteNumber(int32 id, int32 value) {
    const std::wstring text = std::to_wstring(value);
    m_writing = true;
    m_window->SetText(id, text.c_str());
    m_writing = false;
}

void COrvQuickViewDlg::BringInLine(int32 id, int32 characters, int32 value) {
    if (ReadNumber(id, characters) == value) return; // an edit that was just emptied stays so at 0
    WriteNumber(id, value);
    m_window->UpdateControl(id);
}

void COrvQuickViewDlg::OnBnClickedOk() {
    m_window->SetCursor(Cursor::wait);
    m_window->ShowControl(kPrompt, false);
    m_window->ShowControl(m_clearButton, false);
    m_window->ShowControl(m_freezeButton, false);
    if (m_stage == kAdjusting) return EndWithOutput();
    if (m_stage != kMarking) return EndWindow();
    {
        // Tells the live threads to go; a lock that can't be had is no reason to stay.
        const auto lock = LockState(kStatePatience);
        m_stage = kAdjusting;
    }
    TakeLiveFrame();
    ShowAdjustingControls();
    ShowConfirmation();
    if (!m_windowOpen) return; // it ended meanwhile, with its owner for one
    m_window->RepaintPreview();
    m_window->EnableControl(m_clearButton, false);
    // With nothing left to adjust the first OK is also the last.
    const bool final = g_actionEnabled[kSlotBackground] == 0 && g_actionEnabled[kSlotColour] == 0 &&
                       g_actionEnabled[kSlotRotation] == 0;
    if (final) return EndWithOutput();
    ProduceOutput(m_tolerance, false);
}

void COrvQuickViewDlg::EndWithOutput() {
    const int32 status = ProduceOutput(m_tolerance, true);
    EndSession();
    if (status == kOutOfMemory) return EndOutOfMemory();
    EndWindow();
}

void COrvQuickViewDlg::ShowAdjustingControls() {
    if (g_actionEnabled[kSlotBackground] != 0) {
        for (const int32 id : {kToleranceGroup, kToleranceLabel, kToleranceEdit, kTolerancePercent, kToleranceDown,
                               kToleranceUp, kToleranceSlider}) {
            m_window->ShowControl(id, true);
        }
    }
    if (g_actionEnabled[kSlotRotation] != 0) {
        for (const int32 id : {kRotationGroup, kTurnBackGroup, kTurnOnGroup, kRotationLabel, kRotationEdit,
                               kRotationDegree, kTurnBack1, kTurnBack90, kTurnOn1, kTurnOn90}) {
            m_window->ShowControl(id, true);
        }
    }
    if (g_actionEnabled[kSlotColour] != 0) m_window->ShowControl(m_colorButton, true);
}

void COrvQuickViewDlg::OnBnClickedCancel() {
    if (m_stage == kMarking) return OnCancel();
    if (m_stage != kAdjusting) {
        EndSession();
        return EndWindow();
    }
    // The adjustments are given up, the portrait is not.
    g_actionEnabled[kSlotBackground] = g_actionEnabled[kSlotColour] = g_actionEnabled[kSlotRotation] = 0;
    EndWithOutput();
}

void COrvQuickViewDlg::OnBnClickedClear() {
    if (m_capture != nullptr) return; // the detector places the rectangle, and the button is disabled
    ClearMarks();
    m_stage = kMarking;
    if (!HasWindow()) return;
    m_window->EnableControl(m_okButton, false);
    m_window->EnableControl(m_clearButton, false);
    m_window->ShowControl(kPrompt, true);
    PostPreview(RenderPreviewOverlay(m_resultBitmap, 0));
}

void COrvQuickViewDlg::OnBnClickedColorCorrection() {
    g_actionEnabled[kSlotColour] = g_actionEnabled[kSlotColour] != 0 ? 0 : 1;
    ProduceOutput(m_tolerance, false);
}

void COrvQuickViewDlg::OnBnClickedAbout() { m_window->ShowAbout(); }

void COrvQuickViewDlg::OnToleranceEdit() { SetTolerance(ReadNumber(kToleranceEdit, 3)); }

void COrvQuickViewDlg::OnRotationEdit() { SetRotation(std::clamp(ReadNumber(kRotationEdit, 9), 0, 359)); }

void COrvQuickViewDlg::SetTolerance(int32 value) {
    value = std::clamp(value, 0, 99);
    m_window->SetCursor(Cursor::wait);
    if (m_window->SliderPosition() != value) m_window->SetSliderPosition(value);
    BringInLine(kToleranceEdit, 2, value);
    if (m_tolerance == value) return;
    m_tolerance = value;
    ProduceOutput(value, false);
}

void COrvQuickViewDlg::SetRotation(int32 angle) {
    if (angle < 0) angle += 360;
    if (angle > 359) angle -= 360;
    m_rotation = angle;
    BringInLine(kRotationEdit, 9, angle);
    if (m_stage == kMarking) return;
    ActionRotate(g_colourStageImage, g_workImage, m_rotation);
    ActionRotate(g_colourStageMask, g_maskImage, m_rotation);
    const PictureView turned = ViewOfWorkPicture();
    if (turned.bits != nullptr && !IsLive()) m_bitmapHeader = OutgoingHeader(turned.width, turned.height);
    ComputeWorkSize();
    PostPreview(Stretched(turned, FitInside({turned.width, turned.height}, {m_previewWidth, m_previewHeight})));
}

} // namespace orvane
