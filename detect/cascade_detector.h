// The multi-scale scan: shrinks the picture step by step, runs the cascade at every window position
// that an edge map leaves open, and hands the hits to the grouping.
#pragma once

#include "detect/candidates.h"
#include "image/image_buffer.h"
#include "image/result_codes.h"

#include <memory>

namespace orvane {

struct DetectionMemory;

/// Detector settings, one instance a session.
struct DetectorParams {
    int32 minFaceSize = 0;     // smallest face in pixels of the picture, computed by each scan
    int32 reservedSize = 0;    // set to 0 by every pass
    float scaleFactor = 1.05F; // growth of the scale from one step to the next
    int32 pruneMode = 4;       // which mask pruning runs: 1 rows, 2 columns, 3 both, 4 edges, else none
    int32 passTag = 0;         // 0 normal, 1 retry, 2 quick
    int32 loadStatus = 0;      // result of LoadClassifier
};

extern std::unique_ptr<DetectorParams> g_detectorParams;

extern float g_minFaceRatio; // smallest face as a share of the picture width; every scan sets it
extern float g_maxFaceRatio; // largest face likewise

extern int32 g_maxFaceSize;    // largest face in pixels of the current picture
extern int32 g_positiveCount;  // positions still alive during the stages of one scale
extern int32 g_pruneParameter; // argument of all pruning modes

/// Looks for the face in g_sourceImage, leaving a copy of it in g_workImage. `quick` scans once with a
/// coarse scale step; otherwise a scan without a face is repeated with a finer one.
/// 0: the face is in g_faceRecord; 10: none, the record is zero; below zero an error as of ScanScales,
/// -80 without detector settings.
int32 RunDetection(bool quick);

/// The same, but g_workImage stays as it is: for those who make a work picture of their own afterwards.
/// @param memory which serves the next call that gets it
int32 FindFace(bool quick, DetectionMemory& memory);

/// One pass over all scales of `source`; `work` receives a copy of it.
/// 0 or 10 as above; the load status when the classifier is not loaded; -60 for a picture without
/// pixels; -10 for one too small for a face; -40 when a primitive fails; -50 when memory is exhausted.
/// An error leaves the record as it was.
int32 ScanScales(ImageBuffer& work, DetectorParams& params, ImageBuffer& source);

/// The scale at which a scan of a picture of this width begins.
float InitialScale(int32 width, int32 minFaceSize, int32 windowWidth);

} // namespace orvane
