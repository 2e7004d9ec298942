// What is made of a device's caps: the list of its forms, and the form that is chosen.
#include "capture/gstreamer/device_formats.h"
#include "capture/gstreamer/form_choice.h"
#include "capture/gstreamer/wide_text.h"
#include "tests/capture/gstreamer/test_cameras.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

CapsOwner Caps(const char* text) {
    RegisterTestCameras();
    return CapsOwner(gst_caps_from_string(text));
}

std::string Listed(const char* caps) {
    std::string list;
    for (const VideoFormat& format : FormatsOf(Caps(caps).get())) {
        list += std::to_string(format.width) + "x" + std::to_string(format.height) + "@" +
                std::to_string(format.framesIn1000s) + " " + format.pixels + "\n";
    }
    return list;
}

TEST(Forms, AreListedWithTheirGreatestValues) {
    EXPECT_EQ(Listed("video/x-raw, format=YUY2, width=640, height=480, framerate=30000/1001"), "640x480@29970 YUY2\n");
    EXPECT_EQ(Listed("video/x-raw, format={ YUY2, NV12 }, width=[ 16, 640 ], height={ 480, 240 }, "
                     "framerate=[ 1/1, 25/1 ]"),
              "640x480@25000 YUY2\n640x480@25000 NV12\n");
    EXPECT_EQ(Listed("image/jpeg, width=1280, height=720, framerate={ 15/1, 30/1, 10/1 }"), "1280x720@30000 MJPG\n");
    EXPECT_EQ(Listed("video/x-h264, width=1280, height=720"), "1280x720@0 H264\n");
    EXPECT_EQ(Listed("video/x-bayer, format=rggb, width=8, height=8"), "8x8@0 rggb\n");
    EXPECT_EQ(Listed("video/x-a-very-long-name-of-a-form, width=8, height=8"), "8x8@0 A-VERY-LONG-NAM\n");
}

TEST(Forms, WithoutASizeOrALimitTellNothing) {
    EXPECT_EQ(Listed("video/x-raw, format=YUY2"), "");
    EXPECT_EQ(Listed("ANY"), "");
    EXPECT_EQ(Listed("EMPTY"), "");
    EXPECT_TRUE(FormatsOf(nullptr).empty());
    EXPECT_EQ(Listed("video/x-raw, format=YUY2, width=[ 1, 2147483647 ], height=[ 1, 2147483647 ], framerate=[ 0/1, "
                     "2147483647/1 ]"),
              "2147483647x2147483647@0 YUY2\n");
    EXPECT_EQ(Listed("video/x-raw, format=YUY2, width=8, height=8, framerate=0/1"), "8x8@0 YUY2\n");
}

TEST(Forms, AreListedOnceWhateverTheirMemory) {
    EXPECT_EQ(Listed("video/x-raw, format=NV12, width=640, height=480, framerate=15/1;"
                     "video/x-raw(memory:DMABuf), format=NV12, width=640, height=480, framerate=30/1"),
              "640x480@30000 NV12\n");
}

/// The choice in short; "none" where there is none.
std::string Chosen(const char* caps) {
    const auto form = ChooseForm(Caps(caps).get());
    if (!form) return "none";
    return std::to_string(form->size.width) + "x" + std::to_string(form->size.height) + (form->packed ? " packed" : "");
}

constexpr const char* kWebcam = "video/x-raw, format=YUY2, width=640, height=480, framerate={ 30/1, 15/1 };"
                                "video/x-raw, format=YUY2, width=1280, height=720, framerate=10/1;"
                                "image/jpeg, width=640, height=480, framerate=30/1;"
                                "image/jpeg, width=1280, height=720, framerate=30/1;"
                                "image/jpeg, width=1920, height=1080, framerate=30/1";

TEST(Choice, IsTheLargestThatMovesAndIsNotTooLarge) {
    EXPECT_EQ(Chosen(kWebcam), "1280x720 packed");
    EXPECT_EQ(Chosen("video/x-raw, format=YUY2, width=640, height=480, framerate=30/1;"
                     "video/x-raw, format=YUY2, width=800, height=600, framerate=25/1;"
                     "video/x-raw, format=YUY2, width=1280, height=960, framerate=24/1"),
              "800x600");
    EXPECT_EQ(Chosen("video/x-raw, format=YUY2, width=960, height=1280, framerate=30/1"), "960x1280");
}

