// The built program measures, lists groups of hits, takes faces that were marked by hand, and draws contact sheets.
#include "tests/tools/placed_tool.h"
#include "tools/support/csv.h"

#include <gtest/gtest.h>
#include <map>

namespace orvane::tools {
namespace {

using Arguments = std::vector<std::string>;
using Lines = std::vector<std::string>;

class CheckedPhotos : public testing::Test, protected PlacedTool {
protected:
    CheckedPhotos() : PlacedTool(ORVANE_TOOL) {
        Make("in");
        Make("out");
        Work().Put(
            "own.toml",
            "[badge]\ntitle = \"Badge\"\nauthority = \"test\"\nsource = \"test\"\nread = 2026-11-22\nwidth = 36\n"
            "height = 30\nhead = { from = 1, to = 20 }\nbackground = \"white\"\n");
    }

    /// What a run may not do.
    void ExpectRefused(const Arguments& arguments, const std::string& lines) const {
        const ProcessResult result = RunTool(arguments);
        EXPECT_EQ(result.exitCode, 1) << testing::PrintToString(arguments);
        EXPECT_EQ(result.err, lines);
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(Names("out").empty());
    }

    /// The records of a CSV report by the names of its columns.
    std::vector<std::map<std::string, std::string>> Rows(const std::string& report) const {
        const std::string content = Work().Get(report);
        std::vector<std::map<std::string, std::string>> rows;
        std::size_t at = 0;
        Lines names, fields;
        ReadCsvRecord(content, &at, &names);
        while (ReadCsvRecord(content, &at, &fields)) {
            EXPECT_EQ(fields.size(), names.size());
            auto& row = rows.emplace_back();
            for (std::size_t i = 0; i < names.size(); ++i) row[names[i]] = fields.at(i);
        }
        return rows;
    }
};

TEST_F(CheckedPhotos, AreMeasuredWithTheirBandsAndVerdicts) {
    PutPhoto("in/a.png");
    const ProcessResult result = RunTool({"check", "in/a.png", "--json"});
    EXPECT_EQ(result.exitCode, 11) << "a face of so few pixels: " << result.err;
    const JsonValue line = Objects(result.out).at(0);
    EXPECT_EQ(line["verdict"].text, "out of band");
    EXPECT_EQ(line["measures"].members.size(), 16U);
    EXPECT_EQ(line["measures"]["faces"]["value"].text, "1.000");
    EXPECT_EQ(line["measures"]["faces"]["verdict"].text, "ok");
    EXPECT_EQ(line["measures"]["eye_distance"]["verdict"].text, "low");
    EXPECT_EQ(line["measures"]["eye_distance"]["low"].text, "90.000");
    EXPECT_EQ(line["measures"]["eye_distance"]["unit"].text, "pixels");
    EXPECT_EQ(line["measures"]["head_height"]["verdict"].text, "not measured");
    EXPECT_EQ(line["measures"]["head_height"]["reason"].text, "no document was named");
    EXPECT_EQ(Names("in"), Lines{"a.png"}) << "nothing is written";

    const ProcessResult told = RunTool({"check", "in/a.png"});
    EXPECT_EQ(ProcessResult::Lines(told.out).size(), 17U);
    EXPECT_NE(told.out.find("\n  distance between the eyes   "), std::string::npos) << told.out;
    EXPECT_NE(told.out.find("low   at least 90"), std::string::npos) << told.out;
    const ProcessResult quiet = RunTool({"check", "in/a.png", "--quiet"});
    EXPECT_NE(quiet.out.find("distance between the eyes"), std::string::npos);
    EXPECT_EQ(quiet.out.find("faces found"), std::string::npos) << "what is in its band";
}

TEST_F(CheckedPhotos, ThatAreInBandEndWith0AndThoseWithoutAFaceWith10) {
    // A large photo, textured so that it is sharp.
    Picture photo = PhotoWithSquare(2000, 2000, 3000, 0);
    for (int32 y = 700; y < 1100; ++y) {
        for (int32 x = 700; x < 1100; ++x)
            SetPixel(photo, x, y, (x / 8 + y / 8) % 2 != 0 ? Colour{230, 230, 230} : Colour{170, 170, 170});
    }
    Work().Put("in/big.png", Encoded(".png", photo));
    const ProcessResult big = RunTool({"check", "in/big.png", "--face", "750,700,300,300"});
    EXPECT_EQ(big.exitCode, 0) << big.out << big.err;
    EXPECT_NE(big.out.find("not measured: the face was marked by hand"), std::string::npos);

    PutFaceless("in/none.png");
    const ProcessResult none = RunTool({"check", "in/none.png"});
    EXPECT_EQ(none.exitCode, 10);
    EXPECT_EQ(none.err, "orvane: in/none.png: no face was found\n");
    PutPhoto("in/small.png");
    EXPECT_EQ(RunTool({"check", "in/small.png", "in/none.png"}).exitCode, 10) << "no face wins over a value";
    EXPECT_EQ(RunTool({"check", "in/small.png", "in/none.png", "absent.png"}).exitCode, 1);
}

TEST_F(CheckedPhotos, AreJudgedByADocument) {
    PutPhoto("in/a.png"); // 240x200 has the proportions of 36x30
    const ProcessResult result = RunTool({"check", "in", "--document", "own.toml", "--json", "--jobs", "2"});
    const JsonValue measures = Objects(result.out).at(0)["measures"];
    EXPECT_EQ(measures["head_height"]["high"].text, "20.000") << result.err;
    EXPECT_EQ(measures["head_height"]["verdict"].text, "high");
    EXPECT_EQ(measures["background_level"]["low"].text, "200.000");
    EXPECT_EQ(measures["background_level"]["verdict"].text, "low");
    const ProcessResult unknown = RunTool({"check", "in", "--document", "absent.toml"});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_EQ(ProcessResult::Lines(unknown.err).size(), 1U) << unknown.err;
}

TEST_F(CheckedPhotos, StandInAReportWithTheirValues) {
    PutPhoto("in/a.png");
    PutFaceless("in/b.png");
    Work().Put("in/c.png", "");
    ASSERT_EQ(RunTool({"check", "in", "--report", "r.csv", "--jobs", "2"}).exitCode, 1);
    const auto rows = Rows("r.csv");
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0].at("status"), "face");
    EXPECT_EQ(rows[0].at("faces"), "1.000");
    EXPECT_EQ(rows[0].at("eye_distance_verdict"), "low");
    EXPECT_EQ(rows[0].at("head_height"), "");
    EXPECT_EQ(rows[0].at("head_height_verdict"), "not measured");
    EXPECT_EQ(rows[1].at("sharpness"), "");
    EXPECT_EQ(rows[2].at("error"), "is empty");
    ASSERT_EQ(RunTool({"check", "in", "--report", "r.jsonl"}).exitCode, 1);
    EXPECT_EQ(Objects(Work().Get("r.jsonl")).at(0)["measures"]["eye_distance"]["verdict"].text, "low");
    ASSERT_EQ(RunTool({"report", "join", "r.csv", "-o", "all.csv"}).exitCode, 0) << "they can be joined";
    ASSERT_EQ(RunTool({"detect", "in", "--report", "d.csv"}).exitCode, 1);
    EXPECT_EQ(Rows("d.csv")[0].count("sharpness"), 0U) << "other reports have them not";
}

