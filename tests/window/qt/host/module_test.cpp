// The library and its window module as a host has them: files in a folder. Each case is a process of its own.
#include "tests/support/cascade_builder.h"
#include "tests/support/face_scene.h"
#include "tests/support/host_output.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace orvane::test {
namespace {

class Module : public ::testing::Test {
protected:
    Module() {
        // Also the folder of the user's sockets, which belongs to the user alone.
        std::filesystem::permissions(folder_.Path(), std::filesystem::perms::owner_all);
        std::filesystem::copy_file(ORVANE_LIBRARY_FILE, Path("liborvane.so"));
        EXPECT_TRUE(WriteClassifier(folder_.Path(), FaceCascade().Bytes()));
    }

    std::filesystem::path Path(const char* name) const { return folder_.Path() / name; }
    void PutModule(const char* file) { std::filesystem::copy_file(file, Path("orvane-window.so")); }

    /// Runs a host of a kind; its output and then what it said on standard error.
    std::string Run(const std::string& kind, const std::string& environment) {
        // The toolkit's own words, about a screen in memory for instance, are not ours.
        return HostOutput("env -u DISPLAY -u WAYLAND_DISPLAY -u WAYLAND_SOCKET -u QT_QPA_PLATFORM LC_ALL=C.UTF-8 "
                          "XDG_RUNTIME_DIR='" +
                              folder_.Path().string() + "' QT_LOGGING_RULES='qt.qpa*=false' " + environment + " '" +
                              ORVANE_HOST + "' '" + Path("liborvane.so").string() + "' " + kind,
                          Path("errors").string(), "This plugin");
    }

    static std::string Without(const std::string& reason, const char* owner = "0") {
        return std::string("hidden: result 0, not confirmed\nhidden again: result 0, not confirmed\n") +
               "no window 12345: " + owner + "\nlocale C\nerror: orvane: working without a window: " + reason + "\n";
    }

private:
    TempFolder folder_;
};

TEST_F(Module, ThatIsMissingIsSaidOnceAndTheSessionWorksWithoutAWindow) {
    EXPECT_EQ(Run("none", "QT_QPA_PLATFORM=offscreen"), Without(Path("orvane-window.so").string() + " is not there"));
}

TEST_F(Module, OfAnotherVersionIsNone) {
    PutModule(ORVANE_OTHER_MODULE);
    EXPECT_EQ(Run("none", "QT_QPA_PLATFORM=offscreen"), Without("orvane-window.so is of another version"));
}

TEST_F(Module, ThatIsNoLibraryIsNone) {
    std::ofstream(Path("orvane-window.so")) << "this is text";
    EXPECT_EQ(Run("none", ""), Without(Path("orvane-window.so").string() + ": file too short"));
    std::filesystem::remove(Path("orvane-window.so"));
    PutModule(ORVANE_LIBRARY_FILE);
    EXPECT_EQ(Run("none", ""), Without(Path("orvane-window.so").string() + ": undefined symbol: orvane_window_system"));
}

TEST_F(Module, WithoutADisplayEndsNoProcess) {
    PutModule(ORVANE_WINDOW_MODULE);
    EXPECT_EQ(Run("none", ""), Without("no display: WAYLAND_DISPLAY is not set, DISPLAY is not set"));
    EXPECT_EQ(Run("none", "DISPLAY=:97"),
              Without("no display: WAYLAND_DISPLAY is not set, no X server answers at :97"));
    EXPECT_EQ(Run("none", "WAYLAND_DISPLAY=wayland-9 QT_QPA_PLATFORM=wayland"),
              Without("no display: no Wayland display answers at " + Path("wayland-9").string()));
    EXPECT_EQ(Run("none", "QT_QPA_PLATFORM=sandglass"),
              Without("no display: Qt's plug-in for sandglass is not installed"));
}

TEST_F(Module, MakesAnApplicationForAHostWithoutOneAndKeepsItsLocale) {
    PutModule(ORVANE_WINDOW_MODULE);
    EXPECT_EQ(Run("none", "QT_QPA_PLATFORM=offscreen"),
              "hidden: result 0, confirmed\nhidden again: result 0, confirmed\n"
              "no window 12345: -80\nlocale C\n");
}

TEST_F(Module, WorksInsideTheHostsApplication) {
    PutModule(ORVANE_WINDOW_MODULE);
    const std::string output = Run("widgets", "QT_QPA_PLATFORM=offscreen");
    EXPECT_EQ(output.substr(0, output.find("locale")),
              "hidden: result 0, confirmed\nhidden again: result 0, confirmed\nclicked OK\nvisible: result 0, "
              "confirmed\nno window 12345: -80\n");
    EXPECT_EQ(output.find("error"), std::string::npos) << output;
}

TEST_F(Module, NeedsAnApplicationForWidgetsAndItsThread) {
    PutModule(ORVANE_WINDOW_MODULE);
    EXPECT_NE(Run("core", "QT_QPA_PLATFORM=offscreen")
                  .find("error: orvane: working without a window: the host's application object is no QApplication\n"),
              std::string::npos);
    const std::string output = Run("thread", "QT_QPA_PLATFORM=offscreen");
    EXPECT_NE(output.find("hidden: result 0, not confirmed"), std::string::npos) << output;
    EXPECT_NE(output.find("the call comes from another thread than windows need\n"), std::string::npos) << output;
}

} // namespace
} // namespace orvane::test
