// The options that make a portrait of a size in millimetres, and which of them do not go together.
#include "tools/orvane/options.h"

#include "tests/tools/temp_folder.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using Arguments = std::vector<std::string>;

Arguments Portrait(const Arguments& more) {
    Arguments arguments = {"portrait", "a.jpg", "-o", "b.png"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

Options Parsed(const Arguments& more) {
    Options options;
    std::string error;
    EXPECT_TRUE(ParseOptions(Portrait(more), &options, &error)) << error;
    return options;
}

std::string Refused(const Arguments& more) {
    Options options;
    std::string error;
    EXPECT_FALSE(ParseOptions(Portrait(more), &options, &error)) << testing::PrintToString(more);
    EXPECT_EQ(error.find('\n'), std::string::npos);
    return error;
}

TEST(FrameOptions, ASizeInPixelsHasNoFrame) {
    EXPECT_FALSE(Parsed({"--size", "480x860"}).frame);
    EXPECT_FALSE(Parsed({"--actions", "none"}).frame);
    EXPECT_FALSE(Parsed({"--actions", "background"}).frame);
    EXPECT_TRUE(Parsed({"--actions", "crop,background"}).frame);
}

TEST(FrameOptions, ADocumentTellsEverything) {
    const Options options = Parsed({"--document", "us-passport", "--fill", "#10ff03"});
    ASSERT_TRUE(options.frame);
    EXPECT_EQ(options.frame->name, "us-passport");
    EXPECT_EQ(options.frame->width, 50.8);
    EXPECT_EQ(options.frame->head.low, 25);
    EXPECT_EQ(options.frame->eyes.high, 35);
    EXPECT_EQ(options.frame->headTop, HeadTop::hair);
    EXPECT_TRUE(options.frame->isStrict);
    EXPECT_EQ(options.frame->fill.kind, Fill::Kind::colour);
    EXPECT_EQ(options.frame->fill.red, 0x10);
    EXPECT_EQ(options.frame->fill.green, 0xff);
    EXPECT_EQ(options.frame->fill.blue, 3);
    EXPECT_EQ(Parsed({"--document", "us-passport", "--dpi", "600"}).frame->resolution, 600);
    EXPECT_FALSE(Parsed({"--document", "spain-dni"}).frame->isStrict) << "has no band to be strict about";
}

TEST(FrameOptions, ASizeByHandTakesABandARatioOrNeither) {
    const FrameWish plain = *Parsed({"--size", "33x48.5mm"}).frame;
    EXPECT_EQ(plain.width, 33);
    EXPECT_EQ(plain.height, 48.5);
    EXPECT_TRUE(plain.head.IsOpen());
    EXPECT_FALSE(plain.isStrict || plain.cropRatio);
    const FrameWish head = *Parsed({"--size=35x45mm", "--head=29-34mm", "--dpi=600", "--fill=edge"}).frame;
    EXPECT_EQ(head.head.low, 29);
    EXPECT_EQ(head.head.high, 34);
    EXPECT_TRUE(head.isStrict);
    EXPECT_EQ(head.resolution, 600);
    EXPECT_EQ(head.fill.kind, Fill::Kind::edge);
    EXPECT_EQ(Parsed({"--size", "35x45mm", "--crop-ratio", "0.5"}).frame->cropRatio, 0.5);
    EXPECT_EQ(Parsed({"--crop-ratio", "0.5"}).frame->cropRatio, 0.5);
    EXPECT_EQ(Parsed({"--head", "30-33mm"}).frame->head.high, 33);
}

TEST(FrameOptions, OfTwoSizesTheLastOneCounts) {
    EXPECT_FALSE(Parsed({"--size", "35x45mm", "--size", "480x860"}).frame);
    EXPECT_EQ(Parsed({"--size", "480x860", "--size", "50x70mm"}).frame->height, 70);
}

TEST(FrameOptions, NonsenseIsRefused) {
    const std::pair<Arguments, const char*> cases[] = {
        {{"--size", "35mm"}, "--size wants WIDTHxHEIGHT in pixels, or in millimetres as in 35x45mm, not '35mm'"},
        {{"--size", "-35x45mm"},
         "--size wants WIDTHxHEIGHT in pixels, or in millimetres as in 35x45mm, not '-35x45mm'"},
        {{"--size", "0x45mm"}, "--size wants WIDTHxHEIGHT in pixels, or in millimetres as in 35x45mm, not '0x45mm'"},
        {{"--size", "nanx45mm"},
         "--size wants WIDTHxHEIGHT in pixels, or in millimetres as in 35x45mm, not 'nanx45mm'"},
        {{"--size", "35x1001mm"},
         "--size wants WIDTHxHEIGHT in pixels, or in millimetres as in 35x45mm, not '35x1001mm'"},
        {{"--size", "6x45mm"},
         "the portrait would have 71x531 pixels, and takes 75 to 32767 a side and at most 268000000 in all"},
        {{"--size", "900x900mm", "--dpi", "1200"},
         "the portrait would have 42520x42520 pixels, and takes 75 to 32767 a side and at most 268000000 in all"},
        {{"--head", "36-32mm"}, "--head wants a band in millimetres, such as 32-36mm, not '36-32mm'"},
        {{"--head", "0.001-1mm"}, "--head wants a band in millimetres, such as 32-36mm, not '0.001-1mm'"},
        {{"--head", "32-36"}, "--head wants a band in millimetres, such as 32-36mm, not '32-36'"},
        {{"--head", "40-46mm"}, "--head reaches beyond the height of the portrait"},
        {{"--fill", "blue"}, "--fill wants edge, white or a colour such as #e8e8e8, not 'blue'"},
        {{"--fill", "#12345g"}, "--fill wants edge, white or a colour such as #e8e8e8, not '#12345g'"},
        {{"--fill", "#-12345"}, "--fill wants edge, white or a colour such as #e8e8e8, not '#-12345'"},
        {{"--document", ""}, "--document wants a name of 'orvane documents', or a table of one's own"},
        {{"--document", "uk"},
         "no document 'uk'; 'orvane documents' lists them, and a table of one's own ends in .toml"}};
    for (const auto& [more, line] : cases) EXPECT_EQ(Refused(more), line);
}

TEST(FrameOptions, WhatDoesNotGoTogetherIsRefused) {
    const std::string itself = "--document tells size and head itself; leave out ";
    const Arguments document{"--document", "uk-passport"};
    const auto with = [](Arguments one, const Arguments& more) {
        one.insert(one.end(), more.begin(), more.end());
        return one;
    };
    EXPECT_EQ(Refused(with(document, {"--size", "35x45mm"})), itself + "--size");
    EXPECT_EQ(Refused(with(document, {"--size", "413x531"})), itself + "--size");
    EXPECT_EQ(Refused(with(document, {"--crop-ratio", "1"})), itself + "--crop-ratio");
    EXPECT_EQ(Refused(with(document, {"--head", "32-36mm"})), itself + "--head");
    EXPECT_EQ(Refused({"--head", "32-36mm", "--crop-ratio", "1"}),
              "--head tells the head's size; leave out --crop-ratio");
    for (const Arguments& more : {Arguments{"--head", "32-36mm"}, {"--fill", "edge"}}) {
        EXPECT_EQ(Refused(with({"--size", "413x531"}, more)), "a --size in pixels does not go with " + more[0]);
        EXPECT_EQ(Refused(with({"--actions", "colour"}, more)), "a portrait in millimetres wants crop among --actions");
    }
    EXPECT_EQ(Refused(with(document, {"--actions", "none"})), "a portrait in millimetres wants crop among --actions");
}

TEST(FrameOptions, SayWhatTheFileTells) {
    EXPECT_EQ(Parsed({}).dpi, 300);
    EXPECT_EQ(Parsed({"--document", "germany-passport"}).dpi, 600);
    EXPECT_EQ(Parsed({"--document", "germany-passport", "--dpi", "300"}).dpi, 300);
    EXPECT_EQ(Parsed({"--size", "413x531"}).dpi, std::nullopt);
    EXPECT_EQ(Parsed({"--size", "413x531", "--dpi", "300"}).dpi, 300);
    EXPECT_EQ(Parsed({"--document", "us-visa"}).mostBytes, std::nullopt)
        << "files of other formats can't be made smaller";
    const Options bounded = Parsed({"--document", "us-passport", "--output-name", "{stem}.jpg"});
    EXPECT_EQ(bounded.leastBytes, 54U * 1024);
    EXPECT_EQ(bounded.mostBytes, 10'000'000U);
    const Options given = Parsed({"--document", "us-passport", "--output-name", "{stem}.jpg", "--max-kb", "200"});
    EXPECT_EQ(given.leastBytes, 54U * 1024);
    EXPECT_EQ(given.mostBytes, 200'000U);
}

TEST(FrameOptions, ADocumentThatForbidsEditsTakesNone) {
    for (const char* actions : {"crop,background", "crop,colour"}) {
        EXPECT_EQ(Refused({"--document", "uk-passport", "--actions", actions}),
                  "'uk-passport' takes no altered photo, so no background and no colour in --actions; --allow-edits "
                  "does them all the same");
        EXPECT_TRUE(Parsed({"--document", "uk-passport", "--actions", actions, "--allow-edits"}).frame);
        EXPECT_TRUE(Parsed({"--document", "icao-9303", "--actions", actions}).frame);
    }
    EXPECT_TRUE(Parsed({"--document", "uk-passport", "--rotate", "2"}).frame);
}

constexpr const char* kOwn = "title = \"T\"\nauthority = \"A\"\nsource = \"S\"\nread = 2026-01-02\nheight = 40\n";

TEST(FrameOptions, ATableOfOnesOwnIsNamedByItsPath) {
    TempFolder folder;
    folder.Put("one.toml", std::string("[card]\n") + kOwn + "width = 30\n");
    folder.Put("two#.toml", std::string("[a]\n") + kOwn + "width = 30\n[b]\n" + kOwn + "width = 31\n");
    folder.Put("bad.toml", std::string("[card]\n") + kOwn + "width = 30\nmost_kb = 3\n");
    EXPECT_EQ(Parsed({"--document", folder / "one.toml"}).frame->width, 30);
    EXPECT_EQ(Parsed({"--document", (folder / "one.toml") + "#card"}).frame->name, "card");
    EXPECT_EQ(Parsed({"--document", (folder / "two#.toml") + "#b"}).frame->width, 31);
    const std::string two = folder / "two#.toml";
    EXPECT_EQ(Refused({"--document", two}), "'" + two + "' holds several documents; add # and one of a, b");
    EXPECT_EQ(Refused({"--document", two + "#c"}), "'" + two + "' has no document 'c'");
    EXPECT_EQ(Refused({"--document", folder / "bad.toml"}),
              folder / "bad.toml" + std::string(":8: no document has a key 'most_kb'"));
    EXPECT_EQ(Refused({"--document", folder / "none.toml"}),
              "the table '" + (folder / "none.toml") + "': cannot open: No such file or directory");
}

} // namespace
} // namespace orvane::tools
