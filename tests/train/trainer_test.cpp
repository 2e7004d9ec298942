// A whole small training on made-up data: it learns, gives the same bytes again, and goes on after a stop.
#include "tools/train/trainer.h"

#include "tests/support/temp_folder.h"
#include "tests/train/samples.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace orvane::train {
namespace {

namespace fs = std::filesystem;

TrainData MadeUpData() {
    TrainData data;
    data.crops = MadeUpCrops(40);
    for (uint64 i = 0; i < 10; ++i) data.pictures.pictures.push_back(MadeUpPicture({100, 90}, i));
    return data;
}

TrainOptions SmallTraining(const std::string& folder) {
    TrainOptions options;
    options.out = folder + "/out.dat";
    options.windowSize = {14, 14};
    options.stages = 3;
    options.maxStumps = 12;
    options.firstStumps = 9;
    options.features = 400;
    options.candidates = 150;
    options.faces = 300;
    options.leastNegatives = 10;
    options.harvest.wanted = 300;
    options.harvest.poolStage = 1;
    options.harvest.passes = 4;
    options.harvest.refused = 100;
    options.harvest.threads = 2;
    options.pairStages = 0;
    options.prune.stages = 0;
    return options;
}

class Training : public testing::Test {
protected:
    void SetUp() override {
        log_ = std::fopen((folder_ + "/log.txt").c_str(), "w");
        ASSERT_NE(log_, nullptr);
    }
    void TearDown() override { std::fclose(log_); }
    std::vector<uint8> Result(const TrainOptions& options) {
        std::vector<uint8> bytes;
        EXPECT_EQ(Train(options, data_, log_), 0);
        EXPECT_TRUE(ReadFile(options.out, bytes));
        return bytes;
    }

