// The list of the cameras over played ones: every camera has its line, whatever it tells of itself.
#include "tools/operator/devices.h"

#include "tests/operator/command_fixture.h"
#include "tests/support/fake_video.h"
#include "tests/tools/json_reader.h"
#include "tests/tools/process.h"

namespace orvane::tools {
namespace {

/// What a camera tells of itself.
struct Told {
    std::optional<std::wstring> name;
    std::optional<std::wstring> description;
    std::optional<std::wstring> path;
    std::vector<VideoFormat> formats;

    operator test::FakeDevice() const {
        test::FakeDevice device;
        device.friendlyName = name;
        device.description = description;
        device.devicePath = path;
        device.formats = formats;
        return device;
    }
};

class Devices : public OperatorCommandTest {
protected:
    Devices() { options_.command = OperatorCommand::devices; }
    ~Devices() override { EXPECT_EQ(video_.sourcesAlive, 0) << "a source was kept"; }

    OperatorExit Run() {
        return Captured([&] { return RunDevices(options_, video_); });
    }

    std::string LineOf(const Told& camera) {
        video_.devices = {camera};
        EXPECT_EQ(Run(), 0) << err_;
        EXPECT_EQ(err_, "");
        return out_;
    }

    JsonValue JsonOf(const Told& camera) {
        options_.json = true;
        const std::string line = LineOf(camera);
        EXPECT_EQ(line.back(), '\n');
        return JsonReader::Read(line.substr(0, line.size() - 1));
    }

