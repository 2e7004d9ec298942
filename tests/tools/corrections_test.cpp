// Faces that were marked by hand, out of a file: which rows are taken, and what is said of the others.
#include "tools/orvane/corrections.h"

#include "tests/tools/temp_folder.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using Lines = std::vector<std::string>;

struct Read {
    std::vector<Correction> corrections;
    Lines errors;
};

Read ReadOf(const std::string& content) {
    Read read;
    ReadCorrections(content, &read.corrections, &read.errors);
    return read;
}

TEST(Corrections, AreReadByTheNamesOfTheirColumns) {
    const Read read =
        ReadOf("note,height,width,y,x,photograph\r\n,4,3,2,1,a.jpg\r\n\"b\"\"\",40,30,20,-10,\"in/b,\n.jpg\"");
    EXPECT_EQ(read.errors, Lines());
    ASSERT_EQ(read.corrections.size(), 2U);
    EXPECT_EQ(read.corrections[0].photo, "a.jpg");
    EXPECT_EQ(read.corrections[0].face, (FaceBox{1, 2, 3, 4}));
    EXPECT_EQ(read.corrections[1].photo, "in/b,\n.jpg");
    EXPECT_EQ(read.corrections[1].face, (FaceBox{-10, 20, 30, 40})) << "without the last line's end";
    EXPECT_EQ(read.corrections[1].row, 3U);
}

TEST(Corrections, OfASpreadsheetHaveAMarkInFrontAndEmptyLines) {
    const Read read = ReadOf("\xEF\xBB\xBFphotograph,x,y,width,height\r\n\r\na,1,2,3,4\r\n\r\n");
    EXPECT_EQ(read.errors, Lines());
    EXPECT_EQ(read.corrections.size(), 1U);
}

TEST(Corrections, EachBadRowHasALineOfItsOwn) {
    const std::string head = "photograph,x,y,width,height\n";
    const std::pair<std::string, Lines> cases[] = {
        {"", {"the first row does not name the columns photograph,x,y,width,height"}},
        {"a.jpg,1,2,3,4\n", {"the first row does not name the columns photograph,x,y,width,height"}},
        {head + "a,1,2,3\n", {"row 2 has 4 fields and not 5"}},
        {head + "a,1,2,3,4\nb,1,2,3,4,5\nc,1,2,3,4\n", {"row 3 has 6 fields and not 5"}},
        {head + "a,1,2,0,4\nb,1,2,3,4.5\n,1,2,3,4\nd,1,2,-3,4\ne,x,2,3,4\n",
         {"row 2 has no photograph and rectangle in whole pixels",
          "row 3 has no photograph and rectangle in whole pixels",
          "row 4 has no photograph and rectangle in whole pixels",
          "row 5 has no photograph and rectangle in whole pixels",
          "row 6 has no photograph and rectangle in whole pixels"}},
        {head + "a,1,2,3,4\nb,1,2,3,4\na,1,2,3,4\n", {"row 4 has the photograph of row 2, 'a'"}},
        {head + "a,1,2,3,4\n\"b,1,2,3,4\n", {"row 3 breaks off"}}};
    for (const auto& [content, errors] : cases) EXPECT_EQ(ReadOf(content).errors, errors) << content;
    EXPECT_EQ(ReadOf(head).errors, Lines()) << "no correction is no error";
}

TEST(Corrections, FindTheirPhotosByPathOrByTheFileThatItLeadsTo) {
    const TempFolder folder;
    folder.Put("a.jpg", "a");
    folder.Put("b.jpg", "b");
    folder.Put("c.jpg", "c");
    const std::string a = folder / "a.jpg";
    const std::string b = folder / "b.jpg";
    Lines strangers, errors;
    const auto faces = Correct({a, b, a, "gone.jpg"},
                               {{a, {1, 1, 1, 1}, 2},
                                {folder / "./b.jpg", {2, 2, 2, 2}, 3},
                                {folder / "c.jpg", {3, 3, 3, 3}, 4},
                                {"missing.jpg", {4, 4, 4, 4}, 5},
                                {"gone.jpg", {5, 5, 5, 5}, 6}},
                               &strangers, &errors);
    ASSERT_EQ(faces.size(), 4U);
    EXPECT_EQ(faces[0], (FaceBox{1, 1, 1, 1}));
    EXPECT_EQ(faces[1], (FaceBox{2, 2, 2, 2}));
    EXPECT_EQ(faces[2], (FaceBox{1, 1, 1, 1})) << "a photo that is listed twice";
    EXPECT_EQ(faces[3], (FaceBox{5, 5, 5, 5}));
    EXPECT_EQ(strangers, (Lines{"row 4: '" + (folder / "c.jpg") + "' is not among the photos",
                                "row 5: 'missing.jpg' is not among the photos"}));
    EXPECT_EQ(errors, Lines());
}

TEST(Corrections, OfOnePhotoUnderTwoNamesAreDouble) {
    const TempFolder folder;
    folder.Put("a.jpg", "a");
    const std::string a = folder / "a.jpg";
    Lines strangers, errors;
    Correct({a}, {{a, {1, 1, 1, 1}, 2}, {folder / "./a.jpg", {2, 2, 2, 2}, 3}}, &strangers, &errors);
    EXPECT_EQ(errors, Lines{"row 3 has the photograph of row 2, '" + (folder / "./a.jpg") + "'"});
}

TEST(Corrections, OfAFileThatIsListedUnderTwoNamesAreDoubleWithOneOfEither) {
    const TempFolder folder;
    folder.Put("a.jpg", "a");
    const std::string a = folder / "a.jpg";
    const std::string again = folder / "./a.jpg";
    const std::string third = folder / "././a.jpg";
    for (const std::string& first : {a, again}) {
        Lines strangers, errors;
        const auto faces =
            Correct({a, again}, {{first, {1, 1, 1, 1}, 2}, {third, {2, 2, 2, 2}, 3}}, &strangers, &errors);
        EXPECT_EQ(errors, Lines{"row 3 has the photograph of row 2, '" + third + "'"});
        EXPECT_EQ(faces[first == a ? 0 : 1], (FaceBox{1, 1, 1, 1}));
    }
}

TEST(FaceOptions, LieWithinAPhoto) {
    EXPECT_TRUE(LiesWithin({0, 0, 10, 20}, 10, 20));
    EXPECT_FALSE(LiesWithin({1, 0, 10, 20}, 10, 20));
    EXPECT_FALSE(LiesWithin({0, 1, 10, 20}, 10, 20));
    EXPECT_FALSE(LiesWithin({-1, 0, 10, 20}, 10, 20));
    EXPECT_FALSE(LiesWithin({0, -1, 10, 20}, 10, 20));
    EXPECT_FALSE(LiesWithin({2147483647, 0, 2147483647, 1}, 10, 20));
}

} // namespace
} // namespace orvane::tools
