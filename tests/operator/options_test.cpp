// The operator's tool's command line: what it means, and which nonsense is refused with which line.
#include "tools/operator/options.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using Arguments = std::vector<std::string>;

OperatorOptions Parsed(const Arguments& arguments) {
    OperatorOptions options;
    std::string error;
    EXPECT_TRUE(ParseOperatorOptions(arguments, &options, &error)) << error;
    return options;
}

std::string Refused(const Arguments& arguments) {
    OperatorOptions options;
    std::string error;
    EXPECT_FALSE(ParseOperatorOptions(arguments, &options, &error)) << "taken: " << testing::PrintToString(arguments);
    EXPECT_EQ(error.find('\n'), std::string::npos);
    return error;
}

/// A review of one photo with these options.
Arguments Review(const Arguments& more) {
    Arguments arguments = {"review", "a.jpg", "-o", "b.png"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

/// A live session with these options.
Arguments Live(const Arguments& more) {
    Arguments arguments = {"live", "-o", "b.png"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

TEST(OperatorOptions, AReviewShowsTheWindowAndCropsTo480By860UnlessToldOtherwise) {
    const OperatorOptions options = Parsed(Review({}));
    EXPECT_EQ(options.command, OperatorCommand::review);
    EXPECT_EQ(options.photo, "a.jpg");
    EXPECT_EQ(options.output, "b.png");
    EXPECT_EQ(options.language, "");
    EXPECT_EQ(options.width, 480);
    EXPECT_EQ(options.height, 860);
    EXPECT_EQ(options.cropRatio, 1.0F);
    EXPECT_TRUE(options.actions.crop);
    EXPECT_FALSE(options.actions.background || options.actions.colour || options.actions.rotation);
    EXPECT_FALSE(options.hidden || options.force);
}

TEST(OperatorOptions, EveryOptionTakesItsValueBehindASpaceOrAnEqualsSign) {
    for (const Arguments& arguments :
         {Review({"--size", "100x200", "--crop-ratio", "1.5", "--actions", "background,rotation", "--language",
                  "de.txt", "--hidden", "--force", "--output", "c.jpg"}),
          Review({"--size=100x200", "--crop-ratio=1.5", "--actions=background,rotation", "--language=de.txt",
                  "--hidden", "--force", "-o=c.jpg"})}) {
        const OperatorOptions options = Parsed(arguments);
        EXPECT_EQ(options.photo, "a.jpg");
        EXPECT_EQ(options.output, "c.jpg");
        EXPECT_EQ(options.width, 100);
        EXPECT_EQ(options.height, 200);
        EXPECT_EQ(options.cropRatio, 1.5F);
        EXPECT_FALSE(options.actions.crop || options.actions.colour);
        EXPECT_TRUE(options.actions.background && options.actions.rotation);
        EXPECT_EQ(options.language, "de.txt");
        EXPECT_TRUE(options.hidden && options.force);
    }
}

TEST(OperatorOptions, ALiveSessionTakesTheFirstCameraUnlessToldOtherwise) {
    const OperatorOptions options = Parsed(Live({}));
    EXPECT_EQ(options.command, OperatorCommand::live);
    EXPECT_EQ(options.device, 0);
    EXPECT_EQ(options.output, "b.png");
    EXPECT_EQ(options.width, 480);
    EXPECT_EQ(options.height, 860);
    EXPECT_TRUE(options.actions.crop);
    EXPECT_FALSE(options.hidden || options.force);
    for (const auto& [text, device] : {std::pair{"0", 0}, {"12", 12}, {"2147483647", 2147483647}}) {
        EXPECT_EQ(Parsed(Live({"--device", text})).device, device);
        EXPECT_EQ(Parsed(Live({std::string("--device=") + text})).device, device);
    }
}

TEST(OperatorOptions, ALiveSessionKnowsTheSettingsOfAPortrait) {
    const OperatorOptions options = Parsed(Live({"--size", "100x200", "--crop-ratio=1.5", "--actions", "none",
                                                 "--language", "de.txt", "--force", "--output=c.jpg"}));
    EXPECT_EQ(options.output, "c.jpg");
    EXPECT_EQ(options.width, 100);
    EXPECT_EQ(options.height, 200);
    EXPECT_EQ(options.cropRatio, 1.5F);
    EXPECT_FALSE(options.actions.crop);
    EXPECT_EQ(options.language, "de.txt");
    EXPECT_TRUE(options.force);
}

TEST(OperatorOptions, TheListOfCamerasIsForPeopleUnlessJsonIsAskedFor) {
    EXPECT_EQ(Parsed({"devices"}).command, OperatorCommand::devices);
    EXPECT_FALSE(Parsed({"devices"}).json);
    EXPECT_TRUE(Parsed({"devices", "--json"}).json);
}

TEST(OperatorOptions, HelpIsACommandAndAnOption) {
    for (const Arguments& arguments : {Arguments{"help"},
                                       {"--help"},
                                       {"-h"},
                                       {"review", "--help"},
                                       {"review", "-h"},
                                       {"live", "--help"},
                                       {"devices", "-h"}}) {
        EXPECT_EQ(Parsed(arguments).command, OperatorCommand::help);
    }
}

TEST(OperatorOptions, APhotoMayLookLikeAnOption) {
    EXPECT_EQ(Parsed({"review", "-o", "b.png", "--", "--hidden"}).photo, "--hidden");
    EXPECT_EQ(Parsed({"review", "-o", "b.png", "-"}).photo, "-");
}

TEST(OperatorOptions, WhatMakesNoSenseIsNamed) {
    struct {
        Arguments arguments;
        const char* line; // its start
    } const cases[] = {
        {{}, "no command; 'orvane-operator help' tells them all"},
        {{"paint"}, "no command 'paint'; 'orvane-operator help' tells them all"},
        {{"review"}, "'review' wants one photo"},
        {{"review", "-o", "b.png"}, "'review' wants one photo"},
        {{"review", "a", "c", "-o", "b.png"}, "'review' wants one photo"},
        {{"review", "a"}, "'review' wants -o and a file"},
        {{"review", "a", "-o"}, "'-o' wants a value"},
        {Review({"-o", ""}), "-o wants a file"},
        {Review({"--language="}), "--language wants the name of a file"},
        {Review({"--language"}), "'--language' wants a value"},
        {Review({"--device", "1"}), "'review' knows no option '--device'"},
        {Review({"--json"}), "'review' knows no option '--json'"},
        {{"live"}, "'live' wants -o and a file"},
        {{"live", "--device", "1"}, "'live' wants -o and a file"},
        {{"live", "-o"}, "'-o' wants a value"},
        {Live({"-o", ""}), "-o wants a file"},
        {Live({"a.jpg"}), "'live' takes options alone, not 'a.jpg'"},
        {Live({"1"}), "'live' takes options alone, not '1'"},
        {Live({"-"}), "'live' takes options alone, not '-'"},
        {Live({""}), "'live' takes options alone, not ''"},
        {Live({"--", "--force"}), "'live' takes options alone, not '--force'"},
        {Live({"--hidden"}), "'live' knows no option '--hidden'"},
        {Live({"--json"}), "'live' knows no option '--json'"},
        {Live({"--devices", "1"}), "'live' knows no option '--devices'"},
        {Live({"--force=1"}), "'live' knows no option '--force=1'"},
        {Live({"--device"}), "'--device' wants a value"},
        {Live({"--device="}), "--device wants a whole number, 0 to 2147483647, not ''"},
        {Live({"--device", "-1"}), "--device wants a whole number, 0 to 2147483647, not '-1'"},
        {Live({"--device", "+1"}), "--device wants a whole number"},
        {Live({"--device", " 1"}), "--device wants a whole number"},
        {Live({"--device", "1.0"}), "--device wants a whole number"},
        {Live({"--device", "0x1"}), "--device wants a whole number"},
        {Live({"--device", "one"}), "--device wants a whole number"},
        {Live({"--device", "2147483648"}), "--device wants a whole number"},
        {Live({"--device", "99999999999999999999"}), "--device wants a whole number"},
        {Live({"--actions", "hat"}), "--actions knows"},
        {Live({"--size", "74x100"}), "--size wants WIDTHxHEIGHT"},
        {Live({"--crop-ratio", "0"}), "--crop-ratio wants a number"},
        {Live({"--language="}), "--language wants the name of a file"},
        {{"devices", "0"}, "'devices' takes options alone, not '0'"},
        {{"devices", "-o", "b.png"}, "'devices' knows no option '-o'"},
        {{"devices", "--json=1"}, "'devices' knows no option '--json=1'"},
        {{"devices", "--force"}, "'devices' knows no option '--force'"},
        {{"devices", "--device", "1"}, "'devices' knows no option '--device'"},
        {{""}, "no command ''"},
        {Review({"--tolerance", "3"}), "'review' knows no option '--tolerance'"},
        {Review({"--hidden=1"}), "'review' knows no option '--hidden=1'"},
        {Review({"--actions", "hat"}), "--actions knows crop, background, colour and rotation, or none, not 'hat'"},
        {Review({"--actions", "crop,"}), "--actions knows"},
        {Review({"--size", "74x100"}), "--size wants WIDTHxHEIGHT"},
        {Review({"--size", "100x74"}), "--size wants WIDTHxHEIGHT"},
        {Review({"--size", "32768x100"}), "--size wants WIDTHxHEIGHT"},
        {Review({"--size", "32767x32767"}), "--size wants WIDTHxHEIGHT"},
        {Review({"--size", "100"}), "--size wants WIDTHxHEIGHT"},
        {Review({"--size", "-100x100"}), "--size wants WIDTHxHEIGHT"},
        {Review({"--crop-ratio", "0"}), "--crop-ratio wants a number"},
        {Review({"--crop-ratio", "nan"}), "--crop-ratio wants a number"},
        {Review({"--crop-ratio", "10.5"}), "--crop-ratio wants a number"},
    };
    for (const auto& c : cases) EXPECT_EQ(Refused(c.arguments).rfind(c.line, 0), 0U) << Refused(c.arguments);
}

} // namespace
} // namespace orvane::tools
