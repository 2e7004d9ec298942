// draw_input FOLDER: what the sample hosts are tried on, in files: a classifier, a photo with a face that it finds, and
// one without.
#include "tests/support/portrait_scene.h"

#include <filesystem>
#include <fstream>
#include <iostream>

namespace {

using namespace orvane;

/// The lowest bytes of a number, lowest first.
std::string Low(std::size_t number, int count = 4) {
    std::string bytes;
    for (; count > 0; --count, number >>= 8) bytes += static_cast<char>(number);
    return bytes;
}

std::string BitmapFile(const test::Scene& scene) {
    const auto width = static_cast<std::size_t>(scene.width), height = static_cast<std::size_t>(scene.height);
    const std::string unused(16, '\0'); // resolution and palette
    return "BM" + Low(54 + scene.rows.size()) + Low(0) + Low(54) + Low(40) + Low(width) + Low(height) + Low(1, 2) +
           Low(24, 2) + Low(0) + Low(scene.rows.size()) + unused + std::string(scene.rows.begin(), scene.rows.end());
}

bool Write(const std::filesystem::path& name, const std::string& bytes) {
    std::ofstream file(name, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) std::cerr << name << " can't be written\n";
    return !file.fail();
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) return 2;
    const std::filesystem::path folder = arguments[1];
    // An odd width, so that rows are padded.
    const auto photo = test::PortraitScene(301, 420, 110, test::Backdrop::graded, 4);
    return test::WriteClassifier(folder, test::FaceCascade().Bytes()) &&
                   Write(folder / "photo.bmp", BitmapFile(photo)) &&
                   Write(folder / "flat.bmp", BitmapFile(test::BlankScene(160, 120, 128)))
               ? 0
               : 1;
}
