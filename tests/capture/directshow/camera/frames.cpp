#include "tests/capture/directshow/camera/frames.h"
#include "tests/capture/directshow/camera/camera_kinds.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace orvane::test {
namespace {

constexpr LONG kLongestSide = 4096;

bool ReadBitmap(const std::filesystem::path& path, Frame& frame) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    BITMAPFILEHEADER head;
    BITMAPINFOHEADER info;
    if (bytes.size() < sizeof head + sizeof info) return false;
    std::memcpy(&head, bytes.data(), sizeof head);
    std::memcpy(&info, bytes.data() + sizeof head, sizeof info);
    if (head.bfType != 0x4D42 || info.biBitCount != 24 || info.biCompression != BI_RGB) return false;
    if (info.biWidth < 1 || info.biWidth > kLongestSide || info.biHeight < 1 || info.biHeight > kLongestSide)
        return false;
    const std::size_t size =
        static_cast<std::size_t>(FrameStep(info.biWidth)) * static_cast<std::size_t>(info.biHeight);
    if (head.bfOffBits > bytes.size() || bytes.size() - head.bfOffBits < size) return false;
    const char* const pixels = bytes.data() + head.bfOffBits;
    frame = {info.biWidth, info.biHeight, std::vector<BYTE>(pixels, pixels + size)};
    return true;
}

} // namespace

std::vector<Frame> LoadFrames() {
    std::vector<Frame> frames;
    wchar_t folder[MAX_PATH];
    const DWORD length = GetEnvironmentVariableW(kFramesVariable, folder, MAX_PATH);
    if (length > 0 && length < MAX_PATH) {
        std::vector<std::filesystem::path> paths;
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(folder, error)) paths.push_back(entry.path());
        std::sort(paths.begin(), paths.end());
        for (const auto& path : paths) {
            Frame frame;
            if (!ReadBitmap(path, frame)) continue;
            if (frames.empty() || frame.pixels.size() == frames[0].pixels.size()) frames.push_back(std::move(frame));
        }
    }
    if (frames.empty()) frames.push_back(PatternFrame(320, 240));
    return frames;
}

Frame PatternFrame(LONG width, LONG height) {
    Frame frame{width, height, {}};
    frame.pixels.resize(static_cast<std::size_t>(FrameStep(width)) * static_cast<std::size_t>(height));
    constexpr BYTE kColours[4][3] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}};
    for (LONG y = 0; y < height; ++y) {
        for (LONG x = 0; x < width; ++x) {
            const int field = (2 * x >= width ? 1 : 0) + (2 * y >= height ? 2 : 0);
            std::copy_n(kColours[field], 3, &frame.pixels[static_cast<std::size_t>(FrameStep(width) * y + 3 * x)]);
        }
    }
    return frame;
}

} // namespace orvane::test
