// A memory block of the library with an owner, and the time during which its bytes may be looked at.
#pragma once

#include <orvane/orvane.h>

#include <cstddef>
#include <utility>

namespace host {

/// Owns one block and gives it back at its end. May be empty.
class Block {
public:
    Block() = default;
    /// A zeroed block of `size` bytes; empty when there is no memory for it.
    explicit Block(std::size_t size) : handle_(orv_BlockAlloc(size)) {}
    ~Block() { orv_BlockFree(handle_); }
    Block(Block&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Block& operator=(Block&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    explicit operator bool() const { return handle_ != nullptr; }
    orv_Handle Handle() const { return handle_; }
    /// For a function that hands over a new block.
    orv_Handle* Receive() {
        orv_BlockFree(std::exchange(handle_, nullptr));
        return &handle_;
    }

private:
    orv_Handle handle_ = nullptr;
};

/// Keeps a block in its place: its bytes are there as long as this lives.
class LockedBlock {
public:
    explicit LockedBlock(const Block& block)
        : handle_(block.Handle()), bytes_(static_cast<unsigned char*>(orv_BlockLock(handle_))) {}
    ~LockedBlock() {
        if (bytes_ != nullptr) orv_BlockUnlock(handle_);
    }
    LockedBlock(const LockedBlock&) = delete;
    LockedBlock& operator=(const LockedBlock&) = delete;

    /// Null for an empty block.
    unsigned char* Bytes() const { return bytes_; }
    /// At least the bytes that were asked for; a system may round up.
    std::size_t Size() const { return orv_BlockSize(handle_); }

private:
    orv_Handle handle_;
    unsigned char* bytes_;
};

} // namespace host