    const TrainData data_ = MadeUpData();
    const test::TempFolder own_;
    const std::string folder_ = own_.Path().string();
    std::FILE* log_ = nullptr;
};

TEST_F(Training, LearnsToTellFacesFromOtherWindows) {
    Cascade cascade;
    ASSERT_TRUE(FromFile(Result(SmallTraining(folder_)), cascade));
    EXPECT_EQ(FindFault(cascade), "");
    const Evaluator evaluator(cascade);
    Framing framing;
    framing.relit = framing.covered = 0.0; // of so small a training that is too much to ask
    Random random({77});
    int faces = 0;
    int noise = 0;
    for (int i = 0; i < 200; ++i) {
        const Window face = CutWindow(data_.crops[static_cast<std::size_t>(i % 40)], framing, {14, 14}, random);
        const Window other = RandomWindow({14, 14}, random);
        faces += evaluator.Passes(Patch(face.data(), {14, 14})) ? 1 : 0;
        noise += evaluator.Passes(Patch(other.data(), {14, 14})) ? 1 : 0;
    }
    EXPECT_GE(faces, 180);
    EXPECT_LE(noise, 20);
}

TEST_F(Training, GivesTheSameBytesForTheSameSeedOnAnyNumberOfThreads) {
    TrainOptions options = SmallTraining(folder_);
    const std::vector<uint8> first = Result(options);
    options.harvest.threads = 1;
    EXPECT_EQ(Result(options), first);
    options.seed = 2;
    EXPECT_NE(Result(options), first);
}

TEST_F(Training, ALastStageMadeStricterTakesFewerWindowsAndLosesAsManyFacesAsAsked) {
    const TrainOptions options = SmallTraining(folder_);
    Cascade cascade;
    ASSERT_TRUE(FromFile(Result(options), cascade));
    const Cascade stricter = WithLastHitRate(options, data_, cascade, 0.5);
    EXPECT_GT(stricter.stages.back().threshold, cascade.stages.back().threshold);
    EXPECT_EQ(WithLastHitRate(options, data_, stricter, 0.9).stages.back().threshold, stricter.stages.back().threshold);
    Framing framing;
    framing.relit = framing.covered = 0.0;
    Random random({78});
    int before = 0;
    int after = 0;
    for (int i = 0; i < 400; ++i) { // crops 0, 4, 8 and on are held apart
        const Window face = CutWindow(data_.crops[static_cast<std::size_t>(i % 10 * 4)], framing, {14, 14}, random);
        before += Evaluator(cascade).Passes(Patch(face.data(), {14, 14})) ? 1 : 0;
        after += Evaluator(stricter).Passes(Patch(face.data(), {14, 14})) ? 1 : 0;
    }
    EXPECT_NEAR(after, before / 2, 60);
    TrainOptions strict = options;
    strict.lastHitRate = 0.5;
    EXPECT_EQ(Result(strict), ToFile(stricter));
}

TEST_F(Training, FirstStagesHavePairsOfRectanglesAloneWhereAsked) {
    TrainOptions options = SmallTraining(folder_);
    options.pairStages = 2;
    options.falseAlarms = 0.01; // so that the last stage has many stumps
    Cascade cascade;
    ASSERT_TRUE(FromFile(Result(options), cascade));
    int more = 0;
    for (std::size_t s = 0; s < cascade.stages.size(); ++s) {
        for (const Stump& stump : cascade.stages[s].stumps) {
            if (s < 2) {
                EXPECT_EQ(stump.feature.rectCount, 2) << "stage " << s;
            }
            more += stump.feature.rectCount > 2 ? 1 : 0;
        }
    }
    EXPECT_GT(more, 0);
}

TEST_F(Training, EarlyStagesAreMadeStricterInTheEndByHeldFaces) {
    TrainOptions options = SmallTraining(folder_);
    options.lastHitRate = 1.0;
    Cascade plain;
    ASSERT_TRUE(FromFile(Result(options), plain));
    options.prune = {2, 6, 0.02};
    const std::vector<uint8> bytes = Result(options);
    const Cascade pruned = WithEarlyStagesPruned(options, data_, plain);
    EXPECT_EQ(ToFile(pruned), bytes);
    EXPECT_NE(bytes, ToFile(plain));
    for (std::size_t s = 0; s < 3; ++s) EXPECT_GE(pruned.stages[s].threshold, plain.stages[s].threshold);
    EXPECT_EQ(pruned.stages[2].threshold, plain.stages[2].threshold);
    options.harvest.threads = 1;
    EXPECT_EQ(Result(options), bytes);
}

TEST_F(Training, GoesOnBehindTheLastStageWithTheSameResult) {
    TrainOptions options = SmallTraining(folder_);
    const std::vector<uint8> whole = Result(options);
    for (const int firstPart : {1, 2}) {
        options.work = folder_ + "/work" + std::to_string(firstPart);
        options.stages = firstPart;
        Result(options);
        options.stages = 3;
        EXPECT_EQ(Result(options), whole) << "stopped behind stage " << firstPart;
    }
}

TEST_F(Training, WindowsLeftByATrainingThatWasGivenUpAreNotUsed) {
    TrainOptions options = SmallTraining(folder_);
    const std::vector<uint8> whole = Result(options);
    options.work = folder_ + "/work";
    fs::create_directories(options.work);
    ASSERT_TRUE(WriteFile(options.work + "/pool.bin", std::vector<uint8>(100 * (14 * 14 + 1), 1)));
    EXPECT_EQ(Result(options), whole);
}

TEST_F(Training, AWorkFolderOfOtherSettingsIsRefused) {
    TrainOptions options = SmallTraining(folder_);
    options.work = folder_ + "/work";
    options.stages = 1;
    Result(options);
    options.seed = 2;
    EXPECT_EQ(Train(options, data_, log_), 1);
}

TEST_F(Training, AFingerprintTellsSettingsAndDataApartHoweverLongTheTextsAre) {
    TrainOptions options = SmallTraining(folder_);
    options.without = options.favour = std::string(5000, 'x');
    const std::string print = Fingerprint(options, data_);
    options.seed = 2;
    EXPECT_NE(Fingerprint(options, data_), print);
    options.seed = 1;
    EXPECT_EQ(Fingerprint(options, data_), print);
    TrainData other = data_;
    other.crops[0].pixels[0] ^= 1;
    EXPECT_NE(Fingerprint(options, other), print);
}

TEST_F(Training, ADamagedCheckpointIsRefused) {
    TrainOptions options = SmallTraining(folder_);
    options.work = folder_ + "/work";
    options.stages = 1;
    Result(options);
    ASSERT_TRUE(WriteFile(options.work + "/stages.dat", {1, 2, 3}));
    EXPECT_EQ(Train(options, data_, log_), 1);
}

TEST_F(Training, WithoutNegativesThereIsNoCascade) {
    TrainOptions options = SmallTraining(folder_);
    TrainData flat;
    flat.crops = data_.crops;
    flat.pictures.pictures.push_back({{100, 100}, std::vector<uint8>(10000, 50)});
    EXPECT_EQ(Train(options, flat, log_), 1);
    EXPECT_FALSE(fs::exists(options.out));
}

TEST_F(Training, AnOutputThatCannotBeWrittenIsAFailure) {
    TrainOptions options = SmallTraining(folder_);
    options.stages = 1;
    options.out = folder_ + "/none/out.dat";
    EXPECT_EQ(Train(options, data_, log_), 1);
}

} // namespace
} // namespace orvane::train
