#include "tools/orvane/host.h"

#include "detect/cascade_detector.h"
#include "detect/classifier_file.h"
#include "image/packed_dib.h"
#include "orvane/orvane.h"
#include "platform/module_folder.h"
#include "primitives/dispatch.h"
#include "primitives/processor.h"
#include "session/session_state.h"
#include "session/stage_clock.h"
#include "tools/support/status_text.h"

#include <cstring>
#include <new>

namespace orvane::tools {
namespace {

constexpr int32 kPictureMode = 1;

/// Ends the session of one photo whatever happens in it.
class SessionEnd {
public:
    ~SessionEnd() { g_dialog->EndSession(); }
};

/// Hands a photo in, as the door for packed bitmaps does with a good one.
int32 TakePhoto(const Picture& photo) {
    COrvQuickViewDlg& session = *g_dialog;
    g_stageTimes = {};
    session.m_sourceMode = kPictureMode;
    if (!session.m_sourceBitmap.Create(photo.width, photo.height)) return kOutOfMemory;
    // Both have rows padded to a multiple of 4 bytes, the bottom row first.
    std::memcpy(session.m_sourceBitmap.Bits(), photo.pixels.data(), photo.pixels.size());
    session.ReadBitmapHeader(session.m_sourceBitmap);
    session.ComputeWorkSize();
    return kSuccess;
}

/// The face of the detection just run: the anchors hold its corners in pixels of the photo.
FaceBox FoundFace() {
    const COrvQuickViewDlg& session = *g_dialog;
    return {session.m_anchorLeft, session.m_anchorTop, session.m_anchorRight - session.m_anchorLeft,
            session.m_anchorBottom - session.m_anchorTop};
}

int32 RunDetect(const Picture& photo, PhotoReport* report) {
    const SessionEnd end;
    if (const int32 status = TakePhoto(photo)) return status;
    double milliseconds = 0;
    int32 status = kOutOfMemory;
    {
        const StageClock clock(milliseconds);
        int32 corners[4];
        if (LoadBitmapIntoSource(g_dialog->m_sourceBitmap)) status = g_dialog->DetectFaceRect(false, corners);
    }
    report->milliseconds.detect = milliseconds;
    if (status == kSuccess) report->face = FoundFace();
    return status;
}

int32 RunPortrait(const Picture& photo, const Options& options, PhotoReport* report, const SlotObserver& observer) {
    const SessionEnd end;
    COrvQuickViewDlg& session = *g_dialog;
    if (const int32 status = TakePhoto(photo)) return status;
    int32 status = session.BeginSession();
    if (status == kSuccess) {
        report->face = FoundFace();
        session.m_rotation = options.rotation;
        status = session.ProduceOutput(session.m_tolerance, true, observer);
        report->milliseconds.crop = g_stageTimes.crop;
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

int32 FetchOutput(Picture* portrait) {
    orv_Handle block = nullptr;
    if (const int32 status = orv_GetOutputImage(&block)) return status;
    const auto* bytes = static_cast<const uint8*>(orv_BlockLock(block));
    BitmapHeader header;
    std::memcpy(&header, bytes, sizeof header);
    portrait->width = header.biWidth;
    portrait->height = header.biHeight;
    portrait->step = PictureStep(header.biWidth);
    portrait->pixels.assign(bytes + kBitmapHeaderBytes, bytes + kBitmapHeaderBytes + header.biSizeImage);
    orv_BlockUnlock(block);
    orv_BlockFree(block);
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

void Host::Detect(const Picture& photo, PhotoReport* report) {
    Note(report, [&] { return RunDetect(photo, report); });
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
        if (const int32 status = RunPortrait(photo, options, report, steps != nullptr ? AddTo(steps) : SlotObserver()))
            return status;
        const int32 status = FetchOutput(portrait);
        if (status != kSuccess || (options.actions.crop && !HasAskedSize(portrait->width, portrait->height, options))) {
            *portrait = Picture();
            report->error = kCorrectionFailed;
        }
        return status;
    });
}

} // namespace orvane::tools
