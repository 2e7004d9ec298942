// Classes of filters that no header of the toolchain declares.
#pragma once

#include <windows.h>

namespace orvane {

/// Looks at the frames that pass through it.
inline constexpr CLSID kSampleGrabberClass{
    0xC1F400A0, 0x3F08, 0x11D3, {0x9F, 0x0B, 0x00, 0x60, 0x08, 0x03, 0x9E, 0x37}};

/// Ends a stream and shows nothing.
inline constexpr CLSID kNullRendererClass{0xC1F400A4, 0x3F08, 0x11D3, {0x9F, 0x0B, 0x00, 0x60, 0x08, 0x03, 0x9E, 0x37}};

} // namespace orvane
