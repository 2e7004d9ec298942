// The evaluation from its files to its tables.
#include "tools/train/evaluate.h"

#include "detect/cascade_detector.h"
#include "detect/scan_observer.h"
#include "image/session_images.h"
#include "tests/support/detector_settings.h"
#include "tests/support/face_scene.h"
#include "tests/support/module_files.h"
#include "tools/support/picture_io.h"
#include "tools/support/whole_file.h"
#include "tools/train/table.h"

#include <gtest/gtest.h>

#include <sstream>

namespace orvane::train {
namespace {

/// A data folder of drawn faces. The cascade's window is the face, so squares are compared as they are.
class Evaluation : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(test::WriteClassifier(files_.Path(), test::FaceCascade().Bytes()));
        options_.data = files_.Path().string();
        options_.classifier = Path("Orvane.dat");
        options_.table = Path("table.csv");
        options_.misses = Path("misses.csv");
        options_.sheets = Path("sheets");
        options_.losses = true;
        options_.mapping = {1.0, 0.0};
        for (const char* folder : {"portraits", "nofaces"}) std::filesystem::create_directory(files_.Path() / folder);
    }
    void TearDown() override {
        g_sourceImage.Reset();
        g_workImage.Reset();
    }

    std::string Path(const std::string& name) const { return (files_.Path() / name).string(); }

    void AddPicture(const std::string& name, const test::Scene& scene) {
        tools::Picture picture{scene.width, scene.height, scene.Step(), tools::PixelBlock(scene.rows.size())};
        std::copy(scene.rows.begin(), scene.rows.end(), picture.pixels.begin());
        std::string error;
        ASSERT_TRUE(tools::WritePicture(Path(name), picture, false, &error)) << name << " " << error;
    }
    void AddPortrait(const std::string& file, const test::Scene& scene, const std::string& box,
                     const std::string& glasses) {
        AddPicture("portraits/" + file, scene);
        portraits_ += file + "," + box + "," + glasses + "\n";
    }

    /// A face of 48 pixels whose upper left corner is (50, 42), with annotations that find it and that don't.
    void AddPictures() {
        const test::Scene face = test::FaceScene(160, 120, 50, 30, 48);
        AddPortrait("right.png", face, "50,42,48,48", "yes");
        AddPortrait("nearly.png", face, "54,44,50,50", "no");
        AddPortrait("tiny.png", face, "70,60,5,5", "no");
        AddPortrait("elsewhere.png", face, "100,5,48,48", "no");
        AddPortrait("flat.png", test::BlankScene(160, 120), "50,42,48,48", "yes");
        AddPicture("nofaces/blank.png", test::BlankScene(100, 100));
        AddPicture("nofaces/face.png", face);
        std::string error;
        ASSERT_TRUE(tools::WriteWholeFile(Path("portraits.csv"), "file,x,y,w,h,glasses\n" + portraits_, true, &error));
        ASSERT_TRUE(
            tools::WriteWholeFile(Path("nofaces.csv"), "file,source\nblank.png,one\nface.png,two\n", true, &error));
    }

    /// What the evaluation prints, line by line.
    std::vector<std::string> Lines(int expected = 0) {
        std::FILE* out = std::tmpfile();
        EXPECT_NE(out, nullptr);
        EXPECT_EQ(Evaluate(options_, out), expected);
        std::string text(static_cast<std::size_t>(std::ftell(out)), ' ');
        std::rewind(out);
        EXPECT_EQ(std::fread(text.data(), 1, text.size(), out), text.size());
        std::fclose(out);
        std::vector<std::string> lines;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);) lines.push_back(line);
        return lines;
    }

    Table Csv(const std::string& name) const {
        Table table;
        EXPECT_TRUE(table.Read(Path(name))) << name;
        return table;
    }

    test::ModuleFiles files_;
    test::DetectorSettings settings_;
    EvaluateOptions options_;
    std::string portraits_;
};

