#include "platform/memory_block.h"

#include "platform/block_prefix.h"

#define ORV_API // this file uses the block functions alone
#include "orvane/orvane.h"

namespace orvane {

LockedBlock::LockedBlock(void* handle)
    : handle_(handle), data_(MayBeBlock(handle) ? orv_BlockLock(handle) : nullptr),
      size_(data_ != nullptr ? orv_BlockSize(handle) : 0) {}

LockedBlock::~LockedBlock() {
    if (data_ != nullptr) orv_BlockUnlock(handle_);
}

void* AllocateBlock(std::size_t size) { return orv_BlockAlloc(size); }

void FreeBlock(void* handle) { orv_BlockFree(handle); }

} // namespace orvane
