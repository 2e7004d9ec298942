// compare_scans SCENES [PHOTO...]: scans drawn scenes and photographs step by step and in one go, with every
// instruction set of this machine, normal and quick, and tells where the hits differ. The classifier is looked for
// beside the program.
#include "detect/cascade_detector.h"
#include "detect/classifier_file.h"
#include "image/session_images.h"
#include "platform/module_folder.h"
#include "primitives/dispatch.h"
#include "tests/compare/hit_watcher.h"
#include "tests/compare/random_scene.h"
#include "tests/detect/kernel_sets.h"
#include "tests/support/scene_image.h"
#include "tools/support/picture_io.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace orvane::test {
namespace {

struct Tally {
    long scans = 0, hits = 0, faces = 0, different = 0, notInOneGo = 0;
};

bool SameFace(const FaceRecord& a, const FaceRecord& b) {
    return a.centreX == b.centreX && a.centreY == b.centreY && a.faceWidth == b.faceWidth &&
           a.faceHeight == b.faceHeight;
}

/// Compares the scans of g_sourceImage.
void Compare(const std::string& name, Tally& tally) {
    for (const bool quick : {false, true}) {
        HitWatcher steps(true);
        const int32 result = RunDetection(quick);
        const FaceRecord face = g_faceRecord;
        tally.hits += steps.count;
        tally.faces += result == 0 ? 1 : 0;
        for (const KernelSet& set : KernelSets()) {
            const InstructionSetGuard guard(set.set);
            HitWatcher fused(false);
            const bool same = RunDetection(quick) == result && fused.text == steps.text && SameFace(face, g_faceRecord);
            ++tally.scans;
            tally.different += same ? 0 : 1;
            tally.notInOneGo += steps.steps > 0 && fused.steps > 0 ? 1 : 0;
            if (!same) std::printf("%s, %s, %s: other hits\n", name.c_str(), quick ? "quick" : "normal", set.name);
        }
    }
}

bool Run(int scenes, int photos, char** names) {
    g_detectorParams = std::make_unique<DetectorParams>();
    if (!FindModuleFolder() || SelectPrimitiveColumn() != 0) return false;
    g_detectorParams->loadStatus = LoadClassifier();
    if (g_detectorParams->loadStatus != 0) {
        std::printf("no classifier\n");
        return false;
    }
    Tally tally;
    Random random(1);
    for (int n = 0; n < scenes; ++n) {
        if (!ToImage(RandomScene(random), g_sourceImage)) return false;
        Compare("scene " + std::to_string(n), tally);
    }
    for (int n = 0; n < photos; ++n) {
        tools::Picture picture;
        std::string error;
        if (!tools::ReadPicture(names[n], &picture, &error) ||
            !g_sourceImage.Create(picture.width, picture.height, 3, kDepth8u, 0)) {
            std::printf("%s: %s\n", names[n], error.c_str());
            return false;
        }
        std::memcpy(g_sourceImage.data, picture.pixels.data(), picture.pixels.size());
        Compare(names[n], tally);
    }
    std::printf("%d scenes and %d photographs: %ld scans in one go, %ld hits and %ld faces step by step, %ld differ\n",
                scenes, photos, tally.scans, tally.hits, tally.faces, tally.different);
    if (tally.notInOneGo > 0) std::printf("%ld scans went step by step both times\n", tally.notInOneGo);
    return tally.scans > 0 && tally.different == 0 && tally.notInOneGo == 0;
}

} // namespace
} // namespace orvane::test

int main(int count, char** arguments) {
    if (count < 2) {
        std::puts("usage: compare_scans SCENES [PHOTO...]");
        return 2;
    }
    return orvane::test::Run(std::atoi(arguments[1]), count - 2, arguments + 2) ? 0 : 1;
}
