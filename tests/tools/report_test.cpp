// What is told of a photo: the JSON line, the line for people, the error line, the exit code.
#include "tools/orvane/report.h"

#include "image/result_codes.h"
#include "tests/tools/json_reader.h"
#include "tools/support/json.h"
#include "tools/support/status_text.h"
#include "tools/support/utf8.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace orvane::tools {
namespace {

PhotoReport GoodReport() {
    PhotoReport report;
    report.photo = "in/a.jpg";
    report.width = 640;
    report.height = 480;
    report.status = kSuccess;
    report.face = FaceBox{10, 20, 30, 40};
    report.output = "out/a.png";
    report.milliseconds.decode = 1.25;
    report.milliseconds.encode = 0.5;
    return report;
}

PhotoReport NoFaceReport() {
    PhotoReport report = GoodReport();
    report.status = kNoFace;
    report.face.reset();
    report.output.clear();
    return report;
}

PhotoReport FailedReport() {
    PhotoReport report;
    report.photo = "a.jpg";
    report.status = kNoPicture;
    report.error = "is empty";
    return report;
}

TEST(Report, TheJsonLineTellsAllOfAPortrait) {
    EXPECT_EQ(JsonLine(GoodReport()), R"({"photo":"in/a.jpg","width":640,"height":480,"status":0,)"
                                      R"("face":{"x":10,"y":20,"width":30,"height":40},"output":"out/a.png",)"
                                      R"("milliseconds":{"decode":1.250,"encode":0.500}})");
}

TEST(Report, WithoutAFaceTheJsonLineHasNoOutput) {
    const JsonValue line = JsonReader::Read(JsonLine(NoFaceReport()));
    EXPECT_EQ(line["status"].text, "10");
    EXPECT_EQ(line["face"].kind, 'n');
    EXPECT_FALSE(line.Has("output"));
    EXPECT_FALSE(line.Has("error"));
}

TEST(Report, AFailureIsTheErrorMemberAndUnknownValuesAreNull) {
    const JsonValue line = JsonReader::Read(JsonLine(FailedReport()));
    EXPECT_EQ(line["width"].kind, 'n');
    EXPECT_EQ(line["height"].kind, 'n');
    EXPECT_EQ(line["status"].text, "-60");
    EXPECT_EQ(line["error"].text, "is empty");
    EXPECT_TRUE(line["milliseconds"].members.empty());
    PhotoReport refused = FailedReport();
    refused.status.reset();
    EXPECT_EQ(JsonReader::Read(JsonLine(refused))["status"].kind, 'n');
}

TEST(Report, TheLineForPeopleTellsFaceOutputAndTimes) {
    EXPECT_EQ(TextLine(GoodReport()),
              "in/a.jpg: face at 10,20, 30x40, portrait out/a.png, 1.8 ms (decode 1.2, encode 0.5)");
    EXPECT_EQ(TextLine(NoFaceReport()), "");
    EXPECT_EQ(TextLine(FailedReport()), "");
}

TEST(Report, TheErrorLineTellsWhatFailed) {
    EXPECT_EQ(ErrorLine(GoodReport()), "");
    EXPECT_EQ(ErrorLine(NoFaceReport()), "in/a.jpg: no face was found");
    EXPECT_EQ(ErrorLine(FailedReport()), "a.jpg: is empty");
}

TEST(Report, NamesWithControlCharactersStayOnOneLine) {
    PhotoReport report = FailedReport();
    report.photo = "a\nb\x7F\x1B[2J.jpg";
    EXPECT_EQ(ErrorLine(report), "a?b??[2J.jpg: is empty");
    PhotoReport good = GoodReport();
    good.photo = good.output = "a\nb";
    EXPECT_EQ(TextLine(good).find('\n'), std::string::npos);
}

TEST(Report, AValueOutOfItsBandIsTheLeastOfAllFailures) {
    PhotoReport good, bad, faceless, failed;
    bad.measures.emplace();
    At(*bad.measures, MeasureKind::sharpness) = {1.0, {60.0, {}}, ""};
    faceless.status = kNoFace;
    failed.error = "x";
    EXPECT_EQ(Worse(kExitGood, bad), kExitOutOfBand);
    EXPECT_EQ(Worse(kExitOutOfBand, good), kExitOutOfBand);
    EXPECT_EQ(Worse(kExitOutOfBand, faceless), kExitNoFace);
    EXPECT_EQ(Worse(kExitNoFace, bad), kExitNoFace);
    EXPECT_EQ(Worse(kExitError, bad), kExitError);
    EXPECT_EQ(Worse(kExitOutOfBand, failed), kExitError);
}

TEST(Report, AnErrorWinsOverAMissingFaceWhichWinsOverSuccess) {
    EXPECT_EQ(Worse(kExitGood, GoodReport()), kExitGood);
    EXPECT_EQ(Worse(kExitGood, NoFaceReport()), kExitNoFace);
    EXPECT_EQ(Worse(kExitGood, FailedReport()), kExitError);
    EXPECT_EQ(Worse(kExitNoFace, GoodReport()), kExitNoFace);
    EXPECT_EQ(Worse(kExitNoFace, FailedReport()), kExitError);
    EXPECT_EQ(Worse(kExitError, NoFaceReport()), kExitError);
    EXPECT_EQ(Worse(kExitError, GoodReport()), kExitError);
}

TEST(Report, EveryResultCodeHasWordsOfItsOwn) {
    for (const int32 status : {kSuccess, kNoFace, kCancelled, kLockFailed, kBadCall, kCaptureFailed, kStepFailed,
                               kOutOfMemory, kNoPicture, kNoClassifier, kNoSession}) {
        EXPECT_EQ(StatusText(status).find("answered"), std::string::npos) << status;
    }
    EXPECT_EQ(StatusText(-99), "the library answered -99");
}

TEST(Json, StringsAreEscaped) {
    EXPECT_EQ(JsonText("a\"b\\c\n\t\x01\x7F/"), "\"a\\\"b\\\\c\\u000a\\u0009\\u0001\x7F/\"");
    EXPECT_EQ(JsonText(std::string("\0", 1)), "\"\\u0000\"");
    EXPECT_EQ(JsonText(""), "\"\"");
}

TEST(Json, Utf8StaysAndOtherBytesBecomeTheReplacementCharacter) {
    EXPECT_EQ(JsonText("Gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x98\x80"),
              "\"Gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x98\x80\"");
    EXPECT_EQ(JsonText("a\xFF"
                       "b\xC3"),
              "\"a\\ufffdb\\ufffd\"");
}

TEST(Json, ObjectsMayStandInAnArray) {
    const std::vector<JsonObject> values = {JsonObject().Integer("b", 1), JsonObject(), JsonObject().Text("c", "]")};
    EXPECT_EQ(JsonObject().Objects("a", values).Line(), R"({"a":[{"b":1},{},{"c":"]"}]})");
    EXPECT_EQ(JsonReader::Read(JsonObject().Objects("a", values).Line())["a"].elements.size(), 3U);
    EXPECT_EQ(JsonObject().Objects("a", {}).Line(), R"({"a":[]})");
}

