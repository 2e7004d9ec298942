// Tables and crops.
#include "tests/train/samples.h"
#include "tools/support/picture_io.h"
#include "tools/train/harvest.h"
#include "tools/train/table.h"
#include "tools/train/threshold.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace orvane::train {
namespace {

class DataFolder : public testing::Test {
protected:
    void SetUp() override {
        folder_ = testing::TempDir() + "orvane_data_test";
        std::filesystem::create_directories(folder_);
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }
    void Write(const std::string& name, const std::string& text) {
        ASSERT_TRUE(WriteFile(folder_ + "/" + name, {text.begin(), text.end()}));
    }
    std::string folder_;
};

TEST_F(DataFolder, ATableGivesCellsByColumnName) {
    Write("t.csv", "name,size\r\na,1.5\nb,\n\nc\n");
    Table table;
    ASSERT_TRUE(table.Read(folder_ + "/t.csv"));
    ASSERT_EQ(table.Rows(), 3u);
    EXPECT_EQ(table.Text(0, "name"), "a");
    EXPECT_EQ(table.Number(0, "size"), 1.5);
    EXPECT_EQ(table.Number(1, "size"), 0.0);
    EXPECT_EQ(table.Text(2, "size"), "");
    EXPECT_EQ(table.Text(0, "colour"), "");
    EXPECT_EQ(table.Text(9, "name"), "");
    EXPECT_EQ(table.Names(), (std::vector<std::string>{"name", "size"}));
    EXPECT_FALSE(table.Read(folder_ + "/none.csv"));
}

TEST_F(DataFolder, CropsAreChosenBySplitClassAndFlags) {
    Write("positives.csv", "index,source,class,split,flags,person\n"
                           "0,one,A,train,16,1\n1,one,A,dev,16,2\n2,two,B,train,16,3\n"
                           "3,two,C,train,16,4\n4,two,A,train,20,5\n5,two,A,train,8,6\n");
    Write("positives.bin", std::string(6 * 48 * 48, 'x'));
    EXPECT_EQ(ReadCrops(folder_, {"ABC", 1.0, {}, {}}).crops.size(), 3u);
    EXPECT_EQ(ReadCrops(folder_, {"A,B", 1.0, {}, {}}).crops.size(), 2u);
    EXPECT_EQ(ReadCrops(folder_, {"A", 1.0, {}, {}}).crops.size(), 1u);
    EXPECT_NE(ReadCrops(folder_, {"D", 1.0, {}, {}}).error, "");
    EXPECT_NE(ReadCrops(folder_ + "/none", {"A", 1.0, {}, {}}).error, "");
}

TEST_F(DataFolder, AShortPixelFileIsRefused) {
    Write("positives.csv", "index,source,class,split,flags,person\n0,one,A,train,16,1\n1,one,A,train,16,2\n");
    Write("positives.bin", std::string(2 * 48 * 48 - 1, 'x'));
    EXPECT_EQ(ReadCrops(folder_, {"A", 1.0, {}, {}}).error, "positives.bin is shorter than its table");
}

TEST_F(DataFolder, CropsLieWithTheirLowestRowFirst) {
    Write("positives.csv", "index,source,class,split,flags,person\n0,one,A,train,16,1\n");
    std::string pixels(48 * 48, 'a');
    pixels.replace(47 * 48, 48, 48, 'z');
    Write("positives.bin", pixels);
    const CropSet set = ReadCrops(folder_, {"A", 1.0, {}, {}});
    ASSERT_EQ(set.crops.size(), 1u);
    EXPECT_EQ(set.crops[0].pixels[0], 'z');
    EXPECT_EQ(set.crops[0].pixels[48], 'a');
}

TEST_F(DataFolder, CropsOfASourceBearItsNumber) {
    Write("positives.csv", "index,source,class,split,flags,person\n"
                           "0,two,A,train,16,1\n1,one,A,train,16,2\n2,two,A,train,16,3\n");
    Write("positives.bin", std::string(3 * 48 * 48, 'x'));
    const CropSet set = ReadCrops(folder_, {"A", 1.0, {}, {}});
    ASSERT_EQ(set.crops.size(), 3u);
    EXPECT_EQ(set.crops[0].source, set.crops[2].source);
    EXPECT_NE(set.crops[0].source, set.crops[1].source);
}

TEST_F(DataFolder, ASourceMayBeFavouredAndCutShort) {
    std::string table = "index,source,class,split,flags,person\n";
    for (int i = 0; i < 40; ++i) {
        table += std::to_string(i) + (i % 4 == 0 ? ",few,A,train,16," : ",many,A,train,16,") + std::to_string(i) + "\n";
    }
    Write("positives.csv", table);
    std::string pixels;
    for (int i = 0; i < 40; ++i) pixels += std::string(48 * 48, static_cast<char>(i));
    Write("positives.bin", pixels);
    const auto indicesOf = [](const CropSet& set) {
        std::vector<int> indices;
        for (const FaceCrop& crop : set.crops) indices.push_back(crop.pixels[0]);
        return indices;
    };
    const CropSet all = ReadCrops(folder_, {"A", 0.0, {{"few", 3.0}}, {}});
    ASSERT_EQ(all.crops.size(), 40u);
    EXPECT_DOUBLE_EQ(all.crops[0].draw, 3.0 / 10);
    EXPECT_DOUBLE_EQ(all.crops[1].draw, 1.0 / 30);

    const std::vector<int> five = indicesOf(ReadCrops(folder_, {"A", 0.0, {}, {{"few", 5.0}, {"none", 1.0}}}));
    const std::vector<int> six = indicesOf(ReadCrops(folder_, {"A", 0.0, {}, {{"few", 6.0}}}));
    EXPECT_EQ(five.size(), 35u);
    EXPECT_EQ(six.size(), 36u);
    EXPECT_TRUE(std::is_sorted(five.begin(), five.end()));
    EXPECT_TRUE(std::includes(six.begin(), six.end(), five.begin(), five.end()));
    EXPECT_EQ(std::count_if(five.begin(), five.end(), [](int i) { return i % 4 == 0; }), 5);
}

TEST(SourceNumbers, AreReadByNameAndNonsenseIsRefused) {
    SourceNumbers numbers;
    EXPECT_TRUE(ReadSourceNumbers("", numbers));
    EXPECT_TRUE(numbers.empty());
    EXPECT_TRUE(ReadSourceNumbers("one=2,two=0.5", numbers));
    EXPECT_EQ(numbers, (SourceNumbers{{"one", 2.0}, {"two", 0.5}}));
    for (const char* text :
         {"one", "=2", "one=", "one=x", "one=2x", "one=0", "one=-1", "one=nan", "one=1,one=2", ",", "one=1e10"}) {
        EXPECT_FALSE(ReadSourceNumbers(text, numbers)) << text;
    }
}

TEST_F(DataFolder, PicturesAreChosenBySplitClassAndSource) {
    std::filesystem::create_directory(folder_ + "/negatives");
    tools::Picture picture{2, 2, 6, tools::PixelBlock(12)};
    std::fill(picture.pixels.begin(), picture.pixels.end(), uint8{90});
    std::string table = "file,split,source,class\n";
    for (const char* line : {"a,train,one,A", "b,train,two,A", "c,dev,one,A", "d,train,three,C", "e,train,on,A"}) {
        const std::string text = line;
        std::string error;
        const std::string file = text.substr(0, 1) + ".png";
        ASSERT_TRUE(tools::WritePicture(folder_ + "/negatives/" + file, picture, true, &error)) << error;
        table += file + text.substr(1) + "\n";
    }
    Write("negatives.csv", table);
    EXPECT_EQ(ReadPictures(folder_, "A,C", "", 1).pictures.size(), 4u);
    EXPECT_EQ(ReadPictures(folder_, "A", "", 1).pictures.size(), 3u);
    EXPECT_EQ(ReadPictures(folder_, "A", "one", 1).pictures.size(), 2u);
    EXPECT_EQ(ReadPictures(folder_, "A", "two,one", 1).pictures.size(), 1u);
    EXPECT_EQ(ReadPictures(folder_, "A", "two,one,on", 1).error, "no face-free picture of these classes");
}

TEST(LeastSumForAll, SparesTheSourceThatWouldLoseMost) {
    std::vector<double> sums;
    std::vector<std::size_t> sources;
    for (int i = 0; i < 1000; ++i) {
        sums.push_back(100.0 + i);
        sources.push_back(0);
    }
    for (int i = 0; i < 100; ++i) {
        sums.push_back(1.0 + i);
        sources.push_back(1);
    }
    EXPECT_EQ(LeastSumForAll(sums, sources, 0.95, 1.0), LeastSumFor(sums, 0.95));
    EXPECT_EQ(LeastSumForAll(sums, sources, 0.95, 0.05), 11.0) << "of the second source 90 % stay";
    sums.pop_back();
    sources.pop_back();
    EXPECT_EQ(LeastSumForAll(sums, sources, 0.95, 0.05), LeastSumFor(sums, 0.95)) << "99 are too few to tell";
}

TEST(CropLottery, DrawsOnlyItsOwnSideAndByWeight) {
    std::vector<FaceCrop> crops(3);
    crops[0].draw = 3.0;
    crops[2].held = true;
    const CropLottery lottery(crops, false);
    Random random({1});
    int first = 0;
    for (int i = 0; i < 4000; ++i) {
        const FaceCrop& crop = lottery.Draw(random);
        ASSERT_NE(&crop, &crops[2]);
        if (&crop == &crops[0]) ++first;
    }
    EXPECT_NEAR(first, 3000, 120);
    EXPECT_TRUE(CropLottery({crops.begin(), crops.begin() + 2}, true).Empty());
}

TEST(CutWindow, IsTheSameForTheSameStreamAndStraysForAnother) {
    const FaceCrop crop = MadeUpCrops(1)[0];
    const auto cut = [&](uint64 stream) {
        Random random({stream});
        return CutWindow(crop, Framing{}, {24, 24}, random);
    };
    EXPECT_EQ(cut(1), cut(1));
    EXPECT_FALSE(cut(1) == cut(2));
}

/// By how many degrees the edge between the dark left and the bright right half of a window leans.
double LeanOf(const Window& window) {
    const auto dark = [&](int32 y) {
        return std::count_if(&window[PixelIndex(0, y, 24)], &window[PixelIndex(0, y, 24)] + 24,
                             [](uint8 p) { return p < 70; });
    };
    const auto run = static_cast<double>(dark(23) + dark(22) + dark(21) - dark(2) - dark(1) - dark(0)) / 3.0;
    return std::atan(run / 21.0) * 180.0 / 3.14159265358979323846;
}

TEST(CutWindow, RollIsTheDeviationOfTheFacesTurns) {
    FaceCrop halves;
    for (int32 i = 0; i < kCropSide * kCropSide; ++i) halves.pixels.push_back(i % kCropSide < kCropSide / 2 ? 0 : 255);
    for (const double roll : {0.0, 4.0, 8.0}) {
        Framing framing;
        framing.roll = roll;
        framing.yaw = framing.relit = framing.covered = 0.0;
        double squares = 0.0;
        for (uint64 stream = 0; stream < 400; ++stream) {
            Random random({stream});
            const double lean = LeanOf(CutWindow(halves, framing, {24, 24}, random));
            squares += lean * lean;
        }
        EXPECT_NEAR(std::sqrt(squares / 400.0), roll, 0.6 + 0.08 * roll);
    }
}

} // namespace
} // namespace orvane::train