int Number(const Table& table, std::size_t row, const char* column) {
    return static_cast<int>(table.Number(row, column));
}

/// The number of portraits in the last columns of a line of the loss table.
int InTheEnd(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    return words.size() < 2 ? -1 : std::stoi(words[words.size() - 2]);
}

TEST_F(Evaluation, LosesByStepsWhatIsNotRight) {
    ASSERT_NO_FATAL_FAILURE(AddPictures());
    int lost = 0;
    int total = -1;
    for (const std::string& line : Lines()) {
        if (line.rfind("lost at: ", 0) == 0) lost += InTheEnd(line);
        if (line.rfind("lost in all", 0) == 0) total = InTheEnd(line);
    }
    const Table table = Csv("table.csv");
    ASSERT_EQ(table.Text(0, "set") + table.Text(0, "group"), "portraitsall");
    EXPECT_EQ(Number(table, 0, "pictures"), 5);
    EXPECT_EQ(Number(table, 0, "reported"), 4);
    EXPECT_EQ(Number(table, 0, "right"), 2);
    EXPECT_EQ(lost, 3);
    EXPECT_EQ(total, 3);
}

TEST_F(Evaluation, ListsWhereEachFaceIsLost) {
    ASSERT_NO_FATAL_FAILURE(AddPictures());
    Lines();
    const Table misses = Csv("misses.csv");
    std::vector<std::string> found;
    for (std::size_t i = 0; i < misses.Rows(); ++i) {
        found.push_back(misses.Text(i, "what") + " " + misses.Text(i, "file") + " " + misses.Text(i, "lost_at"));
    }
    ASSERT_EQ(found.size(), 4u);
    EXPECT_EQ(found[0], "misplaced tiny.png scales");
    EXPECT_EQ(found[1].substr(0, 25), "misplaced elsewhere.png s") << found[1] << ": no stage passes a bare ground";
    EXPECT_EQ(found[2], "missed flat.png pruning");
    EXPECT_EQ(found[3], "false face.png ");
}

TEST_F(Evaluation, CountsByAnyColumn) {
    ASSERT_NO_FATAL_FAILURE(AddPictures());
    Lines();
    const Table table = Csv("table.csv");
    std::vector<std::string> rows;
    for (std::size_t i = 0; i < table.Rows(); ++i) {
        if (table.Text(i, "group").rfind("face", 0) == 0) continue;
        rows.push_back(table.Text(i, "set") + " " + table.Text(i, "group") + " " + table.Text(i, "pictures") + " " +
                       table.Text(i, "reported") + " " + table.Text(i, "right"));
    }
    EXPECT_EQ(rows, (std::vector<std::string>{"portraits all 5 4 2", "portraits glasses: no 3 3 1",
                                              "portraits glasses: yes 2 1 1", "nofaces all 2 1 0",
                                              "nofaces source: one 1 0 0", "nofaces source: two 1 1 0"}));
}

TEST_F(Evaluation, PrintsIntervals) {
    ASSERT_NO_FATAL_FAILURE(AddPictures());
    std::vector<std::string> all;
    for (const std::string& line : Lines()) {
        if (line.rfind("all ", 0) == 0) all.push_back(line);
    }
    ASSERT_EQ(all.size(), 2u);
    EXPECT_NE(all[0].find(" 11.8-76.9 "), std::string::npos) << all[0] << ": 2 of 5";
    EXPECT_NE(all[1].find(" 9.5-90.5"), std::string::npos) << all[1] << ": 1 of 2";
    const Table table = Csv("table.csv");
    EXPECT_NEAR(table.Number(0, "low"), 11.76, 0.01);
    EXPECT_NEAR(table.Number(0, "high"), 76.93, 0.01);
}

