// Room and millimetres, by the places of crown, eyes and chin in the square.
#include "tools/check/framing.h"

#include "tests/check/drawn_picture.h"
#include "tests/support/random.h"
#include "tools/documents/frame.h"

namespace orvane::tools {
namespace {

Document PassportOf35By45() {
    Document document;
    document.width = 35;
    document.height = 45;
    document.head = {32.0, 36.0};
    return document;
}

TEST(Room, IsCountedInSidesOfTheSquareFromTheHead) {
    const Room room = RoomOf({300, 400, 200, 200}, {1000, 1500});
    EXPECT_NEAR(room.above, 2 + kMedianHead.crown, 1e-9);
    EXPECT_NEAR(room.below, 5.5 - kMedianHead.chin, 1e-9);
    EXPECT_NEAR(room.left, 2 - kHalfHead, 1e-9);
    EXPECT_NEAR(room.right, 3 - kHalfHead, 1e-9);
}

TEST(Room, IsBelowZeroForWhatIsCutOff) {
    const Room room = RoomOf({0, 0, 100, 100}, {100, 100});
    EXPECT_LT(room.above, 0);
    EXPECT_LT(room.below, 0);
    EXPECT_LT(room.left, 0);
    EXPECT_LT(room.right, 0);
}

TEST(Room, ForADocumentIsWhatItsFrameHasAroundTheHead) {
    Document document = PassportOf35By45();
    document.eyes = {21.0, 27.0};
    const FaceBox face{900, 900, 200, 200};
    const double side = 34 / kMedianHead.Height(); // millimetres of the square
    const Room least = RoomForDocument(document, face, {2000, 2000});
    EXPECT_NEAR(least.below * side, 24 - (kMedianHead.chin - kMedianHead.eyes) * side, 1e-9);
    EXPECT_NEAR(least.above * side, 45 - 34 - least.below * side, 1e-9);
    EXPECT_NEAR((least.left + least.right + 2 * kHalfHead) * side, 35, 1e-9);
}

TEST(Room, ForADocumentFollowsTheFrameAsFarAsTheBandsLeaveRoom) {
    const Document document = PassportOf35By45();
    const Room wide = RoomForDocument(document, {900, 900, 200, 200}, {2000, 2000});
    // Some less above: the frame goes down, and wants as much more below.
    const auto top = static_cast<int32>((wide.above - kMedianHead.crown) * 200) - 6;
    const FaceBox high{900, top, 200, 200};
    const Room least = RoomForDocument(document, high, {2000, 2000});
    EXPECT_LT(least.above, wide.above);
    EXPECT_GT(least.below, wide.below);
    EXPECT_LE(least.above, RoomOf(high, {2000, 2000}).above);
}

TEST(Room, IsTooSmallWhereAPortraitWouldLackItAndNowhereElse) {
    test::Random random(35);
    int32 fitting = 0, lacking = 0;
    for (int32 i = 0; i < 2000; ++i) {
        Document document = PassportOf35By45();
        if (random.Int(0, 1) == 0) document.eyes = {22.0, 32.0};
        if (random.Int(0, 2) == 0) document.above = {2.0, 6.0};
        const int32 side = random.Int(40, 400);
        const ImageSize photo{random.Int(2 * side, 4 * side), random.Int(2 * side, 4 * side)};
        const FaceBox face{random.Int(0, photo.width - side), random.Int(0, photo.height - side), side, side};
        const FramePlan plan = FrameWithin(
            WishOf(document), {static_cast<double>(face.x), static_cast<double>(face.y), side * 1.0, side * 1.0},
            {0, 0, static_cast<double>(photo.width), static_cast<double>(photo.height)});
        const Room is = RoomOf(face, photo), least = RoomForDocument(document, face, photo);
        EXPECT_EQ(is.above<least.above, plan.missing.top> 0) << i;
        EXPECT_EQ(is.below<least.below, plan.missing.bottom> 0) << i;
        EXPECT_EQ(is.left<least.left, plan.missing.left> 0) << i;
        EXPECT_EQ(is.right<least.right, plan.missing.right> 0) << i;
        ++(plan.fits ? fitting : lacking);
    }
    EXPECT_GT(fitting, 100);
    EXPECT_GT(lacking, 100);
}

TEST(Millimetres, AreMeasuredToTheHairWhereTheDocumentSaysSo) {
    Document document = PassportOf35By45();
    const FaceBox face{100, 150, 150, 150};
    const double skull = HeadMillimetres(face, {350, 450}, document);
    const double above = AboveHeadMillimetres(face, {350, 450}, document);
    document.headTop = HeadTop::hair;
    const double hair = (kMedianHead.crown - kMedianHead.hair) * 15;
    EXPECT_NEAR(HeadMillimetres(face, {350, 450}, document) - skull, hair, 1e-9);
    EXPECT_NEAR(above - AboveHeadMillimetres(face, {350, 450}, document), hair, 1e-9);
}

TEST(Proportions, AreTheDocumentsWithinAHundredth) {
    const Document document = PassportOf35By45();
    EXPECT_TRUE(HasProportionsOf(document, {413, 531}));
    EXPECT_TRUE(HasProportionsOf(document, {416, 531}));
    EXPECT_FALSE(HasProportionsOf(document, {420, 531}));
    EXPECT_FALSE(HasProportionsOf(document, {531, 413}));
}

} // namespace
} // namespace orvane::tools