TEST_F(CheckedPhotos, DetectListsAllGroupsOfHits) {
    PutPhoto("in/a.png");
    PutFaceless("in/none.png");
    const Lines lines = ProcessResult::Lines(RunTool({"detect", "in/a.png", "--all"}).out);
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[0].rfind("in/a.png: face at ", 0), 0U);
    EXPECT_NE(lines.back().find(" hits at "), std::string::npos);
    EXPECT_NE(lines.back().find(", face 1, taken"), std::string::npos) << lines.back();
    const JsonValue line = Objects(RunTool({"detect", "in/a.png", "--all", "--json"}).out).at(0);
    ASSERT_GE(line["groups"].elements.size(), 1U);
    EXPECT_EQ(line["groups"].elements.back()["taken"].text, "true");
    EXPECT_EQ(line["groups"].elements.back()["x"].text, line["face"]["x"].text);
    // Workers tell the same.
    EXPECT_EQ(
        Objects(RunTool({"detect", "in/a.png", "--all", "--json", "--jobs", "1"}).out).at(0)["groups"].elements.size(),
        line["groups"].elements.size());
    EXPECT_EQ(RunTool({"detect", "in/none.png", "--all"}).out, "");
    EXPECT_EQ(RunTool({"detect", "in/a.png", "--json"}).out.find("groups"), std::string::npos);
}

