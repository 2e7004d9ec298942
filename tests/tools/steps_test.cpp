// The pictures that show what each action did: which there are, what they hold, and that none of their
// files replaces another.
#include "tools/orvane/steps.h"

#include "image/session_images.h"
#include "session/session_state.h"
#include "tests/support/tested_file.h"
#include "tests/tools/bright_square.h"
#include "tests/tools/process.h"
#include "tests/tools/temp_folder.h"
#include "tools/orvane/output_names.h"
#include "tools/support/picture_io.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using Names = std::vector<std::string>;

TEST(Steps, AreThoseOfTheActionsThatAreOnAndTheScaling) {
    EXPECT_EQ(StepNames({true, true, true, true}),
              (Names{"0-crop", "1-background", "1-mask", "2-colour", "3-rotation", "5-output"}));
    EXPECT_EQ(StepNames({true, false, false, false}), (Names{"0-crop", "5-output"}));
    EXPECT_EQ(StepNames({false, false, false, false}), Names{"5-output"});
}

TEST(Steps, HoldThePicturesRowsAndTheMaskAsGrey) {
    ImageBuffer picture;
    ASSERT_TRUE(picture.Create(3, 2, 3, kDepth8u, 0));
    for (int32 i = 0; i < 2 * picture.Step(); ++i) picture.data[i] = static_cast<uint8>(i);
    ASSERT_TRUE(g_maskImage.Create(3, 2, 1, kDepth8u, 0));
    g_maskImage.data[0] = 255;
    g_maskImage.data[g_maskImage.Step() + 2] = 7;

    Steps steps;
    const SlotObserver observer = AddTo(&steps);
    observer(kSlotCrop, picture);
    observer(kSlotBackground, picture);
    g_maskImage.Reset();
    ASSERT_EQ(steps.size(), 3U);
    EXPECT_EQ(steps[0].name, "0-crop");
    EXPECT_EQ(steps[1].name, "1-background");
    EXPECT_EQ(steps[0].picture.width, 3);
    EXPECT_EQ(steps[0].picture.height, 2);
    EXPECT_EQ(AllRowsOf(steps[0].picture),
              (std::vector<uint8>{0, 1, 2, 3, 4, 5, 6, 7, 8, 0, 0, 0, 12, 13, 14, 15, 16, 17, 18, 19, 20, 0, 0, 0}))
        << "the padding of the rows is zero";
    EXPECT_EQ(steps[2].name, "1-mask");
    std::vector<uint8> mask(24, 0);
    mask[0] = mask[1] = mask[2] = 255;
    mask[18] = mask[19] = mask[20] = 7;
    EXPECT_EQ(steps[2].picture.width, 3);
    EXPECT_EQ(AllRowsOf(steps[2].picture), mask);
}

TEST(Steps, LeaveOutWhatHasNoPixels) {
    g_maskImage.Reset();
    Steps steps;
    AddTo (&steps)(kSlotBackground, ImageBuffer());
    EXPECT_TRUE(steps.empty());
}

TEST(Steps, LeaveOutTheMaskOfAnotherPicture) {
    ImageBuffer picture;
    ASSERT_TRUE(picture.Create(3, 2, 3, kDepth8u, 0));
    ASSERT_TRUE(g_maskImage.Create(3, 3, 1, kDepth8u, 0));
    Steps steps;
    AddTo (&steps)(kSlotBackground, picture);
    g_maskImage.Reset();
    ASSERT_EQ(steps.size(), 1U);
    EXPECT_EQ(steps[0].name, "1-background");
}

/// Errors of the plan for these photos, "" for a photo that may be done.
Names Planned(const Names& photos, const std::string& output, const std::string& folder, bool force = false) {
    std::vector<PlannedOutput> planned;
    std::string error;
    EXPECT_TRUE(PlanOutputs(photos, output, force, &planned, &error)) << error;
    EXPECT_TRUE(PlanSteps(photos, folder, {"0-crop", "5-output"}, force, &planned, &error)) << error;
    Names errors;
    for (const PlannedOutput& plan : planned) errors.push_back(plan.error);
    return errors;
}