TEST(Json, NumbersThatJsonCannotTellAreNull) {
    EXPECT_EQ(JsonObject().Decimal("a", std::nan("")).Decimal("b", std::numeric_limits<double>::infinity()).Line(),
              R"({"a":null,"b":null})");
    EXPECT_EQ(JsonReader::Read(JsonObject().Decimal("a", 1e300).Line())["a"].Number(), 1e300);
}

TEST(Utf8, OnlyWellFormedCharactersCount) {
    struct {
        std::string bytes;
        std::size_t length;
    } const cases[] = {
        {"a", 1},
        {"\xC2\x80", 2},
        {"\xDF\xBF", 2},
        {"\xE0\xA0\x80", 3},
        {"\xEF\xBF\xBF", 3},
        {"\xED\x9F\xBF", 3},
        {"\xF0\x90\x80\x80", 4},
        {"\xF4\x8F\xBF\xBF", 4},
        {"\x80", 0},
        {"\xBF", 0},
        {"\xC0\x80", 0},
        {"\xC1\xBF", 0},
        {"\xC2", 0},
        {"\xC2"
         "a",
         0},
        {"\xE0\x9F\xBF", 0},
        {"\xED\xA0\x80", 0},
        {"\xE2\x82", 0},
        {"\xF0\x8F\xBF\xBF", 0},
        {"\xF4\x90\x80\x80", 0},
        {"\xF5\x80\x80\x80", 0},
        {"\xF0\x90\x80", 0},
        {"\xF0\x90\x80"
         "a",
         0},
        {"\xFE", 0},
        {"\xFF", 0},
    };
    for (const auto& c : cases) EXPECT_EQ(Utf8Length(c.bytes, 0), c.length) << testing::PrintToString(c.bytes);
    EXPECT_EQ(Utf8Length("xx\xC3\xBC", 2), 2U);
}

} // namespace
} // namespace orvane::tools
