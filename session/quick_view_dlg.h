// The session object: everything that belongs to one run, from the picture handed in to the output. It is
// also the operator's window, as far as that decides anything; all of it runs just as well without one.
#pragma once

#include "capture/video_capture.h"
#include "detect/detection_memory.h"
#include "image/bitmap.h"
#include "image/result_codes.h"
#include "platform/memory_block.h"
#include "platform/thread_apartment.h"
#include "session/controls.h"
#include "session/language.h"
#include "session/pipeline.h"
#include "session/preview.h"
#include "session/window.h"

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace orvane {

/// Scans g_sourceImage for the face. A status of 0 or more stores the face's corners, top-down, in `corners` (left,
/// top, right, bottom); all four are 0 without a face. `memory` is as of FindFace.
int32 ScanForFace(bool quick, int32 corners[4], DetectionMemory& memory);

/// One instance, made by orv_InitDLL and kept until orv_ReleaseDLL. Each detect call is one session on
/// it. Outside a session all marks and anchors are -1 and m_stage is 1.
///
/// The operator works in two stages: marking, where the face is accepted or marked by hand, and adjusting,
/// where tolerance, rotation and colour change the portrait. Events that come before the window stands or
/// after its end change nothing.
class COrvQuickViewDlg final : public WindowEvents {
public:
    /// @param windows what this session opens windows with; it outlives the session, as does
    /// @param video   where its cameras are
    COrvQuickViewDlg(WindowSystem& windows, VideoSystem& video) : m_windows(windows), m_video(video) {}
    virtual ~COrvQuickViewDlg();
    COrvQuickViewDlg(const COrvQuickViewDlg&) = delete;
    COrvQuickViewDlg& operator=(const COrvQuickViewDlg&) = delete;

    // The roads of the detect calls.

    /// The whole session on a packed bitmap. The result goes to the host.
    int32 DetectFacePicture(void* dib);
    /// The whole live session on a capture device. -30 where it can't be started, or no window can be opened;
    /// else the visible mode stays on, and the result goes to the host.
    int32 DetectFaceLive(int32 deviceIndex);

    // The run.

    /// Sets up a session and finds the face. 0; 10 no face; -40 a window without the tolerance slider;
    /// -50 no storage for the picture; else the scan's failure.
    int32 BeginSession();
    /// Runs the pipeline on the present state and stores the result in m_resultBitmap. A `final` run
    /// scales to the output size: the requested one after a crop, else the source picture's; any other one
    /// goes to the preview. A failing slot does not stop it; `observer` is told of each that ran. 0, or -50
    /// when the picture has no storage.
    int32 ProduceOutput(int32 tolerance, bool final, const SlotObserver& observer = {});
    /// Ends a session; m_resultBitmap survives.
    void EndSession();

    // Steps of the run.

    /// Makes m_resultBitmap and g_workImage out of m_sourceBitmap by a pipeline run with slot 5 alone, at
    /// the work size. Flags come out as they went in; g_rotationAngle is 0 then.
    void MakeWorkingPicture();
    /// The same of which nobody reads a pixel for now: g_deferredPicture promises it, m_resultBitmap is empty and
    /// g_workImage stays.
    void PromiseWorkingPicture();
    /// Sets the face by the operator's marks, or by the detector when there are none or it is forced;
    /// g_faceRecord then belongs to the work picture. The detection's status or that of SetFaceRect.
    int32 DetectAndPlaceFace(bool forceDetection);
    /// ScanForFace that stores the corners in the anchors as well.
    int32 DetectFaceRect(bool quick, int32 corners[4]);
    /// Runs the crop alone into m_resultBitmap and, where windows can be opened, shows it for half a
    /// second. A session without a window leaves it out where none can be opened.
    void ShowConfirmation();
    /// DetectFaceRect, once and thoroughly, on m_sourceBitmap, of which g_sourceImage is no copy meanwhile.
    int32 DetectInSource(int32 corners[4]);

    /// m_bitmapHeader from a bitmap's size. 1; -1 for an empty bitmap, which changes nothing. In live
    /// mode always 1, and the header stays.
    int32 ReadBitmapHeader(const Bitmap& bitmap);
    /// Preview and work size from m_bitmapHeader. Always 0.
    int32 ComputeWorkSize();

    // The live session: how it begins and ends, and one round of each of its threads. A step that is false was
    // its thread's last.

    /// Makes the capture for a device and says the size of its frames. 0; -30 when the device can't be used or
    /// its frames have no size, without a capture then. Nothing in picture mode.
    int32 OpenCapture(int32 deviceIndex, int32& width, int32& height);
    /// Lets the frames come and starts both threads. 1; -1 without a capture.
    int32 StartLive();
    /// Waits until both threads are out, which the end of the marking stage tells them. Always 1.
    int32 StopLiveThreads();
    /// Draws the newest frame into the preview.
    bool FrameThreadStep();
    /// Looks for the face on the newest frame.
    bool DetectThreadStep();
    int32 FrameThreadProc();
    int32 DetectThreadProc();

    // The commands, each also the handler of a button.

    void OnBnClickedOk();
    void OnBnClickedCancel();
    /// Wipes the marks: no face stands.
    void OnBnClickedClear();
    void OnBnClickedColorCorrection();
    /// Holds the camera's picture, or lets it go. Nothing in a session on a picture.
    void OnBnClickedFreeze();
    void OnBnClickedAbout();
    void OnBnClickedToleranceDown() { SetTolerance(m_tolerance - 1); }
    void OnBnClickedToleranceUp() { SetTolerance(m_tolerance + 1); }
    void OnBnClickedRotate(int32 degrees) { SetRotation(m_rotation + degrees); }
    void OnToleranceEdit();
    void OnRotationEdit();

    /// Limits the value to 0 to 99 and brings slider and edit in line; a value that differs from
    /// m_tolerance runs the pipeline.
    void SetTolerance(int32 value);
    /// Wraps the angle once into 0 to 359 and brings the edit in line. In the adjusting stage the preview
    /// shows the picture turned from the snapshots; m_resultBitmap stays.
    void SetRotation(int32 angle);

    // The marking, in preview coordinates.

    /// The second corner: the face is placed by the sorted rectangle.
    void FinishRectangle(int32 x, int32 y);
    /// A bitmap scaled to the preview size with its proportions; empty where nothing is left of it.
    Bitmap ScaleBitmapToPreview(const Bitmap& bitmap) const;
    /// The same with the marks drawn on it, or "?" while no face stands.
    Bitmap RenderPreviewOverlay(const Bitmap& bitmap, int32 colour) const;
    /// Hands the oldest bitmap in line to the window's preview.
    void OnPreviewBitmap();
    /// One step of the opening animation.
    void OnAnimateMark();

    // What the window tells.

    void OnInitDialog() override;
    void OnShowWindow() override;
    void OnCommand(int32 id) override;
    bool OnSysCommand(int32 id) override;
    void OnEditChanged(int32 id) override;
    void OnToleranceReleased() override;
    void OnMouseMove(int32 x, int32 y) override;
    void OnLButtonDown(int32 x, int32 y) override;
    void OnLButtonUp(int32 x, int32 y) override;
    void OnCancel() override;
    void OnMessage(WindowMessage message) override;

    std::array<ColourRef, 2> m_faceColors{0x00FFFF, 0x00FF00}; // pens of the face rectangle; 0 is in use
    int32 m_missCount = 0;                                     // live detections without a face in a row
    int32 m_resultCode = 0;                                    // what the session returns after a modal run
    std::timed_mutex m_stateMutex;                             // stage, marks and source against live threads
    bool m_frameThreadStopped = true;                          // set by a live thread as it leaves
    bool m_detectThreadStopped = true;
    std::unique_ptr<CVideoCapture> m_capture; // in a live session, until its picture is taken
    BitmapHeader m_bitmapHeader{};            // the bitmap that ReadBitmapHeader looked at last
    LanguageTable m_language;                 // the window's texts
    std::optional<LockedBlock> m_sourceBlock; // what m_sourceBitmap shows, where it has no pixels of its own
    Bitmap m_sourceBitmap;                    // picture as handed in, or the newest frame
    Bitmap m_resultBitmap;                    // the work picture, and after the final run the output
    DetectionMemory m_detectionMemory;        // serves from picture to picture, and from frame to frame
    int32 m_previewOffsetX = kPreviewLeft;    // client position of the preview's first pixel
    int32 m_previewOffsetY = kPreviewTop;
    std::atomic<int32> m_mouseX = 0; // last mouse position in preview coordinates
    std::atomic<int32> m_mouseY = 0;
    int32 m_anchorLeft = -1; // the two corners as clicked or detected; -1 not set
    int32 m_anchorTop = -1;
    int32 m_anchorRight = -1;
    int32 m_anchorBottom = -1;
    int32 m_markLeft = -1; // rectangle to draw, in a live session in pixels of the frame; -1 not set
    int32 m_markTop = -1;
    int32 m_markRight = -1;
    int32 m_markBottom = -1;
    int32 m_rotation = 0;   // degrees, 0 to 359
    int32 m_tolerance = 40; // background tolerance in percent, 0 to 99; survives from session to session
    bool m_visible = true;  // false runs a session without the window
    std::atomic<int32> m_stage = kMarking;
    int32 m_sourceMode = kPictureMode;
    int32 m_deviceIndex = 0;
    int32 m_previewWidth = 450; // current preview size in pixels, inside the limit below
    int32 m_previewHeight = 450;
    int32 m_previewMaxWidth = 450;
    int32 m_previewMaxHeight = 450;
    int32 m_workWidth = 450; // size of the work picture
    int32 m_workHeight = 860;
    int32 m_outputWidth = 480; // requested output size
    int32 m_outputHeight = 860;
    int32 m_animationStep = 0;       // of the opening animation, 0 when idle
    void* m_ownerWindow = nullptr;   // the host's window that owns ours
    std::string m_skinOk = "Ok.bmp"; // skin files, in the library's folder
    std::string m_skinClear = "Cancel.xyz";
    std::string m_skinColor = "Contrast.bmp";
    ColourRef m_skinTransparent = 0xFFFFFF; // what counts as transparent in the skins
    int32 m_okButton = kPlainOk;            // the button of each pair that is in use
    int32 m_clearButton = kPlainClear;
    int32 m_colorButton = kPlainColor;
    int32 m_freezeButton = kPlainFreeze;

    static constexpr int32 kMarking = 1; // stages
    static constexpr int32 kAdjusting = 2;
    static constexpr int32 kPictureMode = 1; // sources
    static constexpr int32 kLiveMode = 2;

    /// Live detections without a face in a row for which the last rectangle stays on the screen.
    static constexpr int32 MaxMissedDetections = 7;

private:
    struct Ending;

    /// Runs the window modally. False when none could be opened.
    bool RunQuickView();
    int32 RunHidden();
    /// Makes the picture the session's own and lets go of the host's block: while a window stands, the host may do
    /// with it what it likes. False without memory, with no picture and no output then.
    bool KeepSource();
    int32 RunWithWindow();
    void EndWindow();
    /// The same with that result and without an output.
    void EndOutOfMemory();
    void EndWithOutput();
    void CloseWindow();

    /// Serves an event of the window. Nothing that is thrown may reach the toolkit: it can only be exhausted
    /// memory, which ends the window with that result.
    template <typename Body>
    void Serve(Body body);

    bool HasWindow() const { return m_window != nullptr; }
    bool IsLive() const { return m_sourceMode == kLiveMode; }

    /// m_stateMutex, or what came of waiting for it; who goes on without it leaves alone what it guards.
    std::unique_lock<std::timed_mutex> LockState(int32 milliseconds);
    /// Ends the marking stage of a live session, waits for its threads and gives the device back.
    void EndCapture();
    /// Ends the video; the last frame becomes the picture of the session.
    void TakeLiveFrame();
    /// The face by the marks, which are in pixels of the frame. The status of SetFaceRect.
    int32 PlaceLiveFace();
    void StoreLiveFace(int32 status, const int32 corners[4]);
    void KeepOriginalSize();
    /// The rest of BeginSession without a window.
    int32 BeginUnseen();
    /// What to answer when the photograph gave no work picture: of one that is too thin the detector's answer, else
    /// -50.
    int32 WhyNoWorkPicture();
    /// Of the work picture, made or promised.
    ImageSize WorkSize() const;
    /// The work picture, made or promised, becomes g_sourceImage. False without storage.
    bool PresentWorkPicture() const;

    void ClearMarks();
    int32 PlaceByMarks();
    int32 PlaceByDetector();
    void PrepareWindow();
    void ApplyLanguage();
    void ShowAdjustingControls();
    int32 SkinOrPlain(int32 skinned, int32 plain, const std::string& file);
    void SetFirstCorner(int32 px, int32 py);
    bool HasBothCorners();
    ImagePoint OnPreview(int32 x, int32 y) const;
    /// Whether the next corner ends a rectangle. Once the portrait stands, one that was begun is forgotten.
    bool AwaitsSecondCorner() const { return m_stage == kMarking && m_anchorLeft != -1 && m_anchorRight == -1; }

    int32 ReadNumber(int32 id, int32 characters) const;
    void WriteNumber(int32 id, int32 value);
    void BringInLine(int32 id, int32 characters, int32 value);
    Bitmap RenderAnimatedMarks();
    void PostPreview(Bitmap bitmap);

    static constexpr int32 kStatePatience = 500; // milliseconds

    WindowSystem& m_windows;
    VideoSystem& m_video;
    ThreadApartment m_apartment; // what picture files and cameras of the system need of a thread
    PreviewQueue m_previews;
    std::unique_ptr<QuickViewWindow> m_window; // null in a session without a window
    bool m_windowOpen = false;                 // from OnInitDialog to the window's end
    bool m_writing = false;                    // our own text goes to an edit
    std::thread m_frameThread;                 // of a live session
    std::thread m_detectThread;
};

} // namespace orvane
