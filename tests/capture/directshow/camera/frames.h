// The frames that a played camera shows.
#pragma once

#include <windows.h>

#include <vector>

namespace orvane::test {

/// Pixels of a 24-bit picture, bottom row first, rows padded to 4 bytes.
struct Frame {
    LONG width = 0;
    LONG height = 0;
    std::vector<BYTE> pixels;
};

inline LONG FrameStep(LONG width) { return (3 * width + 3) / 4 * 4; }

/// The bitmaps of the folder that the environment names, in the order of their names; what is no such bitmap or has
/// another size than the first is passed over. A pattern of 320 x 240 where there is none.
std::vector<Frame> LoadFrames();

/// Four fields: blue below left, green below right, red above left, white above right.
Frame PatternFrame(LONG width, LONG height);

} // namespace orvane::test
