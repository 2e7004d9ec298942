// The scan. Its planes are allocated at the first, largest scale and reused by all others.
#include "detect/cascade_detector.h"

#include "detect/classifier_file.h"
#include "detect/detection_memory.h"
#include "detect/edge_pruning.h"
#include "detect/scan_observer.h"
#include "image/session_images.h"
#include "primitives/primitives.h"
#include "primitives/trunc.h"

#include <algorithm>
#include <new>
#include <optional>

namespace orvane {

std::unique_ptr<DetectorParams> g_detectorParams;
float g_minFaceRatio = 0.07F;
float g_maxFaceRatio = 0.95F;
int32 g_maxFaceSize = 0;
int32 g_positiveCount = 0;
int32 g_pruneParameter = 0;
ScanObserver* g_scanObserver = nullptr;

namespace {

constexpr float kSumInit = -16777216.0F; // keeps float sums exact up to 33,554,432
constexpr uint8 kOpen = 255;

/// The planes of one scale, shaped anew for each.
struct ScalePlanes {
    ImageBuffer scaled, sum, squareSum, normPlane, mask;
    EdgeWorkspace edges;

    bool Shape(int32 ew, int32 eh) {
        return Shape(scaled, kDepth8u, ew, eh) && Shape(sum, kDepth32f, ew + 1, eh + 1) &&
               Shape(squareSum, kDepth64f, ew + 1, eh + 1) && Shape(normPlane, kDepth32f, ew, eh) &&
               Shape(mask, kDepth8u, ew, eh);
    }

    float* Sum() { return reinterpret_cast<float*>(sum.data); }
    double* SquareSum() { return reinterpret_cast<double*>(squareSum.data); }
    float* Norm() { return reinterpret_cast<float*>(normPlane.data); }

private:
    static bool Shape(ImageBuffer& plane, DepthCode depth, int32 width, int32 height) {
        plane.channels = 1;
        plane.depth = depth;
        return plane.Reshape(width, height);
    }
};

void SetLimitsByWidth(int32 width) {
    const bool narrow = width < 500;
    g_groupRadius = narrow ? 30.0F : 40.0F;
    g_minFaceRatio = narrow ? 0.05F : 0.07F;
}

/// Makes a picture of three channels the size of another one. False when memory is exhausted.
bool ShapeWork(const ImageBuffer& source, ImageBuffer& work) {
    const bool sameSize = work.data != nullptr && work.width == source.width && work.height == source.height &&
                          work.channels == 3 && work.depth == kDepth8u;
    return sameSize || work.Create(source.width, source.height, 3, kDepth8u, 0);
}

void CopyLevels(const ImageBuffer& source, ImageBuffer& work) {
    for (int32 y = 0; y < source.height; ++y) {
        const uint8* from = RowAt(source.data, source.Step(), y);
        uint8* to = RowAt(work.data, work.Step(), y);
        for (int32 x = 0; x < source.width; ++x, to += 3) to[0] = to[1] = to[2] = from[x];
    }
}

/// The grey plane of a picture, made once for all passes, and the copy of the picture in a work picture where one is
/// wanted. A picture of one channel is its own grey plane.
class GreyPlane {
public:
    /// @param work null, or where the copy goes
    /// @param grey where the plane is made
    GreyPlane(const ImageBuffer& picture, ImageBuffer* work, ImageBuffer& grey)
        : picture_(picture), work_(work), own_(grey) {}

    /// 0; -60 for a picture without pixels or a refused copy or conversion; -50 without storage.
    int32 Make() {
        if (grey_ != nullptr) return kSuccess;
        if (picture_.data == nullptr) return kNoPicture;
        if (work_ != nullptr && !ShapeWork(picture_, *work_)) return kOutOfMemory;
        if (picture_.channels != 3) {
            if (work_ != nullptr) CopyLevels(picture_, *work_);
            grey_ = &picture_;
            return kSuccess;
        }
        if (!own_.Remake(picture_.width, picture_.height, 1, kDepth8u)) return kOutOfMemory;
        // Some rows at a time, which the copy leaves in a cache for the conversion.
        constexpr int32 kRows = 8;
        for (int32 y = 0; y < picture_.height; y += kRows) {
            if (!MakeRows(y, std::min(kRows, picture_.height - y))) return kNoPicture;
        }
        grey_ = &own_;
        return kSuccess;
    }