TEST(StepNames, WantAFolderThatIsThere) {
    const TempFolder folder;
    std::vector<PlannedOutput> planned(1);
    std::string error;
    EXPECT_FALSE(PlanSteps({"a.jpg"}, folder / "absent", {"5-output"}, false, &planned, &error));
    EXPECT_EQ(error, "there is no folder '" + (folder / "absent") + "' for the steps");
}

TEST(StepNames, AnExistingStepIsRefusedWithoutForce) {
    const TempFolder folder;
    folder.Put("a-5-output.png", "before");
    EXPECT_EQ(Planned({"a.jpg", "b.jpg"}, folder.Path(), folder.Path()),
              (Names{"the step '" + (folder / "a-5-output.png") + "' exists already; --force replaces it", ""}));
    EXPECT_EQ(Planned({"a.jpg", "b.jpg"}, folder.Path(), folder.Path(), true), (Names{"", ""}));
}

TEST(StepNames, NoStepReplacesAPhotoEvenWithForce) {
    const TempFolder folder;
    const std::string photo = folder.Put("a-0-crop.png", "a photo");
    const TempFolder out;
    const std::string own = "the step '" + (folder / "a-0-crop.png") + "' is one of the photos";
    EXPECT_EQ(Planned({"a.jpg", photo}, out.Path(), folder.Path(), true), (Names{own, ""}));
}

TEST(StepNames, NoStepReplacesAPortraitOrAStepOfTheSameCallHoweverTheFolderIsSpelled) {
    const TempFolder folder;
    const std::string path = folder / "a-0-crop.png";
    const std::string error = "a portrait or an earlier photo has the step '";
    for (const bool force : {false, true}) {
        EXPECT_EQ(Planned({"a.jpg"}, path, folder.Path() + "/.", force),
                  Names{error + folder.Path() + "/./a-0-crop.png'"});
        EXPECT_EQ(Planned({"a.jpg", "a-0-crop.jpg"}, folder.Path() + "/", folder.Path(), force),
                  (Names{error + path + "'", ""}));
    }
    const TempFolder out;
    std::vector<PlannedOutput> planned = {{out / "1.png", ""}, {out / "2.png", ""}, {out / "3.png", "refused before"}};
    std::string none;
    ASSERT_TRUE(PlanSteps({"a.jpg", "x/a.png", "b.jpg"}, folder.Path(), {"0-crop"}, false, &planned, &none));
    EXPECT_EQ(planned[0].error, "");
    EXPECT_EQ(planned[1].error, error + path + "'");
    EXPECT_EQ(planned[2].error, "refused before");
}

/// The program beside a classifier that finds bright squares.
class ToolSteps : public testing::Test {
protected:
    ToolSteps() {
        const std::filesystem::path program = test::TestedFile(ORVANE_TOOL);
        std::error_code failed;
        std::filesystem::create_hard_link(program, home_ / "orvane", failed);
        if (failed) std::filesystem::copy_file(program, home_ / "orvane");
        home_.Put("Orvane.dat", BrightSquareClassifier());
        work_.Put("a.png", Encoded(".png", PhotoWithSquare(320, 240, 100, 80)));
        std::filesystem::create_directory(work_ / "steps");
    }

