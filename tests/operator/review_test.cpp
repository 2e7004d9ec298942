// A review over a played library: what the operator does decides over exit code and file.
#include "tools/operator/review.h"

#include "tests/operator/command_fixture.h"
#include "tests/tools/picture_files.h"

#include <algorithm>
#include <filesystem>

namespace orvane::tools {
namespace {

using test::g_played;

class Review : public OperatorCommandTest {
protected:
    Review() {
        options_.command = OperatorCommand::review;
        options_.photo = folder_.Put("a.png", Encoded(".png", ColourfulPicture(7, 5)));
    }

    OperatorExit Run() {
        return Captured([&] { return RunReview(options_); });
    }

    void ExpectNothingWritten() const { EXPECT_EQ(folder_.Names(), Names{"a.png"}); }

    bool WasDetected() const { return std::count(g_played.calls.begin(), g_played.calls.end(), "detect") != 0; }
};

TEST_F(Review, ThePortraitIsWrittenAndTold) {
    EXPECT_EQ(Run(), 0) << err_;
    const Picture portrait = WrittenPortrait();
    ASSERT_EQ(portrait.width, 480);
    ASSERT_EQ(portrait.height, 860);
    EXPECT_TRUE(IsNear(PixelAt(portrait, 479, 859), {128, 128, 128}, 0));
}

TEST_F(Review, TheSettingsArriveBeforeThePhotoAndTheSessionIsClosed) {
    options_.hidden = true;
    options_.language = "pt.txt";
    options_.width = 120;
    options_.height = 160;
    options_.cropRatio = 1.5F;
    options_.actions = {false, true, true, false};
    g_played.outputWidth = 120;
    g_played.outputHeight = 160;
    EXPECT_EQ(Run(), 0) << err_;
    EXPECT_EQ(g_played.calls, (Names{"init", "visible 0", "language pt.txt", "size 120x160", "ratio 150", "action 0 0",
                                     "action 1 1", "action 2 1", "action 3 0", "detect", "output", "release"}));
}

TEST_F(Review, ThePhotoGoesInAsAPackedBitmap) {
    EXPECT_EQ(Run(), 0);
    const Picture photo = ColourfulPicture(7, 5);
    ASSERT_EQ(g_played.photo.size(), 40U + 24 * 5);
    const std::string header = Low32(40) + Low32(7) + Low32(5) + Low16(1) + Low16(24) + Low32(0) + Low32(24 * 5);
    EXPECT_EQ(std::string(g_played.photo.begin(), g_played.photo.begin() + 24), header);
    EXPECT_TRUE(std::equal(photo.pixels.begin(), photo.pixels.end(), g_played.photo.begin() + 40));
    EXPECT_EQ(g_played.calls[1], "visible 1");
}

TEST_F(Review, AMarkedFaceGivesAPortraitAlthoughNoneWasFound) {
    g_played.detect = ORV_NO_FACE;
    EXPECT_EQ(Run(), 0) << err_;
    EXPECT_EQ(out_, options_.output + ": 480x860, result 10, no face was found and the operator marked it\n");
    EXPECT_EQ(folder_.Names().size(), 2U);
}

TEST_F(Review, AMarkedFaceWithoutCropGivesAPictureOfThePhotosSize) {
    g_played.detect = ORV_NO_FACE;
    options_.actions.crop = false;
    g_played.outputWidth = 7; // the library may round it down to 4, and one side may grow
    g_played.outputHeight = 5;
    EXPECT_EQ(Run(), 0) << err_;
    g_played.outputWidth = 28;
    g_played.outputHeight = 20;
    options_.force = true;
    EXPECT_EQ(Run(), 10) << "the photo scaled for the work on it";
}

TEST_F(Review, WithoutAFaceAndAnOutputTheCodeIs10) {
    g_played.detect = ORV_NO_FACE;
    g_played.output = ORV_NO_SESSION;
    EXPECT_EQ(Run(), 10);
    EXPECT_EQ(out_, "");
    EXPECT_EQ(err_, "orvane-operator: " + options_.photo + ": no face was found\n");
    ExpectNothingWritten();
}

TEST_F(Review, ThePhotoScaledForTheWorkIsNoPortrait) {
    g_played.detect = ORV_NO_FACE;
    g_played.outputWidth = 28; // not of the size asked for
    g_played.outputHeight = 20;
    EXPECT_EQ(Run(), 10);
    ExpectNothingWritten();
    // Of just that size, but it shows the whole photo: a grey one, as the output is.
    Picture grey = ColourfulPicture(120, 215);
    std::fill(grey.pixels.begin(), grey.pixels.end(), uint8{127});
    folder_.Put("a.png", Encoded(".png", grey));
    g_played.outputWidth = 480;
    g_played.outputHeight = 860;
    EXPECT_EQ(Run(), 10);
    ExpectNothingWritten();
}

TEST_F(Review, ACancelWritesNothingAndGives20) {
    g_played.detect = ORV_CANCELLED;
    EXPECT_EQ(Run(), 20);
    EXPECT_EQ(err_, "orvane-operator: " + options_.photo + ": the operator cancelled\n");
    EXPECT_EQ(out_, "");
    EXPECT_EQ(g_played.calls.back(), "release");
    ExpectNothingWritten();
}

TEST_F(Review, EveryFailureOfTheDetectionIsAnErrorInWords) {
    const std::pair<int32, const char*> cases[] = {{ORV_BAD_ARGUMENT, "the picture is too small"},
                                                   {ORV_STEP_FAILED, "a step of the detection failed"},
                                                   {ORV_NO_MEMORY, "not enough memory"},
                                                   {ORV_NO_PICTURE, "no usable picture"},
                                                   {ORV_NO_CLASSIFIER, "the classifier Orvane.dat"},
                                                   {-99, "the library answered -99"}};
    for (const auto& [code, words] : cases) {
        g_played.detect = code;
        EXPECT_EQ(Run(), 1) << code;
        EXPECT_EQ(err_.rfind("orvane-operator: " + options_.photo + ": " + words, 0), 0U) << err_;
    }
    ExpectNothingWritten();
}

TEST_F(Review, ALibraryThatDoesNotStartIsAnError) {
    g_played.init = ORV_NO_SESSION;
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(err_, "orvane-operator: the library did not start: the library is not ready\n");
    EXPECT_FALSE(WasDetected());
}

TEST_F(Review, ASettingThatIsRefusedIsNamedAndNoWindowOpens) {
    const std::pair<int32_t test::PlayedLibrary::*, const char*> cases[] = {
        {&test::PlayedLibrary::visible, "--hidden: the library refuses it (-10)"},
        {&test::PlayedLibrary::language, "--language: 'x.txt' cannot be opened in the library's folder"},
        {&test::PlayedLibrary::size, "--size: the library refuses it (-10)"},
        {&test::PlayedLibrary::ratio, "--crop-ratio: the library refuses it (-10)"},
        {&test::PlayedLibrary::action, "the action crop: the library refuses it (-10)"},
    };
    options_.language = "x.txt";
    for (const auto& [setting, line] : cases) {
        g_played = {};
        g_played.*setting = ORV_BAD_ARGUMENT;
        EXPECT_EQ(Run(), 1) << line;
        EXPECT_EQ(err_, std::string("orvane-operator: ") + line + "\n");
        EXPECT_FALSE(WasDetected());
        EXPECT_EQ(g_played.calls.back(), "release");
    }
    g_played = {};
    g_played.size = ORV_NO_SESSION;
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(err_, "orvane-operator: --size: the library is not ready\n");
}

TEST_F(Review, AnOutputThatCannotBeWrittenIsToldBeforeTheLibraryStarts) {
    folder_.Put("taken.png", "before");
    std::filesystem::create_directory(folder_ / "folder.png");
    const std::pair<const char*, const char*> cases[] = {
        {"taken.png", "exists already; --force replaces it"},
        {"folder.png", "is a folder"},
        {"absent/b.png", "cannot write: No such file or directory"},
        {"b.gif", "has no extension of a format that can be written"},
    };
    for (const auto& [name, why] : cases) {
        options_.output = folder_ / name;
        EXPECT_EQ(Run(), 1) << name;
        EXPECT_NE(err_.find(why), std::string::npos) << err_;
        EXPECT_TRUE(g_played.calls.empty()) << name;
    }
    EXPECT_EQ(folder_.Get("taken.png"), "before");
}

TEST_F(Review, AFileThatAppearsMeanwhileStays) {
    options_.photo = folder_ / "a.png";
    options_.force = false;
    g_played.detect = ORV_OK;
    // The photo's own name is the output: it exists, and only --force may replace it.
    options_.output = options_.photo;
    const std::string before = folder_.Get("a.png");
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(folder_.Get("a.png"), before);
    options_.force = true;
    EXPECT_EQ(Run(), 0) << err_;
    EXPECT_NE(folder_.Get("a.png"), before);
}

TEST_F(Review, AnOutputOfAnotherSizeIsTakenFromTheOperatorAndRefusedWithoutOne) {
    g_played.outputWidth = 100;
    options_.hidden = true;
    EXPECT_EQ(Run(), 1);
    EXPECT_NE(err_.find("a correction failed"), std::string::npos) << err_;
    ExpectNothingWritten();
    options_.hidden = false;
    EXPECT_EQ(Run(), 0) << err_;
    EXPECT_EQ(out_, options_.output + ": 100x860, result 0\n");
}

TEST_F(Review, AnOutputThatCannotBeHadIsAnError) {
    for (const int32 code : {ORV_NO_MEMORY, ORV_NO_PICTURE, ORV_NO_SESSION}) {
        g_played.output = code;
        EXPECT_EQ(Run(), 1);
        EXPECT_NE(err_.find("there is no portrait to write (" + std::to_string(code) + ")"), std::string::npos) << err_;
    }
    g_played.output = ORV_OK;
    g_played.outputWidth = 0; // a block that holds no bitmap
    EXPECT_EQ(Run(), 1);
    ExpectNothingWritten();
}

} // namespace
} // namespace orvane::tools