    const ImageBuffer& Picture() const { return picture_; }
    const ImageBuffer& Plane() const { return *grey_; }

private:
    bool MakeRows(int32 y, int32 height) {
        const ImageSize rows{picture_.width, height};
        const uint8* from = RowAt(picture_.data, picture_.Step(), y);
        if (work_ != nullptr &&
            primCopy_8u_C3(from, picture_.Step(), RowAt(work_->data, work_->Step(), y), work_->Step(), rows) != kOk) {
            return false;
        }
        return primRGBToGray_8u_C3C1(from, picture_.Step(), RowAt(own_.data, own_.Step(), y), own_.Step(), rows) == kOk;
    }

    const ImageBuffer& picture_;
    ImageBuffer* work_;
    ImageBuffer& own_;
    const ImageBuffer* grey_ = nullptr;
};

/// Whether the candidate store of a picture holds at least one group and one member.
bool StoreIsPossible(ImageSize picture, int32 minFaceSize) {
    // Under 20 pixels of width the smallest face is 0 pixels wide.
    if (minFaceSize < 1) return false;
    const int64 groups = int64{picture.height / minFaceSize} * (picture.width / minFaceSize);
    const double members = static_cast<double>(g_maxFaceSize) * g_groupRadius * g_groupRadius / minFaceSize;
    return groups >= 1 && members >= 1.0;
}

int32 PruneMask(ScalePlanes& p, ImageSize positions, int32 pruneMode) {
    uint8* mask = p.mask.data;
    const int32 step = p.mask.Step();
    const auto [width, height] = positions;
    switch (pruneMode) {
    case 1:
        return PruneRows(mask, step, width, height, g_pruneParameter);
    case 2:
        return PruneColumns(mask, step, width, height, g_pruneParameter);
    case 3:
        return PruneRowsColumns(mask, step, width, height, g_pruneParameter);
    case 4:
        if (PruneByEdges(p.scaled.data, p.scaled.Step(), mask, step, width, height, g_pruneParameter, p.edges) == kOk) {
            return kOk;
        }
        // The scale is scanned unpruned then.
        return primSet_8u_C1(kOpen, mask, step, positions);
    default:
        return kOk;
    }
}

int32 RunStages(ScalePlanes& p, ImageSize positions) {
    g_positiveCount = positions.width * positions.height;
    for (std::size_t i = 0; i < g_classifier.stageObject.size(); ++i) {
        const int32 status = primApplyHaarClassifier_32f_C1(
            p.Sum(), p.sum.Step(), p.Norm(), p.normPlane.Step(), p.mask.data, p.mask.Step(), positions,
            &g_positiveCount, g_classifier.stageThreshold[i], g_classifier.stageObject[i].get());
        if (status != kOk) return status;
        if (g_scanObserver != nullptr) g_scanObserver->OnStage(i, p.mask);
        if (g_positiveCount == 0) break;
    }
    return kOk;
}

/// Scans one scale; the surviving windows stand in the mask afterwards. 0 or the failing primitive's
/// status.
int32 ScanScale(const ImageBuffer& grey, float inverseScale, ScalePlanes& p, int32 pruneMode) {
    const int32 ew = p.scaled.width;
    const int32 eh = p.scaled.height;
    int32 status;
    // The resize may leave the last column or row unwritten where a float size was rounded up.
    p.scaled.Fill(0.0);
    status = primResize_8u_C1(grey.data, grey.Size(), grey.Step(), {0, 0, grey.width, grey.height}, p.scaled.data,
                              p.scaled.Step(), {ew, eh}, inverseScale, inverseScale, kNearest);
    if (status != kOk) return status;
    status = primSqrIntegral_8u32f64f_C1(p.scaled.data, p.scaled.Step(), p.Sum(), p.sum.Step(), p.SquareSum(),
                                         p.squareSum.Step(), {ew, eh}, kSumInit, 0.0);
    if (status != kOk) return status;

    const ImageSize positions{ew - g_classifier.maxFeatureWidth + 1, eh - g_classifier.maxFeatureHeight + 1};
    // The last position's inner rectangle must end inside the sum plane. Columns are told by the step
    // as well; for rows nobody else looks.
    if (int64{positions.height} + g_classifier.windowHeight - 2 > eh) return kStepTooSmall;

    p.mask.Fill(0.0);
    if ((status = primSet_8u_C1(kOpen, p.mask.data, p.mask.Step(), positions)) != kOk) return status;
    if ((status = PruneMask(p, positions, pruneMode)) != kOk) return status;
    if (g_scanObserver != nullptr) g_scanObserver->OnPruned(p.mask, positions);
    // After the pruning, so that the norm is computed only where a window is still alive.
    const ImageRect inner{1, 1, g_classifier.windowWidth - 2, g_classifier.windowHeight - 2};
    status = RectStdDevUnderMask(p.Sum(), p.sum.Step(), p.SquareSum(), p.squareSum.Step(), p.Norm(), p.normPlane.Step(),
                                 positions, inner, p.mask.data, p.mask.Step());
    return status != kOk ? status : RunStages(p, positions);
}

/// Whether the scan's primitives are the library's own.
bool HasOwnPrimitives() {
    return primResize_8u_C1 == &generic::primResize_8u_C1 && primSet_8u_C1 == &generic::primSet_8u_C1 &&
           primSqrIntegral_8u32f64f_C1 == &generic::primSqrIntegral_8u32f64f_C1 &&
           primFilterSobelHorizBorder_8u16s_C1 == &generic::primFilterSobelHorizBorder_8u16s_C1 &&
           primFilterSobelNegVertBorder_8u16s_C1 == &generic::primFilterSobelNegVertBorder_8u16s_C1 &&
           primCanny_16s8u_C1 == &generic::primCanny_16s8u_C1 &&
           primApplyHaarClassifier_32f_C1 == &generic::primApplyHaarClassifier_32f_C1;
}

/// Whether scales of up to this size are scanned in one go. Who listens to the steps, replaces a primitive or wants
/// another pruning gets a scan step by step, and so does a classifier that leaves the bounds.
bool RunsFused(const DetectorParams& params, ImageSize scaled) {
    const bool isHeard = g_scanObserver != nullptr && g_scanObserver->NeedsSteps();
    return !isHeard && params.pruneMode == 4 && g_pruneParameter == 0 && HasOwnPrimitives() &&
           FusedScan::Serves(g_classifier, scaled);
}

/// The scan in one go, whose storage all passes over a picture use, and what it found at the first scale, with which
/// each of them begins.
class SharedScan {
public:
    /// @param scan one of another picture, or none
    explicit SharedScan(std::optional<FusedScan>& scan) : scan_(scan) {}

