#include "capture/directshow/stream_formats.h"

#include "tests/capture/directshow/capture_fixture.h"

namespace orvane::test {
namespace {

class DirectShowFormat : public testing::Test {
protected:
    DirectShowFormat() {
        video_.bmiHeader.biWidth = 640;
        video_.bmiHeader.biHeight = 480;
        type_.majortype = MEDIATYPE_Video;
        type_.subtype = MEDIASUBTYPE_YUY2;
        type_.formattype = FORMAT_VideoInfo;
        type_.cbFormat = sizeof video_;
        type_.pbFormat = reinterpret_cast<BYTE*>(&video_);
        caps_.MinFrameInterval = 333333;
    }
    bool Convert() { return ToVideoFormat(type_, caps_, format_); }
    std::string NameOf(const GUID& subtype) {
        type_.subtype = subtype;
        return Convert() ? format_.pixels : "no video";
    }

    VIDEOINFOHEADER video_{};
    AM_MEDIA_TYPE type_{};
    VIDEO_STREAM_CONFIG_CAPS caps_{};
    VideoFormat format_{};
};

TEST_F(DirectShowFormat, HasSizeRateAndName) {
    ASSERT_TRUE(Convert());
    EXPECT_EQ(format_.width, 640);
    EXPECT_EQ(format_.height, 480);
    EXPECT_EQ(format_.framesIn1000s, 30000);
    EXPECT_STREQ(format_.pixels, "YUY2");
}

TEST_F(DirectShowFormat, IsTheGreatestOfARange) {
    caps_.MinOutputSize = {160, 120};
    caps_.MaxOutputSize = {1280, 960};
    ASSERT_TRUE(Convert());
    EXPECT_EQ(format_.width, 1280);
    EXPECT_EQ(format_.height, 960);
}

TEST_F(DirectShowFormat, HasTheHeightOfRowsFromTheTop) {
    video_.bmiHeader.biHeight = -480;
    ASSERT_TRUE(Convert());
    EXPECT_EQ(format_.height, 480);
}

TEST_F(DirectShowFormat, HasNoRateWhereNoneIsTold) {
    for (const LONGLONG interval : {-1LL, 0LL, 1LL}) {
        caps_.MinFrameInterval = interval;
        ASSERT_TRUE(Convert());
        EXPECT_EQ(format_.framesIn1000s, 0);
    }
}

TEST_F(DirectShowFormat, NamesItsPixels) {
    EXPECT_EQ(NameOf(MEDIASUBTYPE_RGB24), "RGB24");
    EXPECT_EQ(NameOf(MEDIASUBTYPE_RGB32), "RGB32");
    EXPECT_EQ(NameOf(MEDIASUBTYPE_RGB565), "RGB565");
    EXPECT_EQ(NameOf(MEDIASUBTYPE_MJPG), "MJPG");
    GUID odd = MEDIASUBTYPE_MJPG;
    odd.Data1 = 0x00010203;
    EXPECT_EQ(NameOf(odd), "?");
    EXPECT_EQ(NameOf(GUID{}), "?");
}

TEST_F(DirectShowFormat, IsNoneForOddSizesAndOtherMedia) {
    const LONG odd[][2] = {{0, 480}, {-640, 480}, {640, 0}, {640, static_cast<LONG>(-2147483647L - 1)}, {2000000, 1}};
    for (const auto& side : odd) {
        video_.bmiHeader.biWidth = side[0];
        video_.bmiHeader.biHeight = side[1];
        EXPECT_FALSE(Convert());
    }
    video_.bmiHeader.biWidth = video_.bmiHeader.biHeight = 100;
    EXPECT_TRUE(Convert());
    type_.cbFormat = sizeof video_ - 1;
    EXPECT_FALSE(Convert());
    type_.cbFormat = sizeof video_;
    type_.formattype = FORMAT_VideoInfo2;
    EXPECT_FALSE(Convert());
    type_.formattype = FORMAT_VideoInfo;
    type_.majortype = MEDIATYPE_Audio;
    EXPECT_FALSE(Convert());
}

using DirectShowFormats = DirectShow;

TEST_F(DirectShowFormats, AreThoseOfTheDevice) {
    Plug({TestCamera::previewAndCapture});
    cameras_->Show({BlankScene(322, 201)});
    VideoFormat formats[4];
    ASSERT_EQ(source_.Formats(first_, formats, 4), 1);
    EXPECT_EQ(formats[0].width, 322);
    EXPECT_EQ(formats[0].height, 201);
    EXPECT_EQ(formats[0].framesIn1000s, 30000);
    EXPECT_STREQ(formats[0].pixels, "RGB24");
    EXPECT_EQ(source_.Formats(first_, formats, 0), 0);
    EXPECT_EQ(source_.Formats(first_, nullptr, 4), 0);
    ExpectNothingLeft();
}

TEST_F(DirectShowFormats, CanBeAskedOfTheOpenDevice) {
    ASSERT_TRUE(OpenAndRun(TestCamera::previewAndCapture));
    VideoFormat formats[4];
    EXPECT_EQ(source_.Formats(first_, formats, 4), 1);
    EXPECT_TRUE(sink_.Wait(3));
}

TEST_F(DirectShowFormats, AreNoneOfADeviceThatCanNotBeMade) {
    Plug({TestCamera::noFilter});
    VideoFormat formats[4];
    EXPECT_EQ(source_.Formats(first_, formats, 4), 0);
}

} // namespace
} // namespace orvane::test
