// A host: the freshly loaded library, the classifier that finds drawn faces, and calls in a host's order.
#pragma once

#include "tests/exports/host_library.h"
#include "tests/support/cascade_builder.h"
#include "tests/support/face_scene.h"
#include "tests/support/host_block.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane::test {

class ExportsTest : public ::testing::Test {
protected:
    ExportsTest() { PutClassifier(FaceCascade().Bytes()); }

    void PutClassifier(const std::string& bytes) { ASSERT_TRUE(WriteClassifier(lib.Folder(), bytes)); }

    /// Opens a session that shows no window and enables the crop.
    void OpenHidden() {
        ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
        ASSERT_EQ(lib.orv_SetVisibleMode(0), ORV_OK);
        ASSERT_EQ(lib.orv_EnableAction(ORV_CROP, 1), ORV_OK);
    }

    int32_t Detect(const Scene& scene) { return lib.orv_DetectFacePicture(HostBlock(scene).Handle()); }

    /// The output's header; all zero, and a failure, without an output.
    DibHeader OutputHeader() {
        HostBlock output;
        EXPECT_EQ(lib.orv_GetOutputImage(output.Receive()), ORV_OK);
        return output.Header();
    }

    void ExpectNoOutput() {
        int mark = 0;
        orv_Handle out = &mark;
        EXPECT_EQ(lib.orv_GetOutputImage(&out), ORV_NO_SESSION);
        EXPECT_EQ(out, &mark) << "on failure nothing is stored";
    }

    HostLibrary lib;
};

/// A picture of 160 by 120 with a face of 40 pixels; its work picture has 640 by 480.
inline Scene SmallFaceScene() { return FaceScene(160, 120, 60, 40, 40); }

} // namespace orvane::test