    /// False when memory is exhausted.
    [[nodiscard]] bool Reserve(const ImageBuffer& grey, ImageSize scaled) {
        if (isReserved_) return true;
        if (scan_.has_value()) {
            scan_->Use(CurrentScanKernels(), g_classifier, grey);
        } else {
            scan_.emplace(CurrentScanKernels(), g_classifier, grey);
        }
        isReserved_ = scan_->Reserve(scaled);
        return isReserved_;
    }

    /// The number of hits, which are placed among the candidates.
    int32 ScanFirst(ImageSize scaled, float scale, CandidateList& candidates) {
        if (!knowsFirst_) firstHits_ = scan_->ScanScale(scaled, scale, firstCandidates_);
        knowsFirst_ = true;
        candidates = firstCandidates_;
        return firstHits_;
    }

    int32 ScanNext(ImageSize scaled, float scale, CandidateList& candidates) {
        return scan_->ScanScale(scaled, scale, candidates);
    }

private:
    std::optional<FusedScan>& scan_;
    bool isReserved_ = false;
    bool knowsFirst_ = false;
    int32 firstHits_ = 0;
    CandidateList firstCandidates_;
};

int32 ScanAll(const ImageBuffer& grey, DetectorParams& params, CandidateList& candidates, SharedScan& shared) {
    const int32 windowWidth = g_classifier.windowWidth;
    const int32 windowHeight = g_classifier.windowHeight;
    ScalePlanes planes;
    bool first = true, runsFused = false;
    float scale = InitialScale(grey.width, params.minFaceSize, windowWidth);
    float inverse = 1.0F / scale;
    float scaledWidth = inverse * static_cast<float>(grey.width);
    while (scaledWidth > static_cast<float>(windowWidth + 5)) {
        const float scaledHeight = static_cast<float>(grey.height) * inverse;
        if (!(scaledHeight > static_cast<float>(windowHeight + 5))) break;
        if (!(static_cast<double>(g_maxFaceSize) > static_cast<double>(windowWidth) * scale)) break;
        const ImageSize scaled{TruncToInt32(scaledWidth), TruncToInt32(scaledHeight)};
        if (first) {
            runsFused = RunsFused(params, scaled);
            if (runsFused && !shared.Reserve(grey, scaled)) return kOutOfMemory;
            const int32 status = runsFused ? kOk : MakeStages(g_classifier);
            if (status != kOk) return status == kNoMemory ? kOutOfMemory : kStepFailed;
        }
        if (runsFused) {
            g_positiveCount =
                first ? shared.ScanFirst(scaled, scale, candidates) : shared.ScanNext(scaled, scale, candidates);
        } else {
            if (!planes.Shape(scaled.width, scaled.height)) return kOutOfMemory;
            if (g_scanObserver != nullptr) g_scanObserver->OnScale(scale);
            const int32 status = ScanScale(grey, inverse, planes, params.pruneMode);
            if (status != kOk) return status == kNoMemory ? kOutOfMemory : kStepFailed;
            HarvestMask(planes.mask, windowWidth, windowHeight, scale, candidates);
        }
        first = false;
        scale *= params.scaleFactor;
        inverse = 1.0F / scale;
        scaledWidth = inverse * static_cast<float>(grey.width);
    }
    return kSuccess;
}

int32 Scan(DetectorParams& params, GreyPlane& grey, SharedScan& shared) {
    const ImageBuffer& source = grey.Picture();
    if (params.loadStatus < 0) return params.loadStatus;
    if (source.width == 0 || source.height == 0) return kNoPicture;
    SetLimitsByWidth(source.width);
    if (const int32 status = grey.Make()) return status;
    g_maxFaceSize = TruncToInt32(static_cast<double>(source.width) * g_maxFaceRatio + 0.5);
    params.minFaceSize = TruncToInt32(static_cast<double>(source.width) * g_minFaceRatio);
    if (params.scaleFactor <= 1.0F) params.scaleFactor = 1.1F;
    if (!StoreIsPossible(source.Size(), params.minFaceSize)) return kBadCall;

    FaceRecord face = g_faceRecord;
    int32 found = 0;
    try {
        if (g_scanObserver != nullptr) g_scanObserver->OnPass();
        CandidateList candidates;
        if (const int32 status = ScanAll(grey.Plane(), params, candidates, shared)) return status;
        if (g_scanObserver != nullptr) g_scanObserver->OnHits(candidates);
        GroupCandidates(candidates, &face, &found);
    } catch (const std::bad_alloc&) {
        return kOutOfMemory;
    }
    const bool hasFace = found != 0 && face.faceWidth > 0 && face.faceHeight > 0;
    g_faceRecord = hasFace ? face : FaceRecord{};
    return hasFace ? kSuccess : kNoFace;
}

int32 RunPass(GreyPlane& grey, float scaleFactor, int32 passTag, SharedScan& shared) {
    DetectorParams& params = *g_detectorParams;
    params.minFaceSize = 0;
    params.reservedSize = 0;
    params.pruneMode = 4;
    params.scaleFactor = scaleFactor;
    params.passTag = passTag;
    return Scan(params, grey, shared);
}

int32 Detect(bool quick, ImageBuffer* work, DetectionMemory& memory) {
    if (g_detectorParams == nullptr) return kNoSession;
    GreyPlane grey(g_sourceImage, work, memory.grey);
    SharedScan shared(memory.scan);
    if (quick) return RunPass(grey, 1.09F, 2, shared);
    const int32 status = RunPass(grey, 1.05F, 0, shared);
    return status == kNoFace ? RunPass(grey, 1.02F, 1, shared) : status;
}

} // namespace

float InitialScale(int32 width, int32 minFaceSize, int32 windowWidth) {
    if (width < 352) return 1.0F;
    if (width < 500) return 2.25F;
    return static_cast<float>(static_cast<double>(minFaceSize) / windowWidth);
}

int32 ScanScales(ImageBuffer& work, DetectorParams& params, ImageBuffer& source) {
    DetectionMemory memory;
    GreyPlane grey(source, &work, memory.grey);
    SharedScan shared(memory.scan);
    return Scan(params, grey, shared);
}

int32 RunDetection(bool quick) {
    DetectionMemory memory;
    return Detect(quick, &g_workImage, memory);
}

int32 FindFace(bool quick, DetectionMemory& memory) { return Detect(quick, nullptr, memory); }

} // namespace orvane
