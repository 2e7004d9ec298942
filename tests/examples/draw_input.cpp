// draw_input FOLDER: what the sample hosts are tried on, in files: a classifier, a photo with a face that it finds, and
// one without.
#include "tests/support/portrait_scene.h"

#include <filesystem>
#include <fstream>
#include <iostream>

namespace {

using namespace orvane;

/// The number's bytes, lowest first.
std::string Low(std::size_t number, int count) {
    std::string bytes;
    for (int i = 0; i < count; ++i) bytes += static_cast<char>(number >> 8 * i);
    return bytes;
}

std::string BitmapFile(const test::Scene& scene) {
    const std::string header = Low(40, 4) + Low(static_cast<std::size_t>(scene.width), 4) +
                               Low(static_cast<std::size_t>(scene.height), 4) + Low(1, 2) + Low(24, 2) + Low(0, 4) +
                               Low(scene.rows.size(), 4) + Low(0, 16);
    return "BM" + Low(54 + scene.rows.size(), 4) + Low(0, 4) + Low(54, 4) + header +
           std::string(scene.rows.begin(), scene.rows.end());
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
    const auto classifier = test::FaceCascade().Bytes();
    // An odd width, so that rows are padded.
    const auto photo = test::PortraitScene(301, 420, 110, test::Backdrop::graded, 4);
    return Write(folder / "Orvane.dat", std::string(classifier.begin(), classifier.end())) &&
                   Write(folder / "photo.bmp", BitmapFile(photo)) &&
                   Write(folder / "flat.bmp", BitmapFile(test::BlankScene(160, 120, 128)))
               ? 0
               : 1;
}
