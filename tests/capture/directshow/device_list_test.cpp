#include "tests/capture/directshow/capture_fixture.h"
#include "tests/capture/directshow/fake_monikers.h"

namespace orvane::test {
namespace {

using DirectShowDevices = DirectShow;

TEST_F(DirectShowDevices, ComeInTheSystemsOrderWithTheirTexts) {
    Plug({TestCamera::silent, TestCamera::previewAndCapture, TestCamera::captureOnly});
    const auto text = [&](int32 index, DeviceText which) {
        const wchar_t* const value = source_.Text(first_ + index, which);
        return value != nullptr ? std::wstring(value) : std::wstring(L"(absent)");
    };
    ASSERT_EQ(source_.EnumerateDevices(), first_ + 3);
    EXPECT_EQ(text(0, DeviceText::friendlyName), L"Played silence");
    EXPECT_EQ(text(0, DeviceText::description), L"Silent");
    EXPECT_EQ(text(0, DeviceText::devicePath), L"(absent)");
    EXPECT_EQ(text(1, DeviceText::friendlyName), L"Played camera");
    EXPECT_EQ(text(1, DeviceText::description), L"Preview and capture");
    EXPECT_EQ(text(1, DeviceText::devicePath), L"played:0");
}

TEST_F(DirectShowDevices, WithoutADescriptionTheyCountAllTheSame) {
    Plug({TestCamera::captureOnly});
    ASSERT_EQ(source_.EnumerateDevices(), first_ + 1);
    EXPECT_STREQ(source_.Text(first_, DeviceText::friendlyName), L"Played capture");
    EXPECT_EQ(source_.Text(first_, DeviceText::description), nullptr);
    EXPECT_STREQ(source_.Text(first_, DeviceText::devicePath), L"played:1");
}

TEST_F(DirectShowDevices, BeyondTheListHaveNoTextAndNoForms) {
    Plug({TestCamera::captureOnly});
    VideoFormat format;
    for (const int32 index : {-2, -1, first_ + 1, 2147483647}) {
        EXPECT_EQ(source_.Text(index, DeviceText::friendlyName), nullptr);
        EXPECT_EQ(source_.Formats(index, &format, 1), 0);
        EXPECT_FALSE(source_.Open(index, &size_));
    }
}

TEST_F(DirectShowDevices, AreListedAnew) {
    Plug({TestCamera::captureOnly, TestCamera::silent});
    EXPECT_EQ(source_.EnumerateDevices(), first_ + 2);
    cameras_.reset();
    EXPECT_EQ(source_.EnumerateDevices(), first_);
    Plug({TestCamera::silent});
    EXPECT_EQ(source_.EnumerateDevices(), first_ + 1);
}

TEST_F(DirectShowDevices, WithoutPropertiesAreNotCounted) {
    FakeMoniker good, bad, last;
    good.bag.texts = {{L"FriendlyName", L"Good"}, {L"Description", L"A good one"}, {L"DevicePath", L"here"}};
    bad.bindable = false;
    last.bag.texts[L"FriendlyName"].clear();
    {
        FakeMonikers monikers({&bad, &good, &bad, &last});
        const std::vector<DirectShowDevice> devices = ReadDevices(monikers);
        ASSERT_EQ(devices.size(), 2U);
        EXPECT_EQ(devices[0].friendlyName, L"Good");
        EXPECT_EQ(devices[0].description, L"A good one");
        EXPECT_EQ(devices[0].devicePath, L"here");
        EXPECT_EQ(devices[1].friendlyName, L"");
        EXPECT_FALSE(devices[1].description.has_value());
        EXPECT_EQ(good.references, 1U) << "the list holds the moniker";
        EXPECT_EQ(bad.references, 0U);
        EXPECT_EQ(good.bag.references, 0U);
    }
    EXPECT_EQ(good.references, 0U);
    EXPECT_EQ(last.references, 0U);
    const std::vector<std::wstring> order{L"FriendlyName", L"Description", L"DevicePath"};
    EXPECT_EQ(good.bag.reads, order);
}

TEST_F(DirectShowDevices, PropertyThatIsNoTextIsAbsent) {
    FakeMoniker moniker;
    moniker.bag.texts = {{L"FriendlyName", L"Good"}};
    moniker.bag.numbers = true;
    FakeMonikers monikers({&moniker});
    const std::vector<DirectShowDevice> devices = ReadDevices(monikers);
    ASSERT_EQ(devices.size(), 1U);
    EXPECT_FALSE(devices[0].friendlyName.has_value());
}

TEST(DirectShowWithoutApartment, ThereIsNoDevice) {
    std::thread([] {
        DirectShowSource source;
        ImageSize size;
        EXPECT_EQ(source.EnumerateDevices(), 0);
        EXPECT_FALSE(source.Open(0, &size));
    }).join();
}

} // namespace
} // namespace orvane::test
