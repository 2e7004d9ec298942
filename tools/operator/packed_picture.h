// A picture as it crosses the library's exports: a packed bitmap in a memory block.
#pragma once

#include "orvane/orvane.h"
#include "tools/support/picture.h"

#include <string>

namespace orvane::tools {

/// Owns one block.
class Block {
public:
    Block() = default;
    explicit Block(orv_Handle handle) : handle_(handle) {}
    ~Block() { orv_BlockFree(handle_); }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    orv_Handle Handle() const { return handle_; }
    /// Where the library stores a block that is the host's then; called once, on an empty one.
    orv_Handle* Receive() { return &handle_; }

private:
    orv_Handle handle_ = nullptr;
};

/// A new block with `picture` packed; null when memory does not suffice.
orv_Handle PackPicture(const Picture& picture);

/// The picture of a block that the library made. False when the block holds none. Throws std::bad_alloc.
bool UnpackPicture(orv_Handle block, Picture* picture);

} // namespace orvane::tools
