// The session object: everything that belongs to one run, from the picture handed in to the output.
// It is also what the operator's window works on; all of it runs just as well without a window.
#pragma once

#include "api/pipeline.h"
#include "dialog/language.h"
#include "image/bitmap.h"
#include "image/result_codes.h"

namespace orvane {

/// One instance, made by orv_InitDLL and kept until orv_ReleaseDLL. Each detect call is one session on
/// it. Outside a session all marks and anchors are -1 and m_stage is 1.
class COrvQuickViewDlg {
public:
    // The roads of the detect calls.

    /// The whole session on a packed bitmap. The result goes to the host.
    int32 DetectFacePicture(void* dib);
    /// The whole live session on a capture device; -30 where it can't be started.
    int32 DetectFaceLive(int32 deviceIndex);

    // The run.

    /// Sets up a session and finds the face. 0; 10 no face; -50 no storage for the picture; else the
    /// scan's failure.
    int32 BeginSession();
    /// Runs the pipeline on the present state and stores the result in m_resultBitmap. A `final` run
    /// scales to the output size: the requested one after a crop, else the source picture's. A failing
    /// slot does not stop it; `observer` is told of each that ran. 0, or -50 when the picture has no storage.
    int32 ProduceOutput(int32 tolerance, bool final, const SlotObserver& observer = {});
    /// Ends a session; m_resultBitmap survives.
    void EndSession();

    // Steps of the run.

    /// Makes m_resultBitmap and g_workImage out of m_sourceBitmap by a pipeline run with slot 5 alone, at
    /// the work size. Flags come out as they went in; g_rotationAngle is 0 then.
    void MakeWorkingPicture();
    /// Sets the face by the operator's marks, or by the detector when there are none or it is forced;
    /// g_faceRecord then belongs to the work picture. The detection's status or that of SetFaceRect.
    int32 DetectAndPlaceFace(bool forceDetection);
    /// Scans g_sourceImage. A status of 0 or more stores the face's corners, top-down, in the anchors and
    /// in `corners` (left, top, right, bottom); all four are 0 without a face.
    int32 DetectFaceRect(bool quick, int32 corners[4]);
    /// Runs the crop alone into m_resultBitmap and, where windows can be opened, shows it for half a
    /// second.
    void ShowConfirmation();
    /// Wipes the marks: no face stands.
    void OnBnClickedClear();

    /// m_bitmapHeader from a bitmap's size. 1; -1 for an empty bitmap, which changes nothing. In live
    /// mode always 1, and the header stays.
    int32 ReadBitmapHeader(const Bitmap& bitmap);
    /// Preview and work size from m_bitmapHeader. Always 0.
    int32 ComputeWorkSize();

    /// True when this session has an operator's window.
    bool HasWindow() const;

    BitmapHeader m_bitmapHeader{}; // the bitmap that ReadBitmapHeader looked at last
    LanguageTable m_language;      // the window's texts
    Bitmap m_sourceBitmap;         // picture as handed in
    Bitmap m_resultBitmap;         // the work picture, and after the final run the output
    int32 m_resultCode = 0;        // what the session returns after a modal run
    int32 m_previewOffsetX = 11;   // client position of the preview's first pixel
    int32 m_previewOffsetY = 12;
    int32 m_anchorLeft = -1; // the two corners as clicked or detected; -1 not set
    int32 m_anchorTop = -1;
    int32 m_anchorRight = -1;
    int32 m_anchorBottom = -1;
    int32 m_markLeft = -1; // rectangle to draw; -1 not set
    int32 m_markTop = -1;
    int32 m_markRight = -1;
    int32 m_markBottom = -1;
    int32 m_rotation = 0;   // degrees, 0 to 359
    int32 m_tolerance = 40; // background tolerance in percent, 0 to 99; survives from session to session
    bool m_visible = true;  // false runs a session without the window
    int32 m_stage = 1;      // 1 marking, 2 adjusting
    int32 m_sourceMode = 1; // 1 picture, 2 live
    int32 m_deviceIndex = 0;
    int32 m_previewWidth = 450; // current preview size in pixels, inside the limit below
    int32 m_previewHeight = 450;
    int32 m_previewMaxWidth = 450;
    int32 m_previewMaxHeight = 450;
    int32 m_workWidth = 450; // size of the work picture
    int32 m_workHeight = 860;
    int32 m_outputWidth = 480; // requested output size
    int32 m_outputHeight = 860;

private:
    void ClearMarks();
    int32 PlaceByMarks();
    int32 PlaceByDetector();
    int32 RunHidden();
};

} // namespace orvane