TEST_F(Evaluation, FailsWhenALargeGroupFallsBehind) {
    const test::Scene face = test::FaceScene(160, 120, 50, 30, 48);
    for (int i = 0; i < 20; ++i) AddPortrait(std::to_string(i) + ".png", face, "50,42,48,48", "no");
    for (int i = 20; i < 40; ++i) {
        AddPortrait(std::to_string(i) + ".png", i == 20 ? test::BlankScene(160, 120) : face, "50,42,48,48", "yes");
    }
    ASSERT_NO_FATAL_FAILURE(AddPictures());
    options_.losses = false;
    options_.mostBehind = 20.0;
    EXPECT_NE(Lines().back().rfind("behind", 0), 0u);
    options_.mostBehind = 0.5;
    const std::vector<std::string> lines = Lines(1);
    EXPECT_EQ(lines.back().rfind("behind by more than 0.5 points: glasses: yes (", 0), 0u) << lines.back();
    options_.mostBehind = -1.0;
    Lines(0);
}

TEST_F(Evaluation, TellsWhatAWindowCosts) {
    ASSERT_NO_FATAL_FAILURE(AddPictures());
    double byStages = 0.0;
    double inOneGo = 0.0;
    EXPECT_EQ(std::sscanf(Lines().back().c_str(),
                          "rectangles for a window on an edge: %lf stage by stage, %lf in one go", &byStages, &inOneGo),
              2);
    EXPECT_GT(inOneGo, 2.0);
    EXPECT_GE(byStages, inOneGo);
    EXPECT_EQ(g_scanObserver, nullptr);
}

TEST_F(Evaluation, TellsWhenAClassifierIsScannedStepByStep) {
    ASSERT_NO_FATAL_FAILURE(AddPictures());
    const std::string remark = "step by step takes longer";
    EXPECT_EQ(Lines()[0].find(remark), std::string::npos);
    test::CascadeFile tooFine = test::FaceCascade();
    tooFine.classifierVal1[0] += 1e-20F;
    ASSERT_TRUE(test::WriteClassifier(files_.Path(), tooFine.Bytes()));
    EXPECT_NE(Lines()[0].find(remark), std::string::npos) << Lines()[0];
}

TEST_F(Evaluation, ShowsMissesAndFalseFaces) {
    ASSERT_NO_FATAL_FAILURE(AddPictures());
    Lines();
    for (const char* sheet : {"sheets/misses-1.png", "sheets/false-1.png"}) {
        tools::Picture picture;
        std::string error;
        EXPECT_TRUE(tools::ReadPicture(Path(sheet), &picture, &error)) << sheet << " " << error;
    }
    EXPECT_FALSE(std::filesystem::exists(Path("sheets/misses-2.png")));
}

TEST_F(Evaluation, IsTheSameWithoutLosses) {
    ASSERT_NO_FATAL_FAILURE(AddPictures());
    Lines();
    std::string with;
    std::string without;
    std::string error;
    ASSERT_TRUE(tools::ReadWholeFile(options_.table, &with, &error)) << error;
    options_.losses = false;
    for (const std::string& line : Lines()) EXPECT_EQ(line.find("lost"), std::string::npos) << line;
    ASSERT_TRUE(tools::ReadWholeFile(options_.table, &without, &error)) << error;
    EXPECT_EQ(with, without);
    EXPECT_EQ(g_scanObserver, nullptr);
}

TEST_F(Evaluation, SaysWhatIsMissing) {
    EXPECT_EQ(Lines(1), (std::vector<std::string>{"cannot read portraits.csv"}));
    std::string error;
    ASSERT_TRUE(tools::WriteWholeFile(Path("portraits.csv"), "file,x,y,w,h\na.png,1,1,0,0\n", true, &error)) << error;
    EXPECT_EQ(Lines(1), (std::vector<std::string>{"a.png: no face box"}));
    options_.classifier = Path("none.dat");
    EXPECT_EQ(Lines(1), (std::vector<std::string>{"cannot read the classifier " + options_.classifier}));
    options_.classifier = Path("Orvane.dat");
    options_.table = Path("none/table.csv");
    EXPECT_EQ(Lines(1), (std::vector<std::string>{"cannot write " + options_.table}));
}

} // namespace
} // namespace orvane::train
