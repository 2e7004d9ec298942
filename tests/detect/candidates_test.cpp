#include "detect/candidates.h"

#include "detect/classifier_file.h"
#include "image/session_images.h"
#include "tests/reference/candidates.h"
#include "tests/support/detector_settings.h"
#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane::test {
namespace {

class Candidates : public ::testing::Test {
protected:
    ~Candidates() override {
        g_sourceImage.Reset();
        g_classifier = {};
    }

    DetectorSettings settings_;
};

reference::Limits PresentLimits() { return {g_groupRadius, g_groupSizeRatio, g_minGroupMembers}; }

CandidateList Placed(const std::vector<Candidate>& candidates) {
    CandidateList list;
    for (const Candidate& candidate : candidates) list.Place(candidate);
    return list;
}

std::vector<std::size_t> Counts(const CandidateList& list) {
    std::vector<std::size_t> counts;
    for (const auto& group : list.groups) counts.push_back(group.members.size());
    return counts;
}

/// Groups, members and their order, and the face of both.
void ExpectSame(const CandidateList& list, const std::vector<reference::Group>& expected, const char* what, int run) {
    ASSERT_EQ(expected.size(), list.groups.size()) << what << ", run " << run;
    for (std::size_t g = 0; g < expected.size(); ++g) {
        const auto& members = list.groups[g].members;
        ASSERT_EQ(expected[g].size(), members.size()) << what << ", run " << run << ", group " << g;
        for (std::size_t m = 0; m < members.size(); ++m) {
            const reference::Hit& hit = expected[g][m];
            const bool same = hit.x == members[m].x && hit.y == members[m].y && hit.size == members[m].size;
            ASSERT_TRUE(same) << what << ", run " << run << ", member " << m << " of group " << g;
        }
    }
    reference::Face expectedFace{-1, -2, -3, -4};
    FaceRecord face{-1, -2, -3, -4};
    int32 found = -1;
    GroupCandidates(list, &face, &found);
    EXPECT_EQ(reference::Merge(expected, expectedFace, PresentLimits()), found) << what << ", run " << run;
    EXPECT_EQ(expectedFace.centreX, face.centreX) << what << ", run " << run;
    EXPECT_EQ(expectedFace.centreY, face.centreY) << what << ", run " << run;
    EXPECT_EQ(expectedFace.width, face.faceWidth) << what << ", run " << run;
    EXPECT_EQ(expectedFace.height, face.faceHeight) << what << ", run " << run;
}

TEST_F(Candidates, MatchUpToTheRadiusAndNotBeyond) {
    struct {
        int32 dx, dy;
        std::size_t groups;
    } const cases[] = {{40, 0, 1},  {0, 40, 1}, {-40, 0, 1}, {24, 32, 1}, {-24, -32, 1}, {41, 0, 2},
                       {0, -41, 2}, {40, 1, 2}, {28, 28, 1}, {29, 28, 2}, {-29, 28, 2}};
    for (const auto& c : cases) { // 40, 1 has a squared distance of 1601; 29, 28 one of 1625
        EXPECT_EQ(c.groups, Placed({{100, 100, 30}, {100 + c.dx, 100 + c.dy, 30}}).groups.size())
            << c.dx << ", " << c.dy;
    }
}

TEST_F(Candidates, MatchByTheSquareOfAFractionalRadius) {
    g_groupRadius = 1.5F; // squared 2.25: (1, 1) lies within, (2, 0) without
    EXPECT_EQ(1u, Placed({{10, 10, 30}, {11, 11, 30}}).groups.size());
    EXPECT_EQ(2u, Placed({{10, 10, 30}, {12, 10, 30}}).groups.size());
}

TEST_F(Candidates, MatchMembersUpToTheSizeRatioSmaller) {
    struct {
        int32 member, candidate;
        std::size_t groups;
    } const cases[] = {{40, 100, 1}, {39, 100, 2}, {40, 101, 2}, {100, 40, 1}, {100, 1, 1}, {1, 2, 1}, {1, 3, 2}};
    for (const auto& c : cases) {
        EXPECT_EQ(c.groups, Placed({{0, 0, c.member}, {0, 0, c.candidate}}).groups.size())
            << "size " << c.candidate << " after " << c.member;
    }
}

TEST_F(Candidates, ThatAreFarApartDoNotWrapAround) {
    constexpr int32 kFar = std::numeric_limits<int32>::max();
    EXPECT_EQ(2u, Placed({{kFar, kFar, 30}, {-kFar, -kFar, 30}}).groups.size());
    EXPECT_EQ(2u, Placed({{65536, 0, 30}, {0, 0, 30}}).groups.size());
}

TEST_F(Candidates, JoinTheFirstGroupWithAMatchingMemberAndNeverMergeTwo) {
    // The third matches a member of either group; the fourth only one of the first group's new member.
    const CandidateList list = Placed({{0, 0, 30}, {70, 0, 30}, {35, 0, 30}, {66, 0, 30}});
    EXPECT_EQ((std::vector<std::size_t>{3, 1}), Counts(list));
    EXPECT_EQ(66, list.groups[0].members[2].x) << "the first group is asked first, though the second is nearer";
}

TEST_F(Candidates, MatchAnyMemberNotOnlyFirstOrLast) {
    const CandidateList list = Placed({{0, 0, 30}, {40, 0, 30}, {80, 0, 30}, {40, 40, 30}, {40, -40, 30}});
    EXPECT_EQ((std::vector<std::size_t>{5}), Counts(list));
}

TEST_F(Candidates, InsideTheBoundsOfAGroupButNearNoMemberOpenOneOfTheirOwn) {
    std::vector<Candidate> ring;
    for (int32 i = 0; i <= 200; i += 20) ring.push_back({i, 0, 30});
    for (int32 i = 0; i <= 200; i += 20) ring.push_back({0, i, 30});
    for (int32 i = 0; i <= 200; i += 20) ring.push_back({200, i, 30});
    for (int32 i = 0; i <= 200; i += 20) ring.push_back({i, 200, 30});
    ASSERT_EQ((std::vector<std::size_t>{44}), Counts(Placed(ring)));
    ring.push_back({100, 100, 30});
    EXPECT_EQ((std::vector<std::size_t>{44, 1}), Counts(Placed(ring)));
}

TEST_F(Candidates, NeedThreeToAGroupWhateverTheOtherGroupsHave) {
    std::vector<Candidate> candidates = {{10, 10, 30}, {11, 10, 30}, {12, 13, 33}};
    for (int32 i = 0; i < 2; ++i) candidates.push_back({500, 500, 30});
    FaceRecord face;
    int32 found = -1;
    GroupCandidates(Placed(candidates), &face, &found);
    EXPECT_EQ(1, found);
    EXPECT_EQ(31, face.faceWidth) << "the group of three, with its truncated mean size";
    candidates.push_back({500, 500, 30});
    GroupCandidates(Placed(candidates), &face, &found);
    EXPECT_EQ(2, found);
    EXPECT_EQ(500, face.centreX);
    g_minGroupMembers = 4;
    GroupCandidates(Placed(candidates), &face, &found);
    EXPECT_EQ(0, found);
}

TEST_F(Candidates, WithoutAnyLeaveTheRecord) {
    FaceRecord face{1, 2, 3, 4};
    int32 found = 9;
    GroupCandidates({}, &face, &found);
    EXPECT_EQ(0, found);
    EXPECT_EQ(1, face.centreX);
    EXPECT_EQ(4, face.faceHeight);
}

TEST_F(Candidates, OfTheGroupOpenedLastAreTheFace) {
    std::vector<Candidate> candidates(9, {300, 300, 90}); // many, and large, but first
    for (int32 i = 0; i < 3; ++i) candidates.push_back({50, 60, 20});
    FaceRecord face;
    int32 found = 0;
    GroupCandidates(Placed(candidates), &face, &found);
    EXPECT_EQ(2, found);
    EXPECT_EQ(50, face.centreX);
    EXPECT_EQ(60, face.centreY);
    EXPECT_EQ(20, face.faceWidth);
    EXPECT_EQ(20, face.faceHeight);
}

TEST_F(Candidates, MergeByTheirGroupsMeansOnce) {
    // Two groups of sizes 20 and 60 at one place: the larger opened its own, and its mean can't join the
    // smaller; the other way round it does, since the size test is one-sided.
    const std::vector<Candidate> small(3, {100, 100, 20}), large(4, {101, 101, 60});
    std::vector<Candidate> smallFirst(small), largeApart;
    smallFirst.insert(smallFirst.end(), large.begin(), large.end());
    FaceRecord face;
    int32 found = 0;
    GroupCandidates(Placed(smallFirst), &face, &found);
    EXPECT_EQ(2, found);
    EXPECT_EQ(60, face.faceWidth);

    // Two chains whose members keep apart and whose means are near.
    g_groupRadius = 10.0F;
    for (const int32 x : {100, 110, 120}) largeApart.push_back({x, 100, 60});
    for (const int32 x : {100, 110, 120}) largeApart.push_back({x, 111, 60});
    const CandidateList apart = Placed(largeApart);
    ASSERT_EQ((std::vector<std::size_t>{3, 3}), Counts(apart));
    g_groupRadius = 11.0F;
    GroupCandidates(apart, &face, &found);
    EXPECT_EQ(1, found);
    EXPECT_EQ(110, face.centreX);
    EXPECT_EQ(105, face.centreY) << "(100 + 111) / 2, truncated";
}

TEST_F(Candidates, BecomeARecordByTheTruncatingFormula) {
    struct {
        int32 x, y, size, centreX, centreY;
    } const cases[] = {
        {100, 80, 40, 100, 80}, {100, 80, 41, 100, 80}, {10, 10, 41, 11, 11}, {20, 21, 41, 21, 21}, {5, 5, 1, 5, 5}};
    // left = trunc(10 - 20.5) = -10; centre = trunc(-10 + 20.5 + 0.5) = 11: below zero the truncation turns up
    for (const auto& c : cases) {
        FaceRecord face;
        int32 found = 0;
        GroupCandidates(Placed(std::vector<Candidate>(3, {c.x, c.y, c.size})), &face, &found);
        EXPECT_EQ(c.centreX, face.centreX) << c.x << ", " << c.y << ", " << c.size;
        EXPECT_EQ(c.centreY, face.centreY) << c.x << ", " << c.y << ", " << c.size;
        EXPECT_EQ(c.size, face.faceWidth);
    }
}

TEST_F(Candidates, EqualThePlainListsOverRandomSets) {
    Random random;
    for (int run = 0; run < 300; ++run) {
        g_groupRadius = static_cast<float>(random.Real(0.0, 60.0));
        g_groupSizeRatio = static_cast<float>(random.Real(0.5, 3.0));
        g_minGroupMembers = random.Int(1, 5);
        const int32 extent = random.Int(1, 600);
        const int32 count = random.Int(0, 400);
        CandidateList list;
        std::vector<reference::Group> expected;
        for (int32 i = 0; i < count; ++i) {
            const Candidate c{random.Int(-5, extent), random.Int(-5, extent), random.Int(1, 200)};
            list.Place(c);
            reference::Place(expected, {c.x, c.y, c.size}, PresentLimits());
        }
        ExpectSame(list, expected, "random set", run);
    }
}

/// A mask with stale bytes beside its rows, which no harvest may take for hits.
ImageBuffer MaskOf(const std::vector<uint8>& bytes, int32 width, int32 height) {
    ImageBuffer mask;
    EXPECT_TRUE(mask.Create(width, height, 1, kDepth8u, 0));
    std::fill_n(mask.data, mask.Step() * height, uint8{255});
    for (int32 y = 0; y < height; ++y) {
        std::copy_n(bytes.begin() + std::ptrdiff_t{y} * width, width, RowAt(mask.data, mask.Step(), y));
    }
    return mask;
}

TEST_F(Candidates, AreHarvestedAsThePlainFormDoesAtEveryScale) {
    Random random;
    for (int run = 0; run < 60; ++run) {
        CandidateList list;
        std::vector<reference::Group> expected;
        float scale = static_cast<float>(random.Real(1.0, 3.0));
        const int32 windowWidth = random.Int(1, 40);
        const int density = random.Int(1, 30);
        for (int scales = 0; scales < 5; ++scales, scale *= 1.05F) {
            const int32 width = random.Int(1, 60), height = random.Int(1, 40);
            std::vector<uint8> bytes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
            for (uint8& byte : bytes) byte = static_cast<uint8>(random.Int(0, density) == 0 ? random.Int(1, 255) : 0);
            HarvestMask(MaskOf(bytes, width, height), windowWidth, 99, scale, list);
            reference::Harvest(bytes, width, height, windowWidth, scale, expected, PresentLimits());
        }
        ExpectSame(list, expected, "harvest", run);
    }
}

TEST_F(Candidates, OfOneHitHaveTheWindowsCentreByItsWidthAlone) {
    const auto place = [](int32 windowWidth, float scale) {
        CandidateList list;
        HarvestMask(MaskOf({0, 0, 0, 0, 0, 7}, 3, 2), windowWidth, 1000, scale, list);
        return list.groups.at(0).members.at(0);
    };
    const Candidate even = place(24, 2.25F); // (2 + 12) * 2.25 = 31.5, (1 + 12) * 2.25 = 29.25
    EXPECT_EQ(31, even.x);
    EXPECT_EQ(29, even.y);
    EXPECT_EQ(54, even.size);
    const Candidate odd = place(25, 1.0F); // 2 + 12.5, 1 + 12.5
    EXPECT_EQ(14, odd.x);
    EXPECT_EQ(13, odd.y);
    EXPECT_EQ(25, odd.size);
}

TEST_F(Candidates, OfAMaskWithoutPixelsAreNone) {
    CandidateList list;
    HarvestMask(ImageBuffer(), 24, 24, 1.0F, list);
    EXPECT_TRUE(list.groups.empty());
}

TEST_F(Candidates, OfDenseMasksAreEqualToThePlainLists) {
    struct {
        const char* what;
        bool (*hit)(int32 x, int32 y);
    } const patterns[] = {
        {"all", [](int32, int32) { return true; }},
        {"ring and kernel",
         [](int32 x, int32 y) {
             const auto within = [&](int32 margin) {
                 return x >= margin && y >= margin && x < 160 - margin && y < 120 - margin;
             };
             return !within(5) || within(50);
         }},
        {"stripes out of reach", [](int32 x, int32) { return x % 45 == 0; }},
        {"grid out of reach", [](int32 x, int32 y) { return x % 45 == 0 && y % 45 == 0; }},
        {"checkers", [](int32 x, int32 y) { return (x + y) % 2 == 0; }},
    };
    for (const auto& pattern : patterns) {
        std::vector<uint8> bytes;
        for (int32 y = 0; y < 120; ++y) {
            for (int32 x = 0; x < 160; ++x) bytes.push_back(pattern.hit(x, y) ? 255 : 0);
        }
        const ImageBuffer mask = MaskOf(bytes, 160, 120);
        CandidateList list;
        std::vector<reference::Group> expected;
        HarvestMask(mask, 24, 24, 1.0F, list);
        reference::Harvest(bytes, 160, 120, 24, 1.0F, expected, PresentLimits());
        ExpectSame(list, expected, pattern.what, 0);
    }
}

/// The groups' sizes after a scan of many scales whose masks have a hit wherever `hit` says so.
std::vector<std::size_t> CountsOfScan(bool (*hit)(int32 x, int32 y)) {
    CandidateList list;
    for (float scale = 1.0F; scale < 1.3F; scale *= 1.05F) {
        const auto width = static_cast<int32>(320 / scale), height = static_cast<int32>(240 / scale);
        std::vector<uint8> bytes;
        for (int32 y = 0; y < height; ++y) {
            for (int32 x = 0; x < width; ++x) {
                bytes.push_back(hit(static_cast<int32>(x * scale), static_cast<int32>(y * scale)) ? 1 : 0);
            }
        }
        HarvestMask(MaskOf(bytes, width, height), 24, 24, scale, list);
    }
    return Counts(list);
}

TEST_F(Candidates, OfManyDenseScalesAreGroupedInNoTime) {
    // A third of a million hits, which the plain lists would compare for minutes.
    const auto all = CountsOfScan([](int32, int32) { return true; });
    ASSERT_EQ(1u, all.size());
    EXPECT_GT(all[0], 300000u);
    const auto ringAndKernel = CountsOfScan([](int32 x, int32 y) {
        const auto within = [&](int32 margin) {
            return x >= margin && y >= margin && x < 320 - margin && y < 240 - margin;
        };
        return !within(20) || within(65);
    });
    ASSERT_EQ(2u, ringAndKernel.size());
    EXPECT_GT(ringAndKernel[0], 80000u);
    EXPECT_GT(ringAndKernel[1], 80000u);
}

TEST_F(Candidates, FaceRectOfAnEmptyRecordIsAllZeroWithoutAFlip) {
    ASSERT_TRUE(g_sourceImage.Create(50, 100, 3, kDepth8u, 0));
    int32 x = 1, y = 1, w = 1, h = 1;
    EXPECT_EQ(0, GetFaceRect(&x, &y, &w, &h));
    EXPECT_EQ(0, x);
    EXPECT_EQ(0, y);
    EXPECT_EQ(0, w);
    EXPECT_EQ(0, h);
    g_faceRecord = {30, 40, 0, 20}; // one size alone is no face either
    GetFaceRect(&x, &y, &w, &h);
    EXPECT_EQ(30, x);
    EXPECT_EQ(30, y);
}

TEST_F(Candidates, FaceRectComesBackAsItWasSetUpToTheTruncations) {
    ASSERT_TRUE(g_sourceImage.Create(200, 100, 3, kDepth8u, 0));
    g_classifier.windowWidth = g_classifier.windowHeight = 24;
    struct {
        ImageRect set;
        int32 centreX, centreY;
        ImageRect got;
    } const cases[] = {
        {{10, 10, 40, 40}, 30, 70, {10, 10, 40, 40}},
        {{11, 10, 41, 41}, 31, 70, {10, 10, 41, 41}},
        {{0, 0, 200, 100}, 100, 50, {0, 0, 200, 100}},
        {{20, 30, 10, 50}, 25, 45, {20, 30, 10, 50}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(0, SetFaceRect(c.set.x, c.set.y, c.set.width, c.set.height));
        EXPECT_EQ(c.centreX, g_faceRecord.centreX);
        EXPECT_EQ(c.centreY, g_faceRecord.centreY);
        EXPECT_EQ(c.set.width, g_faceRecord.faceWidth);
        EXPECT_EQ(c.set.height, g_faceRecord.faceHeight);
        ImageRect got{};
        EXPECT_EQ(0, GetFaceRect(&got.x, &got.y, &got.width, &got.height));
        EXPECT_EQ(c.got.x, got.x);
        EXPECT_EQ(c.got.y, got.y);
        EXPECT_EQ(c.got.width, got.width);
        EXPECT_EQ(c.got.height, got.height);
    }
}

TEST_F(Candidates, FaceRectIsWrittenWithoutAClassifierAndSaysSo) {
    ASSERT_TRUE(g_sourceImage.Create(200, 100, 3, kDepth8u, 0));
    for (const ImageSize window : {ImageSize{0, 0}, {24, 0}, {0, 24}, {-1, 24}}) {
        g_faceRecord = {};
        g_classifier.windowWidth = window.width;
        g_classifier.windowHeight = window.height;
        EXPECT_EQ(-10, SetFaceRect(10, 10, 40, 40)) << window.width << " by " << window.height;
        EXPECT_EQ(30, g_faceRecord.centreX);
        EXPECT_EQ(70, g_faceRecord.centreY);
        EXPECT_EQ(40, g_faceRecord.faceWidth);
    }
}

TEST_F(Candidates, FaceRectOfExtremeNumbersDoesNotOverflow) {
    constexpr int32 kMax = std::numeric_limits<int32>::max(), kMin = std::numeric_limits<int32>::min();
    for (const int32 a : {kMin, -1, 0, kMax}) {
        for (const int32 b : {kMin, 0, kMax}) {
            SetFaceRect(a, b, b, a); // the sanitizer judges
            int32 x, y, w, h;
            EXPECT_EQ(0, GetFaceRect(&x, &y, &w, &h));
            EXPECT_EQ(b, w);
            EXPECT_EQ(a, h);
        }
    }
}

} // namespace
} // namespace orvane::test
