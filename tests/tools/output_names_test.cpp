// Where portraits go, and that no photo is lost to one.
#include "tools/orvane/output_names.h"

#include "tests/tools/temp_folder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using Photos = std::vector<std::string>;

std::vector<PlannedOutput> Planned(const Photos& photos, const std::string& output, bool force = false) {
    std::vector<PlannedOutput> planned;
    std::string error;
    EXPECT_TRUE(PlanOutputs(photos, output, force, &planned, &error)) << error;
    EXPECT_EQ(planned.size(), photos.size());
    planned.resize(photos.size());
    return planned;
}

std::string Refused(const Photos& photos, const std::string& output) {
    std::vector<PlannedOutput> planned;
    std::string error;
    EXPECT_FALSE(PlanOutputs(photos, output, false, &planned, &error));
    return error;
}

TEST(OutputNames, OnePhotoGoesToTheFileThatWasNamed) {
    const TempFolder folder;
    const PlannedOutput plan = Planned({"a.jpg"}, folder / "b.jpg")[0];
    EXPECT_EQ(plan.path, folder / "b.jpg");
    EXPECT_EQ(plan.error, "");
}

TEST(OutputNames, InAFolderAPortraitTakesThePhotosNameAsPng) {
    const TempFolder folder;
    const Photos photos = {"a.jpg", "x/b.tar.JPEG", "c", ".hidden", "d.", "x.y/e", "g\xFF.bmp"};
    const Photos names = {"a.png", "b.tar.png", "c.png", ".hidden.png", "d.png", "e.png", "g\xFF.png"};
    for (const std::string& output : {folder.Path(), folder.Path() + "/"}) {
        const std::vector<PlannedOutput> planned = Planned(photos, output);
        for (std::size_t i = 0; i < photos.size(); ++i) {
            EXPECT_EQ(planned[i].path, folder / names[i]);
            EXPECT_EQ(planned[i].error, "");
        }
    }
}

TEST(OutputNames, ASecondPhotoOfTheSameNameIsRefused) {
    const TempFolder folder;
    for (const bool force : {false, true}) {
        const std::vector<PlannedOutput> planned = Planned({"a.jpg", "x/a.png", "b.jpg"}, folder.Path(), force);
        EXPECT_EQ(planned[0].error, "");
        EXPECT_EQ(planned[1].error, "an earlier photo has the output '" + (folder / "a.png") + "'");
        EXPECT_EQ(planned[2].error, "");
    }
}

TEST(OutputNames, AnExistingFileIsRefusedWithoutForce) {
    const TempFolder folder;
    folder.Put("a.png", "x");
    std::filesystem::create_symlink("nowhere", folder / "b.png");
    for (const std::string name : {"a.png", "b.png"}) {
        const std::string error = "the output '" + (folder / name) + "' exists already; --force replaces it";
        EXPECT_EQ(Planned({"x/" + name}, folder.Path())[0].error, error);
        EXPECT_EQ(Planned({"y"}, folder / name)[0].error, error);
        EXPECT_EQ(Planned({"x/" + name}, folder.Path(), true)[0].error, "");
    }
}

TEST(OutputNames, ThePhotoItselfIsReplacedWithForceOnly) {
    const TempFolder folder;
    const std::string photo = folder.Put("a.png", "x");
    std::filesystem::create_symlink(folder.Path(), folder / "link");
    for (const std::string& output : {folder.Path(), photo, folder / "link", folder / "link/a.png"}) {
        EXPECT_NE(Planned({photo}, output)[0].error, "") << output;
        EXPECT_EQ(Planned({photo}, output, true)[0].error, "") << output;
    }
}

TEST(OutputNames, AnotherPhotoIsNotReplacedEvenWithForce) {
    const TempFolder folder;
    folder.Put("a.jpg", "x");
    folder.Put("a.png", "x");
    std::filesystem::create_symlink("a.png", folder / "b.png");
    // The portrait of a.jpg would take the place of a.png, which b.png leads to.
    const std::vector<PlannedOutput> planned = Planned({folder / "a.jpg", folder / "b.png"}, folder.Path(), true);
    EXPECT_EQ(planned[0].error, "the output '" + (folder / "a.png") + "' is another one of the photos");
    EXPECT_NE(Planned({folder / "a.jpg", folder / "a.png"}, folder.Path(), true)[0].error, "");
}

TEST(OutputNames, WhatFitsNoPhotoIsRefusedAsAWhole) {
    const TempFolder folder;
    const std::string file = folder.Put("f.png", "x");
    EXPECT_EQ(Refused({"a", "b"}, file), "several photos want a folder for -o, and '" + file + "' is none");
    EXPECT_EQ(Refused({"a", "b"}, folder / "n.png"),
              "several photos want a folder for -o, and '" + (folder / "n.png") + "' is none");
    EXPECT_EQ(Refused({"a"}, folder / "n/"), "there is no folder '" + (folder / "n/") + "'");
    EXPECT_EQ(Refused({"a"}, "out"), "'out' has no extension of a format that can be written (.jpg, .png, .bmp, .tif)");
    EXPECT_NE(Refused({"a"}, "out.gif"), "");
}

} // namespace
} // namespace orvane::tools
