// The session's window: how it opens and ends, and which handler serves which event.
#include "platform/module_folder.h"
#include "session/serve.h"
#include "session/session_state.h"

namespace orvane {

bool COrvQuickViewDlg::RunQuickView() {
    m_window.reset(m_windows.CreateQuickView(*this, m_ownerWindow));
    if (m_window == nullptr) return false;
    if (!m_window->DoModal()) { // nothing of it stays: the session goes on as one without a window
        CloseWindow();
        return false;
    }
    if (m_windowOpen) { // it went without a decision: destroyed with its owner, or the host's loop ended
        m_windowOpen = false;
        m_resultBitmap.Delete();
        m_resultCode = kCancelled;
    }
    return true;
}

void COrvQuickViewDlg::EndWindow() {
    m_windowOpen = false;
    m_window->EndDialog();
}

void COrvQuickViewDlg::EndOutOfMemory() {
    m_resultBitmap.Delete(); // what it holds by now must not pass for a portrait
    m_resultCode = kOutOfMemory;
    EndWindow();
}

void COrvQuickViewDlg::OnInitDialog() {
    m_windowOpen = true;
    Serve([this] {
        m_animationStep = 0;
        m_freezeButton = kPlainFreeze;
        m_okButton = kPlainOk;
        m_clearButton = kPlainClear;
        m_colorButton = kPlainColor;
        if (m_visible) {
            m_clearButton = SkinOrPlain(kSkinClear, kPlainClear, m_skinClear);
            m_colorButton = SkinOrPlain(kSkinColor, kPlainColor, m_skinColor);
            m_window->ShowControl(kPlainOk, false);
            m_okButton = SkinOrPlain(kSkinOk, kPlainOk, m_skinOk);
            if (m_okButton == kSkinOk) m_window->ResetSkin(kSkinOk);
            m_window->SetDefaultButton(m_okButton);
        }
        // Without storage there is no picture to look at.
        if (BeginSession() == kOutOfMemory) EndOutOfMemory();
    });
}

int32 COrvQuickViewDlg::SkinOrPlain(int32 skinned, int32 plain, const std::string& file) {
    const PathString path = InModuleFolder(PathString(file.begin(), file.end()));
    if (!m_window->LoadSkin(skinned, path.c_str(), m_skinTransparent)) return plain;
    // The skinned one stands where the operator looks for the button, not on the preview.
    m_window->MoveControl(skinned, plain);
    m_window->ShowControl(plain, false);
    return skinned;
}

void COrvQuickViewDlg::PrepareWindow() {
    m_window->ShowControl(kToleranceSlider, false);
    m_window->SetSliderRange(0, 99);
    m_window->SetSliderPosition(m_tolerance);
    m_window->ShowControl(m_clearButton, true);
    if (IsLive()) m_window->EnableControl(m_clearButton, false);
    m_window->FocusControl(m_okButton);
    m_window->ShowControl(m_okButton, true);
    WriteNumber(kToleranceEdit, m_tolerance);
    WriteNumber(kRotationEdit, m_rotation);
    ApplyLanguage();
}

void COrvQuickViewDlg::ApplyLanguage() {
    struct Row {
        int32 text, control;
    };
    static constexpr Row kRows[] = {
        {4, kCancelButton},   {8, kPlainClear},     {9, kToleranceGroup}, {10, kToleranceLabel}, {13, kPrompt},
        {11, kRotationGroup}, {12, kRotationLabel}, {5, kPlainColor},     {3, kPlainOk},         {1, kPlainFreeze},
    };
    for (const Row& row : kRows) m_window->SetText(row.control, m_language.GetLanguageText(row.text).c_str());
}

void COrvQuickViewDlg::OnShowWindow() {
    Serve([this] {
        if (m_visible) m_window->Post(WindowMessage::animateMark);
    });
}

void COrvQuickViewDlg::OnCommand(int32 id) {
    Serve([this, id] {
        switch (id) {
        case kSkinOk:
        case kPlainOk:
            return OnBnClickedOk();
        case kSkinClear:
        case kPlainClear:
            return OnBnClickedClear();
        case kCancelButton:
            return OnBnClickedCancel();
        case kSkinColor:
        case kPlainColor:
            return OnBnClickedColorCorrection();
        case kPlainFreeze:
            return OnBnClickedFreeze();
        case kAboutButton:
            return OnBnClickedAbout();
        case kToleranceDown:
            return OnBnClickedToleranceDown();
        case kToleranceUp:
            return OnBnClickedToleranceUp();
        case kTurnBack90:
            return OnBnClickedRotate(-90);
        case kTurnBack1:
            return OnBnClickedRotate(-1);
        case kTurnOn1:
            return OnBnClickedRotate(1);
        case kTurnOn90:
            return OnBnClickedRotate(90);
        default:
            return;
        }
    });
}

bool COrvQuickViewDlg::OnSysCommand(int32 id) {
    // The system keeps the low four bits of such commands for itself.
    if ((id & ~0xF) != ORV_ABOUT_COMMAND) return false;
    Serve([this] { OnBnClickedAbout(); });
    return true;
}

void COrvQuickViewDlg::OnEditChanged(int32 id) {
    if (m_writing) return; // the value is known: it was ours
    Serve([this, id] {
        if (id == kToleranceEdit) OnToleranceEdit();
        if (id == kRotationEdit) OnRotationEdit();
    });
}

void COrvQuickViewDlg::OnToleranceReleased() {
    Serve([this] { SetTolerance(m_window->SliderPosition()); });
}

void COrvQuickViewDlg::OnCancel() {
    Serve([this] {
        m_resultBitmap.Delete();
        m_resultCode = kCancelled;
        EndWindow();
    });
}

void COrvQuickViewDlg::OnMessage(WindowMessage message) {
    Serve([this, message] {
        if (message == WindowMessage::previewBitmap) OnPreviewBitmap();
        if (message == WindowMessage::animateMark) OnAnimateMark();
    });
}

} // namespace orvane
