// How the operator marks a face: two clicks, or one drag.
#include "session/serve.h"

#include <algorithm>
#include <cstdlib>

namespace orvane {

/// A mouse position on the preview, limited to where differences and conversions stay in range.
ImagePoint COrvQuickViewDlg::OnPreview(int32 x, int32 y) const {
    constexpr int32 kFarthest = 1'000'000; // no screen reaches as far
    return {std::clamp(x, -kFarthest, kFarthest) - m_previewOffsetX,
            std::clamp(y, -kFarthest, kFarthest) - m_previewOffsetY};
}

void COrvQuickViewDlg::SetFirstCorner(int32 px, int32 py) {
    m_anchorLeft = px;
    m_anchorTop = py;
}

bool COrvQuickViewDlg::HasBothCorners() {
    const auto lock = LockState(kStatePatience);
    return m_anchorLeft != -1 && m_anchorRight != -1;
}

void COrvQuickViewDlg::OnLButtonDown(int32 x, int32 y) {
    Serve([this, x, y] {
        const auto [px, py] = OnPreview(x, y);
        // No lower bound: a press left of the preview or above it counts.
        if (px > m_previewWidth || py > m_previewHeight || m_stage != kMarking || IsLive()) return;
        if (m_anchorLeft == -1) {
            SetFirstCorner(px, py);
        } else if (m_anchorRight != -1) {
            ClearMarks(); // the old rectangle stays on the screen until the mouse moves
            SetFirstCorner(px, py);
        } else {
            FinishRectangle(px, py);
        }
    });
}

void COrvQuickViewDlg::OnMouseMove(int32 x, int32 y) {
    Serve([this, x, y] {
        const auto [px, py] = OnPreview(x, y);
        m_mouseX = px;
        m_mouseY = py;
        m_window->SetCursor(HasBothCorners() ? Cursor::arrow : Cursor::cross);
        if (IsLive() || !AwaitsSecondCorner()) return;
        m_markLeft = m_anchorLeft;
        m_markTop = m_anchorTop;
        m_markRight = m_mouseX;
        m_markBottom = m_mouseY;
        PostPreview(RenderPreviewOverlay(m_resultBitmap, 0));
    });
}

void COrvQuickViewDlg::OnLButtonUp(int32 x, int32 y) {
    Serve([this, x, y] {
        constexpr int32 kClickReach = 5; // a release no further than this is a click
        const auto [px, py] = OnPreview(x, y);
        if (!IsLive() && AwaitsSecondCorner() && std::abs(m_anchorLeft - px) > kClickReach &&
            std::abs(m_anchorTop - py) > kClickReach) {
            FinishRectangle(px, py);
        }
    });
}

void COrvQuickViewDlg::FinishRectangle(int32 x, int32 y) {
    m_anchorRight = x;
    m_anchorBottom = y;
    m_markLeft = std::min(m_anchorLeft, x);
    m_markTop = std::min(m_anchorTop, y);
    m_markRight = std::max(m_anchorLeft, x);
    m_markBottom = std::max(m_anchorTop, y);
    if (DetectAndPlaceFace(false) == kOutOfMemory) return EndOutOfMemory();
    // A corner at -1 counts as none and left the place to the detector, which may have found nothing.
    if (m_anchorLeft == -1) return;
    m_window->EnableControl(m_okButton, true);
    m_window->EnableControl(m_clearButton, true);
    m_window->ShowControl(kPrompt, false);
}

} // namespace orvane
