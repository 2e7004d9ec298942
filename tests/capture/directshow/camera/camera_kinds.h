// The cameras that tests play, each a device of its own: what it offers and how it misbehaves. The filter, which
// plays them, and the tests, which register them, read the same list.
#pragma once

#include <windows.h>

#include <iterator>

namespace orvane::test {

/// Numbers of the list below.
enum class TestCamera : int {
    previewAndCapture, // both pins, and every text
    captureOnly,       // one pin, and no description
    refusedPreview,    // its preview pin refuses every other pin
    interleaved,       // a small preview pin comes before a full one whose first type is interleaved video
    videoPort,         // a capture pin, and one that leads past the graph
    topDown,           // its rows begin at the top
    noSize,            // frames of no width
    eager,             // delivers while it is paused, too
    silent,            // opens, runs, and never delivers
    unplugged,         // is gone after some frames
    shortFrames,       // half of every frame is missing
    longFrames,        // every frame is followed by a row too many
    noFilter,          // its filter can't be made
    noConnection,      // its pins refuse every other pin
    count,
};

/// What a pin of a camera is for.
enum class PinUse {
    none,
    capture,
    interleavedCapture,
    preview,
    smallPreview,
    interleavedPreview,
    refusedPreview,
    videoPort
};

struct CameraKind {
    const wchar_t* name;
    const wchar_t* description; // null where it has none
    const wchar_t* path;        // null where it has none
    PinUse pins[4];             // those that are left out are none
    int framesUntilGone;        // 0 for a camera that stays
};

inline constexpr int kCameraCount = static_cast<int>(TestCamera::count);
inline constexpr CameraKind kCameraKinds[] = {
    {L"Played camera", L"Preview and capture", L"played:0", {PinUse::capture, PinUse::preview}, 0},
    {L"Played capture", nullptr, L"played:1", {PinUse::capture}, 0},
    {L"Played refused preview", L"Refused preview", nullptr, {PinUse::capture, PinUse::refusedPreview}, 0},
    {L"Played interleaved",
     L"Interleaved",
     nullptr,
     {PinUse::smallPreview, PinUse::interleavedPreview, PinUse::interleavedCapture, PinUse::videoPort},
     0},
    {L"Played video port", L"Video port", nullptr, {PinUse::capture, PinUse::videoPort}, 0},
    {L"Played top-down", L"Top-down", nullptr, {PinUse::capture, PinUse::preview}, 0},
    {L"Played without size", L"Without size", nullptr, {PinUse::capture, PinUse::preview}, 0},
    {L"Played eagerness", L"Eager", nullptr, {PinUse::capture, PinUse::preview}, 0},
    {L"Played silence", L"Silent", nullptr, {PinUse::capture, PinUse::preview}, 0},
    {L"Played unplugged", L"Unplugged", nullptr, {PinUse::capture, PinUse::preview}, 10},
    {L"Played short frames", L"Short frames", nullptr, {PinUse::capture, PinUse::preview}, 0},
    {L"Played long frames", L"Long frames", nullptr, {PinUse::capture, PinUse::preview}, 0},
    {L"Played without filter", L"Without filter", nullptr, {}, 0},
    {L"Played refusal", L"Refusal", nullptr, {PinUse::capture, PinUse::preview}, 0},
};
static_assert(std::size(kCameraKinds) == kCameraCount);

/// The class of a camera's filter: the first, with the camera's number added.
inline GUID ClassOf(TestCamera camera) {
    GUID id{0x6f7c3a00, 0x41d2, 0x4b7e, {0x9a, 0x5c, 0x2e, 0x17, 0x80, 0xd3, 0x6b, 0x94}};
    id.Data1 += static_cast<DWORD>(camera);
    return id;
}

/// The environment's name for the folder with the frames: bitmap files of 24 bits and one size, shown in the order
/// of their names again and again. Without it the cameras show a pattern of their own.
inline constexpr const wchar_t* kFramesVariable = L"ORVANE_TEST_CAMERA_FRAMES";

/// What the filters tell of themselves, through the function TestCameraCounters of their library.
struct CameraCounters {
    LONG objects;   // alive: filters, enumerators, class factories
    LONG threads;   // that deliver
    LONG delivered; // frames of all cameras since the library was loaded
    LONG controls;  // times that a video port gave its control
};
using TestCameraCountersFunction = void (*)(CameraCounters*);
inline constexpr const wchar_t* kCameraLibrary = L"orvane_test_camera.dll";

} // namespace orvane::test