TEST_F(CheckedPhotos, AReportIsReplacedWhereThatIsAskedFor) {
    PutPhoto("in/a.png");
    for (const char* command : {"detect", "check"}) {
        Work().Put("r.csv", "mine");
        ExpectRefused({command, "in", "--report", "r.csv"},
                      "orvane: the report 'r.csv' exists already; --force replaces it\n");
        EXPECT_EQ(Work().Get("r.csv"), "mine");
        RunTool({command, "in", "--report", "r.csv", "--force"});
        EXPECT_EQ(Rows("r.csv").size(), 1U);
    }
}

TEST_F(CheckedPhotos, AFaceMarkedByHandTakesTheDetectorsPlace) {
    PutFaceless("in/none.png");
    const ProcessResult result =
        RunTool({"portrait", "in/none.png", "-o", "out/a.png", "--size", "80x100", "--face", "50,60,70,80", "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const JsonValue face = Objects(result.out).at(0)["face"];
    EXPECT_EQ(face["x"].text + "," + face["y"].text + "," + face["width"].text + "," + face["height"].text,
              "50,60,70,80");
    EXPECT_TRUE(Has("out/a.png"));
}

TEST_F(CheckedPhotos, AFaceMarkedWhereTheDetectorFindsItGivesTheSamePortrait) {
    PutPhoto("in/a.png");
    const Arguments made{"portrait", "in/a.png", "-o", "found.png", "--fill", "white", "--json"};
    const ProcessResult found = RunTool(made);
    ASSERT_EQ(found.exitCode, 0) << found.err;
    const JsonValue face = Objects(found.out).at(0)["face"];
    std::string corners;
    for (const char* key : {"x", "y", "width", "height"}) corners += (corners.empty() ? "" : ",") + face[key].text;
    const ProcessResult marked =
        RunTool({"portrait", "in/a.png", "-o", "marked.png", "--fill", "white", "--face", corners});
    ASSERT_EQ(marked.exitCode, 0) << marked.err;
    EXPECT_EQ(Work().Get("marked.png"), Work().Get("found.png"));
}

TEST_F(CheckedPhotos, AFaceOutsideThePhotoIsRefused) {
    PutFaceless("in/none.png");
    for (const char* face : {"150,60,51,20", "60,150,20,51", "-1,0,20,20", "0,-1,20,20"}) {
        const ProcessResult result = RunTool({"portrait", "in/none.png", "-o", "out/a.png", "--face", face});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_NE(result.err.find("does not lie in the photo, which has 200x200 pixels\n"), std::string::npos)
            << result.err;
        EXPECT_EQ(ProcessResult::Lines(result.err).size(), 1U);
        EXPECT_TRUE(Names("out").empty());
        EXPECT_EQ(RunTool({"check", "in/none.png", "--face", face}).exitCode, 1);
    }
}

TEST_F(CheckedPhotos, AFaceIsForOnePhoto) {
    PutPhoto("in/a.png");
    PutPhoto("in/b.png", 3);
    ExpectRefused({"portrait", "in", "-o", "out", "--face", "1,1,9,9"},
                  "orvane: --face is for one photo; --corrections takes a face for each of many\n");
    ExpectRefused({"check", "in/a.png", "--face", "1,1,9,9", "--corrections", "c.csv"},
                  "orvane: --face is for one photo and --corrections for many; give one of them\n");
    ExpectRefused({"portrait", "in", "-o", "out", "--corrections", "c.csv"},
                  "orvane: the corrections 'c.csv' cannot open: No such file or directory\n");
}

TEST_F(CheckedPhotos, CorrectionsMarkFacesOfABatch) {
    PutPhoto("in/a.png");
    PutFaceless("in/b.png");
    Work().Put("c.csv", "photograph,x,y,width,height\nin/b.png,50,60,70,80\n");
    const ProcessResult result =
        RunTool({"portrait", "in", "-o", "out", "--size", "80x100", "--corrections", "c.csv", "--jobs", "2"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    ASSERT_EQ(
        RunTool({"portrait", "in/b.png", "-o", "single.png", "--size", "80x100", "--face", "50,60,70,80"}).exitCode, 0);
    EXPECT_EQ(Work().Get("out/b.png"), Work().Get("single.png"));
    ASSERT_EQ(RunTool({"portrait", "in/a.png", "-o", "plain.png", "--size", "80x100"}).exitCode, 0);
    EXPECT_EQ(Work().Get("out/a.png"), Work().Get("plain.png")) << "the others are left to the detector";
}

TEST_F(CheckedPhotos, BadCorrectionsAreToldRowByRowAndNothingIsDone) {
    PutPhoto("in/a.png");
    Work().Put("c.csv", "photograph,x,y,width,height\nin/a.png,1,2,3\nin/a.png,5,5,20,20\nin/a.png,5,5,20,20\n");
    ExpectRefused({"portrait", "in", "-o", "out", "--corrections", "c.csv"},
                  "orvane: the corrections 'c.csv' row 2 has 4 fields and not 5\n"
                  "orvane: the corrections 'c.csv' row 4 has the photograph of row 3, 'in/a.png'\n"
                  "orvane: the corrections 'c.csv' can't be used; nothing was done\n");
}

TEST_F(CheckedPhotos, ACorrectionOfNoPhotoIsToldAndTheOthersAreDone) {
    PutPhoto("in/a.png");
    Work().Put("c.csv", "photograph,x,y,width,height\nin/absent.png,1,2,30,40\nin/a.png,5,5,20,200\n");
    const ProcessResult result = RunTool({"check", "in", "--corrections", "c.csv"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "orvane: the corrections 'c.csv' row 2: 'in/absent.png' is not among the photos\n"
              "orvane: in/a.png: the face 5,5, 20x200 does not lie in the photo, which has 240x200 pixels\n");
    Work().Put("c.csv", "photograph,x,y,width,height\nin/absent.png,1,2,30,40\n");
    const ProcessResult made = RunTool({"portrait", "in", "-o", "out", "--corrections", "c.csv"});
    EXPECT_EQ(made.exitCode, 1);
    EXPECT_TRUE(Has("out/a.png"));
}

TEST_F(CheckedPhotos, ACorrectionOfAnotherShardIsNoStranger) {
    PutPhoto("in/a.png");
    PutPhoto("in/b.png", 3);
    Work().Put("c.csv", "photograph,x,y,width,height\nin/a.png,1,2,30,40\nin/b.png,1,2,30,40\n");
    for (const char* shard : {"1/2", "2/2"}) {
        EXPECT_EQ(RunTool({"detect", "in", "--shard", shard}).exitCode, 0);
        EXPECT_EQ(
            RunTool({"portrait", "in", "-o", "out", "--size", "80x100", "--corrections", "c.csv", "--shard", shard})
                .err,
            "");
    }
}

TEST_F(CheckedPhotos, AResumedRunMakesAnewWhatWasCorrected) {
    PutPhoto("in/a.png");
    PutPhoto("in/b.png", 3);
    const Arguments plain{"portrait", "in", "-o", "out", "--size", "80x100", "--resume", "--report", "r.csv"};
    Arguments corrected = plain;
    corrected.insert(corrected.end(), {"--corrections", "c.csv"});
    const auto outcomes = [this] {
        const auto rows = Rows("r.csv");
        return rows.at(0).at("status") + " " + rows.at(1).at("status");
    };
    ASSERT_EQ(RunTool(plain).exitCode, 0);
    const std::string before = Work().Get("out/b.png");
    Work().Put("c.csv", "photograph,x,y,width,height\nin/b.png,10,20,70,80\n");
    ASSERT_EQ(RunTool(corrected).exitCode, 0);
    EXPECT_EQ(outcomes(), "kept portrait");
    EXPECT_NE(Work().Get("out/b.png"), before);
    ASSERT_EQ(RunTool(corrected).exitCode, 0);
    EXPECT_EQ(outcomes(), "kept kept");
    Work().Put("c.csv", "photograph,x,y,width,height\nin/b.png,11,20,70,80\n");
    ASSERT_EQ(RunTool(corrected).exitCode, 0);
    EXPECT_EQ(outcomes(), "kept portrait") << "another rectangle";
    ASSERT_EQ(RunTool(plain).exitCode, 0);
    EXPECT_EQ(outcomes(), "kept portrait") << "the detector's again";
    EXPECT_EQ(Work().Get("out/b.png"), before);
}

TEST_F(CheckedPhotos, ASheetIsDrawnOfAllThatBecameOfThem) {
    PutPhoto("in/a.png");
    PutFaceless("in/b.png");
    const Arguments run{"portrait", "in", "-o", "out", "--size", "80x100", "--sheet", "s.png"};
    const ProcessResult result = RunTool(run);
#ifdef _WIN32
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "orvane: --sheet draws text, which this program does on Linux only\n");
#else
    EXPECT_EQ(result.exitCode, 10) << result.err;
    const std::string first = Work().Get("s.png");
    Picture sheet;
    std::string error;
    ASSERT_TRUE(ReadPicture(Work() / "s.png", &sheet, &error)) << error;
    // The photo without a face comes first, in a reddish tile; then the portrait.
    EXPECT_TRUE(IsNear(PixelAt(sheet, 50, 360), {255, 222, 217}, 2));
    EXPECT_TRUE(IsNear(PixelAt(sheet, 48 + 87, 180), {50, 50, 50}, 2)) << "the photo itself";
    EXPECT_TRUE(IsNear(PixelAt(sheet, 50 + 184, 360), {240, 240, 240}, 2));
    // Kept portraits stand on the sheet of a resumed run too, which replaces the one before.
    Arguments again = run;
    again.push_back("--resume");
    EXPECT_EQ(RunTool(again).exitCode, 10);
    ASSERT_TRUE(ReadPicture(Work() / "s.png", &sheet, &error)) << error;
    EXPECT_TRUE(IsNear(PixelAt(sheet, 50 + 184, 360), {240, 240, 240}, 2));
    EXPECT_NE(Work().Get("s.png"), first) << "the verdict is another";
#endif
}

#ifndef _WIN32
TEST_F(CheckedPhotos, ASheetThatCannotBeWrittenIsToldBeforeAnythingIsDone) {
    PutPhoto("in/a.png");
    Work().Put("s.png", "mine");
    ExpectRefused({"portrait", "in", "-o", "out", "--sheet", "s.png"},
                  "orvane: the sheet 's.png' exists already; --force replaces it\n");
    ExpectRefused({"portrait", "in", "-o", "out", "--sheet", "absent/s.png"},
                  "orvane: the sheet 'absent/s.png' cannot write: No such file or directory\n");
    ExpectRefused({"portrait", "in", "-o", "out", "--sheet", "in/a.png", "--force"},
                  "orvane: the sheet 'in/a.png' is one of the run's other files\n");
    ExpectRefused({"portrait", "in", "-o", "out", "--sheet", "out/a.png"},
                  "orvane: the sheet 'out/a.png' is one of the run's other files\n");
    EXPECT_EQ(Work().Get("s.png"), "mine");
}
#endif

TEST_F(CheckedPhotos, NonsenseIsRefused) {
    const std::string wants = "--face wants X,Y,WIDTH,HEIGHT in pixels of the photo, such as 183,77,80,80, not '";
    for (const char* face : {"", "1,2,3", "1,2,3,4,5", "1,2,0,4", "1,2,3,-4", "a,2,3,4", "1.5,2,3,4", "1,2,3,99999"}) {
        ExpectRefused({"check", "in", "--face", face}, "orvane: " + wants + face + "'\n");
    }
    ExpectRefused({"check", "in", "--corrections", ""}, "orvane: --corrections wants a file\n");
    ExpectRefused({"check", "in", "--document", ""},
                  "orvane: --document wants a name of 'orvane documents', or a table of one's own\n");
    ExpectRefused({"portrait", "in", "-o", "out", "--sheet", "s.tif"},
                  "orvane: --sheet wants a file named .jpg, .png or .pdf, not 's.tif'\n");
    ExpectRefused({"check", "in", "--sheet", "s.png"}, "orvane: 'check' knows no option '--sheet'\n");
    ExpectRefused({"portrait", "in", "-o", "out", "--all"}, "orvane: 'portrait' knows no option '--all'\n");
    ExpectRefused({"detect", "in", "--face", "1,2,3,4"}, "orvane: 'detect' knows no option '--face'\n");
    ExpectRefused({"watch", "in", "-o", "out", "--face", "1,2,3,4"}, "orvane: 'watch' knows no option '--face'\n");
    ExpectRefused({"check"}, "orvane: 'check' wants at least one photo\n");
}

} // namespace
} // namespace orvane::tools
