// Which part of a photograph a document's frame is: sizes in millimetres of a head that lies as the median head does.
#include "tools/documents/frame.h"

#include "tools/documents/documents.h"
#include "tools/documents/head_geometry.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

constexpr PlaneRect kSquare{1000, 2000, 100, 100};
constexpr PlaneRect kEverywhere{-1e6, -1e6, 2e6, 2e6};

/// Lengths of a median head in a frame, in millimetres.
struct Measured {
    double head;       ///< Chin to skull.
    double withHair;   ///< Chin to hair.
    double eyes;       ///< Above the lower edge.
    double aboveHair;  ///< Hair to upper edge.
    double aboveSkull; ///< Skull to upper edge.
    double below;      ///< Chin to lower edge.
    double aside;      ///< The middle of the eyes from that of the frame, to the right.
};

Measured Measure(const FrameWish& wish, const PlaneRect& frame, const PlaneRect& square = kSquare) {
    EXPECT_NEAR(frame.width / frame.height, wish.width / wish.height, 1e-9);
    const double pixel = wish.height / frame.height;
    const auto line = [&](double place) { return (square.top + place * square.height - frame.top) * pixel; };
    const HeadGeometry& head = kMedianHead;
    return {line(head.chin) - line(head.crown),
            line(head.chin) - line(head.hair),
            wish.height - line(head.eyes),
            line(head.hair),
            line(head.crown),
            wish.height - line(head.chin),
            (square.left + head.middle * square.width - frame.left - frame.width / 2) * pixel};
}

void ExpectWithin(const Band& band, double value) {
    constexpr double kRounding = 1e-9;
    EXPECT_GE(value, band.low.value_or(value) - kRounding);
    EXPECT_LE(value, band.high.value_or(value) + kRounding);
}

Document Shipped(const std::string& name) {
    std::vector<Document> documents;
    std::string error;
    EXPECT_TRUE(LoadDocuments(ORVANE_DOCUMENTS, &documents, &error)) << error;
    for (Document& document : documents) {
        if (document.name == name) return document;
    }
    ADD_FAILURE() << name;
    return {};
}

TEST(Frame, WithoutAWordTheHeadIsInTheMiddleOf32To36AndTwiceAsMuchRoomBelowAsAbove) {
    const FrameWish wish;
    const FramePlan plan = PlainFrame(wish, kSquare);
    const Measured measured = Measure(wish, plan.frame);
    EXPECT_NEAR(measured.head, 34, 1e-9);
    EXPECT_NEAR(measured.below, 2 * measured.aboveHair, 1e-9);
    EXPECT_GT(measured.aboveHair, 2);
    EXPECT_NEAR(measured.aside, 0, 1e-9);
    EXPECT_NEAR(plan.head, 34, 1e-9);
    EXPECT_NEAR(plan.eyes, measured.eyes, 1e-9);
}

TEST(Frame, TheHeadIsMeasuredToTheHairWhereTheAuthoritySaysSo) {
    const FrameWish wish = WishOf(Shipped("japan-passport"));
    const Measured measured = Measure(wish, PlainFrame(wish, kSquare).frame);
    EXPECT_NEAR(measured.withHair, 34, 1e-9);
    EXPECT_NEAR(measured.aboveHair, 4, 1e-9);
    EXPECT_NEAR(measured.below, 7, 1e-9);
}

TEST(Frame, TheEyesStandInTheMiddleOfTheirBandWhereTheHairHasRoomThen) {
    const FrameWish wish = WishOf(Shipped("us-passport"));
    const Measured measured = Measure(wish, PlainFrame(wish, kSquare).frame);
    EXPECT_NEAR(measured.withHair, 30, 1e-9);
    EXPECT_NEAR(measured.eyes, 31.5, 1e-9);
    // The template of Germany would cut the hair there.
    const FrameWish german = WishOf(Shipped("germany-passport"));
    const Measured lower = Measure(german, PlainFrame(german, kSquare).frame);
    EXPECT_GT(lower.aboveHair, 1);
    EXPECT_TRUE(german.eyes.Has(lower.eyes)) << lower.eyes;
}

TEST(Frame, EveryShippedDocumentHasItsMedianHeadInItsBandsAndWhole) {
    std::vector<Document> documents;
    std::string error;
    ASSERT_TRUE(LoadDocuments(ORVANE_DOCUMENTS, &documents, &error)) << error;
    for (const Document& document : documents) {
        SCOPED_TRACE(document.name);
        const FrameWish wish = WishOf(document);
        const FramePlan plan = PlainFrame(wish, kSquare);
        const Measured measured = Measure(wish, plan.frame);
        const bool withHair = document.headTop == HeadTop::hair;
        ExpectWithin(document.head, withHair ? measured.withHair : measured.head);
        ExpectWithin(document.eyes, measured.eyes);
        ExpectWithin(document.above, withHair ? measured.aboveHair : measured.aboveSkull);
        EXPECT_GT(measured.aboveHair, 0.5);
        EXPECT_GT(measured.below, 0.5);
    }
}

TEST(Frame, WithoutABandTheHeadTakesThreeQuartersOfA35By45InIt) {
    FrameWish wish;
    wish.head = Band();
    EXPECT_NEAR(Measure(wish, PlainFrame(wish, kSquare).frame).head, 33.75, 1e-9);
    wish.width = 90; // wide
    EXPECT_NEAR(Measure(wish, PlainFrame(wish, kSquare).frame).head, 33.75, 1e-9);
    wish.width = 28; // narrow
    EXPECT_NEAR(Measure(wish, PlainFrame(wish, kSquare).frame).head, 27, 1e-9);
}

