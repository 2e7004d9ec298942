// Classifier files: whatever stands in one, it is refused, or a picture is scanned by it, step by step and in one go,
// with each instruction set, and the hits are the same.
#include "detect/cascade_detector.h"
#include "detect/classifier_file.h"
#include "fuzz/support/any_classifier.h"
#include "fuzz/support/library_folder.h"
#include "fuzz/support/small_scene.h"
#include "primitives/dispatch.h"
#include "tests/compare/hit_watcher.h"
#include "tests/detect/kernel_sets.h"
#include "tests/support/scene_image.h"

using namespace orvane;

namespace {

struct Scan {
    int32 status;
    FaceRecord face;
    std::string hits;

    bool operator==(const Scan& other) const {
        return status == other.status && face.centreX == other.face.centreX && face.centreY == other.face.centreY &&
               face.faceWidth == other.face.faceWidth && face.faceHeight == other.face.faceHeight && hits == other.hits;
    }
};

Scan ScanOf(ImageBuffer& picture, DetectorParams params, bool steps) {
    static ImageBuffer work;
    test::HitWatcher hits(steps);
    g_faceRecord = {};
    const int32 status = ScanScales(work, params, picture);
    return {status, g_faceRecord, hits.text};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8* bytes, std::size_t size) {
    static const fuzz::LibraryFolder folder;
    static const bool ready = SelectPrimitiveColumn() == 0;
    fuzz::Expect(ready, "primitives are chosen");

    fuzz::Choices choices(bytes, size);
    DetectorParams params;
    params.scaleFactor = choices.OneOf({1.09F, 1.05F, 1.3F});
    params.pruneMode = choices.OneOf({4, 0, 1, 2, 3});
    params.passTag = choices.Int(0, 2);
    g_pruneParameter = choices.Int(0, 2);
    const test::Scene scene = fuzz::SmallScene(choices, 96);

    folder.Write("Orvane.dat", fuzz::AnyClassifier(choices));
    params.loadStatus = LoadClassifier();
    fuzz::Expect(params.loadStatus == kSuccess || params.loadStatus == kNoClassifier, "a file is taken or refused");
    static ImageBuffer picture;
    fuzz::Expect(test::ToImage(scene, picture), "there is a picture");
    const Scan steps = ScanOf(picture, params, true);
    fuzz::ExpectOneOf(steps.status, {kSuccess, kNoFace, kBadCall, kStepFailed, kNoClassifier},
                      "a scan ends with a documented result");
    for (const test::KernelSet& set : test::KernelSets()) {
        const test::InstructionSetGuard guard(set.set);
        fuzz::Expect(ScanOf(picture, params, false) == steps, "a scan in one go finds what one step by step finds");
    }
    FreeClassifier(g_classifier);
    return 0;
}
