// The parts of a run that know what a portrait is: options, jobs, rows of reports and their join.
#include "tools/orvane/photo_job.h"
#include "tools/orvane/report_file.h"
#include "tools/orvane/report_join.h"

#include "image/result_codes.h"
#include "tests/tools/json_reader.h"

#include <gtest/gtest.h>
#include <set>

namespace orvane::tools {
namespace {

using Arguments = std::vector<std::string>;

Options Parsed(const Arguments& more) {
    Arguments arguments{"portrait", "in", "-o", "out"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    Options options;
    std::string error;
    EXPECT_TRUE(ParseOptions(arguments, &options, &error)) << error;
    return options;
}

std::string Refused(const Arguments& arguments) {
    Options options;
    std::string error;
    EXPECT_FALSE(ParseOptions(arguments, &options, &error)) << testing::PrintToString(arguments);
    EXPECT_EQ(error.find('\n'), std::string::npos);
    return error;
}

PhotoReport FullReport() {
    PhotoReport report;
    report.photo = "in/a\n.png";
    report.width = 640;
    report.height = 480;
    report.document = "uk-passport";
    report.status = kSuccess;
    report.face = FaceBox{-1, 2, 3, 4};
    report.output = "out/a.png";
    report.groups = {{{1, 2, 3, 3}, 2, 0, false}, {{4, 5, 6, 6}, 30, 1, true}};
    report.milliseconds.decode = 1.25;
    report.milliseconds.encode = 0.0;
    report.warning = "odd";
    return report;
}

TEST(RunOptions, AreReadWithTheirUnits) {
    const Options plain = Parsed({});
    EXPECT_FALSE(plain.recursive || plain.quiet || plain.resume || plain.jobs || plain.timeout || plain.memory);
    EXPECT_TRUE(plain.shard.IsWhole());
    const Options options =
        Parsed({"-r", "--quiet", "--resume", "--jobs", "3", "--timeout=7", "--memory", "500M", "--shard", "2/5",
                "--report", "r.JSONL", "--files-from", "-", "--output-name", "{number}.jpg"});
    EXPECT_TRUE(options.recursive && options.quiet && options.resume);
    EXPECT_EQ(options.jobs, 3);
    EXPECT_EQ(options.timeout, 7);
    EXPECT_EQ(options.memory, std::uint64_t{500} << 20);
    EXPECT_EQ(options.shard.index, 2);
    EXPECT_EQ(options.report, "r.JSONL");
    EXPECT_EQ(options.filesFrom, "-");
    EXPECT_EQ(options.outputName, "{number}.jpg");
    EXPECT_EQ(Parsed({"--memory", "3G"}).memory, std::uint64_t{3} << 30);
    EXPECT_TRUE(Parsed({"--recursive"}).recursive);
}

TEST(RunOptions, NonsenseIsRefused) {
    const std::pair<Arguments, const char*> cases[] = {
        {{"--jobs", "0"}, "--jobs wants a number, 1 to 256, not '0'"},
        {{"--jobs", "257"}, "--jobs wants a number, 1 to 256, not '257'"},
        {{"--timeout", "0"}, "--timeout wants seconds, 1 to 86400, not '0'"},
        {{"--memory", "63M"}, "--memory wants a size such as 2G or 500M, at least 64M, not '63M'"},
        {{"--memory", "2"}, "--memory wants a size such as 2G or 500M, at least 64M, not '2'"},
        {{"--memory", ""}, "--memory wants a size such as 2G or 500M, at least 64M, not ''"},
        {{"--shard", "3/2"}, "--shard wants I/N, such as 1/4, of at most 100000, not '3/2'"},
        {{"--report", "r.txt"}, "--report wants a file named .csv or .jsonl, not 'r.txt'"},
        {{"--files-from", ""}, "--files-from wants a file, or - for standard input"}};
    for (const auto& [more, line] : cases) {
        Arguments arguments{"portrait", "in", "-o", "out"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        EXPECT_EQ(Refused(arguments), line);
    }
    EXPECT_EQ(Refused({"detect", "in", "--resume"}), "'detect' knows no option '--resume'");
    EXPECT_EQ(Refused({"detect", "in", "--output-name", "x"}), "'detect' knows no option '--output-name'");
    EXPECT_EQ(Refused({"report"}), "'report' wants 'join' and reports");
    EXPECT_EQ(Refused({"report", "join", "-o", "a.csv"}), "'report join' wants at least one report");
    EXPECT_EQ(Refused({"report", "join", "b.csv"}), "'report join' wants -o and a file named .csv or .jsonl");
    EXPECT_EQ(Refused({"report", "join", "b.csv", "--json"}), "'report' knows no option '--json'");
}

TEST(PhotoJobs, EverythingComesBackFromItsBytes) {
    WorkSettings settings;
    settings.options = Parsed({"--size", "320x400", "--crop-ratio", "0.7", "--actions", "background,rotation",
                               "--tolerance", "12", "--rotate", "33", "--steps", "s", "--force"});
    settings.memory = 5;
    settings.journal = true;
    settings.fingerprint = ~std::uint64_t{0};
    WorkSettings settingsBack;
    ASSERT_TRUE(Unpack(Packed(settings), &settingsBack));
    EXPECT_EQ(Packed(settingsBack), Packed(settings));
    EXPECT_EQ(settingsBack.options.cropRatio, 0.7F);
    EXPECT_EQ(settingsBack.options.rotation, 33);
    EXPECT_TRUE(settingsBack.options.actions.background && !settingsBack.options.actions.crop);
    EXPECT_EQ(settingsBack.options.command, Command::portrait);

    const PhotoJob job{"p\n", "f", "n", "o", {{1, 2, 3, "note", "n"}, {4, 5, 6, "", "n"}}, FaceBox{7, 8, 9, 10}};
    PhotoJob jobBack;
    ASSERT_TRUE(Unpack(Packed(job), &jobBack));
    EXPECT_EQ(Packed(jobBack), Packed(job));
    EXPECT_EQ(jobBack.known.at(1).portrait, 6U);
    EXPECT_EQ(jobBack.face, job.face);

    PhotoReport back;
    PhotoReport measured = FullReport();
    measured.measures.emplace();
    At(*measured.measures, MeasureKind::sharpness) = {12.5, {60.0, {}}, ""};
    At(*measured.measures, MeasureKind::eyeLine) = {{}, {{}, 3.0}, "why"};
    for (const PhotoReport& report : {FullReport(), PhotoReport(), measured}) {
        ASSERT_TRUE(Unpack(Packed(report), &back));
        EXPECT_EQ(Packed(back), Packed(report));
        EXPECT_EQ(JsonLine(back), JsonLine(report));
    }
    EXPECT_FALSE(Unpack("rubbish", &back));
    EXPECT_FALSE(Unpack(Packed(job).substr(1), &jobBack));
}

TEST(PhotoJobs, WhatAPictureIsCheckedAgainstComesBackToo) {
    WorkSettings settings;
    settings.options.command = Command::check;
    settings.options.allGroups = true;
    settings.document.emplace();
    settings.document->name = "badge";
    settings.document->width = 35;
    settings.document->height = 45;
    settings.document->head = {{}, 36.0};
    settings.document->eyes = {22.0, 32.0};
    settings.document->above = {4.0, {}};
    settings.document->headTop = HeadTop::hair;
    settings.document->background = BackgroundRule::white;
    WorkSettings back;
    ASSERT_TRUE(Unpack(Packed(settings), &back));
    EXPECT_EQ(Packed(back), Packed(settings));
    EXPECT_EQ(back.options.command, Command::check);
    EXPECT_TRUE(back.options.allGroups);
    ASSERT_TRUE(back.document);
    EXPECT_EQ(back.document->name, "badge");
    EXPECT_EQ(back.document->height, 45);
    EXPECT_EQ(back.document->head.high, 36.0);
    EXPECT_EQ(back.document->head.low, std::nullopt);
    EXPECT_EQ(back.document->eyes.low, 22.0);
    EXPECT_EQ(back.document->above.low, 4.0);
    EXPECT_EQ(back.document->headTop, HeadTop::hair);
    EXPECT_EQ(back.document->background, BackgroundRule::white);
}

TEST(PhotoJobs, AFaceMarkedByHandHasAFingerprintOfItsOwn) {
    EXPECT_EQ(FingerprintOfJob(7, {}), 7U);
    std::set<std::uint64_t> fingerprints{7,
                                         FingerprintOfJob(7, FaceBox{1, 2, 3, 4}),
                                         FingerprintOfJob(8, FaceBox{1, 2, 3, 4}),
                                         FingerprintOfJob(7, FaceBox{9, 2, 3, 4}),
                                         FingerprintOfJob(7, FaceBox{1, 9, 3, 4}),
                                         FingerprintOfJob(7, FaceBox{1, 2, 9, 4}),
                                         FingerprintOfJob(7, FaceBox{1, 2, 3, 9})};
    EXPECT_EQ(fingerprints.size(), 7U);
}

TEST(PhotoJobs, TheFingerprintKnowsEverythingThatAPortraitDependsOn) {
    const std::uint64_t plain = SettingsFingerprint(Parsed({}), "classifier");
    EXPECT_NE(SettingsFingerprint(Parsed({}), "another"), plain);
    for (const Arguments& more : {Arguments{"--size", "484x860"},
                                  {"--size", "480x864"},
                                  {"--crop-ratio", "1.01"},
                                  {"--actions", "none"},
                                  {"--actions", "crop,colour"},
                                  {"--actions", "crop,background"},
                                  {"--tolerance", "41"},
                                  {"--dpi", "301"},
                                  {"--size", "35x45mm"}, // without the head's band
                                  {"--head", "32-35mm"},
                                  {"--document", "uk-passport"},
                                  {"--fill", "edge"},
                                  {"--fill", "#ffff00"},
                                  {"--rotate", "1"}}) {
        EXPECT_NE(SettingsFingerprint(Parsed(more), "classifier"), plain) << more[0] << more[1];
    }
    for (const Arguments& more : {Arguments{"--jobs", "2"}, {"--resume"}, {"--force"}, {"--report", "r.csv"}}) {
        EXPECT_EQ(SettingsFingerprint(Parsed(more), "classifier"), plain) << more[0];
    }
}

TEST(PhotoJobs, OfDocumentsThatFrameAlikeEitherPortraitWillDo) {
    const std::uint64_t fingerprint = SettingsFingerprint(Parsed({"--document", "schengen-visa"}), "c");
    EXPECT_EQ(SettingsFingerprint(Parsed({"--document", "australia-passport"}), "c"), fingerprint);
    EXPECT_NE(SettingsFingerprint(Parsed({"--document", "japan-passport"}), "c"), fingerprint);
    EXPECT_NE(SettingsFingerprint(Parsed({"--document", "germany-passport"}), "c"), fingerprint);
}

TEST(PhotoJobs, AFrameComesBackFromItsBytes) {
    for (const Arguments& more : {Arguments{"--document", "us-passport", "--fill", "#102030"},
                                  {"--document", "japan-passport", "--dpi", "600"},
                                  {"--size", "35x45mm", "--crop-ratio", "0.8"},
                                  {"--document", "india-visa"}}) {
        WorkSettings settings;
        settings.options = Parsed(more);
        WorkSettings back;
        ASSERT_TRUE(Unpack(Packed(settings), &back));
        ASSERT_TRUE(back.options.frame.has_value());
        EXPECT_EQ(Packed(back), Packed(settings));
        const FrameWish& wish = *settings.options.frame;
        const FrameWish& same = *back.options.frame;
        EXPECT_EQ(same.name, wish.name);
        EXPECT_EQ(same.width, wish.width);
        EXPECT_EQ(same.height, wish.height);
        EXPECT_EQ(same.resolution, wish.resolution);
        for (const auto band : {&FrameWish::head, &FrameWish::eyes, &FrameWish::above}) {
            EXPECT_EQ((same.*band).low, (wish.*band).low);
            EXPECT_EQ((same.*band).high, (wish.*band).high);
        }
        EXPECT_EQ(same.headTop, wish.headTop);
        EXPECT_EQ(same.cropRatio, wish.cropRatio);
        EXPECT_EQ(same.isStrict, wish.isStrict);
        EXPECT_EQ(same.fill.kind, wish.fill.kind);
        EXPECT_EQ(same.fill.green, wish.fill.green);
    }
}

TEST(PhotoJobs, ANoteTellsSizeAndFaceAgain) {
    PhotoReport back;
    ReadNote(NoteOf(FullReport()), &back);
    EXPECT_EQ(back.width, 640);
    EXPECT_EQ(back.height, 480);
    ASSERT_TRUE(back.face.has_value());
    EXPECT_EQ(back.face->x, -1);
    EXPECT_EQ(back.face->height, 4);
    PhotoReport faceless = FullReport();
    faceless.face.reset();
    back = PhotoReport();
    ReadNote(NoteOf(faceless), &back);
    EXPECT_EQ(back.width, 640);
    EXPECT_FALSE(back.face.has_value());
}

TEST(ReportRows, TellTheSameInBothKinds) {
    EXPECT_EQ(ReportRow("r.csv", 7, FullReport()),
              "7,\"in/a\n.png\",out/a.png,portrait,0,640,480,-1,2,3,4,1.250,,,,,0.000,,odd,uk-passport\r\n");
    const std::string header = ReportHeader("r.csv");
    EXPECT_EQ(std::count(header.begin(), header.end(), ','), 19);
    const std::string line = ReportRow("r.jsonl", 7, FullReport());
    const JsonValue row = JsonReader::Read(line.substr(0, line.size() - 1));
    EXPECT_EQ(row["number"].text, "7");
    EXPECT_EQ(row["input"].text, "in/a\n.png");
    EXPECT_EQ(row["face"]["width"].text, "3");
    EXPECT_EQ(row["status"].text, "portrait");
    EXPECT_EQ(row["warning"].text, "odd");
    EXPECT_EQ(row["document"].text, "uk-passport");
    EXPECT_EQ(row["milliseconds"].members.size(), 2U);
}

TEST(ReportRows, EveryEndHasItsWord) {
    PhotoReport report = FullReport();
    EXPECT_STREQ(Outcome(report), "portrait");
    report.kept = true;
    EXPECT_STREQ(Outcome(report), "kept");
    report.kept = false;
    report.output = "";
    EXPECT_STREQ(Outcome(report), "face");
    report.status = kNoFace;
    EXPECT_STREQ(Outcome(report), "no face");
    report.error = "x";
    EXPECT_STREQ(Outcome(report), "failed");
}

std::string Row(const std::string& path, std::size_t number, const std::string& photo, const std::string& status) {
    PhotoReport report;
    report.photo = photo;
    report.status = status == "no face" ? kNoFace : kSuccess;
    report.kept = status == "kept";
    if (status == "portrait" || status == "kept") report.output = "o";
    if (status == "failed") report.error = "e";
    return ReportRow(path, number, report);
}

TEST(ReportJoin, SortsByNumberAndKeepsTheRowThatTellsMost) {
    for (const std::string kind : {"r.csv", "r.jsonl"}) {
        const std::string head = ReportHeader(kind);
        const std::string first =
            head + Row(kind, 3, "c,\n\"", "failed") + Row(kind, 1, "a", "portrait") + Row(kind, 4, "d", "no face");
        const std::string second = head + Row(kind, 1, "a", "kept") + Row(kind, 2, "b", "kept") +
                                   Row(kind, 3, "c,\n\"", "portrait") + Row(kind, 4, "d", "failed") +
                                   Row(kind, 5, "e", "face");
        JoinedReports joined;
        std::string error;
        ASSERT_TRUE(JoinReports({first, second}, {"1", "2"}, kind == "r.csv", &joined, &error)) << error;
        EXPECT_EQ(joined.content, head + Row(kind, 1, "a", "portrait") + Row(kind, 2, "b", "kept") +
                                      Row(kind, 3, "c,\n\"", "portrait") + Row(kind, 4, "d", "failed") +
                                      Row(kind, 5, "e", "face"));
        EXPECT_EQ(joined.photos, 5U);
        EXPECT_EQ(joined.portraits, 3U);
        EXPECT_EQ(joined.faces, 1U);
        EXPECT_EQ(joined.faceless, 0U);
        EXPECT_EQ(joined.failed, 1U);
        EXPECT_EQ(joined.missing, 0U);
        EXPECT_EQ(joined.repeated, 0U);
    }
}

TEST(ReportJoin, WhatIsMissingOrMadeTwiceIsCounted) {
    for (const std::string kind : {"r.csv", "r.jsonl"}) {
        const std::string report = ReportHeader(kind) + Row(kind, 2, "b", "portrait") + Row(kind, 5, "e", "portrait");
        JoinedReports joined;
        std::string error;
        ASSERT_TRUE(JoinReports({report, report}, {"1", "2"}, kind == "r.csv", &joined, &error));
        EXPECT_EQ(joined.missing, 3U) << "1, 3 and 4";
        EXPECT_EQ(joined.repeated, 2U);
    }
}

TEST(ReportJoin, ARowThatWasCutOffIsLeftOutAndADamagedOneIsTold) {
    for (const std::string kind : {"r.csv", "r.jsonl"}) {
        const bool csv = kind == "r.csv";
        const std::string good = ReportHeader(kind) + Row(kind, 1, "a", "portrait");
        JoinedReports joined;
        std::string error;
        const std::string last = Row(kind, 2, "b", "portrait");
        ASSERT_TRUE(JoinReports({good + last.substr(0, last.size() - 1)}, {"x"}, csv, &joined, &error)) << error;
        EXPECT_EQ(joined.photos, 1U);
        EXPECT_FALSE(JoinReports({good + "rubbish\n"}, {"x"}, csv, &joined, &error));
        EXPECT_EQ(error, "'x' has a damaged row");
    }
    JoinedReports joined;
    std::string error;
    EXPECT_FALSE(JoinReports({"a,b\n1,2\n"}, {"x"}, true, &joined, &error));
    EXPECT_EQ(error, "'x' is no report");
    EXPECT_FALSE(JoinReports({ReportHeader("r.csv"), "number,input,status\r\n"}, {"x", "y"}, true, &joined, &error));
    EXPECT_EQ(error, "'y' has other columns than the first report");
}

} // namespace
} // namespace orvane::tools
