// The memory blocks that cross the exports: movable global memory on Windows, a size-prefixed block
// elsewhere.
#pragma once

#include <cstddef>

namespace orvane {

/// Holds a block of the host locked while it lives; the block itself stays the host's.
class LockedBlock {
public:
    explicit LockedBlock(void* handle);
    ~LockedBlock();
    LockedBlock(const LockedBlock&) = delete;
    LockedBlock& operator=(const LockedBlock&) = delete;

    /// The block's bytes; null when it could not be locked.
    void* Data() const { return data_; }
    /// Bytes in the block; 0 when it could not be locked.
    std::size_t Size() const { return size_; }

private:
    void* handle_;
    void* data_;
    std::size_t size_;
};

/// A new zeroed block for the host to own, or null when memory is exhausted.
void* AllocateBlock(std::size_t size);

/// Gives a block back that did not reach the host after all.
void FreeBlock(void* handle);

} // namespace orvane
