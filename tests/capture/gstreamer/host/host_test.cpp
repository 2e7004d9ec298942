// The library and its camera module as a host has them: files in a folder. Each case is a process of its own.
#include "tests/support/cascade_builder.h"
#include "tests/support/face_scene.h"
#include "tests/support/host_output.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace orvane::test {
namespace {

class CameraHost : public ::testing::Test {
protected:
    CameraHost() {
        std::filesystem::copy_file(ORVANE_LIBRARY_FILE, Path("liborvane.so"));
        std::filesystem::copy_file(ORVANE_PLAYED_WINDOW, Path("orvane-window.so"));
        EXPECT_TRUE(WriteClassifier(folder_.Path(), FaceCascade().Bytes()));
    }

    std::filesystem::path Path(const char* name) const { return folder_.Path() / name; }
    void PutModule(const char* file) { std::filesystem::copy_file(file, Path("orvane-camera.so")); }

    /// Runs a host of a kind; its output and then what was said on standard error.
    std::string Run(const std::string& kind, const std::string& environment = "") {
        return HostOutput("LC_ALL=C.UTF-8 " + environment + " '" + ORVANE_HOST + "' '" + Path("liborvane.so").string() +
                              "' " + kind,
                          Path("errors").string());
    }

    static std::string WithoutCamera(const std::string& reason) {
        return "live 1000: -30\nlive 1000: -30\nlocale C\nsignals untouched\n"
               "error: orvane: working without a camera: " +
               reason + "\n";
    }

private:
    TempFolder folder_;
};

TEST_F(CameraHost, WithoutAModuleHasNoCameraAndIsToldOnce) {
    EXPECT_EQ(Run("plain"), WithoutCamera(Path("orvane-camera.so").string() + " is not there"));
}

TEST_F(CameraHost, WithAModuleOfAnotherVersionHasNoCamera) {
    PutModule(ORVANE_OTHER_MODULE);
    EXPECT_EQ(Run("plain"), WithoutCamera("orvane-camera.so is of another version"));
}

TEST_F(CameraHost, WithAFileThatIsNoModuleHasNoCamera) {
    std::ofstream(Path("orvane-camera.so")) << "this is text";
    EXPECT_EQ(Run("plain"), WithoutCamera(Path("orvane-camera.so").string() + ": file too short"));
}

TEST_F(CameraHost, KeepsItsLocaleItsSignalsAndItsStandardError) {
    PutModule(ORVANE_CAMERA_MODULE);
    const std::string output = Run("plain"); // a developer's machine may have a camera
    EXPECT_EQ(output.find("error"), std::string::npos) << output;
    EXPECT_NE(output.find("live 1000: -30\nlocale C\nsignals untouched\n"), std::string::npos) << output;
}

TEST_F(CameraHost, MayUseTheToolkitItself) {
    PutModule(ORVANE_CAMERA_MODULE);
    EXPECT_EQ(Run("gst"), "pictures\nlive 0: 20\nlive 1: -30\npictures\nlive 0: 20\nlive 1000: -30\nin use 0\n"
                          "locale C\nsignals untouched\n");
}

TEST_F(CameraHost, WithoutTheToolkitsPlugInsIsToldWhatIsMissing) {
    PutModule(ORVANE_CAMERA_MODULE);
    const std::string list = "GST_REGISTRY='" + Path("registry").string() + "' ";
    EXPECT_EQ(Run("gst", list + "GST_PLUGIN_SYSTEM_PATH_1_0='" + Path("none").string() + "' GST_PLUGIN_PATH_1_0="),
              "live 0: -30\nlive 1: -30\nlive 0: -30\nlive 1000: -30\nin use 0\nlocale C\nsignals untouched\n"
              "error: orvane: working without a camera: GStreamer's \"videoconvert\" is not installed\n");
}

} // namespace
} // namespace orvane::test