TEST(Choice, TakesWhatIsNotPackedWhereBothAreEqual) {
    EXPECT_EQ(Chosen("image/jpeg, width=640, height=480, framerate=30/1;"
                     "video/x-raw, format=YUY2, width=640, height=480, framerate=30/1"),
              "640x480");
}

TEST(Choice, WeighsPixelsAndRateWhereNothingIsGood) {
    EXPECT_EQ(Chosen("video/x-raw, format=YUY2, width=160, height=120, framerate=30/1;"
                     "video/x-raw, format=YUY2, width=640, height=480, framerate=15/1"),
              "640x480");
    EXPECT_EQ(Chosen("video/x-raw, format=YUY2, width=640, height=480, framerate=20/1;"
                     "video/x-raw, format=YUY2, width=1280, height=960, framerate=1/1"),
              "640x480");
    EXPECT_EQ(Chosen("video/x-raw, format=YUY2, width=3840, height=2160, framerate=30/1;"
                     "video/x-raw, format=YUY2, width=1920, height=1080, framerate=30/1;"
                     "video/x-raw, format=YUY2, width=1600, height=1200, framerate=5/1"),
              "1920x1080");
}

TEST(Choice, WithinARangeIsNearTheGoal) {
    EXPECT_EQ(Chosen("video/x-raw, format=YUY2, width=[ 16, 2147483647 ], height=[ 16, 2147483647 ], framerate=[ 0/1, "
                     "2147483647/1 ]"),
              "1280x960");
    EXPECT_EQ(Chosen("video/x-raw, format=YUY2, width=[ 16, 800 ], height=[ 16, 600 ], framerate=30/1"), "800x600");
    EXPECT_EQ(Chosen("video/x-raw, format=YUY2"), "1280x960");
    EXPECT_EQ(Chosen("image/jpeg"), "none");
}

TEST(Choice, LeavesOutWhatCannotBeShown) {
    EXPECT_EQ(Chosen("video/x-raw(memory:DMABuf), format=NV12, width=640, height=480, framerate=30/1"), "none");
    EXPECT_EQ(Chosen("video/x-raw, format=NOTHING, width=640, height=480, framerate=30/1"), "none");
    EXPECT_EQ(Chosen("video/x-known-to-nobody, width=640, height=480, framerate=30/1"), "none");
    EXPECT_EQ(Chosen("video/x-raw, format=YUY2, width=0, height=480, framerate=30/1"), "none");
    EXPECT_EQ(Chosen("video/x-raw, format=YUY2, width=-640, height=-480, framerate=30/1"), "none");
    EXPECT_EQ(Chosen("EMPTY"), "none");
    EXPECT_FALSE(ChooseForm(nullptr));
}

TEST(Choice, OfADeviceThatTellsNothingIsScaled) { EXPECT_EQ(Chosen("ANY"), "640x480 packed"); }

TEST(Choice, AsksForNoMoreFramesThanAreSeen) {
    const auto rate = [](const char* rates) {
        const std::string caps = std::string("video/x-raw, format=YUY2, width=640, height=480, framerate=") + rates;
        const auto form = ChooseForm(Caps(caps.c_str()).get());
        const GValue* value = gst_structure_get_value(gst_caps_get_structure(form->caps.get(), 0), "framerate");
        const TextOwner text(gst_value_serialize(value));
        return std::string(text.get());
    };
    EXPECT_EQ(rate("{ (fraction)60/1, (fraction)30/1, (fraction)15/1 }"), "30/1");
    EXPECT_EQ(rate("(fraction)60/1"), "60/1");
    EXPECT_EQ(rate("[ 1/1, 60/1 ]"), "[ 25/1, 30/1 ]");
    EXPECT_EQ(rate("(fraction)10/1"), "10/1");
}

TEST(WideText, IsMadeOfUtf8AndOfWhatIsNone) {
    EXPECT_EQ(WideText(""), L"");
    EXPECT_EQ(WideText("caf\u00e9 \u4e16 \U0001F4F7"), L"caf\u00e9 \u4e16 \U0001F4F7");
    EXPECT_EQ(WideText("a\xff"
                       "b"),
              L"a\ufffd"
              L"b");
}

} // namespace
} // namespace orvane::test
