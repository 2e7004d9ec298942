// Every state of the operator's window as a picture, for a person to look at: into the folder that the variable
// ORVANE_SCREENS names, else into one that goes again. With ORVANE_SCREEN_PHOTO, an uncompressed 24-bit bitmap
// file, and ORVANE_SCREEN_CLASSIFIER the window shows a real photograph.
#include "tests/window/sessions/cameras.h"
#include "tests/window/sessions/window_host.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace orvane::test {
namespace {

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

std::vector<std::uint8_t> BytesOf(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// A button of four faces in one colour, brighter when hovered over and darker when pressed, with white corners.
void WriteSkin(const std::filesystem::path& file, std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    constexpr int kWidth = 120, kHeight = 32, kCorner = 8;
    Scene strip = BlankScene(4 * kWidth, kHeight, 255);
    for (int face = 0; face < 4; ++face) {
        const int level = face == 1 ? 130 : face == 2 ? 60 : 100; // percent
        for (int y = 0; y < kHeight; ++y) {
            const int edge = std::min(y, kHeight - 1 - y);
            const int inset = std::max(0, kCorner - edge);
            for (int x = inset; x < kWidth - inset; ++x) {
                std::uint8_t* pixel = strip.Pixel(face * kWidth + x, y);
                pixel[0] = static_cast<std::uint8_t>(std::min(250, blue * level / 100));
                pixel[1] = static_cast<std::uint8_t>(std::min(250, green * level / 100));
                pixel[2] = static_cast<std::uint8_t>(std::min(250, red * level / 100));
            }
        }
    }
    const DibHeader header = HeaderFor(strip.width, strip.height);
    const std::uint32_t offset = 14 + sizeof header, size = offset + header.sizeImage, none = 0;
    std::ofstream out(file, std::ios::binary);
    out.write("BM", 2);
    for (const std::uint32_t* field : {&size, &none, &offset}) out.write(reinterpret_cast<const char*>(field), 4);
    out.write(reinterpret_cast<const char*>(&header), sizeof header);
    out.write(reinterpret_cast<const char*>(strip.rows.data()), static_cast<std::streamsize>(strip.rows.size()));
}

class Screens : public ::testing::Test {
protected:
    Screens() {
        folder_ = Variable("ORVANE_SCREENS");
        if (folder_.empty()) folder_ = own_.Path();
        std::filesystem::create_directories(folder_);
        if (const std::string file = Variable("ORVANE_SCREEN_CLASSIFIER"); !file.empty()) {
            const auto bytes = BytesOf(file);
            host.PutClassifier({bytes.begin(), bytes.end()});
        }
        host.lib.orv_SetSizeOutputImage(240, 320);
        host.lib.orv_SetFaceCropRatio(1.0F);
        host.lib.orv_EnableAction(ORV_CROP, 1);
    }

    static HostBlock Photo() {
        const auto file = BytesOf(Variable("ORVANE_SCREEN_PHOTO"));
        if (file.size() > 54) return HostBlock({file.begin() + 14, file.end()}); // behind the file header
        return HostBlock(FaceScene(320, 240, 120, 80, 80));
    }

    void Take(Hand& hand, const std::string& name, const std::wstring& title = L"Orvane  -  Kelmont") {
        const auto file = folder_ / (name + kSuffix);
        EXPECT_TRUE(hand.TakePicture(title, file.string())) << name;
        std::error_code error;
        EXPECT_GT(std::filesystem::file_size(file, error), 2000U) << name << " is no picture of a window";
    }
    static void AwaitAnimation() { std::this_thread::sleep_for(std::chrono::milliseconds(900)); }
    void EnableAll() {
        for (const int action : {ORV_REMOVE_BACKGROUND, ORV_CORRECT_COLOUR, ORV_ROTATE}) {
            host.lib.orv_EnableAction(action, 1);
        }
    }

    WindowHost host;

private:
#ifdef _WIN32
    static constexpr const char* kSuffix = ".bmp";
#else
    static constexpr const char* kSuffix = ".png";
#endif
    TempFolder own_;
    std::filesystem::path folder_;
};

TEST_F(Screens, MarkingStage) {
    EXPECT_EQ(host.Detect(Photo(),
                          [this](Hand& hand) {
                              AwaitAnimation();
                              Take(hand, "01-face-found");
                              hand.Click(kPlainClear);
                              Take(hand, "02-cleared");
                              hand.Press(90, 60);
                              hand.Release(90, 60);
                              Take(hand, "03-first-corner");
                              hand.Move(190, 170);
                              Take(hand, "04-rectangle-half-drawn");
                              hand.Press(230, 210);
                              Take(hand, "05-rectangle-finished");
                              hand.StartClick(kAboutButton);
                              Take(hand, "06-about", ORV_ABOUT_TITLE);
                              hand.CloseOthers();
                              hand.Click(kCancelButton);
                          }),
              ORV_CANCELLED);
}

TEST_F(Screens, NoFace) {
    EXPECT_EQ(host.Detect(HostBlock(BlankScene(320, 240)),
                          [this](Hand& hand) {
                              AwaitAnimation();
                              Take(hand, "07-no-face");
                              hand.CloseBox();
                          }),
              ORV_CANCELLED);
}

TEST_F(Screens, AdjustingStage) {
    EnableAll();
    EXPECT_EQ(host.Detect(Photo(),
                          [this](Hand& hand) {
                              AwaitAnimation();
                              hand.StartClick(kPlainOk);
                              Take(hand, "08-confirmation", ORV_CONFIRM_TITLE);
                              hand.Type(kRotationEdit, L"5");
                              Take(hand, "09-adjusting-all");
                              hand.Click(kPlainOk);
                          }),
              ORV_OK);
}

TEST_F(Screens, AdjustingColourAlone) {
    host.lib.orv_EnableAction(ORV_CORRECT_COLOUR, 1);
    EXPECT_EQ(host.Detect(Photo(),
                          [this](Hand& hand) {
                              hand.Click(kPlainOk);
                              hand.Click(kPlainColor);
                              Take(hand, "10-adjusting-colour");
                              hand.Click(kPlainOk);
                          }),
              ORV_OK);
}

TEST_F(Screens, Skins) {
    WriteSkin(host.lib.Folder() / "Ok.bmp", 40, 130, 60);
    WriteSkin(host.lib.Folder() / "Cancel.xyz", 170, 60, 50);
    WriteSkin(host.lib.Folder() / "Contrast.bmp", 50, 90, 160);
    EnableAll();
    EXPECT_EQ(host.Detect(Photo(),
                          [this](Hand& hand) {
                              AwaitAnimation();
                              Take(hand, "11-skins-normal");
                              hand.HoverOver(kSkinOk);
                              Take(hand, "12-skins-hover");
                              hand.Hold(kSkinOk);
                              Take(hand, "13-skins-pressed");
                              hand.LetGo(kSkinOk);
                              Take(hand, "14-skins-adjusting");
                              hand.Click(kSkinOk);
                          }),
              ORV_OK);
}

TEST_F(Screens, LanguageFile) {
    std::filesystem::copy_file(std::filesystem::path(ORVANE_LANGUAGES) / "german.txt",
                               host.lib.Folder() / "german.txt");
    EXPECT_EQ(host.lib.orv_SetLanguageFile("german.txt"), ORV_OK);
    EnableAll();
    EXPECT_EQ(host.Detect(Photo(),
                          [this](Hand& hand) {
                              AwaitAnimation();
                              hand.Click(kPlainClear);
                              Take(hand, "15-german-marking");
                              hand.Press(90, 60);
                              hand.Release(230, 210);
                              hand.Click(kPlainOk);
                              Take(hand, "16-german-adjusting");
                              hand.Click(kPlainOk);
                          }),
              ORV_OK);
}

TEST_F(Screens, LiveSession) {
    const Cameras cameras;
    EXPECT_EQ(host.DetectLive(cameras.IndexOf(Camera::portrait),
                              [this](Hand& hand) {
                                  AwaitAnimation();
                                  AwaitAnimation();
                                  Take(hand, "17-live-running");
                                  hand.Click(kPlainFreeze);
                                  Take(hand, "18-live-frozen");
                                  hand.Click(kCancelButton);
                              }),
              ORV_CANCELLED);
    host.FindNoFaces();
    EXPECT_EQ(host.DetectLive(cameras.IndexOf(Camera::portrait),
                              [this](Hand& hand) {
                                  AwaitAnimation();
                                  AwaitAnimation();
                                  Take(hand, "19-live-face-lost");
                                  hand.Click(kCancelButton);
                              }),
              ORV_CANCELLED);
}

} // namespace
} // namespace orvane::test
