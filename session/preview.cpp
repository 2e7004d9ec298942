#include "session/preview.h"

#include "primitives/trunc.h"
#include "session/quick_view_dlg.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

namespace orvane {
namespace {

constexpr int32 kPenReach = 1; // a pen of 3 pixels covers one more on each side

/// The row `y` counted from the top.
uint8* RowFromTop(Bitmap& bitmap, int32 y) {
    const auto rows = static_cast<std::ptrdiff_t>(bitmap.Height() - 1 - y);
    return bitmap.Bits() + rows * BitmapRowBytes(bitmap.Width());
}

/// One side of a rectangle, which runs along a row or a column.
void DrawSide(Bitmap& bitmap, int64 x0, int64 y0, int64 x1, int64 y1, ColourRef colour) {
    const auto left = static_cast<int32>(std::clamp<int64>(std::min(x0, x1) - kPenReach, 0, bitmap.Width()));
    const auto right = static_cast<int32>(std::clamp<int64>(std::max(x0, x1) + kPenReach + 1, 0, bitmap.Width()));
    const auto top = static_cast<int32>(std::clamp<int64>(std::min(y0, y1) - kPenReach, 0, bitmap.Height()));
    const auto bottom = static_cast<int32>(std::clamp<int64>(std::max(y0, y1) + kPenReach + 1, 0, bitmap.Height()));
    for (int32 y = top; y < bottom; ++y) {
        uint8* pixel = RowFromTop(bitmap, y) + static_cast<std::ptrdiff_t>(left) * 3;
        for (int32 x = left; x < right; ++x, pixel += 3) {
            pixel[0] = static_cast<uint8>(colour >> 16);
            pixel[1] = static_cast<uint8>(colour >> 8);
            pixel[2] = static_cast<uint8>(colour);
        }
    }
}

} // namespace

void PreviewQueue::Push(Bitmap bitmap) {
    constexpr std::size_t kMost = 64; // a window that does not come to show them is not flooded
    const std::lock_guard lock(mutex_);
    if (bitmaps_.size() >= kMost) bitmaps_.pop_front();
    bitmaps_.push_back(std::move(bitmap));
}

Bitmap PreviewQueue::Pop() {
    const std::lock_guard lock(mutex_);
    if (bitmaps_.empty()) return {};
    Bitmap oldest = std::move(bitmaps_.front());
    bitmaps_.pop_front();
    return oldest;
}

void PreviewQueue::Clear() {
    const std::lock_guard lock(mutex_);
    bitmaps_.clear();
}

ImageSize FitInside(ImageSize picture, ImageSize limit) {
    if (picture.width < 1 || picture.height < 1 || limit.width < 1 || limit.height < 1) return {0, 0};
    const double aspect = static_cast<double>(picture.width) / picture.height;
    if (aspect > static_cast<double>(limit.width) / limit.height) {
        return {limit.width, TruncToInt32(limit.width / aspect)};
    }
    return {TruncToInt32(limit.height * aspect), limit.height};
}

Bitmap Stretched(const PictureView& picture, ImageSize size) {
    Bitmap result;
    if (picture.bits == nullptr || !result.Create(size.width, size.height)) return {};
    // The middle of pixel i of n lies at (2 i + 1) / 2 n of a side; below the side's end for every i.
    const auto under = [](int32 i, int32 n, int32 side) {
        return static_cast<int32>((2 * static_cast<int64>(i) + 1) * side / (2 * static_cast<int64>(n)));
    };
    std::vector<std::ptrdiff_t> columns(static_cast<std::size_t>(size.width));
    for (int32 x = 0; x < size.width; ++x) {
        columns[static_cast<std::size_t>(x)] = std::ptrdiff_t{3} * under(x, size.width, picture.width);
    }
    const std::ptrdiff_t sourceStep = BitmapRowBytes(picture.width);
    const std::ptrdiff_t step = BitmapRowBytes(size.width);
    for (int32 y = 0; y < size.height; ++y) {
        const uint8* from = picture.bits + under(y, size.height, picture.height) * sourceStep;
        uint8* to = result.Bits() + y * step;
        for (const std::ptrdiff_t column : columns) {
            std::memcpy(to, from + column, 3);
            to += 3;
        }
    }
    return result;
}

void DrawRectangle(Bitmap& bitmap, const Corners& corners, ColourRef colour) {
    const auto& [left, top, right, bottom] = corners;
    DrawSide(bitmap, left, top, right, top, colour);
    DrawSide(bitmap, right, top, right, bottom, colour);
    DrawSide(bitmap, right, bottom, left, bottom, colour);
    DrawSide(bitmap, left, bottom, left, top, colour);
}

Bitmap COrvQuickViewDlg::ScaleBitmapToPreview(const Bitmap& bitmap) const {
    return Stretched(bitmap, FitInside(bitmap.Size(), {m_previewWidth, m_previewHeight}));
}

Bitmap COrvQuickViewDlg::RenderPreviewOverlay(const Bitmap& bitmap, int32 colour) const {
    Bitmap overlay = ScaleBitmapToPreview(bitmap);
    if (overlay.IsEmpty()) return overlay;
    const int32 w = overlay.Width(), h = overlay.Height();
    const int32 right = m_anchorRight == -1 ? m_mouseX.load() : m_anchorRight;
    if (right <= 0 || m_anchorLeft <= 0) {
        constexpr ColourRef kNoFaceColour = 0xFF3232;
        const int32 fontHeight = TruncToInt32(h * 0.5), fontWidth = TruncToInt32(w * 0.2);
        m_windows.WriteText(overlay.Bits(), w, h,
                            {L"?", TruncToInt32(w * 0.5 - fontWidth * 0.5), TruncToInt32(h * 0.5 - fontHeight * 0.5),
                             fontHeight, fontWidth, kNoFaceColour});
        return overlay;
    }
    if (m_markLeft < 0 || m_markTop < 0 || m_markRight < 0 || m_markBottom < 0) return overlay;
    Corners corners{m_markLeft, m_markTop, m_markRight, m_markBottom};
    if (IsLive()) { // there the marks are in pixels of the frame
        const double f = std::min(static_cast<double>(m_previewWidth) / m_bitmapHeader.biWidth,
                                  static_cast<double>(m_previewHeight) / m_bitmapHeader.biHeight);
        for (int32* c : {&corners.left, &corners.top, &corners.right, &corners.bottom}) *c = TruncToInt32(*c * f + 0.5);
    }
    DrawRectangle(overlay, corners, m_faceColors[static_cast<std::size_t>(colour)]);
    return overlay;
}

void COrvQuickViewDlg::PostPreview(Bitmap bitmap) {
    if (m_window == nullptr || bitmap.IsEmpty()) return; // the previous picture stays
    m_previews.Push(std::move(bitmap));
    m_window->Post(WindowMessage::previewBitmap);
}

void COrvQuickViewDlg::OnPreviewBitmap() {
    const Bitmap bitmap = m_previews.Pop();
    if (!bitmap.IsEmpty()) m_window->SetPreview(ViewOf(bitmap));
}

void COrvQuickViewDlg::OnAnimateMark() {
    constexpr int32 kSteps = 10;
    constexpr int32 kPauseMilliseconds = 50;
    if (m_stage != kMarking) { // the portrait takes the picture's place: no rectangle belongs on it
        m_animationStep = 0;
        return;
    }
    if (m_animationStep > 0) m_window->Rest(kPauseMilliseconds);
    if (++m_animationStep == kSteps) {
        m_animationStep = 0;
        return;
    }
    // Live there is no picture yet, and the marks belong to the detection.
    if (!IsLive()) PostPreview(RenderAnimatedMarks());
    m_window->Post(WindowMessage::animateMark);
}

Bitmap COrvQuickViewDlg::RenderAnimatedMarks() {
    constexpr float kShare = 0.11111111F; // of the way, a step
    const auto step = static_cast<float>(m_animationStep);
    const auto between = [step](int32 start, int32 target) {
        const float way = static_cast<float>(target) - static_cast<float>(start);
        return TruncToInt32(static_cast<float>(start) + step * way * kShare);
    };
    const Corners marks{m_markLeft, m_markTop, m_markRight, m_markBottom};
    m_markLeft = between(1, marks.left);
    m_markBottom = between(1, marks.top);
    m_markRight = between(5, marks.right);
    m_markTop = between(5, marks.bottom);
    Bitmap overlay = RenderPreviewOverlay(m_resultBitmap, 0);
    m_markLeft = marks.left;
    m_markTop = marks.top;
    m_markRight = marks.right;
    m_markBottom = marks.bottom;
    return overlay;
}

} // namespace orvane