TEST(Frame, OfABandWithOneEndThePlainSizeIsTakenWhereItMay) {
    FrameWish wish;
    wish.head = Band{30, {}};
    EXPECT_NEAR(Measure(wish, PlainFrame(wish, kSquare).frame).head, 33.75, 1e-9);
    wish.head = Band{{}, 30};
    EXPECT_NEAR(Measure(wish, PlainFrame(wish, kSquare).frame).head, 28.5, 1e-9);
}

TEST(Frame, AHeadIsNoHigherThanThePortraitWhoseBandHasRoomForIt) {
    FrameWish wish;
    wish.head = {44, std::nullopt};
    EXPECT_NEAR(PlainFrame(wish, kSquare).head, 45, 1e-9);
}

TEST(Frame, ACropRatioCountsSidesOfTheSquareAroundItsMiddle) {
    FrameWish wish;
    wish.cropRatio = 1.0;
    const PlaneRect frame = PlainFrame(wish, kSquare).frame;
    EXPECT_NEAR(frame.height, 300, 1e-9);
    EXPECT_NEAR(frame.top + frame.height / 2, 2050, 1e-9);
}

TEST(Frame, ThatFitsIsThePlainOne) {
    const FrameWish wish;
    const FramePlan plan = FrameWithin(wish, kSquare, kEverywhere);
    EXPECT_TRUE(plan.fits);
    EXPECT_EQ(plan.frame.top, PlainFrame(wish, kSquare).frame.top);
    EXPECT_EQ(plan.frame.height, PlainFrame(wish, kSquare).frame.height);
}

TEST(Frame, MovesWithinWhatTheBandsLeave) {
    const FrameWish wish;
    const PlaneRect plain = PlainFrame(wish, kSquare).frame;
    const double millimetre = plain.height / 45;
    // A photograph that ends a millimetre too early above, below, on either side.
    const PlaneRect bounds[] = {{plain.left, plain.top + millimetre, plain.width, 1e4},
                                {plain.left, plain.top - 1e4, plain.width, 1e4 + plain.height - millimetre},
                                {plain.left + millimetre, plain.top, 1e4, plain.height},
                                {plain.left - 1e4, plain.top, 1e4 + plain.width - millimetre, plain.height}};
    for (const PlaneRect& bound : bounds) {
        const FramePlan plan = FrameWithin(wish, kSquare, bound);
        EXPECT_TRUE(plan.fits);
        EXPECT_NEAR(plan.head, 34, 1e-9);
        EXPECT_GE(plan.frame.top, bound.top - 1e-6);
        EXPECT_GE(plan.frame.left, bound.left - 1e-6);
        EXPECT_LE(plan.frame.Right(), bound.Right() + 1e-6);
        EXPECT_LE(plan.frame.Bottom(), bound.Bottom() + 1e-6);
    }
}

TEST(Frame, LetsTheHeadGrowHalfwayToTheEndOfItsBand) {
    const FrameWish wish;
    const PlaneRect plain = PlainFrame(wish, kSquare).frame;
    const auto within = [&](double part) {
        const PlaneRect bounds{plain.left + plain.width * (1 - part) / 2, plain.top - 1e4, plain.width * part, 2e4};
        return FrameWithin(wish, kSquare, bounds);
    };
    EXPECT_TRUE(within(0.98).fits);
    EXPECT_GT(within(0.98).head, 34.5);
    EXPECT_LE(within(0.98).head, 35);
    EXPECT_FALSE(within(0.95).fits); // 34 / 0.95 is 35.8
    EXPECT_NEAR(within(0.95).head, 34, 1e-9);
}

TEST(Frame, WhatIsMissingIsToldInMillimetresOfThePlainFrame) {
    const FrameWish wish;
    const PlaneRect plain = PlainFrame(wish, kSquare).frame;
    const double millimetre = plain.height / 45;
    const PlaneRect bounds{plain.left + 5 * millimetre, plain.top + 6 * millimetre, plain.width - 5 * millimetre,
                           plain.height - 6 * millimetre};
    const FramePlan plan = FrameWithin(wish, kSquare, bounds);
    EXPECT_FALSE(plan.fits);
    EXPECT_NEAR(plan.missing.left, 5, 1e-6);
    EXPECT_NEAR(plan.missing.top, 6, 1e-6);
    EXPECT_EQ(plan.missing.right, 0);
    EXPECT_EQ(plan.missing.bottom, 0);
    EXPECT_EQ(ShortageText(plan.missing), "6.0 mm above, 5.0 mm on the left");
    EXPECT_EQ(ShortageText({0, 0, 0.25, 3}), "3.0 mm below, 0.2 mm on the right");
}

TEST(Frame, MovedInsideKeepsItsProportions) {
    const PlaneRect bounds{0, 0, 100, 100};
    const PlaneRect moved = MovedInside({-10, 50, 70, 90}, bounds);
    EXPECT_EQ(moved.left, 0);
    EXPECT_EQ(moved.top, 10);
    EXPECT_EQ(moved.width, 70);
    EXPECT_EQ(moved.height, 90);
    const PlaneRect shrunk = MovedInside({-10, -30, 140, 180}, bounds);
    EXPECT_NEAR(shrunk.height, 100, 1e-9);
    EXPECT_NEAR(shrunk.width, 140.0 / 1.8, 1e-9);
    EXPECT_NEAR(shrunk.top, 0, 1e-9);
    EXPECT_GE(shrunk.left, 0);
    EXPECT_LE(shrunk.Right(), 100);
}

} // namespace
} // namespace orvane::tools
