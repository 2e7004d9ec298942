// The library in folders of all names: it finds its classifier and its language files there.
#include "tests/exports/exports_fixture.h"
#include "tests/support/folder_names.h"

#include <fstream>

namespace orvane {
namespace {

using test::HostLibrary;

/// A whole session with the library in that folder, and texts in a file of that name.
void ExpectSessionIn(const std::filesystem::path& folder) {
    const HostLibrary lib(HostLibrary::kFileName, folder);
    ASSERT_TRUE(test::WriteClassifier(lib.Folder(), test::FaceCascade().Bytes()));
    std::ofstream(lib.Folder() / "texts.txt", std::ios::binary) << "3 Gut\n";
    ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
    ASSERT_EQ(lib.orv_SetVisibleMode(0), ORV_OK);
    EXPECT_EQ(lib.orv_SetLanguageFile("texts.txt"), ORV_OK);
    EXPECT_EQ(lib.orv_SetLanguageFile("absent.txt"), ORV_BAD_ARGUMENT);
    const test::HostBlock photo(test::SmallFaceScene());
    EXPECT_EQ(lib.orv_DetectFacePicture(photo.Handle()), ORV_OK);
    ASSERT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
    std::filesystem::remove(lib.Folder() / "Orvane.dat");
    ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
    EXPECT_EQ(lib.orv_DetectFacePicture(photo.Handle()), ORV_NO_CLASSIFIER) << "it was this folder's";
}

TEST(FolderNames, MayHoldLettersOfEveryScript) {
    for (const test::FolderName& name : test::kFolderNames) {
        SCOPED_TRACE(name.what);
        ExpectSessionIn(std::filesystem::path(name.text));
    }
}

#ifndef _WIN32
TEST(FolderNames, MayHoldAnyBytesOnLinux) {
    for (const char* name : {"\xFF\xFE", "a\nb", "\xC3", "a:b", "back\\slash"}) {
        SCOPED_TRACE(::testing::PrintToString(name));
        ExpectSessionIn(name);
    }
}
#endif

/// Folders in one another until the library's file has a path of so many characters.
std::filesystem::path UpTo(std::size_t length) {
    const std::size_t before = test::TempFolder().Path().native().size(); // gone again, but they vary by a few
    constexpr std::size_t kName = 13, kPiece = 40;
    std::filesystem::path inside;
    for (std::size_t left = length - before - kName; left > 1; left -= std::min(left, kPiece + 1)) {
        inside /= std::string(std::min(left - 1, kPiece), 'd');
    }
    return inside;
}

TEST(FolderNames, MayBeAsLongAsTheSystemLoadsFilesFrom) {
    ExpectSessionIn(UpTo(200));
    ExpectSessionIn(UpTo(250)); // of the 259 characters that Windows takes in a plain path
#ifndef _WIN32
    ExpectSessionIn(UpTo(1000));
    ExpectSessionIn(UpTo(1100));
    ExpectSessionIn(UpTo(4000));
#endif
}

TEST(FolderNames, LanguageFilesMayHaveNamesOfEveryScript) {
    const HostLibrary lib;
    ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
    for (const test::FolderName& name : test::kFolderNames) {
        SCOPED_TRACE(name.what);
        const std::filesystem::path file = std::filesystem::path(name.text).concat(".txt");
        const std::u8string bytes = file.u8string();
        const std::string path(bytes.begin(), bytes.end());
        EXPECT_EQ(lib.orv_SetLanguageFile(path.c_str()), ORV_BAD_ARGUMENT) << "not there yet";
        std::ofstream(lib.Folder() / file, std::ios::binary) << "3 Gut\n";
        EXPECT_EQ(lib.orv_SetLanguageFile(path.c_str()), ORV_OK);
    }
}

#ifdef _WIN32
TEST(FolderNames, ALanguageFileMayAlsoBeNamedInTheSystemsCodePage) {
    const HostLibrary lib;
    ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
    constexpr const char* kName = "fran\xE7"
                                  "ais.txt"; // no UTF-8
    wchar_t wide[32];
    ASSERT_NE(MultiByteToWideChar(CP_ACP, 0, kName, -1, wide, 32), 0);
    std::ofstream(lib.Folder() / wide, std::ios::binary) << "3 Bon\n";
    EXPECT_EQ(lib.orv_SetLanguageFile(kName), ORV_OK);
}

TEST(FolderNames, ALongerPathIsLoadedAndSearchedInItsLongForm) {
    const test::TempFolder folder;
    std::wstring path = L"\\\\?\\" + folder.Path().native();
    while (path.size() < 400) {
        path += L"\\" + std::wstring(60, L'd');
        ASSERT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
    }
    ASSERT_TRUE(CopyFileW(test::LibraryFolder().File().c_str(), (path + L"\\Orvane.dll").c_str(), TRUE));
    const test::LoadedLibrary lib(path + L"\\Orvane.dll");
    ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
    ASSERT_EQ(lib.orv_SetVisibleMode(0), ORV_OK);
    const test::HostBlock photo(test::SmallFaceScene());
    EXPECT_EQ(lib.orv_DetectFacePicture(photo.Handle()), ORV_NO_CLASSIFIER);
    ASSERT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
    const std::string bytes = test::FaceCascade().Bytes();
    HANDLE file = CreateFileW((path + L"\\Orvane.dat").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
    DWORD written = 0;
    ASSERT_TRUE(WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
    CloseHandle(file);
    ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
    EXPECT_EQ(lib.orv_DetectFacePicture(photo.Handle()), ORV_OK);
}
#endif

} // namespace
} // namespace orvane
