// The operator's window of a library in folders of all names: its skins are found there.
#include "tests/support/folder_names.h"
#include "tests/window/sessions/window_host.h"

#include <fstream>

namespace orvane::test {
namespace {

/// A strip of four faces, 60 by 20 pixels each.
void WriteSkin(const std::filesystem::path& file) {
    const Scene strip = BlankScene(240, 20, 90);
    const DibHeader header = HeaderFor(strip.width, strip.height);
    const std::uint32_t offset = 14 + sizeof header, size = offset + header.sizeImage, none = 0;
    std::ofstream out(file, std::ios::binary);
    const auto write = [&](const void* data, std::size_t bytes) {
        out.write(static_cast<const char*>(data), static_cast<std::streamsize>(bytes));
    };
    write("BM", 2);
    write(&size, 4);
    write(&none, 4);
    write(&offset, 4);
    write(&header, sizeof header);
    write(strip.rows.data(), strip.rows.size());
}

void ExpectSkinIn(const std::filesystem::path& folder) {
    WindowHost host(folder);
    WriteSkin(host.lib.Folder() / "Ok.bmp");
    const HostBlock photo(PictureOf(ScenePicture::face));
    EXPECT_EQ(host.Detect(photo,
                          [](Hand& hand) {
                              EXPECT_TRUE(hand.IsShown(kSkinOk));
                              EXPECT_FALSE(hand.IsShown(kPlainOk));
                              hand.Escape();
                          }),
              ORV_CANCELLED);
}

TEST(SkinFolders, MayHaveNamesOfEveryScript) {
    for (const FolderName& name : kFolderNames) {
        SCOPED_TRACE(name.what);
        ExpectSkinIn(std::filesystem::path(name.text));
    }
}

#ifndef _WIN32
TEST(SkinFolders, MayHaveNamesOfAnyBytesOnLinux) { ExpectSkinIn("\xFF \xC3"); }
#endif

} // namespace
} // namespace orvane::test
