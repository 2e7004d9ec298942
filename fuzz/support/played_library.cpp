#include "fuzz/support/played_library.h"

#include "capture/video_system.h"
#include "detect/classifier_file.h"
#include "dialog/window_system.h"
#include "fuzz/support/any_classifier.h"
#include "fuzz/support/library_folder.h"
#include "fuzz/support/small_scene.h"
#include "primitives/memory.h"
#include "session/session_state.h"
#include "tests/support/fresh_session.h"

#include <cstdlib>

namespace orvane {
namespace {

fuzz::PlayedLibrary* g_played = nullptr;
int32 g_requestsLeft = -1;

} // namespace

WindowSystem& ThisWindowSystem() { return g_played->windows; }
VideoSystem& ThisVideoSystem() { return g_played->video; }

} // namespace orvane

// The linker leads every call of orvane::FindModuleFolder here.
extern "C" bool __wrap__ZN6orvane16FindModuleFolderEv();
extern "C" bool __wrap__ZN6orvane16FindModuleFolderEv() { return true; }

namespace orvane::fuzz {

PlayedLibrary::PlayedLibrary() {
    static const LibraryFolder folder;
    static const bool written = [] {
        folder.Write("Orvane.dat", test::FaceCascade().Bytes());
        folder.Write("texts.txt", "1 Anhalten\n2 Weiter\n3 Ja\n4 Nein\n13 " + std::string(300, 'x') + "\n");
        return true;
    }();
    Expect(written, "the library's folder is filled");
    g_played = this;
}

PlayedLibrary::~PlayedLibrary() {
    orv_ReleaseDLL();
    const test::FreshSession fresh; // cleared for the next input
    g_ownerWindow = nullptr;
    Expect(windows.windowsAlive == 0, "a window goes with its session");
    Expect(windows.callsOutside == 0, "a window is not asked before and after it stands");
    Expect(video.sourcesAlive == 0, "a camera goes with its session");
    g_played = nullptr;
}

void KeepPreviewSmall(Choices& choices) {
    if (g_dialog == nullptr || choices.Int(0, 15) == 15) return;
    g_dialog->m_previewMaxWidth = g_dialog->m_previewMaxHeight = 100;
}

test::HostBlock AnyBlock(Choices& choices, int32 mostPixels) {
    const int32 kind = choices.Int(0, 7);
    if (kind == 7) {
        const std::string bytes = choices.Text(choices.Byte());
        return test::HostBlock(std::vector<uint8>(bytes.begin(), bytes.end()));
    }
    test::Scene scene = SmallScene(choices, mostPixels);
    test::DibHeader header = test::HeaderFor(scene.width, scene.height);
    if (kind == 4) {
        for (int32 lies = choices.Int(1, 3); lies > 0; --lies) {
            const auto at = static_cast<std::size_t>(choices.Int(0, 19)) * 2; // any half of a field
            const int32 lie = choices.AnyInt();
            std::memcpy(reinterpret_cast<uint8*>(&header) + at, &lie, at == 38 ? 2 : 4);
        }
    } else if (kind == 5) {
        header.height = -header.height;
    } else if (kind == 6) {
        scene.rows.resize(static_cast<std::size_t>(choices.Int(0, static_cast<int32>(scene.rows.size()))));
    }
    return {header, scene.rows};
}

std::vector<uint8> TakeOutput() {
    test::HostBlock first, second;
    const int32 result = orv_GetOutputImage(first.Receive());
    Expect(result == ORV_OK || result == ORV_NO_MEMORY || result == ORV_NO_PICTURE || result == ORV_NO_SESSION,
           "an output comes with a documented result");
    if (result != ORV_OK) {
        Expect(first.Handle() == nullptr, "without an output there is no block");
        return {};
    }
    const std::vector<uint8> bytes = first.Bytes();
    const test::DibHeader header = first.Header();
    Expect(header.size == 40 && header.planes == 1 && header.bitCount == 24 && header.compression == 0,
           "an output has a good header");
    Expect(header.width > 0 && header.height > 0, "and pixels");
    const std::size_t step = (3 * static_cast<std::size_t>(header.width) + 3) / 4 * 4;
    Expect(bytes.size() == sizeof header + step * static_cast<std::size_t>(header.height), "all of them");
    Expect(header.sizeImage == bytes.size() - sizeof header, "as many as it says");
    for (std::size_t row = sizeof header; row < bytes.size(); row += step) {
        for (std::size_t x = 3 * static_cast<std::size_t>(header.width); x < step; ++x) {
            Expect(bytes[row + x] == 0, "padding is zero");
        }
    }
    if (orv_GetOutputImage(second.Receive()) == ORV_OK) Expect(second.Bytes() == bytes, "an output comes twice alike");
    return bytes;
}

SmallHeap::SmallHeap(int32 failing) {
    g_requestsLeft = failing;
    SetHeapAllocator([](std::size_t bytes) -> void* {
        constexpr std::size_t kMost = std::size_t{64} << 20;
        if (bytes > kMost || g_requestsLeft == 0) {
            g_requestsLeft = -1;
            return nullptr;
        }
        if (g_requestsLeft > 0) --g_requestsLeft;
        return std::calloc(bytes, 1);
    });
}

SmallHeap::~SmallHeap() { SetHeapAllocator(nullptr); }

} // namespace orvane::fuzz
