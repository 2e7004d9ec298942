// Whether a pointer that a host handed in may be looked at.
#pragma once

namespace orvane {

/// False where reading what stands in front of a block's bytes, its tag and size, would end the process: a number taken
/// for a handle, a pointer to pages that are gone. Windows looks by itself.
bool MayBeBlock(const void* handle);

} // namespace orvane
