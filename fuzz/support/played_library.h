// The exported functions inside a target, over a window and cameras that are played, with the classifier that finds
// drawn faces in the library's folder.
#pragma once

#include "orvane/orvane.h"

#include "fuzz/support/choices.h"
#include "tests/support/fake_video.h"
#include "tests/support/fake_window.h"
#include "tests/support/host_block.h"

#include <string>

namespace orvane::fuzz {

/// A library in which nothing has happened yet, for the length of one input. Ends what is open when it goes, and looks
/// whether all was given back.
class PlayedLibrary {
public:
    PlayedLibrary();
    ~PlayedLibrary();
    PlayedLibrary(const PlayedLibrary&) = delete;
    PlayedLibrary& operator=(const PlayedLibrary&) = delete;

    test::FakeWindowSystem windows;
    test::FakeVideo video;
};

/// Mostly makes the open session's preview, by which the work picture goes, so small that an input takes little time.
void KeepPreviewSmall(Choices& choices);

/// A block of a host: a good picture, one whose header lies, or any bytes.
test::HostBlock AnyBlock(Choices& choices, int32 mostPixels);

/// Takes the output, twice, and looks whether both are the same good bitmap. Its bytes; none without an output.
std::vector<uint8> TakeOutput();

/// While it lives a request for more than 64 megabytes fails, as does one of the others where `failing` is not
/// negative.
class SmallHeap {
public:
    explicit SmallHeap(int32 failing);
    ~SmallHeap();
    SmallHeap(const SmallHeap&) = delete;
    SmallHeap& operator=(const SmallHeap&) = delete;
};

} // namespace orvane::fuzz
