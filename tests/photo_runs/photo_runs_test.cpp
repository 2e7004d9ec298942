// The built program over many photos: folders, lists, workers, reports, shards, and runs that go on where another
// ended.
#include "tests/tools/placed_tool.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

namespace orvane::tools {
namespace {

using Arguments = std::vector<std::string>;
using Lines = std::vector<std::string>;

class PhotoRuns : public testing::Test, protected PlacedTool {
protected:
    PhotoRuns() : PlacedTool(ORVANE_TOOL) {
        Make("in");
        Make("out");
    }

    /// With small portraits, so that they take no time.
    ProcessResult Portraits(const Arguments& more) const {
        Arguments arguments{"portrait", "--size", "80x100"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunTool(arguments);
    }

    /// What became of each photo, by its path, as a report tells it.
    std::map<std::string, std::string> Outcomes(const std::string& report) const {
        std::map<std::string, std::string> outcomes;
        for (const JsonValue& row : Objects(Work().Get(report))) outcomes[row["input"].text] = row["status"].text;
        return outcomes;
    }
};

TEST_F(PhotoRuns, ResultsDoNotDependOnTheNumberOfWorkers) {
    for (int i = 0; i < 6; ++i) PutPhoto("in/p" + std::to_string(i) + ".png", 3 * i);
    Work().Put("in/p2b.jpg", "no picture");
    PutFaceless("in/p4b.png");
    Lines told;
    std::map<std::string, std::string> portraits;
    for (const std::string jobs : {"1", "3"}) {
        const ProcessResult result = Portraits({"in", "-o", "out", "--force", "--jobs", jobs, "--json"});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(ProcessResult::Lines(result.err), (Lines{"orvane: in/p2b.jpg: is not a picture of a known format",
                                                           "orvane: in/p4b.png: no face was found"}));
        Lines lines;
        for (const std::string& line : ProcessResult::Lines(result.out)) {
            lines.push_back(line.substr(0, line.find("\"milliseconds\"")));
        }
        ASSERT_EQ(lines.size(), 8U);
        if (told.empty()) told = lines;
        EXPECT_EQ(lines, told);
        for (const std::string& name : Names("out")) {
            if (name[0] == '.') continue;
            const std::string bytes = Work().Get("out/" + name);
            EXPECT_EQ(portraits.emplace(name, bytes).first->second, bytes) << name;
        }
    }
    EXPECT_EQ(portraits.size(), 6U);
}

TEST_F(PhotoRuns, WorkersMakeThePortraitThatASinglePhotoGets) {
    PutPhoto("in/a.png");
    ASSERT_EQ(Portraits({"in/a.png", "-o", "single.png"}).exitCode, 0);
    ASSERT_EQ(Portraits({"in/a.png", "-o", "worked.png", "--jobs", "1", "--timeout", "20", "--memory", "1G"}).exitCode,
              0);
    EXPECT_EQ(Work().Get("worked.png"), Work().Get("single.png"));
}

TEST_F(PhotoRuns, FoldersInFoldersKeepTheirPlaceByThePatternOfTheName) {
    Make("in/x/y");
    PutPhoto("in/a.png");
    PutPhoto("in/x/a.png", 5);
    PutPhoto("in/x/y/a.png", 10);
    const ProcessResult result = Portraits({"-r", "in", "-o", "out", "--output-name", "{folder}/{number}-{stem}.jpg"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    for (const char* name : {"out/000001-a.jpg", "out/x/000002-a.jpg", "out/x/y/000003-a.jpg"})
        EXPECT_TRUE(Has(name)) << name;
}

TEST_F(PhotoRuns, TwoPhotosNeverWriteOneFileAndItIsToldBeforeWorkBegins) {
    Make("in/x");
    PutPhoto("in/b.png");
    PutPhoto("in/x/b.png", 5);
    Work().Put("in/c.jpg", "no picture");
    const ProcessResult result = Portraits({"-r", "in", "-o", "out", "--json"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(ProcessResult::Lines(result.err),
              (Lines{"orvane: in/x/b.png: an earlier photo has the output 'out/b.png'",
                     "orvane: in/c.jpg: is not a picture of a known format"}));
    EXPECT_EQ(Objects(result.out).size(), 3U) << "every photo has its line";
}

TEST_F(PhotoRuns, AListNamesPhotosAndFolders) {
    PutPhoto("in/a b.png");
    PutPhoto("single.png", 7);
    Work().Put("list.txt", "single.png\r\nin\n");
    const ProcessResult result = Portraits({"--files-from", "list.txt", "-o", "out"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(Has("out/single.png") && Has("out/a b.png"));
    EXPECT_EQ(Portraits({"--files-from", "absent.txt", "-o", "out"}).err,
              "orvane: the list 'absent.txt' cannot open: No such file or directory\n");
}

TEST_F(PhotoRuns, DetectTakesFoldersToo) {
    PutPhoto("in/a.png");
    PutFaceless("in/b.png");
    const ProcessResult result = RunTool({"detect", "in", "--jobs", "2", "--report", "r.jsonl", "--json"});
    EXPECT_EQ(result.exitCode, 10);
    EXPECT_EQ(Objects(result.out).size(), 2U);
    EXPECT_EQ(Outcomes("r.jsonl"), (std::map<std::string, std::string>{{"in/a.png", "face"}, {"in/b.png", "no face"}}));
    EXPECT_EQ(Names("in"), (Lines{"a.png", "b.png"}));
}

TEST_F(PhotoRuns, AFolderWithoutPhotosIsAnError) {
    Work().Put("in/notes.txt", "x");
    const ProcessResult result = Portraits({"in", "-o", "out"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "orvane: no photos were found\n");
}

TEST_F(PhotoRuns, QuietLeavesOnlyWhatFailed) {
    PutPhoto("in/a.png");
    Work().Put("in/b.png", "");
    const ProcessResult result = Portraits({"in", "-o", "out", "--quiet"});
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "orvane: in/b.png: is empty\n");
}

TEST_F(PhotoRuns, AReportHasOneRowAPhotoInTheirOrder) {
    PutPhoto("in/a.png");
    PutFaceless("in/b, 2.png");
    Work().Put("in/c.png", "");
    ASSERT_EQ(Portraits({"in", "-o", "out", "--report", "r.csv", "--jobs", "2"}).exitCode, 1);
    const Lines rows = ProcessResult::Lines(Work().Get("r.csv"));
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(
        rows[0].rfind("number,input,output,status,code,width,height,face_x,face_y,face_width,face_height,decode_ms", 0),
        0U);
    EXPECT_EQ(rows[1].rfind("1,in/a.png,out/a.png,portrait,0,240,200,", 0), 0U) << rows[1];
    EXPECT_EQ(rows[2].rfind("2,\"in/b, 2.png\",,no face,10,200,200,,,,,", 0), 0U) << rows[2];
    EXPECT_EQ(rows[3], "3,in/c.png,,failed,-60,,,,,,,,,,,,,is empty,,\r");
    EXPECT_EQ(Portraits({"in", "-o", "out", "--force", "--report", "r.csv"}).exitCode, 1) << "force replaces it";
    EXPECT_EQ(Portraits({"in", "-o", "out", "--report", "r.csv"}).err,
              "orvane: the report 'r.csv' exists already; --force replaces it\n");
}

TEST_F(PhotoRuns, WhatIsDoneIsNotDoneAgain) {
    for (const char* name : {"in/a.png", "in/b.png", "in/c.png"}) PutPhoto(name, name[3] - 'a');
    const Arguments again{"in", "-o", "out", "--resume", "--report", "r.jsonl"};
    ASSERT_EQ(Portraits({"in", "-o", "out"}).exitCode, 0); // a folder's run can be resumed
    const std::string first = Work().Get("out/a.png");

    ASSERT_EQ(Portraits(again).exitCode, 0);
    EXPECT_EQ(Outcomes("r.jsonl"),
              (std::map<std::string, std::string>{{"in/a.png", "kept"}, {"in/b.png", "kept"}, {"in/c.png", "kept"}}));
    const JsonValue row = Objects(Work().Get("r.jsonl")).at(0);
    EXPECT_EQ(row["output"].text, "out/a.png");
    EXPECT_EQ(row["width"].text, "240");
    EXPECT_EQ(row["face"].kind, '{') << "the face is known from before";

    Remove("out/a.png");
    PutPhoto("in/b.png", 9); // another picture under its name
    PutPhoto("in/d.png", 2);
    ASSERT_EQ(Portraits(again).exitCode, 0);
    EXPECT_EQ(Outcomes("r.jsonl"),
              (std::map<std::string, std::string>{
                  {"in/a.png", "portrait"}, {"in/b.png", "portrait"}, {"in/c.png", "kept"}, {"in/d.png", "portrait"}}));
    EXPECT_EQ(Work().Get("out/a.png"), first);
}

TEST_F(PhotoRuns, OtherSettingsMakeAllPortraitsAnew) {
    PutPhoto("in/a.png");
    ASSERT_EQ(Portraits({"in", "-o", "out", "--resume"}).exitCode, 0);
    ASSERT_EQ(Portraits({"in", "-o", "out", "--resume", "--crop-ratio", "0.8", "--report", "r.jsonl"}).exitCode, 0);
    EXPECT_EQ(Outcomes("r.jsonl").at("in/a.png"), "portrait");
    ASSERT_EQ(Portraits({"in", "-o", "out", "--resume", "--crop-ratio", "0.8", "--report", "r.jsonl"}).exitCode, 0);
    EXPECT_EQ(Outcomes("r.jsonl").at("in/a.png"), "kept");
}

TEST_F(PhotoRuns, AnotherClassifierMakesAllPortraitsAnew) {
    PutPhoto("in/a.png");
    ASSERT_EQ(Portraits({"in", "-o", "out", "--resume"}).exitCode, 0);
    Home().Put("Orvane.dat", BrightSquareClassifier() + "x"); // what stands behind the tables is not read
    ASSERT_EQ(Portraits({"in", "-o", "out", "--resume", "--report", "r.jsonl"}).exitCode, 0);
    EXPECT_EQ(Outcomes("r.jsonl").at("in/a.png"), "portrait");
}

TEST_F(PhotoRuns, AFileThatNoRunMadeIsNotReplaced) {
    PutPhoto("in/a.png");
    Work().Put("out/a.png", "somebody's");
    const ProcessResult refused = Portraits({"in", "-o", "out", "--resume"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err, "orvane: in/a.png: the output 'out/a.png' exists already; --force replaces it\n");
    EXPECT_EQ(Work().Get("out/a.png"), "somebody's");
    EXPECT_EQ(Portraits({"in", "-o", "out", "--resume", "--force"}).exitCode, 0);
    Work().Put("out/a.png", "changed by hand"); // nor one that was changed since
    EXPECT_EQ(Portraits({"in", "-o", "out", "--resume"}).exitCode, 1);
    EXPECT_EQ(Work().Get("out/a.png"), "changed by hand");
}

TEST_F(PhotoRuns, ADamagedJournalIsToldAndTheRunGoesOn) {
    PutPhoto("in/a.png");
    PutPhoto("in/b.png", 5);
    ASSERT_EQ(Portraits({"in", "-o", "out"}).exitCode, 0);
    Work().Put("out/.orvane-journal", "rubbish\n" + Work().Get("out/.orvane-journal"));
    const ProcessResult result = Portraits({"in", "-o", "out", "--resume", "--report", "r.jsonl"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "orvane: the journal in 'out' has 1 damaged line; its portrait counts as unknown\n");
    EXPECT_EQ(Outcomes("r.jsonl").at("in/b.png"), "kept");
}

TEST_F(PhotoRuns, APhotoThatIsTheOutputOfAnotherIsNeverReplaced) {
    PutPhoto("in/a.png");
    PutPhoto("in/a.bmp", 5); // its portrait would be in/a.png
    const std::string before = Work().Get("in/a.png");
    for (const char* how : {"--resume", "--force"}) {
        EXPECT_EQ(Portraits({"in/a.bmp", "in/a.png", "-o", "in", how}).exitCode, 1);
        EXPECT_EQ(Work().Get("in/a.bmp").size(), PhotoBytes(5).size());
    }
    EXPECT_EQ(Work().Get("in/a.png"), before);
}

TEST_F(PhotoRuns, ShardsDoEveryPhotoOnceAndTheirReportsJoin) {
    for (int i = 0; i < 7; ++i) PutPhoto("in/p" + std::to_string(i) + ".png", i);
    Arguments join{"report", "join", "-o", "all.csv"};
    for (const std::string index : {"1", "2", "3"}) {
        const ProcessResult result =
            Portraits({"in", "-o", "out", "--shard", index + "/3", "--report", "r" + index + ".csv", "--resume"});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        join.push_back("r" + index + ".csv");
    }
    const ProcessResult joined = RunTool(join);
    EXPECT_EQ(joined.exitCode, 0) << joined.err;
    EXPECT_EQ(joined.out, "7 photos: 7 portraits, 0 without a face, 0 failed\n");
    const Lines rows = ProcessResult::Lines(Work().Get("all.csv"));
    ASSERT_EQ(rows.size(), 8U);
    for (std::size_t i = 1; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].rfind(std::to_string(i) + ",in/p" + std::to_string(i - 1) + ".png,", 0), 0U) << rows[i];
    }
    join.erase(join.begin() + 5);
    join[3] = "some.csv";
    const ProcessResult some = RunTool(join);
    EXPECT_EQ(some.exitCode, 1) << "a shard is missing";
    EXPECT_NE(some.err.find("photos are in none of the reports"), std::string::npos) << some.err;
}

TEST_F(PhotoRuns, WhatMakesNoSenseTogetherIsRefusedBeforeAnythingIsDone) {
    PutPhoto("in/a.png");
    const std::pair<Arguments, const char*> cases[] = {
        {{"in", "-o", "b.png", "--resume"}, "--resume wants an existing folder for -o, and 'b.png' is none"},
        {{"in/a.png", "-o", "b.png", "--output-name", "{stem}.png"},
         "--output-name wants an existing folder for -o, and 'b.png' is none"},
        {{"in", "-o", "out", "--resume", "--steps", "out"},
         "--resume does not know of the pictures of --steps; give one of them"},
        {{"in", "-o", "absent/", "--jobs", "1"}, "there is no folder 'absent/'"}};
    for (const auto& [arguments, line] : cases) {
        const ProcessResult result = Portraits(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.err, std::string("orvane: ") + line + "\n");
    }
    EXPECT_TRUE(Names("out").empty());
}

TEST_F(PhotoRuns, ResumingMakesAnewWhatHasOtherSettingsOfItsFile) {
    PutPhoto("in/a.png");
    const Lines settings[] = {{},
                              {"--dpi", "300"},
                              {"--quality", "80"},
                              {"--chroma", "444"},
                              {"--min-kb", "40"},
                              {"--max-kb", "40"},
                              {"--keep-metadata"}};
    for (const Lines& more : settings) {
#ifdef _WIN32
        if (!more.empty() && more[0] == "--chroma") continue; // the system's encoder may not have it
#endif
        Lines arguments{"in", "-o", "out", "--output-name", "{stem}.jpg", "--resume", "--json"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        SCOPED_TRACE(more.empty() ? "plain" : more[0]);
        for (const bool kept : {false, true}) {
            const ProcessResult result = Portraits(arguments);
            ASSERT_EQ(result.exitCode, 0) << result.err;
            EXPECT_EQ(result.out.find("\"kept\":true") != std::string::npos, kept) << result.out;
        }
    }
}

} // namespace
} // namespace orvane::tools
