// A session object over drawn faces, with the cascade that finds them.
#pragma once

#include "capture/none/no_video.h"
#include "detect/cascade_detector.h"
#include "dialog/none/no_windows.h"
#include "image/image_buffer.h"
#include "image/session_images.h"
#include "session/quick_view_dlg.h"
#include "tests/support/face_scene.h"
#include "tests/support/fresh_session.h"
#include "tests/support/module_files.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

namespace orvane::test {

/// @tparam Windows the window system of the session
/// @tparam Video   and its cameras
template <typename Windows, typename Video = NoVideo>
class SessionTestWith : public ::testing::Test {
protected:
    SessionTestWith() {
        g_detectorParams = std::make_unique<DetectorParams>();
        g_detectorParams->loadStatus = files.Load(FaceCascade());
        EXPECT_EQ(g_detectorParams->loadStatus, kSuccess);
        session.m_visible = false;
    }
    ~SessionTestWith() override { g_detectorParams.reset(); }

    /// Hands a picture to the session as the exports would.
    void SetSource(const Scene& scene) {
        ASSERT_TRUE(session.m_sourceBitmap.Create(scene.width, scene.height));
        std::memcpy(session.m_sourceBitmap.Bits(), scene.rows.data(), scene.rows.size());
    }

    /// A bitmap as a picture, to compare it.
    static void Take(const Bitmap& bitmap, ImageBuffer& picture) {
        ASSERT_FALSE(bitmap.IsEmpty());
        ASSERT_TRUE(picture.Create(bitmap.Width(), bitmap.Height(), 3, kDepth8u, 0));
        std::memcpy(picture.data, bitmap.Bits(), bitmap.Header().biSizeImage);
    }

    void ExpectNoMarks() const {
        for (const int32 mark : {session.m_markLeft, session.m_markTop, session.m_markRight, session.m_markBottom}) {
            EXPECT_EQ(mark, -1);
        }
        ExpectNoAnchors();
    }
    void ExpectNoAnchors() const {
        for (const int32 anchor :
             {session.m_anchorLeft, session.m_anchorTop, session.m_anchorRight, session.m_anchorBottom}) {
            EXPECT_EQ(anchor, -1);
        }
    }

    FreshSession fresh;
    Windows windows;
    Video video;
    COrvQuickViewDlg session{windows, video};
    ModuleFiles files; // the library's folder, with the classifier in it
};

using SessionTest = SessionTestWith<NoWindows>;

/// The scene of most tests: 160 by 120, a face of 40 pixels; its work picture has 640 by 480.
inline Scene SmallFaceScene() { return FaceScene(160, 120, 60, 40, 40); }

} // namespace orvane::test
