// The operator's texts and the file that overlays them.
#include "session/language.h"

#include "image/result_codes.h"
#include "platform/module_folder.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

namespace orvane {
namespace {

class Language : public ::testing::Test {
protected:
    Language() : before_(g_moduleFolder) { g_moduleFolder = folder_.Path().native(); }
    ~Language() override { g_moduleFolder = before_; }

    void Write(const std::string& name, const std::string& content) const {
        std::ofstream file(folder_.Path() / name, std::ios::binary);
        file << content;
        ASSERT_TRUE(file.good());
    }
    /// Reads a file of this content.
    int32 Read(const std::string& content) {
        Write("texts.txt", content);
        return table.SetLanguageFile("texts.txt");
    }
    void ExpectUnchanged() const {
        const LanguageTable fresh;
        for (int32 i = 0; i < LanguageTable::kRows; ++i) {
            EXPECT_EQ(table.GetLanguageText(i), fresh.GetLanguageText(i)) << i;
        }
    }

    LanguageTable table;
    test::TempFolder folder_;

private:
    PathString before_;
};

TEST_F(Language, StartsWithTheLibrarysOwnTexts) {
    const wchar_t* const texts[] = {L"???",       L"Freeze",
                                    L"Unfreeze",  L"Ok",
                                    L"Cancel",    L"Color Correction",
                                    L"-",         L"+",
                                    L"Clear",     L"Background Remotion",
                                    L"Tolerance", L"Image Rotation",
                                    L"Rotation",  L"Please click on the image to define the face position",
                                    L"???"};
    static_assert(std::size(texts) == LanguageTable::kRows);
    for (int32 i = 0; i < LanguageTable::kRows; ++i) EXPECT_EQ(table.GetLanguageText(i), texts[i]) << i;
}

TEST_F(Language, AnIndexOutsideTheTableGivesTwoQuestionMarks) {
    for (const int32 index : {15, 16, 1000, -1, std::numeric_limits<int32>::max(), std::numeric_limits<int32>::min()}) {
        EXPECT_EQ(table.GetLanguageText(index), L"??") << index;
    }
}

TEST_F(Language, RowsOfTheFileReplaceTheirTextsAndNoOthers) {
    EXPECT_EQ(Read("3 Gut\n4 Abbrechen\n0 null\n14 vierzehn\n"), kSuccess);
    EXPECT_EQ(table.GetLanguageText(3), L"Gut");
    EXPECT_EQ(table.GetLanguageText(4), L"Abbrechen");
    EXPECT_EQ(table.GetLanguageText(0), L"null");
    EXPECT_EQ(table.GetLanguageText(14), L"vierzehn");
    EXPECT_EQ(table.GetLanguageText(5), L"Color Correction");
}

TEST_F(Language, AnEmptyFileChangesNothing) {
    EXPECT_EQ(Read(""), kSuccess);
    ExpectUnchanged();
    EXPECT_EQ(Read("\n \n\t\n"), kSuccess);
    ExpectUnchanged();
}

TEST_F(Language, AMissingFileIsRefusedAndTheTableStays) {
    EXPECT_EQ(table.SetLanguageFile("absent.txt"), kBadCall);
    EXPECT_EQ(table.SetLanguageFile(nullptr), kBadCall);
    ExpectUnchanged();
}

TEST_F(Language, AFolderIsNoFile) {
    std::filesystem::create_directory(folder_.Path() / "texts");
    EXPECT_EQ(table.SetLanguageFile("texts"), kBadCall);
    EXPECT_EQ(table.SetLanguageFile(""), kBadCall) << "no name leads to the library's folder itself";
    ExpectUnchanged();
}

TEST_F(Language, AnIndexBeyondTheTableIsSkippedAndReadingGoesOn) {
    EXPECT_EQ(Read("99 nowhere\n-1 nowhere\n15 nowhere\n99999999999999999999 nowhere\n3 Gut\n"), kSuccess);
    EXPECT_EQ(table.GetLanguageText(3), L"Gut");
    EXPECT_EQ(table.GetLanguageText(15), L"??");
    EXPECT_EQ(table.GetLanguageText(14), L"???");
}

TEST_F(Language, ALineThatStartsWithALetterEndsTheReading) {
    EXPECT_EQ(Read("3 Gut\nx4 Abbrechen\n5 Farbe\n"), kSuccess);
    EXPECT_EQ(table.GetLanguageText(3), L"Gut") << "rows before it stay";
    EXPECT_EQ(table.GetLanguageText(4), L"Cancel");
    EXPECT_EQ(table.GetLanguageText(5), L"Color Correction");
}

TEST_F(Language, ASignWithoutANumberEndsTheReading) {
    EXPECT_EQ(Read("- 3 Gut\n4 Abbrechen\n"), kSuccess);
    ExpectUnchanged();
}

TEST_F(Language, TheLaterLineWins) {
    EXPECT_EQ(Read("3 first\n3 second\n"), kSuccess);
    EXPECT_EQ(table.GetLanguageText(3), L"second");
}

TEST_F(Language, AnIndexAloneTakesTheNextLineThatIsNotBlank) {
    EXPECT_EQ(Read("3   \n4 Abbrechen\n"), kSuccess);
    EXPECT_EQ(table.GetLanguageText(3), L"4 Abbrechen");
    EXPECT_EQ(table.GetLanguageText(4), L"Cancel");
    EXPECT_EQ(Read("3\n\n \t\nlater\n4 Abbrechen"), kSuccess);
    EXPECT_EQ(table.GetLanguageText(3), L"later");
    EXPECT_EQ(table.GetLanguageText(4), L"Abbrechen");
}

TEST_F(Language, AnIndexAtTheEndOfTheFileHasNoText) {
    for (const char* content : {"3", "3 ", "3 \n", "3\n\n"}) {
        EXPECT_EQ(Read(content), kSuccess);
        ExpectUnchanged();
    }
}

TEST_F(Language, APercentSignStandsAsItIs) {
    EXPECT_EQ(Read("10 100 %d %s %n\n"), kSuccess);
    EXPECT_EQ(table.GetLanguageText(10), L"100 %d %s %n");
}

TEST_F(Language, WhiteSpaceBeforeTheTextIsDroppedAndBehindItKept) {
    EXPECT_EQ(Read("  \t3 \t Gut  \n5Farbe\n+4 Abbrechen"), kSuccess);
    EXPECT_EQ(table.GetLanguageText(3), L"Gut  ");
    EXPECT_EQ(table.GetLanguageText(5), L"Farbe") << "no space is needed behind the index";
    EXPECT_EQ(table.GetLanguageText(4), L"Abbrechen");
}

TEST_F(Language, LineEndsOfBothKindsAreTaken) {
    EXPECT_EQ(Read("3 Gut\r\n\r\n4\r\nAbbrechen\r\n5 Farbe\n"), kSuccess);
    EXPECT_EQ(table.GetLanguageText(3), L"Gut");
    EXPECT_EQ(table.GetLanguageText(4), L"Abbrechen");
    EXPECT_EQ(table.GetLanguageText(5), L"Farbe");
}

TEST_F(Language, ACarriageReturnWithinALineBelongsToTheText) {
    EXPECT_EQ(Read("3 a\rb\n4 c\n"), kSuccess);
    EXPECT_EQ(table.GetLanguageText(3), L"a\rb");
    EXPECT_EQ(table.GetLanguageText(4), L"c");
}

TEST_F(Language, EachByteIsOneCharacterOfTheSameValue) {
    EXPECT_EQ(Read("3 \xE4\xFF\x80\n4 \xC3\xA4\n"), kSuccess);
    EXPECT_EQ(table.GetLanguageText(3), (std::wstring{0xE4, 0xFF, 0x80}));
    EXPECT_EQ(table.GetLanguageText(4), (std::wstring{0xC3, 0xA4}));
}

TEST_F(Language, AFileOfWideCharactersDoesNotWork) {
    EXPECT_EQ(Read(std::string("\xFF\xFE\x33\0\x20\0G\0\n\0", 10)), kSuccess);
    ExpectUnchanged();
}

TEST_F(Language, TextsAreCutAt1023Characters) {
    EXPECT_EQ(Read("3 " + std::string(1023, 'a') + "\n4 " + std::string(1024, 'b') + "\n5 " +
                   std::string(100'000, 'c') + "\n8 d\n"),
              kSuccess);
    EXPECT_EQ(table.GetLanguageText(3), std::wstring(1023, L'a'));
    EXPECT_EQ(table.GetLanguageText(4), std::wstring(1023, L'b'));
    EXPECT_EQ(table.GetLanguageText(5), std::wstring(1023, L'c'));
    EXPECT_EQ(table.GetLanguageText(8), L"d") << "the rest of a long line is no row";
}

TEST_F(Language, AThirdFileOverlaysAndDoesNotReset) {
    EXPECT_EQ(Read("3 Gut\n4 Abbrechen\n"), kSuccess);
    EXPECT_EQ(Read("4 Zu\n"), kSuccess);
    EXPECT_EQ(table.SetLanguageFile("absent.txt"), kBadCall);
    EXPECT_EQ(table.GetLanguageText(3), L"Gut");
    EXPECT_EQ(table.GetLanguageText(4), L"Zu");
}

TEST_F(Language, TheNameIsRelativeToTheLibrarysFolderEvenAsAnAbsolutePath) {
    Write("texts.txt", "3 Gut\n");
    const std::string absolute = (folder_.Path() / "texts.txt").string();
    EXPECT_EQ(table.SetLanguageFile(absolute.c_str()), kBadCall);
    std::filesystem::create_directory(folder_.Path() / "german");
    Write("german/texts.txt", "3 Fein\n");
    EXPECT_EQ(table.SetLanguageFile("german/texts.txt"), kSuccess);
    EXPECT_EQ(table.GetLanguageText(3), L"Fein");
}

} // namespace
} // namespace orvane
