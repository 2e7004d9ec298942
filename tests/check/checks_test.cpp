// All measures of a picture: which are measured, in which bands, and what they come to.
#include "tools/check/checks.h"

#include "tests/check/drawn_picture.h"
#include "tools/documents/head_geometry.h"

namespace orvane::tools {
namespace {

constexpr FaceBox kFace = {150, 250, 200, 200};

Document Passport(BackgroundRule background) {
    Document document;
    document.width = 35;
    document.height = 45;
    document.head = {32.0, 36.0};
    document.eyes = {22.0, 32.0};
    document.background = background;
    return document;
}

Verdict VerdictOf(const Measures& measures, MeasureKind kind) { return At(measures, kind).Judge(); }

TEST(Measure, IsJudgedByItsBandWhoseEndsBelongToIt) {
    EXPECT_EQ((Measure{90.0, {90.0, 100.0}, ""}).Judge(), Verdict::ok);
    EXPECT_EQ((Measure{100.0, {90.0, 100.0}, ""}).Judge(), Verdict::ok);
    EXPECT_EQ((Measure{89.9, {90.0, 100.0}, ""}).Judge(), Verdict::low);
    EXPECT_EQ((Measure{100.1, {90.0, 100.0}, ""}).Judge(), Verdict::high);
    EXPECT_EQ((Measure{-5.0, {}, ""}).Judge(), Verdict::ok);
    EXPECT_EQ((Measure{{}, {90.0, 100.0}, "why"}).Judge(), Verdict::notMeasured);
}

TEST(Measure, OneOutOfItsBandSpoilsAllAndOneThatIsNotMeasuredNone) {
    Measures measures;
    EXPECT_TRUE(AreInBand(measures));
    At(measures, MeasureKind::sharpness) = {5.0, {100.0, {}}, ""};
    EXPECT_FALSE(AreInBand(measures));
}

TEST(Checks, WithoutADocumentNothingIsMeasuredInMillimetres) {
    const Measures measures = CheckFace(FlatPicture(500, 700, 128), kFace, 1, nullptr);
    for (const MeasureKind kind : {MeasureKind::headHeight, MeasureKind::eyeLine, MeasureKind::aboveHead}) {
        EXPECT_EQ(VerdictOf(measures, kind), Verdict::notMeasured);
        EXPECT_EQ(At(measures, kind).reason, "no document was named");
    }
    EXPECT_EQ(At(measures, MeasureKind::faceSize).value, 200);
    EXPECT_EQ(At(measures, MeasureKind::faceX).value, 50);
    EXPECT_TRUE(At(measures, MeasureKind::backgroundLevel).band.IsOpen());
}

TEST(Checks, APortraitIsMeasuredAgainstItsDocument) {
    const Document document = Passport(BackgroundRule::any);
    const Measures measures = CheckFace(FlatPicture(350, 450, 128), {85, 120, 180, 180}, 1, &document);
    const Measure& head = At(measures, MeasureKind::headHeight);
    ASSERT_TRUE(head.value);
    EXPECT_NEAR(*head.value, kMedianHead.Height() * 18, 1e-9);
    EXPECT_EQ(head.band.low, 32.0);
    EXPECT_EQ(At(measures, MeasureKind::eyeLine).band.high, 32.0);
    EXPECT_EQ(VerdictOf(measures, MeasureKind::faceX), Verdict::ok);
    const Measures beside = CheckFace(FlatPicture(350, 450, 128), {5, 120, 180, 180}, 1, &document);
    EXPECT_EQ(VerdictOf(beside, MeasureKind::faceX), Verdict::low);
}

TEST(Checks, APhotographIsAskedForTheRoomThatTheDocumentNeeds) {
    const Document document = Passport(BackgroundRule::any);
    const Measures roomy = CheckFace(FlatPicture(1000, 1000, 128), {400, 400, 200, 200}, 1, &document);
    EXPECT_EQ(At(roomy, MeasureKind::headHeight).reason, "not of the document's proportions");
    for (const MeasureKind kind :
         {MeasureKind::roomAbove, MeasureKind::roomBelow, MeasureKind::roomLeft, MeasureKind::roomRight}) {
        EXPECT_EQ(VerdictOf(roomy, kind), Verdict::ok);
    }
    const Measures tight = CheckFace(FlatPicture(1000, 1000, 128), {60, 122, 200, 200}, 1, &document);
    EXPECT_EQ(VerdictOf(tight, MeasureKind::roomAbove), Verdict::low);
    EXPECT_EQ(VerdictOf(tight, MeasureKind::roomLeft), Verdict::low);
    EXPECT_EQ(VerdictOf(tight, MeasureKind::roomBelow), Verdict::ok);
}

TEST(Checks, TheNumberOfFacesIsOneAndOfAMarkedFaceNotMeasured) {
    const Picture picture = FlatPicture(500, 700, 128);
    EXPECT_EQ(VerdictOf(CheckFace(picture, kFace, 1, nullptr), MeasureKind::faces), Verdict::ok);
    EXPECT_EQ(VerdictOf(CheckFace(picture, kFace, 2, nullptr), MeasureKind::faces), Verdict::high);
    EXPECT_EQ(VerdictOf(CheckFace(picture, kFace, {}, nullptr), MeasureKind::faces), Verdict::notMeasured);
}

TEST(Checks, ClippedPixelsOfTheSquareAreCountedExactly) {
    // 200x200 pixels of the square: 400 lost, 800 burnt out; outside it everything is.
    const Picture picture = DrawnPicture(500, 700, [](int32 x, int32 y) {
        if (x < 150 || x >= 350 || y < 250 || y >= 450) return 0;
        if (y < 252) return 5;
        return y < 256 ? 250 : 128;
    });
    const Measures measures = CheckFace(picture, kFace, 1, nullptr);
    EXPECT_EQ(At(measures, MeasureKind::shadows).value, 1);
    EXPECT_EQ(VerdictOf(measures, MeasureKind::shadows), Verdict::ok);
    EXPECT_EQ(At(measures, MeasureKind::highlights).value, 2);
    EXPECT_EQ(VerdictOf(measures, MeasureKind::highlights), Verdict::high);
}

TEST(Checks, TheEyesOfTheMedianHeadMustLie90PixelsApart) {
    const auto side = static_cast<int32>(90 / kMedianHead.eyeDistance);
    const Picture picture = FlatPicture(900, 900, 128);
    EXPECT_EQ(VerdictOf(CheckFace(picture, {300, 300, side + 1, side + 1}, 1, nullptr), MeasureKind::eyeDistance),
              Verdict::ok);
    EXPECT_EQ(VerdictOf(CheckFace(picture, {300, 300, side - 1, side - 1}, 1, nullptr), MeasureKind::eyeDistance),
              Verdict::low);
}

TEST(Checks, TheBackgroundIsJudgedByTheDocumentsRule) {
    const struct {
        BackgroundRule rule;
        int level;
        Verdict verdict;
    } cases[] = {{BackgroundRule::any, 20, Verdict::ok},
                 {BackgroundRule::plainLight, 139, Verdict::low},
                 {BackgroundRule::plainLight, 140, Verdict::ok},
                 {BackgroundRule::white, 199, Verdict::low},
                 {BackgroundRule::white, 200, Verdict::ok}};
    for (const auto& c : cases) {
        const Document document = Passport(c.rule);
        const Measures measures = CheckFace(FlatPicture(1000, 1000, c.level), {400, 400, 200, 200}, 1, &document);
        EXPECT_EQ(VerdictOf(measures, MeasureKind::backgroundLevel), c.verdict) << c.level;
    }
    const Picture uneven = DrawnPicture(1000, 1000, [](int32 x, int32) { return x < 500 ? 150 : 201; });
    const Document plain = Passport(BackgroundRule::plainLight);
    EXPECT_EQ(VerdictOf(CheckFace(uneven, {400, 400, 200, 200}, 1, &plain), MeasureKind::backgroundSpread),
              Verdict::high);
    const Document any = Passport(BackgroundRule::any);
    EXPECT_EQ(VerdictOf(CheckFace(uneven, {400, 400, 200, 200}, 1, &any), MeasureKind::backgroundSpread), Verdict::ok);
}

TEST(Checks, AFaceAtAnyPlaceIsMeasuredWithinThePicture) {
    const Picture picture = FlatPicture(60, 50, 128);
    const Document document = Passport(BackgroundRule::white);
    for (const FaceBox& face : {FaceBox{0, 0, 1, 1}, FaceBox{59, 49, 1, 1}, FaceBox{0, 0, 60, 50},
                                FaceBox{-20, -20, 100, 100}, FaceBox{50, 40, 40, 40}}) {
        EXPECT_EQ(At(CheckFace(picture, face, 1, &document), MeasureKind::sharpness).value, 0.0);
    }
}

} // namespace
} // namespace orvane::tools