    ProcessResult Run(const Names& more) const {
        Names arguments = {"portrait", "a.png", "-o", "b.png", "--size", "120x160", "--steps", "steps"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunProcess(home_ / "orvane", arguments, work_.Path());
    }

    Names StepFiles() const {
        Names names;
        for (const auto& entry : std::filesystem::directory_iterator(work_ / "steps")) {
            names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    Picture Read(const std::string& name) const {
        Picture picture;
        std::string error;
        EXPECT_TRUE(ReadPicture(work_ / name, &picture, &error)) << name << ": " << error;
        return picture;
    }

    TempFolder home_;
    TempFolder work_;
};

TEST_F(ToolSteps, LieInTheFolderAfterAPortrait) {
    const ProcessResult result = Run({"--actions", "crop,colour,rotation", "--rotate", "90"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    ASSERT_EQ(StepFiles(), (Names{"a-0-crop.png", "a-2-colour.png", "a-3-rotation.png", "a-5-output.png"}));
    const Picture crop = Read("steps/a-0-crop.png");
    const Picture stretched = Read("steps/a-2-colour.png");
    EXPECT_EQ(stretched.width, crop.width);
    EXPECT_EQ(stretched.height, crop.height);
    const Picture turned = Read("steps/a-3-rotation.png");
    EXPECT_EQ(turned.width, crop.height);
    EXPECT_EQ(turned.height, crop.width);
    EXPECT_EQ(Read("steps/a-5-output.png").pixels, Read("b.png").pixels);
}

TEST_F(ToolSteps, ShowTheBackgroundsRemovalAndItsMask) {
    const ProcessResult result = Run({"--actions", "crop,background"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    ASSERT_EQ(StepFiles(), (Names{"a-0-crop.png", "a-1-background.png", "a-1-mask.png", "a-5-output.png"}));
    const Picture crop = Read("steps/a-0-crop.png");
    for (const char* name : {"steps/a-1-background.png", "steps/a-1-mask.png"}) {
        const Picture step = Read(name);
        EXPECT_EQ(step.width, crop.width) << name;
        EXPECT_EQ(step.height, crop.height) << name;
    }
}

TEST_F(ToolSteps, DoNotChangeThePortrait) {
    ASSERT_EQ(Run({"--actions", "crop,colour", "--rotate", "5"}).exitCode, 0);
    const ProcessResult plain = RunProcess(
        home_ / "orvane",
        {"portrait", "a.png", "-o", "c.png", "--size", "120x160", "--actions", "crop,colour", "--rotate", "5"},
        work_.Path());
    ASSERT_EQ(plain.exitCode, 0) << plain.err;
    EXPECT_EQ(work_.Get("b.png"), work_.Get("c.png"));
}

TEST_F(ToolSteps, ShowNoCropThatWasNotAskedFor) {
    ASSERT_EQ(Run({"--actions", "none"}).exitCode, 0);
    EXPECT_EQ(StepFiles(), Names{"a-5-output.png"}) << "the confirmation's crop is no step";
}

TEST_F(ToolSteps, ThatExistKeepThePhotoFromBeingDoneWithoutForce) {
    work_.Put("steps/a-5-output.png", "before");
    const ProcessResult refused = Run({});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err, "orvane: a.png: the step 'steps/a-5-output.png' exists already; --force replaces it\n");
    EXPECT_EQ(StepFiles(), Names{"a-5-output.png"});
    EXPECT_FALSE(std::filesystem::exists(work_ / "b.png"));
    EXPECT_EQ(work_.Get("steps/a-5-output.png"), "before");
    EXPECT_EQ(Run({"--force"}).exitCode, 0);
    EXPECT_EQ(Read("steps/a-5-output.png").pixels, Read("b.png").pixels);
}

TEST_F(ToolSteps, ThatCannotBeWrittenAreAnErrorOfThePhoto) {
    std::filesystem::create_directory(work_ / "steps/a-0-crop.png");
    const ProcessResult result = Run({"--force"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err.rfind("orvane: a.png: the step 'steps/a-0-crop.png' ", 0), 0U) << result.err;
    EXPECT_TRUE(std::filesystem::exists(work_ / "b.png")) << "the portrait came first";
}

TEST_F(ToolSteps, OfAPhotoWithoutAFaceAreNone) {
    work_.Put("a.png", Encoded(".png", PhotoWithoutFace()));
    EXPECT_EQ(Run({}).exitCode, 10);
    EXPECT_TRUE(StepFiles().empty());
}

} // namespace
} // namespace orvane::tools
