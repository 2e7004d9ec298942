// The run of a session: from the bitmap handed in to the output bitmap.
#include "actions/action_settings.h"
#include "image/packed_dib.h"
#include "image/session_images.h"
#include "primitives/trunc.h"
#include "session/deferred_picture.h"
#include "session/session_state.h"
#include "session/stage_clock.h"

namespace orvane {

StageTimes g_stageTimes;

namespace {

constexpr int32 kSmallestOriginal = 75;

/// By how much the work picture differs from the source: small pictures grow, large ones shrink.
float WorkFactor(int64 area) {
    if (area <= 160'000) return 4.0F;
    if (area <= 1'310'720) return 1.25F;
    return area <= 1'920'000 ? 0.8F : 0.7F;
}

} // namespace

/// Ends a detect call's session, also when memory is exhausted within.
struct COrvQuickViewDlg::Ending {
    COrvQuickViewDlg& session;
    ~Ending() {
        session.EndSession();
        session.CloseWindow();
    }
};

COrvQuickViewDlg::~COrvQuickViewDlg() {
    EndCapture();
    g_deferredPicture.Drop();
}

int32 COrvQuickViewDlg::DetectFacePicture(void* dib) {
    g_stageTimes = {};
    m_sourceMode = kPictureMode;
    m_sourceBlock.emplace(dib);
    if (const int32 status = BitmapOverBlock(*m_sourceBlock, m_sourceBitmap)) {
        m_sourceBlock.reset();
        if (status == kNoPicture) m_windows.ShowMessage("Error creating DIB");
        return status == kLockFailed ? kNoPicture : status;
    }
    ReadBitmapHeader(m_sourceBitmap);
    ComputeWorkSize();
    const Ending ending{*this};
    if (!m_visible || !m_windows.CanOpenWindow()) return RunHidden();
    return KeepSource() ? RunWithWindow() : kOutOfMemory;
}

bool COrvQuickViewDlg::KeepSource() {
    const bool kept = m_sourceBitmap.Own();
    m_sourceBlock.reset();
    if (!kept) m_resultBitmap.Delete();
    if (g_deferredPicture.IsPromised()) g_deferredPicture.MoveTo(m_sourceBitmap);
    return kept;
}

int32 COrvQuickViewDlg::RunWithWindow() {
    m_resultCode = kSuccess;
    return RunQuickView() ? m_resultCode : RunHidden();
}

int32 COrvQuickViewDlg::RunHidden() {
    const int32 result = BeginSession();
    if (result == kSuccess) return ProduceOutput(m_tolerance, true);
    if (result == kNoFace && m_windows.CanOpenWindow()) {
        if (!KeepSource()) return kOutOfMemory;
        // The operator is asked after all; the result stays 10 whatever the answer.
        struct Visible {
            bool& mode;
            const bool before = mode;
            ~Visible() { mode = before; }
        };
        const Visible visible{m_visible};
        m_visible = true;
        RunQuickView();
    }
    return result;
}

int32 COrvQuickViewDlg::DetectFaceLive(int32 deviceIndex) {
    g_stageTimes = {};
    m_sourceMode = kLiveMode;
    SetOutputGeometry(m_outputWidth, m_outputHeight);
    const Ending ending{*this};
    // Video that nobody can look at is not begun.
    if (!m_windows.CanOpenWindow()) return kCaptureFailed;
    int32 width = 0, height = 0;
    if (const int32 status = OpenCapture(deviceIndex, width, height)) return status;
    m_bitmapHeader = OutgoingHeader(width, height);
    m_visible = true;
    ComputeWorkSize();
    m_resultCode = kSuccess;
    return RunQuickView() ? m_resultCode : kCaptureFailed;
}

int32 COrvQuickViewDlg::BeginSession() {
    m_previewOffsetX = kPreviewLeft;
    m_previewOffsetY = kPreviewTop;
    ClearMarks();
    m_rotation = 0;
    m_stage = kMarking;
    if (HasWindow()) {
        m_window->SetTitle(L"Orvane  -  Kelmont");
        if (!m_window->HasControl(kToleranceSlider)) return kStepFailed;
        PrepareWindow();
    }
    if (IsLive()) {
        if (HasWindow()) m_window->ShowControl(m_freezeButton, true);
        StartLive();
        return kSuccess;
    }
    ReadBitmapHeader(m_sourceBitmap);
    KeepOriginalSize();
    ComputeWorkSize();
    if (!HasWindow() && !m_sourceBitmap.IsEmpty()) return BeginUnseen();
    {
        const StageClock clock(g_stageTimes.scale);
        MakeWorkingPicture();
    }
    if (m_resultBitmap.IsEmpty()) return WhyNoWorkPicture();
    ReadBitmapHeader(m_resultBitmap);
    const StageClock clock(g_stageTimes.detect);
    return DetectAndPlaceFace(!HasWindow());
}

int32 COrvQuickViewDlg::BeginUnseen() {
    PromiseWorkingPicture();
    int32 status;
    {
        const StageClock clock(g_stageTimes.detect);
        status = DetectAndPlaceFace(true);
    }
    if (status == kSuccess) return status;
    // Then the work picture is the output.
    const StageClock clock(g_stageTimes.scale);
    return g_deferredPicture.MakeBitmap(m_resultBitmap) == kSuccess || status < 0 ? status : kOutOfMemory;
}

int32 COrvQuickViewDlg::WhyNoWorkPicture() {
    if (m_sourceBitmap.IsEmpty()) return kOutOfMemory;
    int32 corners[4];
    const int32 status = DetectInSource(corners);
    return status < 0 ? status : kOutOfMemory;
}

void COrvQuickViewDlg::KeepOriginalSize() {
    if (m_bitmapHeader.biWidth < kSmallestOriginal || m_bitmapHeader.biHeight < kSmallestOriginal) return;
    g_originalWidth = m_bitmapHeader.biWidth;
    g_originalHeight = m_bitmapHeader.biHeight;
}

int32 COrvQuickViewDlg::ProduceOutput(int32 tolerance, bool final, const SlotObserver& observer) {
    if (m_capture != nullptr) return kSuccess; // the pictures still belong to the detection thread
    if (!HasWindow()) {
        const StageClock clock(g_stageTimes.crop);
        if (m_windows.CanOpenWindow()) {
            if (!KeepSource()) return kOutOfMemory;
            ShowConfirmation();
        } else { // nobody sees it, and the run below replaces what it makes
            g_rotationAngle = 0;
        }
    }
    const StageClock clock(g_stageTimes.output);
    g_actionEnabled[kSlotOutputScaling] = final ? 1 : 0;
    if (final && g_actionEnabled[kSlotCrop] != 0) {
        SetOutputGeometry(m_outputWidth, m_outputHeight);
    } else if (final) {
        ReadBitmapHeader(m_sourceBitmap);
        SetOutputGeometry(m_bitmapHeader.biWidth, m_bitmapHeader.biHeight);
    }
    if (IsLive()) PlaceLiveFace();
    RunActionPipeline(tolerance, m_rotation, Snapshots::taken, observer);
    const int32 status = StoreWorkIntoBitmap(m_resultBitmap);
    ReadBitmapHeader(m_resultBitmap);
    ComputeWorkSize();
    if (!final) PostPreview(ScaleBitmapToPreview(m_resultBitmap));
    return status;
}

void COrvQuickViewDlg::EndSession() {
    EndCapture();
    g_deferredPicture.Drop();
    m_sourceBitmap.Delete();
    m_sourceBlock.reset();
    ClearMarks();
    m_stage = kMarking;
}

void COrvQuickViewDlg::CloseWindow() {
    m_windowOpen = false;
    m_window.reset();
    m_previews.Clear();
}

void COrvQuickViewDlg::MakeWorkingPicture() {
    g_deferredPicture.Drop();
    const ActionFlagsGuard flags;
    g_actionEnabled.fill(0);
    if (!m_sourceBitmap.IsEmpty() && !LoadBitmapIntoSource(m_sourceBitmap)) {
        m_resultBitmap.Delete();
        return;
    }
    SetOutputGeometry(m_workWidth, m_workHeight);
    g_actionEnabled[kSlotOutputScaling] = 1;
    RunActionPipeline(-1, 0, Snapshots::leftOut);
    StoreWorkIntoBitmap(m_resultBitmap);
    ReadBitmapHeader(m_resultBitmap);
    SetOutputGeometry(m_outputWidth, m_outputHeight);
}

void COrvQuickViewDlg::PromiseWorkingPicture() {
    SetOutputGeometry(m_workWidth, m_workHeight);
    g_deferredPicture.Promise(m_sourceBitmap, PlanOutputScaling(m_sourceBitmap.Size()));
    SetOutputGeometry(m_outputWidth, m_outputHeight);
    const ImageSize size = g_deferredPicture.Size();
    m_bitmapHeader = OutgoingHeader(size.width, size.height);
    // What a run with slot 5 alone leaves beside the picture.
    g_rotationAngle = 0;
    g_maskImage.Fill(100.0);
    g_colourStageImage.Reset();
    g_colourStageMask.Reset();
    m_resultBitmap.Delete();
}

void COrvQuickViewDlg::ClearMarks() {
    m_anchorLeft = m_anchorTop = m_anchorRight = m_anchorBottom = -1;
    m_markLeft = m_markTop = m_markRight = m_markBottom = -1;
}

int32 COrvQuickViewDlg::ReadBitmapHeader(const Bitmap& bitmap) {
    if (IsLive()) return 1;
    if (bitmap.IsEmpty()) return -1;
    m_bitmapHeader = OutgoingHeader(bitmap.Width(), bitmap.Height());
    return 1;
}

int32 COrvQuickViewDlg::ComputeWorkSize() {
    const int32 w = m_bitmapHeader.biWidth;
    const int32 h = m_bitmapHeader.biHeight;
    m_previewWidth = m_previewMaxWidth;
    m_previewHeight = m_previewMaxHeight;
    if (w < 1 || h < 1) return 0;
    const double r = static_cast<double>(w) / h;
    if (r > static_cast<double>(m_previewWidth) / m_previewHeight) {
        m_previewHeight = TruncToInt32(m_previewWidth / r);
    } else {
        m_previewWidth = TruncToInt32(m_previewHeight * r);
    }
    const double f = WorkFactor(static_cast<int64>(w) * h);
    m_workWidth = TruncToInt32(w * f + 0.5);
    m_workHeight = TruncToInt32(h * f + 0.5);
    return 0;
}

} // namespace orvane
