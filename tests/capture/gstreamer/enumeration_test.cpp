// The list of devices: order, texts and forms.
#include "tests/capture/gstreamer/source_fixture.h"

#include <cwchar>

namespace orvane::test {
namespace {

class Enumeration : public Source {
protected:
    std::vector<std::wstring> Names() {
        std::vector<std::wstring> names;
        const int32 count = source_->EnumerateDevices();
        for (int32 i = 0; i < count; ++i) {
            const wchar_t* name = source_->Text(i, DeviceText::friendlyName);
            names.emplace_back(name != nullptr ? name : L"");
        }
        return names;
    }
};

TEST_F(Enumeration, FindsTheCamerasInAnOrderThatStays) {
    const auto first = Names();
    EXPECT_GE(first.size(), 16U);
    EXPECT_EQ(first[0], L"Orvane test: portrait");
    EXPECT_EQ(Names(), first);
    std::unique_ptr<VideoSource> other(GstVideo().CreateVideoSource());
    EXPECT_EQ(other->EnumerateDevices(), static_cast<int32>(first.size()));
    for (const char* name : {kPortraitCamera, kJpegCamera, kStuckRunningCamera}) {
        EXPECT_EQ(TestCameraIndex(name), Find(name)) << name;
    }
}

TEST_F(Enumeration, FollowsWhatIsPluggedIn) {
    PlugTestCameras({kPatternCamera, kSilentCamera});
    EXPECT_EQ(Find(kPatternCamera), 0);
    EXPECT_EQ(Find(kSilentCamera), 1);
    EXPECT_EQ(Find(kPortraitCamera), -1);
    PlugTestCameras({kSilentCamera});
    EXPECT_EQ(Find(kSilentCamera), 0);
    EXPECT_EQ(Find(kPatternCamera), -1);
}

TEST_F(Enumeration, TextsAreWideAndAbsentWhereNoneIsGiven) {
    const int32 portrait = Find(kPortraitCamera);
    EXPECT_STREQ(source_->Text(portrait, DeviceText::description), L"Drawn portrait");
    EXPECT_STREQ(source_->Text(portrait, DeviceText::devicePath), L"/test/portrait");
    const int32 pattern = Find(kPatternCamera);
    EXPECT_STREQ(source_->Text(pattern, DeviceText::friendlyName), L"Orvane test: pattern \u00e9\u4e16\U0001F4F7");
    EXPECT_EQ(source_->Text(pattern, DeviceText::description), nullptr);
    EXPECT_EQ(source_->Text(pattern, DeviceText::devicePath), nullptr);
}

TEST_F(Enumeration, FormsAreThoseOfTheDeviceEachOnce) {
    VideoFormat formats[16];
    const int32 device = Find(kManyFormsCamera);
    ASSERT_EQ(source_->Formats(device, formats, 16), 5);
    const auto expect = [&](int i, int32 width, int32 height, int32 rate, const char* pixels) {
        EXPECT_EQ(formats[i].width, width) << i;
        EXPECT_EQ(formats[i].height, height) << i;
        EXPECT_EQ(formats[i].framesIn1000s, rate) << i;
        EXPECT_STREQ(formats[i].pixels, pixels) << i;
    };
    expect(0, 1920, 1080, 30000, "BGRx");
    expect(1, 640, 480, 60000, "BGRx");
    expect(2, 640, 480, 30000, "RGB");
    expect(3, 1280, 960, 10000, "BGRx");
    expect(4, 1280, 720, 30000, "BGRx");
}

TEST_F(Enumeration, FormsAreCutOffAtTheCapacity) {
    const int32 device = Find(kManyFormsCamera);
    VideoFormat formats[3];
    formats[2].width = -7;
    EXPECT_EQ(source_->Formats(device, formats, 2), 2);
    EXPECT_EQ(formats[2].width, -7);
    EXPECT_EQ(source_->Formats(device, formats, 0), 0);
    EXPECT_EQ(source_->Formats(device, formats, -1), 0);
    EXPECT_EQ(source_->Formats(device, nullptr, 3), 0);
    EXPECT_EQ(source_->Formats(Find(kSecretiveCamera), formats, 3), 0);
}

TEST_F(Enumeration, NoDeviceHasNothing) {
    VideoFormat format;
    EXPECT_EQ(source_->Text(0, DeviceText::friendlyName), nullptr) << "nobody has looked yet";
    EXPECT_FALSE(source_->Open(0, &size_));
    const int32 count = source_->EnumerateDevices();
    for (const int32 index : {-2, -1, count, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(source_->Text(index, DeviceText::friendlyName), nullptr);
        EXPECT_EQ(source_->Formats(index, &format, 1), 0);
        EXPECT_FALSE(source_->Open(index, &size_));
    }
}

TEST_F(Enumeration, LeavesWhatIsOpenOpen) {
    ASSERT_TRUE(Start(kPortraitCamera));
    ASSERT_TRUE(sink_.WaitForFrames(1));
    PlugTestCameras({kSilentCamera});
    EXPECT_EQ(Find(kPortraitCamera), -1);
    EXPECT_TRUE(sink_.WaitForFrames(2));
}

} // namespace
} // namespace orvane::test
