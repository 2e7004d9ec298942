// A picture as it crosses the library's exports: a packed bitmap in a memory block.
#pragma once

#include "orvane/orvane.h"
#include "tools/operator/same_scene.h"
#include "tools/support/picture.h"

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

/// The bitmap in a block, locked as long as this lives.
class PackedRows {
public:
    explicit PackedRows(orv_Handle block);
    ~PackedRows();
    PackedRows(const PackedRows&) = delete;
    PackedRows& operator=(const PackedRows&) = delete;

    /// Without pixels when the block holds no 24-bit bitmap of an allowed size, whole.
    const PixelRows& Rows() const { return rows_; }

private:
    orv_Handle block_;
    PixelRows rows_;
};

/// The picture of a block that the library made; empty when the block holds none. Throws std::bad_alloc.
Picture UnpackPicture(orv_Handle block);

} // namespace orvane::tools
