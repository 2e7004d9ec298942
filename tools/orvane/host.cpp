#include "tools/orvane/host.h"

#include "detect/cascade_detector.h"
#include "detect/classifier_file.h"
#include "orvane/orvane.h"
#include "platform/module_folder.h"
#include "primitives/dispatch.h"
#include "primitives/processor.h"
#include "session/session_state.h"
#include "session/stage_clock.h"
#include "tools/orvane/framed_portrait.h"
#include "tools/orvane/group_listener.h"
#include "tools/support/status_text.h"

#include <memory>
#include <new>
#include <utility>

namespace orvane::tools {
namespace {

constexpr int32 kPictureMode = 1;

/// Ends the session of one photo whatever happens in it.
class SessionEnd {
public:
    ~SessionEnd() { g_dialog->EndSession(); }
};

/// Hands a photo in, as the door for packed bitmaps does with a good one: the session reads its rows where they are.
void TakePhoto(const Picture& photo) {
    COrvQuickViewDlg& session = *g_dialog;
    g_stageTimes = {};
    session.m_sourceMode = kPictureMode;
    // Both have rows padded to a multiple of 4 bytes, the bottom row first.
    session.m_sourceBitmap.Borrow(photo.pixels.data(), photo.width, photo.height);
    session.ReadBitmapHeader(session.m_sourceBitmap);
    session.ComputeWorkSize();
}

/// The face of the detection just run: the anchors hold its corners in pixels of the photo.
FaceBox FoundFace() {
    const COrvQuickViewDlg& session = *g_dialog;
    return {session.m_anchorLeft, session.m_anchorTop, session.m_anchorRight - session.m_anchorLeft,
            session.m_anchorBottom - session.m_anchorTop};
}

int32 RunDetect(const Picture& photo, PhotoReport* report, int32* faces) {
    const SessionEnd end;
    const GroupListener listener;
    TakePhoto(photo);
    double milliseconds = 0;
    int32 status;
    {
        const StageClock clock(milliseconds);
        int32 corners[4];
        status = g_dialog->DetectInSource(corners);
    }
    report->milliseconds.detect = milliseconds;
    report->groups = listener.Groups();
    if (faces != nullptr) *faces = listener.Faces();
    if (status == kSuccess) report->face = FoundFace();
    return status;
}

/// What an operator does who wipes the detector's face and marks another by its corners, on a preview that shows the
/// photo pixel by pixel.
int32 MarkFace(const Picture& photo, const FaceBox& face) {
    COrvQuickViewDlg& session = *g_dialog;
    session.m_previewWidth = photo.width;
    session.m_previewHeight = photo.height;
    session.m_anchorLeft = session.m_markLeft = face.x;
    session.m_anchorTop = session.m_markTop = face.y;
    session.m_anchorRight = session.m_markRight = face.x + face.width;
    session.m_anchorBottom = session.m_markBottom = face.y + face.height;
    return session.DetectAndPlaceFace(false);
}

int32 RunPortrait(const Picture& photo, const Options& options, Picture* portrait, PhotoReport* report,
                  const SlotObserver& observer) {
    const SessionEnd end;
    COrvQuickViewDlg& session = *g_dialog;
    TakePhoto(photo);
    int32 status = session.BeginSession();
    if (options.face && (status == kSuccess || status == kNoFace)) status = MarkFace(photo, *options.face);
    if (status == kSuccess) {
        report->face = FoundFace();
        session.m_rotation = options.rotation;
        if (options.frame) {
            status = MakeFramedPortrait(options, {photo.width, photo.height}, portrait, report, observer);
        } else {
            status = session.ProduceOutput(session.m_tolerance, true, observer);
            report->milliseconds.crop = g_stageTimes.crop;
        }
        report->milliseconds.output = g_stageTimes.output;
    }
    report->milliseconds.scale = g_stageTimes.scale;
    report->milliseconds.detect = g_stageTimes.detect;
    return status;
}

/// Runs the steps of one photo; memory may end in any of them.
template <typename Steps>
void Note(PhotoReport* report, Steps steps) {
    try {
        report->status = steps();
    } catch (const std::bad_alloc&) {
        report->status = kOutOfMemory;
    }
    if (*report->status < kSuccess && report->error.empty()) report->error = StatusText(*report->status);
}

/// The output changes hands: nobody else asks the session for it.
int32 FetchOutput(Picture* portrait) {
    if (g_dialog->m_resultBitmap.IsEmpty()) return kNoSession;
    const auto output = std::make_shared<Bitmap>(std::move(g_dialog->m_resultBitmap));
    portrait->width = output->Width();
    portrait->height = output->Height();
    portrait->step = PictureStep(output->Width());
    portrait->pixels = PixelBlock({output, output->Bits()}, output->Header().biSizeImage);
    return kSuccess;
}

} // namespace

Host::Host() : status_(orv_InitDLL()) {
    if (status_ == kSuccess) orv_SetVisibleMode(0);
}

Host::~Host() { orv_ReleaseDLL(); }

LibraryInfo Host::Info() const {
    LibraryInfo info;
    info.version = ORVANE_VERSION;
    info.bits = static_cast<int32>(sizeof(void*) * 8);
    const auto file = std::filesystem::path(InModuleFolder(std::filesystem::path("Orvane.dat").native())).u8string();
    info.classifierFile.assign(file.begin(), file.end());
    info.classifierStatus = g_detectorParams->loadStatus;
    info.windowWidth = g_classifier.windowWidth;
    info.windowHeight = g_classifier.windowHeight;
    info.stages = g_classifier.stageCount;
    info.stumps = g_classifier.classifierCount;
    info.rectangles = g_classifier.featureCount;
    info.bytes = 20 + 20 * int64{info.stages} + 16 * int64{info.stumps} + 20 * int64{info.rectangles};
    info.processorClass = ProcessorClass(ProcessorCode(SystemCpuid()));
    info.processorColumn = SelectedColumn();
    static const char* const kColumnNames[kColumnCount] = {"generic", "reserved", "SSE2", "SSE3"};
    info.columnName = kColumnNames[info.processorColumn];
    return info;
}

void Host::Detect(const Picture& photo, PhotoReport* report, int32* faces) {
    Note(report, [&] { return RunDetect(photo, report, faces); });
}

void Host::MakePortrait(const Picture& photo, const Options& options, Picture* portrait, PhotoReport* report,
                        Steps* steps) {
    *portrait = Picture();
    if (steps != nullptr) steps->clear();
    orv_SetSizeOutputImage(options.width, options.height);
    orv_SetFaceCropRatio(options.cropRatio);
    orv_EnableAction(ORV_CROP, options.actions.crop);
    orv_EnableAction(ORV_REMOVE_BACKGROUND, options.actions.background);
    orv_EnableAction(ORV_CORRECT_COLOUR, options.actions.colour);
    orv_EnableAction(ORV_ROTATE, options.actions.rotation);
    g_dialog->m_tolerance = options.tolerance;
    Note(report, [&]() -> int32 {
        const SlotObserver observer = steps != nullptr ? AddTo(steps) : SlotObserver();
        if (const int32 status = RunPortrait(photo, options, portrait, report, observer)) return status;
        if (options.frame) return kSuccess;
        const int32 status = FetchOutput(portrait);
        if (status != kSuccess || (options.actions.crop && !HasAskedSize(portrait->width, portrait->height, options))) {
            *portrait = Picture();
            report->error = kCorrectionFailed;
        }
        return status;
    });
}

} // namespace orvane::tools
