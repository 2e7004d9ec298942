// A host with an operator: the library with its window beside it, and a detect call on this thread while the
// operator's hand works on another one.
#pragma once

#include "tests/exports/host_library.h"
#include "tests/support/cascade_builder.h"
#include "tests/support/host_block.h"
#include "tests/window/sessions/hand.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace orvane::test {

class WindowHost {
public:
    explicit WindowHost(const std::filesystem::path& folder = {}) : lib(HostLibrary::kFileName, folder) {
        PutFiles(lib.Folder());
        EXPECT_EQ(lib.orv_InitDLL(), ORV_OK);
    }

    /// What lies beside the library: a classifier, and where they are files of their own, window and cameras.
    static void PutFiles(const std::filesystem::path& folder) {
        EXPECT_TRUE(WriteClassifier(folder, FaceCascade().Bytes()));
#ifdef ORVANE_WINDOW_MODULE
        const std::filesystem::path module(ORVANE_WINDOW_MODULE);
        std::filesystem::copy_file(module, folder / module.filename());
#endif
#ifdef ORVANE_CAMERA_MODULE
        const std::filesystem::path camera(ORVANE_CAMERA_MODULE);
        std::filesystem::copy_file(camera, folder / camera.filename());
#endif
    }

    void PutClassifier(const std::string& bytes) {
        EXPECT_TRUE(WriteClassifier(lib.Folder(), bytes));
        lib.orv_ReleaseDLL(); // a session reads it when it is opened
        EXPECT_EQ(lib.orv_InitDLL(), ORV_OK);
    }
    /// From now on no picture has a face.
    void FindNoFaces() {
        CascadeFile cascade = FaceCascade();
        for (float& threshold : cascade.stageThreshold) threshold = 1e9F;
        PutClassifier(cascade.Bytes());
    }

    /// The result of a detect call during which `play` is the operator. Whatever `play` leaves open is closed
    /// by the close box, and is a failure of the test.
    int32_t Detect(const HostBlock& photo, const std::function<void(Hand&)>& play) {
        return During([&] { return lib.orv_DetectFacePicture(photo.Handle()); }, play);
    }
    int32_t DetectLive(int32_t device, const std::function<void(Hand&)>& play) {
        return During([&] { return lib.orv_DetectFaceLive(device); }, play);
    }

    /// What a call returns during which `play` is the operator.
    static int32_t During(const std::function<int32_t()>& call, const std::function<void(Hand&)>& play) {
        const std::unique_ptr<Hand> hand = MakeHand();
        std::thread person([&] {
            const bool came = hand->WaitForWindow();
            EXPECT_TRUE(came) << "no window opened";
            if (!came) return;
            play(*hand);
            if (!hand->EndsBySelf()) {
                ADD_FAILURE() << "the window is still open";
                hand->CloseBox();
            }
        });
        const int32_t result = call();
        hand->CallHasEnded();
        person.join();
        return result;
    }

    HostLibrary lib;
};

} // namespace orvane::test
