// The texts of the window, and the translations that come with the library.
#include "tests/session/window_fixture.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace orvane {
namespace {

using test::FakeWindow;

struct Place {
    int32 text, control;
};
/// In the order in which they are copied.
constexpr Place kPlaces[] = {{4, kCancelButton}, {8, kPlainClear},     {9, kToleranceGroup}, {10, kToleranceLabel},
                             {13, kPrompt},      {11, kRotationGroup}, {12, kRotationLabel}, {5, kPlainColor},
                             {3, kPlainOk},      {1, kPlainFreeze}};

class LanguageWindow : public test::WindowTest {
protected:
    void Write(const std::string& content) const {
        std::ofstream file(files.Path() / "texts.txt", std::ios::binary);
        file << content;
    }
    /// The lines in which the labels, groups and buttons got their texts.
    std::vector<std::string> TextCalls() const {
        std::vector<std::string> calls;
        for (const std::string& line : windows.log) {
            const bool edit = line.rfind("text 1003", 0) == 0 || line.rfind("text 1024", 0) == 0;
            if (line.rfind("text ", 0) == 0 && !edit) calls.push_back(line);
        }
        return calls;
    }
};

TEST_F(LanguageWindow, TheTextsGoToTheirControlsInOrder) {
    Write("1 a1\n2 a2\n3 a3\n4 a4\n5 a5\n6 a6\n7 a7\n8 a8\n9 a9\n10 a10\n11 a11\n12 a12\n13 a13\n");
    ASSERT_EQ(session.m_language.SetLanguageFile("texts.txt"), kSuccess);
    Run([](FakeWindow& window) {
        for (const Place& place : kPlaces) {
            EXPECT_EQ(window.Text(place.control), L"a" + std::to_wstring(place.text));
        }
        EXPECT_EQ(window.Text(kToleranceDown), L"-") << "rows 6 and 7 go nowhere";
        EXPECT_EQ(window.Text(kToleranceUp), L"+");
        EXPECT_EQ(window.Text(kSkinOk), L"OK") << "skinned buttons keep theirs";
        EXPECT_EQ(window.Text(kTurnOn90), L"90\xBA");
    });
    std::vector<std::string> expected;
    for (const Place& place : kPlaces) {
        expected.push_back("text " + std::to_string(place.control) + " a" + std::to_string(place.text));
    }
    EXPECT_EQ(TextCalls(), expected);
}

TEST_F(LanguageWindow, WithoutAFileTheLibrarysOwnTextsShow) {
    Run([](FakeWindow& window) {
        EXPECT_EQ(window.Text(kPlainOk), L"Ok");
        EXPECT_EQ(window.Text(kCancelButton), L"Cancel");
        EXPECT_EQ(window.Text(kPlainFreeze), L"Freeze");
        EXPECT_EQ(window.Text(kPrompt), L"Please click on the image to define the face position");
    });
}

TEST_F(LanguageWindow, TheTextsReachThePlainButtonsWhereSkinsAreInUseToo) {
    windows.skins = {kSkinOk, kSkinClear, kSkinColor};
    Write("3 Gut\n");
    ASSERT_EQ(session.m_language.SetLanguageFile("texts.txt"), kSuccess);
    Run([](FakeWindow& window) {
        EXPECT_EQ(window.Text(kPlainOk), L"Gut");
        EXPECT_EQ(window.Text(kSkinOk), L"OK");
    });
}

TEST_F(LanguageWindow, AFileSetDuringASessionShowsAtTheNext) {
    Write("4 Zu\n");
    Run([this](FakeWindow& window) {
        EXPECT_EQ(session.m_language.SetLanguageFile("texts.txt"), kSuccess);
        EXPECT_EQ(window.Text(kCancelButton), L"Cancel");
        window.Click(kPlainClear);
        EXPECT_EQ(window.Text(kCancelButton), L"Cancel");
    });
    Run([](FakeWindow& window) { EXPECT_EQ(window.Text(kCancelButton), L"Zu"); });
    Run([](FakeWindow& window) { EXPECT_EQ(window.Text(kCancelButton), L"Zu") << "and stays"; });
}

TEST_F(LanguageWindow, LettersBeyondAsciiArriveAsTheyAre) {
    Write("13 \xC4ndern f\xFCr % d\xE9j\xE0\n");
    ASSERT_EQ(session.m_language.SetLanguageFile("texts.txt"), kSuccess);
    Run([](FakeWindow& window) { EXPECT_EQ(window.Text(kPrompt), L"\xC4ndern f\xFCr % d\xE9j\xE0"); });
}

/// The translations that come with the library, by their names in its examples.
class Translation : public LanguageWindow, public ::testing::WithParamInterface<const char*> {
protected:
    /// Copies the file to where the library looks for it, and reads it.
    void Load() {
        const std::filesystem::path source =
            std::filesystem::path(ORVANE_SOURCE_FOLDER) / "examples" / "languages" / GetParam();
        ASSERT_TRUE(std::filesystem::exists(source)) << source;
        std::filesystem::copy_file(source, files.Path() / GetParam());
        ASSERT_EQ(session.m_language.SetLanguageFile(GetParam()), kSuccess);
    }
};

TEST_P(Translation, SetsEveryRow) {
    Load();
    const LanguageTable english;
    LanguageTable marked; // a table whose rows all say that nobody set them
    std::string blank;
    for (int32 row = 0; row < LanguageTable::kRows; ++row) blank += std::to_string(row) + " unset\n";
    Write(blank);
    ASSERT_EQ(marked.SetLanguageFile("texts.txt"), kSuccess);
    ASSERT_EQ(marked.SetLanguageFile(GetParam()), kSuccess);
    for (int32 row = 1; row <= 13; ++row) {
        SCOPED_TRACE(row);
        const std::wstring text = session.m_language.GetLanguageText(row);
        EXPECT_NE(marked.GetLanguageText(row), L"unset");
        EXPECT_FALSE(text.empty());
        for (const wchar_t c : text) EXPECT_LE(c, L'\xFF');
        EXPECT_EQ(text.find_last_not_of(L" \t\r"), text.size() - 1) << "nothing behind the text";
    }
    for (const int32 row : {4, 8, 10, 13}) {
        EXPECT_NE(session.m_language.GetLanguageText(row), english.GetLanguageText(row)) << row;
    }
}

TEST_P(Translation, FitsItsControls) {
    struct Room {
        int32 row;
        std::size_t characters; // at four units the average character, less the frame
    };
    const Room kRooms[] = {{1, 20}, {2, 20},  {3, 20},  {4, 20},  {5, 20}, {8, 20},
                           {9, 27}, {10, 15}, {11, 27}, {12, 13}, {13, 67}};
    Load();
    for (const Room& room : kRooms) {
        EXPECT_LE(session.m_language.GetLanguageText(room.row).size(), room.characters) << "row " << room.row;
    }
}

TEST_P(Translation, ShowsInTheWindow) {
    Load();
    Run([this](FakeWindow& window) {
        for (const Place& place : kPlaces) {
            EXPECT_EQ(window.Text(place.control), session.m_language.GetLanguageText(place.text)) << place.control;
        }
    });
    EXPECT_EQ(TextCalls().size(), std::size(kPlaces));
}

INSTANTIATE_TEST_SUITE_P(Examples, Translation,
                         ::testing::Values("portuguese.txt", "spanish.txt", "german.txt", "french.txt", "turkish.txt"),
                         [](const auto& file) { return std::filesystem::path(file.param).stem().string(); });

} // namespace
} // namespace orvane
