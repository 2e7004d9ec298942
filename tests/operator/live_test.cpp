// A live session over a played library: what the operator accepts is written, and every other end is told.
#include "tools/operator/live.h"

#include "tests/operator/command_fixture.h"
#include "tests/tools/picture_files.h"

#include <algorithm>

namespace orvane::tools {
namespace {

class Live : public OperatorCommandTest {
protected:
    Live() { options_.command = OperatorCommand::live; }

    OperatorExit Run() {
        return Captured([&] { return RunLive(options_); });
    }

    void ExpectNothingWritten() const {
        EXPECT_EQ(folder_.Names(), Names{});
        EXPECT_EQ(out_, "");
    }

    bool WasOpened() const {
        return std::any_of(g_played.calls.begin(), g_played.calls.end(),
                           [](const std::string& call) { return call.rfind("live", 0) == 0; });
    }
};

TEST_F(Live, ThePortraitThatTheOperatorAcceptedIsWrittenAndTold) {
    EXPECT_EQ(Run(), 0) << err_;
    const Picture portrait = WrittenPortrait();
    ASSERT_EQ(portrait.width, 480);
    ASSERT_EQ(portrait.height, 860);
}

TEST_F(Live, TheSettingsArriveBeforeTheCameraAndTheSessionIsClosed) {
    options_.device = 3;
    options_.language = "pt.txt";
    options_.width = 120;
    options_.height = 160;
    options_.cropRatio = 1.5F;
    options_.actions = {true, false, false, true};
    EXPECT_EQ(Run(), 0) << err_;
    EXPECT_EQ(g_played.calls, (Names{"init", "language pt.txt", "size 120x160", "ratio 150", "action 0 1", "action 1 0",
                                     "action 2 0", "action 3 1", "live 3", "output", "release"}));
}

TEST_F(Live, AnOutputOfAnySizeIsTakenFromTheOperator) {
    g_played.outputWidth = 640; // a picture without a face is not cropped
    g_played.outputHeight = 480;
    EXPECT_EQ(Run(), 0) << err_;
    EXPECT_EQ(out_, options_.output + ": 640x480, result 0\n");
}

TEST_F(Live, OkBeforeTheFirstFrameIsAnError) {
    g_played.output = ORV_NO_SESSION;
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(err_, "orvane-operator: camera 0: no picture had come from it when the operator pressed Ok; there is no "
                    "portrait to write\n");
    EXPECT_EQ(g_played.calls.back(), "release");
    ExpectNothingWritten();
}

TEST_F(Live, AnOutputThatCannotBeHadIsAnError) {
    for (const int32 code : {ORV_NO_MEMORY, ORV_NO_PICTURE}) {
        g_played.output = code;
        EXPECT_EQ(Run(), 1);
        EXPECT_EQ(err_, "orvane-operator: camera 0: there is no portrait to write (" + std::to_string(code) + ")\n");
    }
    g_played.output = ORV_OK;
    g_played.outputWidth = 0; // a block that holds no bitmap
    EXPECT_EQ(Run(), 1);
    ExpectNothingWritten();
}

TEST_F(Live, ACameraThatCannotBeStartedIsToldWithAHint) {
    g_played.live = ORV_CAPTURE_FAILED;
    options_.device = 2;
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(err_, "orvane-operator: camera 2: it can't be started, or there is none, or no window can be opened; "
                    "'orvane-operator devices' lists the cameras\n");
    ExpectNothingWritten();
}

TEST_F(Live, EveryOtherResultWritesNothingAndIsToldInWords) {
    struct {
        int32 result;
        int exitCode;
        const char* words;
    } const cases[] = {{ORV_NO_FACE, 10, "no face was found"},
                       {ORV_CANCELLED, 20, "the operator cancelled"},
                       {ORV_STEP_FAILED, 1, "a step of the detection failed"},
                       {ORV_NO_MEMORY, 1, "not enough memory"},
                       {ORV_NO_CLASSIFIER, 1, "the classifier Orvane.dat beside the program is missing or unusable"},
                       {ORV_NO_SESSION, 1, "the library is not ready"},
                       {-99, 1, "the library answered -99"}};
    for (const auto& c : cases) {
        g_played.calls.clear();
        g_played.live = c.result;
        EXPECT_EQ(Run(), c.exitCode) << c.words;
        EXPECT_EQ(err_, std::string("orvane-operator: camera 0: ") + c.words + "\n");
        EXPECT_EQ(std::count(g_played.calls.begin(), g_played.calls.end(), "output"), 0);
        EXPECT_EQ(g_played.calls.back(), "release");
        ExpectNothingWritten();
    }
}

TEST_F(Live, WhatIsRefusedIsToldBeforeACameraOpens) {
    g_played.init = ORV_NO_SESSION;
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(err_, "orvane-operator: the library did not start: the library is not ready\n");
    EXPECT_FALSE(WasOpened());
    g_played = {};
    g_played.language = ORV_BAD_ARGUMENT;
    options_.language = "x.txt";
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(err_, "orvane-operator: --language: 'x.txt' cannot be opened in the library's folder\n");
    EXPECT_FALSE(WasOpened());
    EXPECT_EQ(g_played.calls.back(), "release");
}

TEST_F(Live, AnOutputThatCannotBeWrittenIsToldBeforeTheLibraryStarts) {
    folder_.Put("taken.png", "before");
    for (const char* name : {"taken.png", "absent/b.png", "b.gif"}) {
        options_.output = folder_ / name;
        EXPECT_EQ(Run(), 1) << name;
        EXPECT_NE(err_, "");
        EXPECT_TRUE(g_played.calls.empty()) << name;
    }
    EXPECT_EQ(folder_.Get("taken.png"), "before");
    options_.output = folder_ / "taken.png";
    options_.force = true;
    EXPECT_EQ(Run(), 0) << err_;
    EXPECT_NE(folder_.Get("taken.png"), "before");
}

} // namespace
} // namespace orvane::tools
