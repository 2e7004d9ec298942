// The built program and documents: portraits of exactly their pixels, photos that end too early, tables of one's own,
// runs that go on with another document.
#include "tests/tools/placed_tool.h"
#include "tools/support/fingerprint.h"

#include <gtest/gtest.h>
#include <set>

namespace orvane::tools {
namespace {

using Arguments = std::vector<std::string>;
using Lines = std::vector<std::string>;

/// A face of about 120 pixels, and so a head of about 223, with a whole frame of any document around it.
Picture RoomyPhoto() { return PhotoWithSquare(900, 900, 400, 400); }
/// The same with 20 pixels less than the face needs above.
Picture TightPhoto() { return PhotoWithSquare(900, 900, 400, 60); }

/// Colours around and within the square, which scaling blends.
Picture ColourfulPhoto() {
    Picture photo = RoomyPhoto();
    for (int32 y = 0; y < photo.height; ++y) {
        for (int32 x = 0; x < photo.width; ++x) {
            const Colour plain = PixelAt(photo, x, y);
            SetPixel(photo, x, y, {plain.red + x * y % 7, plain.green - (x + 3 * y) % 5, plain.blue + x / 30});
        }
    }
    return photo;
}

class Documents : public testing::Test, protected PlacedTool {
protected:
    Documents() : PlacedTool(ORVANE_TOOL) {
        Work().Put("roomy.png", Encoded(".png", RoomyPhoto()));
        Work().Put("tight.png", Encoded(".png", TightPhoto()));
    }

    Picture Read(const std::string& name) const {
        Picture picture;
        std::string error;
        EXPECT_TRUE(ReadPicture(Work() / name, &picture, &error)) << error;
        return picture;
    }

