// Room and millimetres, by the places of crown, eyes and chin in the square.
#include "tools/check/framing.h"

#include "tests/check/drawn_picture.h"

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

TEST(Room, OfAPortraitThatFillsItsDocumentIsWhatTheDocumentNeeds) {
    Document document = PassportOf35By45();
    document.eyes = {22.0, 32.0};
    // A head of 34 mm with the eyes 27 mm above the lower edge, at ten pixels a millimetre.
    const double side = 340 / kMedianHead.Height();
    const FaceBox face{static_cast<int32>(175 - side / 2 + 0.5),
                       static_cast<int32>(450 - 270 - kMedianHead.eyes * side + 0.5), static_cast<int32>(side + 0.5),
                       static_cast<int32>(side + 0.5)};
    const ImageSize portrait{350, 450};
    EXPECT_NEAR(HeadMillimetres(face, portrait, document), 34, 0.1);
    EXPECT_NEAR(EyeLineMillimetres(face, portrait, document), 27, 0.1);
    const Room is = RoomOf(face, portrait);
    const Room needed = RoomForDocument(document);
    EXPECT_NEAR(is.above, needed.above, 0.02);
    EXPECT_NEAR(is.below, needed.below, 0.02);
    EXPECT_NEAR(is.left, needed.left, 0.02);
    EXPECT_NEAR(is.right, needed.right, 0.02);
}

TEST(Room, GoesByWhatIsAboveTheHeadWhereNothingIsSaidOfTheEyes) {
    Document document = PassportOf35By45();
    document.above = {4.0, 6.0};
    const double side = 34 / kMedianHead.Height();
    EXPECT_NEAR(RoomForDocument(document).above * side, 5, 1e-9);
    EXPECT_NEAR(RoomForDocument(document).below * side, 45 - 34 - 5, 1e-9);
    document.above = {};
    EXPECT_NEAR(RoomForDocument(document).above * side, 5.5, 1e-9);
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