    test::FakeVideo video_;
};

/// Many formats that differ.
std::vector<VideoFormat> Sizes(int32 count) {
    std::vector<VideoFormat> formats;
    for (int32 i = 0; i < count; ++i) formats.push_back({16 * (i + 1), 12, 30000, "YUY2"});
    return formats;
}

TEST_F(Devices, WithoutVideoOrCameraTheListIsAnError) {
    for (const bool json : {false, true}) {
        options_.json = json;
        video_.hasVideo = false;
        EXPECT_EQ(Run(), 1);
        EXPECT_EQ(out_, "");
        EXPECT_EQ(err_, "orvane-operator: no camera can be reached: there is no video here\n");
        video_.hasVideo = true;
        EXPECT_EQ(Run(), 1);
        EXPECT_EQ(out_, "");
        EXPECT_EQ(err_, "orvane-operator: no camera was found\n");
    }
    EXPECT_TRUE(g_played.calls.empty()) << "the library has no part in it";
}

TEST_F(Devices, TheNumbersAreThoseOfTheSystemsOrder) {
    video_.devices = {Told{L"Front", {}, {}, {{640, 480, 30000, "YUY2"}}},
                      Told{L"Front", {}, {}, {{640, 480, 30000, "MJPG"}, {320, 240, 15000, "YUY2"}}},
                      Told{L"Side", L"a description", L"/a/path", {}}};
    EXPECT_EQ(Run(), 0) << err_;
    EXPECT_EQ(out_, "0  Front  640x480 30/s YUY2\n"
                    "1  Front  640x480 30/s MJPG, 320x240 15/s YUY2\n"
                    "2  Side  (tells no formats)\n");
    EXPECT_EQ(err_, "");
}

TEST_F(Devices, AnAbsentNameIsReplacedByWhatTheCameraTells) {
    EXPECT_EQ(LineOf({{}, L"A description", L"/a/path", {}}), "0  A description  (tells no formats)\n");
    EXPECT_EQ(LineOf({L"", {}, L"/a/path", {}}), "0  /a/path  (tells no formats)\n");
    EXPECT_EQ(LineOf({}), "0  (no name)  (tells no formats)\n");
    EXPECT_EQ(LineOf({L"", L"", L"", {}}), "0  (no name)  (tells no formats)\n");
}

TEST_F(Devices, NamesStayOnOneLineAndAreUtf8) {
    EXPECT_EQ(LineOf({L"a\nb\x1B[2J\x9B\x7F", {}, {}, {}}), "0  a?b?[2J??  (tells no formats)\n");
    EXPECT_EQ(LineOf({L"K\xFC"
                      L"che \x20AC",
                      {},
                      {},
                      {}}),
              "0  K\xC3\xBC"
              "che \xE2\x82\xAC  (tells no formats)\n");
    EXPECT_EQ(LineOf({std::wstring{L'a', static_cast<wchar_t>(0xD83D)}, {}, {}, {}}),
              "0  a\xEF\xBF\xBD  (tells no formats)\n");
}

TEST_F(Devices, AFormatIsToldAsFarAsItIsKnown) {
    const std::pair<VideoFormat, const char*> cases[] = {
        {{640, 480, 30000, "YUY2"}, "640x480 30/s YUY2"},
        {{640, 480, 29970, "MJPG"}, "640x480 29.97/s MJPG"},
        {{640, 480, 7500, ""}, "640x480 7.5/s"},
        {{640, 480, 500, "RGB24"}, "640x480 0.5/s RGB24"},
        {{640, 480, 1, "RGB24"}, "640x480 0.001/s RGB24"},
        {{640, 480, 100000, "GREY"}, "640x480 100/s GREY"},
        {{640, 480, 0, "NV12"}, "640x480 NV12"},
        {{640, 480, -5, ""}, "640x480"},
        {{2147483647, -1, 2147483647, "a\n\xFF\x7F"}, "2147483647x-1 2147483.647/s a???"},
        // Sixteen characters leave no room for the zero that ought to end them.
        {{1, 2, 0, {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'a', 'b', 'c', 'd', 'e', 'f'}},
         "1x2 0123456789abcdef"},
    };
    for (const auto& [format, text] : cases) {
        EXPECT_EQ(LineOf({L"n", {}, {}, {format}}), std::string("0  n  ") + text + "\n");
    }
}

TEST_F(Devices, OfManyFormatsTheFirstThreeAreShownAndTheOthersCounted) {
    EXPECT_EQ(LineOf({L"n", {}, {}, Sizes(3)}), "0  n  16x12 30/s YUY2, 32x12 30/s YUY2, 48x12 30/s YUY2\n");
    for (const int32 count : {10, 63, 64, 65, 300, 1023, 1024, 1025}) {
        EXPECT_EQ(LineOf({L"n", {}, {}, Sizes(count)}),
                  "0  n  16x12 30/s YUY2, 32x12 30/s YUY2, 48x12 30/s YUY2, ... " + std::to_string(count - 3) +
                      " more\n");
    }
    std::vector<VideoFormat> twice = Sizes(2);
    twice.insert(twice.end(), {twice[0], twice[1]});
    EXPECT_EQ(LineOf({L"n", {}, {}, twice}), "0  n  16x12 30/s YUY2, 32x12 30/s YUY2\n") << "once told is enough";
}

TEST_F(Devices, ListsWithoutEndAreCut) {
    options_.json = true;
    EXPECT_EQ(JsonOf({L"n", {}, {}, Sizes(5000)})["formats"].elements.size(), 4096U);
}

TEST_F(Devices, JsonTellsAllThatIsKnown) {
    const JsonValue camera = JsonOf({L"K\xFC\n\"x\"", L"", {}, {{640, 480, 29970, "MJPG"}, {1, 2, 0, ""}}});
    EXPECT_EQ(camera["index"].text, "0");
    EXPECT_EQ(camera["name"].text, "K\xC3\xBC\n\"x\"");
    EXPECT_EQ(camera["description"].kind, 'n');
    EXPECT_EQ(camera["path"].kind, 'n');
    ASSERT_EQ(camera["formats"].elements.size(), 2U);
    const JsonValue& first = camera["formats"].elements[0];
    EXPECT_EQ(first["width"].text, "640");
    EXPECT_EQ(first["height"].text, "480");
    EXPECT_EQ(first["framesPerSecond"].Number(), 29.97);
    EXPECT_EQ(first["pixels"].text, "MJPG");
    EXPECT_EQ(camera["formats"].elements[1]["framesPerSecond"].kind, 'n');
    EXPECT_EQ(camera["formats"].elements[1]["pixels"].text, "");
}

TEST_F(Devices, JsonHasOneLineACamera) {
    options_.json = true;
    video_.devices = {Told{L"a", {}, {}, Sizes(2)}, Told{L"b", L"d", L"p", {}}};
    EXPECT_EQ(Run(), 0) << err_;
    const std::vector<std::string> lines = ProcessResult::Lines(out_);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(JsonReader::Read(lines[0])["formats"].elements.size(), 2U);
    EXPECT_EQ(lines[1], R"({"index":1,"name":"b","description":"d","path":"p","formats":[]})");
}

} // namespace
} // namespace orvane::tools
