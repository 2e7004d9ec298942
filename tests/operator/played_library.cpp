#include "tests/operator/played_library.h"

#include "tests/support/host_block.h"

namespace orvane::test {

PlayedLibrary g_played;

namespace {

int32_t Note(const std::string& call, int32_t result) {
    g_played.calls.push_back(call);
    return result;
}

} // namespace
} // namespace orvane::test

using orvane::test::g_played;
using orvane::test::Note;

extern "C" {

int32_t orv_InitDLL(void) { return Note("init", g_played.init); }

int32_t orv_ReleaseDLL(void) { return Note("release", ORV_OK); }

int32_t orv_SetLanguageFile(const char* path) { return Note(std::string("language ") + path, g_played.language); }

int32_t orv_SetVisibleMode(orv_Bool visible) { return Note("visible " + std::to_string(visible), g_played.visible); }

int32_t orv_SetSizeOutputImage(int32_t width, int32_t height) {
    return Note("size " + std::to_string(width) + "x" + std::to_string(height), g_played.size);
}

int32_t orv_SetFaceCropRatio(float ratio) {
    return Note("ratio " + std::to_string(static_cast<int>(ratio * 100)), g_played.ratio);
}

int32_t orv_EnableAction(int32_t action, orv_Bool enable) {
    return Note("action " + std::to_string(action) + " " + std::to_string(enable), g_played.action);
}

int32_t orv_DetectFacePicture(orv_Handle dib) {
    const auto* bytes = static_cast<const unsigned char*>(orv_BlockLock(dib));
    g_played.photo.assign(bytes, bytes + orv_BlockSize(dib));
    orv_BlockUnlock(dib);
    return Note("detect", g_played.detect);
}

int32_t orv_DetectFaceLive(int32_t deviceIndex) { return Note("live " + std::to_string(deviceIndex), g_played.live); }

int32_t orv_GetOutputImage(orv_Handle* out) {
    if (g_played.output == ORV_OK) {
        using namespace orvane::test;
        DibHeader header = HeaderFor(g_played.outputWidth, g_played.outputHeight);
        if (g_played.outputWidth == 0) header = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
        HostBlock block(header, std::vector<uint8_t>(header.sizeImage, 128));
        const std::vector<uint8_t> bytes = block.Bytes();
        *out = orv_BlockAlloc(bytes.size());
        std::memcpy(orv_BlockLock(*out), bytes.data(), bytes.size());
        orv_BlockUnlock(*out);
    }
    return Note("output", g_played.output);
}

} // extern "C"