    /// The size of what became of the roomy photo, and nothing told but its line.
    std::pair<int32, int32> SizeBy(const Arguments& more) const {
        Arguments arguments{"portrait", "roomy.png", "-o", "out.png", "--force"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const ProcessResult result = RunTool(arguments);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(result.err, "");
        const Picture picture = Read("out.png");
        return {picture.width, picture.height};
    }
};

TEST_F(Documents, APortraitHasExactlyThePixelsOfItsDocument) {
    using Size = std::pair<int32, int32>;
    EXPECT_EQ(SizeBy({}), Size(413, 531));
    EXPECT_EQ(SizeBy({"--document", "uk-passport"}), Size(413, 531));
    EXPECT_EQ(SizeBy({"--document", "germany-passport"}), Size(827, 1063));
    EXPECT_EQ(SizeBy({"--document", "us-visa"}), Size(600, 600));
    EXPECT_EQ(SizeBy({"--document", "china-passport"}), Size(390, 567));
    EXPECT_EQ(SizeBy({"--document", "india-passport"}), Size(630, 810));
    EXPECT_EQ(SizeBy({"--size", "35x45mm", "--dpi", "600"}), Size(827, 1063));
    EXPECT_EQ(SizeBy({"--size", "35x45mm", "--dpi", "100", "--head", "32-36mm"}), Size(138, 177));
    EXPECT_EQ(SizeBy({"--size", "35x45mm", "--crop-ratio", "0.8", "--actions", "crop,colour"}), Size(413, 531));
    EXPECT_EQ(SizeBy({"--document", "icao-9303", "--rotate", "3"}), Size(413, 531));
}

/// Where the bright square lies in a portrait: its left and right, top and bottom edge.
struct Box {
    int32 left, top, right, bottom;
};

Box BrightBox(const Picture& picture) {
    Box box{picture.width, picture.height, -1, -1};
    for (int32 y = 0; y < picture.height; ++y) {
        for (int32 x = 0; x < picture.width; ++x) {
            if (PixelAt(picture, x, y).red < 125) continue;
            box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x), std::max(box.bottom, y)};
        }
    }
    return box;
}

TEST_F(Documents, TheFaceHasTheSizeAndThePlaceOfItsBand) {
    EXPECT_EQ(SizeBy({"--json"}).first, 413);
    const Box box = BrightBox(Read("out.png"));
    // A head of 34 mm is 1.86 sides of the face, of which the bright square takes two thirds: 12.2 mm, 144 pixels.
    EXPECT_NEAR(box.right - box.left + 1, 144, 6);
    EXPECT_NEAR(box.bottom - box.top + 1, box.right - box.left + 1, 2);
    // The face begins at the square's left; its point 0.52 stands in the middle.
    EXPECT_NEAR(box.left + 0.52 * 1.5 * 144, 413 / 2.0, 8);
    // Chin, 0.28 faces below the square, stands two thirds of the remaining 9 mm above the lower edge.
    EXPECT_NEAR(box.bottom + 0.28 * 1.5 * 144, 531 - 6.0 * 300 / 25.4, 10);
}

TEST_F(Documents, AStraightenedFaceHasThatSizeToo) {
    SizeBy({"--document", "icao-9303"});
    const Box plain = BrightBox(Read("out.png"));
    SizeBy({"--document", "icao-9303", "--rotate", "357"});
    const Box turned = BrightBox(Read("out.png"));
    EXPECT_NEAR(turned.left + turned.right, plain.left + plain.right, 24);
    EXPECT_NEAR(turned.top + turned.bottom, plain.top + plain.bottom, 24);
    EXPECT_GT(turned.right - turned.left, plain.right - plain.left + 3);
}

TEST_F(Documents, ATurnedFaceNearThePhotosEdgeStandsWhereAnyOtherDoes) {
    // What the photo has left around it lies to one side, and turns about its own middle.
    const auto boxAt = [&](int32 x, int32 y) {
        Work().Put("roomy.png", Encoded(".png", PhotoWithSquare(900, 900, x, y)));
        RunTool({"portrait", "roomy.png", "-o", "out.png", "--force", "--document", "icao-9303", "--rotate", "345",
                 "--fill", "edge"});
        return BrightBox(Read("out.png"));
    };
    const Box middle = boxAt(400, 400);
    for (const auto& [x, y] : {std::pair{130, 400}, {400, 120}, {400, 680}}) {
        const Box box = boxAt(x, y);
        EXPECT_NEAR(box.left + box.right, middle.left + middle.right, 16) << x << "," << y;
        EXPECT_NEAR(box.top + box.bottom, middle.top + middle.bottom, 16) << x << "," << y;
    }
}

TEST_F(Documents, PortraitsAreTheSameOnEverySystem) {
    Work().Put("roomy.png", Encoded(".png", ColourfulPhoto()));
    const auto portrait = [&](const Arguments& more) {
        SizeBy(more);
        const std::vector<uint8> rows = AllRowsOf(Read("out.png"));
        return FingerprintText(ContentFingerprint({rows.begin(), rows.end()}));
    };
    EXPECT_EQ(portrait({}), "71c0dc8b7ff8cc0d");
    EXPECT_EQ(portrait({"--document", "us-visa"}), "6b2a72873df6720d");
    EXPECT_EQ(portrait({"--document", "icao-9303", "--rotate", "353", "--actions", "crop,colour"}), "bd550c5d3fa563bd");
    EXPECT_EQ(portrait({"--size", "35x45mm", "--crop-ratio", "0.9", "--dpi", "600"}), "89f59d8732d3adef");
}

TEST_F(Documents, APhotoThatEndsTooEarlyGivesNoPortraitOfADocument) {
    const ProcessResult result = RunTool({"portrait", "tight.png", "-o", "out.png", "--document", "uk-passport"});
    EXPECT_EQ(result.exitCode, 1);
    ASSERT_EQ(result.err.rfind("orvane: tight.png: the photo lacks ", 0), 0U) << result.err;
    EXPECT_NE(result.err.find(" mm above of the frame for 'uk-passport'; --fill fills it in\n"), std::string::npos);
    EXPECT_FALSE(Has("out.png"));
    const ProcessResult byHand = RunTool({"portrait", "tight.png", "-o", "out.png", "--head", "32-36mm"});
    EXPECT_EQ(byHand.exitCode, 1);
    EXPECT_NE(byHand.err.find(" mm above of the frame; --fill fills it in\n"), std::string::npos) << byHand.err;
    EXPECT_FALSE(Has("out.png"));
}

TEST_F(Documents, WhatIsMissingIsFilledInWhereItMay) {
    const ProcessResult result =
        RunTool({"portrait", "tight.png", "-o", "out.png", "--document", "uk-passport", "--fill", "#3050ff"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err.rfind("orvane: tight.png: warning: the photo lacks ", 0), 0U) << result.err;
    EXPECT_NE(result.err.find(" mm above, which is filled in\n"), std::string::npos) << result.err;
    const Picture filled = Read("out.png");
    EXPECT_EQ(filled.width, 413);
    EXPECT_EQ(filled.height, 531);
    const Colour top = PixelAt(filled, 200, 3);
    EXPECT_EQ(top.red, 0x30);
    EXPECT_EQ(top.green, 0x50);
    EXPECT_EQ(top.blue, 0xff);
    EXPECT_EQ(PixelAt(filled, 200, 528).blue, 50);
    RunTool({"portrait", "tight.png", "-o", "edge.png", "--document", "uk-passport", "--fill", "edge"});
    EXPECT_EQ(PixelAt(Read("edge.png"), 200, 3).blue, 50);
}

TEST_F(Documents, WithoutABandThePortraitIsMadeOfWhatThereIs) {
    const ProcessResult result = RunTool({"portrait", "tight.png", "-o", "out.png"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err.rfind("orvane: tight.png: warning: the photo lacks ", 0), 0U) << result.err;
    EXPECT_NE(result.err.find(" mm above; the portrait is made of what there is\n"), std::string::npos) << result.err;
    const Picture portrait = Read("out.png");
    EXPECT_EQ(portrait.width, 413);
    EXPECT_EQ(portrait.height, 531);
    const Box box = BrightBox(portrait);
    EXPECT_NEAR(box.right - box.left + 1, 144, 6) << "moved, not cut nearer";
}

TEST_F(Documents, ATinyFrameIsRefused) {
    const ProcessResult result = RunTool({"portrait", "roomy.png", "-o", "out.png", "--crop-ratio", "0.001"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "orvane: roomy.png: the frame has next to no pixels; a greater --crop-ratio may help\n");
    EXPECT_FALSE(Has("out.png"));
}

TEST_F(Documents, ALineOfJsonAndAReportTellTheDocument) {
    const ProcessResult result =
        RunTool({"portrait", "roomy.png", "-o", "out.png", "--document", "uk-passport", "--json", "--report", "r.csv"});
    EXPECT_EQ(Objects(result.out).at(0)["document"].text, "uk-passport");
    EXPECT_NE(Work().Get("r.csv").find(",uk-passport\r\n"), std::string::npos);
    const ProcessResult plain = RunTool({"portrait", "roomy.png", "-o", "out2.png", "--json"});
    EXPECT_FALSE(Objects(plain.out).at(0).Has("document"));
}

TEST_F(Documents, StepsShowTheCutAndThePortrait) {
    Make("steps");
    const ProcessResult result = RunTool({"portrait", "roomy.png", "-o", "out.png", "--document", "icao-9303",
                                          "--actions", "crop,colour", "--steps", "steps"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(Names("steps"), (Lines{"roomy-0-crop.png", "roomy-2-colour.png", "roomy-5-output.png"}));
    EXPECT_EQ(AllRowsOf(Read("steps/roomy-5-output.png")), AllRowsOf(Read("out.png")));
}

TEST_F(Documents, ARunGoesOnWithTheSameFrameAndDoesAnotherAgain) {
    Make("in");
    Make("out");
    Work().Put("in/a.png", Encoded(".png", RoomyPhoto()));
    Work().Put("in/b.png", Encoded(".png", RoomyPhoto()));
    const auto statuses = [&](const std::string& document) {
        const ProcessResult result = RunTool(
            {"portrait", "in", "-o", "out", "--resume", "--json", "--report", "r.jsonl", "--document", document});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        std::set<std::string> all;
        for (const JsonValue& row : Objects(Work().Get("r.jsonl"))) all.insert(row["status"].text);
        return all;
    };
    EXPECT_EQ(statuses("uk-passport"), std::set<std::string>{"portrait"});
    EXPECT_EQ(statuses("uk-passport"), std::set<std::string>{"kept"});
    EXPECT_EQ(statuses("us-visa"), std::set<std::string>{"portrait"});
    EXPECT_EQ(Read("out/a.png").width, 600);
    // A table that changed under the same name counts by what it says.
    const std::string own =
        "title = \"T\"\nauthority = \"A\"\nsource = \"S\"\nread = 2026-01-02\nheight = 40\nwidth = ";
    Work().Put("own.toml", "[card]\n" + own + "30\n");
    EXPECT_EQ(statuses("own.toml"), std::set<std::string>{"portrait"});
    EXPECT_EQ(statuses("own.toml"), std::set<std::string>{"kept"});
    Work().Put("own.toml", "[card]\n" + own + "31\n");
    EXPECT_EQ(statuses("own.toml"), std::set<std::string>{"portrait"});
}

TEST_F(Documents, AreListedForPeopleAndForPrograms) {
    const ProcessResult text = RunTool({"documents"});
    EXPECT_EQ(text.exitCode, 0) << text.err;
    EXPECT_NE(text.out.find("uk-passport               35x45 mm, 413x531 px, head 29-34, plain light, no edits; United "
                            "Kingdom, passport on paper; read 2026-11-22\n"),
              std::string::npos)
        << text.out;
    const ProcessResult json = RunTool({"documents", "--json"});
    const std::vector<JsonValue> rows = Objects(json.out);
    ASSERT_EQ(rows.size(), ProcessResult::Lines(text.out).size());
    EXPECT_EQ(rows[0]["name"].text, "schengen-visa");
    EXPECT_EQ(rows[0]["pixelWidth"].text, "413");
    EXPECT_EQ(rows[0]["head"]["to"].text, "36.000");
    EXPECT_EQ(rows[0]["forbidsEdits"].text, "true");
    EXPECT_EQ(rows[2]["forbidsEdits"].text, "false");
    EXPECT_NE(rows[0]["authority"].text, "");
    Work().Put("own.toml", "[card]\ntitle = \"Staff card\"\nauthority = \"A\"\nsource = \"S\"\nread = 2026-01-02\n"
                           "height = 40\nwidth = 30\nhead = { to = 30 }\nleast-kb = 10\nmost-kb = 20\n");
    EXPECT_EQ(RunTool({"documents", "own.toml"}).out,
              "card                      30x40 mm, 354x472 px, head at most 30, at least 10 KB, at most 20 KB; Staff "
              "card; read 2026-01-02\n");
}

TEST_F(Documents, ATableThatIsWrongOrMissingIsToldInOneLine) {
    Work().Put("own.toml", "[card]\ntitle = \"T\"\nwidth = -35\n");
    for (const Arguments& arguments : {Arguments{"documents", "own.toml"},
                                       {"portrait", "roomy.png", "-o", "out.png", "--document", "own.toml"},
                                       {"watch", ".", "-o", ".", "--document", "own.toml"}}) {
        const ProcessResult result = RunTool(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.err, "orvane: own.toml:3: width wants a number, 5 to 1000, not -35\n");
        EXPECT_EQ(result.out, "");
    }
    EXPECT_FALSE(Has("out.png"));
    EXPECT_EQ(RunTool({"documents", "a", "b"}).err, "orvane: 'documents' takes one table, or none\n");
    std::filesystem::remove(TempFolder::Native(Home() / "documents.toml"));
    const ProcessResult gone = RunTool({"documents"});
    EXPECT_EQ(gone.exitCode, 1);
    EXPECT_NE(gone.err.find("documents.toml': cannot open"), std::string::npos) << gone.err;
}

} // namespace
} // namespace orvane::tools
