// A host of the library whose classifier finds bright squares, and photos as any host hands them in.
#pragma once

#include "detect/classifier_file.h"
#include "image/packed_dib.h"
#include "orvane/orvane.h"
#include "platform/module_folder.h"
#include "session/session_state.h"
#include "tests/tools/bright_square.h"
#include "tests/tools/temp_folder.h"
#include "tools/orvane/host.h"

#include <cstring>
#include <gtest/gtest.h>

namespace orvane::tools {

class HostFixture : public testing::Test {
protected:
    HostFixture() {
        // In place of whatever lies beside the test program.
        folder_.Put("Orvane.dat", BrightSquareClassifier());
        g_moduleFolder = folder_.Path();
        FreeClassifier(g_classifier);
        g_detectorParams->loadStatus = LoadClassifier();
    }

    PhotoReport Make(const Picture& photo, const Options& options, Picture* portrait) {
        PhotoReport report;
        host_.MakePortrait(photo, options, portrait, &report);
        return report;
    }

    TempFolder folder_;
    Host host_;
};

/// A photo as a host hands it in.
inline orv_Handle Packed(const Picture& photo) {
    const BitmapHeader header = OutgoingHeader(photo.width, photo.height);
    orv_Handle block = orv_BlockAlloc(sizeof header + photo.pixels.size());
    auto* bytes = static_cast<uint8*>(orv_BlockLock(block));
    std::memcpy(bytes, &header, sizeof header);
    std::memcpy(bytes + sizeof header, photo.pixels.data(), photo.pixels.size());
    orv_BlockUnlock(block);
    return block;
}

} // namespace orvane::tools
