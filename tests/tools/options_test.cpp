// The command line: what it means, and which nonsense is refused with which line.
#include "tools/orvane/options.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using Arguments = std::vector<std::string>;

Options Parsed(const Arguments& arguments) {
    Options options;
    std::string error;
    EXPECT_TRUE(ParseOptions(arguments, &options, &error)) << error;
    return options;
}

std::string Refused(const Arguments& arguments) {
    Options options;
    std::string error;
    EXPECT_FALSE(ParseOptions(arguments, &options, &error)) << "taken: " << testing::PrintToString(arguments);
    EXPECT_EQ(error.find('\n'), std::string::npos);
    return error;
}

/// A portrait of one photo with these options.
Arguments Portrait(const Arguments& more) {
    Arguments arguments = {"portrait", "a.jpg", "-o", "b.png"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

TEST(Options, TheCommandsAreKnownByTheirNames) {
    EXPECT_EQ(Parsed({"help"}).command, Command::help);
    EXPECT_EQ(Parsed({"--help"}).command, Command::help);
    EXPECT_EQ(Parsed({"-h"}).command, Command::help);
    EXPECT_EQ(Parsed({"version"}).command, Command::version);
    EXPECT_EQ(Parsed({"--version"}).command, Command::version);
    EXPECT_EQ(Parsed({"info"}).command, Command::info);
    EXPECT_EQ(Parsed({"detect", "a"}).command, Command::detect);
    EXPECT_EQ(Parsed({"portrait", "a", "-o", "b"}).command, Command::portrait);
    EXPECT_EQ(Refused({}), "no command; 'orvane help' tells them all");
    EXPECT_EQ(Refused({"paint"}), "no command 'paint'; 'orvane help' tells them all");
}

TEST(Options, HelpIsGivenAfterEveryCommand) {
    EXPECT_EQ(Parsed({"portrait", "--help"}).command, Command::help);
    EXPECT_EQ(Parsed({"detect", "a", "-h"}).command, Command::help);
    EXPECT_EQ(Parsed({"info", "--help"}).command, Command::help);
}

TEST(Options, APortraitIs35By45MillimetresUnlessToldOtherwise) {
    const Options options = Parsed(Portrait({}));
    EXPECT_EQ(options.photos, Arguments{"a.jpg"});
    EXPECT_EQ(options.output, "b.png");
    ASSERT_TRUE(options.frame.has_value());
    EXPECT_EQ(options.frame->width, 35);
    EXPECT_EQ(options.frame->height, 45);
    EXPECT_EQ(options.frame->resolution, 300);
    EXPECT_FALSE(options.frame->isStrict || options.frame->cropRatio);
    EXPECT_EQ(options.cropRatio, 1.0F);
    EXPECT_TRUE(options.actions.crop);
    EXPECT_FALSE(options.actions.background || options.actions.colour || options.actions.rotation);
    EXPECT_EQ(options.tolerance, 40);
    EXPECT_EQ(options.rotation, 0);
    EXPECT_EQ(options.steps, "");
    EXPECT_FALSE(options.json || options.force);
}

TEST(Options, APortraitsFileHasItsOptions) {
    const Options plain = Parsed(Portrait({"--size", "480x860"}));
    EXPECT_FALSE(plain.quality || plain.chroma || plain.dpi || plain.leastBytes || plain.mostBytes);
    EXPECT_FALSE(plain.keepMetadata);
    const Options options = Parsed(Portrait({"-o", "p.jpg", "--quality", "80", "--chroma", "422", "--dpi=300",
                                             "--max-kb", "240", "--min-kb", "20", "--keep-metadata"}));
    EXPECT_EQ(options.quality, 80);
    EXPECT_EQ(options.chroma, Chroma::half);
    EXPECT_EQ(options.dpi, 300);
    EXPECT_EQ(options.mostBytes, 240000U);
    EXPECT_EQ(options.leastBytes, 20480U);
    EXPECT_TRUE(options.keepMetadata);
    EXPECT_EQ(Parsed({"watch", "in", "-o", "out", "--output-name", "{stem}.jpg", "--quality", "80"}).quality, 80);
    EXPECT_EQ(Refused({"watch", "in", "-o", "out", "--quality", "80"}), "--quality is for .jpg");
    EXPECT_EQ(Refused({"portrait", "a", "-o", "out", "--chroma", "444"}), "--chroma is for .jpg")
        << "folders take .png";
    EXPECT_EQ(Refused({"detect", "a", "--dpi", "300"}), "'detect' knows no option '--dpi'");
}

TEST(Options, PrintHasItsOwn) {
    const PrintOptions print = Parsed({"print", "a.jpg", "-o", "s.pdf", "--paper", "A4", "--copies", "4", "--gap",
                                       "1mm", "--margin=0", "--cut-marks", "--size", "35x45mm", "--", "-b.jpg"})
                                   .print;
    EXPECT_EQ(print.portraits, (Arguments{"a.jpg", "-b.jpg"}));
    EXPECT_EQ(print.output, "s.pdf");
    EXPECT_EQ(print.sheets.paper.width, 210);
    EXPECT_EQ(print.sheets.copies, 4);
    EXPECT_EQ(print.sheets.gap, 1);
    EXPECT_EQ(print.sheets.margin, 0);
    EXPECT_TRUE(print.cutMarks);
    EXPECT_EQ(print.size->height, 45);
    EXPECT_EQ(Parsed({"print", "--help"}).command, Command::help);
    const PrintOptions plain = Parsed({"print", "a.jpg", "-o", "s.png"}).print;
    EXPECT_EQ(plain.sheets.paper.height, 150);
    EXPECT_EQ(plain.sheets.margin, 3);
    EXPECT_EQ(plain.sheets.gap, 2);
    EXPECT_FALSE(plain.sheets.copies || plain.dpi || plain.size || plain.force);
}

TEST(Options, EveryOptionTakesItsValueBehindASpaceOrAnEqualsSign) {
    for (const Arguments& arguments :
         {Portrait({"--size", "100x200", "--crop-ratio", "1.5", "--actions", "background,colour", "--tolerance", "7",
                    "--json", "--force", "--output", "c.jpg", "--steps", "s"}),
          Portrait({"--size=100x200", "--crop-ratio=1.5", "--actions=background,colour", "--tolerance=7", "--json",
                    "--force", "--output=c.jpg", "--steps=s"})}) {
        const Options options = Parsed(arguments);
        EXPECT_EQ(options.output, "c.jpg");
        EXPECT_EQ(options.steps, "s");
        EXPECT_EQ(options.width, 100);
        EXPECT_EQ(options.height, 200);
        EXPECT_EQ(options.cropRatio, 1.5F);
        EXPECT_FALSE(options.actions.crop || options.actions.rotation);
        EXPECT_TRUE(options.actions.background && options.actions.colour);
        EXPECT_EQ(options.tolerance, 7);
        EXPECT_TRUE(options.json && options.force);
    }
}

TEST(Options, ActionsMayBeNone) {
    const Actions actions = Parsed(Portrait({"--actions", "none"})).actions;
    EXPECT_FALSE(actions.crop || actions.background || actions.colour || actions.rotation);
}

TEST(Options, ATurnSwitchesRotationOnWhateverTheOrder) {
    for (const Arguments& more :
         {Arguments{"--rotate", "5"}, {"--rotate", "5", "--actions", "crop"}, {"--actions", "crop", "--rotate", "5"}}) {
        const Options options = Parsed(Portrait(more));
        EXPECT_TRUE(options.actions.rotation && options.actions.crop);
        EXPECT_EQ(options.rotation, 5);
    }
}

TEST(Options, DegreesComeBetween0And359) {
    EXPECT_EQ(Parsed(Portrait({"--rotate", "0"})).rotation, 0);
    EXPECT_EQ(Parsed(Portrait({"--rotate", "359"})).rotation, 359);
    EXPECT_EQ(Parsed(Portrait({"--rotate", "-1"})).rotation, 359);
    EXPECT_EQ(Parsed(Portrait({"--rotate=-359"})).rotation, 1);
}

TEST(Options, PhotosKeepTheirOrderAmongTheOptions) {
    EXPECT_EQ(Parsed({"portrait", "c", "--json", "a", "-o", "f/", "b"}).photos, (Arguments{"c", "a", "b"}));
    EXPECT_EQ(Parsed({"detect", "--", "--json", "-x"}).photos, (Arguments{"--json", "-x"}));
    EXPECT_EQ(Parsed({"detect", "-"}).photos, Arguments{"-"});
    EXPECT_EQ(Parsed({"detect", "\xFF\xFE"}).photos, Arguments{"\xFF\xFE"});
}

TEST(Options, TheBoundsOfEveryValueAreTaken) {
    EXPECT_EQ(Parsed(Portrait({"--size", "75x75"})).width, 75);
    EXPECT_EQ(Parsed(Portrait({"--size", "32767x75"})).width, 32767);
    EXPECT_EQ(Parsed(Portrait({"--tolerance", "0"})).tolerance, 0);
    EXPECT_EQ(Parsed(Portrait({"--tolerance", "99"})).tolerance, 99);
    EXPECT_EQ(Parsed(Portrait({"--crop-ratio", "10"})).cropRatio, 10.0F);
}

TEST(Options, NonsenseIsRefusedWithALineThatNamesTheOptionAndTheValue) {
    struct {
        const char* option;
        Arguments values;
    } const cases[] = {
        {"--size",
         {"", "480", "x", "480x", "x860", "74x100", "100x74", "480*860", "480x860x3", " 480x860", "480x860 ",
          "-480x860", "1e3x860", "32768x100", "99999999999x100", "32767x32767", "0x1F4x500"}},
        {"--crop-ratio", {"", "0", "-1", "nan", "inf", "10.1", "0,75", "1.5x", "1e9", "abc"}},
        {"--actions", {"", ",", "crop,", "crop,,colour", "CROP", "color", "crop colour", "none,crop"}},
        {"--tolerance", {"", "-1", "100", "40%", "4.5", "99999999999"}},
        {"--rotate", {"", "360", "-360", "4.5", "90deg", "left"}},
    };
    for (const auto& c : cases) {
        for (const std::string& value : c.values) {
            const std::string error = Refused(Portrait({c.option, value}));
            EXPECT_EQ(error.find(c.option), 0U) << error;
            EXPECT_EQ(Refused(Portrait({std::string(c.option) + "=" + value})), error);
        }
    }
    EXPECT_EQ(Refused({"portrait", "a", "-o", ""}), "-o wants a file or a folder");
    EXPECT_EQ(Refused(Portrait({"--steps", ""})), "--steps wants a folder");
}

TEST(Options, WhatIsMissingOrForeignIsNamed) {
    EXPECT_EQ(Refused({"portrait"}), "'portrait' wants at least one photo");
    EXPECT_EQ(Refused({"portrait", "-o", "b"}), "'portrait' wants at least one photo");
    EXPECT_EQ(Refused({"portrait", "a"}), "'portrait' wants -o and a file or a folder");
    EXPECT_EQ(Refused({"portrait", "a", "-o"}), "'-o' wants a value");
    EXPECT_EQ(Refused({"detect"}), "'detect' wants at least one photo");
    EXPECT_EQ(Refused({"detect", "a", "-o", "b"}), "'detect' knows no option '-o'");
    EXPECT_EQ(Refused({"detect", "a", "--steps", "b"}), "'detect' knows no option '--steps'");
    EXPECT_EQ(Refused({"portrait", "a", "--sise", "1x1"}), "'portrait' knows no option '--sise'");
    EXPECT_EQ(Refused({"info", "a"}), "'info' takes no photo");
    EXPECT_EQ(Refused({"info", "--force"}), "'info' knows no option '--force'");
}

} // namespace
} // namespace orvane::tools
