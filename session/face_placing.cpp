// Where detector, operator and pipeline meet: the face is found in source pixels, marked in preview
// pixels and kept in work pixels.
#include "detect/candidates.h"
#include "detect/cascade_detector.h"
#include "image/packed_dib.h"
#include "image/session_images.h"
#include "primitives/trunc.h"
#include "session/deferred_picture.h"
#include "session/quick_view_dlg.h"

#include <algorithm>
#include <cstdlib>

namespace orvane {
namespace {

/// The scale between two sizes that fits both ways.
double Fit(ImageSize a, ImageSize b) {
    return std::min(static_cast<double>(a.width) / b.width, static_cast<double>(a.height) / b.height);
}

/// While it lives, g_sourceImage shows a bitmap's own rows; what it held comes back afterwards.
class ShownAsSource {
public:
    explicit ShownAsSource(const Bitmap& bitmap) {
        NotePicture(bitmap.Width(), bitmap.Height(), 3, 24);
        other_.Borrow(bitmap.Bits(), bitmap.Width(), bitmap.Height(), 3);
        g_sourceImage.Swap(other_);
    }
    ~ShownAsSource() { g_sourceImage.Swap(other_); }
    ShownAsSource(const ShownAsSource&) = delete;
    ShownAsSource& operator=(const ShownAsSource&) = delete;

private:
    ImageBuffer other_;
};

int32 Converted(int32 coordinate, double factor) { return TruncToInt32(coordinate * factor + 0.5); }

} // namespace

int32 ScanForFace(bool quick, int32 corners[4], DetectionMemory& memory) {
    const int32 status = FindFace(quick, memory); // the pipeline makes the work picture anew
    if (status < 0) return status;
    int32 x, y, w, h;
    GetFaceRect(&x, &y, &w, &h);
    corners[0] = x;
    corners[1] = y;
    corners[2] = x + w;
    corners[3] = y + h;
    return status;
}

int32 COrvQuickViewDlg::DetectFaceRect(bool quick, int32 corners[4]) {
    const int32 status = ScanForFace(quick, corners, m_detectionMemory);
    m_detectionMemory.grey.Reset(); // pictures are large, and few
    if (status < 0) return status;
    m_anchorLeft = corners[0];
    m_anchorTop = corners[1];
    m_anchorRight = corners[2];
    m_anchorBottom = corners[3];
    return status;
}

int32 COrvQuickViewDlg::DetectAndPlaceFace(bool forceDetection) {
    const bool marked = m_anchorLeft != -1 && m_anchorRight != -1 && m_markLeft != -1;
    return marked && !forceDetection ? PlaceByMarks() : PlaceByDetector();
}

int32 COrvQuickViewDlg::PlaceByMarks() {
    const double f = Fit(WorkSize(), {m_previewWidth, m_previewHeight});
    if (!PresentWorkPicture()) return kOutOfMemory;
    const int32 left = Converted(m_markLeft, f);
    const int32 top = Converted(m_markTop, f);
    const int32 right = Converted(m_markRight, f);
    const int32 bottom = Converted(m_markBottom, f);
    return SetFaceRect(std::min(left, right), std::min(top, bottom), std::abs(right - left), std::abs(bottom - top));
}

int32 COrvQuickViewDlg::DetectInSource(int32 corners[4]) {
    const ShownAsSource shown(m_sourceBitmap);
    return DetectFaceRect(false, corners);
}

ImageSize COrvQuickViewDlg::WorkSize() const {
    return g_deferredPicture.IsPromised() ? g_deferredPicture.Size() : m_resultBitmap.Size();
}

bool COrvQuickViewDlg::PresentWorkPicture() const {
    if (!g_deferredPicture.IsPromised()) return LoadBitmapIntoSource(m_resultBitmap);
    g_deferredPicture.Present();
    return true;
}

int32 COrvQuickViewDlg::PlaceByDetector() {
    if (m_sourceBitmap.IsEmpty()) return kNoPicture;
    int32 corners[4] = {m_markLeft, m_markTop, m_markRight, m_markBottom};
    const int32 status = DetectInSource(corners);

    const ImageSize work = WorkSize();
    const double toWork = 1.0 / Fit(m_sourceBitmap.Size(), work);
    for (int32& corner : corners) corner = Converted(corner, toWork);
    auto& [left, top, right, bottom] = corners;
    if (!PresentWorkPicture()) return kOutOfMemory;
    const int32 width = std::abs(right - left);
    if (status >= 0 && width > 0) {
        SetFaceRect(std::min(left, right), top, width, std::abs(top - bottom));
    } else {
        OnBnClickedClear();
        std::fill_n(corners, 4, -1);
    }

    const double toPreview = Fit({m_previewWidth, m_previewHeight}, work);
    m_markLeft = Converted(left, toPreview);
    m_markRight = Converted(right, toPreview);
    // The top mark holds the greater y from here on; the drawing does not care.
    m_markTop = Converted(bottom, toPreview);
    m_markBottom = Converted(top, toPreview);
    return status;
}

} // namespace orvane
